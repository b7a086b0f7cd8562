#include "host/bedrock/CHttpTransfer.h"

#include <curl/curl.h>

#include <algorithm>
#include <chrono>
#include <climits>

#include "host/bedrock/CHTTP.h"

namespace {

constexpr std::uint64_t MaxHeadBytes = 256u << 10; ///< of one exchange, log-in included
constexpr int MaxPollMs = 1000;
constexpr int MaxPort = 65535;

using Clock = std::chrono::steady_clock;

void InitOnce()
{
    static const CURLcode s_nResult = curl_global_init(CURL_GLOBAL_DEFAULT);
    (void)s_nResult;
}

/// The URL as a request line can carry it: nothing but what can't stand in one is changed.
std::string Encoded(const std::string& sUrl)
{
    static constexpr char s_arHex[] = "0123456789ABCDEF";
    std::string sOut;
    sOut.reserve(sUrl.size() + 1);
    for (const char c : sUrl) {
        const auto nByte = static_cast<unsigned char>(c);
        if (nByte > ' ' && nByte < 0x7F) {
            sOut += c;
        } else {
            sOut += '%';
            sOut += s_arHex[nByte >> 4];
            sOut += s_arHex[nByte & 15];
        }
    }
    return sOut;
}

struct stDef_CodeRow
{
    CURLcode nCode;
    CHTTP::emDef_Result nResult;
};

constexpr stDef_CodeRow g_arCodes[] = {
    {CURLE_OPERATION_TIMEDOUT, CHTTP::Result_TimedOut}, {CURLE_COULDNT_RESOLVE_HOST, CHTTP::Result_Unreachable},
    {CURLE_COULDNT_CONNECT, CHTTP::Result_Unreachable}, {CURLE_URL_MALFORMAT, CHTTP::Result_BadArgument},
    {CURLE_OUT_OF_MEMORY, CHTTP::Result_NoMemory},      {CURLE_LOGIN_DENIED, CHTTP::Result_Unauthorised},
    {CURLE_FILESIZE_EXCEEDED, CHTTP::Result_TooLarge},
};

int ResultOf(CURLcode nCode)
{
    const auto* pRow = std::find_if(std::begin(g_arCodes), std::end(g_arCodes),
                                    [nCode](const stDef_CodeRow& stRow) { return stRow.nCode == nCode; });
    return pRow != std::end(g_arCodes) ? pRow->nResult : CHTTP::Result_Broken;
}

} // namespace

bool stDef_HttpTarget::m_F_b_Valid() const
{
    const auto bPlain = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '-' || c == '.' ||
               c == '_' || c == ':' || c == '%';
    };
    return !sHost.empty() && nPort > 0 && nPort <= MaxPort && std::all_of(sHost.begin(), sHost.end(), bPlain) &&
           sUser.find('\0') == std::string::npos && sPassword.find('\0') == std::string::npos;
}

/// What libcurl calls back.
struct CHttpTransfer::st_Callbacks
{
    static std::size_t Head(char*, std::size_t nSize, std::size_t nCount, void* pSelf)
    {
        auto& transfer = *static_cast<CHttpTransfer*>(pSelf);
        transfer.vm_nHeadBytes += nSize * nCount;
        if (transfer.vm_nHeadBytes <= MaxHeadBytes)
            return nSize * nCount;
        transfer.vm_nAbort = CHTTP::Result_TooLarge;
        return 0;
    }

    static std::size_t Body(char* pData, std::size_t nSize, std::size_t nCount, void* pSelf)
    {
        auto& transfer = *static_cast<CHttpTransfer*>(pSelf);
        stDef_HttpRequest& stRequest = transfer.vm_stRequest;
        const std::size_t nBytes = nSize * nCount;
        if (!transfer.vm_bBegun && stRequest.begin) {
            const char* pType = nullptr;
            curl_easy_getinfo(transfer.vm_pEasy, CURLINFO_CONTENT_TYPE, &pType);
            stRequest.begin(pType ? pType : "");
        }
        transfer.vm_bBegun = true;
        transfer.vm_nReceived += nBytes;
        if (transfer.vm_nReceived > stRequest.nBodyLimit)
            transfer.vm_nAbort = CHTTP::Result_TooLarge;
        else if (stRequest.sink && !stRequest.sink(pData, nBytes))
            transfer.vm_nAbort = CHTTP::Result_NoMemory;
        return transfer.vm_nAbort ? 0 : nBytes;
    }
};

CHttpTransfer::CHttpTransfer()
{
    InitOnce();
}

CHttpTransfer::~CHttpTransfer()
{
    m_S_Reset();
    if (vm_pMulti)
        curl_multi_cleanup(vm_pMulti);
}

void CHttpTransfer::m_S_Reset()
{
    if (vm_bRunning)
        curl_multi_remove_handle(vm_pMulti, vm_pEasy);
    vm_bRunning = false;
    if (vm_pEasy)
        curl_easy_cleanup(vm_pEasy);
    curl_url_cleanup(static_cast<CURLU*>(vm_pUrl));
    curl_slist_free_all(static_cast<curl_slist*>(vm_pHeadLines));
    vm_pEasy = vm_pUrl = vm_pHeadLines = nullptr;
    vm_stTarget = {};
    // Connections live in the multi handle: without this one of the former account would be taken for the next.
    const std::lock_guard lock(vm_objMutex);
    if (vm_pMulti)
        curl_multi_cleanup(vm_pMulti);
    vm_pMulti = nullptr;
}

void CHttpTransfer::m_S_Stop()
{
    vm_bStop = true;
    const std::lock_guard lock(vm_objMutex);
    if (vm_pMulti)
        curl_multi_wakeup(vm_pMulti);
}

void CHttpTransfer::m_S_Allow()
{
    vm_bStop = false;
}

/// Makes the handles for the target, or keeps those it has: with them the connection and the login.
bool CHttpTransfer::m_F_b_Prepare(const stDef_HttpTarget& stTarget)
{
    if (vm_bRunning) {
        curl_multi_remove_handle(vm_pMulti, vm_pEasy);
        vm_bRunning = false;
    }
    if (vm_pEasy && vm_stTarget == stTarget)
        return true;
    m_S_Reset();
    {
        const std::lock_guard lock(vm_objMutex);
        vm_pMulti = curl_multi_init();
    }
    vm_pEasy = curl_easy_init();
    if (!vm_pMulti || !vm_pEasy)
        return false;
    vm_stTarget = stTarget;
    curl_easy_setopt(vm_pEasy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(vm_pEasy, CURLOPT_PROTOCOLS_STR, "http");
    curl_easy_setopt(vm_pEasy, CURLOPT_PROXY, "");
    curl_easy_setopt(vm_pEasy, CURLOPT_HTTP_VERSION, long{CURL_HTTP_VERSION_1_1});
    curl_easy_setopt(vm_pEasy, CURLOPT_PATH_AS_IS, 1L);
    curl_easy_setopt(vm_pEasy, CURLOPT_HTTPAUTH, static_cast<long>(CURLAUTH_BASIC | CURLAUTH_DIGEST));
    curl_easy_setopt(vm_pEasy, CURLOPT_HEADERFUNCTION, &st_Callbacks::Head);
    curl_easy_setopt(vm_pEasy, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(vm_pEasy, CURLOPT_WRITEFUNCTION, &st_Callbacks::Body);
    curl_easy_setopt(vm_pEasy, CURLOPT_WRITEDATA, this);
    if (!stTarget.sUser.empty() || !stTarget.sPassword.empty()) {
        curl_easy_setopt(vm_pEasy, CURLOPT_USERNAME, stTarget.sUser.c_str());
        curl_easy_setopt(vm_pEasy, CURLOPT_PASSWORD, stTarget.sPassword.c_str());
    }
    return true;
}

bool CHttpTransfer::m_F_b_SetUrl()
{
    const bool bV6 = vm_stTarget.sHost.find(':') != std::string::npos;
    const std::string sRoot =
        "http://" + (bV6 ? "[" + vm_stTarget.sHost + "]" : vm_stTarget.sHost) + ":" + std::to_string(vm_stTarget.nPort);
    const std::string sPath = "/" + Encoded(vm_stRequest.sUrl);
    const auto nHash = sPath.find('#');
    curl_easy_setopt(vm_pEasy, CURLOPT_REQUEST_TARGET, nHash == std::string::npos ? nullptr : sPath.c_str());
    curl_easy_setopt(vm_pEasy, CURLOPT_CURLU, nullptr);
    if (nHash == std::string::npos)
        return curl_easy_setopt(vm_pEasy, CURLOPT_URL, (sRoot + sPath).c_str()) == CURLE_OK;

    // A URL text would be cut at the '#'. Given in parts it isn't, and the login is computed over those parts, too; the
    // request target goes beside them, since the parts come out with their escapes in small letters.
    curl_url_cleanup(static_cast<CURLU*>(vm_pUrl));
    CURLU* pUrl = curl_url();
    vm_pUrl = pUrl;
    const auto nQuery = sPath.find('?');
    const bool bSet = curl_url_set(pUrl, CURLUPART_URL, (sRoot + "/").c_str(), 0) == CURLUE_OK &&
                      curl_url_set(pUrl, CURLUPART_PATH, sPath.substr(0, nQuery).c_str(), 0) == CURLUE_OK &&
                      (nQuery == std::string::npos ||
                       curl_url_set(pUrl, CURLUPART_QUERY, sPath.substr(nQuery + 1).c_str(), 0) == CURLUE_OK);
    return bSet && curl_easy_setopt(vm_pEasy, CURLOPT_CURLU, pUrl) == CURLE_OK;
}

void CHttpTransfer::m_S_SetBody()
{
    curl_slist_free_all(static_cast<curl_slist*>(vm_pHeadLines));
    curl_slist* pLines = nullptr;
    if (vm_stRequest.pBody) {
        pLines = curl_slist_append(pLines, "Content-Type: text/xml; charset=utf-8");
        pLines = curl_slist_append(pLines, "Expect:"); // recorders leave a client that asks first waiting
    }
    const std::string& sExtra = vm_stRequest.sExtraHead;
    for (std::size_t nAt = 0; nAt < sExtra.size();) {
        const auto nEnd = std::min(sExtra.find("\r\n", nAt), sExtra.size());
        if (nEnd > nAt)
            pLines = curl_slist_append(pLines, sExtra.substr(nAt, nEnd - nAt).c_str());
        nAt = nEnd + 2;
    }
    vm_pHeadLines = pLines;
    curl_easy_setopt(vm_pEasy, CURLOPT_HTTPHEADER, pLines);
    if (vm_stRequest.pBody) {
        curl_easy_setopt(vm_pEasy, CURLOPT_POST, 1L);
        curl_easy_setopt(vm_pEasy, CURLOPT_POSTFIELDS, vm_stRequest.pBody);
        curl_easy_setopt(vm_pEasy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(vm_stRequest.nBody));
    } else {
        curl_easy_setopt(vm_pEasy, CURLOPT_HTTPGET, 1L);
    }
}

int CHttpTransfer::m_F_n_Start(const stDef_HttpTarget& stTarget, stDef_HttpRequest stRequest, int nTimeoutMs)
{
    if (!stTarget.m_F_b_Valid())
        return CHTTP::Result_BadArgument;
    if (!m_F_b_Prepare(stTarget))
        return CHTTP::Result_NoMemory;
    vm_stRequest = std::move(stRequest);
    vm_nReceived = vm_nHeadBytes = 0;
    vm_nAbort = 0;
    vm_bBegun = false;
    if (!m_F_b_SetUrl())
        return CHTTP::Result_BadArgument;
    m_S_SetBody();
    curl_easy_setopt(vm_pEasy, CURLOPT_TIMEOUT_MS, static_cast<long>(nTimeoutMs));
    if (curl_multi_add_handle(vm_pMulti, vm_pEasy) != CURLM_OK)
        return CHTTP::Result_NoMemory;
    vm_bRunning = true;
    return 0;
}

void CHttpTransfer::m_S_Finish(int nCurlCode)
{
    long nStatus = 0;
    curl_easy_getinfo(vm_pEasy, CURLINFO_RESPONSE_CODE, &nStatus);
    curl_multi_remove_handle(vm_pMulti, vm_pEasy);
    vm_bRunning = false;
    if (vm_nAbort)
        vm_nResult = vm_nAbort;
    else if (nCurlCode != CURLE_OK)
        vm_nResult = ResultOf(static_cast<CURLcode>(nCurlCode));
    else if (nStatus == 401)
        vm_nResult = CHTTP::Result_Unauthorised;
    else if (nStatus < 200 || nStatus >= 300)
        vm_nResult = CHTTP::Result_ErrorStatus;
    else
        vm_nResult = static_cast<int>(std::min<std::uint64_t>(vm_nReceived, INT_MAX));
}

void CHttpTransfer::m_S_Collect()
{
    int nLeft = 0;
    while (const CURLMsg* pMessage = curl_multi_info_read(vm_pMulti, &nLeft))
        if (pMessage->msg == CURLMSG_DONE) {
            m_S_Finish(pMessage->data.result);
            return;
        }
}

int CHttpTransfer::m_F_n_Run(const std::function<bool()>& condition, int nTimeoutMs)
{
    const auto nEnd = Clock::now() + std::chrono::milliseconds(nTimeoutMs);
    while (true) {
        if (vm_bStop)
            return CHTTP::Result_Stopped;
        int nRunning = 0;
        curl_multi_perform(vm_pMulti, &nRunning);
        if (condition && condition())
            return 1;
        m_S_Collect();
        if (!vm_bRunning)
            return 0;
        const auto nLeftMs = std::chrono::ceil<std::chrono::milliseconds>(nEnd - Clock::now()).count();
        if (nLeftMs <= 0)
            return CHTTP::Result_TimedOut;
        curl_multi_poll(vm_pMulti, nullptr, 0, static_cast<int>(std::min<long long>(nLeftMs, MaxPollMs)), nullptr);
    }
}

int CHttpTransfer::m_F_n_Perform(const stDef_HttpTarget& stTarget, stDef_HttpRequest stRequest, int nTimeoutMs)
{
    if (nTimeoutMs <= 0)
        return CHTTP::Result_TimedOut;
    int nResult = m_F_n_Start(stTarget, std::move(stRequest), nTimeoutMs);
    if (nResult == 0)
        nResult = m_F_n_Run({}, nTimeoutMs);
    if (nResult == 0)
        return vm_nResult;
    if (vm_bRunning) {
        curl_multi_remove_handle(vm_pMulti, vm_pEasy);
        vm_bRunning = false;
    }
    return nResult;
}
