#pragma once

#include "toolkit/form/CTextSource.h"

/// Texts that more than one window has.
namespace nsTexts {

inline constexpr Text Ok{"OK", "OK"};
inline constexpr Text Cancel{"Cancel", "Cancel"};
inline constexpr Text Error{"Error", "Error"}; ///< the caption of error messages
inline constexpr Text Enable{"Enable", "Enable"};
inline constexpr Text Test{"Test", "Test"};
inline constexpr Text Characters{"Characters", "Characters"}; ///< of a hint, as "(64 Characters)"
inline constexpr Text Account{"Account", "Account"};
inline constexpr Text Password{"Password", "Password"};
inline constexpr Text Address{"IPAddress", "IP Address"};
inline constexpr Text HttpPort{"HTTPPort", "HTTP Port"};
inline constexpr Text RtspPort{"RTSPPort", "RTSP Port"};
inline constexpr Text AskingCamera{"AskingCamera", "The recorder asks the camera."};

} // namespace nsTexts
