#pragma once

#include <cstdint>
#include <vector>

#include "host/hostenv/CShmRing.h"
#include "host/livefeed/CAccessUnit.h"

struct AVPacket;
struct AVStream;

/// The way of one medium of a connection into its ring: claims the ring's writer, publishes the codec parameters, turns
/// time stamps into microseconds, and lets nothing in before the first key frame. A ring that another connection writes
/// is asked for again once a second. Belongs to the connection's thread.
class CPacketSink
{
public:
    CPacketSink() = default;
    ~CPacketSink(); ///< gives the ring back
    CPacketSink(const CPacketSink&) = delete;
    CPacketSink& operator=(const CPacketSink&) = delete;

    /// True if rings carry what this stream has.
    static bool s_F_b_CanCarry(const AVStream& stStream);

    /// Tells readers what keeps pictures out of a ring, unless another connection writes it.
    static void s_S_TellLack(CShmRing& objRing, emDef_RingLack nLack);

    /// The ring is not owned and must outlive this object.
    void m_S_Open(CShmRing* pRing, const AVStream& stStream);
    bool m_F_b_IsOpen() const { return vm_pRing != nullptr; }
    bool m_F_b_HasRing() const { return vm_pRing && vm_pRing->m_F_b_IsAttached(); }
    /// True once a packet of this connection stands in the ring.
    bool m_F_b_Wrote() const { return vm_bWrote; }

    /// Takes one packet, a whole one or a piece of a picture, that came at `nArrivalUs` of the steady clock.
    void m_S_Write(const AVPacket& stPacket, std::int64_t nArrivalUs);

private:
    void m_S_WriteWhole(const st_RingPacket& stRing, const std::uint8_t* pData, std::size_t nSize);
    bool m_F_b_HoldsRing(std::int64_t nNowUs);
    /// Publishes the parameters of a key frame if they are new; false if a decoder could make nothing of it.
    bool m_F_b_FollowParam(const std::uint8_t* pData, std::size_t nSize);
    void m_S_SetLack(emDef_RingLack nLack);
    std::int64_t m_F_n_ToUs(std::int64_t nTicks) const;
    const std::uint8_t* m_F_p_Swapped(const AVPacket& stPacket);

    CShmRing* vm_pRing = nullptr;
    st_RingParam vm_stParam;
    CAccessUnit vm_objUnit;
    bool vm_bVideo = false;
    bool vm_bPieces = false; ///< packets are pieces of pictures
    bool vm_bClaimed = false;
    bool vm_bWrote = false;
    bool vm_bNeedKey = true;    ///< what comes before the next key frame can't be decoded
    bool vm_bSizeKnown = false; ///< of the extra bytes in force
    bool vm_bLongSets = false;  ///< those that came last didn't fit
    emDef_RingLack vm_nLack = emDef_RingLack::Video;
    std::int64_t vm_nNextClaimUs = 0;
    int vm_nTimeNum = 1; ///< one tick is so many over vm_nTimeDen seconds
    int vm_nTimeDen = 1;
    std::vector<std::uint8_t> vm_arSwapped; ///< keeps its capacity
};
