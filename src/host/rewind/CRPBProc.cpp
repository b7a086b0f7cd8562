#include "host/rewind/CRPBProc.h"

#include <QFile>
#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <limits>
#include <mutex>
#include <thread>
#include <utility>

#include "host/Lib_Bedrock.h"

namespace {

constexpr std::chrono::milliseconds FlagInterval{50}; ///< how often a wait looks at the run flag
constexpr int PieceBytes = 4 << 20;
constexpr std::uint64_t MaxFileBytes = std::uint64_t{4} << 30; ///< places in record files have 32 bits

struct st_Target
{
    QByteArray sAddress, sUser, sPassword;
    int nPort = 0;
    int nTimeoutMs = 0;
};

/// One request at a time, with a kept connection.
struct st_Lane
{
    CHTTP objHttp;
    std::unique_ptr<CMemManage> pReply = std::make_unique<CMemManage>();

    bool Get(const st_Target& stTarget, const QByteArray& sUrl)
    {
        return objHttp.m_F_n_HTTPGetDataDirect(stTarget.sAddress, stTarget.sUser, stTarget.sPassword, stTarget.nPort,
                                               sUrl, pReply.get(), stTarget.nTimeoutMs) >= 0;
    }
    bool Append(QFile& objFile) const
    {
        const auto nSize = static_cast<qint64>(pReply->m_F_n_GetMemSize());
        return objFile.write(reinterpret_cast<const char*>(pReply->m_F_p_GetMemPoint()), nSize) == nSize;
    }
};

using Work = std::function<bool(st_Lane&, const st_Target&)>;

struct st_Request
{
    int nLane = -1; ///< -1: there was none free
    std::thread objThread;
    bool bDone = false; ///< under the lock
    bool bGood = false;
};

QByteArray Escaped(const char* pszText)
{
    return QByteArray(pszText ? pszText : "").toPercentEncoding();
}

bool FetchPieces(st_Lane& stLane, const st_Target& stTarget, const QByteArray& sRemote, QFile& objFile)
{
    const QByteArray sStem =
        "rpb/file?name=" + sRemote.toPercentEncoding() + "&length=" + QByteArray::number(PieceBytes);
    for (std::uint64_t nFrom = 0; nFrom <= MaxFileBytes; nFrom += PieceBytes) {
        if (!stLane.Get(stTarget, sStem + "&from=" + QByteArray::number(static_cast<qulonglong>(nFrom))) ||
            stLane.pReply->m_F_n_GetMemSize() > PieceBytes || !stLane.Append(objFile))
            return false;
        if (stLane.pReply->m_F_n_GetMemSize() < PieceBytes)
            return true;
    }
    return false;
}

/// Runs with the local file open, and empties the reply when it stands there.
Work IntoFile(const QString& sLocalFile, std::function<bool(st_Lane&, const st_Target&, QFile&)> fnFetch)
{
    return [sLocalFile, fnFetch = std::move(fnFetch)](st_Lane& stLane, const st_Target& stTarget) {
        QFile objFile(sLocalFile);
        const bool bGood = objFile.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
                           fnFetch(stLane, stTarget, objFile) && objFile.flush();
        stLane.pReply->m_S_Clear();
        return bGood;
    };
}

Work JustGet(const QByteArray& sUrl)
{
    return [sUrl](st_Lane& stLane, const st_Target& stTarget) { return stLane.Get(stTarget, sUrl); };
}

} // namespace

struct CRPBProc::st_Impl
{
    st_Target stTarget;
    std::array<st_Lane, s_nMaxAhead> arLanes;
    std::array<bool, s_nMaxAhead> arBusy{};
    std::deque<std::unique_ptr<st_Request>> arRequests;
    std::unique_ptr<CMemManage> pCollected = std::make_unique<CMemManage>();
    std::mutex objLock;
    std::condition_variable objDone;

    int FreeLane() const;
    void Begin(Work fnWork);
    void DropAll();
    bool Wait(const st_Request& stRequest, bool* pbRun);
};

int CRPBProc::st_Impl::FreeLane() const
{
    for (int n = 0; n < s_nMaxAhead; ++n)
        if (!arBusy[static_cast<std::size_t>(n)])
            return n;
    return -1;
}

void CRPBProc::st_Impl::Begin(Work fnWork)
{
    auto pRequest = std::make_unique<st_Request>();
    pRequest->nLane = FreeLane();
    if (pRequest->nLane < 0) {
        pRequest->bDone = true;
    } else {
        arBusy[static_cast<std::size_t>(pRequest->nLane)] = true;
        st_Lane& stLane = arLanes[static_cast<std::size_t>(pRequest->nLane)];
        pRequest->objThread =
            std::thread([this, &stLane, &stRequest = *pRequest, stOwn = stTarget, fnWork = std::move(fnWork)] {
                const bool bGood = fnWork(stLane, stOwn);
                const std::lock_guard lock(objLock);
                stRequest.bGood = bGood;
                stRequest.bDone = true;
                objDone.notify_all();
            });
    }
    arRequests.push_back(std::move(pRequest));
}

void CRPBProc::st_Impl::DropAll()
{
    for (const auto& pRequest : arRequests)
        if (pRequest->nLane >= 0)
            arLanes[static_cast<std::size_t>(pRequest->nLane)].objHttp.m_S_AbandonDirect();
    for (const auto& pRequest : arRequests) {
        if (pRequest->nLane < 0)
            continue;
        pRequest->objThread.join();
        arLanes[static_cast<std::size_t>(pRequest->nLane)].objHttp.m_S_AllowDirect();
        arBusy[static_cast<std::size_t>(pRequest->nLane)] = false;
    }
    arRequests.clear();
}

/// False if the flag ended the wait.
bool CRPBProc::st_Impl::Wait(const st_Request& stRequest, bool* pbRun)
{
    std::unique_lock lock(objLock);
    const auto bRuns = [pbRun] { return !pbRun || std::atomic_ref<bool>(*pbRun).load(std::memory_order_relaxed); };
    while (bRuns()) {
        if (objDone.wait_for(lock, FlagInterval, [&stRequest] { return stRequest.bDone; }))
            return true;
    }
    return false;
}

CRPBProc::CRPBProc() : vm_pImpl(std::make_unique<st_Impl>()) {}

CRPBProc::~CRPBProc()
{
    m_S_Uninit();
}

void CRPBProc::m_S_SetAccount(const QByteArray& sUser, const QByteArray& sPassword)
{
    vm_pImpl->stTarget.sUser = sUser;
    vm_pImpl->stTarget.sPassword = sPassword;
}

int CRPBProc::m_F_n_ConnectTo(std::uint64_t, int, const QByteArray& sAddress, int nPort, int nTimeoutMs, int)
{
    vm_pImpl->stTarget.sAddress = sAddress;
    vm_pImpl->stTarget.nPort = nPort;
    vm_pImpl->stTarget.nTimeoutMs = nTimeoutMs;
    return 1;
}

void CRPBProc::m_S_RequestBackupInfo(const QString& sLocalFile, const CLoadDataByFile::st_PB_SearchInfo* pSearch,
                                     const char* pChannels)
{
    const CLoadDataByFile::st_PB_SearchInfo stSearch = pSearch ? *pSearch : CLoadDataByFile::st_PB_SearchInfo{};
    const QByteArray sUrl = "rpb/info?start=" + QByteArray::number(static_cast<qulonglong>(stSearch.nStart)) +
                            "&end=" + QByteArray::number(static_cast<qulonglong>(stSearch.nEnd)) +
                            "&select=" + Escaped(stSearch.pSearch) + "&value=" + QByteArray::number(stSearch.nValue) +
                            "&channels=" + Escaped(pChannels);
    vm_pImpl->Begin(IntoFile(sLocalFile, [sUrl](st_Lane& stLane, const st_Target& stTarget, QFile& objFile) {
        return stLane.Get(stTarget, sUrl) && stLane.Append(objFile);
    }));
}

void CRPBProc::m_S_RequestFile(const QByteArray& sRemote, const QString& sLocalFile)
{
    vm_pImpl->Begin(IntoFile(sLocalFile, [sRemote](st_Lane& stLane, const st_Target& stTarget, QFile& objFile) {
        return FetchPieces(stLane, stTarget, sRemote, objFile);
    }));
}

void CRPBProc::m_S_RequestBackupDat(const QByteArray& sRemote, int nFirst, int nCount)
{
    vm_pImpl->Begin(JustGet("rpb/dat?name=" + sRemote.toPercentEncoding() + "&first=" + QByteArray::number(nFirst) +
                            "&count=" + QByteArray::number(nCount)));
}

void CRPBProc::m_S_RequestBackupImg(const QByteArray& sRemote, const std::uint32_t* pNumbers, int nCount)
{
    QByteArray sUrl = "rpb/img?name=" + sRemote.toPercentEncoding() + "&records=";
    for (int n = 0; n < nCount; ++n) {
        const bool bHead = pNumbers[n] == s_nHeadRecord;
        sUrl += (n > 0 ? "," : "") + (bHead ? QByteArray("-1") : QByteArray::number(pNumbers[n]));
    }
    vm_pImpl->Begin(JustGet(sUrl));
}

bool CRPBProc::m_F_b_GetDirectData(char** ppData, std::int32_t* pnSize, bool* pbRun)
{
    st_Impl& impl = *vm_pImpl;
    if (ppData)
        *ppData = nullptr;
    if (pnSize)
        *pnSize = 0;
    if (impl.arRequests.empty())
        return false;
    if (!impl.Wait(*impl.arRequests.front(), pbRun)) {
        impl.DropAll();
        return false;
    }
    const std::unique_ptr<st_Request> pRequest = std::move(impl.arRequests.front());
    impl.arRequests.pop_front();
    if (pRequest->nLane < 0)
        return false;
    pRequest->objThread.join();
    const auto nLane = static_cast<std::size_t>(pRequest->nLane);
    std::swap(impl.pCollected, impl.arLanes[nLane].pReply);
    impl.arBusy[nLane] = false;
    if (!pRequest->bGood || impl.pCollected->m_F_n_GetMemSize() > std::numeric_limits<std::int32_t>::max())
        return false;
    if (ppData)
        *ppData = impl.pCollected->m_F_p_GetStrCHAR();
    if (pnSize)
        *pnSize = static_cast<std::int32_t>(impl.pCollected->m_F_n_GetMemSize());
    return true;
}

void CRPBProc::m_S_Uninit()
{
    vm_pImpl->DropAll();
    vm_pImpl->stTarget = {};
}
