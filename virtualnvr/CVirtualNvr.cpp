#include "CVirtualNvr.h"

#include "cgi/CCameraCgi.h"
#include "cgi/CCameraRegistry.h"
#include "cgi/CCgiRouter.h"
#include "cgi/CCgiServer.h"
#include "cgi/CClockCgi.h"
#include "cgi/CDeviceCgi.h"
#include "cgi/CDisplayCgi.h"
#include "cgi/CDocumentCgi.h"
#include "cgi/CDocumentStore.h"
#include "cgi/CMotionCgi.h"
#include "cgi/CMotionStore.h"
#include "cgi/CPtzCgi.h"
#include "cgi/CRecordCgi.h"
#include "cgi/StoredAccounts.h"
#include "http/CDigestAuth.h"
#include "http/CFaultTable.h"
#include "http/CHttpProxy.h"
#include "http/CRequestLog.h"
#include "records/RecordFaults.h"
#include "rtsp/CStreamServer.h"
#include "scene/CPtzBoard.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <netdb.h>
#include <sys/socket.h>
#include <system_error>

namespace {
constexpr int g_nMaxChannels = 64;

std::string MakeTemporaryFolder(std::string& sError)
{
    std::error_code objError;
    std::string sFolder = (std::filesystem::temp_directory_path(objError) / "virtualnvr-XXXXXX").string();
    if (objError || !::mkdtemp(sFolder.data())) {
        sError = "no temporary folder: " + (objError ? objError.message() : std::generic_category().message(errno));
        return {};
    }
    return sFolder;
}

/// Numeric address and port of the other end; of nobody if the connection is gone.
std::pair<std::string, int> PeerOf(int nSocket)
{
    sockaddr_storage stAddress{};
    socklen_t nLength = sizeof stAddress;
    auto* pAddress = reinterpret_cast<sockaddr*>(&stAddress);
    char szHost[NI_MAXHOST] = "", szPort[NI_MAXSERV] = "";
    if (::getpeername(nSocket, pAddress, &nLength) != 0 ||
        ::getnameinfo(pAddress, nLength, szHost, sizeof szHost, szPort, sizeof szPort,
                      NI_NUMERICHOST | NI_NUMERICSERV) != 0)
        return {"0.0.0.0", 0};
    return {szHost, std::atoi(szPort)};
}
} // namespace

struct CVirtualNvr::stDef_Impl
{
    CFaultTable objFaults;
    CFaultTable objRecordFaults{nsRecordFaults::Kinds()};
    CRequestLog objLog;
    CDocumentStore objDocuments;
    CMotionStore objMotion{objDocuments};
    const std::shared_ptr<CPtzBoard> pPtz = std::make_shared<CPtzBoard>();
    CCameraRegistry objCameras;
    CStreamServer objStreams;
    stDef_ServicePorts stPorts;
    std::unique_ptr<CCgiRouter> pRouter;
    std::unique_ptr<CDigestAuth> pAuth;
    CCgiServer objCgiServer;
    CHttpProxy objProxy;
    std::string sTemporaryFolder;
    std::mutex objAccountsLock; ///< so that of two posts at once the later document's accounts stay
    bool bRunning = false;

    bool Start(const stDef_VirtualNvrConfig& stConfig, std::string& sError);
    void MakeRouter(const stDef_VirtualNvrConfig& stConfig);
    bool OpenDocuments(const stDef_VirtualNvrConfig& stConfig, const std::string& sState, const std::string& sData,
                       std::string& sError);
    std::vector<stDef_Account> Accounts(const stDef_VirtualNvrConfig& stConfig) const;
    void TakeAccounts(const stDef_VirtualNvrConfig& stConfig);
    bool StartStreams(const stDef_VirtualNvrConfig& stConfig, std::string& sError);
    void Stop();
};

/// The recorder's programs, a subject each.
void CVirtualNvr::stDef_Impl::MakeRouter(const stDef_VirtualNvrConfig& stConfig)
{
    const int nChannels = stConfig.nChannels;
    pRouter = std::make_unique<CCgiRouter>(stConfig.bPC);
    pRouter->m_S_Add(std::make_unique<CDeviceCgi>(stConfig, stPorts));
    pRouter->m_S_Add(std::make_unique<CDocumentCgi>(objDocuments));
    pRouter->m_S_Add(std::make_unique<CClockCgi>(
        objDocuments, [this, nMs = stConfig.nRestartMs] { pRouter->m_S_Restart(std::chrono::milliseconds(nMs)); }));
    pRouter->m_S_Add(std::make_unique<CCameraCgi>(objCameras, stConfig.nProbeDelayMs));
    pRouter->m_S_Add(std::make_unique<CPtzCgi>(*pPtz, nChannels, stConfig.bPC));
    pRouter->m_S_Add(std::make_unique<CDisplayCgi>());
    pRouter->m_S_Add(std::make_unique<CMotionCgi>(objMotion, *pPtz, nChannels));
    pRouter->m_S_Add(std::make_unique<CRecordCgi>(nChannels, stConfig.bPC, stConfig.nRecordHours, stConfig.fnNowMs,
                                                  objRecordFaults));
}

/// A change of the list of cameras takes their motion windows along, and one of the accounts is in force at once.
bool CVirtualNvr::stDef_Impl::OpenDocuments(const stDef_VirtualNvrConfig& stConfig, const std::string& sState,
                                            const std::string& sData, std::string& sError)
{
    objDocuments.m_S_SetListener({});
    if (!objDocuments.m_F_b_Open(sState, sData, stConfig.nChannels, sError) || !objCameras.m_F_b_Load(sData, sError))
        return false;
    objMotion.m_S_Load(stConfig.nChannels);
    pAuth = std::make_unique<CDigestAuth>(Accounts(stConfig), stConfig.nNonceLifetimeMs);
    objDocuments.m_S_SetListener([this, stConfig](emDef_Document eDocument) {
        if (eDocument == emDef_Document::Camera)
            objMotion.m_S_TakeCameras();
        else if (eDocument == emDef_Document::System)
            TakeAccounts(stConfig);
    });
    return true;
}

/// A PC recorder has no System document to fetch or post.
std::vector<stDef_Account> CVirtualNvr::stDef_Impl::Accounts(const stDef_VirtualNvrConfig& stConfig) const
{
    return stConfig.bPC || !stConfig.bStoredAccounts
               ? stConfig.arAccounts
               : WithStoredAccounts(stConfig.arAccounts, objDocuments.m_F_s_Get(emDef_Document::System),
                                    stConfig.nChannels);
}

void CVirtualNvr::stDef_Impl::TakeAccounts(const stDef_VirtualNvrConfig& stConfig)
{
    const std::lock_guard objGuard(objAccountsLock);
    const std::vector<stDef_Account> arAccounts = Accounts(stConfig);
    pAuth->m_S_SetAccounts(arAccounts);
    objStreams.m_S_SetAccounts(arAccounts);
}

bool CVirtualNvr::stDef_Impl::StartStreams(const stDef_VirtualNvrConfig& stConfig, std::string& sError)
{
    if (!stConfig.bStreams)
        return true;
    objProxy.m_S_SetTunnelHandler([this](int nSocket, const std::string& sInitial) {
        const auto [sPeer, nPeerPort] = PeerOf(nSocket);
        return objStreams.m_F_b_TransferConnection(nSocket, sPeer, nPeerPort, sInitial); // owns the socket from here on
    });
    return objStreams.m_F_b_Start({stConfig.sBind, stConfig.nRtspPort, stConfig.nChannels, Accounts(stConfig), pPtz},
                                  sError);
}

bool CVirtualNvr::stDef_Impl::Start(const stDef_VirtualNvrConfig& stConfig, std::string& sError)
{
    std::string sState = stConfig.sStateFolder;
    if (sState.empty())
        sState = sTemporaryFolder = MakeTemporaryFolder(sError);
    if (sState.empty())
        return false;
    const std::string sData = stConfig.sDataFolder.empty() ? VIRTUALNVR_DATA_FOLDER : stConfig.sDataFolder;
    pPtz->m_S_Reset(stConfig.nChannels);
    MakeRouter(stConfig);
    if (!OpenDocuments(stConfig, sState, sData, sError) || !StartStreams(stConfig, sError) ||
        !objCgiServer.m_F_b_Start(*pRouter, *pAuth, sError) ||
        !objProxy.m_F_b_Start(stConfig.sBind, stConfig.nHttpPort, objCgiServer.m_F_n_Port(), objFaults, objLog, sError))
        return false;
    stPorts.nHttp = objProxy.m_F_n_Port();
    stPorts.nRtsp = stConfig.bStreams ? objStreams.m_F_n_Port() : 0;
    return true;
}

void CVirtualNvr::stDef_Impl::Stop()
{
    objProxy.m_S_Stop(); // first: it closes the connections that the servers behind it would wait for
    objCgiServer.m_S_Stop();
    objStreams.m_S_Stop();
    objProxy.m_S_SetTunnelHandler({});
    objDocuments.m_S_Close();
    if (!sTemporaryFolder.empty()) {
        std::error_code objIgnored;
        std::filesystem::remove_all(sTemporaryFolder, objIgnored);
        sTemporaryFolder.clear();
    }
}

CVirtualNvr::CVirtualNvr() : vm_pImpl(std::make_unique<stDef_Impl>()) {}

CVirtualNvr::~CVirtualNvr()
{
    m_S_Stop();
}

bool CVirtualNvr::m_F_b_Start(const stDef_VirtualNvrConfig& stConfig, std::string& sError)
{
    if (vm_pImpl->bRunning)
        sError = "the recorder runs already";
    else if (stConfig.nChannels < 1 || stConfig.nChannels > g_nMaxChannels)
        sError = "channels: 1 to " + std::to_string(g_nMaxChannels);
    else if (stConfig.nRecordHours < 0 || stConfig.nRecordHours > stDef_VirtualNvrConfig::s_nMaxRecordHours)
        sError = "hours of recordings: 0 to " + std::to_string(stDef_VirtualNvrConfig::s_nMaxRecordHours);
    else if (stConfig.arAccounts.empty())
        sError = "a recorder needs an account";
    else if (vm_pImpl->Start(stConfig, sError))
        return vm_pImpl->bRunning = true;
    else
        vm_pImpl->Stop();
    return false;
}

void CVirtualNvr::m_S_Stop()
{
    if (vm_pImpl->bRunning)
        vm_pImpl->Stop();
    vm_pImpl->bRunning = false;
}

int CVirtualNvr::m_F_n_HttpPort() const
{
    return vm_pImpl->bRunning ? vm_pImpl->objProxy.m_F_n_Port() : 0;
}

int CVirtualNvr::m_F_n_RtspPort() const
{
    return vm_pImpl->bRunning ? vm_pImpl->objStreams.m_F_n_Port() : 0;
}

CFaultTable& CVirtualNvr::m_F_o_Faults()
{
    return vm_pImpl->objFaults;
}

CFaultTable& CVirtualNvr::m_F_o_RecordFaults()
{
    return vm_pImpl->objRecordFaults;
}

CRequestLog& CVirtualNvr::m_F_o_Log()
{
    return vm_pImpl->objLog;
}

CStreamServer& CVirtualNvr::m_F_o_Streams()
{
    return vm_pImpl->objStreams;
}

CDocumentStore& CVirtualNvr::m_F_o_Documents()
{
    return vm_pImpl->objDocuments;
}

CPtzBoard& CVirtualNvr::m_F_o_Ptz()
{
    return *vm_pImpl->pPtz;
}
