#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>

#include "host/hostenv/CShmRing.h"

/// Layout of a ring in shared memory: a header of 4096 bytes, then a log of packets that wraps around.
///
/// Positions count bytes since the ring was made and never go back; the place in memory is the position modulo the
/// capacity. A packet is a record head, the bytes, and the record's number once more, padded to 8 bytes. The writer
/// first moves `nReserved` to the end of the packet to come, then writes it, then moves `nPublished`: what lies more
/// than a capacity behind `nReserved` may be overwritten at any moment.
namespace RingLayout {

constexpr std::uint32_t Magic = 0x474E5246; // "FRNG"
constexpr std::uint32_t Version = 1;
constexpr std::size_t HeaderSize = 4096;
constexpr std::size_t Word = sizeof(std::uint64_t);
constexpr std::uint64_t NoPosition = UINT64_MAX;

// A camera of 16 Mbit/s with a key frame every two seconds keeps two of them in 8 MiB; a second stream needs less, and
// audio of 64 kbit/s fills its ring in half a minute.
constexpr std::uint64_t CapacityVideoMain = 8u << 20;
constexpr std::uint64_t CapacityVideoOther = 4u << 20;
constexpr std::uint64_t CapacityAudio = 256u << 10;

constexpr std::uint64_t Capacity(emDef_RingKind nKind, std::int32_t nStream)
{
    if (nKind == emDef_RingKind::Audio)
        return CapacityAudio;
    return nStream == 0 ? CapacityVideoMain : CapacityVideoOther;
}

/// Codec parameters behind a sequence lock: odd while they are being written.
struct st_ParamBlock
{
    std::atomic<std::uint32_t> nSequence;
    std::atomic<std::uint32_t> nSerial; ///< 0 while there are none
    st_RingParam stParam;
};

struct st_Header
{
    std::atomic<std::uint32_t> nMagic; ///< written last, so that a reader never sees half a header
    std::uint32_t nVersion;
    std::uint64_t nCapacity;
    std::atomic<std::uint32_t> nGeneration; ///< writers that this ring has had
    std::atomic<std::uint32_t> nClosed;     ///< 1 when the last writer removed the ring
    std::atomic<std::uint32_t> nWake;       ///< changes with every packet; readers wait on it
    std::atomic<std::uint32_t> nLack;       ///< emDef_RingLack, as the writer last told it
    std::atomic<std::uint64_t> nReserved;
    std::atomic<std::uint64_t> nPublished;
    std::atomic<std::uint64_t> nLatestKey;    ///< position of the latest key frame, or NoPosition
    std::atomic<std::uint64_t> nLatestPacket; ///< position of the latest packet, or NoPosition
    std::atomic<std::uint64_t> nSerial;       ///< packets written
    std::atomic<std::uint64_t> nDropped;      ///< packets that were too large
    unsigned char arRest[816 - 80];
    std::atomic<std::int32_t> nConnectStat; ///< written by the plug-in at each poll
    std::uint32_t nPad2;
    st_ParamBlock stParam;
};

static_assert(offsetof(st_Header, nConnectStat) == 816);
static_assert(sizeof(st_Header) <= HeaderSize);

/// Head of one packet. Multiple of 8 bytes: it is copied word by word.
struct st_RecordHead
{
    std::uint64_t nSerial;   ///< number of the packet, from 1; stands again behind the bytes
    std::uint64_t nPosition; ///< where it stands: a stale or foreign record can't pass for this one
    std::uint32_t nSize;
    std::uint32_t nFlags;
    std::int64_t nPtsUs;
    std::int64_t nDtsUs;
    std::int64_t nArrivalUs;
    std::uint64_t nParamSerial;
};

constexpr std::uint32_t FlagKey = 1;
constexpr std::size_t HeadSize = sizeof(st_RecordHead);
static_assert(HeadSize % Word == 0);

constexpr std::uint64_t Padded(std::uint64_t nBytes)
{
    return (nBytes + Word - 1) & ~std::uint64_t{Word - 1};
}

constexpr std::uint64_t RecordSize(std::uint64_t nPayload)
{
    return HeadSize + Padded(nPayload) + Word;
}

/// Name of a ring in shared memory, of this user. An empty instance stands for that of the process-wide environment.
std::string s_F_s_RingName(emDef_RingKind nKind, std::int32_t nNvrID, std::int32_t nChannel, std::int32_t nStream,
                           const std::string& sInstance = {});

/// Copies whole words between private memory and the log, wrapping at its end. Each word moves by a relaxed atomic
/// access: writer and reader may meet, and the reader finds out afterwards.
void CopyIn(unsigned char* pLog, std::uint64_t nCapacity, std::uint64_t nPosition, const void* pFrom,
            std::size_t nBytes);
void CopyOut(const unsigned char* pLog, std::uint64_t nCapacity, std::uint64_t nPosition, void* pTo,
             std::size_t nBytes);

} // namespace RingLayout
