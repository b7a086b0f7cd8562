#include "cgi/CCameraCgi.h"

#include "cgi/CCameraRegistry.h"

#include <chrono>
#include <thread>

namespace {
constexpr int g_nSearchDelays = 4; // a search waits for the slowest camera

stDef_CgiReply Reply(const std::string& sDocument)
{
    return sDocument.empty() ? stDef_CgiReply::s_F_o_Plain(504, "ERROR: no answer from the camera")
                             : stDef_CgiReply::s_F_o_Envelope(sDocument);
}
} // namespace

std::vector<stDef_CgiRoute> CCameraCgi::m_F_ar_Routes()
{
    using enum emDef_NvrKinds;
    return {
        {Embedded, "GET", "cgi-bin/param.cgi", "detect", std::bind_front(&CCameraCgi::m_F_o_Detect, this)},
        {Embedded, "GET", "cgi-bin/param.cgi", "camerasupport", std::bind_front(&CCameraCgi::m_F_o_Support, this)},
        {Embedded, "GET", "cgi-bin/SearchIPC.cgi", "", std::bind_front(&CCameraCgi::m_F_o_Search, this)},
    };
}

void CCameraCgi::m_S_Wait(int nDelays) const
{
    std::this_thread::sleep_for(std::chrono::milliseconds(vm_nProbeDelayMs * nDelays));
}

stDef_CgiReply CCameraCgi::m_F_o_Detect(const stDef_CgiRequest& stRequest) const
{
    m_S_Wait(1);
    return Reply(vm_objCameras.m_F_s_Detect(CCameraRegistry::s_F_o_Parse(stRequest.sQuery)));
}

stDef_CgiReply CCameraCgi::m_F_o_Support(const stDef_CgiRequest& stRequest) const
{
    m_S_Wait(1);
    return Reply(vm_objCameras.m_F_s_Support(CCameraRegistry::s_F_o_Parse(stRequest.sQuery)));
}

stDef_CgiReply CCameraCgi::m_F_o_Search(const stDef_CgiRequest&) const
{
    m_S_Wait(g_nSearchDelays);
    return Reply(vm_objCameras.m_F_s_Search());
}
