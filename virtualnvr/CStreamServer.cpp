#include "CStreamServer.h"

#include "CSocket.h"
#include "CStreamFeed.h"

#include <algorithm>
#include <arpa/inet.h>
#include <condition_variable>
#include <functional>
#include <gst/gst.h>
#include <gst/rtsp-server/rtsp-server.h>
#include <list>
#include <netdb.h>
#include <set>
#include <sys/socket.h>
#include <thread>

namespace {

constexpr int MaxChannels = 64;
constexpr guint FeedEveryMs = 20;
constexpr int FirstLineMs = 30000; ///< a connection that says nothing is closed
constexpr const char* Role = "viewer";
constexpr const char* Launch =
    "( appsrc name=video is-live=true format=time min-latency=0 "
    "caps=video/x-h264,stream-format=byte-stream,alignment=au"
    " ! h264parse ! rtph264pay name=pay0 pt=96 config-interval=-1 aggregate-mode=zero-latency"
    " appsrc name=audio is-live=true format=time caps=audio/x-mulaw,rate=8000,channels=1 ! rtppcmupay name=pay1 pt=0 )";

/// What is wrong with a mount at present.
struct stDef_Mount
{
    std::string sPath;
    int nChannel = 0;
    bool bSecond = false;
    bool bMissing = false;
    std::string sConnection; ///< "silent", "garbage" or nothing
    std::shared_ptr<stDef_FeedFaults> pFeed = std::make_shared<stDef_FeedFaults>();
};

/// Path of the first request on a connection: "OPTIONS rtsp://host:port/stream/CH0 RTSP/1.0" or "GET /stream/CH0
/// HTTP/1.0".
std::string FirstPath(const std::string& sText)
{
    const auto nBegin = sText.find(' ');
    const auto nEnd = sText.find(' ', nBegin + 1);
    if (nBegin == sText.npos || nEnd == sText.npos)
        return {};
    std::string sTarget = sText.substr(nBegin + 1, nEnd - nBegin - 1);
    const auto nHost = sTarget.find("://");
    if (nHost != sTarget.npos)
        sTarget.erase(0, std::min(sTarget.find('/', nHost + 3), sTarget.size()));
    return sTarget;
}

} // namespace

struct CStreamServer::stDef_Impl
{
    struct stDef_Pending
    {
        CSocket objSocket;
        std::atomic<bool> bDone{false};
        std::thread objThread;
        explicit stDef_Pending(int nSocket) : objSocket(nSocket) {}
    };

    stDef_StreamConfig stConfig;
    CClipLibrary objClips;
    GMainContext* pContext = nullptr;
    GMainLoop* pLoop = nullptr;
    GstRTSPServer* pServer = nullptr;
    std::thread objLoop, objAcceptor, objPrefetch;
    std::unique_ptr<CSocket> pListener;
    std::list<stDef_Pending> arPending; ///< of the acceptor's thread
    std::mutex objMutex;                ///< guards what follows
    std::vector<stDef_Mount> arMounts;
    std::set<GstRTSPClient*> setPlaying;
    bool bRefused = false; ///< the port is closed
    std::condition_variable objRefused;
    std::map<GstRTSPMedia*, std::unique_ptr<CStreamFeed>> mapFeeds;
    std::atomic<bool> bStop{false}, bRunning{false}, bRefuse{false};
    int nPort = 0;

    bool Start(std::string& sError);
    void Stop();
    void AddMounts();
    void AddFactory(const stDef_Mount& stMount);
    void AddAccounts();
    void Accept();
    void HoldClosed();
    void Reap(bool bAll);
    void Dispatch(stDef_Pending& stPending);
    bool Transfer(int nSocket, const std::string& sPeer, int nPeerPort, const std::string& sInitial);
    std::string ConnectionFault(const std::string& sPath);
    void OnConfigure(GstRTSPMedia* pMedia, const std::string& sPath);
    void OnClient(GstRTSPClient* pClient);
    void InLoop(const std::function<void()>& work);
    void ApplyMissing(const std::vector<stDef_Mount>& arChanged);
    void CloseConnections();
    void SetRefuse(bool bRefuseNow);
    static gboolean FeedAll(gpointer pSelf);
};

gboolean CStreamServer::stDef_Impl::FeedAll(gpointer pSelf)
{
    auto& self = *static_cast<stDef_Impl*>(pSelf);
    const std::lock_guard lock(self.objMutex);
    for (auto& [pMedia, pFeed] : self.mapFeeds)
        if (pFeed && !pFeed->m_F_b_PushDue())
            pFeed.reset();
    return G_SOURCE_CONTINUE;
}

/// Runs something on the streaming thread and waits for it.
void CStreamServer::stDef_Impl::InLoop(const std::function<void()>& work)
{
    struct stDef_Call
    {
        const std::function<void()>& work;
        std::mutex objMutex;
        std::condition_variable objDone;
        bool bDone = false;
    } stCall{work, {}, {}, false};
    g_main_context_invoke(
        pContext,
        [](gpointer pCall) -> gboolean {
            auto& st = *static_cast<stDef_Call*>(pCall);
            st.work();
            const std::lock_guard lock(st.objMutex);
            st.bDone = true;
            st.objDone.notify_one();
            return G_SOURCE_REMOVE;
        },
        &stCall);
    std::unique_lock lock(stCall.objMutex);
    stCall.objDone.wait(lock, [&] { return stCall.bDone; });
}

void CStreamServer::stDef_Impl::OnConfigure(GstRTSPMedia* pMedia, const std::string& sPath)
{
    GstElement* pBin = gst_rtsp_media_get_element(pMedia);
    GstElement* pVideo = gst_bin_get_by_name_recurse_up(GST_BIN(pBin), "video");
    GstElement* pAudio = gst_bin_get_by_name_recurse_up(GST_BIN(pBin), "audio");
    gst_object_unref(pBin);
    int nChannel = 0;
    bool bSecond = false;
    std::shared_ptr<stDef_FeedFaults> pFaults;
    {
        const std::lock_guard lock(objMutex);
        for (const stDef_Mount& stMount : arMounts)
            if (stMount.sPath == sPath) {
                nChannel = stMount.nChannel;
                bSecond = stMount.bSecond;
                pFaults = stMount.pFeed;
            }
    }
    auto pClip = objClips.m_F_p_Get(nChannel, bSecond);
    auto pOther = objClips.m_F_p_Get(nChannel, !bSecond);
    if (!pClip || !pOther || !pFaults) {
        gst_object_unref(pVideo);
        gst_object_unref(pAudio);
        return;
    }
    auto pFeed = std::make_unique<CStreamFeed>(pVideo, pAudio, pClip, pOther, nChannel, pFaults);
    const std::lock_guard lock(objMutex);
    mapFeeds[pMedia] = std::move(pFeed);
    g_signal_connect(pMedia, "unprepared", G_CALLBACK(+[](GstRTSPMedia* pGone, gpointer pSelf) {
                         auto& self = *static_cast<stDef_Impl*>(pSelf);
                         std::unique_ptr<CStreamFeed> pEnded;
                         const std::lock_guard guard(self.objMutex);
                         const auto it = self.mapFeeds.find(pGone);
                         if (it != self.mapFeeds.end())
                             self.mapFeeds.erase(it);
                     }),
                     this);
}

void CStreamServer::stDef_Impl::AddFactory(const stDef_Mount& stMount)
{
    struct stDef_Context
    {
        stDef_Impl* pSelf;
        std::string sPath;
    };
    GstRTSPMediaFactory* pFactory = gst_rtsp_media_factory_new();
    gst_rtsp_media_factory_set_launch(pFactory, Launch);
    gst_rtsp_media_factory_set_shared(pFactory, TRUE);
    if (!stConfig.arAccounts.empty())
        gst_rtsp_media_factory_add_role(pFactory, Role, GST_RTSP_PERM_MEDIA_FACTORY_ACCESS, G_TYPE_BOOLEAN, TRUE,
                                        GST_RTSP_PERM_MEDIA_FACTORY_CONSTRUCT, G_TYPE_BOOLEAN, TRUE, nullptr);
    g_signal_connect_data(
        pFactory, "media-configure", G_CALLBACK(+[](GstRTSPMediaFactory*, GstRTSPMedia* pMedia, gpointer pGiven) {
            const auto& st = *static_cast<stDef_Context*>(pGiven);
            st.pSelf->OnConfigure(pMedia, st.sPath);
        }),
        new stDef_Context{this, stMount.sPath},
        [](gpointer pGiven, GClosure*) { delete static_cast<stDef_Context*>(pGiven); }, GConnectFlags(0));
    GstRTSPMountPoints* pMounts = gst_rtsp_server_get_mount_points(pServer);
    gst_rtsp_mount_points_add_factory(pMounts, stMount.sPath.c_str(), pFactory);
    g_object_unref(pMounts);
}

void CStreamServer::stDef_Impl::AddMounts()
{
    for (int nChannel = 0; nChannel < stConfig.nChannels; ++nChannel)
        for (const bool bSecond : {false, true}) {
            stDef_Mount stMount;
            stMount.sPath = std::string("/stream/") + (bSecond ? "SCH" : "CH") + std::to_string(nChannel);
            stMount.nChannel = nChannel;
            stMount.bSecond = bSecond;
            AddFactory(stMount);
            arMounts.push_back(std::move(stMount));
        }
}

void CStreamServer::stDef_Impl::AddAccounts()
{
    if (stConfig.arAccounts.empty())
        return;
    GstRTSPAuth* pAuth = gst_rtsp_auth_new();
    gst_rtsp_auth_set_supported_methods(pAuth, GstRTSPAuthMethod(GST_RTSP_AUTH_BASIC | GST_RTSP_AUTH_DIGEST));
    GstRTSPToken* pToken = gst_rtsp_token_new(GST_RTSP_TOKEN_MEDIA_FACTORY_ROLE, G_TYPE_STRING, Role, nullptr);
    for (const stDef_Account& stAccount : stConfig.arAccounts) {
        gchar* pBasic = gst_rtsp_auth_make_basic(stAccount.sUser.c_str(), stAccount.sPassword.c_str());
        gst_rtsp_auth_add_basic(pAuth, pBasic, pToken);
        gst_rtsp_auth_add_digest(pAuth, stAccount.sUser.c_str(), stAccount.sPassword.c_str(), pToken);
        g_free(pBasic);
    }
    gst_rtsp_token_unref(pToken);
    gst_rtsp_server_set_auth(pServer, pAuth);
    g_object_unref(pAuth);
}

void CStreamServer::stDef_Impl::OnClient(GstRTSPClient* pClient)
{
    const auto forget = +[](GstRTSPClient* pGone, gpointer pSelf) {
        auto& self = *static_cast<stDef_Impl*>(pSelf);
        const std::lock_guard lock(self.objMutex);
        self.setPlaying.erase(pGone);
    };
    g_signal_connect(pClient, "play-request", G_CALLBACK(+[](GstRTSPClient* pPlays, GstRTSPContext*, gpointer pSelf) {
                         auto& self = *static_cast<stDef_Impl*>(pSelf);
                         const std::lock_guard lock(self.objMutex);
                         self.setPlaying.insert(pPlays);
                     }),
                     this);
    g_signal_connect(pClient, "teardown-request",
                     G_CALLBACK(+[](GstRTSPClient* pGone, GstRTSPContext*, gpointer pSelf) {
                         auto& self = *static_cast<stDef_Impl*>(pSelf);
                         const std::lock_guard lock(self.objMutex);
                         self.setPlaying.erase(pGone);
                     }),
                     this);
    g_signal_connect(pClient, "closed", G_CALLBACK(forget), this);
}

bool CStreamServer::stDef_Impl::Start(std::string& sError)
{
    gst_init(nullptr, nullptr);
    sError = CClipLibrary::s_F_s_Missing();
    if (!sError.empty())
        return false;
    pListener = std::make_unique<CSocket>();
    if (!pListener->m_F_b_Listen(stConfig.sBind, stConfig.nPort, sError))
        return false;
    nPort = pListener->m_F_n_Port();
    pContext = g_main_context_new();
    pLoop = g_main_loop_new(pContext, FALSE);
    pServer = gst_rtsp_server_new();
    AddAccounts();
    AddMounts();
    g_signal_connect(pServer, "client-connected",
                     G_CALLBACK(+[](GstRTSPServer*, GstRTSPClient* pClient, gpointer pSelf) {
                         static_cast<stDef_Impl*>(pSelf)->OnClient(pClient);
                     }),
                     this);
    GSource* pTimer = g_timeout_source_new(FeedEveryMs);
    g_source_set_callback(pTimer, &FeedAll, this, nullptr);
    g_source_attach(pTimer, pContext);
    g_source_unref(pTimer);
    bStop = bRefuse = false;
    objLoop = std::thread([this] {
        g_main_context_push_thread_default(pContext);
        g_main_loop_run(pLoop);
        g_main_context_pop_thread_default(pContext);
    });
    objAcceptor = std::thread([this] { Accept(); });
    objPrefetch = std::thread([this] {
        for (int nChannel = 0; nChannel < std::min(stConfig.nChannels, 4) && !bStop; ++nChannel)
            for (const bool bSecond : {false, true})
                objClips.m_F_p_Get(nChannel, bSecond);
    });
    bRunning = true;
    return true;
}

void CStreamServer::stDef_Impl::Stop()
{
    if (!bRunning)
        return;
    bStop = true;
    bRunning = false;
    {
        const std::lock_guard lock(objMutex);
        pListener->m_S_Wake();
        objRefused.notify_all();
    }
    objAcceptor.join();
    objPrefetch.join();
    Reap(true);
    CloseConnections();
    GstRTSPSessionPool* pSessions = gst_rtsp_server_get_session_pool(pServer);
    gst_rtsp_session_pool_filter(
        pSessions, [](GstRTSPSessionPool*, GstRTSPSession*, gpointer) { return GST_RTSP_FILTER_REMOVE; }, nullptr);
    g_object_unref(pSessions);
    g_main_loop_quit(pLoop);
    objLoop.join();
    g_object_unref(pServer);
    g_main_loop_unref(pLoop);
    g_main_context_unref(pContext);
    mapFeeds.clear();
    arMounts.clear();
    setPlaying.clear();
    pListener.reset();
    nPort = 0;
}

void CStreamServer::stDef_Impl::Reap(bool bAll)
{
    for (auto it = arPending.begin(); it != arPending.end();) {
        if (bAll)
            it->objSocket.m_S_Wake();
        if (!bAll && !it->bDone) {
            ++it;
            continue;
        }
        it->objThread.join();
        it = arPending.erase(it);
    }
}

/// The port stays closed until nobody wants it to any more.
void CStreamServer::stDef_Impl::HoldClosed()
{
    std::unique_lock lock(objMutex);
    pListener->m_S_Close();
    bRefused = true;
    objRefused.notify_all();
    objRefused.wait(lock, [&] { return !bRefuse || bStop; });
    std::string sIgnored;
    if (!bStop)
        pListener->m_F_b_Listen(stConfig.sBind, nPort, sIgnored);
    bRefused = false;
    objRefused.notify_all();
}

/// Every connection is looked at here first, for the faults that show before a word is answered.
void CStreamServer::stDef_Impl::Accept()
{
    while (!bStop) {
        if (bRefuse)
            HoldClosed();
        const int nSocket = pListener->m_F_n_Accept();
        Reap(false);
        if (nSocket < 0)
            continue;
        stDef_Pending& stPending = arPending.emplace_back(nSocket);
        stPending.objThread = std::thread([this, &stPending] {
            Dispatch(stPending);
            stPending.bDone = true;
        });
    }
}

std::string CStreamServer::stDef_Impl::ConnectionFault(const std::string& sPath)
{
    const std::lock_guard lock(objMutex);
    const auto it = std::find_if(arMounts.begin(), arMounts.end(), [&](const stDef_Mount& stMount) {
        return sPath == stMount.sPath || sPath.starts_with(stMount.sPath + "/");
    });
    return it == arMounts.end() ? std::string() : it->sConnection;
}

void CStreamServer::stDef_Impl::Dispatch(stDef_Pending& stPending)
{
    std::string sInitial;
    char arPiece[4096];
    while (sInitial.find('\n') == std::string::npos && sInitial.size() < sizeof arPiece) {
        const long nRead = stPending.objSocket.m_F_n_Read(arPiece, sizeof arPiece, FirstLineMs);
        if (nRead <= 0)
            return stPending.objSocket.m_S_Close();
        sInitial.append(arPiece, static_cast<std::size_t>(nRead));
    }
    const std::string sFault = ConnectionFault(FirstPath(sInitial));
    if (sFault == "silent") {
        while (stPending.objSocket.m_F_n_Read(arPiece, sizeof arPiece) > 0) {
        }
        return stPending.objSocket.m_S_Close();
    }
    if (sFault == "garbage") {
        stPending.objSocket.m_F_b_Write("\x01\x02 this is no RTSP \xff\xfe\r\n\r\n\x03\r\n\r\n");
        stPending.objSocket.m_S_EndGently();
        return stPending.objSocket.m_S_Close();
    }
    sockaddr_storage stPeer{};
    socklen_t nLength = sizeof stPeer;
    const int nSocket = stPending.objSocket.m_F_n_Release();
    char szHost[NI_MAXHOST] = "127.0.0.1", szPort[NI_MAXSERV] = "1";
    if (::getpeername(nSocket, reinterpret_cast<sockaddr*>(&stPeer), &nLength) == 0)
        ::getnameinfo(reinterpret_cast<sockaddr*>(&stPeer), nLength, szHost, sizeof szHost, szPort, sizeof szPort,
                      NI_NUMERICHOST | NI_NUMERICSERV);
    Transfer(nSocket, szHost, std::atoi(szPort), sInitial);
}

bool CStreamServer::stDef_Impl::Transfer(int nSocket, const std::string& sPeer, int nPeerPort,
                                         const std::string& sInitial)
{
    CSocket objOwned(nSocket);
    if (!bRunning)
        return false;
    GError* pError = nullptr;
    GSocket* pSocket = g_socket_new_from_fd(nSocket, &pError);
    g_clear_error(&pError);
    if (!pSocket)
        return false;
    objOwned.m_F_n_Release();
    bool bTaken = false;
    InLoop([&] {
        bTaken = gst_rtsp_server_transfer_connection(pServer, pSocket, sPeer.c_str(), nPeerPort, sInitial.c_str());
    });
    return bTaken;
}

/// Takes away the mounts that are to be missing, and puts back those that no longer are.
void CStreamServer::stDef_Impl::ApplyMissing(const std::vector<stDef_Mount>& arChanged)
{
    InLoop([&] {
        GstRTSPMountPoints* pMounts = gst_rtsp_server_get_mount_points(pServer);
        for (const stDef_Mount& stMount : arChanged) {
            GstRTSPMediaFactory* pThere = gst_rtsp_mount_points_match(pMounts, stMount.sPath.c_str(), nullptr);
            if (pThere && stMount.bMissing)
                gst_rtsp_mount_points_remove_factory(pMounts, stMount.sPath.c_str());
            else if (!pThere && !stMount.bMissing)
                AddFactory(stMount);
            g_clear_object(&pThere);
        }
        g_object_unref(pMounts);
    });
}

void CStreamServer::stDef_Impl::CloseConnections()
{
    GList* pClosed = gst_rtsp_server_client_filter(
        pServer, [](GstRTSPServer*, GstRTSPClient*, gpointer) { return GST_RTSP_FILTER_REMOVE; }, nullptr);
    g_list_free(pClosed);
}

/// In force when it returns: the acceptor confirms by closing or opening the port.
void CStreamServer::stDef_Impl::SetRefuse(bool bRefuseNow)
{
    std::unique_lock lock(objMutex);
    bRefuse = bRefuseNow;
    if (bRefuse)
        pListener->m_S_Wake();
    objRefused.notify_all();
    objRefused.wait(lock, [&] { return bRefused == bRefuse || bStop; });
}

CStreamServer::CStreamServer() : vm_pImpl(std::make_unique<stDef_Impl>()) {}

CStreamServer::~CStreamServer()
{
    m_S_Stop();
}

bool CStreamServer::m_F_b_Start(const stDef_StreamConfig& stConfig, std::string& sError)
{
    if (vm_pImpl->bRunning) {
        sError = "the streams run already";
        return false;
    }
    if (stConfig.nChannels < 1 || stConfig.nChannels > MaxChannels) {
        sError = "channels: 1 to " + std::to_string(MaxChannels);
        return false;
    }
    vm_pImpl->stConfig = stConfig;
    return vm_pImpl->Start(sError);
}

void CStreamServer::m_S_Stop()
{
    vm_pImpl->Stop();
}

int CStreamServer::m_F_n_Port() const
{
    return vm_pImpl->nPort;
}

bool CStreamServer::m_F_b_TransferConnection(int nSocket, const std::string& sPeer, int nPeerPort,
                                             const std::string& sInitial)
{
    return vm_pImpl->Transfer(nSocket, sPeer, nPeerPort, sInitial);
}

int CStreamServer::m_F_n_Sessions() const
{
    const std::lock_guard lock(vm_pImpl->objMutex);
    return static_cast<int>(vm_pImpl->setPlaying.size());
}

namespace {

/// What a fault does to one mount; the connection-wide ones are done beside it.
struct stDef_FaultRow
{
    std::string_view sName;
    void (*apply)(stDef_Mount& stMount, long nArg);
};

const stDef_FaultRow g_arFaults[] = {
    {"silent", [](stDef_Mount& st, long) { st.sConnection = "silent"; }},
    {"garbage", [](stDef_Mount& st, long) { st.sConnection = "garbage"; }},
    {"killed", [](stDef_Mount&, long) {}},
    {"refuse", [](stDef_Mount&, long) {}},
    {"missing", [](stDef_Mount& st, long) { st.bMissing = true; }},
    {"paused", [](stDef_Mount& st, long) { st.pFeed->bPaused = true; }},
    {"jump", [](stDef_Mount& st, long nMs) { st.pFeed->nJumpMs += nMs; }},
    {"params", [](stDef_Mount& st, long) { st.pFeed->bOtherClip = true; }},
    {"none",
     [](stDef_Mount& st, long) {
         st.sConnection.clear();
         st.bMissing = false;
         st.pFeed->bPaused = st.pFeed->bOtherClip = false;
     }},
};

} // namespace

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
    stDef_Impl& impl = *vm_pImpl;
    const auto* pRow = std::find_if(std::begin(g_arFaults), std::end(g_arFaults),
                                    [&](const stDef_FaultRow& stRow) { return stRow.sName == sName; });
    if (pRow == std::end(g_arFaults) || !impl.bRunning)
        return false;
    std::vector<stDef_Mount> arMatched;
    {
        const std::lock_guard lock(impl.objMutex);
        for (stDef_Mount& stMount : impl.arMounts) {
            if (sMountPart != "*" && stMount.sPath.find(sMountPart) == std::string::npos)
                continue;
            pRow->apply(stMount, nArg);
            arMatched.push_back(stMount);
        }
    }
    impl.ApplyMissing(arMatched);
    if (sName == "killed")
        impl.CloseConnections();
    if (sName == "refuse" || sName == "none")
        impl.SetRefuse(sName == "refuse");
    return !arMatched.empty();
}
