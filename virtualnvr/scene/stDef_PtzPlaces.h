#pragma once

#include "scene/stDef_PtzState.h"

#include <array>
#include <span>

/// A place that a camera knows by name.
struct stDef_PtzPreset
{
    const char* pszName;
    stDef_PtzPose stPose;
};

/// A round of presets, by their numbers.
struct stDef_PtzTour
{
    const char* pszName;
    std::array<int, 6> arStops;
    int nStops;
};

/// The presets and tours of a camera, by the scene that it looks at. Numbers count from 0, in the order of the lists.
struct stDef_PtzPlaces
{
    std::span<const stDef_PtzPreset> arPresets;
    std::span<const stDef_PtzTour> arTours;

    static const stDef_PtzPlaces& s_F_o_Of(int nChannel);
};
