#pragma once

#include <memory>
#include <string>

class CCgiRouter;
class CDigestAuth;

/// The HTTP server of the recorder, on a loopback port of its own: logs clients in, reads bodies (64 MiB at most) and
/// hands requests to the router. The proxy stands before it and tells the request target as it was sent in the
/// header "X-Request-Target", since the server library drops what follows a '#'.
class CCgiServer
{
public:
    CCgiServer();
    ~CCgiServer(); ///< stops
    CCgiServer(const CCgiServer&) = delete;
    CCgiServer& operator=(const CCgiServer&) = delete;

    /// Both objects must outlive the server. @return false with sError set if no port could be opened.
    bool m_F_b_Start(const CCgiRouter& objRouter, CDigestAuth& objAuth, std::string& sError);

    /// Ends streams and joins all threads. Clients that keep a connection open hold it up: close them first.
    void m_S_Stop();

    int m_F_n_Port() const; ///< 0 while stopped

private:
    struct stDef_Impl;
    std::unique_ptr<stDef_Impl> vm_pImpl;
};
