#include "ptz/CPtzSender.h"

#include <chrono>

namespace {

constexpr std::chrono::seconds RepeatPause{1}; ///< for a recorder whose absence is known at once

// A stop that the recorder has refused would be refused again.
bool IsUnheard(int nResult)
{
    return nResult == CHTTP::Result_TimedOut || nResult == CHTTP::Result_Unreachable || nResult == CHTTP::Result_Broken;
}

} // namespace

CPtzSender::CPtzSender(CNvrHolder pNvr, std::function<void(int)> fnResult, std::function<void()> fnEnd)
    : vm_pNvr(std::move(pNvr)),
      vm_fnResult(std::move(fnResult)),
      vm_fnEnd(std::move(fnEnd)),
      vm_objThread([this] { m_S_Run(); })
{}

CPtzSender::~CPtzSender()
{
    m_S_Close(true);
    vm_objThread.join();
}

void CPtzSender::m_S_Add(const stDef_PtzOrder& stOrder)
{
    const std::lock_guard objLock(vm_objMutex);
    vm_objQueue.m_S_Add(stOrder);
    vm_objWake.notify_one();
}

void CPtzSender::m_S_Close(bool bHaste)
{
    const std::lock_guard objLock(vm_objMutex);
    vm_bClosing = true;
    vm_bHaste |= bHaste;
    vm_objQueue.m_S_DropAllButStops();
    vm_objWake.notify_one();
}

void CPtzSender::m_S_Run()
{
    std::unique_lock objLock(vm_objMutex);
    while (true) {
        vm_objWake.wait(objLock, [this] { return vm_bClosing || !vm_objQueue.m_F_b_Empty(); });
        const std::optional<stDef_PtzOrder> stOrder = vm_objQueue.m_F_o_Take();
        if (!stOrder)
            break;
        objLock.unlock();
        const int nResult = m_F_n_Send(*stOrder);
        objLock.lock();
        if (IsUnheard(nResult))
            m_S_OnUnheard(objLock, *stOrder, nResult);
    }
    objLock.unlock();
    vm_fnEnd();
}

// A camera must not go on moving because the line was down for some seconds: its stop goes again, also if nothing else
// is to be sent to it any more.
void CPtzSender::m_S_OnUnheard(std::unique_lock<std::mutex>& objLock, const stDef_PtzOrder& stOrder, int nResult)
{
    vm_objQueue.m_S_DropOnce();
    if (stOrder.nKind != stDef_PtzOrder::emDef_Kind::Stop || vm_bHaste)
        return;
    if (nResult != CHTTP::Result_TimedOut)
        vm_objWake.wait_for(objLock, RepeatPause, [this] { return vm_bHaste; });
    vm_objQueue.m_S_Repeat(stOrder);
}

int CPtzSender::m_F_n_Send(const stDef_PtzOrder& stOrder)
{
    vm_pNvr->m_S_ExecPTZCmd(stOrder.nCmd, stOrder.nCamera, stOrder.nParam1, stOrder.nParam2);
    const int nResult = vm_pNvr->m_F_n_LastCommand();
    // A stop that went well doesn't make up for the movement that it ends.
    if (nResult < 0 || stOrder.nKind != stDef_PtzOrder::emDef_Kind::Stop)
        vm_fnResult(nResult);
    return nResult;
}
