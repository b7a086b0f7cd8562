#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "host/Export.h"

/// What one ring carries.
enum class emDef_RingKind : std::uint32_t
{
    Video = 0,
    Audio = 1
};

/// Codecs of ring packets, as four-character codes that stay the same across processes and versions.
enum class emDef_RingCodec : std::uint32_t
{
    None = 0,
    H264 = 0x34363248, ///< Annex B access units
    H265 = 0x35363248, ///< Annex B access units
    MPEG4 = 0x3447504D,
    MJPEG = 0x47504A4D, ///< one whole JPEG a packet
    PCMU = 0x554D4350,
    PCMA = 0x414D4350,
    AAC = 0x20434141, ///< raw frames, AudioSpecificConfig in the extra bytes
    G726 = 0x36323747,
    PCM_S16LE = 0x36314C50
};

/// What keeps pictures out of a ring while its stream plays.
enum class emDef_RingLack : std::uint32_t
{
    Nothing = 0,       ///< pictures come, or nothing is known yet
    Video = 1,         ///< the stream brings no video
    Codec = 2,         ///< rings don't carry its codec
    KeyFrame = 3,      ///< no key frame has come
    ParameterSets = 4, ///< key frames come, but no parameter sets
    LongSets = 5,      ///< the parameter sets pass `st_RingParam::MaxExtra`
    Room = 6,          ///< a key frame is larger than the ring takes, or the machine has no memory for it
    Decoding = 7       ///< pictures come, and can't be decoded: a reader's own finding, never in a ring
};

/// Codec parameters of a ring: all that a decoder must be told before the first packet.
struct st_RingParam
{
    static constexpr std::size_t MaxExtra = 2048;

    emDef_RingCodec nCodec = emDef_RingCodec::None;
    std::int32_t nWidth = 0;         ///< pixels, video only; 0 while unknown
    std::int32_t nHeight = 0;        ///< pixels, video only; 0 while unknown
    std::int32_t nSampleRate = 0;    ///< Hz, audio only
    std::int32_t nChannels = 0;      ///< audio only
    std::int32_t nBitsPerSample = 0; ///< coded bits a sample, audio only
    std::uint32_t nExtraSize = 0;    ///< bytes used in arExtra, at most MaxExtra
    std::uint32_t nReserved = 0;
    std::array<std::uint8_t, MaxExtra> arExtra{}; ///< SPS/PPS, AudioSpecificConfig, ...
};

/// What is told of one packet beside its bytes.
struct st_RingPacket
{
    static constexpr std::int64_t NoTime = INT64_MIN;

    std::int64_t nPtsUs = NoTime;   ///< presentation time, microseconds of the stream's own clock
    std::int64_t nDtsUs = NoTime;   ///< decoding time, same clock
    std::int64_t nArrivalUs = 0;    ///< steady clock of the machine at arrival, microseconds
    bool bKey = false;              ///< decoding can start here
    std::uint32_t nParamSerial = 0; ///< filled by the ring: which set of codec parameters it belongs to
};

/// One named ring in shared memory: the writer's side.
///
/// One writer, many readers in any process. A writer never waits for a reader: old packets are overwritten, and
/// `CShmRingReader` notices. Rings of the same name in one process share one mapping, which the last of them removes;
/// one that a killed process left is taken over by the next writer. Names carry the user and the instance
/// (`CEnvObj::m_F_s_Instance`), so that hosts beside each other don't meet.
///
/// `m_F_b_Write`, `m_F_b_SetParam` and `m_S_SetLack` belong to whichever thread holds the writer's claim; the rest to
/// the owner.
class LIB_HOSTENV_EXPORT CShmRing
{
public:
    CShmRing(); ///< unattached: every write is a quiet no-op
    ~CShmRing();
    CShmRing(const CShmRing&) = delete;
    CShmRing& operator=(const CShmRing&) = delete;

    /// Attaches the ring of that recorder (-1 for none), channel and stream. With `bCreate` it is made if needed. An
    /// empty instance stands for that of the process-wide environment.
    /// On failure (no memory, held by another process) the object is unattached and its header private memory.
    bool m_F_b_Attach(emDef_RingKind nKind, std::int32_t nNvrID, std::int32_t nChannel, std::int32_t nStream,
                      bool bCreate, const std::string& sInstance = {});
    /// Tries once more to own the ring of the last attach, if this object doesn't. No thread may be using it meanwhile.
    bool m_F_b_AttachAgain();
    void m_S_Detach();
    /// True while packets can get into the ring: false as well when shared memory proved full at the first packet, or
    /// somebody has removed the ring or cut it short. Any thread that uses the ring.
    bool m_F_b_IsAttached() const;
    /// Name of the ring and why it isn't attached, for a log; empty while it is, and for a ring never asked for.
    std::string m_F_s_WhyNot() const;

    /// The header (4096 bytes), valid as long as the object and until the next attach; never null.
    void* m_F_p_Header() const;

    /// Makes `pOwner` the writer; false while another owner of this process is. Idempotent for the owner.
    bool m_F_b_ClaimWriter(const void* pOwner);
    /// Gives the claim back; harmless if `pOwner` doesn't hold it through this object. Detaching does the same.
    void m_S_ReleaseWriter(const void* pOwner);

    /// Publishes codec parameters; packets written from here on belong to them. Equal parameters are not counted anew.
    bool m_F_b_SetParam(const st_RingParam& stParam);

    /// Tells readers what keeps pictures out. For the holder of the claim.
    void m_S_SetLack(emDef_RingLack nLack);

    /// Writes one whole packet. False if unattached, empty, or larger than half the ring (counted as dropped).
    /// Never blocks; the first one asks the system for all of the ring's memory.
    bool m_F_b_Write(const st_RingPacket& stPacket, const void* pData, std::uint32_t nSize);

private:
    void m_S_Attach(bool bCreate);

    struct st_Impl;
    std::unique_ptr<st_Impl> vm_pImpl;
};
