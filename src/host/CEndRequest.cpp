#include "host/CEndRequest.h"

#include "host/Platform.h"

#ifdef _WIN32

#include <mutex>
#include <utility>

namespace {

std::mutex s_objLock;
std::function<void()> s_fnEnd;

// Windows calls it on a thread of its own, and ends the process when it returns, unless Ctrl+C or Ctrl+Break was
// pressed.
BOOL WINAPI Handle(DWORD nEvent)
{
    {
        const std::lock_guard objGuard(s_objLock);
        if (!s_fnEnd)
            return FALSE;
        std::exchange(s_fnEnd, nullptr)();
    }
    if (nEvent != CTRL_C_EVENT && nEvent != CTRL_BREAK_EVENT)
        Sleep(INFINITE);
    return TRUE;
}

} // namespace

struct CEndRequest::st_Impl
{};

CEndRequest::CEndRequest(std::function<void()> fnEnd)
{
    {
        const std::lock_guard objGuard(s_objLock);
        s_fnEnd = std::move(fnEnd);
    }
    SetConsoleCtrlHandler(Handle, TRUE);
}

CEndRequest::~CEndRequest()
{
    SetConsoleCtrlHandler(Handle, FALSE);
    const std::lock_guard objGuard(s_objLock);
    s_fnEnd = {};
}

#else

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr std::array g_anSignals = {SIGTERM, SIGINT, SIGHUP};
constexpr char Asked = 'e';
constexpr char Over = 'x';

volatile std::sig_atomic_t s_nWriteEnd = -1;

// A signal may come in the middle of anything: only the pipe is touched.
void Handle(int)
{
    const int nBefore = errno;
    [[maybe_unused]] const auto nWritten = write(s_nWriteEnd, &Asked, 1);
    errno = nBefore;
}

} // namespace

struct CEndRequest::st_Impl
{
    std::function<void()> fnEnd;
    std::array<int, 2> anPipe{-1, -1};
    std::array<struct sigaction, g_anSignals.size()> astBefore{};
    std::thread objThread;

    void Run() const
    {
        char cRead = Over;
        while (true) {
            const auto nRead = read(anPipe[0], &cRead, 1);
            if (nRead < 0 && errno == EINTR)
                continue;
            if (nRead != 1 || cRead == Over)
                return;
            fnEnd();
        }
    }
};

CEndRequest::CEndRequest(std::function<void()> fnEnd) : vm_pImpl(std::make_unique<st_Impl>())
{
    st_Impl& d = *vm_pImpl;
    d.fnEnd = std::move(fnEnd);
    if (pipe2(d.anPipe.data(), O_CLOEXEC) != 0)
        return;                              // signals end the process as ever
    fcntl(d.anPipe[1], F_SETFL, O_NONBLOCK); // a handler must not wait
    s_nWriteEnd = d.anPipe[1];
    d.objThread = std::thread([&d] { d.Run(); });
    struct sigaction stAction = {};
    stAction.sa_handler = Handle;
    stAction.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    for (std::size_t i = 0; i < g_anSignals.size(); ++i) {
        sigaction(g_anSignals[i], &stAction, &d.astBefore[i]);
        if (d.astBefore[i].sa_handler == SIG_IGN) // as nohup wants it
            sigaction(g_anSignals[i], &d.astBefore[i], nullptr);
    }
}

CEndRequest::~CEndRequest()
{
    st_Impl& d = *vm_pImpl;
    if (!d.objThread.joinable())
        return;
    for (std::size_t i = 0; i < g_anSignals.size(); ++i)
        sigaction(g_anSignals[i], &d.astBefore[i], nullptr);
    // A full pipe holds requests alone, which the thread reads away.
    while (write(d.anPipe[1], &Over, 1) != 1)
        std::this_thread::yield();
    d.objThread.join();
    close(d.anPipe[0]);
    close(d.anPipe[1]);
}

#endif
