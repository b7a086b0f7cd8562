#pragma once

#include <span>

/// Keys of a Camera node in their order: what a driver takes over from a detect reply, and copies to another node.
/// "Name" is in no group: a detect reply's name is composed behind "IP", a copied one follows "Model".
namespace nsDriverKeys {

using Group = std::span<const char* const>;

inline constexpr const char* Address[] = {"VendorID", "Model", "IP", "HttpPort", "RtspPort"};
inline constexpr const char* OnvifAuth[] = {"OnvifAuth"};
inline constexpr const char* Device[] = {
    "UserName",          "Password",  "IPType",    "BrandID",     "Enable",      "CH",
    "MotionSetting",     "DINum",     "DONum",     "CamCapility", "EnableAudio", "EnableAudio_Record",
    "EnableTwoWayAudio", "InputGain", "OutputGain"};
inline constexpr const char* Profile[] = {"ProfileID"};
inline constexpr const char* LowProfile[] = {"DefaultProfileID"};
inline constexpr const char* ProfileNames[] = {"ProfileName", "DefaultProfileName"};
inline constexpr const char* Format[] = {"Format"};
inline constexpr const char* Resolution[] = {"Resolution"};
inline constexpr const char* Main[] = {"FPS", "Protocol", "RateControl", "Compression", "Bitrate"};
inline constexpr const char* Low[] = {"LowFPS", "WithFPS", "LowRateControl", "LowCompression"};
inline constexpr const char* LowBitrate[] = {"LowBitrate"};

} // namespace nsDriverKeys
