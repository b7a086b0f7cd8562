#include "cgi/CDeviceCgi.h"

#include <cstdio>
#include <pugixml.hpp>
#include <utility>

namespace {
constexpr char g_szOwnDipsId[] = "FL-000001";

// Flag 0 is the recorder itself, 1 to 4 the display styles, 13 recording of the second stream only.
constexpr char g_szDeviceFunc[] = "1,1,1,1,1,0,1,0,1,0,0,1,0,1,0,0";
} // namespace

std::vector<stDef_CgiRoute> CDeviceCgi::m_F_ar_Routes()
{
    using enum emDef_NvrKinds;
    return {
        {Embedded, "GET", "cgi-bin/param.cgi", "systeminfo", std::bind_front(&CDeviceCgi::m_F_o_SystemInfo, this)},
        {Both, "GET", "cgi-bin/logininfo.cgi", "", std::bind_front(&CDeviceCgi::m_F_o_LoginInfo, this)},
        {Embedded, "GET", "logininfo.cgi", "", std::bind_front(&CDeviceCgi::m_F_o_LoginInfo, this)},
        {PC, "GET", "cgi-bin/SystemStatus.cgi", "", std::bind_front(&CDeviceCgi::m_F_o_SystemStatus, this)},
        {Embedded, "GET", "param.cgi", "ddns", std::bind_front(&CDeviceCgi::m_F_o_TestDdns, this)},
        {Both, "GET", "dips/request.php", "", std::bind_front(&CDeviceCgi::m_F_o_Dips, this), false},
        {Both, "GET", "dips/register.php", "", std::bind_front(&CDeviceCgi::m_F_o_Register, this), false},
    };
}

/// A service bound to every address has to name one of them.
std::string CDeviceCgi::m_F_s_OwnAddress(const stDef_CgiRequest& stRequest) const
{
    const bool bAny = vm_stConfig.sBind == "0.0.0.0" || vm_stConfig.sBind == "::";
    return bAny ? stRequest.sHost : vm_stConfig.sBind;
}

stDef_CgiReply CDeviceCgi::m_F_o_SystemInfo(const stDef_CgiRequest& stRequest) const
{
    const std::string sAddress = m_F_s_OwnAddress(stRequest);
    const std::string sHttpPort = std::to_string(vm_stPorts.nHttp), sRtspPort = std::to_string(vm_stPorts.nRtsp);
    const std::string sChannels = std::to_string(vm_stConfig.nChannels);
    const std::pair<const char*, std::string> arLocal[] = {
        {"Model", "VN-16E"},
        {"Version", "3.2.1.0 (build 20270314)"},
        {"MaxCam", sChannels},
        {"DINum", "4"},
        {"DONum", "2"},
        {"MAC", "00:00:5E:00:53:01"},
        {"IP", sAddress},
        {"HttpPort", sHttpPort},
        {"RtspPort", sRtspPort},
        {"DIPS", g_szOwnDipsId},
        {"DIPS_URL", sAddress},
        {"DIPS_CGI", "dips/register.php"},
        {"PublicIP", "203.0.113.24"},
        {"ExternalIP", ""},
        {"ExternalPort", sHttpPort},
        {"FriendlyName", "Recorder at the gate (VN-16E)"},
        {"PPPoE_IP", "203.0.113.57"},
        {"PPPoE_SubMask", "255.255.255.255"},
        {"PPPoE_Gateway", "203.0.113.1"},
        {"PPPoE_Status", "Disconnected"},
    };
    pugi::xml_document objDocument;
    pugi::xml_node objLocal = objDocument.append_child("root").append_child("Local");
    for (const auto& [pszName, sValue] : arLocal)
        objLocal.append_attribute(pszName) = sValue.c_str();
    pugi::xml_node objLanguage = objLocal.append_child("Language");
    objLanguage.append_attribute("LangNum") = 3;
    objLanguage.append_attribute("Lang000") = "lang_eng.xml";
    objLanguage.append_attribute("Lang001") = "lang_cht.xml";
    objLanguage.append_attribute("Lang002") = "lang_deu.xml";
    return stDef_CgiReply::s_F_o_Envelope(objDocument);
}

stDef_CgiReply CDeviceCgi::m_F_o_LoginInfo(const stDef_CgiRequest& stRequest) const
{
    const std::string sAll(static_cast<std::size_t>(vm_stConfig.nChannels), '1');
    const std::pair<const char*, std::string> arMasks[] = {
        {"Preview_Privilege", stRequest.stAccount.sPreview.value_or(sAll)},
        {"Playback_Privilege", stRequest.stAccount.sPlayback.value_or(sAll)},
    };
    pugi::xml_document objDocument;
    pugi::xml_node objRoot = objDocument.append_child("root");
    for (const auto& [pszName, sMask] : arMasks)
        objRoot.append_child(pszName).text() = sMask.c_str();
    objRoot.append_child("DeviceFunc").text() = g_szDeviceFunc;
    return stDef_CgiReply::s_F_o_Envelope(objDocument);
}

stDef_CgiReply CDeviceCgi::m_F_o_SystemStatus(const stDef_CgiRequest& stRequest) const
{
    pugi::xml_document objDocument;
    pugi::xml_node objRoot = objDocument.append_child("root");
    pugi::xml_node objSystem = objRoot.append_child("System");
    objSystem.append_attribute("Model") = "VN-PC";
    objSystem.append_attribute("Version") = "5.0.3";
    objSystem.append_attribute("MaxCam") = vm_stConfig.nChannels;
    objSystem.append_attribute("IP") = m_F_s_OwnAddress(stRequest).c_str();
    objSystem.append_attribute("CPU") = "17%";
    objSystem.append_attribute("Memory") = "43%";
    pugi::xml_node objStatus = objRoot.append_child("Status");
    objStatus.append_attribute("count") = vm_stConfig.nChannels;
    for (int i = 0; i < vm_stConfig.nChannels; ++i) {
        char szName[16];
        std::snprintf(szName, sizeof szName, "Cam%03d", i);
        pugi::xml_node objCamera = objStatus.append_child(szName);
        objCamera.append_attribute("Connect") = 1;
        objCamera.append_attribute("Record") = 1;
    }
    return stDef_CgiReply::s_F_o_Envelope(objDocument);
}

// A service knows every host but the one without a name.
stDef_CgiReply CDeviceCgi::m_F_o_TestDdns(const stDef_CgiRequest& stRequest) const
{
    const std::string sHost = stRequest.m_F_s_Value("host");
    pugi::xml_document objReply;
    const std::string sMessage = sHost.empty() ? "no such host" : sHost + " = 203.0.113.24";
    objReply.append_child("root").append_child("Msg").text().set(sMessage.c_str());
    return stDef_CgiReply::s_F_o_Envelope(objReply);
}

stDef_CgiReply CDeviceCgi::m_F_o_Register(const stDef_CgiRequest& stRequest) const
{
    const std::string sId = stRequest.m_F_s_Value("id"), sAddress = stRequest.m_F_s_Value("ip");
    return stDef_CgiReply::s_F_o_Plain(200, sId.empty() ? "Error no id" : "Ok " + sId + " is at " + sAddress);
}

stDef_CgiReply CDeviceCgi::m_F_o_Dips(const stDef_CgiRequest& stRequest) const
{
    const std::string sId = stRequest.m_F_s_Value("id");
    if (sId == g_szOwnDipsId)
        return stDef_CgiReply::s_F_o_Plain(200, "OK http://" + m_F_s_OwnAddress(stRequest) + ":" +
                                                    std::to_string(vm_stPorts.nHttp));
    for (const auto& [sKnown, sTarget] : vm_stConfig.arDipsIds)
        if (sId == sKnown)
            return stDef_CgiReply::s_F_o_Plain(200, "OK http://" + sTarget);
    return stDef_CgiReply::s_F_o_Plain(200, "ERROR unknown id");
}
