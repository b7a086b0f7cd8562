#include "ptz/CPtzAction.h"

#include <QKeySequence>
#include <algorithm>
#include <cstring>
#include <iterator>

#include "window/CHostText.h"

using namespace Qt::StringLiterals;

namespace {

using enum emDef_PtzKind;

// The nine letters of the pad lie on the keyboard as the directions do on the pad.
// clang-format off
constexpr stDef_PtzAction g_astActions[] = {
    {"UpLeft", Qt::Key_Q, emDef_Text::PtzUpLeft, Hold, -1, 1, 0, 0},
    {"Up", Qt::Key_W, emDef_Text::PtzUp, Hold, 0, 1, 0, 0},
    {"UpRight", Qt::Key_E, emDef_Text::PtzUpRight, Hold, 1, 1, 0, 0},
    {"Left", Qt::Key_A, emDef_Text::PtzLeft, Hold, -1, 0, 0, 0},
    {"Home", Qt::Key_S, emDef_Text::PtzHome, Once, 0, 0, 0, 8},
    {"Right", Qt::Key_D, emDef_Text::PtzRight, Hold, 1, 0, 0, 0},
    {"DownLeft", Qt::Key_Z, emDef_Text::PtzDownLeft, Hold, -1, -1, 0, 0},
    {"Down", Qt::Key_X, emDef_Text::PtzDown, Hold, 0, -1, 0, 0},
    {"DownRight", Qt::Key_C, emDef_Text::PtzDownRight, Hold, 1, -1, 0, 0},
    {"Slower", Qt::Key_Comma, emDef_Text::PtzSlower, Speed, -1, 0, 0, 0},
    {"Faster", Qt::Key_Period, emDef_Text::PtzFaster, Speed, 1, 0, 0, 0},
    {"ZoomOut", Qt::Key_F, emDef_Text::PtzZoomOut, Hold, 0, 0, -1, 0},
    {"ZoomIn", Qt::Key_R, emDef_Text::PtzZoomIn, Hold, 0, 0, 1, 0},
    {"FocusDown", Qt::Key_G, emDef_Text::PtzFocusDown, Once, 0, 0, 0, 16},
    {"FocusUp", Qt::Key_T, emDef_Text::PtzFocusUp, Once, 0, 0, 0, 15},
    {"AutoFocus", Qt::Key_U, emDef_Text::PtzAutoFocus, Once, 0, 0, 0, 17},
    {"IrisDown", Qt::Key_H, emDef_Text::PtzIrisDown, Once, 0, 0, 0, 13},
    {"IrisUp", Qt::Key_Y, emDef_Text::PtzIrisUp, Once, 0, 0, 0, 12},
    {"AutoIris", Qt::Key_J, emDef_Text::PtzAutoIris, Once, 0, 0, 0, 14},
    {"AutoPanOn", Qt::Key_P, emDef_Text::PtzAutoPanOn, Once, 0, 0, 0, 20},
    {"AutoPanOff", Qt::Key_O, emDef_Text::PtzAutoPanOff, Once, 0, 0, 0, 21},
    {"PresetGo", Qt::Key_V, emDef_Text::PtzPresetGo, Preset, 0, 0, 0, 23},
    {"PresetKeys", Qt::Key_1, emDef_Text::PtzPresetKeys, PresetKey, 0, 0, 0, 23},
    {"TourOn", Qt::Key_K, emDef_Text::PtzTourOn, Tour, 0, 0, 0, 10},
    {"TourOff", Qt::Key_L, emDef_Text::PtzTourOff, Tour, 0, 0, 0, 11},
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
    return u"%1 (%2)"_s.arg(Tr(stAction.nText), s_F_s_Key(stAction));
}
