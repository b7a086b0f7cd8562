#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "host/Export.h"
#include "host/hostenv/CShmRing.h"

/// A packet as a reader got it. The buffer keeps its capacity from read to read.
struct st_RingFrame
{
    st_RingPacket stPacket;
    std::uint64_t nSerial = 0; ///< counts the packets of the ring from 1; a gap: packets lost, or another writer
    std::vector<std::uint8_t> arData;
};

/// Result of one read.
enum class emDef_RingRead
{
    Frame,  ///< a whole packet
    Empty,  ///< nothing new
    Lost,   ///< the writer overtook the reader, which now stands at the latest key frame; read again
    Closed, ///< not open, or the writer has removed the ring: open again later
    Bad     ///< the ring's memory is not what it should be; the reader has closed itself
};

/// The reader's side of a ring, in any process. Maps the ring read-only, takes no lock, and trusts nothing in it: every
/// offset and size is checked, and a packet that was overwritten while it was copied is never handed out.
/// One object belongs to one thread at a time.
class LIB_HOSTENV_EXPORT CShmRingReader
{
public:
    CShmRingReader();
    ~CShmRingReader();
    CShmRingReader(const CShmRingReader&) = delete;
    CShmRingReader& operator=(const CShmRingReader&) = delete;

    /// Opens an existing ring and stands at its latest key frame (video) or latest packet (audio). The instance is that
    /// of the environment of who writes it (`CEnvObj::m_F_s_Instance`); empty stands for the process-wide one. False if
    /// there is no such ring.
    bool m_F_b_Open(emDef_RingKind nKind, std::int32_t nNvrID, std::int32_t nChannel, std::int32_t nStream,
                    const std::string& sInstance = {});
    void m_S_Close();
    bool m_F_b_IsOpen() const;

    /// Reads the next packet.
    emDef_RingRead m_F_n_Read(st_RingFrame& stFrame);

    /// Waits until there is a packet to read, at most `nTimeoutMs` (0 polls). True if there is one.
    bool m_F_b_Wait(std::int32_t nTimeoutMs);

    /// Moves to the latest key frame that is still in the ring; false if there is none.
    bool m_F_b_SeekToLatestKey();

    /// The codec parameters in force and their serial; false while there are none.
    bool m_F_b_GetParam(st_RingParam& stParam, std::uint32_t& nSerial) const;

    /// `nsCMS::emDef_ConnectStat` as the plug-in last stored it; 0 if not open.
    std::int32_t m_F_n_ConnectStat() const;

    /// What the writer says keeps pictures out; `Nothing` if not open.
    emDef_RingLack m_F_n_Lack() const;

private:
    struct st_Impl;
    std::unique_ptr<st_Impl> vm_pImpl;
};
