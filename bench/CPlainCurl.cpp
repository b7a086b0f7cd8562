#include "CPlainCurl.h"

#include "CVirtualNvr.h"

namespace {

constexpr long TimeoutMs = 5000;

size_t Collect(char* pData, size_t nSize, size_t nCount, void* pTarget)
{
    static_cast<std::string*>(pTarget)->append(pData, nSize * nCount);
    return nSize * nCount;
}

} // namespace

CPlainCurl::CPlainCurl(int nPort, const stDef_Account& stAccount)
    : vm_sRoot("http://127.0.0.1:" + std::to_string(nPort) + "/")
{
    curl_easy_setopt(vm_pCurl, CURLOPT_USERNAME, stAccount.sUser.c_str());
    curl_easy_setopt(vm_pCurl, CURLOPT_PASSWORD, stAccount.sPassword.c_str());
    curl_easy_setopt(vm_pCurl, CURLOPT_HTTPAUTH, CURLAUTH_DIGEST | CURLAUTH_BASIC);
    curl_easy_setopt(vm_pCurl, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(vm_pCurl, CURLOPT_TIMEOUT_MS, TimeoutMs);
    curl_easy_setopt(vm_pCurl, CURLOPT_WRITEFUNCTION, Collect);
    curl_easy_setopt(vm_pCurl, CURLOPT_WRITEDATA, &vm_sBody);
}

CPlainCurl::~CPlainCurl()
{
    curl_easy_cleanup(vm_pCurl);
}

void CPlainCurl::Get(const char* pUrl)
{
    Perform(pUrl, CURLOPT_HTTPGET);
}

void CPlainCurl::Post(const char* pUrl, const std::string& sBody)
{
    curl_easy_setopt(vm_pCurl, CURLOPT_POSTFIELDS, sBody.c_str());
    curl_easy_setopt(vm_pCurl, CURLOPT_POSTFIELDSIZE, static_cast<long>(sBody.size()));
    Perform(pUrl, CURLOPT_POST);
}

void CPlainCurl::Perform(const char* pUrl, CURLoption nMethod)
{
    vm_sBody.clear();
    curl_easy_setopt(vm_pCurl, CURLOPT_URL, (vm_sRoot + pUrl).c_str());
    curl_easy_setopt(vm_pCurl, nMethod, 1L);
    curl_easy_perform(vm_pCurl);
}
