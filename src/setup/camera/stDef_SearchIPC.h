#pragma once

#include <QString>

class CXmlNode;
struct stDef_CameraTemplate;
struct stDef_CameraValues;

/// A camera that the recorder found on its network.
struct stDef_SearchIPC
{
    qint32 Vendor = -1;
    qint32 nVendorRow = -1; ///< position in the vendor list; -1 if that lacks the vendor
    QString DeviceModel;
    QString DeviceName;
    qint32 IpType = -1; ///< 0: reached by `IP`; else it has a link-local address only, `BonjouIP`
    QString IP = QStringLiteral("0.0.0.0");
    QString BonjouIP = QStringLiteral("0.0.0.0");
    qint32 HttpPort = 0;
    qint32 RtspPort = 0;
    qint32 OnvifAuth = 1;
    QString MAC = QStringLiteral("00:00:00:00:00:00");

    /// Takes over what the node has.
    void m_S_Read(const CXmlNode& objNode);
    /// The address as the list and the form have it: link-local ones in the recorder's short form, "ID@12.7".
    QString m_F_s_Address() const;
    /// As the form shows it, with the account of the template.
    stDef_CameraValues m_F_o_Camera(const stDef_CameraTemplate& stTemplate) const;
    /// Whether it has a link-local address only.
    bool m_F_b_LinkLocal() const { return IpType != 0; }
};
