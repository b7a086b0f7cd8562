#include "setup/camera/stDef_CameraValues.h"

#include "drivers/stDef_CamConnect.h"
#include "host/Lib_Bedrock.h"

using namespace Qt::StringLiterals;

stDef_CameraValues stDef_CameraValues::s_F_o_Read(const CXmlObj& xmlCamera, const QString& sNode,
                                                  const stDef_Defaults& stDefaults)
{
    stDef_CameraValues st;
    const auto Read = [&](const QString& sKey, QString& sOut) { xmlCamera.m_F_n_GetValue(sNode, sKey, sOut, {}); };
    const auto ReadPort = [&](const QString& sKey, QString& sOut, std::optional<int> nDefault) {
        if (nDefault)
            sOut = QString::number(xmlCamera.m_F_n_GetValueInt(sNode, sKey, *nDefault));
        else
            Read(sKey, sOut);
    };
    st.nVendorID = xmlCamera.m_F_n_GetValueInt(sNode, u"VendorID"_s, stDefaults.nVendorID);
    Read(u"Model"_s, st.sModel);
    Read(u"Name"_s, st.sName);
    Read(u"IP"_s, st.sIP);
    ReadPort(u"HttpPort"_s, st.sHttpPort, stDefaults.nHttpPort);
    ReadPort(u"RtspPort"_s, st.sRtspPort, stDefaults.nRtspPort);
    st.nOnvifAuth = xmlCamera.m_F_n_GetValueInt(sNode, u"OnvifAuth"_s, 1);
    Read(u"UserName"_s, st.sUser);
    Read(u"Password"_s, st.sPassword);
    return st;
}

stDef_CamConnect stDef_CameraValues::m_F_o_Connect() const
{
    stDef_CamConnect st;
    st.nVendorID = nVendorID;
    st.strModel = CSFunc::s_F_s_UnicodeToAnsi(sModel);
    st.strName = CSFunc::s_F_s_UnicodeToUtf8(sName);
    st.strIP = CSFunc::s_F_s_UnicodeToAnsi(sIP);
    st.nHttpPort = CXmlObj::s_F_n_ToInt(sHttpPort);
    st.nRtspPort = CXmlObj::s_F_n_ToInt(sRtspPort);
    st.nOnvifAuth = nOnvifAuth;
    st.strUser = CSFunc::s_F_s_UnicodeToAnsi(sUser);
    st.strPassword = CSFunc::s_F_s_UnicodeToAnsi(sPassword);
    return st;
}
