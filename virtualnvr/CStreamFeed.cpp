#include "CStreamFeed.h"

#include <chrono>
#include <cmath>
#include <gst/app/gstappsrc.h>

namespace {

constexpr std::int64_t SecondNs = 1000000000;
constexpr std::int64_t FrameNs = SecondNs / stDef_EncodedClip::s_nFps;
constexpr int SampleRate = 8000;
constexpr int PieceSamples = 320; // 40 ms a packet
constexpr std::int64_t PieceNs = SecondNs * PieceSamples / SampleRate;

std::int64_t NowNs()
{
    return std::chrono::steady_clock::now().time_since_epoch() / std::chrono::nanoseconds(1);
}

/// One sample in mu-law.
std::uint8_t MuLaw(int nSample)
{
    constexpr int Bias = 0x84;
    const int nSign = nSample < 0 ? 0x80 : 0;
    int nLevel = std::min(std::abs(nSample), 32635) + Bias;
    int nExponent = 7;
    for (int nMask = 0x4000; nExponent > 0 && !(nLevel & nMask); nMask >>= 1)
        --nExponent;
    return static_cast<std::uint8_t>(~(nSign | (nExponent << 4) | ((nLevel >> (nExponent + 3)) & 0x0F)));
}

/// A second of a quiet two-note hum of its own for each channel; whole periods, so that it loops without a click.
std::vector<std::uint8_t> Tone(int nChannel)
{
    std::vector<std::uint8_t> arTone(SampleRate);
    const double dHz = 220 + 20 * (nChannel % 16);
    for (int i = 0; i < SampleRate; ++i) {
        const double dTime = 2 * M_PI * i / SampleRate;
        arTone[static_cast<std::size_t>(i)] = MuLaw(
            static_cast<int>(900 * std::sin(dHz * dTime) + 400 * std::sin(1.5 * dHz * dTime) * (1 + std::sin(dTime))));
    }
    return arTone;
}

bool Push(GstElement* pSource, const std::uint8_t* pData, std::size_t nSize, std::int64_t nPtsNs,
          std::int64_t nDurationNs)
{
    GstBuffer* pBuffer = gst_buffer_new_allocate(nullptr, nSize, nullptr);
    gst_buffer_fill(pBuffer, 0, pData, nSize);
    GST_BUFFER_PTS(pBuffer) = GST_BUFFER_DTS(pBuffer) = static_cast<GstClockTime>(std::max<std::int64_t>(nPtsNs, 0));
    GST_BUFFER_DURATION(pBuffer) = static_cast<GstClockTime>(nDurationNs);
    return gst_app_src_push_buffer(GST_APP_SRC(pSource), pBuffer) == GST_FLOW_OK;
}

} // namespace

CStreamFeed::CStreamFeed(GstElement* pVideo, GstElement* pAudio, std::shared_ptr<const stDef_EncodedClip> pClip,
                         std::shared_ptr<const stDef_EncodedClip> pOther, int nChannel,
                         std::shared_ptr<stDef_FeedFaults> pFaults)
    : vm_pVideo(pVideo),
      vm_pAudio(pAudio),
      vm_pClip(std::move(pClip)),
      vm_pOther(std::move(pOther)),
      vm_arTone(Tone(nChannel)),
      vm_pFaults(std::move(pFaults)),
      vm_nStartNs(NowNs())
{}

CStreamFeed::~CStreamFeed()
{
    gst_object_unref(vm_pVideo);
    gst_object_unref(vm_pAudio);
}

bool CStreamFeed::m_F_b_PushVideo(std::int64_t nDueNs)
{
    const std::int64_t nOffsetNs = vm_pFaults->nJumpMs * 1000000;
    bool bTaken = true;
    for (; vm_nNextFrame * FrameNs <= nDueNs && bTaken; ++vm_nNextFrame) {
        if (vm_pFaults->bOtherClip != vm_bOther) {
            vm_bOther = !vm_bOther;
            vm_bNeedKey = true;
        }
        const stDef_EncodedClip& stClip = vm_bOther ? *vm_pOther : *vm_pClip;
        const auto& stUnit = stClip.arUnits[static_cast<std::size_t>(vm_nNextFrame) % stClip.arUnits.size()];
        if (vm_pFaults->bPaused) {
            vm_bNeedKey = true;
            continue;
        }
        if (vm_bNeedKey && !stUnit.bKey)
            continue;
        vm_bNeedKey = false;
        bTaken =
            Push(vm_pVideo, stUnit.arBytes.data(), stUnit.arBytes.size(), vm_nNextFrame * FrameNs + nOffsetNs, FrameNs);
    }
    return bTaken;
}

bool CStreamFeed::m_F_b_PushAudio(std::int64_t nDueNs)
{
    const std::int64_t nOffsetNs = vm_pFaults->nJumpMs * 1000000;
    bool bTaken = true;
    for (; vm_nNextSound * PieceNs <= nDueNs && bTaken; ++vm_nNextSound) {
        const std::size_t nAt = static_cast<std::size_t>(vm_nNextSound * PieceSamples) % vm_arTone.size();
        if (!vm_pFaults->bPaused)
            bTaken =
                Push(vm_pAudio, vm_arTone.data() + nAt, PieceSamples, vm_nNextSound * PieceNs + nOffsetNs, PieceNs);
    }
    return bTaken;
}

bool CStreamFeed::m_F_b_PushDue()
{
    const std::int64_t nDueNs = NowNs() - vm_nStartNs;
    return m_F_b_PushVideo(nDueNs) && m_F_b_PushAudio(nDueNs);
}
