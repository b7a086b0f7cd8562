#include "host/bedrock/CHTTP.h"

#include <algorithm>
#include <cstring>

#include "host/bedrock/CHttpTransfer.h"
#include "host/bedrock/CMemManage.h"
#include "host/bedrock/CMultipartReader.h"

namespace {

constexpr std::uint64_t DefaultBodyLimit = 64u << 20;
constexpr std::chrono::milliseconds MaxSilence{30000}; ///< of a stream that is thought to be alive

stDef_HttpTarget Target(const QByteArray& sHost, const QByteArray& sUser, const QByteArray& sPassword, int nPort)
{
    return {sHost.toStdString(), sUser.toStdString(), sPassword.toStdString(), nPort};
}

} // namespace

struct CHTTP::st_Impl
{
    std::mutex objTargetMutex;
    stDef_HttpTarget stTarget; ///< stored target; invalid while there is none

    std::mutex objDirectMutex, objCommandMutex, objStreamMutex; ///< one a group, held for the whole call
    CHttpTransfer objDirect, objCommand, objStream;
    CMultipartReader objReader;
    std::string sStreamUrl;
    std::string sPart;
    std::atomic<std::uint64_t> nBodyLimit{DefaultBodyLimit};
    std::atomic<int> nLastGetResult{0};
    std::atomic<int> nLastStatus{0};

    stDef_HttpTarget StoredTarget()
    {
        const std::lock_guard lock(objTargetMutex);
        return stTarget;
    }
    int PerformDirect(const stDef_HttpTarget& stDirect, stDef_HttpRequest stRequest, int nTimeoutMs);
    int BeginStream(const std::string& sUrl);
    int NextPart(const std::string& sUrl, int nTimeoutMs);
};

CHTTP::CHTTP() : vm_pImpl(std::make_unique<st_Impl>()) {}

CHTTP::~CHTTP()
{
    m_S_AbandonDirect();
    m_S_Release();
    const std::lock_guard lock(vm_pImpl->objDirectMutex);
}

bool CHTTP::m_S_Init(const QByteArray& sHost, const QByteArray& sUser, const QByteArray& sPassword, int nPort)
{
    m_S_Release();
    stDef_HttpTarget stTarget = Target(sHost, sUser, sPassword, nPort);
    if (!stTarget.m_F_b_Valid())
        return false;
    const std::lock_guard lock(vm_pImpl->objTargetMutex);
    vm_pImpl->stTarget = std::move(stTarget);
    return true;
}

bool CHTTP::m_S_Release()
{
    st_Impl& impl = *vm_pImpl;
    {
        const std::lock_guard lock(impl.objTargetMutex);
        impl.stTarget = {};
    }
    impl.objStream.m_S_Stop();
    impl.objCommand.m_S_Stop();
    const std::scoped_lock lock(impl.objStreamMutex, impl.objCommandMutex);
    for (CHttpTransfer* pTransfer : {&impl.objStream, &impl.objCommand}) {
        pTransfer->m_S_Reset();
        pTransfer->m_S_Allow();
    }
    impl.objReader = {};
    return true;
}

bool CHTTP::m_F_b_HasTarget() const
{
    return vm_pImpl->StoredTarget().m_F_b_Valid();
}

std::uint32_t CHTTP::m_F_n_HTTPGetData(const QByteArray& sUrl, int nTimeoutMs)
{
    const std::lock_guard lock(vm_pImpl->objCommandMutex);
    stDef_HttpRequest stRequest;
    stRequest.sUrl = sUrl.toStdString();
    stRequest.nBodyLimit = vm_pImpl->nBodyLimit;
    const int nResult = vm_pImpl->objCommand.m_F_n_Perform(vm_pImpl->StoredTarget(), std::move(stRequest), nTimeoutMs);
    vm_pImpl->nLastGetResult = nResult;
    return static_cast<std::uint32_t>(std::max(nResult, 0));
}

int CHTTP::m_F_n_LastGetResult() const
{
    return vm_pImpl->nLastGetResult;
}

int CHTTP::st_Impl::PerformDirect(const stDef_HttpTarget& stDirect, stDef_HttpRequest stRequest, int nTimeoutMs)
{
    stRequest.nBodyLimit = nBodyLimit;
    const int nResult = objDirect.m_F_n_Perform(stDirect, std::move(stRequest), nTimeoutMs);
    nLastStatus = objDirect.m_F_n_Status();
    return nResult;
}

int CHTTP::m_F_n_LastStatus() const
{
    return vm_pImpl->nLastStatus;
}

int CHTTP::m_F_n_HTTPGetDataDirect(const QByteArray& sHost, const QByteArray& sUser, const QByteArray& sPassword,
                                   int nPort, const QByteArray& sUrl, CMemManage* pReply, int nTimeoutMs)
{
    if (!pReply)
        return Result_BadArgument;
    const std::lock_guard lock(vm_pImpl->objDirectMutex);
    pReply->m_S_Clear();
    stDef_HttpRequest stRequest;
    stRequest.sUrl = sUrl.toStdString();
    stRequest.sink = [pReply](const char* pData, std::size_t nSize) { return pReply->m_F_b_Append(pData, nSize); };
    const int nResult =
        vm_pImpl->PerformDirect(Target(sHost, sUser, sPassword, nPort), std::move(stRequest), nTimeoutMs);
    if (nResult < 0)
        pReply->m_S_Clear();
    return nResult;
}

int CHTTP::m_F_n_HTTPPostDataDirect(const QByteArray& sHost, const QByteArray& sUser, const QByteArray& sPassword,
                                    int nPort, const QByteArray& sUrl, const QByteArray& sBody, int nBody,
                                    const QByteArray& sExtra, int nExtra, int nTimeoutMs)
{
    const std::lock_guard lock(vm_pImpl->objDirectMutex);
    stDef_HttpRequest stRequest;
    stRequest.sUrl = sUrl.toStdString();
    stRequest.pBody = sBody.constData();
    stRequest.nBody = static_cast<std::size_t>(std::clamp<qsizetype>(nBody, 0, sBody.size()));
    stRequest.sExtraHead = sExtra.left(std::max(nExtra, 0)).toStdString();
    const int nResult =
        vm_pImpl->PerformDirect(Target(sHost, sUser, sPassword, nPort), std::move(stRequest), nTimeoutMs);
    return vm_pImpl->nLastStatus != 0 ? std::max(nResult, 0) : nResult;
}

int CHTTP::st_Impl::BeginStream(const std::string& sUrl)
{
    sStreamUrl = sUrl;
    objReader = {};
    stDef_HttpRequest stRequest;
    stRequest.sUrl = sUrl;
    stRequest.begin = [this](const std::string& sContentType) { objReader.m_S_Begin(sContentType); };
    stRequest.sink = [this](const char* pData, std::size_t nSize) {
        objReader.m_S_Feed(pData, nSize);
        return true;
    };
    return objStream.m_F_n_Start(StoredTarget(), std::move(stRequest), static_cast<int>(MaxSilence.count()));
}

/// Takes the next part into `sPart`: 0, or a failure.
int CHTTP::st_Impl::NextPart(const std::string& sUrl, int nTimeoutMs)
{
    const bool bFresh = sStreamUrl != sUrl || (!objStream.m_F_b_Running() && objReader.m_F_b_Empty());
    if (const int nBegun = bFresh ? BeginStream(sUrl) : 0; nBegun < 0)
        return nBegun;
    if (objReader.m_F_b_Empty()) {
        const int nRun = objStream.m_F_n_Run([this] { return !objReader.m_F_b_Empty(); }, nTimeoutMs);
        if (nRun == Result_TimedOut && objStream.m_F_n_Silence() > MaxSilence)
            objStream.m_S_Cancel();
        if (nRun < 0)
            return nRun;
        if (nRun == 0 && objStream.m_F_n_Result() < 0)
            return objStream.m_F_n_Result();
        if (nRun == 0)
            objReader.m_S_End();
    }
    return objReader.m_F_b_Pop(sPart) ? 0 : int{Result_Broken};
}

int CHTTP::m_F_n_MultiPartStreamGet(const QByteArray& sUrl, char* pBuffer, std::uint32_t nSize, int nTimeoutMs)
{
    st_Impl& impl = *vm_pImpl;
    const std::lock_guard lock(impl.objStreamMutex);
    if (!pBuffer || nSize == 0)
        return Result_BadArgument;
    if (nTimeoutMs <= 0)
        return Result_TimedOut;
    if (const int nFailure = impl.NextPart(sUrl.toStdString(), nTimeoutMs); nFailure < 0)
        return nFailure;
    return static_cast<int>(impl.sPart.copy(pBuffer, nSize));
}

void CHTTP::m_S_AbandonDirect()
{
    vm_pImpl->objDirect.m_S_Stop();
}

void CHTTP::m_S_AllowDirect()
{
    vm_pImpl->objDirect.m_S_Allow();
}

void CHTTP::m_S_SetBodyLimit(std::uint64_t nBytes)
{
    vm_pImpl->nBodyLimit = nBytes != 0 ? nBytes : DefaultBodyLimit;
}
