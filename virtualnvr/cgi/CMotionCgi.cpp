#include "cgi/CMotionCgi.h"

#include "cgi/CMotionStore.h"
#include "scene/CSceneClock.h"
#include "scene/CSceneMotion.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <memory>
#include <optional>
#include <pugixml.hpp>

namespace {
constexpr int g_nIntervalMs = 100;
constexpr std::string_view g_sWindow = "Motion.M";

/// The number at the front of "3" or "3.Left", and what is behind its dot.
std::optional<std::pair<int, std::string>> Numbered(std::string_view s)
{
    int n = -1;
    const auto [pEnd, eError] = std::from_chars(s.data(), s.data() + s.size(), n);
    s.remove_prefix(static_cast<std::size_t>(pEnd - s.data()));
    if (eError != std::errc() || n < 0 || (!s.empty() && s.front() != '.'))
        return std::nullopt;
    return std::pair(n, std::string(s.empty() ? s : s.substr(1)));
}

void Write(pugi::xml_node objCamera, const stDef_MotionCamera& st)
{
    const stDef_MotionLimits& stLimits = *st.m_F_p_Limits();
    const std::pair<const char*, int> arKeys[] = {
        {"MaxMotionWnd", stLimits.nMaxWindows},
        {"MotionDataCount", static_cast<int>(st.arWindows.size())},
        {"MotionWndW", stLimits.nCanvasW},
        {"MotionWndH", stLimits.nCanvasH},
        {"ObjectSizeMin", stLimits.nSizeMin},
        {"ObjectSizeMax", stLimits.nSizeMax},
        {"SensitivityMin", stLimits.nSensitivityMin},
        {"SensitivityMax", stLimits.nSensitivityMax},
    };
    for (const auto& [pszKey, nValue] : arKeys)
        objCamera.append_attribute(pszKey) = nValue;
    char szName[32];
    for (std::size_t i = 0; i < st.arWindows.size(); ++i) {
        std::snprintf(szName, sizeof szName, "MotionData%03zu", i);
        st.arWindows[i].m_S_Write(objCamera.append_child(szName), stLimits.bTypes);
    }
}

stDef_PictureArea AreaOf(const stDef_MotionWindow& st, const stDef_MotionLimits& stLimits)
{
    const auto x = [&](int n) { return static_cast<float>(n) / static_cast<float>(stLimits.nCanvasW); };
    const auto y = [&](int n) { return static_cast<float>(n) / static_cast<float>(stLimits.nCanvasH); };
    return {x(st.nLeft), y(st.nTop), x(st.nRight), y(st.nBottom)};
}

/// One part of the stream: a line a motion window, in the order of the list. Never empty, so that a client always gets
/// a part.
std::string Lines(const stDef_MotionCamera& st, const CSceneMotion& objMotion)
{
    const stDef_MotionLimits* pLimits = st.m_F_p_Limits();
    std::vector<stDef_PictureArea> arMasked;
    for (const stDef_MotionWindow& stWindow : st.arWindows)
        if (stWindow.bExclude)
            arMasked.push_back(AreaOf(stWindow, *pLimits));
    std::string sLines;
    for (std::size_t i = 0; i < st.arWindows.size(); ++i) {
        const stDef_MotionWindow& stWindow = st.arWindows[i];
        const int nThreshold = pLimits->m_F_n_Threshold(stWindow.nSize);
        const int nLevel = stWindow.bExclude
                               ? 0
                               : objMotion.m_F_n_Level(AreaOf(stWindow, *pLimits),
                                                       pLimits->m_F_n_Difference(stWindow.nSensitivity), arMasked);
        sLines += "group=" + std::to_string(i) + " level=" + std::to_string(nLevel) +
                  " threshold=" + std::to_string(nThreshold) + " motion=" + (nLevel >= nThreshold ? "1" : "0") + "\r\n";
    }
    return sLines.empty() ? "windows=0\r\n" : sLines;
}
} // namespace

std::vector<stDef_CgiRoute> CMotionCgi::m_F_ar_Routes()
{
    using enum emDef_NvrKinds;
    constexpr std::string_view sConfig = "cgi-bin/config.cgi";
    return {
        {Embedded, "GET", sConfig, "list", std::bind_front(&CMotionCgi::m_F_o_List, this)},
        {Embedded, "GET", sConfig, "add", std::bind_front(&CMotionCgi::m_F_o_Add, this)},
        {Embedded, "GET", sConfig, "remove", std::bind_front(&CMotionCgi::m_F_o_Remove, this)},
        {Embedded, "GET", sConfig, "update", std::bind_front(&CMotionCgi::m_F_o_Update, this)},
        {Embedded, "GET", "cgi-bin/motiondata.cgi", "", std::bind_front(&CMotionCgi::m_F_o_Stream, this)},
    };
}

/// Why a camera has no motion windows at all; null if it may have some.
const char* CMotionCgi::m_F_psz_Missing(int nCamera) const
{
    if (nCamera < 0)
        return "no such camera";
    const stDef_MotionCamera st = vm_objStore.m_F_o_Camera(nCamera);
    if (st.nVendorID < 0)
        return "no camera in this slot";
    return st.m_F_p_Limits() ? nullptr : "this camera has no motion detection";
}

stDef_CgiReply CMotionCgi::m_F_o_List(const stDef_CgiRequest& stRequest) const
{
    const int nCamera = stRequest.m_F_n_Camera(vm_nChannels);
    if (const char* pszMissing = m_F_psz_Missing(nCamera))
        return stDef_CgiReply::s_F_o_Result(404, pszMissing);
    if (stRequest.m_F_s_Value("group") != "motion")
        return stDef_CgiReply::s_F_o_Result(404, "no such group");
    char szName[32];
    std::snprintf(szName, sizeof szName, "Cam%03d", nCamera);
    pugi::xml_document objReply;
    Write(objReply.append_child("root").append_child(szName), vm_objStore.m_F_o_Camera(nCamera));
    return stDef_CgiReply::s_F_o_Envelope(objReply);
}

stDef_CgiReply CMotionCgi::m_F_o_Change(const stDef_CgiRequest& stRequest, const Change& fnChange)
{
    const int nCamera = stRequest.m_F_n_Camera(vm_nChannels);
    if (const char* pszMissing = m_F_psz_Missing(nCamera))
        return stDef_CgiReply::s_F_o_Result(404, pszMissing);
    std::string sError;
    if (!vm_objStore.m_F_b_Change(nCamera, fnChange, sError))
        return stDef_CgiReply::s_F_o_Result(400, sError);
    return stDef_CgiReply::s_F_o_Result(200);
}

stDef_CgiReply CMotionCgi::m_F_o_Add(const stDef_CgiRequest& stRequest)
{
    if (stRequest.m_F_s_Value("group") != "Motion" || stRequest.m_F_s_Value("template") != "motion")
        return stDef_CgiReply::s_F_o_Result(404, "no such group or template");
    return m_F_o_Change(stRequest, [](stDef_MotionCamera& st, std::string& sError) { return st.m_F_b_Add(sError); });
}

stDef_CgiReply CMotionCgi::m_F_o_Remove(const stDef_CgiRequest& stRequest)
{
    const std::string sGroup = stRequest.m_F_s_Value("group");
    const auto objWindow =
        sGroup.starts_with(g_sWindow) ? Numbered(std::string_view(sGroup).substr(g_sWindow.size())) : std::nullopt;
    if (!objWindow || sGroup.find('.', g_sWindow.size()) != std::string::npos)
        return stDef_CgiReply::s_F_o_Result(404, "no such group");
    return m_F_o_Change(stRequest, [&](stDef_MotionCamera& st, std::string& sError) {
        return st.m_F_b_Remove(objWindow->first, sError);
    });
}

// Several windows in one request are changed together or not at all. Other keys don't count: an unescaped "&" in a name
// makes some.
stDef_CgiReply CMotionCgi::m_F_o_Update(const stDef_CgiRequest& stRequest)
{
    std::map<int, std::map<std::string, std::string>> mapWindows;
    for (const auto& [sKey, sValue] : stRequest.mapQuery) {
        if (!sKey.starts_with(g_sWindow))
            continue;
        const auto objKey = Numbered(std::string_view(sKey).substr(g_sWindow.size()));
        if (!objKey)
            return stDef_CgiReply::s_F_o_Result(400, "no such value");
        mapWindows[objKey->first][objKey->second] = sValue;
    }
    if (mapWindows.empty())
        return stDef_CgiReply::s_F_o_Result(400, "nothing to update");
    return m_F_o_Change(stRequest, [&](stDef_MotionCamera& st, std::string& sError) {
        return std::all_of(mapWindows.begin(), mapWindows.end(), [&](const auto& objWindow) {
            return st.m_F_b_Update(objWindow.first, objWindow.second, sError);
        });
    });
}

stDef_CgiReply CMotionCgi::m_F_o_Stream(const stDef_CgiRequest& stRequest) const
{
    const int nCamera = stRequest.m_F_n_Camera(vm_nChannels);
    if (const char* pszMissing = m_F_psz_Missing(nCamera))
        return stDef_CgiReply::s_F_o_Result(404, pszMissing);
    stDef_CgiReply stReply;
    stReply.sType = "text/plain";
    stReply.nPartIntervalMs = g_nIntervalMs;
    const auto pMotion = std::make_shared<CSceneMotion>(nCamera, vm_objPtz);
    stReply.fnPart = [this, nCamera, pMotion](long) {
        pMotion->m_S_Look(CSceneClock::s_F_n_NowNs());
        return Lines(vm_objStore.m_F_o_Camera(nCamera), *pMotion);
    };
    return stReply;
}
