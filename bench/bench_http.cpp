#include <curl/curl.h>

#include <string>

#include "BenchTable.h"
#include "Benches.h"
#include "CVirtualNvr.h"
#include "host/Lib_Bedrock.h"

namespace {

constexpr int Rounds = 1500;
constexpr int TimeoutMs = 5000;
constexpr const char* GetUrl = "cgi-bin/SyncSetting.cgi?action=CameraXML";
constexpr const char* PostUrl = "cgi-bin/SyncSetting.cgi?action=UpdateCamera";

size_t Collect(char* pData, size_t nSize, size_t nCount, void* pTarget)
{
    static_cast<std::string*>(pTarget)->append(pData, nSize * nCount);
    return nSize * nCount;
}

/// libcurl as one would use it by hand: one easy handle, kept.
class PlainCurl
{
public:
    PlainCurl(int nPort, const stDef_Account& stAccount) : vm_sRoot("http://127.0.0.1:" + std::to_string(nPort) + "/")
    {
        curl_easy_setopt(vm_pCurl, CURLOPT_USERNAME, stAccount.sUser.c_str());
        curl_easy_setopt(vm_pCurl, CURLOPT_PASSWORD, stAccount.sPassword.c_str());
        curl_easy_setopt(vm_pCurl, CURLOPT_HTTPAUTH, CURLAUTH_DIGEST | CURLAUTH_BASIC);
        curl_easy_setopt(vm_pCurl, CURLOPT_NOSIGNAL, 1L);
        curl_easy_setopt(vm_pCurl, CURLOPT_TIMEOUT_MS, long{TimeoutMs});
        curl_easy_setopt(vm_pCurl, CURLOPT_WRITEFUNCTION, Collect);
        curl_easy_setopt(vm_pCurl, CURLOPT_WRITEDATA, &vm_sBody);
    }
    ~PlainCurl() { curl_easy_cleanup(vm_pCurl); }
    PlainCurl(const PlainCurl&) = delete;
    PlainCurl& operator=(const PlainCurl&) = delete;

    void Get() { Perform(GetUrl, CURLOPT_HTTPGET); }

    void Post(const std::string& sBody)
    {
        curl_easy_setopt(vm_pCurl, CURLOPT_POSTFIELDS, sBody.c_str());
        curl_easy_setopt(vm_pCurl, CURLOPT_POSTFIELDSIZE, static_cast<long>(sBody.size()));
        Perform(PostUrl, CURLOPT_POST);
    }

    std::string vm_sBody;

private:
    void Perform(const char* pUrl, CURLoption nMethod)
    {
        vm_sBody.clear();
        curl_easy_setopt(vm_pCurl, CURLOPT_URL, (vm_sRoot + pUrl).c_str());
        curl_easy_setopt(vm_pCurl, nMethod, 1L);
        curl_easy_perform(vm_pCurl);
    }

    CURL* vm_pCurl = curl_easy_init();
    std::string vm_sRoot;
};

} // namespace

void BenchHttp()
{
    CVirtualNvr nvr;
    stDef_VirtualNvrConfig stConfig;
    stConfig.bStreams = false;
    std::string sError;
    if (!nvr.m_F_b_Start(stConfig, sError)) {
        std::fprintf(stderr, "virtual recorder: %s\n", sError.c_str());
        return;
    }
    const stDef_Account stAccount = stConfig.arAccounts.front();
    PlainCurl curl(nvr.m_F_n_HttpPort(), stAccount);
    CHTTP http;
    CMemManage mem(0);
    const int nPort = nvr.m_F_n_HttpPort();
    const QByteArray sUser = QByteArray::fromStdString(stAccount.sUser);
    const QByteArray sPassword = QByteArray::fromStdString(stAccount.sPassword);

    const stDef_Pair stGet = MeasurePair(
        Rounds, [&] { http.m_F_n_HTTPGetDataDirect("127.0.0.1", sUser, sPassword, nPort, GetUrl, &mem, TimeoutMs); },
        [&] { curl.Get(); });
    PrintRow({"GET, kept connection, " + std::to_string(mem.m_F_n_GetMemSize()) + " bytes", stGet.dOurs / 1000,
              stGet.dBaseline / 1000, "us", 1.1, "plain libcurl"});

    const std::string sDocument = curl.vm_sBody.substr(curl.vm_sBody.find("<root"));
    const QByteArray sBody = QByteArray::fromStdString(sDocument.substr(0, sDocument.find("</root>") + 7));
    const stDef_Pair stPost = MeasurePair(
        Rounds / 5,
        [&] {
            http.m_F_n_HTTPPostDataDirect("127.0.0.1", sUser, sPassword, nPort, PostUrl, sBody,
                                          static_cast<int>(sBody.size()), {}, 0, TimeoutMs);
        },
        [&] { curl.Post(sBody.toStdString()); });
    PrintRow({"POST, kept connection, " + std::to_string(sBody.size()) + " bytes", stPost.dOurs / 1000,
              stPost.dBaseline / 1000, "us", 1.1, "plain libcurl"});
}
