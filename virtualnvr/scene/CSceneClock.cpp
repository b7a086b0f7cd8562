#include "scene/CSceneClock.h"

#include "scene/stDef_EncodedClip.h"

#include <algorithm>
#include <chrono>

namespace {
constexpr std::int64_t g_nFrameNs = 1'000'000'000 / stDef_EncodedClip::s_nFps;
constexpr std::int64_t g_nClipNs = g_nFrameNs * stDef_EncodedClip::s_nFrames;
constexpr std::int64_t g_nMostNs = g_nFrameNs / 32;
} // namespace

std::int64_t CSceneClock::s_F_n_NowNs()
{
    return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

int CSceneClock::s_F_n_Frame(std::int64_t nNowNs)
{
    return static_cast<int>(nNowNs % g_nClipNs / g_nFrameNs);
}

int CSceneClock::s_F_n_KeyFrame(std::int64_t nNowNs)
{
    constexpr int nGop = stDef_EncodedClip::s_nGop;
    return (s_F_n_Frame(nNowNs) + nGop / 2) / nGop * nGop % stDef_EncodedClip::s_nFrames;
}

std::int64_t CSceneClock::s_F_n_PeriodNs(int nFrame, std::int64_t nShownNs)
{
    std::int64_t nEarlyNs = (nFrame * g_nFrameNs - nShownNs % g_nClipNs + g_nClipNs) % g_nClipNs;
    if (nEarlyNs > g_nClipNs / 2)
        nEarlyNs -= g_nClipNs; // it is late
    return g_nFrameNs + std::clamp(nEarlyNs / 16, -g_nMostNs, g_nMostNs);
}
