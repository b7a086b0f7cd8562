#pragma once

#include "CFaultTable.h"
#include "CHttpHead.h"

class CSocket;

/// The recorder's true reply, whole.
struct stDef_WholeReply
{
    CHttpHead objHead;
    std::string sBody;
};

/// Plays faults onto a client's connection.
class CFaultPlayer
{
public:
    CFaultPlayer(CSocket& objClient, std::uint64_t& nBytesOut) : vm_objClient(objClient), vm_nBytesOut(nBytesOut) {}

    /// Plays a fault in place of a reply. False if the connection has to end; it may be closed already.
    bool m_F_b_PlayAtOnce(const stDef_Fault& stFault, std::uint64_t nConnection);
    /// Plays a fault on the true reply.
    bool m_F_b_PlayOnReply(const stDef_Fault& stFault, stDef_WholeReply stReply);

private:
    struct stDef_AtOnceRow;
    struct stDef_OnReplyRow;
    static const stDef_AtOnceRow g_arAtOnce[];
    static const stDef_OnReplyRow g_arOnReply[];

    bool m_F_b_Send(std::string_view sData);
    bool m_F_b_SendReply(const std::string& sStatus, const std::string& sHeaders, std::string_view sBody);
    bool m_F_b_SendWhole(const stDef_WholeReply& stReply);
    bool m_F_b_Hold(); ///< waits until the client has gone
    bool m_F_b_Endless(std::string_view sStart, std::string_view sPiece);

    CSocket& vm_objClient;
    std::uint64_t& vm_nBytesOut;
};
