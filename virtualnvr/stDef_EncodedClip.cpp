#include "stDef_EncodedClip.h"

#include "CPictureMaker.h"

#include <cstdio>
#include <gst/app/gstappsink.h>
#include <gst/app/gstappsrc.h>
#include <gst/gst.h>

namespace {

struct stDef_Format
{
    int nWidth, nHeight, nQuantizer;
};

constexpr stDef_Format g_stMain{640, 360, 22};
constexpr stDef_Format g_stSecond{320, 180, 25};

// One thread and no look-ahead make the result the same each time.
constexpr const char* g_pszLaunch =
    "appsrc name=in format=time max-bytes=0 caps=video/x-raw,format=I420,width=%d,height=%d,framerate=%d/1 "
    "! x264enc speed-preset=ultrafast tune=zerolatency threads=1 bframes=0 pass=quant quantizer=%d key-int-max=%d "
    "aud=false option-string=scenecut=0:repeat-headers=1 "
    "! video/x-h264,profile=main,stream-format=byte-stream,alignment=au ! appsink name=out sync=false max-buffers=0";

void PushFrames(GstAppSrc* pSource, CPictureMaker& objMaker)
{
    for (int nFrame = 0; nFrame < stDef_EncodedClip::s_nFrames; ++nFrame) {
        const std::vector<std::uint8_t>& arPicture = objMaker.m_F_ar_Draw(nFrame);
        GstBuffer* pBuffer = gst_buffer_new_memdup(arPicture.data(), arPicture.size());
        GST_BUFFER_PTS(pBuffer) =
            gst_util_uint64_scale(static_cast<guint64>(nFrame), GST_SECOND, stDef_EncodedClip::s_nFps);
        GST_BUFFER_DURATION(pBuffer) = GST_SECOND / stDef_EncodedClip::s_nFps;
        gst_app_src_push_buffer(pSource, pBuffer);
    }
    gst_app_src_end_of_stream(pSource);
}

void PullUnits(GstAppSink* pSink, stDef_EncodedClip& stClip)
{
    while (GstSample* pSample = gst_app_sink_pull_sample(pSink)) {
        GstBuffer* pBuffer = gst_sample_get_buffer(pSample);
        stDef_EncodedClip::stDef_Unit& stUnit = stClip.arUnits.emplace_back();
        stUnit.bKey = !GST_BUFFER_FLAG_IS_SET(pBuffer, GST_BUFFER_FLAG_DELTA_UNIT);
        stUnit.arBytes.resize(gst_buffer_get_size(pBuffer));
        gst_buffer_extract(pBuffer, 0, stUnit.arBytes.data(), stUnit.arBytes.size());
        gst_sample_unref(pSample);
    }
}

} // namespace

std::shared_ptr<const stDef_EncodedClip> stDef_EncodedClip::s_F_p_Encode(int nChannel, bool bSecond)
{
    const stDef_Format& stFormat = bSecond ? g_stSecond : g_stMain;
    char acLaunch[640];
    std::snprintf(acLaunch, sizeof(acLaunch), g_pszLaunch, stFormat.nWidth, stFormat.nHeight, s_nFps,
                  stFormat.nQuantizer, s_nGop);
    GstElement* pPipeline = gst_parse_launch_full(acLaunch, nullptr, GST_PARSE_FLAG_FATAL_ERRORS, nullptr);
    if (pPipeline == nullptr)
        return nullptr;
    auto pClip = std::make_shared<stDef_EncodedClip>();
    pClip->nWidth = stFormat.nWidth;
    pClip->nHeight = stFormat.nHeight;
    GstElement* pSource = gst_bin_get_by_name(GST_BIN(pPipeline), "in");
    GstElement* pSink = gst_bin_get_by_name(GST_BIN(pPipeline), "out");
    CPictureMaker objMaker(nChannel, bSecond, stFormat.nWidth, stFormat.nHeight, s_nFrames, s_nFps);
    if (gst_element_set_state(pPipeline, GST_STATE_PLAYING) != GST_STATE_CHANGE_FAILURE) {
        PushFrames(GST_APP_SRC(pSource), objMaker);
        PullUnits(GST_APP_SINK(pSink), *pClip);
    }
    gst_element_set_state(pPipeline, GST_STATE_NULL);
    gst_object_unref(pSource);
    gst_object_unref(pSink);
    gst_object_unref(pPipeline);
    return pClip->arUnits.size() == s_nFrames && pClip->arUnits.front().bKey ? pClip : nullptr;
}
