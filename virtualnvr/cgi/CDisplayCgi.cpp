#include "cgi/CDisplayCgi.h"

#include <pugixml.hpp>
#include <utility>

std::vector<stDef_CgiRoute> CDisplayCgi::m_F_ar_Routes()
{
    using enum emDef_NvrKinds;
    return {
        {Embedded, "GET", "cgi-bin/uictrl.cgi", "urlctrl", std::bind_front(&CDisplayCgi::m_F_o_Set, this)},
        {Embedded, "GET", "cgi-bin/uictrl.cgi", "status", std::bind_front(&CDisplayCgi::m_F_o_Status, this)},
    };
}

stDef_CgiReply CDisplayCgi::m_F_o_Set(const stDef_CgiRequest& stRequest)
{
    const std::lock_guard objGuard(vm_objLock);
    vm_mapLayout = stRequest.mapQuery;
    return stDef_CgiReply::s_F_o_Plain(200, "OK");
}

stDef_CgiReply CDisplayCgi::m_F_o_Status(const stDef_CgiRequest&) const
{
    static constexpr std::pair<const char*, const char*> s_arKeys[] = {
        {"fullscreen", "FullScreen"}, {"quad", "Quad"}, {"style", "Style"}, {"camarray", "CamArray"}};
    pugi::xml_document objReply;
    pugi::xml_node objNode = objReply.append_child("root").append_child("Display");
    const std::lock_guard objGuard(vm_objLock);
    for (const auto& [pszKey, pszName] : s_arKeys) {
        const auto it = vm_mapLayout.find(pszKey);
        objNode.append_attribute(pszName) = it == vm_mapLayout.end() ? "" : it->second.c_str();
    }
    return stDef_CgiReply::s_F_o_Envelope(objReply);
}
