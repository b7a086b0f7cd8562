#include "host/livefeed/CStreamUrl.h"

#include <algorithm>
#include <charconv>

namespace {

constexpr std::string_view Scheme = "rtsp://";
constexpr std::string_view RecorderPath = "/stream/";
constexpr std::string_view Unreserved = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
constexpr std::string_view HostLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._";
constexpr std::string_view AddressLetters = "ABCDEFabcdef0123456789:.";
// The library keeps at most 127 bytes of an encoded account, so what may stand there as it is does.
constexpr std::string_view PlainInAccount = "!$&'()*+,;=:";
constexpr int MaxPort = 65535;

/// Length of the host at the start of the text, with an IPv6 address's brackets; 0 if there is none.
std::size_t HostLength(std::string_view sText)
{
    if (!sText.starts_with('['))
        return std::min(sText.find_first_not_of(HostLetters), sText.size());
    const std::size_t nEnd = std::min(sText.find_first_not_of(AddressLetters, 1), sText.size());
    return nEnd > 1 && nEnd < sText.size() && sText[nEnd] == ']' ? nEnd + 1 : 0;
}

/// Length of "host" or "host:port" at the start of the text; 0 if it has no sound one. `nPort` is 0 if none is told.
std::size_t AuthorityLength(std::string_view sText, int& nPort)
{
    nPort = 0;
    const std::size_t nHost = HostLength(sText);
    if (nHost == 0 || nHost == sText.size() || sText[nHost] != ':')
        return nHost;
    const char* pPort = sText.data() + nHost + 1;
    const auto [pEnd, nError] = std::from_chars(pPort, sText.data() + sText.size(), nPort);
    if (nError != std::errc{} || nPort < 1 || nPort > MaxPort)
        return 0;
    return static_cast<std::size_t>(pEnd - sText.data());
}

enum emDef_Follows
{
    Follows_RecorderPath,
    Follows_Path,
    Follows_End,
    Follows_Count
};

/// True if the text begins with a host and what `nFollows` tells.
bool BeginsWithHost(std::string_view sText, int nFollows)
{
    int nPort = 0;
    const std::size_t nLength = AuthorityLength(sText, nPort);
    const std::string_view sRest = sText.substr(nLength);
    if (nLength == 0)
        return false;
    if (nFollows == Follows_RecorderPath)
        return sRest.starts_with(RecorderPath);
    return nFollows == Follows_Path ? sRest.starts_with('/') : sRest.empty() || sRest.starts_with('?');
}

/// Position of the '@' that ends the account; npos if there is none.
std::size_t AccountEnd(std::string_view sText)
{
    for (int nFollows = 0; nFollows < Follows_Count; ++nFollows) {
        for (std::size_t n = sText.rfind('@'); n != sText.npos; n = n == 0 ? sText.npos : sText.rfind('@', n - 1)) {
            if (BeginsWithHost(sText.substr(n + 1), nFollows))
                return n;
        }
    }
    return sText.npos;
}

std::string EncodeAccount(std::string_view sText)
{
    constexpr char Digits[] = "0123456789ABCDEF";
    std::string sOut;
    for (const char c : sText) {
        const auto n = static_cast<unsigned char>(c);
        if (Unreserved.find(c) != Unreserved.npos || PlainInAccount.find(c) != PlainInAccount.npos)
            sOut += c;
        else
            sOut.append({'%', Digits[n >> 4], Digits[n & 15]});
    }
    return sOut;
}

/// A path goes into request lines: what would end or split one is encoded, all else is the recorder's business.
std::string EncodePath(std::string_view sText)
{
    std::string sOut;
    for (const char c : sText)
        sOut += c > ' ' && c < 0x7f ? std::string(1, c) : EncodeAccount({&c, 1});
    return sOut;
}

bool IsRtsp(std::string_view sUrl)
{
    const auto same = [](char cWanted, char c) { return cWanted == (c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c); };
    return sUrl.size() >= Scheme.size() && std::equal(Scheme.begin(), Scheme.end(), sUrl.begin(), same);
}

} // namespace

bool CStreamUrl::m_F_b_Parse(std::string_view sUrl)
{
    if (!IsRtsp(sUrl))
        return false;
    sUrl.remove_prefix(Scheme.size());
    const std::size_t nEnd = AccountEnd(sUrl);
    vm_sAccount.clear();
    if (nEnd != sUrl.npos) {
        vm_sAccount = sUrl.substr(0, nEnd);
        sUrl.remove_prefix(nEnd + 1);
    }
    return m_F_b_ParseHost(sUrl);
}

bool CStreamUrl::m_F_b_ParseHost(std::string_view sText)
{
    const std::size_t nHost = HostLength(sText);
    const std::size_t nLength = AuthorityLength(sText, vm_nPort);
    const std::string_view sRest = sText.substr(nLength);
    if (nLength == 0 || (!sRest.empty() && !sRest.starts_with('/') && !sRest.starts_with('?')))
        return false;
    vm_sHost = sText.starts_with('[') ? sText.substr(1, nHost - 2) : sText.substr(0, nHost);
    vm_sPath = sRest.starts_with('/') ? std::string(sRest) : '/' + std::string(sRest);
    return true;
}

std::string CStreamUrl::m_F_s_For(const std::string& sAddress) const
{
    std::string sUrl(Scheme);
    if (!vm_sAccount.empty() && vm_sAccount != ":")
        sUrl += EncodeAccount(vm_sAccount) + '@';
    sUrl += sAddress.find(':') == std::string::npos ? sAddress : '[' + sAddress + ']';
    if (vm_nPort > 0)
        sUrl += ':' + std::to_string(vm_nPort);
    return sUrl + EncodePath(vm_sPath);
}
