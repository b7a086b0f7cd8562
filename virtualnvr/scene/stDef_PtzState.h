#pragma once

/// Where a camera looks: degrees to the right and up, and doublings of its size. Zero is home.
struct stDef_PtzPose
{
    float fPan = 0.0F;  ///< -90..90
    float fTilt = 0.0F; ///< -15..15
    float fZoom = 0.0F; ///< 0..3

    bool operator==(const stDef_PtzPose&) const = default;
};

/// What a camera reports of itself.
struct stDef_PtzState
{
    stDef_PtzPose stPose;
    int nFocus = 50; ///< 0..100; 50 is sharp
    int nIris = 50;  ///< 0..100; 50 is right
    bool bAutoFocus = true;
    bool bAutoIris = true;
    bool bAutoPan = false;
    bool bMoving = false;
    int nPreset = -1; ///< that it goes to or stands at; -1: none
    int nTour = -1;   ///< that it makes; -1: none
};
