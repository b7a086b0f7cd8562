#include "http/CDigestAuth.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <glib.h>
#include <map>
#include <random>
#include <strings.h>

namespace {
constexpr std::string_view g_sRealm = "Network Video Recorder";
constexpr std::size_t g_nTimeDigits = 16, g_nSerialDigits = 8;
constexpr std::size_t g_nMaxUses = 1024; // nonces in use before expired ones are swept out

using Fields = std::map<std::string, std::string, std::less<>>;

std::string Take(char* psz)
{
    std::string s(psz ? psz : "");
    g_free(psz);
    return s;
}

std::string Md5(const std::string& s)
{
    return Take(g_compute_checksum_for_data(G_CHECKSUM_MD5, reinterpret_cast<const guchar*>(s.data()), s.size()));
}

std::string Mac(const std::string& sSecret, const std::string& s)
{
    return Take(g_compute_hmac_for_data(G_CHECKSUM_SHA256, reinterpret_cast<const guchar*>(sSecret.data()),
                                        sSecret.size(), reinterpret_cast<const guchar*>(s.data()), s.size()));
}

/// Takes the same time wherever the texts differ.
bool Equal(std::string_view sA, std::string_view sB)
{
    unsigned nDifference = sA.size() == sB.size() ? 0 : 1;
    for (std::size_t i = 0; i < std::min(sA.size(), sB.size()); ++i)
        nDifference |= static_cast<unsigned char>(sA[i]) ^ static_cast<unsigned char>(sB[i]);
    return nDifference == 0;
}

bool StartsWithWord(std::string_view s, std::string_view sWord)
{
    return s.size() > sWord.size() && strncasecmp(s.data(), sWord.data(), sWord.size()) == 0 && s[sWord.size()] == ' ';
}

std::string ReadQuoted(std::string_view s, std::size_t& n)
{
    std::string sValue;
    for (++n; n < s.size() && s[n] != '"'; ++n) {
        if (s[n] == '\\' && n + 1 < s.size())
            ++n;
        sValue += s[n];
    }
    n += n < s.size();
    return sValue;
}

/// Clients write a '"' of the target into the uri field as it stands, so that field is first compared as a whole.
std::string ReadUri(std::string_view s, std::size_t& n, std::string_view sTarget)
{
    const std::size_t nEnd = n + 1 + sTarget.size();
    const bool bWhole = nEnd < s.size() && s.substr(n + 1, sTarget.size()) == sTarget && s[nEnd] == '"' &&
                        (nEnd + 1 == s.size() || s[nEnd + 1] == ',' || s[nEnd + 1] == ' ');
    if (!bWhole)
        return ReadQuoted(s, n);
    n = nEnd + 1;
    return std::string(sTarget);
}

Fields ReadFields(std::string_view s, std::string_view sTarget)
{
    Fields mapFields;
    for (std::size_t n = 0; (n = s.find_first_not_of(", \t", n)) != std::string_view::npos;) {
        const std::size_t nEquals = s.find('=', n);
        if (nEquals == std::string_view::npos)
            break;
        std::string sName(s.substr(n, nEquals - n));
        std::transform(sName.begin(), sName.end(), sName.begin(), g_ascii_tolower);
        n = nEquals + 1;
        if (n < s.size() && s[n] == '"') {
            mapFields[sName] = sName == "uri" ? ReadUri(s, n, sTarget) : ReadQuoted(s, n);
        } else {
            const std::size_t nEnd = std::min(s.find_first_of(", \t", n), s.size());
            mapFields[sName] = s.substr(n, nEnd - n);
            n = nEnd;
        }
    }
    return mapFields;
}

std::string RandomSecret()
{
    std::random_device objRandom;
    std::string s(32, '\0');
    std::generate(s.begin(), s.end(), [&] { return static_cast<char>(objRandom()); });
    return s;
}

std::int64_t SteadyNowMs()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}
} // namespace

CDigestAuth::CDigestAuth(std::vector<stDef_Account> arAccounts, std::int64_t nNonceLifetimeMs)
    : vm_nLifetimeMs(nNonceLifetimeMs),
      vm_sSecret(RandomSecret()),
      vm_pAccounts(std::make_shared<Accounts>(std::move(arAccounts)))
{}

void CDigestAuth::m_S_SetAccounts(std::vector<stDef_Account> arAccounts)
{
    auto pAccounts = std::make_shared<Accounts>(std::move(arAccounts));
    const std::lock_guard objGuard(vm_objLock);
    vm_pAccounts = std::move(pAccounts);
}

std::shared_ptr<const CDigestAuth::Accounts> CDigestAuth::m_F_p_Accounts()
{
    const std::lock_guard objGuard(vm_objLock);
    return vm_pAccounts;
}

emDef_Login CDigestAuth::m_F_e_Check(std::string_view sMethod, std::string_view sTarget, std::string_view sHeader,
                                     stDef_Account& stAccount)
{
    if (StartsWithWord(sHeader, "Basic"))
        return m_F_e_CheckBasic(sHeader.substr(6), stAccount);
    if (StartsWithWord(sHeader, "Digest"))
        return m_F_e_CheckDigest(sMethod, sTarget, sHeader.substr(7), stAccount);
    return emDef_Login::Refused;
}

std::vector<std::string> CDigestAuth::m_F_ar_Challenges(bool bStale)
{
    const std::string sRealm = "realm=\"" + std::string(g_sRealm) + "\"";
    return {"Digest " + sRealm + ", qop=\"auth\", algorithm=MD5, nonce=\"" + m_F_s_NewNonce() + "\"" +
                (bStale ? ", stale=true" : ""),
            "Basic " + sRealm};
}

emDef_Login CDigestAuth::m_F_e_CheckBasic(std::string_view sCredentials, stDef_Account& stAccount)
{
    gsize nLength = 0;
    guchar* pDecoded = g_base64_decode(std::string(sCredentials).c_str(), &nLength);
    const std::string sGiven(reinterpret_cast<const char*>(pDecoded), nLength);
    g_free(pDecoded);
    const std::string sHash = Md5(sGiven);
    const auto pAccounts = m_F_p_Accounts();
    const stDef_Account* pFound = nullptr;
    for (const stDef_Account& st : *pAccounts) // no early end: it would tell which account exists
        pFound = Equal(sHash, Md5(st.sUser + ":" + st.sPassword)) ? &st : pFound;
    if (!pFound || sGiven.find(':') == std::string::npos)
        return emDef_Login::Refused;
    stAccount = *pFound;
    return emDef_Login::Granted;
}

emDef_Login CDigestAuth::m_F_e_CheckDigest(std::string_view sMethod, std::string_view sTarget, std::string_view sFields,
                                           stDef_Account& stAccount)
{
    Fields mapFields = ReadFields(sFields, sTarget);
    const std::string sAlgorithm = mapFields["algorithm"];
    const std::string sCount = mapFields["nc"];
    std::uint32_t nCount = 0;
    const auto [pEnd, eError] = std::from_chars(sCount.data(), sCount.data() + sCount.size(), nCount, 16);
    const bool bFormed = (sAlgorithm.empty() || strcasecmp(sAlgorithm.c_str(), "MD5") == 0) &&
                         mapFields["qop"] == "auth" && sCount.size() == 8 && pEnd == sCount.data() + 8 &&
                         eError == std::errc() && !mapFields["cnonce"].empty() && mapFields["realm"] == g_sRealm &&
                         mapFields["uri"] == sTarget;
    if (!bFormed)
        return emDef_Login::Refused;
    const std::string sHashTarget = Md5(std::string(sMethod) + ":" + std::string(sTarget));
    const std::string sMiddle =
        ":" + mapFields["nonce"] + ":" + sCount + ":" + mapFields["cnonce"] + ":auth:" + sHashTarget;
    const std::string sGivenUser = Md5(mapFields["username"]);
    const auto pAccounts = m_F_p_Accounts();
    const stDef_Account* pFound = nullptr;
    for (const stDef_Account& st : *pAccounts) {
        const std::string sHashUser = Md5(st.sUser + ":" + std::string(g_sRealm) + ":" + st.sPassword);
        const bool bKnows = Equal(Md5(sHashUser + sMiddle), mapFields["response"]); // asked for every name
        const bool bFits = Equal(Md5(st.sUser), sGivenUser) && bKnows;
        pFound = bFits ? &st : pFound;
    }
    if (!pFound)
        return emDef_Login::Refused;
    stAccount = *pFound;
    const bool bFirst = m_F_b_Fresh(mapFields["nonce"]) && m_F_b_FirstUse(mapFields["nonce"], nCount);
    return bFirst ? emDef_Login::Granted : emDef_Login::Stale;
}

std::string CDigestAuth::m_F_s_NewNonce()
{
    char szHead[32];
    {
        const std::lock_guard objGuard(vm_objLock);
        std::snprintf(szHead, sizeof szHead, "%016" PRIx64 "%08" PRIx32, static_cast<std::uint64_t>(SteadyNowMs()),
                      ++vm_nSerial);
    }
    return szHead + Mac(vm_sSecret, szHead);
}

/// Time and seal are in the nonce itself, so that a challenge that nobody answers costs no memory.
bool CDigestAuth::m_F_b_Fresh(const std::string& sNonce) const
{
    const std::string sHead = sNonce.substr(0, g_nTimeDigits + g_nSerialDigits);
    if (!Equal(sHead + Mac(vm_sSecret, sHead), sNonce))
        return false;
    std::int64_t nMadeMs = 0;
    std::from_chars(sHead.data(), sHead.data() + g_nTimeDigits, nMadeMs, 16);
    return SteadyNowMs() - nMadeMs <= vm_nLifetimeMs;
}

/// Counts may overtake each other by up to 63, as they do when one client uses several connections.
bool CDigestAuth::m_F_b_FirstUse(const std::string& sNonce, std::uint32_t nCount)
{
    const std::lock_guard objGuard(vm_objLock);
    if (vm_mapUses.size() >= g_nMaxUses)
        std::erase_if(vm_mapUses, [this](const auto& entry) { return !m_F_b_Fresh(entry.first); });
    stDef_Use& stUse = vm_mapUses[sNonce];
    if (nCount > stUse.nHighest) {
        const std::uint32_t nStep = nCount - stUse.nHighest;
        stUse.nSeen = (nStep < 64 ? stUse.nSeen << nStep : 0) | 1;
        stUse.nHighest = nCount;
        return true;
    }
    const std::uint32_t nBehind = stUse.nHighest - nCount;
    const std::uint64_t nBit = nBehind < 64 ? std::uint64_t(1) << nBehind : 0;
    if (nBit == 0 || nCount == 0 || (stUse.nSeen & nBit) != 0)
        return false;
    stUse.nSeen |= nBit;
    return true;
}
