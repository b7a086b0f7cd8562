#include "CFrontConnection.h"

#include "CFaultPlayer.h"
#include "CFaultTable.h"

#include <algorithm>

namespace {

constexpr int IdleMs = 120000; ///< a connection without a request is closed
constexpr std::size_t PieceSize = 64u << 10;
constexpr std::size_t MaxCollected = 64u << 20;

using enum stDef_FaultKind::emDef_When;

/// The inner server decodes percent escapes in header values; it gets the percent signs escaped once more.
std::string PercentEscaped(const std::string& sValue)
{
    std::string sOut;
    for (const char c : sValue)
        sOut += c == '%' ? std::string("%25") : std::string(1, c);
    return sOut;
}

bool IsTunnel(const CHttpHead& objHead)
{
    return !objHead.m_F_s_Value("x-sessioncookie").empty() ||
           objHead.m_F_s_Value("Accept").find("x-rtsp-tunnelled") != std::string::npos ||
           objHead.m_F_s_Value("Content-Type").find("x-rtsp-tunnelled") != std::string::npos;
}

} // namespace

CFrontConnection::CFrontConnection(int nSocket, std::uint64_t nNumber, const stDef_FrontDoorParts& stParts)
    : vm_stParts(stParts), vm_objClient(nSocket), vm_nNumber(nNumber)
{}

void CFrontConnection::m_S_Wake()
{
    const std::lock_guard lock(vm_objMutex);
    vm_bWoken = true;
    vm_objClient.m_S_Wake();
    vm_objInner.m_S_Wake();
}

void CFrontConnection::m_S_Run()
{
    while (m_F_b_ServeOne()) {
    }
    // The client may still be sending a body that nobody wants, and must get the reply all the same.
    if (vm_objClient.m_F_b_IsOpen())
        vm_objClient.m_S_EndGently();
    const std::lock_guard lock(vm_objMutex);
    vm_objClient.m_S_Close();
    vm_objInner.m_S_Close();
}

bool CFrontConnection::m_F_b_Send(std::string_view sData)
{
    if (!vm_objClient.m_F_b_Write(sData))
        return false;
    vm_stEntry.nBytesOut += sData.size();
    return true;
}

bool CFrontConnection::m_F_b_ReadHead(CSocket& objSocket, std::string& sBuffer, std::string& sHead)
{
    char arPiece[8192];
    std::size_t nScanned = 0;
    while (true) {
        const auto nEnd = sBuffer.find("\r\n\r\n", nScanned);
        if (nEnd != std::string::npos) {
            sHead = sBuffer.substr(0, nEnd + 4);
            sBuffer.erase(0, nEnd + 4);
            return true;
        }
        if (sBuffer.size() > CHttpHead::MaxSize)
            return false;
        nScanned = sBuffer.size() > 3 ? sBuffer.size() - 3 : 0;
        const long nRead = objSocket.m_F_n_Read(arPiece, sizeof arPiece, IdleMs);
        if (nRead <= 0)
            return false;
        sBuffer.append(arPiece, static_cast<std::size_t>(nRead));
    }
}

bool CFrontConnection::m_F_b_HandToTunnel(const std::string& sHead)
{
    if (!vm_stParts.tunnel)
        return m_F_b_Send("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n");
    const std::string sInitial = sHead + vm_sFromClient;
    int nSocket = -1;
    {
        const std::lock_guard lock(vm_objMutex);
        if (!vm_bWoken)
            nSocket = vm_objClient.m_F_n_Release();
    }
    if (nSocket >= 0)
        vm_stParts.tunnel(nSocket, sInitial);
    return false;
}

bool CFrontConnection::m_F_b_ServeOne()
{
    std::string sHead;
    CHttpHead objHead;
    if (!m_F_b_ReadHead(vm_objClient, vm_sFromClient, sHead) || !objHead.m_F_b_Parse(sHead))
        return false;
    vm_stEntry = {};
    vm_stEntry.nConnection = vm_nNumber;
    vm_stEntry.sMethod = objHead.m_F_s_Method();
    vm_stEntry.sTarget = objHead.m_F_s_Target();
    const std::string sLogin = objHead.m_F_s_Value("Authorization");
    vm_stEntry.sScheme = sLogin.substr(0, sLogin.find(' '));
    if (IsTunnel(objHead))
        return m_F_b_HandToTunnel(sHead);
    if (!objHead.m_F_s_Value("Expect").empty() && !vm_objClient.m_F_b_Write("HTTP/1.1 100 Continue\r\n\r\n"))
        return false;

    const auto fault = vm_stParts.pFaults->m_F_o_Find(vm_stEntry.sTarget);
    const bool bOn = m_F_b_ServeBody(objHead, fault);
    vm_stParts.pLog->m_S_Add(std::move(vm_stEntry));
    return bOn && objHead.m_F_b_KeepAlive();
}

/// Decides what becomes of a request whose head is read.
bool CFrontConnection::m_F_b_ServeBody(const CHttpHead& objHead, const std::optional<stDef_Fault>& fault)
{
    const stDef_FaultKind* pKind = fault ? CFaultTable::s_F_p_Kind(fault->sName) : nullptr;
    const bool bLogin = !vm_stEntry.sScheme.empty();
    const bool bStale = pKind && pKind->sName == "stale-nonce";
    if (pKind && !bStale && (pKind->nWhen == AtOnce || (pKind->nWhen == LoggedIn && bLogin))) {
        vm_stParts.pFaults->m_F_o_Take(vm_stEntry.sTarget);
        vm_stEntry.sFault = pKind->sName;
        if (!m_F_b_PassBody(objHead, false))
            return false;
        return CFaultPlayer(vm_objClient, vm_stEntry.nBytesOut).m_F_b_PlayAtOnce(*fault, vm_nNumber);
    }
    const bool bPlayStale = bStale && bLogin && !vm_bStalePlayed;
    if (bPlayStale) {
        vm_bStalePlayed = true;
        vm_stEntry.sFault = pKind->sName;
        vm_stParts.pFaults->m_F_o_Take(vm_stEntry.sTarget);
    }
    const bool bPassed = m_F_b_PassRequest(objHead, bPlayStale);
    // Also after a body that was not wanted: the answer is there all the same.
    const bool bAnswered =
        m_F_b_Answer(vm_stEntry.sMethod, pKind && pKind->nWhen == OnReply ? fault : std::nullopt, bPlayStale);
    return bPassed && bAnswered;
}

bool CFrontConnection::m_F_b_OpenInner()
{
    const std::lock_guard lock(vm_objMutex);
    vm_sFromInner.clear();
    return !vm_bWoken && vm_objInner.m_F_b_ConnectLoopback(vm_stParts.nInnerPort);
}

/// Sends the request on. A kept inner connection may have ended meanwhile: that shows before the first byte is
/// answered, and a fresh one is taken for it.
bool CFrontConnection::m_F_b_PassRequest(CHttpHead objHead, bool bStale)
{
    objHead.m_S_Remove("Expect");
    if (bStale)
        objHead.m_S_Remove("Authorization"); // so that the recorder gives a fresh challenge
    objHead.m_S_Remove("X-Request-Target");
    for (auto& [sName, sValue] : objHead.vm_arLines)
        sValue = PercentEscaped(sValue);
    // The inner server drops what stands behind a '#' in the request line.
    objHead.m_S_Set("X-Request-Target", PercentEscaped(vm_stEntry.sTarget));
    const std::string sText = objHead.m_F_s_Text();

    const bool bKept = vm_objInner.m_F_b_IsOpen() && !vm_objInner.m_F_b_WaitReadable(0);
    if (!(bKept && vm_objInner.m_F_b_Write(sText)) && !(m_F_b_OpenInner() && vm_objInner.m_F_b_Write(sText)))
        return false;
    return m_F_b_PassBody(objHead, true);
}

bool CFrontConnection::m_F_b_PassBody(const CHttpHead& objHead, bool bForward)
{
    CBodyFramer objFramer(objHead, "");
    std::string sPiece = std::exchange(vm_sFromClient, {});
    while (true) {
        const std::size_t nBody = objFramer.m_F_n_Feed(sPiece);
        const std::string_view sBody = std::string_view(sPiece).substr(0, nBody);
        vm_stEntry.nBytesIn += nBody;
        vm_stEntry.sBody +=
            sBody.substr(0, CRequestLog::MaxBody - std::min(CRequestLog::MaxBody, vm_stEntry.sBody.size()));
        if (bForward && !vm_objInner.m_F_b_Write(sBody)) {
            vm_sFromClient = sPiece.substr(nBody);
            return false;
        }
        if (objFramer.m_F_b_Done()) {
            vm_sFromClient = sPiece.substr(nBody);
            return true;
        }
        sPiece.resize(PieceSize);
        const long nRead = vm_objClient.m_F_n_Read(sPiece.data(), sPiece.size(), IdleMs);
        if (nRead <= 0)
            return false;
        sPiece.resize(static_cast<std::size_t>(nRead));
    }
}

bool CFrontConnection::m_F_b_ReadReplyHead(CHttpHead& objReply)
{
    std::string sHead;
    do {
        if (!m_F_b_ReadHead(vm_objInner, vm_sFromInner, sHead) || !objReply.m_F_b_Parse(sHead))
            return false;
    } while (objReply.m_F_n_Status() >= 100 && objReply.m_F_n_Status() < 200);
    return true;
}

bool CFrontConnection::m_F_b_Answer(const std::string& sMethod, const std::optional<stDef_Fault>& fault, bool bStale)
{
    CHttpHead objReply;
    if (!vm_objInner.m_F_b_IsOpen() || !m_F_b_ReadReplyHead(objReply)) {
        m_F_b_Send("HTTP/1.1 502 Bad Gateway\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
        return false;
    }
    vm_stEntry.nStatus = objReply.m_F_n_Status();
    for (auto& [sName, sValue] : objReply.vm_arLines)
        if (bStale && sValue.starts_with("Digest ") && sValue.find("stale=") == std::string::npos)
            sValue += ", stale=true";
    bool bOn = false;
    if (fault && vm_stEntry.nStatus != 401) {
        stDef_WholeReply stReply{objReply, {}};
        if (!m_F_b_CollectBody(objReply, sMethod, stReply.sBody))
            return false;
        vm_stParts.pFaults->m_F_o_Take(vm_stEntry.sTarget);
        vm_stEntry.sFault = fault->sName;
        if (stReply.objHead.m_F_s_Value("Content-Length").empty())
            stReply.objHead.m_S_Set("Content-Length", std::to_string(stReply.sBody.size()));
        stReply.objHead.m_S_Remove("Transfer-Encoding");
        bOn = CFaultPlayer(vm_objClient, vm_stEntry.nBytesOut).m_F_b_PlayOnReply(*fault, std::move(stReply));
    } else {
        bOn = m_F_b_PassReply(objReply, sMethod);
    }
    const bool bInnerStays = objReply.m_F_b_KeepAlive();
    if (!bInnerStays) {
        const std::lock_guard lock(vm_objMutex);
        vm_objInner.m_S_Close();
    }
    return bOn && bInnerStays;
}

bool CFrontConnection::m_F_b_PassReply(const CHttpHead& objReply, const std::string& sMethod)
{
    CBodyFramer objFramer(objReply, sMethod);
    std::string sPiece = objReply.m_F_s_Text();
    const std::size_t nBody = objFramer.m_F_n_Feed(vm_sFromInner);
    sPiece += vm_sFromInner.substr(0, nBody);
    vm_sFromInner.erase(0, nBody);
    while (m_F_b_Send(sPiece)) {
        if (objFramer.m_F_b_Done())
            return true;
        sPiece.resize(PieceSize);
        const long nRead = vm_objInner.m_F_n_Read(sPiece.data(), sPiece.size());
        if (nRead <= 0)
            return false; // also the proper end of a body that only the closing ends
        sPiece.resize(static_cast<std::size_t>(nRead));
        objFramer.m_F_n_Feed(sPiece);
    }
    return false;
}

bool CFrontConnection::m_F_b_CollectBody(const CHttpHead& objReply, const std::string& sMethod, std::string& sBody)
{
    // Faults are played on documents, which the inner server sends with their length.
    CBodyFramer objFramer(objReply, sMethod);
    const std::size_t nFirst = objFramer.m_F_n_Feed(vm_sFromInner);
    sBody = vm_sFromInner.substr(0, nFirst);
    vm_sFromInner.erase(0, nFirst);
    std::string sPiece;
    while (!objFramer.m_F_b_Done() && sBody.size() < MaxCollected) {
        sPiece.resize(PieceSize);
        const long nRead = vm_objInner.m_F_n_Read(sPiece.data(), sPiece.size(), IdleMs);
        if (nRead <= 0)
            return objFramer.m_F_b_UntilClose();
        const auto nBody = objFramer.m_F_n_Feed(std::string_view(sPiece).substr(0, static_cast<std::size_t>(nRead)));
        sBody.append(sPiece, 0, nBody);
    }
    return true;
}
