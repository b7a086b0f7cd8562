#include "rtsp/CRtspListener.h"

#include <algorithm>
#include <gio/gio.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

namespace {

constexpr std::size_t g_nMaxConnections = 512;
constexpr int g_nBacklog = 64;
constexpr char g_acGarbage[] = "\x01\x02 no such protocol \xff\xfe\r\n\r\n\x03\r\n\r\n";

void DropSource(GSource*& pSource)
{
    if (pSource == nullptr)
        return;
    g_source_destroy(pSource);
    g_source_unref(pSource);
    pSource = nullptr;
}

std::string Take(GError* pError)
{
    std::string sText = pError != nullptr ? pError->message : "unknown reason";
    g_clear_error(&pError);
    return sText;
}

// What has come, without taking it; empty at the end of the connection.
std::string Peek(GSocket* pSocket)
{
    char acData[2048];
    GInputVector stVector{acData, sizeof(acData)};
    int nFlags = MSG_PEEK;
    const gssize nGot =
        g_socket_receive_message(pSocket, nullptr, &stVector, 1, nullptr, nullptr, &nFlags, nullptr, nullptr);
    return nGot > 0 ? std::string(acData, static_cast<std::size_t>(nGot)) : std::string();
}

} // namespace

struct CRtspListener::stDef_Connection
{
    CRtspListener* pListener = nullptr;
    stDef_Arrival stArrival; ///< its socket is null once handed over
    std::string sPath;
    GSource* pSource = nullptr;
    bool bSilent = false;
    GWeakRef stHandedOver; ///< the socket as long as its new owner keeps it

    explicit stDef_Connection(CRtspListener* pOwner) : pListener(pOwner) { g_weak_ref_init(&stHandedOver, nullptr); }
    ~stDef_Connection()
    {
        DropSource(pSource);
        g_clear_object(&stArrival.pSocket);
        g_weak_ref_clear(&stHandedOver);
    }
    stDef_Connection(const stDef_Connection&) = delete;
    stDef_Connection& operator=(const stDef_Connection&) = delete;

    bool m_F_b_IsGone()
    {
        auto* pSocket = static_cast<GSocket*>(g_weak_ref_get(&stHandedOver));
        const bool bGone = stArrival.pSocket == nullptr && (pSocket == nullptr || g_socket_is_closed(pSocket));
        g_clear_object(&pSocket);
        return bGone;
    }
};

CRtspListener::CRtspListener(GMainContext* pContext, Policy policy, Receiver receiver)
    : vm_pContext(pContext), vm_policy(std::move(policy)), vm_receiver(std::move(receiver))
{}

CRtspListener::~CRtspListener()
{
    m_S_ClosePort();
    m_S_Cut([](const std::string&) { return true; });
}

std::string CRtspListener::s_F_s_Path(const std::string& sRequest)
{
    const std::size_t nBegin = sRequest.find(' ');
    const std::size_t nEnd = sRequest.find_first_of(" \r\n", nBegin + 1);
    if (nBegin == std::string::npos || nEnd == std::string::npos)
        return {};
    std::string sTarget = sRequest.substr(nBegin + 1, nEnd - nBegin - 1);
    if (const std::size_t nHost = sTarget.find("://"); nHost != std::string::npos)
        sTarget.erase(0, std::min(sTarget.find('/', nHost + 3), sTarget.size()));
    return sTarget.substr(0, sTarget.find('?'));
}

void CRtspListener::m_S_ClosePort()
{
    DropSource(vm_pAccepting);
    if (vm_pListener != nullptr)
        g_socket_close(vm_pListener, nullptr);
    g_clear_object(&vm_pListener);
}

bool CRtspListener::m_F_b_Bind(bool bListen, std::string& sError)
{
    m_S_ClosePort();
    GError* pError = nullptr;
    GSocketAddress* pAddress = g_inet_socket_address_new_from_string(vm_sBind.c_str(), static_cast<guint>(vm_nPort));
    if (pAddress == nullptr) {
        sError = "\"" + vm_sBind + "\" is no numeric address";
        return false;
    }
    vm_pListener =
        g_socket_new(g_socket_address_get_family(pAddress), G_SOCKET_TYPE_STREAM, G_SOCKET_PROTOCOL_TCP, &pError);
    bool bDone = vm_pListener != nullptr && g_socket_bind(vm_pListener, pAddress, TRUE, &pError);
    g_object_unref(pAddress);
    if (bDone && bListen) {
        g_socket_set_blocking(vm_pListener, FALSE);
        g_socket_set_listen_backlog(vm_pListener, g_nBacklog);
        bDone = g_socket_listen(vm_pListener, &pError);
    }
    if (!bDone) {
        sError = "RTSP port " + std::to_string(vm_nPort) + " of " + vm_sBind + " can't be used: " + Take(pError);
        m_S_ClosePort();
    }
    return bDone;
}

bool CRtspListener::m_F_b_Listen(const std::string& sBind, int nPort, std::string& sError)
{
    vm_sBind = sBind;
    vm_nPort = nPort;
    if (nPort < 0 || nPort > 65535) {
        sError = "RTSP port " + std::to_string(nPort) + " is out of range";
        return false;
    }
    if (!m_F_b_Bind(true, sError))
        return false;
    GSocketAddress* pAddress = g_socket_get_local_address(vm_pListener, nullptr);
    vm_nPort = g_inet_socket_address_get_port(G_INET_SOCKET_ADDRESS(pAddress));
    g_object_unref(pAddress);
    vm_pAccepting = g_socket_create_source(vm_pListener, G_IO_IN, nullptr);
    g_source_set_callback(vm_pAccepting, G_SOURCE_FUNC(+[](GSocket*, GIOCondition, gpointer pSelf) -> gboolean {
                              static_cast<CRtspListener*>(pSelf)->m_S_Accept();
                              return G_SOURCE_CONTINUE;
                          }),
                          this, nullptr);
    g_source_attach(vm_pAccepting, vm_pContext);
    return true;
}

bool CRtspListener::m_F_b_SetRefused(bool bRefused, std::string& sError)
{
    if (bRefused == vm_bRefused)
        return true;
    // A socket that is bound and doesn't listen keeps the port for us.
    const bool bDone = bRefused ? m_F_b_Bind(false, sError) : m_F_b_Listen(vm_sBind, vm_nPort, sError);
    vm_bRefused = bDone ? bRefused : vm_bRefused;
    return bDone;
}

void CRtspListener::m_S_Accept()
{
    std::erase_if(vm_arConnections, [](const auto& pConnection) { return pConnection->m_F_b_IsGone(); });
    GSocket* pSocket = g_socket_accept(vm_pListener, nullptr, nullptr);
    if (pSocket == nullptr)
        return;
    if (vm_arConnections.size() >= g_nMaxConnections) {
        g_object_unref(pSocket);
        return;
    }
    stDef_Arrival stArrival;
    stArrival.pSocket = pSocket;
    if (GSocketAddress* pAddress = g_socket_get_remote_address(pSocket, nullptr)) {
        gchar* pszPeer = g_inet_address_to_string(g_inet_socket_address_get_address(G_INET_SOCKET_ADDRESS(pAddress)));
        stArrival.sPeer = pszPeer;
        stArrival.nPeerPort = g_inet_socket_address_get_port(G_INET_SOCKET_ADDRESS(pAddress));
        g_free(pszPeer);
        g_object_unref(pAddress);
    }
    g_socket_set_blocking(pSocket, FALSE);
    g_socket_set_option(pSocket, IPPROTO_TCP, TCP_NODELAY, 1, nullptr);
    auto& pConnection = vm_arConnections.emplace_back(std::make_unique<stDef_Connection>(this));
    pConnection->stArrival = std::move(stArrival);
    m_S_Watch(*pConnection);
}

void CRtspListener::m_S_Adopt(stDef_Arrival stArrival)
{
    std::erase_if(vm_arConnections, [](const auto& pKnown) { return pKnown->m_F_b_IsGone(); });
    auto& pConnection = vm_arConnections.emplace_back(std::make_unique<stDef_Connection>(this));
    pConnection->stArrival = std::move(stArrival);
    pConnection->sPath = s_F_s_Path(pConnection->stArrival.sInitial);
    m_S_Decide(*pConnection);
}

void CRtspListener::m_S_Watch(stDef_Connection& stConnection)
{
    stConnection.pSource = g_socket_create_source(stConnection.stArrival.pSocket, G_IO_IN, nullptr);
    g_source_set_callback(stConnection.pSource, G_SOURCE_FUNC(+[](GSocket*, GIOCondition, gpointer pGiven) -> gboolean {
                              auto* pConnection = static_cast<stDef_Connection*>(pGiven);
                              return pConnection->pListener->m_F_b_OnReadable(*pConnection) ? G_SOURCE_CONTINUE
                                                                                            : G_SOURCE_REMOVE;
                          }),
                          &stConnection, nullptr);
    g_source_attach(stConnection.pSource, vm_pContext);
}

void CRtspListener::m_S_Forget(const stDef_Connection& stConnection)
{
    std::erase_if(vm_arConnections, [&](const auto& pKnown) { return pKnown.get() == &stConnection; });
}

// False once the connection isn't watched any more; it may be gone then.
bool CRtspListener::m_F_b_OnReadable(stDef_Connection& stConnection)
{
    if (stConnection.bSilent) {
        char acSwallowed[4096];
        const gssize nGot =
            g_socket_receive(stConnection.stArrival.pSocket, acSwallowed, sizeof(acSwallowed), nullptr, nullptr);
        if (nGot > 0)
            return true;
        m_S_Forget(stConnection);
        return false;
    }
    const std::string sRequest = Peek(stConnection.stArrival.pSocket);
    if (sRequest.empty()) {
        m_S_Forget(stConnection);
        return false;
    }
    // A request line that comes in pieces is nobody's that a fault is meant for.
    stConnection.sPath = s_F_s_Path(sRequest);
    DropSource(stConnection.pSource);
    m_S_Decide(stConnection);
    return false;
}

void CRtspListener::m_S_Decide(stDef_Connection& stConnection)
{
    switch (vm_policy(stConnection.sPath)) {
    case emDef_Admission::HandOver:
        g_weak_ref_set(&stConnection.stHandedOver, stConnection.stArrival.pSocket);
        vm_receiver(stConnection.stArrival);
        stConnection.stArrival.pSocket = nullptr;
        break;
    case emDef_Admission::Silent:
        stConnection.bSilent = true;
        m_S_Watch(stConnection);
        break;
    case emDef_Admission::Garbage:
        // What the client still sends is swallowed: closing at once could reset the connection before it has read.
        g_socket_send(stConnection.stArrival.pSocket, g_acGarbage, sizeof(g_acGarbage) - 1, nullptr, nullptr);
        g_socket_shutdown(stConnection.stArrival.pSocket, FALSE, TRUE, nullptr);
        stConnection.bSilent = true;
        m_S_Watch(stConnection);
        break;
    }
}

void CRtspListener::m_S_Cut(const std::function<bool(const std::string& sPath)>& matches)
{
    std::erase_if(vm_arConnections, [&](const auto& pConnection) {
        if (!matches(pConnection->sPath))
            return false;
        // Its owner, on a thread of its own, finds the end of the connection and closes it.
        if (auto* pSocket = static_cast<GSocket*>(g_weak_ref_get(&pConnection->stHandedOver))) {
            g_socket_shutdown(pSocket, TRUE, TRUE, nullptr);
            g_object_unref(pSocket);
        }
        return true;
    });
}
