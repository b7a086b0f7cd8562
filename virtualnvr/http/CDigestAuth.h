#pragma once

#include "http/stDef_Account.h"

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

enum class emDef_Login
{
    Granted,
    Refused,
    Stale ///< right account, but its nonce is too old or this use of it was seen before
};

/// Checks Authorization headers against an account list: Digest (MD5, qop=auth) and Basic. Thread-safe.
class CDigestAuth
{
public:
    CDigestAuth(std::vector<stDef_Account> arAccounts, std::int64_t nNonceLifetimeMs);

    /// @param sTarget the request target as it stood in the request line, with '#' and all; the digest must be for it
    /// @param sHeader value of the Authorization header, empty if there was none
    emDef_Login m_F_e_Check(std::string_view sMethod, std::string_view sTarget, std::string_view sHeader);

    /// Values for the WWW-Authenticate headers of a 401, the stronger scheme first, with a fresh nonce.
    std::vector<std::string> m_F_ar_Challenges(bool bStale);

private:
    struct stDef_Use
    {
        std::uint32_t nHighest = 0;
        std::uint64_t nSeen = 0; ///< bit i: count nHighest - i was used
    };

    emDef_Login m_F_e_CheckBasic(std::string_view sCredentials) const;
    emDef_Login m_F_e_CheckDigest(std::string_view sMethod, std::string_view sTarget, std::string_view sFields);
    std::string m_F_s_NewNonce();
    bool m_F_b_Fresh(const std::string& sNonce) const;
    bool m_F_b_FirstUse(const std::string& sNonce, std::uint32_t nCount);

    const std::vector<stDef_Account> vm_arAccounts;
    const std::int64_t vm_nLifetimeMs;
    const std::string vm_sSecret;
    std::mutex vm_objLock;
    std::uint32_t vm_nSerial = 0;
    std::unordered_map<std::string, stDef_Use> vm_mapUses;
};
