#include "scene/stDef_MotionPlace.h"

namespace {

constexpr stDef_MotionPlace g_arStreet[] = {
    {"Road", 40, 246, 600, 344},
    {"Sky", 60, 8, 440, 48},
    {"Entrance", 262, 174, 392, 240},
    {"Lamp post", 446, 104, 492, 242, true},
};
constexpr stDef_MotionPlace g_arYard[] = {
    {"Yard", 40, 240, 600, 342},
    {"Sky", 20, 8, 250, 56},
    {"Dock doors", 312, 128, 614, 262},
    {"Containers", 16, 130, 264, 224, true},
};
constexpr stDef_MotionPlace g_arGate[] = {
    {"Lane", 180, 200, 470, 344},
    {"Moon", 40, 50, 160, 140},
    {"Guard house", 476, 140, 636, 336},
    {"Gate lamps", 186, 100, 250, 164, true},
};
constexpr stDef_MotionPlace g_arLobby[] = {
    {"Floor", 20, 236, 620, 344},
    {"Painting", 30, 70, 154, 154},
    {"Lift", 474, 56, 606, 234},
    {"Plant", 46, 196, 96, 326, true},
};

constexpr std::span<const stDef_MotionPlace> g_arScenes[] = {g_arStreet, g_arYard, g_arGate, g_arLobby};

} // namespace

std::span<const stDef_MotionPlace> stDef_MotionPlace::s_F_ar_Of(int nChannel)
{
    return g_arScenes[nChannel % 4];
}
