#pragma once

#include <functional>
#include <memory>
#include <string>

class CFaultTable;
class CRequestLog;

/// The recorder's HTTP port, as a reverse proxy. Takes requests off the wire, logs them, plays the faults that are due,
/// and passes everything else on to the inner server and back, byte for byte and as it comes, so that multipart streams
/// flow. A request that opens an RTSP tunnel is handed on with its socket.
///
/// One thread a connection. Start and Stop belong to one thread.
class CHttpProxy
{
public:
    /// When all places are taken, the client that has kept its connection waiting longest gives its own to a new one;
    /// where all are being served, the new one is closed.
    static constexpr int MaxConnections = 64;

    CHttpProxy();
    ~CHttpProxy(); ///< stops
    CHttpProxy(const CHttpProxy&) = delete;
    CHttpProxy& operator=(const CHttpProxy&) = delete;

    /// @param nPort 0 for any free one
    /// @param nInnerPort of the server on the loopback address
    /// Table and log must live until m_S_Stop.
    bool m_F_b_Start(const std::string& sBind, int nPort, int nInnerPort, CFaultTable& objFaults, CRequestLog& objLog,
                     std::string& sError);
    /// Closes the port and all connections, whatever they wait for, and joins all threads.
    void m_S_Stop();
    int m_F_n_Port() const;

    /// Who gets tunnel requests: the connected socket, which is the handler's from then on, and the bytes read so far.
    /// Set it before Start or after Stop. Without a handler they are answered with 404.
    void m_S_SetTunnelHandler(std::function<bool(int nSocket, const std::string& sInitial)> handler);

    /// Milliseconds that a request's head may take from its first byte on. Set it before Start or after Stop.
    void m_S_SetHeadLimit(int nMs);

private:
    struct stDef_Impl;
    std::unique_ptr<stDef_Impl> vm_pImpl;
};
