#pragma once

#include "CHttpHead.h"
#include "CRequestLog.h"
#include "CSocket.h"

#include <atomic>
#include <functional>
#include <mutex>
#include <optional>

class CFaultTable;
struct stDef_Fault;

/// What all connections of a front door share.
struct stDef_FrontDoorParts
{
    int nInnerPort = 0;
    CFaultTable* pFaults = nullptr;
    CRequestLog* pLog = nullptr;
    std::function<bool(int, const std::string&)> tunnel;
};

/// One client's connection to the front door, with the inner connection that serves it.
class CFrontConnection
{
public:
    CFrontConnection(int nSocket, std::uint64_t nNumber, const stDef_FrontDoorParts& stParts);

    void m_S_Run();  ///< serves until either side ends; on a thread of its own
    void m_S_Wake(); ///< from any thread: ends it

private:
    bool m_F_b_ReadHead(CSocket& objSocket, std::string& sBuffer, std::string& sHead);
    bool m_F_b_ServeOne();
    bool m_F_b_HandToTunnel(const std::string& sHead);
    bool m_F_b_ServeBody(const CHttpHead& objHead, const std::optional<stDef_Fault>& fault);
    bool m_F_b_PassRequest(CHttpHead objHead, bool bStale);
    bool m_F_b_PassBody(const CHttpHead& objHead, bool bForward);
    bool m_F_b_OpenInner();
    bool m_F_b_ReadReplyHead(CHttpHead& objReply);
    bool m_F_b_Answer(const std::string& sMethod, const std::optional<stDef_Fault>& fault, bool bStale);
    bool m_F_b_PassReply(const CHttpHead& objReply, const std::string& sMethod);
    bool m_F_b_CollectBody(const CHttpHead& objReply, const std::string& sMethod, std::string& sBody);
    bool m_F_b_Send(std::string_view sData);

    stDef_FrontDoorParts vm_stParts;
    CSocket vm_objClient;
    CSocket vm_objInner;
    std::mutex vm_objMutex; ///< guards opening and closing the sockets against m_S_Wake
    bool vm_bWoken = false;
    std::uint64_t vm_nNumber;
    std::string vm_sFromClient; ///< bytes read and not served yet
    std::string vm_sFromInner;
    stDef_LogEntry vm_stEntry;
    bool vm_bStalePlayed = false;
};
