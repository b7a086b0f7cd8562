#include "setup/camera/stDef_SearchIPC.h"

#include "host/Lib_Bedrock.h"

using namespace Qt::StringLiterals;

void stDef_SearchIPC::m_S_Read(const CXmlNode& objNode)
{
    const auto Number = [&](const QString& sKey, qint32 nDefault) {
        return CXmlObj::s_F_n_GetNodeValInt(objNode, sKey, nDefault);
    };
    const auto Read = [&](const QString& sKey, QString& sOut) { CXmlObj::s_S_GetNodeVal(objNode, sKey, sOut, {}); };
    Vendor = Number(u"Vendor"_s, 0);
    Read(u"DeviceModel"_s, DeviceModel);
    Read(u"DeviceName"_s, DeviceName);
    IpType = Number(u"IpType"_s, 0);
    Read(u"IP"_s, IP);
    Read(u"BonjouIP"_s, BonjouIP);
    HttpPort = Number(u"HttpPort"_s, 80);
    RtspPort = Number(u"RtspPort"_s, 554);
    OnvifAuth = Number(u"OnvifAuth"_s, 1);
    Read(u"MAC"_s, MAC);
}

QString stDef_SearchIPC::m_F_s_Address() const
{
    return m_F_b_LinkLocal() ? QString(BonjouIP).replace(u"169.254."_s, u"ID@"_s) : IP;
}
