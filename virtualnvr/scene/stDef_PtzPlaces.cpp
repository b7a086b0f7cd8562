#include "scene/stDef_PtzPlaces.h"

namespace {

constexpr stDef_PtzPreset g_arStreet[] = {
    {"Whole street", {0.0F, 0.0F, 0.0F}},   {"Corner shop", {-22.0F, 2.0F, 1.7F}},
    {"Yellow house", {-11.0F, 3.0F, 1.9F}}, {"Office entrance", {0.5F, -2.0F, 2.1F}},
    {"Crossing", {-4.0F, -10.0F, 1.4F}},    {"Car park", {70.0F, -3.0F, 0.6F}},
};
constexpr stDef_PtzTour g_arStreetTours[] = {
    {"Shop fronts", {1, 2, 3}, 3},
    {"Whole round", {0, 1, 2, 3, 4, 5}, 6},
};

constexpr stDef_PtzPreset g_arYard[] = {
    {"Gate", {-48.0F, -2.0F, 0.8F}},
    {"Car park", {60.0F, -6.0F, 0.5F}},
    {"Loading dock & ramp", {14.5F, 0.5F, 2.2F}},
    {"Dock door 3", {25.0F, 0.5F, 2.2F}},
    {"Containers", {-22.5F, 0.0F, 1.6F}},
};
constexpr stDef_PtzTour g_arYardTours[] = {
    {"Night round", {0, 4, 2, 3, 1}, 5},
    {"Perimeter", {0, 1}, 2},
};

constexpr stDef_PtzPreset g_arGate[] = {
    {"Gate", {0.0F, 0.0F, 1.0F}},          {"Barrier", {6.0F, -6.0F, 1.6F}},     {"Guard house", {22.0F, -1.5F, 2.0F}},
    {"Road to town", {0.0F, -1.0F, 2.6F}}, {"West wall", {-45.0F, -1.0F, 0.9F}},
};
constexpr stDef_PtzTour g_arGateTours[] = {
    {"Arrivals", {3, 0, 1}, 3},
    {"Night round", {4, 0, 2, 3}, 4},
    {"Perimeter", {4, 2}, 2},
};

constexpr stDef_PtzPreset g_arLobby[] = {
    {"Reception", {-0.5F, -6.0F, 1.5F}},
    {"Lift", {22.0F, 2.0F, 1.7F}},
    {"Painting", {-22.5F, 7.0F, 2.0F}},
    {"Waiting corner", {-23.0F, -5.0F, 1.2F}},
};
constexpr stDef_PtzTour g_arLobbyTours[] = {
    {"Visitors", {3, 0, 1}, 3},
};

constexpr stDef_PtzPlaces g_arPlaces[] = {
    {g_arStreet, g_arStreetTours},
    {g_arYard, g_arYardTours},
    {g_arGate, g_arGateTours},
    {g_arLobby, g_arLobbyTours},
};

} // namespace

const stDef_PtzPlaces& stDef_PtzPlaces::s_F_o_Of(int nChannel)
{
    return g_arPlaces[nChannel % 4];
}
