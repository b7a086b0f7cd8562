#pragma once

#include <string>
#include <string_view>

/// Where a request goes, and as whom.
struct stDef_HttpTarget
{
    std::string sHost; ///< name or address; IPv6 with or without brackets
    std::string sUser; ///< empty: without an account
    std::string sPassword;
    int nPort = 0;

    bool operator==(const stDef_HttpTarget&) const = default;

    /// True if a connection can be made to it: a port, and a host of which no part could be taken for something else.
    bool m_F_b_Valid() const;
    /// "http://host:port", IPv6 in brackets.
    std::string m_F_s_Root() const;

    /// The target of a request line for a URL relative to the root: a slash in front, and escapes for nothing but what
    /// can't stand in such a line.
    static std::string s_F_s_RequestTarget(std::string_view sUrl);
};
