#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// What came back for one call of CProbe.
struct stDef_ProbeReply
{
    bool bTransferred = false;
    long nStatus = 0;
    std::string sBody;
    std::vector<std::string> arHeads; ///< header block of every reply, a 401 that was answered by a login included
    std::string sAuthorization;       ///< Authorization value that was sent last
    long nNewConnections = 0;
};

/// One HTTP client over real sockets, with its own kept connection.
class CProbe
{
public:
    enum class emDef_Auth
    {
        None,
        Basic,
        Digest
    };

    explicit CProbe(int nPort, emDef_Auth eAuth = emDef_Auth::Digest, std::string sUser = "admin",
                    std::string sPassword = "Fl33t!ink");
    ~CProbe();

    /// @param sTarget goes into the request line byte for byte
    stDef_ProbeReply m_F_o_Get(const std::string& sTarget);
    stDef_ProbeReply m_F_o_Post(const std::string& sTarget, const std::string& sBody);

    /// Sends this Authorization value as it stands; empty: back to the account.
    void m_S_SetAuthorization(const std::string& sValue) { vm_sAuthorization = sValue; }

    /// Called with what has come of the body so far; false ends the transfer.
    void m_S_SetWatcher(std::function<bool(const std::string&)> fnWatcher) { vm_fnWatcher = std::move(fnWatcher); }

private:
    stDef_ProbeReply m_F_o_Run(const std::string& sTarget, const std::string* pBody);

    void* vm_pCurl;
    int vm_nPort;
    emDef_Auth vm_eAuth;
    std::string vm_sUser, vm_sPassword, vm_sAuthorization;
    std::function<bool(const std::string&)> vm_fnWatcher;
};
