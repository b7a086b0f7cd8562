#include "cgi/stDef_MotionCamera.h"

#include "scene/CSceneMaker.h"
#include "scene/stDef_MotionPlace.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <glib.h>

namespace {
constexpr int g_nMaxIndex = 99999;
constexpr float g_fUnitsHigh = CCanvas::s_fUnits * 9 / 16; // of every picture
constexpr int g_arFirstIndices[] = {0, 2, 3, 5};           // as if some had been there and were removed

bool IsNumber(const std::string& s, int& n)
{
    const auto [pEnd, eError] = std::from_chars(s.data(), s.data() + s.size(), n);
    return eError == std::errc() && pEnd == s.data() + s.size();
}

/// UTF-8 that a document can carry, and not too long.
bool IsName(const std::string& s)
{
    return g_utf8_validate(s.data(), static_cast<gssize>(s.size()), nullptr) &&
           g_utf8_strlen(s.data(), static_cast<gssize>(s.size())) <= stDef_MotionCamera::s_nMaxName &&
           std::none_of(s.begin(), s.end(), [](char c) { return static_cast<unsigned char>(c) < ' ' || c == 127; });
}

auto Find(auto& arWindows, int nIndex)
{
    return std::find_if(arWindows.begin(), arWindows.end(), [nIndex](const auto& st) { return st.nIndex == nIndex; });
}

/// @return empty, or what is wrong
std::string Set(stDef_MotionWindow& st, const std::string& sKey, const std::string& sValue, bool bTypes)
{
    if (sKey == "Name") {
        st.sName = sValue;
        return {};
    }
    if (sKey == "WindowType") {
        if (bTypes ? sValue != "include" && sValue != "exclude" : !sValue.empty())
            return "no such window type";
        st.bExclude = sValue == "exclude";
        return {};
    }
    for (const auto& [pszKey, pNumber] : stDef_MotionWindow::s_arNumbers)
        if (sKey == pszKey)
            return IsNumber(sValue, st.*pNumber) ? std::string() : sKey + ": not a number";
    return "no such value";
}
} // namespace

void stDef_MotionCamera::m_S_Begin(int nChannel)
{
    const stDef_MotionLimits* pLimits = m_F_p_Limits();
    arWindows.clear();
    nNextIndex = 0;
    if (!pLimits)
        return;
    const bool bMirrored = CSceneMaker::s_F_b_Mirrored(nChannel);
    const auto x = [&](float f) {
        return static_cast<int>(std::lround(f / CCanvas::s_fUnits * static_cast<float>(pLimits->nCanvasW)));
    };
    const auto y = [&](float f) {
        return static_cast<int>(std::lround(f / g_fUnitsHigh * static_cast<float>(pLimits->nCanvasH)));
    };
    for (const stDef_MotionPlace& stPlace : stDef_MotionPlace::s_F_ar_Of(nChannel)) {
        const std::size_t nAt = arWindows.size();
        if (static_cast<int>(nAt) >= pLimits->nMaxWindows || (stPlace.bExclude && !pLimits->bTypes))
            continue;
        const float fLeft = bMirrored ? CCanvas::s_fUnits - stPlace.fRight : stPlace.fLeft;
        const float fRight = bMirrored ? CCanvas::s_fUnits - stPlace.fLeft : stPlace.fRight;
        arWindows.push_back({g_arFirstIndices[nAt], x(fLeft), y(stPlace.fTop), x(fRight), y(stPlace.fBottom),
                             stPlace.pszName, stPlace.bExclude, pLimits->m_F_n_UsualSize(),
                             pLimits->m_F_n_UsualSensitivity()});
        nNextIndex = g_arFirstIndices[nAt] + 1;
    }
}

// Numbers aren't used again, so that one that somebody still keeps never comes to mean another window; only after very
// many the lowest free one is taken.
int stDef_MotionCamera::m_F_n_TakeIndex()
{
    if (nNextIndex <= g_nMaxIndex)
        return nNextIndex++;
    int nIndex = 0;
    while (Find(arWindows, nIndex) != arWindows.end())
        ++nIndex;
    return nIndex;
}

bool stDef_MotionCamera::m_F_b_Check(const stDef_MotionWindow& st, std::string& sError) const
{
    const stDef_MotionLimits& stLimits = *m_F_p_Limits();
    const auto within = [](int n, int nMin, int nMax) { return n >= nMin && n <= nMax; };
    const auto range = [](int nMin, int nMax) { return std::to_string(nMin) + " to " + std::to_string(nMax); };
    if (!within(st.nLeft, 0, st.nRight - 1) || !within(st.nTop, 0, st.nBottom - 1))
        sError = "the rectangle is empty";
    else if (st.nRight > stLimits.nCanvasW || st.nBottom > stLimits.nCanvasH)
        sError = "the rectangle leaves the canvas";
    else if (!within(st.nSize, stLimits.nSizeMin, stLimits.nSizeMax))
        sError = "ObjectSize: " + range(stLimits.nSizeMin, stLimits.nSizeMax);
    else if (!within(st.nSensitivity, stLimits.nSensitivityMin, stLimits.nSensitivityMax))
        sError = "Sensitivity: " + range(stLimits.nSensitivityMin, stLimits.nSensitivityMax);
    else if (!IsName(st.sName))
        sError = "Name: at most " + std::to_string(s_nMaxName) + " characters that can be shown";
    else
        return true;
    return false;
}

bool stDef_MotionCamera::m_F_b_Add(std::string& sError)
{
    constexpr int nSteps = 6; // until new windows lie on older ones
    const stDef_MotionLimits& stLimits = *m_F_p_Limits();
    const int nCount = static_cast<int>(arWindows.size());
    if (nCount >= stLimits.nMaxWindows) {
        sError = "no more than " + std::to_string(stLimits.nMaxWindows) + " motion windows";
        return false;
    }
    const int nIndex = m_F_n_TakeIndex();
    const int nLeft = stLimits.nCanvasW * (nCount % nSteps) / 10, nTop = stLimits.nCanvasH * (nCount % nSteps) / 10;
    arWindows.push_back({nIndex, nLeft, nTop, nLeft + stLimits.nCanvasW / 3, nTop + stLimits.nCanvasH / 3,
                         "Motion " + std::to_string(nIndex), false, stLimits.m_F_n_UsualSize(),
                         stLimits.m_F_n_UsualSensitivity()});
    return true;
}

bool stDef_MotionCamera::m_F_b_Remove(int nIndex, std::string& sError)
{
    const auto it = Find(arWindows, nIndex);
    if (it == arWindows.end()) {
        sError = "no such motion window";
        return false;
    }
    arWindows.erase(it);
    return true;
}

bool stDef_MotionCamera::m_F_b_Update(int nIndex, const std::map<std::string, std::string>& mapValues,
                                      std::string& sError)
{
    const auto it = Find(arWindows, nIndex);
    if (it == arWindows.end()) {
        sError = "no such motion window";
        return false;
    }
    stDef_MotionWindow stNew = *it;
    for (const auto& [sKey, sValue] : mapValues) {
        sError = Set(stNew, sKey, sValue, m_F_p_Limits()->bTypes);
        if (!sError.empty())
            return false;
    }
    if (!m_F_b_Check(stNew, sError))
        return false;
    *it = stNew;
    return true;
}

bool stDef_MotionCamera::m_F_b_Restore(const stDef_MotionWindow& stWindow)
{
    std::string sIgnored;
    if (static_cast<int>(arWindows.size()) >= m_F_p_Limits()->nMaxWindows || stWindow.nIndex < 0 ||
        stWindow.nIndex > g_nMaxIndex || Find(arWindows, stWindow.nIndex) != arWindows.end() ||
        !m_F_b_Check(stWindow, sIgnored))
        return false;
    arWindows.push_back(stWindow);
    nNextIndex = std::max(nNextIndex, stWindow.nIndex + 1);
    return true;
}
