#include "cgi/CPtzCgi.h"

#include "scene/CPtzBoard.h"
#include "scene/stDef_PtzPlaces.h"

#include <cmath>
#include <cstdio>
#include <pugixml.hpp>

std::vector<stDef_CgiRoute> CPtzCgi::m_F_ar_Routes()
{
    using enum emDef_NvrKinds;
    return {
        {Both, "GET", "cgi-bin/param.cgi", "list", std::bind_front(&CPtzCgi::m_F_o_Names, this)},
        {Both, "GET", "cgi-bin/ptz.cgi", "", std::bind_front(&CPtzCgi::m_F_o_Command, this)},
        {Both, "GET", "cgi-bin/ptzstatus.cgi", "", std::bind_front(&CPtzCgi::m_F_o_Status, this)},
    };
}

stDef_CgiReply CPtzCgi::m_F_o_Command(const stDef_CgiRequest& stRequest)
{
    const int nCamera = stRequest.m_F_n_Camera(vm_nChannels);
    if (nCamera < 0)
        return stDef_CgiReply::s_F_o_Plain(404, "ERROR: no such camera");
    const bool bTaken = vm_objPtz.m_F_b_Command(nCamera, stRequest.mapQuery);
    return bTaken ? stDef_CgiReply::s_F_o_Plain(200, "OK")
                  : stDef_CgiReply::s_F_o_Plain(400, "ERROR: no such command, preset or tour");
}

stDef_CgiReply CPtzCgi::m_F_o_Status(const stDef_CgiRequest& stRequest) const
{
    const int nCamera = stRequest.m_F_n_Camera(vm_nChannels);
    if (nCamera < 0)
        return stDef_CgiReply::s_F_o_Plain(404, "ERROR: no such camera");
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
    return stDef_CgiReply::s_F_o_Envelope(objReply);
}

// The two kinds tell the names of tours and presets in forms of their own.
stDef_CgiReply CPtzCgi::m_F_o_Names(const stDef_CgiRequest& stRequest) const
{
    const std::string sGroup = stRequest.m_F_s_Value("group");
    const int nCamera = stRequest.m_F_n_Camera(vm_nChannels);
    if ((sGroup != "tourset" && sGroup != "preset") || nCamera < 0)
        return stDef_CgiReply::s_F_o_Plain(404, "ERROR: no such list");
    char szText[32];
    std::snprintf(szText, sizeof szText, vm_bPC ? "Camera_%d" : "Cam%03d", nCamera);
    pugi::xml_document objReply;
    pugi::xml_node objList = objReply.append_child("root").append_child(szText).append_child(sGroup.c_str());
    const auto list = [&](const auto& arPlaces) {
        if (!vm_bPC)
            objList.append_attribute("count") = arPlaces.size();
        for (std::size_t i = 0; i < arPlaces.size(); ++i) {
            std::snprintf(szText, sizeof szText, "Name%03zu", i);
            if (vm_bPC)
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
    return stDef_CgiReply::s_F_o_Envelope(objReply);
}
