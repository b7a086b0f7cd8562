#include "host/livefeed/CPacketSink.h"

#include <algorithm>

#include "host/livefeed/CParameterSets.h"
#include "host/livefeed/CRingCodec.h"

extern "C" {
#include <libavformat/avformat.h>
}

namespace {

constexpr std::int64_t ClaimAgainUs = 1000000;

} // namespace

CPacketSink::~CPacketSink()
{
    if (vm_bClaimed)
        vm_pRing->m_S_ReleaseWriter(this);
}

bool CPacketSink::s_F_b_CanCarry(const AVStream& stStream)
{
    return CRingCodec::s_F_n_FromAv(stStream.codecpar->codec_id) != emDef_RingCodec::None;
}

void CPacketSink::m_S_Open(CShmRing* pRing, const AVStream& stStream)
{
    vm_pRing = pRing;
    vm_stParam = CRingCodec::s_F_o_Param(*stStream.codecpar);
    vm_bVideo = stStream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO;
    vm_nTimeNum = stStream.time_base.num;
    vm_nTimeDen = stStream.time_base.den;
}

void CPacketSink::m_S_Write(const AVPacket& stPacket, std::int64_t nArrivalUs)
{
    if (stPacket.size <= 0 || !m_F_b_HoldsRing(nArrivalUs))
        return;
    const bool bKey = !vm_bVideo || (stPacket.flags & AV_PKT_FLAG_KEY) != 0;
    if ((vm_bNeedKey && !bKey) || (vm_bVideo && bKey && !m_F_b_FollowParam(stPacket)))
        return;
    st_RingPacket stRing;
    stRing.nPtsUs = m_F_n_ToUs(stPacket.pts);
    stRing.nDtsUs = m_F_n_ToUs(stPacket.dts);
    stRing.nArrivalUs = nArrivalUs;
    stRing.bKey = bKey;
    const bool bSwap = vm_stParam.nCodec == emDef_RingCodec::PCM_S16LE;
    // A picture that the ring refuses takes those that build on it with it.
    vm_bNeedKey = !vm_pRing->m_F_b_Write(stRing, bSwap ? m_F_p_Swapped(stPacket) : stPacket.data,
                                         static_cast<std::uint32_t>(stPacket.size));
}

bool CPacketSink::m_F_b_HoldsRing(std::int64_t nNowUs)
{
    if (vm_bClaimed || nNowUs < vm_nNextClaimUs)
        return vm_bClaimed;
    vm_nNextClaimUs = nNowUs + ClaimAgainUs;
    vm_bClaimed = vm_pRing->m_F_b_ClaimWriter(this);
    if (vm_bClaimed && !vm_bVideo)
        vm_pRing->m_F_b_SetParam(vm_stParam);
    return vm_bClaimed;
}

bool CPacketSink::m_F_b_FollowParam(const AVPacket& stPacket)
{
    const auto nSize = static_cast<std::size_t>(stPacket.size);
    const bool bJpeg = vm_stParam.nCodec == emDef_RingCodec::MJPEG; // each picture tells all by itself
    if (CParameterSets::s_F_b_Take(vm_stParam, stPacket.data, nSize) || !vm_bSizeKnown || bJpeg) {
        CParameterSets::s_S_FindSize(vm_stParam, stPacket.data, nSize);
        vm_bSizeKnown = vm_stParam.nWidth > 0;
        vm_pRing->m_F_b_SetParam(vm_stParam);
    }
    return bJpeg || vm_stParam.nExtraSize > 0;
}

std::int64_t CPacketSink::m_F_n_ToUs(std::int64_t nTicks) const
{
    if (nTicks == AV_NOPTS_VALUE)
        return st_RingPacket::NoTime;
    return av_rescale_q(nTicks, {vm_nTimeNum, vm_nTimeDen}, {1, 1000000});
}

const std::uint8_t* CPacketSink::m_F_p_Swapped(const AVPacket& stPacket)
{
    vm_arSwapped.assign(stPacket.data, stPacket.data + stPacket.size);
    for (std::size_t i = 0; i + 1 < vm_arSwapped.size(); i += 2)
        std::swap(vm_arSwapped[i], vm_arSwapped[i + 1]);
    return vm_arSwapped.data();
}
