#include "http/CSocket.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int Backlog = 1024;
constexpr int GentleMs = 200;
constexpr int NoDescriptorMs = 20;
constexpr std::size_t GentleBytes = 1u << 20;

void SetOption(int nSocket, int nLevel, int nOption)
{
    const int nOn = 1;
    ::setsockopt(nSocket, nLevel, nOption, &nOn, sizeof nOn);
}

/// Milliseconds to go; negative if there is no limit.
class CCountdown
{
public:
    explicit CCountdown(int nMs) : vm_bEndless(nMs < 0), vm_nEnd(Clock::now() + std::chrono::milliseconds(nMs)) {}
    int m_F_n_Left() const
    {
        const auto nLeft = std::chrono::ceil<std::chrono::milliseconds>(vm_nEnd - Clock::now()).count();
        return vm_bEndless ? -1 : static_cast<int>(std::max<long long>(nLeft, 0));
    }

private:
    using Clock = std::chrono::steady_clock;
    bool vm_bEndless;
    Clock::time_point vm_nEnd;
};

bool Poll(int nSocket, short nEvents, int nTimeoutMs)
{
    const CCountdown objCountdown(nTimeoutMs);
    while (true) {
        pollfd stPoll{nSocket, nEvents, 0};
        const int nReady = ::poll(&stPoll, 1, objCountdown.m_F_n_Left());
        if (nReady >= 0 || errno != EINTR)
            return nReady > 0;
    }
}

} // namespace

CSocket::CSocket(int nSocket) : vm_nSocket(nSocket)
{
    if (vm_nSocket >= 0)
        SetOption(vm_nSocket, IPPROTO_TCP, TCP_NODELAY);
}

CSocket::~CSocket()
{
    m_S_Close();
}

bool CSocket::m_F_b_Listen(const std::string& sBind, int nPort, std::string& sError)
{
    addrinfo stHints{}, *pFound = nullptr;
    stHints.ai_flags = AI_PASSIVE | AI_NUMERICHOST;
    stHints.ai_socktype = SOCK_STREAM;
    if (::getaddrinfo(sBind.c_str(), std::to_string(nPort).c_str(), &stHints, &pFound) != 0) {
        sError = "no address: " + sBind;
        return false;
    }
    vm_nSocket = ::socket(pFound->ai_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
    SetOption(vm_nSocket, SOL_SOCKET, SO_REUSEADDR);
    const bool bListens = vm_nSocket >= 0 && ::bind(vm_nSocket, pFound->ai_addr, pFound->ai_addrlen) == 0 &&
                          ::listen(vm_nSocket, Backlog) == 0;
    if (!bListens) {
        sError = "port " + std::to_string(nPort) + " of " + sBind + ": " + std::strerror(errno);
        m_S_Close();
    }
    ::freeaddrinfo(pFound);
    return bListens;
}

int CSocket::m_F_n_Port() const
{
    sockaddr_storage stAddress{};
    socklen_t nLength = sizeof stAddress;
    if (::getsockname(vm_nSocket, reinterpret_cast<sockaddr*>(&stAddress), &nLength) != 0)
        return 0;
    return ntohs(stAddress.ss_family == AF_INET6 ? reinterpret_cast<sockaddr_in6&>(stAddress).sin6_port
                                                 : reinterpret_cast<sockaddr_in&>(stAddress).sin_port);
}

int CSocket::m_F_n_Accept()
{
    while (true) {
        const int nSocket = ::accept4(vm_nSocket, nullptr, nullptr, SOCK_CLOEXEC);
        if (nSocket >= 0)
            return nSocket;
        if (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM)
            m_F_b_WaitGone(NoDescriptorMs); // the connection stays in the queue until somebody else closes one
        else if (errno != EINTR && errno != ECONNABORTED)
            return -1;
    }
}

bool CSocket::m_F_b_Open()
{
    m_S_Close();
    vm_nSocket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (vm_nSocket >= 0)
        SetOption(vm_nSocket, IPPROTO_TCP, TCP_NODELAY);
    return vm_nSocket >= 0;
}

bool CSocket::m_F_b_ConnectLoopback(int nPort)
{
    sockaddr_in stAddress{};
    stAddress.sin_family = AF_INET;
    stAddress.sin_port = htons(static_cast<std::uint16_t>(nPort));
    stAddress.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return ::connect(vm_nSocket, reinterpret_cast<sockaddr*>(&stAddress), sizeof stAddress) == 0;
}

long CSocket::m_F_n_Read(char* pData, std::size_t nSize, int nTimeoutMs)
{
    if (nTimeoutMs >= 0 && !m_F_b_WaitReadable(nTimeoutMs))
        return -1;
    while (true) {
        const ssize_t nRead = ::recv(vm_nSocket, pData, nSize, 0);
        if (nRead >= 0 || errno != EINTR)
            return nRead;
    }
}

bool CSocket::m_F_b_Write(std::string_view sData)
{
    while (!sData.empty()) {
        const ssize_t nSent = ::send(vm_nSocket, sData.data(), sData.size(), MSG_NOSIGNAL);
        if (nSent < 0 && errno == EINTR)
            continue;
        if (nSent <= 0)
            return false;
        sData.remove_prefix(static_cast<std::size_t>(nSent));
    }
    return true;
}

bool CSocket::m_F_b_WaitReadable(int nTimeoutMs)
{
    return Poll(vm_nSocket, POLLIN, nTimeoutMs);
}

bool CSocket::m_F_b_WaitGone(int nTimeoutMs)
{
    return Poll(vm_nSocket, 0, nTimeoutMs); // errors and hang-ups are always reported
}

void CSocket::m_S_Wake()
{
    if (vm_nSocket >= 0)
        ::shutdown(vm_nSocket, SHUT_RDWR);
}

void CSocket::m_S_Close()
{
    if (vm_nSocket >= 0)
        ::close(vm_nSocket);
    vm_nSocket = -1;
}

void CSocket::m_S_Reset()
{
    const linger stLinger{1, 0};
    ::setsockopt(vm_nSocket, SOL_SOCKET, SO_LINGER, &stLinger, sizeof stLinger);
    vm_bReset = true;
}

void CSocket::m_S_EndGently()
{
    if (vm_bReset)
        return;
    ::shutdown(vm_nSocket, SHUT_WR);
    char arDropped[4096];
    const CCountdown objCountdown(GentleMs);
    for (std::size_t nDropped = 0; nDropped < GentleBytes;) {
        const long nRead = m_F_n_Read(arDropped, sizeof arDropped, objCountdown.m_F_n_Left());
        if (nRead <= 0)
            break;
        nDropped += static_cast<std::size_t>(nRead);
    }
}

int CSocket::m_F_n_Release()
{
    return vm_nSocket.exchange(-1);
}
