#pragma once

#include "http/CFaultTable.h"
#include "http/CHttpHead.h"
#include "http/CLoggedReply.h"
#include "http/CSocket.h"

#include <chrono>
#include <functional>
#include <mutex>
#include <optional>

/// What all connections of a proxy share.
struct stDef_ProxyParts
{
    int nInnerPort = 0;
    int nHeadMs = 10000; ///< that a request's head may take
    CFaultTable* pFaults = nullptr;
    CRequestLog* pLog = nullptr;
    std::function<bool(int, const std::string&)> tunnel;
};

/// One client's connection to the proxy, with the inner connection that serves it.
class CProxyConnection
{
public:
    CProxyConnection(int nSocket, std::uint64_t nNumber, const stDef_ProxyParts& stParts);

    void m_S_Run();  ///< serves until either side ends; on a thread of its own
    void m_S_Wake(); ///< from any thread: ends it

    /// How long the client has kept us waiting: for the rest of a request, or to take a reply's bytes. -1 while we are
    /// at work. From any thread.
    long long m_F_n_KeptWaitingMs() const;
    /// Wakes it if it has been kept waiting that long; false if not.
    bool m_F_b_EndWaiting(long long nLeastMs);

private:
    /// How far a request's body came.
    enum class emDef_Body
    {
        Whole,
        Refused, ///< the inner server doesn't take it; its answer may be there all the same
        Bad,     ///< where it ends can't be told
        TooLarge,
        Lost ///< the client is gone
    };

    using Clock = std::chrono::steady_clock;

    void m_S_BeginWaiting();
    bool m_F_b_DoneWaiting();
    static bool s_F_b_ReadHead(CSocket& objSocket, std::string& sBuffer, std::string& sHead, int nHeadMs);
    bool m_F_b_ReadRequest(std::string& sHead, CHttpHead& objHead);
    bool m_F_b_ServeOne();
    bool m_F_b_Serve(const CHttpHead& objHead, const std::string& sHead);
    bool m_F_b_HandToTunnel(const std::string& sHead);
    bool m_F_b_TakeFault(std::optional<stDef_Fault>& fault);
    bool m_F_b_PlayAtOnce(const CHttpHead& objHead, const stDef_Fault& stFault);
    bool m_F_b_Forward(CHttpHead objHead, const std::optional<stDef_Fault>& fault, bool bUnlogged);
    bool m_F_b_SendToInner(const std::string& sText);
    emDef_Body m_F_n_PassBody(const CHttpHead& objHead, bool bForward);
    bool m_F_b_DropBody(const CHttpHead& objHead);
    bool m_F_b_RefuseBody(emDef_Body eBody);
    void m_S_PrepareHead(CHttpHead& objHead, bool bUnlogged, bool bTakesBody) const;
    void m_S_OpenInner();
    void m_S_CloseInner();
    bool m_F_b_ReadReplyHead(CHttpHead& objReply);
    bool m_F_b_Answer(std::optional<stDef_Fault> fault, bool bStale);
    bool m_F_b_More(CBodyFramer& objFramer, std::string& sPiece);
    bool m_F_b_PassReply(const CHttpHead& objReply, CBodyFramer& objFramer);
    bool m_F_b_PlayOnReply(const stDef_Fault& stFault, const CHttpHead& objReply, CBodyFramer& objFramer);

    stDef_ProxyParts vm_stParts;
    CSocket vm_objClient;
    CSocket vm_objInner;
    CLoggedReply vm_objReply;
    mutable std::mutex vm_objMutex; ///< guards opening and closing the sockets, and what follows, against other threads
    bool vm_bWoken = false;
    std::optional<Clock::time_point> vm_tmWaiting; ///< since when the client keeps us waiting
    std::uint64_t vm_nNumber;
    std::string vm_sFromClient; ///< bytes read and not served yet
    std::string vm_sFromInner;
    bool vm_bUnlogged = false; ///< a login was taken off a request of this connection
};
