#include "rtsp/CFeedClock.h"

#include "rtsp/CStreamFeed.h"

#include <algorithm>
#include <chrono>

CFeedClock::CFeedClock() : vm_objThread([this] { m_S_Run(); }) {}

CFeedClock::~CFeedClock()
{
    {
        const std::lock_guard objGuard(vm_objLock);
        vm_bStop = true;
    }
    vm_objChange.notify_one();
    vm_objThread.join();
}

void CFeedClock::m_S_Add(std::shared_ptr<CStreamFeed> pFeed)
{
    const std::lock_guard objGuard(vm_objLock);
    vm_arEntries.push_back({std::move(pFeed), 0});
    vm_objChange.notify_one();
}

void CFeedClock::m_S_Remove(const CStreamFeed* pFeed)
{
    const std::lock_guard objGuard(vm_objLock);
    std::erase_if(vm_arEntries, [pFeed](const stDef_Entry& stEntry) { return stEntry.pFeed.get() == pFeed; });
}

void CFeedClock::m_S_Run()
{
    using Clock = std::chrono::steady_clock;
    std::unique_lock objGuard(vm_objLock);
    while (!vm_bStop) {
        if (vm_arEntries.empty()) {
            vm_objChange.wait(objGuard);
            continue;
        }
        const std::int64_t nNowNs = std::chrono::nanoseconds(Clock::now().time_since_epoch()).count();
        std::int64_t nNextNs = nNowNs + 1'000'000'000;
        for (stDef_Entry& stEntry : vm_arEntries) {
            if (stEntry.nDueNs <= nNowNs)
                stEntry.nDueNs = stEntry.pFeed->m_F_n_Push(nNowNs);
            nNextNs = std::min(nNextNs, stEntry.nDueNs);
        }
        vm_objChange.wait_until(objGuard, Clock::time_point(std::chrono::nanoseconds(nNextNs)));
    }
}
