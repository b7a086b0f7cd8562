#include "cgi/CRecorderCgi.h"

#include "cgi/CCameraRegistry.h"
#include "cgi/CDocumentStore.h"
#include "http/UrlText.h"
#include "scene/CPtzBoard.h"
#include "scene/stDef_PtzPlaces.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <pugixml.hpp>
#include <sstream>
#include <string_view>
#include <thread>

namespace {
constexpr unsigned g_nEmbedded = 1, g_nPC = 2, g_nBoth = 3;
constexpr char g_szOwnDipsId[] = "FL-000001";
constexpr int g_nMotionWindows = 3, g_nMotionIntervalMs = 100, g_nMotionThreshold = 50;

// Flag 0 is the recorder itself, 1 to 4 the display styles, 13 recording of the second stream only.
constexpr char g_szDeviceFunc[] = "1,1,1,1,1,0,1,0,1,0,0,1,0,1,0,0";

/// The text without byte order mark and XML declaration, which may not stand inside an envelope.
std::string_view Bare(std::string_view s)
{
    if (s.substr(0, 3) == "\xEF\xBB\xBF")
        s.remove_prefix(3);
    const std::size_t nEnd = s.substr(0, 6) == "<?xml " ? s.find("?>") : std::string_view::npos;
    if (nEnd == std::string_view::npos)
        return s;
    s.remove_prefix(nEnd + 2);
    return s.substr(std::min(s.find_first_not_of("\r\n"), s.size()));
}

stDef_CgiReply Envelope(std::string_view sDocument, int nStatus = 200)
{
    stDef_CgiReply stReply;
    stReply.nStatus = nStatus;
    stReply.sBody = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<XML>\n";
    stReply.sBody += Bare(sDocument);
    stReply.sBody += "\n</XML>\n";
    return stReply;
}

stDef_CgiReply Envelope(const pugi::xml_document& objDocument, int nStatus = 200)
{
    std::ostringstream objText;
    objDocument.document_element().print(objText, "  ");
    return Envelope(objText.str(), nStatus);
}

stDef_CgiReply Plain(int nStatus, const std::string& sText)
{
    stDef_CgiReply stReply;
    stReply.nStatus = nStatus;
    stReply.sType = "text/plain; charset=utf-8";
    stReply.sBody = sText + "\r\n";
    return stReply;
}

std::string Value(const stDef_CgiRequest& stRequest, const char* pszKey)
{
    const auto it = stRequest.mapQuery.find(pszKey);
    return it == stRequest.mapQuery.end() ? std::string() : it->second;
}

/// -1 if the value isn't a number.
int Number(const stDef_CgiRequest& stRequest, const char* pszKey)
{
    const std::string s = Value(stRequest, pszKey);
    int n = -1;
    const auto [pEnd, eError] = std::from_chars(s.data(), s.data() + s.size(), n);
    return eError == std::errc() && pEnd == s.data() + s.size() ? n : -1;
}

/// One part of the motion stream: a line a motion window. Each window's level swings with a period of its own, so that
/// all of them light up now and then, as before a real scene.
std::string MotionLines(int nCamera, long nPart)
{
    std::string sLines;
    for (int i = 0; i < g_nMotionWindows; ++i) {
        const double dPhase = 0.1 * static_cast<double>(nPart) * (1.0 + 0.37 * i) + nCamera;
        const int nLevel = static_cast<int>(50.0 + 45.0 * std::sin(dPhase));
        sLines += "group=" + std::to_string(i) + " level=" + std::to_string(nLevel) +
                  " threshold=" + std::to_string(g_nMotionThreshold) +
                  " motion=" + (nLevel > g_nMotionThreshold ? "1" : "0") + "\r\n";
    }
    return sLines;
}
} // namespace

struct CRecorderCgi::stDef_Route
{
    unsigned nKinds;
    std::string_view sMethod, sPath;
    std::string_view sAction; ///< value of "action"; empty: any
    bool bLogin;
    stDef_CgiReply (CRecorderCgi::*pHandler)(const stDef_CgiRequest&, int) const;
    int nArg;
};

namespace {
constexpr int Arg(emDef_Document eDocument)
{
    return static_cast<int>(eDocument);
}

/// What a recorder asks of cameras, and how many times the probe delay that takes.
struct stDef_CameraRequest
{
    std::string (*fnAsk)(const CCameraRegistry&, const std::string& sQuery);
    int nDelays;
};

constexpr stDef_CameraRequest g_arCameraRequests[] = {
    {[](const CCameraRegistry& obj, const std::string& s) { return obj.m_F_s_Detect(CCameraRegistry::s_F_o_Parse(s)); },
     1},
    {[](const CCameraRegistry& obj, const std::string& s) {
         return obj.m_F_s_Support(CCameraRegistry::s_F_o_Parse(s));
     },
     1},
    {[](const CCameraRegistry& obj, const std::string&) { return obj.m_F_s_Search(); }, 4},
};
constexpr int g_nDetect = 0, g_nSupport = 1, g_nSearch = 2;
} // namespace

// clang-format off
constexpr CRecorderCgi::stDef_Route CRecorderCgi::s_arRoutes[] = {
    {g_nEmbedded, "GET", "cgi-bin/param.cgi", "systeminfo", true, &CRecorderCgi::m_F_o_SystemInfo, 0},
    {g_nBoth, "GET", "cgi-bin/logininfo.cgi", "", true, &CRecorderCgi::m_F_o_LoginInfo, 0},
    {g_nEmbedded, "GET", "logininfo.cgi", "", true, &CRecorderCgi::m_F_o_LoginInfo, 0},
    {g_nEmbedded, "GET", "cgi-bin/SyncSetting.cgi", "SystemXML", true, &CRecorderCgi::m_F_o_GetDocument, Arg(emDef_Document::System)},
    {g_nEmbedded, "GET", "cgi-bin/SyncSetting.cgi", "ScheduleXML", true, &CRecorderCgi::m_F_o_GetDocument, Arg(emDef_Document::Schedule)},
    {g_nEmbedded, "GET", "cgi-bin/SyncSetting.cgi", "CameraXML", true, &CRecorderCgi::m_F_o_GetDocument, Arg(emDef_Document::Camera)},
    {g_nEmbedded, "GET", "cgi-bin/SyncSetting.cgi", "EMailXML", true, &CRecorderCgi::m_F_o_GetDocument, Arg(emDef_Document::EMail)},
    {g_nEmbedded, "POST", "cgi-bin/SyncSetting.cgi", "UpdateSystem", true, &CRecorderCgi::m_F_o_PutDocument, Arg(emDef_Document::System)},
    {g_nEmbedded, "POST", "cgi-bin/SyncSetting.cgi", "UpdateSchedule", true, &CRecorderCgi::m_F_o_PutDocument, Arg(emDef_Document::Schedule)},
    {g_nEmbedded, "POST", "cgi-bin/SyncSetting.cgi", "UpdateCamera", true, &CRecorderCgi::m_F_o_PutDocument, Arg(emDef_Document::Camera)},
    {g_nEmbedded, "POST", "cgi-bin/SyncSetting.cgi", "UpdateEMail", true, &CRecorderCgi::m_F_o_PutDocument, Arg(emDef_Document::EMail)},
    {g_nEmbedded, "GET", "cgi-bin/param.cgi", "detect", true, &CRecorderCgi::m_F_o_FromCamera, g_nDetect},
    {g_nEmbedded, "GET", "cgi-bin/param.cgi", "camerasupport", true, &CRecorderCgi::m_F_o_FromCamera, g_nSupport},
    {g_nEmbedded, "GET", "cgi-bin/SearchIPC.cgi", "", true, &CRecorderCgi::m_F_o_FromCamera, g_nSearch},
    {g_nBoth, "GET", "cgi-bin/param.cgi", "list", true, &CRecorderCgi::m_F_o_PtzNames, 0},
    {g_nBoth, "GET", "cgi-bin/ptz.cgi", "", true, &CRecorderCgi::m_F_o_Ptz, 0},
    {g_nBoth, "GET", "cgi-bin/ptzstatus.cgi", "", true, &CRecorderCgi::m_F_o_PtzStatus, 0},
    {g_nEmbedded, "GET", "cgi-bin/uictrl.cgi", "urlctrl", true, &CRecorderCgi::m_F_o_SetDisplay, 0},
    {g_nEmbedded, "GET", "cgi-bin/uictrl.cgi", "status", true, &CRecorderCgi::m_F_o_Display, 0},
    {g_nEmbedded, "GET", "param.cgi", "ddns", true, &CRecorderCgi::m_F_o_TestDdns, 0},
    {g_nEmbedded, "GET", "cgi-bin/motiondata.cgi", "", true, &CRecorderCgi::m_F_o_MotionData, 0},
    {g_nPC, "GET", "cgi-bin/SystemStatus.cgi", "", true, &CRecorderCgi::m_F_o_SystemStatus, 0},
    {g_nPC, "GET", "cgi-bin/CMS.cgi", "CamXml", true, &CRecorderCgi::m_F_o_GetDocument, Arg(emDef_Document::Camera)},
    {g_nBoth, "GET", "dips/request.php", "", false, &CRecorderCgi::m_F_o_Dips, 0},
};
// clang-format on

CRecorderCgi::CRecorderCgi(const stDef_VirtualNvrConfig& stConfig, CDocumentStore& objDocuments, CPtzBoard& objPtz,
                           const CCameraRegistry& objCameras)
    : vm_stConfig(stConfig), vm_objDocuments(objDocuments), vm_objPtz(objPtz), vm_objCameras(objCameras)
{}

void CRecorderCgi::m_S_SetPorts(int nHttpPort, int nRtspPort)
{
    vm_nHttpPort = nHttpPort;
    vm_nRtspPort = nRtspPort;
}

const CRecorderCgi::stDef_Route* CRecorderCgi::m_F_p_Find(const stDef_CgiRequest& stRequest) const
{
    const unsigned nKind = vm_stConfig.bPC ? g_nPC : g_nEmbedded;
    const std::string sAction = Value(stRequest, "action");
    const auto* pRoute = std::find_if(std::begin(s_arRoutes), std::end(s_arRoutes), [&](const stDef_Route& stRoute) {
        return (stRoute.nKinds & nKind) != 0 && stRoute.sMethod == stRequest.sMethod &&
               stRoute.sPath == stRequest.sPath && (stRoute.sAction.empty() || stRoute.sAction == sAction);
    });
    return pRoute == std::end(s_arRoutes) ? nullptr : pRoute;
}

bool CRecorderCgi::m_F_b_NeedsLogin(const stDef_CgiRequest& stRequest) const
{
    const stDef_Route* pRoute = m_F_p_Find(stRequest);
    return !pRoute || pRoute->bLogin;
}

stDef_CgiReply CRecorderCgi::m_F_o_Answer(const stDef_CgiRequest& stRequest) const
{
    const stDef_Route* pRoute = m_F_p_Find(stRequest);
    return pRoute ? (this->*pRoute->pHandler)(stRequest, pRoute->nArg) : Plain(404, "ERROR: no such program");
}

void CRecorderCgi::s_S_Split(const std::string& sTarget, stDef_CgiRequest& stRequest)
{
    std::string_view s(sTarget);
    s.remove_prefix(std::min(s.find_first_not_of('/'), s.size()));
    const std::size_t nQuery = std::min(s.find('?'), s.size());
    stRequest.sPath = nsUrlText::Decoded(s.substr(0, nQuery));
    s.remove_prefix(std::min(nQuery + 1, s.size()));
    stRequest.sQuery = s;
    while (!s.empty()) {
        const std::size_t nEnd = std::min(s.find('&'), s.size());
        const std::string_view sItem = s.substr(0, nEnd);
        const std::size_t nEquals = std::min(sItem.find('='), sItem.size());
        const std::size_t nValue = std::min(nEquals + 1, sItem.size());
        stRequest.mapQuery[nsUrlText::Decoded(sItem.substr(0, nEquals))] = nsUrlText::Decoded(sItem.substr(nValue));
        s.remove_prefix(std::min(nEnd + 1, s.size()));
    }
}

/// A service bound to every address has to name one of them.
std::string CRecorderCgi::m_F_s_OwnAddress(const stDef_CgiRequest& stRequest) const
{
    const bool bAny = vm_stConfig.sBind == "0.0.0.0" || vm_stConfig.sBind == "::";
    return bAny ? stRequest.sHost : vm_stConfig.sBind;
}

bool CRecorderCgi::m_F_b_HasCamera(int nCamera) const
{
    return nCamera >= 0 && nCamera < vm_stConfig.nChannels;
}

stDef_CgiReply CRecorderCgi::m_F_o_FromCamera(const stDef_CgiRequest& stRequest, int nRequest) const
{
    const stDef_CameraRequest& stAsked = g_arCameraRequests[nRequest];
    std::this_thread::sleep_for(std::chrono::milliseconds(vm_stConfig.nProbeDelayMs * stAsked.nDelays));
    const std::string sReply = stAsked.fnAsk(vm_objCameras, stRequest.sQuery);
    return sReply.empty() ? Plain(504, "ERROR: no answer from the camera") : Envelope(sReply);
}

stDef_CgiReply CRecorderCgi::m_F_o_Ptz(const stDef_CgiRequest& stRequest, int) const
{
    const int nCamera = Number(stRequest, "camera");
    if (!m_F_b_HasCamera(nCamera))
        return Plain(404, "ERROR: no such camera");
    const bool bTaken = vm_objPtz.m_F_b_Command(nCamera, stRequest.mapQuery);
    return bTaken ? Plain(200, "OK") : Plain(400, "ERROR: no such command, preset or tour");
}

stDef_CgiReply CRecorderCgi::m_F_o_PtzStatus(const stDef_CgiRequest& stRequest, int) const
{
    const int nCamera = Number(stRequest, "camera");
    if (!m_F_b_HasCamera(nCamera))
        return Plain(404, "ERROR: no such camera");
    const stDef_PtzState stState = vm_objPtz.m_F_o_State(nCamera);
    pugi::xml_document objReply;
    pugi::xml_node objNode = objReply.append_child("root").append_child("Ptz");
    const std::pair<const char*, float> arPose[] = {
        {"Pan", stState.stPose.fPan}, {"Tilt", stState.stPose.fTilt}, {"Zoom", std::exp2(stState.stPose.fZoom)}};
    for (const auto& [pszKey, fValue] : arPose) {
        char szValue[32];
        std::snprintf(szValue, sizeof szValue, "%.2f", static_cast<double>(fValue));
        objNode.append_attribute(pszKey) = szValue;
    }
    const std::pair<const char*, int> arRest[] = {{"Moving", stState.bMoving},       {"Focus", stState.nFocus},
                                                  {"AutoFocus", stState.bAutoFocus}, {"Iris", stState.nIris},
                                                  {"AutoIris", stState.bAutoIris},   {"AutoPan", stState.bAutoPan},
                                                  {"Preset", stState.nPreset},       {"Tour", stState.nTour}};
    for (const auto& [pszKey, nValue] : arRest)
        objNode.append_attribute(pszKey) = nValue;
    return Envelope(objReply);
}

// The two kinds tell the names of tours and presets in forms of their own.
stDef_CgiReply CRecorderCgi::m_F_o_PtzNames(const stDef_CgiRequest& stRequest, int) const
{
    const std::string sGroup = Value(stRequest, "group");
    const int nCamera = Number(stRequest, "camera");
    if ((sGroup != "tourset" && sGroup != "preset") || !m_F_b_HasCamera(nCamera))
        return Plain(404, "ERROR: no such list");
    char szText[32];
    std::snprintf(szText, sizeof szText, vm_stConfig.bPC ? "Camera_%d" : "Cam%03d", nCamera);
    pugi::xml_document objReply;
    pugi::xml_node objList = objReply.append_child("root").append_child(szText).append_child(sGroup.c_str());
    const auto list = [&](const auto& arPlaces) {
        if (!vm_stConfig.bPC)
            objList.append_attribute("count") = arPlaces.size();
        for (std::size_t i = 0; i < arPlaces.size(); ++i) {
            std::snprintf(szText, sizeof szText, "Name%03zu", i);
            if (vm_stConfig.bPC)
                objList.append_child("Name").text() = arPlaces[i].pszName;
            else
                objList.append_attribute(szText) = arPlaces[i].pszName;
        }
    };
    const stDef_PtzPlaces& stPlaces = stDef_PtzPlaces::s_F_o_Of(nCamera);
    if (sGroup == "preset")
        list(stPlaces.arPresets);
    else
        list(stPlaces.arTours);
    return Envelope(objReply);
}

stDef_CgiReply CRecorderCgi::m_F_o_SetDisplay(const stDef_CgiRequest& stRequest, int) const
{
    const std::lock_guard objGuard(vm_objDisplayLock);
    vm_mapDisplay = stRequest.mapQuery;
    return Plain(200, "OK");
}

stDef_CgiReply CRecorderCgi::m_F_o_Display(const stDef_CgiRequest&, int) const
{
    static constexpr std::pair<const char*, const char*> s_arKeys[] = {
        {"fullscreen", "FullScreen"}, {"quad", "Quad"}, {"style", "Style"}, {"camarray", "CamArray"}};
    pugi::xml_document objReply;
    pugi::xml_node objNode = objReply.append_child("root").append_child("Display");
    const std::lock_guard objGuard(vm_objDisplayLock);
    for (const auto& [pszKey, pszName] : s_arKeys) {
        const auto it = vm_mapDisplay.find(pszKey);
        objNode.append_attribute(pszName) = it == vm_mapDisplay.end() ? "" : it->second.c_str();
    }
    return Envelope(objReply);
}

// A service knows every host but the one without a name.
stDef_CgiReply CRecorderCgi::m_F_o_TestDdns(const stDef_CgiRequest& stRequest, int) const
{
    const std::string sHost = Value(stRequest, "host");
    pugi::xml_document objReply;
    const std::string sMessage = sHost.empty() ? "no such host" : sHost + " = 203.0.113.24";
    objReply.append_child("root").append_child("Msg").text().set(sMessage.c_str());
    return Envelope(objReply);
}

stDef_CgiReply CRecorderCgi::m_F_o_SystemInfo(const stDef_CgiRequest& stRequest, int) const
{
    const std::string sAddress = m_F_s_OwnAddress(stRequest);
    const std::string sHttpPort = std::to_string(vm_nHttpPort), sRtspPort = std::to_string(vm_nRtspPort);
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
    return Envelope(objDocument);
}

stDef_CgiReply CRecorderCgi::m_F_o_LoginInfo(const stDef_CgiRequest&, int) const
{
    const std::string sMask(static_cast<std::size_t>(vm_stConfig.nChannels), '1');
    pugi::xml_document objDocument;
    pugi::xml_node objRoot = objDocument.append_child("root");
    for (const char* pszMask : {"Preview_Privilege", "Playback_Privilege"})
        objRoot.append_child(pszMask).text() = sMask.c_str();
    objRoot.append_child("DeviceFunc").text() = g_szDeviceFunc;
    return Envelope(objDocument);
}

stDef_CgiReply CRecorderCgi::m_F_o_GetDocument(const stDef_CgiRequest&, int nArg) const
{
    return Envelope(vm_objDocuments.m_F_s_Get(static_cast<emDef_Document>(nArg)));
}

stDef_CgiReply CRecorderCgi::m_F_o_PutDocument(const stDef_CgiRequest& stRequest, int nArg) const
{
    std::string sError;
    const bool bStored = vm_objDocuments.m_F_b_Put(static_cast<emDef_Document>(nArg), stRequest.sBody, sError);
    pugi::xml_document objDocument;
    pugi::xml_node objResult = objDocument.append_child("root").append_child("Result");
    objResult.append_attribute("Code") = bStored ? "OK" : "ERROR";
    if (!bStored)
        objResult.append_attribute("Reason") = sError.c_str();
    return Envelope(objDocument, bStored ? 200 : 400);
}

stDef_CgiReply CRecorderCgi::m_F_o_Dips(const stDef_CgiRequest& stRequest, int) const
{
    const std::string sId = Value(stRequest, "id");
    if (sId == g_szOwnDipsId)
        return Plain(200, "OK http://" + m_F_s_OwnAddress(stRequest) + ":" + std::to_string(vm_nHttpPort));
    for (const auto& [sKnown, sTarget] : vm_stConfig.arDipsIds)
        if (sId == sKnown)
            return Plain(200, "OK http://" + sTarget);
    return Plain(200, "ERROR unknown id");
}

stDef_CgiReply CRecorderCgi::m_F_o_MotionData(const stDef_CgiRequest& stRequest, int) const
{
    const int nCamera = Number(stRequest, "camera");
    if (!m_F_b_HasCamera(nCamera))
        return Plain(404, "ERROR: no such camera");
    stDef_CgiReply stReply;
    stReply.sType = "text/plain";
    stReply.nPartIntervalMs = g_nMotionIntervalMs;
    stReply.fnPart = [nCamera](long nPart) { return MotionLines(nCamera, nPart); };
    return stReply;
}

stDef_CgiReply CRecorderCgi::m_F_o_SystemStatus(const stDef_CgiRequest& stRequest, int) const
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
    return Envelope(objDocument);
}
