#include "host/bedrock/stDef_HttpTarget.h"

#include <algorithm>
#include <initializer_list>

namespace {

constexpr int MaxPort = 65535;
constexpr std::size_t MaxHost = 253;
constexpr std::string_view Digits = "0123456789";
constexpr std::string_view Letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr std::string_view HexLetters = "abcdefABCDEF";

bool IsOneOf(char c, std::initializer_list<std::string_view> arSets)
{
    return std::any_of(arSets.begin(), arSets.end(), [c](std::string_view sSet) { return sSet.find(c) != sSet.npos; });
}

/// One colon alone would be that of a port.
bool IsV6(std::string_view sHost)
{
    return std::count(sHost.begin(), sHost.end(), ':') > 1;
}

std::string_view WithoutBrackets(std::string_view sHost)
{
    return sHost.starts_with('[') && sHost.ends_with(']') ? sHost.substr(1, sHost.size() - 2) : sHost;
}

bool IsHost(std::string_view sHost)
{
    if (sHost.empty() || sHost.size() > MaxHost)
        return false;
    if (!IsV6(sHost))
        return std::all_of(sHost.begin(), sHost.end(), [](char c) { return IsOneOf(c, {Letters, Digits, ".-_"}); });
    const std::string_view sAddress = sHost.substr(0, sHost.find('%'));
    const std::string_view sZone = sHost.substr(std::min(sAddress.size() + 1, sHost.size()));
    return std::all_of(sAddress.begin(), sAddress.end(),
                       [](char c) {
                           return IsOneOf(c, {Digits, HexLetters, ":."});
                       }) &&
           std::all_of(sZone.begin(), sZone.end(), [](char c) {
               return IsOneOf(c, {Letters, Digits, ".-_"});
           });
}

} // namespace

bool stDef_HttpTarget::m_F_b_Valid() const
{
    // libcurl takes accounts up to their first zero byte: what stands behind must not be lost without a word.
    return nPort > 0 && nPort <= MaxPort && IsHost(WithoutBrackets(sHost)) && sUser.find('\0') == sUser.npos &&
           sPassword.find('\0') == sPassword.npos;
}

std::string stDef_HttpTarget::m_F_s_Root() const
{
    const std::string sBare(WithoutBrackets(sHost));
    return "http://" + (IsV6(sBare) ? "[" + sBare + "]" : sBare) + ":" + std::to_string(nPort);
}

std::string stDef_HttpTarget::s_F_s_RequestTarget(std::string_view sUrl)
{
    constexpr const char* pHex = "0123456789ABCDEF";
    std::string sTarget;
    sTarget.reserve(sUrl.size() + 1);
    if (!sUrl.starts_with('/'))
        sTarget += '/';
    for (const char c : sUrl) {
        const auto nByte = static_cast<unsigned char>(c);
        if (nByte > 0x20 && nByte < 0x7F && c != '"') // a '"' would end the uri of a Digest login
            sTarget += c;
        else
            (sTarget += '%').append({pHex[nByte >> 4], pHex[nByte & 15]});
    }
    return sTarget;
}
