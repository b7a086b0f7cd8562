#include "host/bedrock/CBodyDigest.h"

#include <QByteArray>
#include <QCryptographicHash>
#include <QRandomGenerator>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>

namespace {

constexpr std::string_view g_sHeader = "www-authenticate:";
constexpr std::string_view g_sScheme = "digest ";

struct st_Algorithm
{
    const char* pszName; ///< in small letters
    QCryptographicHash::Algorithm nHash;
    bool bSession;
};

constexpr st_Algorithm g_astAlgorithms[] = {
    {"md5", QCryptographicHash::Md5, false},
    {"md5-sess", QCryptographicHash::Md5, true},
    {"sha-256", QCryptographicHash::Sha256, false},
    {"sha-256-sess", QCryptographicHash::Sha256, true},
};

std::string Lower(std::string_view sText)
{
    return QByteArray(sText.data(), static_cast<qsizetype>(sText.size())).toLower().toStdString();
}

const st_Algorithm* Algorithm(std::string_view sName)
{
    const auto* pRow = std::find_if(std::begin(g_astAlgorithms), std::end(g_astAlgorithms),
                                    [sLower = Lower(sName)](const auto& stRow) { return stRow.pszName == sLower; });
    return pRow != std::end(g_astAlgorithms) ? pRow : nullptr;
}

/// What stands behind "Digest " in the line; empty for any other line.
std::string_view Fields(std::string_view sLine)
{
    if (Lower(sLine.substr(0, g_sHeader.size())) != g_sHeader)
        return {};
    sLine.remove_prefix(g_sHeader.size());
    // One line may hold several challenges: this one stands first, or behind a comma.
    const std::string sLower = Lower(sLine);
    for (auto nAt = sLower.find(g_sScheme); nAt != sLower.npos; nAt = sLower.find(g_sScheme, nAt + 1)) {
        const auto nBefore = sLine.substr(0, nAt).find_last_not_of(" \t");
        if (nBefore == sLine.npos || sLine[nBefore] == ',')
            return sLine.substr(nAt + g_sScheme.size());
    }
    return {};
}

std::string TakeValue(std::string_view& sRest)
{
    std::string sValue;
    const bool bQuoted = sRest.starts_with('"');
    std::size_t nAt = bQuoted ? 1 : 0;
    for (; nAt < sRest.size() && sRest[nAt] != '"' && (bQuoted || !std::strchr(", \t\r\n", sRest[nAt])); ++nAt) {
        if (bQuoted && sRest[nAt] == '\\' && nAt + 1 < sRest.size())
            ++nAt;
        sValue += sRest[nAt];
    }
    sRest.remove_prefix(std::min(nAt + (bQuoted ? 1 : 0), sRest.size()));
    return sValue;
}

/// Values by their names in small letters, up to the next challenge.
std::map<std::string, std::string> Values(std::string_view sRest)
{
    std::map<std::string, std::string> mapValues;
    while (true) {
        sRest.remove_prefix(std::min(sRest.find_first_not_of(", \t\r\n"), sRest.size()));
        const auto nEqual = sRest.find('=');
        const std::string sName = Lower(sRest.substr(0, std::min(nEqual, sRest.size())));
        if (nEqual == sRest.npos || sName.find_first_of(" \t,\"") != sName.npos)
            return mapValues;
        sRest.remove_prefix(nEqual + 1);
        mapValues[sName] = TakeValue(sRest);
    }
}

std::string Quoted(std::string_view sText)
{
    std::string sQuoted = "\"";
    for (const char c : sText)
        (sQuoted += c == '"' || c == '\\' ? "\\" : "") += c;
    return sQuoted + '"';
}

} // namespace

bool CBodyDigest::s_F_b_IsDigest(std::string_view sHeadLine)
{
    return !Fields(sHeadLine).empty();
}

std::optional<CBodyDigest> CBodyDigest::s_F_o_Read(std::string_view sHeadLine)
{
    auto mapValues = Values(Fields(sHeadLine));
    CBodyDigest objDigest;
    objDigest.vm_sRealm = mapValues["realm"];
    objDigest.vm_sNonce = mapValues["nonce"];
    objDigest.vm_sOpaque = mapValues["opaque"];
    objDigest.vm_sAlgorithm = mapValues["algorithm"].empty() ? "MD5" : mapValues["algorithm"];
    if (Lower(mapValues["qop"]) != "auth-int" || objDigest.vm_sNonce.empty() || !Algorithm(objDigest.vm_sAlgorithm))
        return {};
    objDigest.vm_sOwnNonce = QByteArray::number(QRandomGenerator::system()->generate64(), 16).toStdString();
    return objDigest;
}

std::string CBodyDigest::m_F_s_Authorization(std::string_view sUser, std::string_view sPassword,
                                             std::string_view sMethod, std::string_view sTarget, std::string_view sBody)
{
    const st_Algorithm& stAlgorithm = *Algorithm(vm_sAlgorithm);
    const auto Hash = [&](std::initializer_list<std::string_view> arParts) {
        QCryptographicHash objHash(stAlgorithm.nHash);
        for (const std::string_view& sPart : arParts) {
            if (&sPart != arParts.begin())
                objHash.addData(":");
            objHash.addData(QByteArrayView(sPart.data(), static_cast<qsizetype>(sPart.size())));
        }
        return objHash.result().toHex().toStdString();
    };
    char szCount[16];
    std::snprintf(szCount, sizeof szCount, "%08x", ++vm_nUses);
    std::string sAccount = Hash({sUser, vm_sRealm, sPassword});
    if (stAlgorithm.bSession)
        sAccount = Hash({sAccount, vm_sNonce, vm_sOwnNonce});
    const std::string sRequest = Hash({sMethod, sTarget, Hash({sBody})});
    const std::string sResponse = Hash({sAccount, vm_sNonce, szCount, vm_sOwnNonce, "auth-int", sRequest});
    return "Digest username=" + Quoted(sUser) + ", realm=" + Quoted(vm_sRealm) + ", nonce=" + Quoted(vm_sNonce) +
           ", uri=" + Quoted(sTarget) + ", algorithm=" + vm_sAlgorithm + ", qop=auth-int, nc=" + szCount +
           ", cnonce=" + Quoted(vm_sOwnNonce) + ", response=" + Quoted(sResponse) +
           (vm_sOpaque.empty() ? "" : ", opaque=" + Quoted(vm_sOpaque));
}
