#include "cgi/CCameraRegistry.h"

#include "http/UrlText.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <pugixml.hpp>
#include <sstream>
#include <string_view>

namespace {
constexpr int g_nOnvif = 4;
constexpr char g_szUnknownModel[] = "Any";
constexpr std::string_view g_sLinkLocal = "169.254.", g_sShortLinkLocal = "ID@";

/// From behind the first "<key>=" to the first of the next key, or to the end.
std::string Between(std::string_view s, std::string_view sKey, std::string_view sNext)
{
    const std::size_t nKey = s.find(sKey);
    if (nKey == std::string_view::npos)
        return {};
    s.remove_prefix(nKey + sKey.size());
    return nsUrlText::Decoded(sNext.empty() ? s : s.substr(0, s.find(sNext)));
}

std::string FullAddress(const std::string& sIP)
{
    return sIP.starts_with(g_sShortLinkLocal) ? std::string(g_sLinkLocal) + sIP.substr(g_sShortLinkLocal.size()) : sIP;
}

bool Odd(pugi::xml_node objCamera, std::string_view sOddity)
{
    return objCamera.attribute("Odd").value() == sOddity;
}

std::string Text(const pugi::xml_document& objDocument)
{
    std::ostringstream objText;
    objDocument.print(objText, "  ", pugi::format_indent | pugi::format_no_declaration);
    return objText.str();
}
} // namespace

struct CCameraRegistry::stDef_Impl
{
    pugi::xml_document objAll;

    pugi::xml_node Root() const { return objAll.document_element(); }

    pugi::xml_node CameraAt(const stDef_Wanted& stWanted) const
    {
        const std::string sIP = FullAddress(stWanted.sIP);
        return Root().find_child([&](pugi::xml_node obj) {
            return std::string_view(obj.name()) == "Camera" && obj.attribute("IP").value() == sIP &&
                   obj.attribute("HttpPort").as_int() == stWanted.nPort && !Odd(obj, "silent");
        });
    }
    pugi::xml_node ModelOf(pugi::xml_node objCamera) const
    {
        return Root().find_child_by_attribute("Model", "Name", objCamera.attribute("Model").value());
    }
    bool Accepts(pugi::xml_node objCamera, const stDef_Wanted& stWanted) const
    {
        const pugi::xml_node objAccount = objCamera.attribute("User") ? objCamera : Root();
        return !Odd(objCamera, "account") && stWanted.sUser == objAccount.attribute("User").value() &&
               stWanted.sPassword == objAccount.attribute("Password").value() &&
               ModelOf(objCamera).attribute("VendorID").as_int() == stWanted.nVendorID;
    }
};

CCameraRegistry::CCameraRegistry() : vm_pImpl(std::make_unique<stDef_Impl>()) {}

CCameraRegistry::~CCameraRegistry() = default;

bool CCameraRegistry::m_F_b_Load(const std::string& sFolder, std::string& sError)
{
    const auto objFile = std::filesystem::path(sFolder) / "Cameras.xml";
    std::error_code objIgnored;
    if (!std::filesystem::exists(objFile, objIgnored))
        return true;
    const auto objResult = vm_pImpl->objAll.load_file(objFile.c_str());
    if (!objResult)
        sError = objFile.string() + ": " + objResult.description();
    return objResult;
}

CCameraRegistry::stDef_Wanted CCameraRegistry::s_F_o_Parse(const std::string& sQuery)
{
    const std::size_t nTail = std::min(sQuery.rfind("&vendorid="), sQuery.size());
    const std::string_view sHead = std::string_view(sQuery).substr(0, nTail);
    const std::string_view sTail = std::string_view(sQuery).substr(nTail);
    stDef_Wanted st;
    st.sIP = Between(sHead, "&ip=", "&port=");
    st.nPort = std::atoi(Between(sHead, "&port=", "&uid=").c_str());
    st.sUser = Between(sHead, "&uid=", "&pwd=");
    st.sPassword = Between(sHead, "&pwd=", "");
    st.nVendorID = sTail.empty() ? -1 : std::atoi(Between(sTail, "&vendorid=", "&").c_str());
    st.nOnvifAuth = std::atoi(Between(sTail, "&onvifauth=", "&").c_str());
    return st;
}

std::string CCameraRegistry::m_F_s_Detect(const stDef_Wanted& stWanted) const
{
    const pugi::xml_node objCamera = vm_pImpl->CameraAt(stWanted);
    if (!objCamera || Odd(objCamera, "no-detect"))
        return {};
    const bool bAccepted = vm_pImpl->Accepts(objCamera, stWanted);
    pugi::xml_document objReply;
    pugi::xml_node objNode = objReply.append_child("root").append_child("Camera").append_child("Cam000");
    const std::string sModel = bAccepted ? objCamera.attribute("Model").value() : g_szUnknownModel;
    objNode.append_attribute("VendorID") = stWanted.nVendorID;
    objNode.append_attribute("Model") = sModel.c_str();
    objNode.append_attribute("Name") = objCamera.attribute("Name").value();
    objNode.append_attribute("IP") = stWanted.sIP.c_str();
    objNode.append_attribute("HttpPort") = stWanted.nPort;
    objNode.append_attribute("RtspPort") = objCamera.attribute("RtspPort").value();
    if (stWanted.nVendorID == g_nOnvif)
        objNode.append_attribute("OnvifAuth") = stWanted.nOnvifAuth;
    objNode.append_attribute("UserName") = stWanted.sUser.c_str();
    objNode.append_attribute("Password") = stWanted.sPassword.c_str();
    if (bAccepted)
        for (const pugi::xml_attribute& objKey : vm_pImpl->ModelOf(objCamera).child("Detect").attributes())
            objNode.append_copy(objKey);
    objNode.attribute("IPType").set_value(objCamera.attribute("IpType").value());
    return Text(objReply);
}

std::string CCameraRegistry::m_F_s_Support(const stDef_Wanted& stWanted) const
{
    const pugi::xml_node objCamera = vm_pImpl->CameraAt(stWanted);
    if (!objCamera || Odd(objCamera, "no-support") || !vm_pImpl->Accepts(objCamera, stWanted))
        return {};
    pugi::xml_document objReply;
    objReply.append_child("root").append_copy(vm_pImpl->ModelOf(objCamera).child("Support"));
    return Text(objReply);
}

std::string CCameraRegistry::m_F_s_Search() const
{
    pugi::xml_document objReply;
    pugi::xml_node objRoot = objReply.append_child("root");
    for (const pugi::xml_node& objCamera : vm_pImpl->Root().children("Camera")) {
        if (!objCamera.attribute("Listed").as_bool())
            continue;
        pugi::xml_node objRow = objRoot.append_child("IPC");
        const std::pair<const char*, const char*> arRow[] = {
            {"Vendor", vm_pImpl->ModelOf(objCamera).attribute("VendorID").value()},
            {"DeviceModel", objCamera.attribute("Model").value()},
            {"DeviceName", objCamera.attribute("Name").value()},
            {"IpType", objCamera.attribute("IpType").value()},
            {"IP", objCamera.attribute("IP").value()},
            {"BonjouIP", objCamera.attribute("IpType").as_int() ? objCamera.attribute("IP").value() : "0.0.0.0"},
            {"HttpPort", objCamera.attribute("HttpPort").value()},
            {"RtspPort", objCamera.attribute("RtspPort").value()},
            {"OnvifAuth", "1"},
            {"MAC", objCamera.attribute("MAC").value()},
        };
        for (const auto& [pszKey, pszValue] : arRow)
            objRow.append_attribute(pszKey) = pszValue;
    }
    return Text(objReply);
}
