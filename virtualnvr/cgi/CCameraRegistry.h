#pragma once

#include <memory>
#include <string>

/// The cameras on a virtual recorder's network: a recorder finds them, logs in to them and asks what they can do.
/// Replies are the text of a document; an empty one means that the recorder got no answer. Thread-safe once loaded.
class CCameraRegistry
{
public:
    CCameraRegistry();
    ~CCameraRegistry();
    CCameraRegistry(const CCameraRegistry&) = delete;
    CCameraRegistry& operator=(const CCameraRegistry&) = delete;

    /// Reads "Cameras.xml" of a folder; without that file there are no cameras.
    /// @return false with sError set if the file is no document
    bool m_F_b_Load(const std::string& sFolder, std::string& sError);

    /// What a request of a camera says, from its query. Account and password come unescaped, so each ends only where
    /// the next key begins: "&pwd=" can't stand in an account, nor "&vendorid=" in a password. What looks like
    /// percent-encoding is taken for it.
    struct stDef_Wanted
    {
        std::string sIP; ///< also the short form of a link-local address, "ID@12.7"
        int nPort = 0;
        std::string sUser, sPassword;
        int nVendorID = -1;
        int nOnvifAuth = 1;
    };
    static stDef_Wanted s_F_o_Parse(const std::string& sQuery);

    /// A camera node as the recorder fills it in. One that answers but refuses account or maker has the model "Any".
    std::string m_F_s_Detect(const stDef_Wanted& stWanted) const;
    std::string m_F_s_Support(const stDef_Wanted& stWanted) const;
    std::string m_F_s_Search() const;

private:
    struct stDef_Impl;
    std::unique_ptr<stDef_Impl> vm_pImpl;
};
