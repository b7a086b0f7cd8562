#include "http/CProxyConnection.h"

#include "http/CFaultPlayer.h"
#include "http/CFaultTable.h"

#include <algorithm>

namespace {

constexpr int IdleMs = 100000; ///< a silent connection is closed; before the inner server closes its side
constexpr std::size_t PieceSize = 64u << 10;
constexpr std::size_t MaxCollected = 64u << 20;
constexpr std::uint64_t MaxBody = 64u << 20; ///< also of one that nobody wants

using enum stDef_FaultKind::emDef_When;

/// The inner server decodes percent escapes in header values; it gets the percent signs escaped once more.
std::string PercentEscaped(const std::string& sValue)
{
    std::string sOut;
    for (const char c : sValue)
        sOut += c == '%' ? std::string("%25") : std::string(1, c);
    return sOut;
}

/// The kind of login alone. What can't be told from the secret behind it is not shown.
std::string SchemeOf(const std::string& sLogin)
{
    constexpr std::size_t nLongest = 16;
    const auto nEnd = sLogin.find(' ');
    if (sLogin.empty())
        return {};
    return nEnd <= nLongest ? sLogin.substr(0, nEnd) : "unknown";
}

bool IsTunnel(const CHttpHead& objHead)
{
    return !objHead.m_F_s_Value("x-sessioncookie").empty() ||
           objHead.m_F_s_Value("Accept").find("x-rtsp-tunnelled") != std::string::npos ||
           objHead.m_F_s_Value("Content-Type").find("x-rtsp-tunnelled") != std::string::npos;
}

} // namespace

CProxyConnection::CProxyConnection(int nSocket, std::uint64_t nNumber, const stDef_ProxyParts& stParts)
    : vm_stParts(stParts), vm_objClient(nSocket), vm_objReply(vm_objClient, *stParts.pLog), vm_nNumber(nNumber)
{}

void CProxyConnection::m_S_Wake()
{
    const std::lock_guard lock(vm_objMutex);
    vm_bWoken = true;
    vm_objClient.m_S_Wake();
    vm_objInner.m_S_Wake();
}

long long CProxyConnection::m_F_n_KeptWaitingMs() const
{
    const std::lock_guard lock(vm_objMutex);
    return vm_tmWaiting ? std::chrono::floor<std::chrono::milliseconds>(Clock::now() - *vm_tmWaiting).count() : -1;
}

bool CProxyConnection::m_F_b_EndWaiting(long long nLeastMs)
{
    if (m_F_n_KeptWaitingMs() < nLeastMs)
        return false;
    m_S_Wake();
    return true;
}

void CProxyConnection::m_S_BeginWaiting()
{
    const std::lock_guard lock(vm_objMutex);
    vm_tmWaiting = Clock::now();
}

/// False if the place went to somebody else.
bool CProxyConnection::m_F_b_DoneWaiting()
{
    const std::lock_guard lock(vm_objMutex);
    vm_tmWaiting.reset();
    return !vm_bWoken;
}

void CProxyConnection::m_S_Run()
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

/// @param nHeadMs limit for the whole head, from its first byte on
bool CProxyConnection::s_F_b_ReadHead(CSocket& objSocket, std::string& sBuffer, std::string& sHead, int nHeadMs)
{
    char arPiece[8192];
    std::size_t nScanned = 0;
    std::optional<Clock::time_point> tmLate;
    while (true) {
        sBuffer.erase(0, sBuffer.find_first_not_of("\r\n")); // some clients end a body with a line end too many
        const auto nEnd = sBuffer.find("\r\n\r\n", nScanned);
        if (nEnd != std::string::npos) {
            sHead = sBuffer.substr(0, nEnd + 4);
            sBuffer.erase(0, nEnd + 4);
            return true;
        }
        if (sBuffer.size() > CHttpHead::MaxSize)
            return false;
        nScanned = sBuffer.size() > 3 ? sBuffer.size() - 3 : 0;
        if (!sBuffer.empty() && !tmLate)
            tmLate = Clock::now() + std::chrono::milliseconds(nHeadMs);
        const auto nLeft =
            tmLate ? std::chrono::ceil<std::chrono::milliseconds>(*tmLate - Clock::now()).count() : IdleMs;
        const long nRead = objSocket.m_F_n_Read(arPiece, sizeof arPiece, static_cast<int>(std::max<long>(nLeft, 0)));
        if (nRead <= 0)
            return false;
        sBuffer.append(arPiece, static_cast<std::size_t>(nRead));
    }
}

/// The next head that makes sense. Others are answered for what they are.
bool CProxyConnection::m_F_b_ReadRequest(std::string& sHead, CHttpHead& objHead)
{
    std::string_view sRefusal = "400 Bad Request";
    if (s_F_b_ReadHead(vm_objClient, vm_sFromClient, sHead, vm_stParts.nHeadMs)) {
        if (objHead.m_F_b_Parse(sHead))
            return true;
    } else if (vm_sFromClient.empty()) {
        return false; // gone or idle
    } else {
        sRefusal = vm_sFromClient.size() > CHttpHead::MaxSize ? "431 Head Too Large" : "408 Request Timeout";
    }
    vm_objClient.m_F_b_Write("HTTP/1.1 " + std::string(sRefusal) +
                             "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
    return false;
}

bool CProxyConnection::m_F_b_ServeOne()
{
    std::string sHead;
    CHttpHead objHead;
    m_S_BeginWaiting(); // until the body has come, too
    if (!m_F_b_ReadRequest(sHead, objHead))
        return false;
    stDef_LogEntry stEntry;
    stEntry.nConnection = vm_nNumber;
    stEntry.sMethod = objHead.m_F_s_Method();
    stEntry.sTarget = objHead.m_F_s_Target();
    stEntry.sScheme = SchemeOf(objHead.m_F_s_Value("Authorization"));
    vm_objReply.m_S_Begin(std::move(stEntry));
    const bool bOn = m_F_b_Serve(objHead, sHead);
    vm_objReply.m_S_End();
    return bOn && objHead.m_F_b_KeepAlive();
}

/// Decides what becomes of a request whose head is read.
bool CProxyConnection::m_F_b_Serve(const CHttpHead& objHead, const std::string& sHead)
{
    if (IsTunnel(objHead))
        return m_F_b_HandToTunnel(sHead);
    if (!objHead.m_F_s_Value("Expect").empty() && !vm_objClient.m_F_b_Write("HTTP/1.1 100 Continue\r\n\r\n"))
        return false;

    auto fault = vm_stParts.pFaults->m_F_o_Find(vm_objReply.vm_stEntry.sTarget);
    const stDef_FaultKind* pKind = fault ? CFaultTable::s_F_p_Kind(fault->sName) : nullptr;
    const bool bLogin = !vm_objReply.vm_stEntry.sScheme.empty();
    if (pKind && (pKind->nWhen == AtOnce || (pKind->nWhen == LoggedIn && bLogin)) && m_F_b_TakeFault(fault))
        return m_F_b_PlayAtOnce(objHead, *fault);
    if (pKind && pKind->nWhen == Unlogged && bLogin && !vm_bUnlogged && m_F_b_TakeFault(fault)) {
        vm_bUnlogged = true;
        return m_F_b_Forward(objHead, {}, true);
    }
    const bool bOnReply = pKind && (pKind->nWhen == OnBytes || pKind->nWhen == OnReply);
    return m_F_b_Forward(objHead, bOnReply ? fault : std::nullopt, false);
}

bool CProxyConnection::m_F_b_HandToTunnel(const std::string& sHead)
{
    if (!vm_stParts.tunnel) {
        vm_objReply.m_F_b_SendReply(404, "Not Found", "Connection: close\r\n", "");
        return false;
    }
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

/// Counts the fault as played; false if somebody else has just played it for the last time.
bool CProxyConnection::m_F_b_TakeFault(std::optional<stDef_Fault>& fault)
{
    fault = vm_stParts.pFaults->m_F_o_Take(vm_objReply.vm_stEntry.sTarget, std::string(fault->sName));
    if (fault)
        vm_objReply.m_S_PlayFault(fault->sName);
    return fault.has_value();
}

bool CProxyConnection::m_F_b_PlayAtOnce(const CHttpHead& objHead, const stDef_Fault& stFault)
{
    return m_F_b_DropBody(objHead) && CFaultPlayer(vm_objClient, vm_objReply).m_F_b_PlayAtOnce(stFault);
}

bool CProxyConnection::m_F_b_DropBody(const CHttpHead& objHead)
{
    const emDef_Body eBody = m_F_n_PassBody(objHead, false);
    return eBody == emDef_Body::Whole || m_F_b_RefuseBody(eBody);
}

/// Always false: the connection can't go on.
bool CProxyConnection::m_F_b_RefuseBody(emDef_Body eBody)
{
    if (eBody == emDef_Body::Bad)
        vm_objReply.m_F_b_SendReply(400, "Bad Request", "Connection: close\r\n", "");
    else if (eBody == emDef_Body::TooLarge)
        vm_objReply.m_F_b_SendReply(413, "Body Too Large", "Connection: close\r\n", "");
    return false;
}

void CProxyConnection::m_S_CloseInner()
{
    const std::lock_guard lock(vm_objMutex);
    vm_objInner.m_S_Close();
    vm_sFromInner.clear();
}

void CProxyConnection::m_S_OpenInner()
{
    m_S_CloseInner();
    {
        const std::lock_guard lock(vm_objMutex);
        if (vm_bWoken || !vm_objInner.m_F_b_Open())
            return;
    }
    // Without the lock, as it may take its time when the inner server is busy.
    const bool bConnected = vm_objInner.m_F_b_ConnectLoopback(vm_stParts.nInnerPort);
    const std::lock_guard lock(vm_objMutex);
    if (!bConnected || vm_bWoken) // a wake before the connection stood had no effect on it
        vm_objInner.m_S_Close();
}

/// A kept inner connection may have ended meanwhile: that shows before a reply, and a fresh one is taken for it.
bool CProxyConnection::m_F_b_SendToInner(const std::string& sText)
{
    const bool bKept = vm_objInner.m_F_b_IsOpen() && !vm_objInner.m_F_b_WaitReadable(0);
    if (bKept && vm_objInner.m_F_b_Write(sText))
        return true;
    m_S_OpenInner();
    return vm_objInner.m_F_b_IsOpen() && vm_objInner.m_F_b_Write(sText);
}

bool CProxyConnection::m_F_b_Forward(CHttpHead objHead, const std::optional<stDef_Fault>& fault, bool bUnlogged)
{
    const bool bTakesBody = vm_objReply.vm_stEntry.sMethod == "POST";
    if (!bTakesBody && !m_F_b_DropBody(objHead))
        return false;
    m_S_PrepareHead(objHead, bUnlogged, bTakesBody);
    if (!m_F_b_SendToInner(objHead.m_F_s_Text())) {
        vm_objReply.m_F_b_SendReply(502, "Bad Gateway", "Connection: close\r\n", "");
        return false;
    }
    const emDef_Body eBody = bTakesBody ? m_F_n_PassBody(objHead, true) : emDef_Body::Whole;
    if (eBody == emDef_Body::Whole)
        return m_F_b_Answer(fault, bUnlogged);
    if (eBody == emDef_Body::Refused)
        m_F_b_Answer(fault, bUnlogged);
    return m_F_b_RefuseBody(eBody);
}

/// Makes a head what the inner server understands as the client meant it.
void CProxyConnection::m_S_PrepareHead(CHttpHead& objHead, bool bUnlogged, bool bTakesBody) const
{
    objHead.m_S_Remove("Expect");
    if (bUnlogged)
        objHead.m_S_Remove("Authorization"); // so that the recorder gives a fresh challenge
    // It would take a multipart body apart by itself. No program asks what type a body has.
    objHead.m_S_Remove("Content-Type");
    // A body of other methods has been dropped: it would keep that whole, or take it for the next request.
    if (!bTakesBody) {
        objHead.m_S_Remove("Transfer-Encoding");
        objHead.m_S_Set("Content-Length", "0");
    }
    for (auto& [sName, sValue] : objHead.vm_arLines)
        sValue = PercentEscaped(sValue);
    // It drops what stands behind a '#' in the request line.
    objHead.m_S_Set("X-Request-Target", PercentEscaped(vm_objReply.vm_stEntry.sTarget));
}

CProxyConnection::emDef_Body CProxyConnection::m_F_n_PassBody(const CHttpHead& objHead, bool bForward)
{
    stDef_LogEntry& stEntry = vm_objReply.vm_stEntry;
    CBodyFramer objFramer(objHead, "");
    std::string sPiece = std::exchange(vm_sFromClient, {});
    while (true) {
        const std::size_t nBody = objFramer.m_F_n_Feed(sPiece);
        const std::string_view sBody = std::string_view(sPiece).substr(0, nBody);
        stEntry.nBytesIn += nBody;
        stEntry.sBody += sBody.substr(0, CRequestLog::MaxBody - std::min(CRequestLog::MaxBody, stEntry.sBody.size()));
        if (objFramer.m_F_b_Bad())
            return emDef_Body::Bad;
        if (stEntry.nBytesIn > MaxBody)
            return emDef_Body::TooLarge;
        if (bForward && !vm_objInner.m_F_b_Write(sBody))
            return emDef_Body::Refused;
        if (objFramer.m_F_b_Done()) {
            vm_sFromClient = sPiece.substr(nBody);
            return m_F_b_DoneWaiting() ? emDef_Body::Whole : emDef_Body::Lost;
        }
        sPiece.resize(PieceSize);
        const long nRead = vm_objClient.m_F_n_Read(sPiece.data(), sPiece.size(), IdleMs);
        if (nRead <= 0)
            return emDef_Body::Lost;
        sPiece.resize(static_cast<std::size_t>(nRead));
    }
}

bool CProxyConnection::m_F_b_ReadReplyHead(CHttpHead& objReply)
{
    std::string sHead;
    do {
        if (!s_F_b_ReadHead(vm_objInner, vm_sFromInner, sHead, IdleMs) || !objReply.m_F_b_Parse(sHead))
            return false;
    } while (objReply.m_F_n_Status() >= 100 && objReply.m_F_n_Status() < 200);
    return true;
}

bool CProxyConnection::m_F_b_Answer(std::optional<stDef_Fault> fault, bool bStale)
{
    CHttpHead objReply;
    if (!m_F_b_ReadReplyHead(objReply)) {
        vm_objReply.m_F_b_SendReply(502, "Bad Gateway", "Connection: close\r\n", "");
        return false;
    }
    for (auto& [sName, sValue] : objReply.vm_arLines)
        if (bStale && sValue.starts_with("Digest ") && sValue.find("stale=") == std::string::npos)
            sValue += ", stale=true";
    const std::string& sMethod = vm_objReply.vm_stEntry.sMethod;
    const bool bWhole = sMethod != "HEAD" && !objReply.m_F_s_Value("Content-Length").empty();
    const bool bPlay = fault && objReply.m_F_n_Status() != 401 &&
                       (bWhole || CFaultTable::s_F_p_Kind(fault->sName)->nWhen == OnBytes) && m_F_b_TakeFault(fault);
    CBodyFramer objFramer(objReply, sMethod);
    const bool bOn = bPlay ? m_F_b_PlayOnReply(*fault, objReply, objFramer) : m_F_b_PassReply(objReply, objFramer);
    const bool bInnerStays = objReply.m_F_b_KeepAlive() && objFramer.m_F_b_Done();
    if (!bInnerStays)
        m_S_CloseInner();
    return bOn && bInnerStays;
}

/// The next bytes of a reply's body.
bool CProxyConnection::m_F_b_More(CBodyFramer& objFramer, std::string& sPiece)
{
    if (objFramer.m_F_b_Done())
        return false;
    sPiece = std::exchange(vm_sFromInner, {});
    if (sPiece.empty()) {
        sPiece.resize(PieceSize);
        // Without a limit: a stream may be silent for as long as it likes.
        const long nRead = vm_objInner.m_F_n_Read(sPiece.data(), sPiece.size());
        sPiece.resize(static_cast<std::size_t>(std::max(nRead, 0L)));
    }
    const std::size_t nBody = objFramer.m_F_n_Feed(sPiece);
    vm_sFromInner = sPiece.substr(nBody);
    sPiece.resize(nBody);
    return nBody > 0;
}

bool CProxyConnection::m_F_b_PassReply(const CHttpHead& objReply, CBodyFramer& objFramer)
{
    std::string sPiece;
    if (!vm_sFromInner.empty()) // the start of the body came with the head: both leave in one packet
        m_F_b_More(objFramer, sPiece);
    sPiece.insert(0, objReply.m_F_s_Text());
    do {
        m_S_BeginWaiting(); // a client that doesn't read
        if (!vm_objReply.m_F_b_Send(sPiece) || !m_F_b_DoneWaiting())
            return false;
    } while (m_F_b_More(objFramer, sPiece));
    return objFramer.m_F_b_Done();
}

bool CProxyConnection::m_F_b_PlayOnReply(const stDef_Fault& stFault, const CHttpHead& objReply, CBodyFramer& objFramer)
{
    CFaultPlayer objPlayer(vm_objClient, vm_objReply);
    if (CFaultTable::s_F_p_Kind(stFault.sName)->nWhen == OnBytes)
        return objPlayer.m_F_b_PlayOnBytes(
            stFault, {objReply, [&](std::string& sPiece) { return m_F_b_More(objFramer, sPiece); }});
    std::string sBody;
    for (std::string sPiece; sBody.size() < MaxCollected && m_F_b_More(objFramer, sPiece);)
        sBody += sPiece;
    return objFramer.m_F_b_Done() && objPlayer.m_F_b_PlayOnReply(stFault, objReply, std::move(sBody));
}
