#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The login of a request with a body where the server offers Digest with "auth-int" alone: libcurl answers it with the
/// hash of an empty body. MD5 and SHA-256, each also as "-sess".
class CBodyDigest
{
public:
    /// True for a line of a head that offers a Digest, of whatever kind.
    static bool s_F_b_IsDigest(std::string_view sHeadLine);
    /// The challenge of that line, if it is one that libcurl can't answer for a body and this class can.
    static std::optional<CBodyDigest> s_F_o_Read(std::string_view sHeadLine);

    /// Value of the Authorization header of the next request. It counts the uses of the challenge.
    std::string m_F_s_Authorization(std::string_view sUser, std::string_view sPassword, std::string_view sMethod,
                                    std::string_view sTarget, std::string_view sBody);

private:
    std::string vm_sRealm, vm_sNonce, vm_sOpaque, vm_sAlgorithm;
    std::string vm_sOwnNonce; ///< one for all requests, as a session asks for
    unsigned vm_nUses = 0;
};
