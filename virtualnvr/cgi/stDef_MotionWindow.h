#pragma once

#include <string>
#include <utility>

namespace pugi {
class xml_node;
}

/// A rectangle of a camera's canvas that is watched for motion.
struct stDef_MotionWindow
{
    int nIndex = 0;                                   ///< its number for good; not its place among the others
    int nLeft = 0, nTop = 0, nRight = 0, nBottom = 0; ///< canvas pixels, right and bottom exclusive
    std::string sName;                                ///< UTF-8
    bool bExclude = false;
    int nSize = 0, nSensitivity = 0;

    /// The numbers that a client sets, under the keys that they have in requests and documents.
    static constexpr std::pair<const char*, int stDef_MotionWindow::*> s_arNumbers[] = {
        {"Left", &stDef_MotionWindow::nLeft},       {"Top", &stDef_MotionWindow::nTop},
        {"Right", &stDef_MotionWindow::nRight},     {"Bottom", &stDef_MotionWindow::nBottom},
        {"ObjectSize", &stDef_MotionWindow::nSize}, {"Sensitivity", &stDef_MotionWindow::nSensitivity},
    };

    /// @param bType false leaves out whether it includes or excludes
    void m_S_Write(pugi::xml_node objNode, bool bType) const;
    static stDef_MotionWindow s_F_o_Read(const pugi::xml_node& objNode);

    bool operator==(const stDef_MotionWindow&) const = default;
};
