#pragma once

#include <memory>

#include "host/Export.h"

/// One worker thread. Create and close belong to one owner's thread.
class LIB_BEDROCK_EXPORT CStdThread
{
public:
    using fnEntry = unsigned int (*)(void*); ///< must not throw; the result is not kept

    CStdThread();
    ~CStdThread(); ///< as `m_F_n_CloseThread` with no wait
    CStdThread(const CStdThread&) = delete;
    CStdThread& operator=(const CStdThread&) = delete;

    /// Starts the entry on a thread of its own at once. Returns 1, or 0 if a thread is still running, `pEntry` is null
    /// or the system has no thread to give. What `pArg` points to must live until the entry has returned.
    int m_F_n_CreaetThread(fnEntry pEntry, void* pArg);

    /// Waits up to `nWaitMs` for the entry to return and closes the thread. Returns 1 if the entry has returned or
    /// there was no thread. 0 means that it still runs: it was let go and ends by itself.
    int m_F_n_CloseThread(int nWaitMs);

private:
    struct st_Impl;
    std::unique_ptr<st_Impl> vm_pImpl;
};
