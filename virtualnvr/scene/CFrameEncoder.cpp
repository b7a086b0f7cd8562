#include "scene/CFrameEncoder.h"

#include "scene/CGstPlugins.h"

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
constexpr GstClockTime g_nPullLimit = 5 * GST_SECOND;

// One thread and no look-ahead make the result the same each time.
constexpr const char* g_pszLaunch =
    "appsrc name=in format=time max-bytes=0 caps=video/x-raw,format=I420,width=%d,height=%d,framerate=%d/1 "
    "! x264enc speed-preset=ultrafast tune=zerolatency threads=1 bframes=0 pass=quant quantizer=%d key-int-max=%d "
    "aud=false option-string=scenecut=0:repeat-headers=1 "
    "! video/x-h264,profile=main,stream-format=byte-stream,alignment=au ! appsink name=out sync=false max-buffers=0";

const stDef_Format& FormatOf(bool bSecond)
{
    return bSecond ? g_stSecond : g_stMain;
}

} // namespace

std::unique_ptr<CFrameEncoder> CFrameEncoder::s_F_p_Make(bool bSecond)
{
    const stDef_Format& stFormat = FormatOf(bSecond);
    std::string sMissing;
    if (!CGstPlugins::s_F_b_Load(sMissing)) // recordings are encoded without a stream server, too
        return nullptr;
    char acLaunch[640];
    std::snprintf(acLaunch, sizeof(acLaunch), g_pszLaunch, stFormat.nWidth, stFormat.nHeight, stDef_EncodedClip::s_nFps,
                  stFormat.nQuantizer, stDef_EncodedClip::s_nGop);
    std::unique_ptr<CFrameEncoder> pEncoder(new CFrameEncoder);
    pEncoder->vm_pPipeline = gst_parse_launch_full(acLaunch, nullptr, GST_PARSE_FLAG_FATAL_ERRORS, nullptr);
    if (pEncoder->vm_pPipeline == nullptr)
        return nullptr;
    pEncoder->vm_pSource = gst_bin_get_by_name(GST_BIN(pEncoder->vm_pPipeline), "in");
    pEncoder->vm_pSink = gst_bin_get_by_name(GST_BIN(pEncoder->vm_pPipeline), "out");
    if (gst_element_set_state(pEncoder->vm_pPipeline, GST_STATE_PLAYING) == GST_STATE_CHANGE_FAILURE)
        return nullptr;
    return pEncoder;
}

CFrameEncoder::~CFrameEncoder()
{
    if (vm_pPipeline == nullptr)
        return;
    gst_element_set_state(vm_pPipeline, GST_STATE_NULL);
    gst_object_unref(vm_pSource);
    gst_object_unref(vm_pSink);
    gst_object_unref(vm_pPipeline);
}

int CFrameEncoder::s_F_n_Width(bool bSecond)
{
    return FormatOf(bSecond).nWidth;
}

int CFrameEncoder::s_F_n_Height(bool bSecond)
{
    return FormatOf(bSecond).nHeight;
}

void CFrameEncoder::m_S_Push(const std::vector<std::uint8_t>& arPicture)
{
    GstBuffer* pBuffer = gst_buffer_new_memdup(arPicture.data(), arPicture.size());
    GST_BUFFER_PTS(pBuffer) = gst_util_uint64_scale(vm_nPushed++, GST_SECOND, stDef_EncodedClip::s_nFps);
    GST_BUFFER_DURATION(pBuffer) = GST_SECOND / stDef_EncodedClip::s_nFps;
    gst_app_src_push_buffer(GST_APP_SRC(vm_pSource), pBuffer);
}

void CFrameEncoder::m_S_End()
{
    gst_app_src_end_of_stream(GST_APP_SRC(vm_pSource));
}

bool CFrameEncoder::m_F_b_Pull(stDef_EncodedClip::stDef_Unit& stUnit)
{
    GstSample* pSample = gst_app_sink_try_pull_sample(GST_APP_SINK(vm_pSink), g_nPullLimit);
    if (pSample == nullptr)
        return false;
    GstBuffer* pBuffer = gst_sample_get_buffer(pSample);
    stUnit.bKey = !GST_BUFFER_FLAG_IS_SET(pBuffer, GST_BUFFER_FLAG_DELTA_UNIT);
    stUnit.arBytes.resize(gst_buffer_get_size(pBuffer));
    gst_buffer_extract(pBuffer, 0, stUnit.arBytes.data(), stUnit.arBytes.size());
    gst_sample_unref(pSample);
    return true;
}
