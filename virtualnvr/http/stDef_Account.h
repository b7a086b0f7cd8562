#pragma once

#include <string>

/// One account of the virtual recorder, valid for HTTP and RTSP alike. The password is in clear.
struct stDef_Account
{
    std::string sUser;
    std::string sPassword;
};
