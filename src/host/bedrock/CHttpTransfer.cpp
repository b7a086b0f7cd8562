#include "host/bedrock/CHttpTransfer.h"

#include <curl/curl.h>

#include <algorithm>
#include <climits>

#include "host/bedrock/CHTTP.h"

namespace {

constexpr std::uint64_t MaxHeadBytes = 256u << 10;
constexpr std::size_t MaxStatusLine = 12; ///< up to its number
constexpr long MaxLoginRounds = 4;
constexpr long KeepAliveSeconds = 10;
constexpr long FreshSeconds = 2; ///< whole seconds that a kept connection may have been idle: it is used below 3 s
constexpr int MaxPollMs = 60000;

void InitOnce()
{
    static const CURLcode s_nResult = curl_global_init(CURL_GLOBAL_DEFAULT);
    (void)s_nResult;
}

struct stDef_CodeRow
{
    CURLcode nCode;
    CHTTP::emDef_Result nResult;
};

constexpr stDef_CodeRow g_arCodes[] = {
    {CURLE_OPERATION_TIMEDOUT, CHTTP::Result_TimedOut},
    {CURLE_COULDNT_RESOLVE_HOST, CHTTP::Result_Unreachable},
    {CURLE_COULDNT_CONNECT, CHTTP::Result_Unreachable},
    {CURLE_URL_MALFORMAT, CHTTP::Result_BadArgument},
    {CURLE_FILESIZE_EXCEEDED, CHTTP::Result_TooLarge},
    {CURLE_OUT_OF_MEMORY, CHTTP::Result_TooLarge}, // in truth a head line beyond the library's own bound
    {CURLE_LOGIN_DENIED, CHTTP::Result_Unauthorised},
    {CURLE_TOO_MANY_REDIRECTS, CHTTP::Result_Unauthorised}, // rounds of the log-in count as such
};

int ResultOf(CURLcode nCode)
{
    const auto* pRow = std::find_if(std::begin(g_arCodes), std::end(g_arCodes),
                                    [nCode](const stDef_CodeRow& stRow) { return stRow.nCode == nCode; });
    return pRow != std::end(g_arCodes) ? pRow->nResult : CHTTP::Result_Broken;
}

bool IsReply(int nResult)
{
    return nResult >= 0 || nResult == CHTTP::Result_Unauthorised || nResult == CHTTP::Result_ErrorStatus;
}

template <auto Function>
struct Deleter
{
    template <typename T>
    void operator()(T* p) const
    {
        Function(p);
    }
};

} // namespace

/// What libcurl holds for one target. Connections live in the multi handle, the login in the easy one.
struct CHttpTransfer::st_Handles
{
    std::unique_ptr<CURLM, Deleter<curl_multi_cleanup>> pMulti{curl_multi_init()};
    std::unique_ptr<curl_slist, Deleter<curl_slist_free_all>> pHeadLines;
    std::unique_ptr<CURLU, Deleter<curl_url_cleanup>> pUrl;
    std::unique_ptr<CURL, Deleter<curl_easy_cleanup>> pEasy;
};

/// What libcurl calls back.
struct CHttpTransfer::st_Callbacks
{
    static std::size_t Head(char* pLine, std::size_t nSize, std::size_t nCount, void* pSelf)
    {
        auto& self = *static_cast<CHttpTransfer*>(pSelf);
        const std::string_view sLine(pLine, nSize * nCount);
        self.vm_nLastByte = Clock::now();
        self.vm_nHeadBytes += sLine.size();
        self.m_S_OnHeadLine(sLine);
        if (self.vm_nHeadBytes > MaxHeadBytes)
            self.vm_nAbort = CHTTP::Result_TooLarge;
        return self.vm_nAbort || self.vm_bAnswers ? 0 : sLine.size();
    }

    /// Called before each request of an exchange. libcurl repeats one by itself when a kept connection dies under it;
    /// but the server may have taken it, and a second one would move a camera twice.
    static int BeforeSend(void* pSelf, char*, char*, int, int)
    {
        auto& self = *static_cast<CHttpTransfer*>(pSelf);
        if (self.vm_bSent)
            self.vm_nAbort = CHTTP::Result_Broken;
        self.vm_bSent = true;
        return self.vm_nAbort ? CURL_PREREQFUNC_ABORT : CURL_PREREQFUNC_OK;
    }

    static std::size_t Body(char* pData, std::size_t nSize, std::size_t nCount, void* pSelf)
    {
        auto& self = *static_cast<CHttpTransfer*>(pSelf);
        const std::size_t nBytes = nSize * nCount;
        self.vm_nLastByte = Clock::now();
        self.vm_nReceived += nBytes;
        if (self.vm_stRequest.nBodyLimit != 0 && self.vm_nReceived > self.vm_stRequest.nBodyLimit)
            self.vm_nAbort = CHTTP::Result_TooLarge;
        else if (self.m_F_b_GoodStatus() && !Take(self, pData, nBytes))
            self.vm_nAbort = CHTTP::Result_NoMemory;
        return self.vm_nAbort ? 0 : nBytes;
    }

    static bool Take(CHttpTransfer& self, const char* pData, std::size_t nBytes)
    {
        if (!self.vm_bBegun && self.vm_stRequest.begin) {
            const char* pType = nullptr;
            curl_easy_getinfo(self.vm_pHandles->pEasy.get(), CURLINFO_CONTENT_TYPE, &pType);
            self.vm_stRequest.begin(pType ? pType : "");
        }
        self.vm_bBegun = true;
        return !self.vm_stRequest.sink || self.vm_stRequest.sink(pData, nBytes);
    }
};

CHttpTransfer::CHttpTransfer()
{
    InitOnce();
}

CHttpTransfer::~CHttpTransfer()
{
    m_S_Reset();
}

void CHttpTransfer::m_S_Cancel()
{
    if (vm_bRunning)
        curl_multi_remove_handle(vm_pHandles->pMulti.get(), vm_pHandles->pEasy.get());
    vm_bRunning = false;
}

void CHttpTransfer::m_S_Reset()
{
    m_S_Cancel();
    vm_stTarget = {};
    vm_objDigest.reset();
    std::unique_ptr<st_Handles> pDropped;
    const std::lock_guard lock(vm_objMutex);
    pDropped.swap(vm_pHandles);
}

void CHttpTransfer::m_S_Stop()
{
    vm_bStop = true;
    const std::lock_guard lock(vm_objMutex);
    if (vm_pHandles)
        curl_multi_wakeup(vm_pHandles->pMulti.get());
}

void CHttpTransfer::m_S_Allow()
{
    vm_bStop = false;
}

/// Makes the handles for the target, or keeps those it has, and with them the connection and the login. A target that
/// differs in anything gets new ones: neither a connection nor a login of the former one may reach it.
bool CHttpTransfer::m_F_b_Prepare(const stDef_HttpTarget& stTarget)
{
    m_S_Cancel();
    if (vm_pHandles && vm_pHandles->pEasy && vm_stTarget == stTarget)
        return true;
    m_S_Reset();
    auto pHandles = std::make_unique<st_Handles>();
    if (!pHandles->pMulti)
        return false;
    {
        const std::lock_guard lock(vm_objMutex);
        vm_pHandles = std::move(pHandles);
    }
    vm_stTarget = stTarget;
    vm_sRoot = stTarget.m_F_s_Root();
    if (m_F_b_MakeEasy())
        return true;
    m_S_Reset();
    return false;
}

bool CHttpTransfer::m_F_b_MakeEasy()
{
    CURL* pEasy = curl_easy_init();
    vm_pHandles->pEasy.reset(pEasy);
    vm_bChallenged = vm_bAskedBefore = false;
    if (!pEasy)
        return false;
    curl_easy_setopt(pEasy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(pEasy, CURLOPT_QUICK_EXIT, 1L); // a time-out doesn't wait for the name service
    curl_easy_setopt(pEasy, CURLOPT_PROTOCOLS_STR, "http");
    curl_easy_setopt(pEasy, CURLOPT_PROXY, "");
    curl_easy_setopt(pEasy, CURLOPT_HTTP_VERSION, long{CURL_HTTP_VERSION_1_1});
    curl_easy_setopt(pEasy, CURLOPT_PATH_AS_IS, 1L);
    curl_easy_setopt(pEasy, CURLOPT_MAXREDIRS, MaxLoginRounds);
    curl_easy_setopt(pEasy, CURLOPT_TCP_KEEPALIVE, 1L);
    curl_easy_setopt(pEasy, CURLOPT_TCP_KEEPIDLE, KeepAliveSeconds);
    curl_easy_setopt(pEasy, CURLOPT_TCP_KEEPINTVL, KeepAliveSeconds);
    curl_easy_setopt(pEasy, CURLOPT_MAXAGE_CONN, FreshSeconds);
    curl_easy_setopt(pEasy, CURLOPT_PREREQFUNCTION, &st_Callbacks::BeforeSend);
    curl_easy_setopt(pEasy, CURLOPT_PREREQDATA, this);
    curl_easy_setopt(pEasy, CURLOPT_HEADERFUNCTION, &st_Callbacks::Head);
    curl_easy_setopt(pEasy, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(pEasy, CURLOPT_WRITEFUNCTION, &st_Callbacks::Body);
    curl_easy_setopt(pEasy, CURLOPT_WRITEDATA, this);
    curl_easy_setopt(pEasy, CURLOPT_HTTPAUTH, static_cast<long>(CURLAUTH_BASIC | CURLAUTH_DIGEST));
    return true;
}

void CHttpTransfer::m_S_SetLogin()
{
    CURL* pEasy = vm_pHandles->pEasy.get();
    const bool bLibrary = !vm_stTarget.sUser.empty() && !m_F_b_OwnLogin();
    curl_easy_setopt(pEasy, CURLOPT_USERNAME, bLibrary ? vm_stTarget.sUser.c_str() : nullptr);
    curl_easy_setopt(pEasy, CURLOPT_PASSWORD, bLibrary ? vm_stTarget.sPassword.c_str() : nullptr);
}

void CHttpTransfer::m_S_OnHeadLine(std::string_view sLine)
{
    if (sLine.starts_with("HTTP/")) {
        vm_bRefused = sLine.substr(0, MaxStatusLine).find(" 401") != sLine.npos;
        vm_bChallenged |= vm_bRefused;
        vm_bDigestSeen = false;
        vm_objOffered.reset();
    }
    if (vm_bRefused && !vm_bDigestSeen) {
        vm_bDigestSeen = CBodyDigest::s_F_b_IsDigest(sLine);
        vm_objOffered = CBodyDigest::s_F_o_Read(sLine);
    }
    vm_bWholeHead = sLine == "\r\n" || sLine == "\n";
    if (!vm_bWholeHead || !vm_bRefused)
        return;
    vm_bSent = false;
    vm_bAnswers = vm_objOffered && !vm_bAnswered && vm_stRequest.pBody && !vm_stTarget.sUser.empty();
}

bool CHttpTransfer::m_F_b_SetUrl()
{
    CURL* pEasy = vm_pHandles->pEasy.get();
    const std::string sTarget = stDef_HttpTarget::s_F_s_RequestTarget(vm_stRequest.sUrl);
    curl_easy_setopt(pEasy, CURLOPT_CURLU, nullptr);
    vm_pHandles->pUrl.reset();
    curl_easy_setopt(pEasy, CURLOPT_REQUEST_TARGET, m_F_b_OwnLogin() ? sTarget.c_str() : nullptr);
    if (m_F_b_OwnLogin()) // its hash is for the target as it stands here
        return curl_easy_setopt(pEasy, CURLOPT_URL, vm_sRoot.c_str()) == CURLE_OK;
    if (sTarget.find('#') == std::string::npos)
        return curl_easy_setopt(pEasy, CURLOPT_URL, (vm_sRoot + sTarget).c_str()) == CURLE_OK;

    // A URL text would be cut at the '#', a part that is set by itself isn't. Its escapes come out in small letters,
    // though, so that only a part with a '#' is set; a request target beside them would not agree with the login.
    CURLU* pUrl = curl_url();
    vm_pHandles->pUrl.reset(pUrl);
    const auto nQuery = std::min(sTarget.find('?'), sTarget.size());
    const std::string sPath = sTarget.substr(0, nQuery), sQuery = sTarget.substr(nQuery);
    const bool bPath = sPath.find('#') != std::string::npos, bQuery = sQuery.find('#') != std::string::npos;
    const std::string sText = vm_sRoot + (bPath ? "/" : sPath) + (bQuery ? "" : sQuery);
    return pUrl && curl_url_set(pUrl, CURLUPART_URL, sText.c_str(), CURLU_PATH_AS_IS) == CURLUE_OK &&
           (!bPath || curl_url_set(pUrl, CURLUPART_PATH, sPath.c_str(), 0) == CURLUE_OK) &&
           (!bQuery || curl_url_set(pUrl, CURLUPART_QUERY, sQuery.c_str() + 1, 0) == CURLUE_OK) &&
           curl_easy_setopt(pEasy, CURLOPT_CURLU, pUrl) == CURLE_OK;
}

std::string CHttpTransfer::m_F_s_OwnLogin()
{
    return "Authorization: " +
           vm_objDigest->m_F_s_Authorization(vm_stTarget.sUser, vm_stTarget.sPassword, "POST",
                                             stDef_HttpTarget::s_F_s_RequestTarget(vm_stRequest.sUrl),
                                             {vm_stRequest.pBody, vm_stRequest.nBody});
}

void CHttpTransfer::m_S_SetBody()
{
    CURL* pEasy = vm_pHandles->pEasy.get();
    curl_slist* pLines = nullptr;
    if (vm_stRequest.pBody) {
        pLines = curl_slist_append(pLines, "Content-Type: text/xml; charset=utf-8");
        pLines = curl_slist_append(pLines, "Expect:"); // recorders leave a client that asks first waiting
    }
    if (m_F_b_OwnLogin())
        pLines = curl_slist_append(pLines, m_F_s_OwnLogin().c_str());
    const std::string& sExtra = vm_stRequest.sExtraHead;
    for (std::size_t nAt = 0; nAt < sExtra.size();) {
        const auto nEnd = std::min(sExtra.find("\r\n", nAt), sExtra.size());
        if (nEnd > nAt)
            pLines = curl_slist_append(pLines, sExtra.substr(nAt, nEnd - nAt).c_str());
        nAt = nEnd + 2;
    }
    curl_easy_setopt(pEasy, CURLOPT_HTTPHEADER, pLines);
    vm_pHandles->pHeadLines.reset(pLines);
    if (vm_stRequest.pBody) {
        curl_easy_setopt(pEasy, CURLOPT_POST, 1L);
        curl_easy_setopt(pEasy, CURLOPT_POSTFIELDS, vm_stRequest.pBody);
        curl_easy_setopt(pEasy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(vm_stRequest.nBody));
    } else {
        curl_easy_setopt(pEasy, CURLOPT_HTTPGET, 1L);
    }
}

bool CHttpTransfer::m_F_b_Launch()
{
    CURL* pEasy = vm_pHandles->pEasy.get();
    vm_nReceived = vm_nHeadBytes = 0;
    vm_nAbort = vm_nResult = vm_nStatus = 0;
    vm_bAskedBefore |= vm_bChallenged;
    vm_bBegun = vm_bWholeHead = vm_bChallenged = vm_bAnswers = vm_bSent = false;
    vm_nLastByte = Clock::now();
    if (!m_F_b_SetUrl()) {
        vm_nResult = CHTTP::Result_BadArgument;
        return false;
    }
    m_S_SetBody();
    m_S_SetLogin();
    const auto nLimit = std::min<std::uint64_t>(vm_stRequest.nBodyLimit, INT64_MAX);
    curl_easy_setopt(pEasy, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(nLimit));
    // The whole time is watched in m_F_n_Run; this shares it out among the addresses of a name.
    curl_easy_setopt(pEasy, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(vm_nConnectTimeoutMs));
    vm_bRunning = curl_multi_add_handle(vm_pHandles->pMulti.get(), pEasy) == CURLM_OK;
    if (!vm_bRunning)
        vm_nResult = CHTTP::Result_NoMemory;
    return vm_bRunning;
}

int CHttpTransfer::m_F_n_Start(const stDef_HttpTarget& stTarget, stDef_HttpRequest stRequest, int nConnectTimeoutMs)
{
    if (!stTarget.m_F_b_Valid())
        return CHTTP::Result_BadArgument;
    if (!m_F_b_Prepare(stTarget))
        return CHTTP::Result_NoMemory;
    vm_stRequest = std::move(stRequest);
    vm_nConnectTimeoutMs = nConnectTimeoutMs;
    vm_bAnswered = false;
    return m_F_b_Launch() ? 0 : vm_nResult;
}

int CHttpTransfer::m_F_n_ReplyStatus() const
{
    long nStatus = 0;
    curl_easy_getinfo(vm_pHandles->pEasy.get(), CURLINFO_RESPONSE_CODE, &nStatus);
    return static_cast<int>(nStatus);
}

bool CHttpTransfer::m_F_b_GoodStatus() const
{
    return m_F_n_ReplyStatus() >= 200 && m_F_n_ReplyStatus() < 300;
}

int CHttpTransfer::m_F_n_Judge(int nCurlCode) const
{
    if (vm_nAbort)
        return vm_nAbort;
    if (nCurlCode != CURLE_OK)
        return ResultOf(static_cast<CURLcode>(nCurlCode));
    if (!vm_bWholeHead) // libcurl takes a head that was cut off for a reply without body
        return CHTTP::Result_Broken;
    if (m_F_b_GoodStatus())
        return static_cast<int>(std::min<std::uint64_t>(vm_nReceived, INT_MAX));
    return m_F_n_ReplyStatus() == 401 ? CHTTP::Result_Unauthorised : CHTTP::Result_ErrorStatus;
}

void CHttpTransfer::m_S_Finish(int nCurlCode)
{
    vm_nResult = m_F_n_Judge(nCurlCode);
    vm_nStatus = IsReply(vm_nResult) ? m_F_n_ReplyStatus() : 0;
    m_S_Cancel();
    if (vm_bAnswers && !vm_nAbort) {
        vm_objDigest = std::move(vm_objOffered);
        vm_bAnswered = true;
        m_F_b_Launch();
        return;
    }
    if (vm_nResult != CHTTP::Result_Unauthorised)
        return;
    // Neither what libcurl keeps of a refused login nor a login that the server has forgotten may stand in the way of
    // the next one. A server that was restarted refuses the kept login, and not every one calls it stale.
    const bool bAnew = vm_bAskedBefore && !vm_bAnswered;
    vm_objDigest.reset();
    if (m_F_b_MakeEasy() && bAnew)
        m_F_b_Launch();
}

void CHttpTransfer::m_S_Collect()
{
    int nLeft = 0;
    while (const CURLMsg* pMessage = curl_multi_info_read(vm_pHandles->pMulti.get(), &nLeft)) {
        if (pMessage->msg != CURLMSG_DONE)
            continue;
        m_S_Finish(pMessage->data.result);
        return;
    }
}

int CHttpTransfer::m_F_n_Run(const std::function<bool()>& condition, int nTimeoutMs)
{
    CURLM* pMulti = vm_pHandles->pMulti.get();
    const auto nEnd = Clock::now() + std::chrono::milliseconds(nTimeoutMs);
    while (!vm_bStop) {
        int nRunning = 0;
        curl_multi_perform(pMulti, &nRunning);
        if (condition && condition())
            return 1;
        m_S_Collect();
        if (!vm_bRunning)
            return 0;
        const auto nLeftMs = ToMs(nEnd - Clock::now()).count();
        if (nLeftMs <= 0)
            return CHTTP::Result_TimedOut;
        curl_multi_poll(pMulti, nullptr, 0, static_cast<int>(std::min<long long>(nLeftMs, MaxPollMs)), nullptr);
    }
    return CHTTP::Result_Stopped;
}

int CHttpTransfer::m_F_n_Perform(const stDef_HttpTarget& stTarget, stDef_HttpRequest stRequest, int nTimeoutMs)
{
    vm_nStatus = 0;
    if (nTimeoutMs <= 0)
        return CHTTP::Result_TimedOut;
    int nResult = m_F_n_Start(stTarget, std::move(stRequest), nTimeoutMs);
    if (nResult == 0)
        nResult = m_F_n_Run({}, nTimeoutMs);
    m_S_Cancel();
    vm_stRequest = {};
    return nResult == 0 ? vm_nResult : nResult;
}
