#include "cgi/stDef_CgiRequest.h"

#include "http/UrlText.h"

#include <algorithm>
#include <charconv>
#include <string_view>

void stDef_CgiRequest::m_S_TakeTarget(const std::string& sTarget)
{
    std::string_view s(sTarget);
    s.remove_prefix(std::min(s.find_first_not_of('/'), s.size()));
    const std::size_t nQuery = std::min(s.find('?'), s.size());
    sPath = nsUrlText::Decoded(s.substr(0, nQuery));
    s.remove_prefix(std::min(nQuery + 1, s.size()));
    sQuery = s;
    while (!s.empty()) {
        const std::size_t nEnd = std::min(s.find('&'), s.size());
        const std::string_view sItem = s.substr(0, nEnd);
        const std::size_t nEquals = std::min(sItem.find('='), sItem.size());
        const std::size_t nValue = std::min(nEquals + 1, sItem.size());
        mapQuery[nsUrlText::Decoded(sItem.substr(0, nEquals))] = nsUrlText::Decoded(sItem.substr(nValue));
        s.remove_prefix(std::min(nEnd + 1, s.size()));
    }
}

std::string stDef_CgiRequest::m_F_s_Value(const char* pszKey) const
{
    const auto it = mapQuery.find(pszKey);
    return it == mapQuery.end() ? std::string() : it->second;
}

int stDef_CgiRequest::m_F_n_Number(const char* pszKey) const
{
    const std::string s = m_F_s_Value(pszKey);
    int n = -1;
    const auto [pEnd, eError] = std::from_chars(s.data(), s.data() + s.size(), n);
    return eError == std::errc() && pEnd == s.data() + s.size() ? n : -1;
}

int stDef_CgiRequest::m_F_n_Camera(int nChannels) const
{
    const int nCamera = m_F_n_Number("camera");
    return nCamera >= 0 && nCamera < nChannels ? nCamera : -1;
}
