#include "ptz/CPtzAction.h"

#include <QKeySequence>
#include <algorithm>
#include <cstring>
#include <iterator>

#include "fleetlink/fleetlink.h"
#include "window/HostTexts.h"

using namespace Qt::StringLiterals;

namespace {

using enum emDef_PtzKind;
using namespace nsCMS;

// The nine letters of the pad lie on the keyboard as the directions do on the pad.
// clang-format off
constexpr stDef_PtzAction g_astActions[] = {
    {"UpLeft", Qt::Key_Q, {"PtzUpLeft", "Up left"}, Hold, -1, 1, 0, 0},
    {"Up", Qt::Key_W, {"PtzUp", "Up"}, Hold, 0, 1, 0, 0},
    {"UpRight", Qt::Key_E, {"PtzUpRight", "Up right"}, Hold, 1, 1, 0, 0},
    {"Left", Qt::Key_A, {"PtzLeft", "Left"}, Hold, -1, 0, 0, 0},
    {"Home", Qt::Key_S, {"PtzHome", "Home position"}, Once, 0, 0, 0, PtzCommand_Home},
    {"Right", Qt::Key_D, {"PtzRight", "Right"}, Hold, 1, 0, 0, 0},
    {"DownLeft", Qt::Key_Z, {"PtzDownLeft", "Down left"}, Hold, -1, -1, 0, 0},
    {"Down", Qt::Key_X, {"PtzDown", "Down"}, Hold, 0, -1, 0, 0},
    {"DownRight", Qt::Key_C, {"PtzDownRight", "Down right"}, Hold, 1, -1, 0, 0},
    {"Slower", Qt::Key_Comma, {"PtzSlower", "Slower"}, Speed, -1, 0, 0, 0},
    {"Faster", Qt::Key_Period, {"PtzFaster", "Faster"}, Speed, 1, 0, 0, 0},
    {"ZoomOut", Qt::Key_F, {"PtzZoomOut", "Zoom out"}, Hold, 0, 0, -1, 0},
    {"ZoomIn", Qt::Key_R, {"PtzZoomIn", "Zoom in"}, Hold, 0, 0, 1, 0},
    {"FocusDown", Qt::Key_G, {"PtzFocusDown", "Focus down"}, Once, 0, 0, 0, PtzCommand_FocusDown},
    {"FocusUp", Qt::Key_T, {"PtzFocusUp", "Focus up"}, Once, 0, 0, 0, PtzCommand_FocusUp},
    {"AutoFocus", Qt::Key_U, {"PtzAutoFocus", "Auto focus"}, Once, 0, 0, 0, PtzCommand_AutoFocus},
    {"IrisDown", Qt::Key_H, {"PtzIrisDown", "Close the iris"}, Once, 0, 0, 0, PtzCommand_IrisDown},
    {"IrisUp", Qt::Key_Y, {"PtzIrisUp", "Open the iris"}, Once, 0, 0, 0, PtzCommand_IrisUp},
    {"AutoIris", Qt::Key_J, {"PtzAutoIris", "Auto iris"}, Once, 0, 0, 0, PtzCommand_AutoIris},
    {"AutoPanOn", Qt::Key_P, {"PtzAutoPanOn", "Start auto pan"}, Once, 0, 0, 0, PtzCommand_AutoPanOn},
    {"AutoPanOff", Qt::Key_O, {"PtzAutoPanOff", "Stop auto pan"}, Once, 0, 0, 0, PtzCommand_AutoPanOff},
    {"PresetGo", Qt::Key_V, {"PtzPresetGo", "Go to the preset"}, Preset, 0, 0, 0, PtzCommand_GoToPreset},
    {"PresetKeys", Qt::Key_1, {"PtzPresetKeys", "Go to preset 1 to 9"}, PresetKey, 0, 0, 0, PtzCommand_GoToPreset},
    {"TourOn", Qt::Key_K, {"PtzTourOn", "Start the tour"}, Tour, 0, 0, 0, PtzCommand_TourOn},
    {"TourOff", Qt::Key_L, {"PtzTourOff", "Stop the tour"}, Tour, 0, 0, 0, PtzCommand_TourOff},
};
// clang-format on

template <class TFits>
const stDef_PtzAction* Find(TFits objFits)
{
    const auto* const pFound = std::find_if(std::begin(g_astActions), std::end(g_astActions), objFits);
    return pFound == std::end(g_astActions) ? nullptr : pFound;
}

} // namespace

std::span<const stDef_PtzAction> CPtzAction::s_F_ar_All()
{
    return g_astActions;
}

const stDef_PtzAction* CPtzAction::s_F_p_Named(const char* pszName)
{
    return Find([pszName](const stDef_PtzAction& st) { return std::strcmp(st.pszName, pszName) == 0; });
}

const stDef_PtzAction* CPtzAction::s_F_p_OfKey(int nKey, bool bNumberPad)
{
    const bool bDigit = nKey >= Qt::Key_1 && nKey <= Qt::Key_9;
    const int nDigit = nKey - Qt::Key_1;
    if (bDigit && bNumberPad)
        return s_F_p_OfDirection(nDigit % 3 - 1, nDigit / 3 - 1);
    return Find([nWanted = bDigit ? int(Qt::Key_1) : nKey](const stDef_PtzAction& st) { return st.nKey == nWanted; });
}

const stDef_PtzAction* CPtzAction::s_F_p_OfDirection(int nPan, int nTilt)
{
    if (nPan == 0 && nTilt == 0)
        return s_F_p_Named("Home");
    return Find([=](const stDef_PtzAction& st) { return st.nKind == Hold && st.nPan == nPan && st.nTilt == nTilt; });
}

QString CPtzAction::s_F_s_Key(const stDef_PtzAction& stAction)
{
    if (stAction.nKind == PresetKey)
        return u"1\u20139"_s;
    return QKeySequence(stAction.nKey).toString(QKeySequence::NativeText);
}

QString CPtzAction::s_F_s_Tip(const stDef_PtzAction& stAction)
{
    return u"%1 (%2)"_s.arg(Tr(stAction.stText), s_F_s_Key(stAction));
}
