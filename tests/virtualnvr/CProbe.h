#pragma once

#include <curl/curl.h>
#include <functional>
#include <string>
#include <utility>
#include <vector>

/// What came back for one call of CProbe.
struct stDef_ProbeReply
{
    bool bTransferred = false;
    long nStatus = 0;
    std::string sBody;
    std::vector<std::string> arHeads; ///< header block of every reply, a 401 that was answered by a login included
    std::string sAuthorization;       ///< Authorization value that was sent last
    long nNewConnections = 0;
};

/// One HTTP client over real sockets, with its own kept connection.
class CProbe
{
public:
    enum class emDef_Auth
    {
        None,
        Basic,
        Digest
    };

    explicit CProbe(int nPort, emDef_Auth eAuth = emDef_Auth::Digest, std::string sUser = "admin",
                    std::string sPassword = "Fl33t!ink")
        : vm_pCurl(curl_easy_init()),
          vm_nPort(nPort),
          vm_eAuth(eAuth),
          vm_sUser(std::move(sUser)),
          vm_sPassword(std::move(sPassword))
    {
        curl_easy_setopt(vm_pCurl, CURLOPT_PATH_AS_IS, 1L);
        curl_easy_setopt(vm_pCurl, CURLOPT_TIMEOUT_MS, LimitMs);
        curl_easy_setopt(vm_pCurl, CURLOPT_NOSIGNAL, 1L);
        curl_easy_setopt(vm_pCurl, CURLOPT_WRITEFUNCTION, TakeBody);
        curl_easy_setopt(vm_pCurl, CURLOPT_HEADERFUNCTION, TakeHead);
        curl_easy_setopt(vm_pCurl, CURLOPT_VERBOSE, 1L);
        curl_easy_setopt(vm_pCurl, CURLOPT_DEBUGFUNCTION, TakeSent);
        curl_easy_setopt(vm_pCurl, CURLOPT_HTTPAUTH, vm_eAuth == emDef_Auth::Basic ? CURLAUTH_BASIC : CURLAUTH_DIGEST);
    }
    ~CProbe() { curl_easy_cleanup(vm_pCurl); }
    CProbe(const CProbe&) = delete;
    CProbe& operator=(const CProbe&) = delete;

    /// @param sTarget goes into the request line byte for byte
    stDef_ProbeReply m_F_o_Get(const std::string& sTarget) { return m_F_o_Run(sTarget, nullptr); }
    stDef_ProbeReply m_F_o_Post(const std::string& sTarget, const std::string& sBody)
    {
        return m_F_o_Run(sTarget, &sBody);
    }

    /// Sends this Authorization value as it stands; empty: back to the account.
    void m_S_SetAuthorization(const std::string& sValue) { vm_sAuthorization = sValue; }

    /// Called with what has come of the body so far; false ends the transfer.
    void m_S_SetWatcher(std::function<bool(const std::string&)> fnWatcher) { vm_fnWatcher = std::move(fnWatcher); }

private:
    static constexpr long LimitMs = 20000;

    struct stDef_Sink
    {
        stDef_ProbeReply& stReply;
        const std::function<bool(const std::string&)>& fnWatcher;
    };
    static std::size_t TakeBody(char* pData, std::size_t nSize, std::size_t nCount, void* pUser)
    {
        auto& stSink = *static_cast<stDef_Sink*>(pUser);
        stSink.stReply.sBody.append(pData, nSize * nCount);
        return !stSink.fnWatcher || stSink.fnWatcher(stSink.stReply.sBody) ? nSize * nCount : 0;
    }
    static std::size_t TakeHead(char* pData, std::size_t nSize, std::size_t nCount, void* pUser)
    {
        auto& arHeads = static_cast<stDef_Sink*>(pUser)->stReply.arHeads;
        const std::string sLine(pData, nSize * nCount);
        if (sLine.rfind("HTTP/", 0) == 0)
            arHeads.emplace_back();
        arHeads.back() += sLine;
        return sLine.size();
    }
    static int TakeSent(CURL*, curl_infotype eType, char* pData, std::size_t nSize, void* pUser)
    {
        constexpr char szName[] = "\r\nAuthorization: ";
        const std::string sHead(pData, nSize);
        const std::size_t nFound = eType == CURLINFO_HEADER_OUT ? sHead.find(szName) : std::string::npos;
        if (nFound != std::string::npos) {
            const std::size_t nBegin = nFound + sizeof szName - 1;
            static_cast<stDef_Sink*>(pUser)->stReply.sAuthorization =
                sHead.substr(nBegin, sHead.find("\r\n", nBegin) - nBegin);
        }
        return 0;
    }
    stDef_ProbeReply m_F_o_Run(const std::string& sTarget, const std::string* pBody)
    {
        stDef_ProbeReply stReply;
        stDef_Sink stSink{stReply, vm_fnWatcher};
        // A Digest login is computed for the path of the URL, so the target stands there, too.
        curl_easy_setopt(vm_pCurl, CURLOPT_URL, ("http://127.0.0.1:" + std::to_string(vm_nPort) + sTarget).c_str());
        const bool bFragment = sTarget.find('#') != std::string::npos;
        curl_easy_setopt(vm_pCurl, CURLOPT_REQUEST_TARGET, bFragment ? sTarget.c_str() : nullptr);
        curl_easy_setopt(vm_pCurl, CURLOPT_WRITEDATA, &stSink);
        curl_easy_setopt(vm_pCurl, CURLOPT_HEADERDATA, &stSink);
        curl_easy_setopt(vm_pCurl, CURLOPT_DEBUGDATA, &stSink);
        const bool bAccount = vm_sAuthorization.empty() && vm_eAuth != emDef_Auth::None;
        curl_slist* pHeaders = vm_sAuthorization.empty()
                                   ? nullptr
                                   : curl_slist_append(nullptr, ("Authorization: " + vm_sAuthorization).c_str());
        curl_easy_setopt(vm_pCurl, CURLOPT_HTTPHEADER, pHeaders);
        curl_easy_setopt(vm_pCurl, CURLOPT_USERNAME, bAccount ? vm_sUser.c_str() : nullptr);
        curl_easy_setopt(vm_pCurl, CURLOPT_PASSWORD, bAccount ? vm_sPassword.c_str() : nullptr);
        curl_easy_setopt(vm_pCurl, CURLOPT_HTTPGET, 1L);
        if (pBody) {
            curl_easy_setopt(vm_pCurl, CURLOPT_POSTFIELDS, pBody->c_str());
            curl_easy_setopt(vm_pCurl, CURLOPT_POSTFIELDSIZE, static_cast<long>(pBody->size()));
            curl_easy_setopt(vm_pCurl, CURLOPT_POST, 1L);
        }
        stReply.bTransferred = curl_easy_perform(vm_pCurl) == CURLE_OK;
        curl_easy_getinfo(vm_pCurl, CURLINFO_RESPONSE_CODE, &stReply.nStatus);
        curl_easy_getinfo(vm_pCurl, CURLINFO_NUM_CONNECTS, &stReply.nNewConnections);
        curl_slist_free_all(pHeaders);
        return stReply;
    }

    CURL* vm_pCurl;
    int vm_nPort;
    emDef_Auth vm_eAuth;
    std::string vm_sUser, vm_sPassword, vm_sAuthorization;
    std::function<bool(const std::string&)> vm_fnWatcher;
};
