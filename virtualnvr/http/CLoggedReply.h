#pragma once

#include "http/CRequestLog.h"

#include <string_view>

class CSocket;

/// A reply on its way to the client, and the request's entry in the log, which is brought up to date before the first
/// byte leaves: who has a reply finds its request in the log.
class CLoggedReply
{
public:
    CLoggedReply(CSocket& objClient, CRequestLog& objLog) : vm_objClient(objClient), vm_objLog(objLog) {}

    void m_S_Begin(stDef_LogEntry stEntry); ///< of a request whose head is read
    void m_S_PlayFault(std::string sName);  ///< notes it at once: there may never be a reply
    void m_S_End();                         ///< of the reply, or of the connection without one

    /// False if the client is gone.
    bool m_F_b_Send(std::string_view sData);
    /// A small reply of our own. `sHeaders` are whole lines.
    bool m_F_b_SendReply(int nStatus, std::string_view sReason, std::string_view sHeaders, std::string_view sBody);

    stDef_LogEntry vm_stEntry;

private:
    CSocket& vm_objClient;
    CRequestLog& vm_objLog;
};
