#pragma once

#include "http/stDef_Account.h"

#include <cstdint>
#include <memory>
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
    /// @param stAccount receives the account of a login that is granted or stale
    emDef_Login m_F_e_Check(std::string_view sMethod, std::string_view sTarget, std::string_view sHeader,
                            stDef_Account& stAccount);

    /// Takes the place of all accounts; in force for every request that comes after.
    void m_S_SetAccounts(std::vector<stDef_Account> arAccounts);

    /// Values for the WWW-Authenticate headers of a 401, the stronger scheme first, with a fresh nonce.
    std::vector<std::string> m_F_ar_Challenges(bool bStale);

private:
    struct stDef_Use
    {
        std::uint32_t nHighest = 0;
        std::uint64_t nSeen = 0; ///< bit i: count nHighest - i was used
    };

    using Accounts = std::vector<stDef_Account>;

    emDef_Login m_F_e_CheckBasic(std::string_view sCredentials, stDef_Account& stAccount);
    emDef_Login m_F_e_CheckDigest(std::string_view sMethod, std::string_view sTarget, std::string_view sFields,
                                  stDef_Account& stAccount);
    std::shared_ptr<const Accounts> m_F_p_Accounts();
    std::string m_F_s_NewNonce();
    bool m_F_b_Fresh(const std::string& sNonce) const;
    bool m_F_b_FirstUse(const std::string& sNonce, std::uint32_t nCount);

    const std::int64_t vm_nLifetimeMs;
    const std::string vm_sSecret;
    std::mutex vm_objLock;
    std::shared_ptr<const Accounts> vm_pAccounts; ///< never null
    std::uint32_t vm_nSerial = 0;
    std::unordered_map<std::string, stDef_Use> vm_mapUses;
};
