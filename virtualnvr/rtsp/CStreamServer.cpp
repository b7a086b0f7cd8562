#include "rtsp/CStreamServer.h"

#include "rtsp/CFeedClock.h"
#include "rtsp/CLoopThread.h"
#include "rtsp/CRtspListener.h"
#include "rtsp/CStreamFeed.h"
#include "rtsp/stDef_StreamMount.h"
#include "scene/CClipLibrary.h"
#include "scene/CGstPlugins.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <gio/gio.h>
#include <gst/rtsp-server/rtsp-server.h>
#include <mutex>
#include <set>
#include <thread>
#include <unistd.h>

namespace {

constexpr int g_nMaxChannels = 64;
constexpr auto g_nStopLimit = std::chrono::seconds(3);
constexpr guint g_nCleanUpSeconds = 5;
constexpr const char* g_pszAllCameras = "all-cameras";

// The access units bring their parameter sets along; the payloader takes those of the description from the first one.
constexpr const char* g_pszLaunch =
    "( appsrc name=video is-live=true format=time emit-signals=false max-latency=200000000 "
    "caps=video/x-h264,stream-format=byte-stream,alignment=au ! rtph264pay name=pay0 pt=96 "
    "appsrc name=audio is-live=true format=time emit-signals=false max-latency=200000000 "
    "caps=audio/x-mulaw,rate=8000,channels=1 ! rtppcmupay name=pay1 pt=0 perfect-rtptime=false )";

/// Accounts that may see the same cameras have one role.
std::string RoleOf(const stDef_Account& stAccount)
{
    return stAccount.sPreview ? "cameras-" + *stAccount.sPreview : g_pszAllCameras;
}

bool MayPlay(const stDef_Account& stAccount, int nChannel)
{
    const auto nPlace = static_cast<std::size_t>(nChannel);
    return !stAccount.sPreview || (nPlace < stAccount.sPreview->size() && (*stAccount.sPreview)[nPlace] == '1');
}

struct stDef_Mounted
{
    std::shared_ptr<stDef_StreamMount> pMount;
    GstRTSPMediaFactory* pFactory = nullptr; ///< one reference
};

using FaultSetter = void (*)(stDef_StreamMount& stMount, long nArg);

struct stDef_FaultRow
{
    std::string_view sName;
    FaultSetter set; ///< what it does to one mount; the rest of the connections' faults stands in m_S_AfterFault
};

constexpr stDef_FaultRow g_arFaults[] = {
    {"silent", [](stDef_StreamMount& st, long) { st.bSilent = true; }},
    {"garbage", [](stDef_StreamMount& st, long) { st.bGarbage = true; }},
    {"killed", [](stDef_StreamMount&, long) {}},
    {"refuse", [](stDef_StreamMount&, long) {}},
    {"missing", [](stDef_StreamMount& st, long) { st.bMissing = true; }},
    {"paused", [](stDef_StreamMount& st, long) { st.bPaused = true; }},
    {"jump", [](stDef_StreamMount& st, long nMs) { st.nJumpMs += nMs; }},
    {"params", [](stDef_StreamMount& st, long) { st.bOtherClip = true; }},
    {"no-key", [](stDef_StreamMount& st, long) { st.bNoKey = true; }},
    {"no-sets", [](stDef_StreamMount& st, long) { st.bNoSets = true; }},
    {"none",
     [](stDef_StreamMount& st, long) {
         st.bSilent = st.bGarbage = st.bMissing = st.bPaused = st.bOtherClip = st.bNoKey = st.bNoSets = false;
     }},
};

// ---- a media and its feed
//
// A client that sets a stream up makes the factory construct a media, which is configured, prepared, playing and at
// last unprepared, each told by a signal on a thread of the streaming library. Its feed comes with the configuration,
// since the library waits for one piece of each track before it calls a media prepared; the clip begins when the client
// plays.

struct stDef_Configure
{
    std::shared_ptr<stDef_StreamMount> pMount;
    std::shared_ptr<CFeedClock> pClock;
};

// Belongs to a media's signal handlers, and so lives as long as the media.
struct stDef_Fed
{
    std::shared_ptr<CStreamFeed> pFeed;
    std::shared_ptr<CFeedClock> pClock;
    ~stDef_Fed() { pClock->m_S_Remove(pFeed.get()); }
};

// Pauses and jumps act where packets leave the media, so that what its queues hold already obeys them, too.
void OnPrepared(GstRTSPMedia* pMedia, gpointer pFed)
{
    static_cast<stDef_Fed*>(pFed)->pFeed->m_S_OnPrepared(pMedia);
}

void OnState(GstRTSPMedia*, gint nState, gpointer pFed)
{
    if (nState == GST_STATE_PLAYING)
        static_cast<stDef_Fed*>(pFed)->pFeed->m_S_OnPlaying();
}

void OnUnprepared(GstRTSPMedia*, gpointer pFed)
{
    const auto* pGone = static_cast<stDef_Fed*>(pFed);
    pGone->pClock->m_S_Remove(pGone->pFeed.get());
}

void OnConfigure(GstRTSPMediaFactory*, GstRTSPMedia* pMedia, gpointer pData)
{
    const auto* pConfigure = static_cast<stDef_Configure*>(pData);
    auto* pFed = new stDef_Fed{std::make_shared<CStreamFeed>(pMedia, pConfigure->pMount), pConfigure->pClock};
    g_signal_connect(pMedia, "prepared", G_CALLBACK(&OnPrepared), pFed);
    g_signal_connect(pMedia, "new-state", G_CALLBACK(&OnState), pFed);
    g_signal_connect_data(
        pMedia, "unprepared", G_CALLBACK(&OnUnprepared), pFed,
        [](gpointer pGone, GClosure*) { delete static_cast<stDef_Fed*>(pGone); }, GConnectFlags(0));
    pFed->pClock->m_S_Add(pFed->pFeed);
}

GstRTSPMediaFactory* MakeFactory(const stDef_Configure& stConfigure)
{
    GstRTSPMediaFactory* pFactory = gst_rtsp_media_factory_new();
    gst_rtsp_media_factory_set_launch(pFactory, g_pszLaunch);
    // A media of its own for each client: it costs little without an encoder, begins with a key frame at once, and a
    // client that joins a playing media over another transport can leave one of its streams mute for all.
    gst_rtsp_media_factory_set_shared(pFactory, FALSE);
    g_signal_connect_data(
        pFactory, "media-configure", G_CALLBACK(&OnConfigure), new stDef_Configure(stConfigure),
        [](gpointer pGone, GClosure*) { delete static_cast<stDef_Configure*>(pGone); }, GConnectFlags(0));
    return pFactory;
}

int CountPlaying(GstRTSPServer* pServer)
{
    int nPlaying = 0;
    const auto countMedia = [](GstRTSPSession*, GstRTSPSessionMedia* pMedia, gpointer pCount) {
        if (gst_rtsp_session_media_get_rtsp_state(pMedia) == GST_RTSP_STATE_PLAYING)
            ++*static_cast<int*>(pCount);
        return GST_RTSP_FILTER_KEEP;
    };
    GstRTSPSessionPool* pPool = gst_rtsp_server_get_session_pool(pServer);
    GList* pSessions = gst_rtsp_session_pool_filter(pPool, nullptr, nullptr);
    for (GList* pEach = pSessions; pEach != nullptr; pEach = pEach->next)
        gst_rtsp_session_filter(GST_RTSP_SESSION(pEach->data), countMedia, &nPlaying);
    g_list_free_full(pSessions, g_object_unref);
    g_object_unref(pPool);
    return nPlaying;
}

bool HasClients(GstRTSPServer* pServer)
{
    GList* pClients = gst_rtsp_server_client_filter(pServer, nullptr, nullptr);
    const bool bAny = pClients != nullptr;
    g_list_free_full(pClients, g_object_unref);
    return bAny;
}

} // namespace

struct CStreamServer::stDef_Impl
{
    mutable std::mutex objLock; ///< Start and Stop against everything else; never taken by the server's own threads
    stDef_StreamConfig stConfig;
    std::shared_ptr<CFeedClock> pClock;
    std::unique_ptr<CLoopThread> pLoop;       ///< null while stopped
    std::unique_ptr<CRtspListener> pListener; ///< for the loop's thread
    GstRTSPServer* pServer = nullptr;
    GSource* pCleanUp = nullptr;
    std::vector<stDef_Mounted> arMounts; ///< unchanged while running
    std::atomic<int> nPort{0};

    bool m_F_b_Start(std::string& sError);
    void m_S_Stop();
    void m_S_ApplyAccounts();
    void m_S_Permit(const stDef_Mounted& stMounted) const;
    void m_S_AddMounts();
    void m_S_ShowMount(const stDef_Mounted& stMounted) const;
    void m_S_AddCleanUp();
    emDef_Admission m_F_e_Admission(const std::string& sPath) const;
    void m_S_Serve(CRtspListener::stDef_Arrival& stArrival) const;
    bool m_F_b_AfterFault(std::string_view sName, const std::vector<const stDef_Mounted*>& arMatched);
};

void CStreamServer::stDef_Impl::m_S_ApplyAccounts()
{
    if (stConfig.arAccounts.empty())
        return;
    for (const stDef_Mounted& stMounted : arMounts)
        m_S_Permit(stMounted);
    GstRTSPAuth* pAuth = gst_rtsp_auth_new();
    gst_rtsp_auth_set_supported_methods(pAuth, GstRTSPAuthMethod(GST_RTSP_AUTH_BASIC | GST_RTSP_AUTH_DIGEST));
    for (const stDef_Account& stAccount : stConfig.arAccounts) {
        GstRTSPToken* pToken =
            gst_rtsp_token_new(GST_RTSP_TOKEN_MEDIA_FACTORY_ROLE, G_TYPE_STRING, RoleOf(stAccount).c_str(), nullptr);
        gchar* pszBasic = gst_rtsp_auth_make_basic(stAccount.sUser.c_str(), stAccount.sPassword.c_str());
        gst_rtsp_auth_add_basic(pAuth, pszBasic, pToken);
        gst_rtsp_auth_add_digest(pAuth, stAccount.sUser.c_str(), stAccount.sPassword.c_str(), pToken);
        g_free(pszBasic);
        gst_rtsp_token_unref(pToken);
    }
    gst_rtsp_server_set_auth(pServer, pAuth);
    g_object_unref(pAuth);
}

// A mount that may be accessed and not constructed is refused with 403, one that may not even be accessed with 404.
void CStreamServer::stDef_Impl::m_S_Permit(const stDef_Mounted& stMounted) const
{
    GstRTSPPermissions* pPermissions = gst_rtsp_permissions_new();
    std::set<std::string> setRoles;
    for (const stDef_Account& stAccount : stConfig.arAccounts) {
        const std::string sRole = RoleOf(stAccount);
        if (!setRoles.insert(sRole).second)
            continue;
        const gboolean bPlays = MayPlay(stAccount, stMounted.pMount->nChannel) ? TRUE : FALSE;
        gst_rtsp_permissions_add_role(pPermissions, sRole.c_str(), GST_RTSP_PERM_MEDIA_FACTORY_ACCESS, G_TYPE_BOOLEAN,
                                      TRUE, GST_RTSP_PERM_MEDIA_FACTORY_CONSTRUCT, G_TYPE_BOOLEAN, bPlays, nullptr);
    }
    gst_rtsp_media_factory_set_permissions(stMounted.pFactory, pPermissions);
    gst_rtsp_permissions_unref(pPermissions);
}

void CStreamServer::stDef_Impl::m_S_ShowMount(const stDef_Mounted& stMounted) const
{
    GstRTSPMountPoints* pPoints = gst_rtsp_server_get_mount_points(pServer);
    const char* pszPath = stMounted.pMount->sPath.c_str();
    GstRTSPMediaFactory* pShown = gst_rtsp_mount_points_match(pPoints, pszPath, nullptr);
    if (pShown != nullptr && stMounted.pMount->bMissing)
        gst_rtsp_mount_points_remove_factory(pPoints, pszPath);
    else if (pShown == nullptr && !stMounted.pMount->bMissing)
        gst_rtsp_mount_points_add_factory(pPoints, pszPath, GST_RTSP_MEDIA_FACTORY(g_object_ref(stMounted.pFactory)));
    g_clear_object(&pShown);
    g_object_unref(pPoints);
}

void CStreamServer::stDef_Impl::m_S_AddMounts()
{
    for (int n = 0; n < 2 * stConfig.nChannels; ++n) {
        auto pMount = std::make_shared<stDef_StreamMount>();
        pMount->nChannel = n / 2;
        pMount->bSecond = n % 2 != 0;
        pMount->pPtz = stConfig.pPtz;
        pMount->sPath = (pMount->bSecond ? "/stream/SCH" : "/stream/CH") + std::to_string(pMount->nChannel);
        arMounts.push_back({pMount, MakeFactory({pMount, pClock})});
        m_S_ShowMount(arMounts.back());
    }
}

// Sessions of clients that went away without a word end some time.
void CStreamServer::stDef_Impl::m_S_AddCleanUp()
{
    pCleanUp = g_timeout_source_new_seconds(g_nCleanUpSeconds);
    g_source_set_callback(
        pCleanUp,
        [](gpointer pPool) -> gboolean {
            gst_rtsp_session_pool_cleanup(static_cast<GstRTSPSessionPool*>(pPool));
            return G_SOURCE_CONTINUE;
        },
        gst_rtsp_server_get_session_pool(pServer), &g_object_unref);
    g_source_attach(pCleanUp, pLoop->m_F_p_Context());
}

emDef_Admission CStreamServer::stDef_Impl::m_F_e_Admission(const std::string& sPath) const
{
    for (const auto& stMounted : arMounts) {
        const stDef_StreamMount& stMount = *stMounted.pMount;
        if (sPath != stMount.sPath && !sPath.starts_with(stMount.sPath + "/"))
            continue;
        return stMount.bSilent    ? emDef_Admission::Silent
               : stMount.bGarbage ? emDef_Admission::Garbage
                                  : emDef_Admission::HandOver;
    }
    return emDef_Admission::HandOver;
}

void CStreamServer::stDef_Impl::m_S_Serve(CRtspListener::stDef_Arrival& stArrival) const
{
    const char* pszInitial = stArrival.sInitial.empty() ? nullptr : stArrival.sInitial.c_str();
    gst_rtsp_server_transfer_connection(pServer, stArrival.pSocket, stArrival.sPeer.c_str(), stArrival.nPeerPort,
                                        pszInitial);
}

// The library never listens itself: it gets each connection from our listener, which plays the faults that concern
// whole connections, and the proxy's tunnels by the same way.
bool CStreamServer::stDef_Impl::m_F_b_Start(std::string& sError)
{
    if (!CGstPlugins::s_F_b_Load(sError))
        return false;
    pClock = std::make_shared<CFeedClock>();
    pServer = gst_rtsp_server_new();
    m_S_AddMounts();
    m_S_ApplyAccounts();
    pLoop = std::make_unique<CLoopThread>();
    pListener = std::make_unique<CRtspListener>(
        pLoop->m_F_p_Context(), [this](const std::string& sPath) { return m_F_e_Admission(sPath); },
        [this](CRtspListener::stDef_Arrival& stArrival) { m_S_Serve(stArrival); });
    // On the loop's thread, which owns the listener's sources from here on.
    bool bListens = false;
    pLoop->m_S_Call([&] { bListens = pListener->m_F_b_Listen(stConfig.sBind, stConfig.nPort, sError); });
    m_S_AddCleanUp();
    if (!bListens)
        m_S_Stop();
    else
        nPort = pListener->m_F_n_Port();
    return bListens;
}

// Cut connections end on the threads of their clients, and with the last client of a media its pipeline.
void CStreamServer::stDef_Impl::m_S_Stop()
{
    if (!pLoop)
        return;
    nPort = 0;
    pLoop->m_S_Call([this] { pListener.reset(); }); // cuts all connections, and no new one comes
    const auto tLimit = std::chrono::steady_clock::now() + g_nStopLimit;
    while (HasClients(pServer) && std::chrono::steady_clock::now() < tLimit)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    // A session may outlive its connection, and holds its media until it times out.
    GstRTSPSessionPool* pPool = gst_rtsp_server_get_session_pool(pServer);
    const auto removeAll = [](GstRTSPSessionPool*, GstRTSPSession*, gpointer) { return GST_RTSP_FILTER_REMOVE; };
    g_list_free_full(gst_rtsp_session_pool_filter(pPool, removeAll, nullptr), g_object_unref);
    g_object_unref(pPool);
    g_source_destroy(pCleanUp);
    g_source_unref(pCleanUp);
    pLoop.reset();
    for (const stDef_Mounted& stMounted : arMounts)
        g_object_unref(stMounted.pFactory);
    arMounts.clear();
    g_clear_object(&pServer);
    pClock.reset(); // last: factories and medias hold it, too, and its thread ends with the last of them
}

bool CStreamServer::stDef_Impl::m_F_b_AfterFault(std::string_view sName,
                                                 const std::vector<const stDef_Mounted*>& arMatched)
{
    for (const stDef_Mounted* pMounted : arMatched)
        m_S_ShowMount(*pMounted);
    if (sName == "killed") {
        pLoop->m_S_Call([&] {
            pListener->m_S_Cut([&](const std::string& sPath) {
                return std::any_of(arMatched.begin(), arMatched.end(), [&](const stDef_Mounted* pMounted) {
                    return sPath == pMounted->pMount->sPath || sPath.starts_with(pMounted->pMount->sPath + "/");
                });
            });
        });
    }
    bool bDone = true;
    if (sName == "refuse" || sName == "none") {
        std::string sIgnored;
        pLoop->m_S_Call([&] { bDone = pListener->m_F_b_SetRefused(sName == "refuse", sIgnored); });
    }
    return bDone;
}

CStreamServer::CStreamServer() : vm_pImpl(std::make_unique<stDef_Impl>()) {}

CStreamServer::~CStreamServer()
{
    m_S_Stop();
}

bool CStreamServer::m_F_b_Start(const stDef_StreamConfig& stConfig, std::string& sError)
{
    const std::lock_guard objGuard(vm_pImpl->objLock);
    if (vm_pImpl->pLoop) {
        sError = "the streams run already";
        return false;
    }
    if (stConfig.nChannels < 1 || stConfig.nChannels > g_nMaxChannels) {
        sError = "channels: 1 to " + std::to_string(g_nMaxChannels);
        return false;
    }
    vm_pImpl->stConfig = stConfig;
    return vm_pImpl->m_F_b_Start(sError);
}

void CStreamServer::m_S_Stop()
{
    const std::lock_guard objGuard(vm_pImpl->objLock);
    vm_pImpl->m_S_Stop();
}

int CStreamServer::m_F_n_Port() const
{
    return vm_pImpl->nPort;
}

void CStreamServer::m_S_SetAccounts(const std::vector<stDef_Account>& arAccounts)
{
    const std::lock_guard objGuard(vm_pImpl->objLock);
    if (!vm_pImpl->pLoop || vm_pImpl->stConfig.arAccounts.empty() || arAccounts.empty())
        return;
    vm_pImpl->stConfig.arAccounts = arAccounts;
    vm_pImpl->m_S_ApplyAccounts();
}

bool CStreamServer::m_F_b_TransferConnection(int nSocket, const std::string& sPeer, int nPeerPort,
                                             const std::string& sInitial)
{
    const std::lock_guard objGuard(vm_pImpl->objLock);
    GSocket* pSocket = vm_pImpl->pLoop ? g_socket_new_from_fd(nSocket, nullptr) : nullptr;
    if (pSocket == nullptr) {
        ::close(nSocket);
        return false;
    }
    g_socket_set_blocking(pSocket, FALSE);
    vm_pImpl->pLoop->m_S_Call([&] { vm_pImpl->pListener->m_S_Adopt({pSocket, sPeer, nPeerPort, sInitial}); });
    return true;
}

const std::vector<std::string_view>& CStreamServer::s_F_ar_FaultNames()
{
    static const std::vector<std::string_view> s_arNames = [] {
        std::vector<std::string_view> arNames;
        for (const stDef_FaultRow& stRow : g_arFaults)
            arNames.push_back(stRow.sName);
        return arNames;
    }();
    return s_arNames;
}

bool CStreamServer::m_F_b_SetFault(const std::string& sMountPart, const std::string& sName, long nArg)
{
    const auto* pRow = std::find_if(std::begin(g_arFaults), std::end(g_arFaults),
                                    [&](const stDef_FaultRow& stRow) { return stRow.sName == sName; });
    const std::lock_guard objGuard(vm_pImpl->objLock);
    if (pRow == std::end(g_arFaults) || !vm_pImpl->pLoop)
        return false;
    std::vector<const stDef_Mounted*> arMatched;
    for (const stDef_Mounted& stMounted : vm_pImpl->arMounts) {
        stDef_StreamMount& stMount = *stMounted.pMount;
        if (sMountPart != "*" && stMount.sPath.find(sMountPart) == std::string::npos)
            continue;
        // The other clip is ready before a playing feed turns to it.
        CClipLibrary& objClips = CClipLibrary::s_F_o_Shared();
        if (sName == "params" && objClips.m_F_b_Has(stMount.nChannel, stMount.bSecond))
            objClips.m_F_p_Get(stMount.nChannel, !stMount.bSecond);
        pRow->set(stMount, nArg);
        arMatched.push_back(&stMounted);
    }
    return !arMatched.empty() && vm_pImpl->m_F_b_AfterFault(sName, arMatched);
}

int CStreamServer::m_F_n_Sessions() const
{
    const std::lock_guard objGuard(vm_pImpl->objLock);
    return vm_pImpl->pLoop ? CountPlaying(vm_pImpl->pServer) : 0;
}
