#include "host/hostenv/CCutGuard.h"

#ifndef _WIN32

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <mutex>
#include <sys/mman.h>

namespace {

/// The handler may take no lock, so the mappings stand in a table of a fixed size. A place is free while its begin is
/// 0.
struct st_Range
{
    std::atomic<std::uintptr_t> nBegin{0};
    std::atomic<std::uintptr_t> nEnd{0};
};

constexpr std::size_t MaxRanges = 4096;
st_Range g_arRanges[MaxRanges];
struct sigaction g_stBefore;

bool PutZeros(std::uintptr_t nAt)
{
    for (const st_Range& stRange : g_arRanges) {
        const std::uintptr_t nBegin = stRange.nBegin.load(std::memory_order_acquire);
        const std::uintptr_t nEnd = stRange.nEnd.load(std::memory_order_acquire);
        if (nBegin != 0 && nAt >= nBegin && nAt < nEnd)
            return mmap(reinterpret_cast<void*>(nBegin), nEnd - nBegin, PROT_READ | PROT_WRITE,
                        MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) != MAP_FAILED;
    }
    return false;
}

void PassOn(int nSignal, siginfo_t* pInfo, void* pContext)
{
    if (g_stBefore.sa_flags & SA_SIGINFO)
        return g_stBefore.sa_sigaction(nSignal, pInfo, pContext);
    if (g_stBefore.sa_handler != SIG_DFL && g_stBefore.sa_handler != SIG_IGN)
        return g_stBefore.sa_handler(nSignal);
    const bool bSent = pInfo->si_code <= 0; // by a process: nothing faults again when this returns
    if (bSent && g_stBefore.sa_handler == SIG_IGN)
        return;
    std::signal(nSignal, SIG_DFL);
    if (bSent)
        std::raise(nSignal);
}

void OnBusError(int nSignal, siginfo_t* pInfo, void* pContext)
{
    const int nError = errno;
    if (pInfo->si_code <= 0 || !PutZeros(reinterpret_cast<std::uintptr_t>(pInfo->si_addr)))
        PassOn(nSignal, pInfo, pContext);
    errno = nError;
}

void Install()
{
    struct sigaction stMine
    {};
    stMine.sa_sigaction = OnBusError;
    stMine.sa_flags = SA_SIGINFO | SA_ONSTACK;
    sigemptyset(&stMine.sa_mask);
    sigaction(SIGBUS, &stMine, &g_stBefore);
}

} // namespace

bool CCutGuard::s_F_b_Add(void* pBegin, std::size_t nSize)
{
    static std::once_flag s_objOnce;
    std::call_once(s_objOnce, Install);
    const auto nBegin = reinterpret_cast<std::uintptr_t>(pBegin);
    for (st_Range& stRange : g_arRanges) {
        std::uintptr_t nFree = 0;
        if (stRange.nBegin.compare_exchange_strong(nFree, nBegin, std::memory_order_acq_rel)) {
            stRange.nEnd.store(nBegin + nSize, std::memory_order_release);
            return true;
        }
    }
    return false;
}

void CCutGuard::s_S_Remove(void* pBegin)
{
    for (st_Range& stRange : g_arRanges) {
        if (stRange.nBegin.load(std::memory_order_relaxed) == reinterpret_cast<std::uintptr_t>(pBegin)) {
            stRange.nEnd.store(0, std::memory_order_release);
            stRange.nBegin.store(0, std::memory_order_release);
            return;
        }
    }
}

#endif
