#include "rtsp/CStreamFeed.h"

#include "scene/CClipLibrary.h"
#include "scene/CSceneClock.h"
#include "scene/CSoundMaker.h"

#include <algorithm>
#include <gst/app/gstappsrc.h>
#include <gst/gst.h>
#include <gst/rtsp-server/rtsp-server.h>
#include <string>

namespace {

constexpr std::int64_t g_nSecondNs = 1'000'000'000;
constexpr std::int64_t g_nPollNs = 10'000'000;      // how often a media that takes nothing is looked at again
constexpr std::int64_t g_nLateNs = g_nSecondNs / 2; // after a longer gap nothing is made up for
constexpr std::size_t g_nPieceSamples = 320;        // 40 ms a packet
constexpr guint64 g_nMaxQueued = 2;
constexpr std::uint64_t g_nNever = UINT64_MAX;
constexpr std::uint8_t g_arDelimiter[] = {0, 0, 1, 0x09, 0xf0}; // of access units, behind a start code
constexpr std::ptrdiff_t g_nStart = 3;                          // bytes of a start code

// What leaves a stream of a media: nothing from before its start or while paused, and time stamps that may have jumped.
// The stamps are changed behind the RTP session, so its sender reports don't tell of the jump, as with a camera whose
// clock was set.
struct stDef_Outlet
{
    std::shared_ptr<const stDef_StreamMount> pMount;
    std::shared_ptr<const std::atomic<std::uint64_t>> pStartNs;
    std::int64_t nClockHz;
};

GstClockTime TimeOf(const GstPadProbeInfo* pInfo)
{
    if ((pInfo->type & GST_PAD_PROBE_TYPE_BUFFER) != 0)
        return GST_BUFFER_PTS(GST_BUFFER(pInfo->data));
    GstBufferList* pList = GST_BUFFER_LIST(pInfo->data);
    return gst_buffer_list_length(pList) > 0 ? GST_BUFFER_PTS(gst_buffer_list_get(pList, 0)) : 0;
}

void ShiftTimeStamp(GstBuffer* pPacket, std::uint32_t nShift)
{
    constexpr gsize nAt = 4; // in the RTP header
    std::uint32_t nStamp = 0;
    if (gst_buffer_extract(pPacket, nAt, &nStamp, sizeof(nStamp)) != sizeof(nStamp))
        return;
    nStamp = GUINT32_TO_BE(GUINT32_FROM_BE(nStamp) + nShift);
    gst_buffer_fill(pPacket, nAt, &nStamp, sizeof(nStamp));
}

GstPadProbeReturn OnOutlet(GstPad*, GstPadProbeInfo* pInfo, gpointer pData)
{
    const auto& stOutlet = *static_cast<const stDef_Outlet*>(pData);
    if (stOutlet.pMount->bPaused || TimeOf(pInfo) < *stOutlet.pStartNs)
        return GST_PAD_PROBE_DROP;
    const long nJumpMs = stOutlet.pMount->nJumpMs;
    if (nJumpMs == 0)
        return GST_PAD_PROBE_OK;
    const auto nShift = static_cast<std::uint32_t>(nJumpMs * stOutlet.nClockHz / 1000); // wraps, as time stamps do
    if ((pInfo->type & GST_PAD_PROBE_TYPE_BUFFER_LIST) != 0) {
        GstBufferList* pList = gst_buffer_list_make_writable(GST_PAD_PROBE_INFO_BUFFER_LIST(pInfo));
        for (guint n = 0; n < gst_buffer_list_length(pList); ++n)
            ShiftTimeStamp(gst_buffer_list_get_writable(pList, n), nShift);
        pInfo->data = pList;
    } else {
        GstBuffer* pPacket = gst_buffer_make_writable(GST_PAD_PROBE_INFO_BUFFER(pInfo));
        ShiftTimeStamp(pPacket, nShift);
        pInfo->data = pPacket;
    }
    return GST_PAD_PROBE_OK;
}

// The pad by which a stream's packets leave the RTP session. Null if the media isn't prepared.
GstPad* OutletPad(GstRTSPStream* pStream)
{
    GstPad* pPayloader = gst_rtsp_stream_get_srcpad(pStream);
    GstPad* pEntry = pPayloader != nullptr ? gst_pad_get_peer(pPayloader) : nullptr; // "send_rtp_sink_<n>"
    GstElement* pSession = pEntry != nullptr ? gst_pad_get_parent_element(pEntry) : nullptr;
    GstPad* pOutlet = nullptr;
    if (pSession != nullptr) {
        std::string sName = GST_PAD_NAME(pEntry);
        if (const std::size_t nSink = sName.find("sink"); nSink != std::string::npos)
            pOutlet = gst_element_get_static_pad(pSession, sName.replace(nSink, 4, "src").c_str());
    }
    g_clear_object(&pSession);
    g_clear_object(&pEntry);
    g_clear_object(&pPayloader);
    return pOutlet;
}

// Sender reports tell the time of capture. Else those for the first packets, which are sent before the pipeline knows
// its latency, would tell a wrong one, and time stamps would leap back at a client when the next report puts it right.
void OnElement(GstBin*, GstElement* pElement, gpointer)
{
    if (g_object_class_find_property(G_OBJECT_GET_CLASS(pElement), "rtcp-sync-send-time") != nullptr)
        g_object_set(pElement, "rtcp-sync-send-time", FALSE, nullptr);
}

void WatchPipeline(GstRTSPMedia* pMedia)
{
    GstElement* pBin = gst_rtsp_media_get_element(pMedia);
    GstObject* pPipeline = gst_object_get_parent(GST_OBJECT(pBin));
    if (pPipeline != nullptr) {
        g_signal_connect(pPipeline, "element-added", G_CALLBACK(&OnElement), nullptr);
        gst_object_unref(pPipeline);
    }
    gst_object_unref(pBin);
}

std::vector<std::uint8_t>::const_iterator NextStart(const std::vector<std::uint8_t>& arUnit,
                                                    std::vector<std::uint8_t>::const_iterator itFrom)
{
    return std::search(itFrom, arUnit.end(), std::begin(g_arDelimiter), std::begin(g_arDelimiter) + g_nStart);
}

GstElement* Source(GstRTSPMedia* pMedia, const char* pszName)
{
    GstElement* pBin = gst_rtsp_media_get_element(pMedia);
    GstElement* pSource = gst_bin_get_by_name(GST_BIN(pBin), pszName);
    gst_object_unref(pBin);
    return pSource;
}

bool IsPlaying(GstElement* pElement)
{
    GstState eState = GST_STATE_NULL;
    gst_element_get_state(pElement, &eState, nullptr, 0);
    return eState == GST_STATE_PLAYING;
}

} // namespace

CStreamFeed::CStreamFeed(GstRTSPMedia* pMedia, std::shared_ptr<const stDef_StreamMount> pMount)
    : vm_pMount(std::move(pMount)),
      vm_pClip(CClipLibrary::s_F_o_Shared().m_F_p_Get(vm_pMount->nChannel, vm_pMount->bSecond)),
      vm_arSound(CSoundMaker::s_F_ar_Make(vm_pMount->nChannel)),
      vm_arPiece(g_nPieceSamples),
      vm_pStartNs(std::make_shared<std::atomic<std::uint64_t>>(g_nNever)),
      vm_stVideo{Source(pMedia, "video"), g_nSecondNs / stDef_EncodedClip::s_nFps, 0},
      vm_stAudio{Source(pMedia, "audio"), g_nSecondNs * g_nPieceSamples / CSoundMaker::s_nRate, 0}
{
    WatchPipeline(pMedia);
}

CStreamFeed::~CStreamFeed()
{
    gst_object_unref(vm_stVideo.pSource);
    gst_object_unref(vm_stAudio.pSource);
}

void CStreamFeed::m_S_OnPrepared(GstRTSPMedia* pMedia)
{
    constexpr std::int64_t arClockHz[] = {90000, CSoundMaker::s_nRate};
    for (guint n = 0; n < gst_rtsp_media_n_streams(pMedia) && n < std::size(arClockHz); ++n) {
        GstPad* pPad = OutletPad(gst_rtsp_media_get_stream(pMedia, n));
        if (pPad == nullptr)
            continue;
        gst_pad_add_probe(pPad, GstPadProbeType(GST_PAD_PROBE_TYPE_BUFFER | GST_PAD_PROBE_TYPE_BUFFER_LIST), &OnOutlet,
                          new stDef_Outlet{vm_pMount, vm_pStartNs, arClockHz[n]},
                          [](gpointer pData) { delete static_cast<stDef_Outlet*>(pData); });
        gst_object_unref(pPad);
    }
}

void CStreamFeed::m_S_OnPlaying()
{
    vm_bPlaying = true;
}

// What follows must be a key frame: of the clip, or the first of a new live view.
void CStreamFeed::m_S_SkipToKey()
{
    vm_pLive.reset();
    while (!vm_pClip->arUnits[vm_nFrame].bKey)
        vm_nFrame = (vm_nFrame + 1) % vm_pClip->arUnits.size();
}

// As above, after a gap that leaves the order of pictures free.
void CStreamFeed::m_S_TakeKey(std::int64_t nNowNs)
{
    vm_pLive.reset();
    vm_nFrame = static_cast<std::size_t>(CSceneClock::s_F_n_KeyFrame(nNowNs)) % vm_pClip->arUnits.size();
}

const std::vector<std::uint8_t>& CStreamFeed::m_F_ar_NextPicture()
{
    const std::vector<std::uint8_t>* pLive = m_F_p_LivePicture();
    const auto& stUnit = vm_pClip->arUnits[vm_nFrame];
    vm_stVideo.nPeriodNs = CSceneClock::s_F_n_PeriodNs(static_cast<int>(vm_nFrame), vm_stVideo.nDueNs);
    vm_nFrame = (vm_nFrame + 1) % vm_pClip->arUnits.size();
    return m_F_ar_Spoilt(pLive != nullptr ? *pLive : stUnit.arBytes);
}

// The picture as the faults leave it. The piece that only prepares the media keeps its key frame.
const std::vector<std::uint8_t>& CStreamFeed::m_F_ar_Spoilt(const std::vector<std::uint8_t>& arUnit)
{
    const bool bNoKey = vm_pMount->bNoKey && vm_bPlaying;
    const bool bNoSets = vm_pMount->bNoSets;
    if (!bNoKey && !bNoSets)
        return arUnit;
    vm_arSpoilt.assign(std::begin(g_arDelimiter), std::end(g_arDelimiter)); // never nothing at all
    for (auto it = NextStart(arUnit, arUnit.begin()); arUnit.end() - it > g_nStart;) {
        const auto itNext = NextStart(arUnit, it + g_nStart);
        const int nType = it[g_nStart] & 0x1f;
        const bool bDropped = (bNoKey && nType == 5) || (bNoSets && (nType == 7 || nType == 8)); // IDR, SPS, PPS
        if (!bDropped)
            vm_arSpoilt.insert(vm_arSpoilt.end(), it, itNext);
        it = itNext;
    }
    return vm_arSpoilt;
}

// Null where the clip's picture is to be sent. A camera that comes home turns to the clip at its next key frame.
const std::vector<std::uint8_t>* CStreamFeed::m_F_p_LivePicture()
{
    if (!vm_pMount->pPtz)
        return nullptr;
    const stDef_PtzView stView = vm_pMount->pPtz->m_F_o_View(vm_pMount->nChannel);
    if (stView == stDef_PtzView() && (!vm_pLive || vm_pClip->arUnits[vm_nFrame].bKey)) {
        vm_pLive.reset();
        return nullptr;
    }
    if (!vm_pLive)
        vm_pLive = std::make_unique<CLiveView>(vm_pMount->nChannel, vm_pMount->bSecond != vm_bOther);
    return vm_pLive->m_F_p_Picture(static_cast<int>(vm_nFrame), stView);
}

const std::vector<std::uint8_t>& CStreamFeed::m_F_ar_NextSound()
{
    std::copy_n(vm_arSound.begin() + static_cast<std::ptrdiff_t>(vm_nSound), g_nPieceSamples, vm_arPiece.begin());
    vm_nSound = (vm_nSound + g_nPieceSamples) % vm_arSound.size();
    return vm_arPiece;
}

// A track's due time never runs ahead of the clock: where the media takes nothing, it waits there, and the next piece
// has the time of its own push.
template <typename Piece>
void CStreamFeed::m_S_PushTrack(stDef_Track& stTrack, std::int64_t nNowNs, std::int64_t nBaseNs, Piece nextPiece)
{
    GstAppSrc* pSource = GST_APP_SRC(stTrack.pSource);
    if (nNowNs - stTrack.nDueNs > g_nLateNs)
        stTrack.nDueNs = nNowNs;
    while (stTrack.nDueNs <= nNowNs) {
        if (gst_app_src_get_current_level_buffers(pSource) >= g_nMaxQueued) {
            stTrack.nDueNs = nNowNs + g_nPollNs;
            return;
        }
        const std::vector<std::uint8_t>& arPiece = nextPiece();
        GstBuffer* pBuffer = gst_buffer_new_memdup(arPiece.data(), arPiece.size());
        const auto nStamp = static_cast<GstClockTime>(std::max<std::int64_t>(stTrack.nDueNs - nBaseNs, 0));
        GST_BUFFER_PTS(pBuffer) = GST_BUFFER_DTS(pBuffer) = nStamp;
        GST_BUFFER_DURATION(pBuffer) = static_cast<GstClockTime>(stTrack.nPeriodNs);
        const bool bTaken = gst_app_src_push_buffer(pSource, pBuffer) == GST_FLOW_OK;
        stTrack.nDueNs = bTaken ? stTrack.nDueNs + stTrack.nPeriodNs : nNowNs + g_nPollNs;
    }
}

// The other clip was encoded before the fault was set; the pictures' numbers go on in order.
void CStreamFeed::m_S_ChooseClip()
{
    const bool bOther = vm_pMount->bOtherClip;
    if (bOther == vm_bOther)
        return;
    vm_bOther = bOther;
    if (auto pClip = CClipLibrary::s_F_o_Shared().m_F_p_Get(vm_pMount->nChannel, vm_pMount->bSecond != bOther))
        vm_pClip = std::move(pClip);
    m_S_SkipToKey();
}

// Before somebody plays, the media needs one piece of each track to be prepared; it doesn't go out. With the start, the
// clip begins at the key frame next to the scene's clock, so that no client gets pictures that waited for it.
bool CStreamFeed::m_F_b_Begin(std::int64_t nNowNs, std::int64_t nBaseNs)
{
    if (!vm_bPlaying)
        return vm_nFrame == 0 && vm_nSound == 0;
    if (*vm_pStartNs == g_nNever) {
        m_S_TakeKey(nNowNs);
        vm_nSound = 0;
        vm_stVideo.nDueNs = vm_stAudio.nDueNs = nNowNs;
        *vm_pStartNs = static_cast<std::uint64_t>(std::max<std::int64_t>(nNowNs - nBaseNs, 0));
    }
    vm_bHeld = vm_bHeld || vm_pMount->bPaused;
    return !vm_pMount->bPaused;
}

std::int64_t CStreamFeed::m_F_n_Push(std::int64_t nNowNs)
{
    const auto nBaseNs = static_cast<std::int64_t>(gst_element_get_base_time(vm_stVideo.pSource));
    if (!vm_pClip || !IsPlaying(vm_stVideo.pSource) || !IsPlaying(vm_stAudio.pSource) || !m_F_b_Begin(nNowNs, nBaseNs))
        return nNowNs + g_nPollNs;
    m_S_ChooseClip();
    if (vm_bHeld)
        m_S_TakeKey(nNowNs);
    vm_bHeld = false;
    m_S_PushTrack(
        vm_stVideo, nNowNs, nBaseNs, [this]() -> const auto& { return m_F_ar_NextPicture(); });
    m_S_PushTrack(
        vm_stAudio, nNowNs, nBaseNs, [this]() -> const auto& { return m_F_ar_NextSound(); });
    return std::min(vm_stVideo.nDueNs, vm_stAudio.nDueNs);
}
