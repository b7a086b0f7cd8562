#pragma once

#include <curl/curl.h>

#include <string>

struct stDef_Account;

/// libcurl as one would use it by hand: one easy handle, kept.
class CPlainCurl
{
public:
    CPlainCurl(int nPort, const stDef_Account& stAccount);
    ~CPlainCurl();
    CPlainCurl(const CPlainCurl&) = delete;
    CPlainCurl& operator=(const CPlainCurl&) = delete;

    void Get(const char* pUrl);
    void Post(const char* pUrl, const std::string& sBody);

    std::string vm_sBody; ///< of the last reply

private:
    void Perform(const char* pUrl, CURLoption nMethod);

    CURL* vm_pCurl = curl_easy_init();
    std::string vm_sRoot;
};
