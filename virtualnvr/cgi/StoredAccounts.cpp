#include "cgi/StoredAccounts.h"

#include <algorithm>
#include <cstdio>
#include <pugixml.hpp>
#include <unordered_set>

namespace {
constexpr int g_nMaxAccounts = 1000; // each login is compared with all of them

/// Of "0" and "1" alone, one for each channel.
std::string Mask(pugi::xml_node objAccount, const char* pszKey, int nChannels)
{
    std::string sMask = objAccount.attribute(pszKey).value();
    sMask.resize(static_cast<std::size_t>(nChannels), '0');
    std::replace_if(
        sMask.begin(), sMask.end(), [](char c) { return c != '1'; }, '0');
    return sMask;
}
} // namespace

std::vector<stDef_Account> WithStoredAccounts(std::vector<stDef_Account> arOwn, const std::string& sSystem,
                                              int nChannels)
{
    pugi::xml_document objDocument;
    objDocument.load_buffer(sSystem.data(), sSystem.size());
    const pugi::xml_node objAccounts = objDocument.child("root").child("account");
    const int nCount = std::clamp(objAccounts.attribute("count").as_int(1), 0, g_nMaxAccounts);
    std::unordered_set<std::string> setNames;
    for (const stDef_Account& stAccount : arOwn)
        setNames.insert(stAccount.sUser);
    for (int i = 0; i < nCount; ++i) {
        char szName[16];
        std::snprintf(szName, sizeof szName, "USER%03d", i);
        const pugi::xml_node objAccount = objAccounts.child(szName);
        const std::string sUser = objAccount.attribute("UserName").value();
        if (sUser.empty() || sUser.find(':') != std::string::npos || !setNames.insert(sUser).second)
            continue;
        arOwn.push_back({sUser, objAccount.attribute("Password").value(), Mask(objAccount, "PreviewCam", nChannels),
                         Mask(objAccount, "PlaybackCam", nChannels)});
    }
    return arOwn;
}
