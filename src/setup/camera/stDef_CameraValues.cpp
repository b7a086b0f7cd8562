#include "setup/camera/stDef_CameraValues.h"

#include "drivers/stDef_CamConnect.h"
#include "host/Lib_Bedrock.h"

namespace {

using Values = stDef_CameraValues;
using Connect = stDef_CamConnect;

/// A value in the node, in the form and in the camera's object.
struct stDef_Row
{
    stDef_Member<Values> stMember;
    std::variant<qint32 Connect::*, QByteArray Connect::*> pConnect;
    int nUsual = 0;       ///< of a number that a node lacks, for the object
    bool bUpdated = true; ///< an update writes it
    bool bUtf8 = false;   ///< narrow text that isn't in the ANSI code page
};

constexpr stDef_Row g_astRows[] = {
    {{"VendorID", &Values::nVendorID}, &Connect::nVendorID, -1, false},
    {{"Model", &Values::sModel}, &Connect::strModel},
    {{"Name", &Values::sName}, &Connect::strName, 0, true, true},
    {{"IP", &Values::sIP}, &Connect::strIP},
    {{"HttpPort", &Values::sHttpPort}, &Connect::nHttpPort, 80},
    {{"RtspPort", &Values::sRtspPort}, &Connect::nRtspPort, 554},
    {{"OnvifAuth", &Values::nOnvifAuth, "", 1}, &Connect::nOnvifAuth, 1, false},
    {{"UserName", &Values::sUser}, &Connect::strUser},
    {{"Password", &Values::sPassword}, &Connect::strPassword},
};

void Give(Connect& st, const stDef_Row& stRow, const Values& stValues)
{
    const QString sValue = nsMembers::Text(stValues, stRow.stMember.pMember);
    if (const auto* const pNumber = std::get_if<qint32 Connect::*>(&stRow.pConnect))
        st.** pNumber = CXmlObj::s_F_n_ToInt(sValue);
    else
        st.*std::get<QByteArray Connect::*>(stRow.pConnect) =
            stRow.bUtf8 ? CSFunc::s_F_s_UnicodeToUtf8(sValue) : CSFunc::s_F_s_UnicodeToAnsi(sValue);
}

} // namespace

stDef_CameraValues stDef_CameraValues::s_F_o_Read(const CXmlObj& xmlCamera, const QString& sNode)
{
    Values st;
    for (const stDef_Row& stRow : g_astRows)
        nsMembers::ReadOne(xmlCamera, sNode, stRow.stMember, st);
    return st;
}

stDef_CamConnect stDef_CameraValues::s_F_o_ReadConnect(const CXmlObj& xmlCamera, const QString& sNode)
{
    Connect st = s_F_o_Read(xmlCamera, sNode).m_F_o_Connect();
    for (const stDef_Row& stRow : g_astRows) {
        if (const auto* const pNumber = std::get_if<qint32 Connect::*>(&stRow.pConnect))
            st.** pNumber =
                xmlCamera.m_F_n_GetValueInt(sNode, QString::fromLatin1(stRow.stMember.pszKey), stRow.nUsual);
    }
    return st;
}

void stDef_CameraValues::m_S_WriteUpdate(CXmlObj& xmlCamera, const QString& sNode) const
{
    for (const stDef_Row& stRow : g_astRows) {
        if (stRow.bUpdated)
            nsMembers::WriteOne(xmlCamera, sNode, stRow.stMember, *this);
    }
}

stDef_CamConnect stDef_CameraValues::m_F_o_Connect() const
{
    Connect st;
    for (const stDef_Row& stRow : g_astRows)
        Give(st, stRow, *this);
    return st;
}
