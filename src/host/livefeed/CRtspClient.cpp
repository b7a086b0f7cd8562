#include "host/livefeed/CRtspClient.h"

#include <atomic>
#include <mutex>
#include <system_error>
#include <thread>

#include "host/Platform.h"
#include "host/livefeed/CAvLog.h"
#include "host/livefeed/CRtspSession.h"

namespace {

enum emDef_RtspState : std::int32_t
{
    RtspState_NoAnswer = 0,
    RtspState_Streaming = 1,
    RtspState_Refused = 3
};

stDef_SessionTarget TargetOf(CRtspInfo& stInfo)
{
    stDef_SessionTarget stTarget;
    stTarget.sUrl = stInfo.vm_sUrl.toStdString();
    stTarget.nTransport = stInfo.vm_nTransport;
    stTarget.nHttpPort = stInfo.vm_nHttpPort;
    stTarget.nConnectTimeoutMs = stInfo.vm_nConnectTimeout;
    stTarget.nDataTimeoutMs = stInfo.vm_nDataTimeout;
    stTarget.pVideo = stInfo.vm_pShmVideo;
    stTarget.pAudio = stInfo.vm_pShmAudio;
    stTarget.pLastDataTime = &stInfo.vm_nLastDataTime;
    return stTarget;
}

} // namespace

/// One thread serves connection after connection, for as long as the next one was asked for before it ended: so a
/// connect that comes while the last connection is still closing needs to wait for nothing.
struct CRtspClient::st_Impl
{
    CRtspInfo* pInfo = nullptr; // of the owner's thread alone
    std::thread objThread;      // likewise
    std::atomic<bool> bStop{false};
    std::atomic<bool> bRunning{false};

    std::mutex objMutex;          // guards what follows, and the state word of the info
    bool bEnding = false;         // the connection is over, or told to be
    bool bAsked = false;          // a connection is to begin
    stDef_SessionTarget stTarget; // of the connection to begin
    std::atomic<std::int32_t>* pState = nullptr;

    void m_S_Ask();
    bool m_F_b_Take(stDef_SessionTarget& stOut);
    void m_S_SetState(std::int32_t nState);
    void m_S_SetEnding();
    void m_S_RunThread();
};

/// Notes a connection. Its words stand as at the beginning, however long the one before takes to end.
void CRtspClient::st_Impl::m_S_Ask()
{
    bAsked = true;
    stTarget = TargetOf(*pInfo);
    pState = &pInfo->vm_nRtspState;
    pInfo->vm_nLastDataTime.store(s_F_n_NowMs(), std::memory_order_relaxed);
    pState->store(RtspState_NoAnswer, std::memory_order_relaxed);
}

/// The thread's question for work; it ends if there is none.
bool CRtspClient::st_Impl::m_F_b_Take(stDef_SessionTarget& stOut)
{
    const std::lock_guard objLock(objMutex);
    bRunning = bAsked;
    if (!bAsked)
        return false;
    bAsked = false;
    bEnding = false;
    bStop = false;
    stOut = stTarget;
    return true;
}

void CRtspClient::st_Impl::m_S_SetState(std::int32_t nState)
{
    const std::lock_guard objLock(objMutex);
    if (!bEnding)
        pState->store(nState, std::memory_order_relaxed);
}

void CRtspClient::st_Impl::m_S_SetEnding()
{
    const std::lock_guard objLock(objMutex);
    bEnding = true;
}

void CRtspClient::st_Impl::m_S_RunThread()
{
    CAvLog::s_S_MuteThread();
    stDef_SessionTarget stMine;
    while (m_F_b_Take(stMine)) {
        CRtspSession objSession(
            stMine, [this] { return bStop.load(std::memory_order_relaxed); },
            [this] { m_S_SetState(RtspState_Streaming); });
        if (objSession.m_F_n_Run() == emDef_SessionEnd::Refused)
            m_S_SetState(RtspState_Refused);
        m_S_SetEnding(); // while it says goodbye, a connect is for the next one
    }
}

CRtspClient::CRtspClient() : vm_pImpl(std::make_unique<st_Impl>()) {}

CRtspClient::~CRtspClient()
{
    m_S_Disconnect(false);
}

void CRtspClient::m_S_Connect(CRtspInfo* pInfo)
{
    st_Impl& d = *vm_pImpl;
    std::unique_lock objLock(d.objMutex);
    if (d.bRunning && !d.bEnding)
        return;
    if (pInfo)
        d.pInfo = pInfo;
    if (!d.pInfo)
        return;
    d.m_S_Ask();
    if (d.bRunning)
        return;
    d.bRunning = true;
    d.bEnding = false;
    objLock.unlock();
    if (d.objThread.joinable())
        d.objThread.join(); // it has said its last word
    try {
        d.objThread = std::thread([&d] { d.m_S_RunThread(); });
    } catch (const std::system_error&) {
        d.bAsked = false;
        d.bRunning = false;
    }
}

void CRtspClient::m_S_Disconnect(bool bAsync)
{
    {
        const std::lock_guard objLock(vm_pImpl->objMutex);
        vm_pImpl->bStop = true;
        vm_pImpl->bEnding = true;
        vm_pImpl->bAsked = false;
    }
    if (!bAsync && vm_pImpl->objThread.joinable())
        vm_pImpl->objThread.join();
}

bool CRtspClient::m_F_b_ThreadRun() const
{
    return vm_pImpl->bRunning.load(std::memory_order_acquire);
}

std::uint64_t CRtspClient::s_F_n_NowMs()
{
    return Platform::s_F_n_SteadyMs();
}
