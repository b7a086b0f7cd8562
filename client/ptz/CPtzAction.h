#pragma once

#include <QString>
#include <span>

#include "fleetlink/fleetlink.h"

/// What an action of the PTZ panel is.
enum class emDef_PtzKind
{
    Hold,     ///< a movement that lasts as long as its button or key is held
    Once,     ///< a command by the speed
    Speed,    ///< changes the speed
    Preset,   ///< goes to the picked preset
    Tour,     ///< begins or ends the picked tour
    PresetKey ///< goes to the preset of the key's digit; stands for nine keys
};

/// One action of the PTZ panel. Buttons, pad, keys and the list of shortcuts walk the same rows.
struct stDef_PtzAction
{
    const char* pszName; ///< object name of its button
    Qt::Key nKey;
    stDef_Text stText;
    emDef_PtzKind nKind;
    int nPan;  ///< of a movement: -1 left, 1 right; of a speed: the step
    int nTilt; ///< -1 down, 1 up
    int nZoom; ///< -1 out, 1 in
    int nCmd;  ///< of a command: its number
};

class CPtzAction
{
public:
    static std::span<const stDef_PtzAction> s_F_ar_All();
    /// Null if there is none of that name.
    static const stDef_PtzAction* s_F_p_Named(const char* pszName);
    /// The action of a key; of the digits 1 to 9 that of the preset keys. The number pad's digits are directions.
    static const stDef_PtzAction* s_F_p_OfKey(int nKey, bool bNumberPad);
    /// The movement or "home" of a direction of the pad, each -1 to 1.
    static const stDef_PtzAction* s_F_p_OfDirection(int nPan, int nTilt);
    static QString s_F_s_Key(const stDef_PtzAction& stAction);
    /// Its text with its key, as tooltips have it.
    static QString s_F_s_Tip(const stDef_PtzAction& stAction);
};
