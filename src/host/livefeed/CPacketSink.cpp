#include "host/livefeed/CPacketSink.h"

#include <algorithm>

#include "host/Lib_Bedrock.h"
#include "host/livefeed/CParameterSets.h"
#include "host/livefeed/CRingCodec.h"
#include "host/livefeed/CStreamSyntax.h"

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
    vm_bPieces = CStreamSyntax::s_F_b_HasUnits(vm_stParam.nCodec);
    const AVCodecParameters& stCodec = *stStream.codecpar;
    if (stCodec.extradata && stCodec.extradata_size > 0)
        vm_bLongSets = CParameterSets::s_F_n_Describe(vm_stParam, stCodec.extradata,
                                                      static_cast<std::size_t>(stCodec.extradata_size)) ==
                       CParameterSets::emDef_Taken::TooLong;
    vm_objUnit.m_S_Open(vm_stParam.nCodec);
    vm_nTimeNum = stStream.time_base.num;
    vm_nTimeDen = stStream.time_base.den;
}

void CPacketSink::m_S_Write(const AVPacket& stPacket, std::int64_t nArrivalUs)
{
    if (stPacket.size <= 0 || !m_F_b_HoldsRing(nArrivalUs))
        return;
    const auto nSize = static_cast<std::size_t>(stPacket.size);
    st_RingPacket stRing;
    stRing.nPtsUs = m_F_n_ToUs(stPacket.pts);
    stRing.nDtsUs = m_F_n_ToUs(stPacket.dts);
    stRing.nArrivalUs = nArrivalUs;
    stRing.bKey = true;
    if (!vm_bPieces) {
        const bool bSwap = vm_stParam.nCodec == emDef_RingCodec::PCM_S16LE;
        m_S_WriteWhole(stRing, bSwap ? m_F_p_Swapped(stPacket) : stPacket.data, nSize);
    } else if (vm_objUnit.m_F_b_Add(stPacket.data, nSize, stRing.nPtsUs, nArrivalUs)) {
        stRing.nPtsUs = vm_objUnit.m_F_n_PtsUs();
        stRing.nDtsUs = st_RingPacket::NoTime;
        stRing.nArrivalUs = vm_objUnit.m_F_n_ArrivalUs();
        stRing.bKey = vm_objUnit.m_F_b_Key();
        m_S_WriteWhole(stRing, vm_objUnit.m_F_ar_Bytes().data(), vm_objUnit.m_F_ar_Bytes().size());
    }
}

void CPacketSink::m_S_WriteWhole(const st_RingPacket& stRing, const std::uint8_t* pData, std::size_t nSize)
{
    if (vm_bNeedKey && !stRing.bKey) {
        if (vm_nLack == emDef_RingLack::Video)
            m_S_SetLack(emDef_RingLack::KeyFrame);
        return;
    }
    if (vm_bVideo && stRing.bKey && !m_F_b_FollowParam(pData, nSize))
        return m_S_SetLack(vm_bLongSets ? emDef_RingLack::LongSets : emDef_RingLack::ParameterSets);
    // A picture that the ring refuses takes those that build on it with it.
    vm_bNeedKey = !vm_pRing->m_F_b_Write(stRing, pData, static_cast<std::uint32_t>(nSize));
    vm_bWrote = vm_bWrote || !vm_bNeedKey;
    if (stRing.bKey)
        m_S_SetLack(vm_bNeedKey ? emDef_RingLack::Room : emDef_RingLack::Nothing);
}

void CPacketSink::m_S_SetLack(emDef_RingLack nLack)
{
    if (!vm_bVideo || nLack == vm_nLack)
        return;
    vm_nLack = nLack;
    vm_pRing->m_S_SetLack(nLack);
    if (nLack == emDef_RingLack::LongSets)
        CSFunc::s_S_Debug("A camera's parameter sets pass %zu bytes: its pictures can't be shown",
                          st_RingParam::MaxExtra);
    else if (nLack == emDef_RingLack::Room)
        CSFunc::s_S_Debug("A key frame doesn't fit into its ring, or there is no memory for it");
}

void CPacketSink::s_S_TellLack(CShmRing& objRing, emDef_RingLack nLack)
{
    if (!objRing.m_F_b_ClaimWriter(&objRing))
        return;
    objRing.m_S_SetLack(nLack);
    objRing.m_S_ReleaseWriter(&objRing);
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

bool CPacketSink::m_F_b_FollowParam(const std::uint8_t* pData, std::size_t nSize)
{
    // A JPEG tells all by itself, each time.
    const auto nTaken = CParameterSets::s_F_n_Take(vm_stParam, pData, nSize);
    if (nTaken != CParameterSets::emDef_Taken::Nothing)
        vm_bLongSets = nTaken == CParameterSets::emDef_Taken::TooLong;
    if (nTaken == CParameterSets::emDef_Taken::New || !vm_bSizeKnown || !vm_bPieces) {
        CParameterSets::s_S_FindSize(vm_stParam, pData, nSize);
        vm_bSizeKnown = vm_stParam.nWidth > 0;
        vm_pRing->m_F_b_SetParam(vm_stParam);
    }
    return !vm_bPieces || vm_stParam.nExtraSize > 0;
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
