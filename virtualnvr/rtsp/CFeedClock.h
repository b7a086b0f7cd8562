#pragma once

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

class CStreamFeed;

/// The one thread that pushes all feeds, each at its own times. It sleeps while there is none.
class CFeedClock
{
public:
    CFeedClock();
    ~CFeedClock(); ///< joins the thread

    CFeedClock(const CFeedClock&) = delete;
    CFeedClock& operator=(const CFeedClock&) = delete;

    void m_S_Add(std::shared_ptr<CStreamFeed> pFeed);
    /// The feed isn't pushed any more once this returns. Harmless if it is gone.
    void m_S_Remove(const CStreamFeed* pFeed);

private:
    struct stDef_Entry
    {
        std::shared_ptr<CStreamFeed> pFeed;
        std::int64_t nDueNs = 0;
    };
    void m_S_Run();

    std::mutex vm_objLock;
    std::condition_variable vm_objChange;
    std::vector<stDef_Entry> vm_arEntries;
    bool vm_bStop = false;
    std::thread vm_objThread;
};
