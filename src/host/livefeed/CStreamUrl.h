#pragma once

#include <string>
#include <string_view>

/// A stream URL taken apart, so that any account works in it.
///
/// The account stands in the URL as the user typed it, and may hold every character that means something in a URL. It
/// ends at the last '@' that a host, an optional port and "/stream/" follow; in a URL of another path at the last one
/// that a host and a '/' follow, or else a host and the end.
class CStreamUrl
{
public:
    /// False if it is no rtsp:// URL or no host can be told from it.
    bool m_F_b_Parse(std::string_view sUrl);

    const std::string& m_F_s_Host() const { return vm_sHost; } ///< IPv6 addresses without their brackets
    int m_F_n_Port() const { return vm_nPort; }                ///< 0 if the URL names none
    void m_S_SetPort(int nPort) { vm_nPort = nPort; }
    const std::string& m_F_s_Account() const { return vm_sAccount; } ///< as typed: user, or user:password

    /// The URL with that address in place of the host, the account and the path percent-encoded. It holds the password:
    /// not for logs.
    std::string m_F_s_For(const std::string& sAddress) const;

private:
    bool m_F_b_ParseHost(std::string_view sText);

    std::string vm_sAccount;
    std::string vm_sHost;
    std::string vm_sPath; ///< from the '/' on
    int vm_nPort = 0;
};
