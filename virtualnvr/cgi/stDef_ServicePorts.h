#pragma once

#include <atomic>

/// The ports that clients reach, once they are known; 0 before, and for a service that there isn't.
struct stDef_ServicePorts
{
    std::atomic<int> nHttp{0};
    std::atomic<int> nRtsp{0};
};
