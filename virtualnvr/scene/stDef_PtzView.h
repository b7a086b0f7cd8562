#pragma once

#include <string>

/// What a camera makes of its scene at a moment. The default is the whole scene as the clips show it.
struct stDef_PtzView
{
    float fX = 0.0F; ///< middle of the picture, off the scene's middle, in drawing units
    float fY = 0.0F;
    float fZoom = 1.0F;
    float fLight = 1.0F; ///< factor of the brightness
    int nBlur = 0;       ///< radius in 640ths of the width
    std::string sPlace;  ///< read-out in the picture; capital letters, digits, blank and ":.-&"
    std::string sDoing;

    bool operator==(const stDef_PtzView&) const = default;
};
