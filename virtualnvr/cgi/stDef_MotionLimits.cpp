#include "cgi/stDef_MotionLimits.h"

#include <algorithm>
#include <iterator>

namespace {
// By vendor id. 4, the open standard, has no motion configuration.
constexpr stDef_MotionLimits g_arLimits[] = {
    {0, 3, 320, 240, 0, 100, 0, 100, true},  {2, 10, 480, 360, 1, 100, 1, 100, true},
    {6, 5, 640, 480, 0, 255, 0, 10, false},  {7, 3, 160, 120, 1, 99, 1, 5, false},
    {8, 4, 352, 240, 0, 100, 0, 100, false}, {9, 1, 352, 288, 5, 50, 1, 10, false},
    {10, 16, 704, 480, 0, 32, 1, 16, false},
};
} // namespace

const stDef_MotionLimits* stDef_MotionLimits::s_F_p_Of(int nVendorID)
{
    const auto* p = std::find_if(std::begin(g_arLimits), std::end(g_arLimits),
                                 [nVendorID](const stDef_MotionLimits& st) { return st.nVendorID == nVendorID; });
    return p == std::end(g_arLimits) ? nullptr : p;
}
