#pragma once

#include "http/CFaultTable.h"
#include "http/CHttpHead.h"

#include <functional>

class CLoggedReply;
class CSocket;

/// The recorder's true reply.
struct stDef_TrueReply
{
    CHttpHead objHead;
    /// Gives the next bytes behind the head; false when there are no more.
    std::function<bool(std::string& sPiece)> more;
};

/// Plays faults onto a client's connection. All results: false if the connection has to end.
class CFaultPlayer
{
public:
    CFaultPlayer(CSocket& objClient, CLoggedReply& objReply) : vm_objClient(objClient), vm_objReply(objReply) {}

    /// Plays a fault in place of a reply.
    bool m_F_b_PlayAtOnce(const stDef_Fault& stFault);
    /// Plays a fault on the bytes of the true reply, as they come.
    bool m_F_b_PlayOnBytes(const stDef_Fault& stFault, const stDef_TrueReply& stReply);
    /// Plays a fault on the true reply, whose body is whole.
    bool m_F_b_PlayOnReply(const stDef_Fault& stFault, CHttpHead objHead, std::string sBody);

private:
    struct stDef_AtOnceRow;
    struct stDef_OnBytesRow;
    struct stDef_OnReplyRow;
    static const stDef_AtOnceRow g_arAtOnce[];
    static const stDef_OnBytesRow g_arOnBytes[];
    static const stDef_OnReplyRow g_arOnReply[];

    bool m_F_b_SendWhole(const CHttpHead& objHead, const std::string& sBody);
    bool m_F_b_SendTrue(const stDef_TrueReply& stReply, std::size_t nLimit);
    bool m_F_b_SendSlowly(std::string_view sData, long nBytesPerSecond);
    bool m_F_b_AnnounceLength(CHttpHead& objHead, const std::string& sBody, const std::string& sLength);
    bool m_F_b_Hold(); ///< waits until the client has gone
    bool m_F_b_Endless(std::string_view sStart, std::string_view sPiece);

    CSocket& vm_objClient;
    CLoggedReply& vm_objReply;
};
