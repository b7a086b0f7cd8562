#include "host/Platform.h"

#include <QFile>
#include <algorithm>
#include <chrono>
#include <thread>

#ifndef _WIN32
#include <cerrno>
#include <climits>
#include <ctime>
#include <fcntl.h>
#include <linux/futex.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace {

using Clock = std::chrono::steady_clock;

// No call wakes a waiter in another process through plain memory here: it looks once a millisecond.
void Pause()
{
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

#ifdef _WIN32

// WaitOnAddress ends at the border of the process, so the word is watched.
void WaitOnce(const std::atomic<std::uint32_t>*, std::uint32_t, Clock::duration)
{
    Pause();
}

#else

static_assert(sizeof(std::atomic<std::uint32_t>) == 4 && std::atomic<std::uint32_t>::is_always_lock_free);

// Not a private futex: the waiter may be in another process, with a read-only mapping.
void WaitOnce(const std::atomic<std::uint32_t>* pWord, std::uint32_t nExpected, Clock::duration nLeft)
{
    const auto nLeftNs = std::chrono::duration_cast<std::chrono::nanoseconds>(nLeft).count();
    const timespec stLeft{static_cast<time_t>(nLeftNs / 1'000'000'000), static_cast<long>(nLeftNs % 1'000'000'000)};
    const long nResult = syscall(SYS_futex, pWord, FUTEX_WAIT, nExpected, &stLeft, nullptr, 0);
    if (nResult != 0 && errno != EAGAIN && errno != EINTR && errno != ETIMEDOUT)
        Pause();
}

#endif

} // namespace

bool Platform::s_F_b_WaitWord(const std::atomic<std::uint32_t>* pWord, std::uint32_t nExpected, int nTimeoutMs)
{
    const auto nEnd = Clock::now() + std::chrono::milliseconds(std::max(nTimeoutMs, 0));
    while (pWord->load(std::memory_order_acquire) == nExpected) {
        const auto nLeft = nEnd - Clock::now();
        if (nLeft <= Clock::duration::zero())
            return false;
        WaitOnce(pWord, nExpected, nLeft);
    }
    return true;
}

void Platform::s_S_WakeWord([[maybe_unused]] std::atomic<std::uint32_t>* pWord)
{
#ifndef _WIN32
    syscall(SYS_futex, pWord, FUTEX_WAKE, INT_MAX, nullptr, nullptr, 0);
#endif
}

bool Platform::s_F_b_OpenPlain(QFile& objFile)
{
#ifdef _WIN32
    return objFile.open(QIODevice::ReadOnly);
#else
    const int nFile = open(QFile::encodeName(objFile.fileName()).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    struct stat st
    {};
    if (nFile >= 0 && fstat(nFile, &st) == 0 && S_ISREG(st.st_mode) &&
        objFile.open(nFile, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return true;
    if (nFile >= 0)
        close(nFile);
    return false;
#endif
}

std::uint64_t Platform::s_F_n_SteadyMs()
{
    return s_F_n_SteadyUs() / 1000;
}

std::uint64_t Platform::s_F_n_SteadyUs()
{
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::microseconds>(Clock::now().time_since_epoch()).count());
}
