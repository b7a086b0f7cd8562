#pragma once

/// The numbers by which a host names commands. The operations take plain numbers, and pass over those they don't know.
namespace nsCMS {

/// Items of a recorder's menu, for `CWndNvrBase::m_S_OnCommand`.
enum emDef_MenuCommand
{
    MenuCommand_SystemSetting = 2000,
    MenuCommand_SystemManagement = 2001,
    MenuCommand_EventSetting = 2002,
    MenuCommand_LogViewer = 2003 ///< not in the menu
};

/// Commands for a camera, for `CWndNvrBase::m_S_ExecPTZCmd`. The first parameter is a speed and the second means
/// nothing, unless told otherwise.
enum emDef_PtzCommand
{
    PtzCommand_UpLeft = 0, ///< a step, as all up to `DownRight`
    PtzCommand_Up = 1,
    PtzCommand_UpRight = 2,
    PtzCommand_Left = 3,
    PtzCommand_Right = 4,
    PtzCommand_DownLeft = 5,
    PtzCommand_Down = 6,
    PtzCommand_DownRight = 7,
    PtzCommand_Home = 8,
    PtzCommand_TourOn = 10,  ///< first parameter: the tour's position in its list
    PtzCommand_TourOff = 11, ///< the same
    PtzCommand_IrisUp = 12,
    PtzCommand_IrisDown = 13,
    PtzCommand_AutoIris = 14, ///< no parameter
    PtzCommand_FocusUp = 15,
    PtzCommand_FocusDown = 16,
    PtzCommand_AutoFocus = 17, ///< no parameter
    PtzCommand_ZoomIn = 18,    ///< a step
    PtzCommand_ZoomOut = 19,
    PtzCommand_AutoPanOn = 20,
    PtzCommand_AutoPanOff = 21,
    PtzCommand_GoToPreset = 23, ///< first parameter: the preset's position in its list
    PtzCommand_MovePanTilt =
        24, ///< goes on until its stop; rates of pan and tilt, -10 to 10: right and up are positive
    PtzCommand_StopPanTilt = 25, ///< no parameter
    PtzCommand_MoveZoom = 26     ///< the same with the rate of the zoom; 0 stops it
};

/// What `CWndNvrBase::m_S_GetPTZData` lists; they share the commands' numbers, and are none.
enum emDef_PtzList
{
    PtzList_Tours = 9,
    PtzList_Presets = 22
};

} // namespace nsCMS
