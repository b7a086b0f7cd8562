#pragma once

#include <optional>
#include <string>

/// One account of the virtual recorder, valid for HTTP and RTSP alike. The password is in clear.
struct stDef_Account
{
    std::string sUser;
    std::string sPassword;
    // "0" or "1" for each camera, the first one first; nothing: all cameras.
    std::optional<std::string> sPreview = {};
    std::optional<std::string> sPlayback = {};
};
