#include "CEncodedClip.h"

#include "CPictureMaker.h"

#include <gst/app/gstappsink.h>
#include <gst/app/gstappsrc.h>
#include <gst/gst.h>

namespace {

struct stDef_Format
{
    int nWidth, nHeight, nKbps;
};

constexpr stDef_Format g_stMain{640, 360, 800};
constexpr stDef_Format g_stSecond{320, 180, 250};

struct stDef_Plugin
{
    const char* pszElement;
    const char* pszPackage;
};

constexpr stDef_Plugin g_arPlugins[] = {
    {"appsrc", "gstreamer1.0-plugins-base"},     {"x264enc", "gstreamer1.0-plugins-ugly"},
    {"h264parse", "gstreamer1.0-plugins-bad"},   {"rtph264pay", "gstreamer1.0-plugins-good"},
    {"rtppcmupay", "gstreamer1.0-plugins-good"}, {"udpsink", "gstreamer1.0-plugins-good"},
};

void PushFrames(GstElement* pSource, CPictureMaker& objMaker)
{
    for (int i = 0; i < stDef_EncodedClip::s_nFrames; ++i) {
        const std::vector<std::uint8_t>& arPicture = objMaker.m_F_ar_Draw(i);
        GstBuffer* pBuffer = gst_buffer_new_allocate(nullptr, arPicture.size(), nullptr);
        gst_buffer_fill(pBuffer, 0, arPicture.data(), arPicture.size());
        GST_BUFFER_PTS(pBuffer) = gst_util_uint64_scale(static_cast<guint64>(i), GST_SECOND, stDef_EncodedClip::s_nFps);
        GST_BUFFER_DURATION(pBuffer) = GST_SECOND / stDef_EncodedClip::s_nFps;
        gst_app_src_push_buffer(GST_APP_SRC(pSource), pBuffer);
    }
    gst_app_src_end_of_stream(GST_APP_SRC(pSource));
}

void PullUnits(GstElement* pSink, stDef_EncodedClip& stClip)
{
    while (GstSample* pSample = gst_app_sink_pull_sample(GST_APP_SINK(pSink))) {
        GstBuffer* pBuffer = gst_sample_get_buffer(pSample);
        stDef_EncodedClip::stDef_Unit& stUnit = stClip.arUnits.emplace_back();
        stUnit.bKey = !GST_BUFFER_FLAG_IS_SET(pBuffer, GST_BUFFER_FLAG_DELTA_UNIT);
        stUnit.arBytes.resize(gst_buffer_get_size(pBuffer));
        gst_buffer_extract(pBuffer, 0, stUnit.arBytes.data(), stUnit.arBytes.size());
        gst_sample_unref(pSample);
    }
}

std::shared_ptr<const stDef_EncodedClip> Encode(int nChannel, bool bSecond)
{
    const stDef_Format& stFormat = bSecond ? g_stSecond : g_stMain;
    const std::string sLaunch =
        "appsrc name=in format=time max-bytes=0 caps=video/x-raw,format=I420,width=" + std::to_string(stFormat.nWidth) +
        ",height=" + std::to_string(stFormat.nHeight) + ",framerate=" + std::to_string(stDef_EncodedClip::s_nFps) +
        "/1 ! x264enc speed-preset=superfast tune=zerolatency threads=1 bframes=0 key-int-max=" +
        std::to_string(stDef_EncodedClip::s_nGop) +
        " option-string=scenecut=0 bitrate=" + std::to_string(stFormat.nKbps) +
        " ! video/x-h264,profile=main ! h264parse config-interval=-1"
        " ! video/x-h264,stream-format=byte-stream,alignment=au ! appsink name=out sync=false";
    GError* pError = nullptr;
    GstElement* pPipeline = gst_parse_launch(sLaunch.c_str(), &pError);
    g_clear_error(&pError);
    if (!pPipeline)
        return nullptr;
    auto pClip = std::make_shared<stDef_EncodedClip>();
    pClip->nWidth = stFormat.nWidth;
    pClip->nHeight = stFormat.nHeight;
    GstElement* pSource = gst_bin_get_by_name(GST_BIN(pPipeline), "in");
    GstElement* pSink = gst_bin_get_by_name(GST_BIN(pPipeline), "out");
    CPictureMaker objMaker(nChannel, bSecond, stFormat.nWidth, stFormat.nHeight, stDef_EncodedClip::s_nFrames,
                           stDef_EncodedClip::s_nFps);
    gst_element_set_state(pPipeline, GST_STATE_PLAYING);
    PushFrames(pSource, objMaker);
    PullUnits(pSink, *pClip);
    gst_element_set_state(pPipeline, GST_STATE_NULL);
    gst_object_unref(pSource);
    gst_object_unref(pSink);
    gst_object_unref(pPipeline);
    return pClip->arUnits.size() == stDef_EncodedClip::s_nFrames ? pClip : nullptr;
}

} // namespace

std::string CClipLibrary::s_F_s_Missing()
{
    for (const stDef_Plugin& stPlugin : g_arPlugins) {
        GstElementFactory* pFactory = gst_element_factory_find(stPlugin.pszElement);
        if (!pFactory)
            return std::string("GStreamer has no ") + stPlugin.pszElement + "; install " + stPlugin.pszPackage;
        gst_object_unref(pFactory);
    }
    return {};
}

std::shared_ptr<const stDef_EncodedClip> CClipLibrary::m_F_p_Get(int nChannel, bool bSecond)
{
    stDef_Slot* pSlot = nullptr;
    {
        const std::lock_guard lock(vm_objMutex);
        auto& pKnown = vm_mapSlots[{nChannel, bSecond}];
        if (!pKnown)
            pKnown = std::make_unique<stDef_Slot>();
        pSlot = pKnown.get();
    }
    const std::lock_guard lock(pSlot->objMutex);
    if (!pSlot->pClip)
        pSlot->pClip = Encode(nChannel, bSecond);
    return pSlot->pClip;
}
