#pragma once

#include "cgi/stDef_MotionLimits.h"
#include "cgi/stDef_MotionWindow.h"

#include <map>
#include <string>
#include <vector>

/// The camera of a slot with its motion windows. What changes them checks first: they never break the limits.
struct stDef_MotionCamera
{
    static constexpr int s_nMaxName = 32; ///< characters

    int nVendorID = -1; ///< -1: none is there
    std::string sIP;
    int nPort = 0;
    int nNextIndex = 0;
    std::vector<stDef_MotionWindow> arWindows; ///< in the order of the list, at most as many as the limits say

    const stDef_MotionLimits* m_F_p_Limits() const { return stDef_MotionLimits::s_F_p_Of(nVendorID); }

    /// Windows in place of those that there are: those of the scene of a channel, as the camera's maker set them.
    void m_S_Begin(int nChannel);

    /// All of these are for cameras with limits.
    /// @return false with sError set, and nothing changed, if there is no such window, none more may be, or a value
    ///         breaks the limits
    bool m_F_b_Add(std::string& sError);
    bool m_F_b_Remove(int nIndex, std::string& sError);
    /// @param mapValues by key ("Left", "Name"); what isn't named stays
    bool m_F_b_Update(int nIndex, const std::map<std::string, std::string>& mapValues, std::string& sError);
    /// A window as it was kept. Also false if its number is taken.
    bool m_F_b_Restore(const stDef_MotionWindow& stWindow);

    bool operator==(const stDef_MotionCamera&) const = default;

private:
    bool m_F_b_Check(const stDef_MotionWindow& stWindow, std::string& sError) const;
    int m_F_n_TakeIndex();
};
