#pragma once

#include <span>

/// A place of a scene that is worth watching for motion, or worth leaving out.
struct stDef_MotionPlace
{
    const char* pszName;
    float fLeft, fTop, fRight, fBottom; ///< drawing units of a picture that isn't mirrored
    bool bExclude = false;

    /// Of the scene of a channel, the most lively first.
    static std::span<const stDef_MotionPlace> s_F_ar_Of(int nChannel);
};
