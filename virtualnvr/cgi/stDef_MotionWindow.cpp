#include "cgi/stDef_MotionWindow.h"

#include <pugixml.hpp>
#include <string_view>

void stDef_MotionWindow::m_S_Write(pugi::xml_node objNode, bool bType) const
{
    objNode.append_attribute("Index") = nIndex;
    objNode.append_attribute("Name") = sName.c_str();
    for (const auto& [pszKey, pNumber] : s_arNumbers)
        objNode.append_attribute(pszKey) = this->*pNumber;
    if (bType)
        objNode.append_attribute("WindowType") = bExclude ? "exclude" : "include";
}

stDef_MotionWindow stDef_MotionWindow::s_F_o_Read(const pugi::xml_node& objNode)
{
    stDef_MotionWindow st;
    st.nIndex = objNode.attribute("Index").as_int(-1);
    st.sName = objNode.attribute("Name").value();
    for (const auto& [pszKey, pNumber] : s_arNumbers)
        st.*pNumber = objNode.attribute(pszKey).as_int(-1);
    st.bExclude = std::string_view(objNode.attribute("WindowType").value()) == "exclude";
    return st;
}
