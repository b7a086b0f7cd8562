#include "host/hostenv/CLangXMLObj.h"

using namespace Qt::StringLiterals;

namespace {

CLangXMLObj::Asked g_fnAsked = nullptr;

} // namespace

void CLangXMLObj::s_S_Watch(Asked fnAsked)
{
    g_fnAsked = fnAsked;
}

bool CLangXMLObj::m_F_b_LoadXML(const QString& sXml)
{
    return m_F_b_TakeTexts(CXmlObj::m_F_b_LoadXML(sXml));
}

bool CLangXMLObj::m_F_b_LoadXMLFile(const QString& sPath)
{
    return m_F_b_TakeTexts(CXmlObj::m_F_b_LoadXMLFile(sPath));
}

bool CLangXMLObj::m_F_b_TakeTexts(bool bLoaded)
{
    vm_mapTexts.clear();
    if (!bLoaded)
        return false;
    CXmlNodeList objTexts = m_S_SelectNodesByKey(u"/root/Text"_s);
    for (CXmlNode objText = objTexts.m_F_o_NextNode(); !objText.m_F_b_IsNull(); objText = objTexts.m_F_o_NextNode()) {
        QString sKey, sValue;
        s_S_GetNodeVal(objText, u"Key"_s, sKey, {});
        s_S_GetNodeVal(objText, u"Value"_s, sValue, {});
        if (!vm_mapTexts.contains(sKey))
            vm_mapTexts.insert(sKey, sValue);
    }
    return true;
}

int CLangXMLObj::m_F_n_GetLangStr(const QString& sKey, QString& sOut, const QString& sDefault) const
{
    const auto it = vm_mapTexts.constFind(sKey);
    const bool bFound = m_F_b_IsOpen() && it != vm_mapTexts.constEnd();
    if (g_fnAsked && m_F_b_IsOpen())
        g_fnAsked(*this, sKey, sDefault, bFound ? &*it : nullptr);
    sOut = bFound ? *it : sDefault;
    return bFound ? 1 : 0;
}
