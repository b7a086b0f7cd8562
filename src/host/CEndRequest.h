#pragma once

#include <functional>
#include <memory>

#include "host/Export.h"

/// Hears that the process is asked to end from outside: by SIGTERM, SIGINT or SIGHUP, on Windows by the console's
/// control events or its closing. The first request of a kind is only told; a second one ends the process as ever. One
/// object at a time.
class LIB_BEDROCK_EXPORT CEndRequest
{
public:
    /// `fnEnd` is called on a thread of its own.
    explicit CEndRequest(std::function<void()> fnEnd);
    ~CEndRequest();
    CEndRequest(const CEndRequest&) = delete;
    CEndRequest& operator=(const CEndRequest&) = delete;

private:
    struct st_Impl;
    std::unique_ptr<st_Impl> vm_pImpl;
};
