#include "host/bedrock/CStdThread.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>

namespace {

// What the thread and its owner share; it outlives a thread that was let go.
class CEndFlag
{
public:
    void m_S_Set()
    {
        const std::lock_guard objLock(vm_objMutex);
        vm_bEnded = true;
        vm_objChanged.notify_all();
    }

    bool m_F_b_Wait(int nWaitMs)
    {
        std::unique_lock objLock(vm_objMutex);
        return vm_objChanged.wait_for(objLock, std::chrono::milliseconds(nWaitMs), [this] { return vm_bEnded; });
    }

private:
    std::mutex vm_objMutex;
    std::condition_variable vm_objChanged;
    bool vm_bEnded = false;
};

} // namespace

struct CStdThread::st_Impl
{
    std::thread vm_objThread;
    std::shared_ptr<CEndFlag> vm_pEnd;
};

CStdThread::CStdThread() : vm_pImpl(std::make_unique<st_Impl>()) {}

CStdThread::~CStdThread()
{
    m_F_n_CloseThread(0);
}

int CStdThread::m_F_n_CreaetThread(fnEntry pEntry, void* pArg)
{
    std::thread& objThread = vm_pImpl->vm_objThread;
    if (!pEntry || (objThread.joinable() && !vm_pImpl->vm_pEnd->m_F_b_Wait(0)))
        return 0;
    if (objThread.joinable())
        objThread.join();
    vm_pImpl->vm_pEnd = std::make_shared<CEndFlag>();
    try {
        objThread = std::thread([pEntry, pArg, pEnd = vm_pImpl->vm_pEnd] {
            pEntry(pArg);
            pEnd->m_S_Set();
        });
    } catch (const std::system_error&) {
        return 0;
    }
    return 1;
}

int CStdThread::m_F_n_CloseThread(int nWaitMs)
{
    std::thread& objThread = vm_pImpl->vm_objThread;
    if (!objThread.joinable())
        return 1;
    if (vm_pImpl->vm_pEnd->m_F_b_Wait(nWaitMs)) {
        objThread.join();
        return 1;
    }
    objThread.detach();
    return 0;
}
