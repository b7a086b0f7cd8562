#include "cgi/CMotionCgi.h"

#include <cmath>

namespace {
constexpr int g_nWindows = 3, g_nIntervalMs = 100, g_nThreshold = 50;

/// One part of the stream: a line a motion window. Each window's level swings with a period of its own, so that all of
/// them light up now and then, as before a real scene.
std::string Lines(int nCamera, long nPart)
{
    std::string sLines;
    for (int i = 0; i < g_nWindows; ++i) {
        const double dPhase = 0.1 * static_cast<double>(nPart) * (1.0 + 0.37 * i) + nCamera;
        const int nLevel = static_cast<int>(50.0 + 45.0 * std::sin(dPhase));
        sLines += "group=" + std::to_string(i) + " level=" + std::to_string(nLevel) +
                  " threshold=" + std::to_string(g_nThreshold) + " motion=" + (nLevel > g_nThreshold ? "1" : "0") +
                  "\r\n";
    }
    return sLines;
}
} // namespace

std::vector<stDef_CgiRoute> CMotionCgi::m_F_ar_Routes()
{
    return {{emDef_NvrKinds::Embedded, "GET", "cgi-bin/motiondata.cgi", "",
             std::bind_front(&CMotionCgi::m_F_o_Stream, this)}};
}

stDef_CgiReply CMotionCgi::m_F_o_Stream(const stDef_CgiRequest& stRequest) const
{
    const int nCamera = stRequest.m_F_n_Camera(vm_nChannels);
    if (nCamera < 0)
        return stDef_CgiReply::s_F_o_Plain(404, "ERROR: no such camera");
    stDef_CgiReply stReply;
    stReply.sType = "text/plain";
    stReply.nPartIntervalMs = g_nIntervalMs;
    stReply.fnPart = [nCamera](long nPart) { return Lines(nCamera, nPart); };
    return stReply;
}
