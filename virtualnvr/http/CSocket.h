#pragma once

#include <atomic>
#include <cstddef>
#include <string>
#include <string_view>

/// A TCP socket that another thread can wake from any wait.
class CSocket
{
public:
    explicit CSocket(int nSocket = -1);
    ~CSocket(); ///< closes
    CSocket(const CSocket&) = delete;
    CSocket& operator=(const CSocket&) = delete;

    bool m_F_b_Listen(const std::string& sBind, int nPort, std::string& sError);
    int m_F_n_Port() const;
    /// The next connection as a plain socket; -1 when woken or on failure.
    int m_F_n_Accept();
    bool m_F_b_Open(); ///< a fresh socket, for m_F_b_ConnectLoopback
    bool m_F_b_ConnectLoopback(int nPort);
    bool m_F_b_IsOpen() const { return vm_nSocket >= 0; }

    /// Reads what has come, at most `nSize` bytes; 0 at the end, -1 on failure, when woken, or after `nTimeoutMs`
    /// without any (negative: no limit).
    long m_F_n_Read(char* pData, std::size_t nSize, int nTimeoutMs = -1);
    /// Writes everything; false if the other side is gone or the socket was woken.
    bool m_F_b_Write(std::string_view sData);
    /// Waits for the other side to close or send, at most so long (negative: no limit).
    bool m_F_b_WaitReadable(int nTimeoutMs);
    /// Waits for the end of the connection or a wake, at most so long, whatever is sent meanwhile. A side that has
    /// closed is noticed only once something was sent to it: till then it may still be reading.
    bool m_F_b_WaitGone(int nTimeoutMs);

    void m_S_Wake(); ///< from any thread: all waits end, now and from here on
    void m_S_Close();
    void m_S_Reset(); ///< the other side will see a reset when this one is closed, which is to follow
    /// Ends the sending side and drops what still comes for a moment, so that the other side gets all that was sent.
    void m_S_EndGently();
    int m_F_n_Release(); ///< gives the socket away

private:
    std::atomic<int> vm_nSocket{-1};
    bool vm_bReset = false;
};
