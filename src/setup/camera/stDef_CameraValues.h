#pragma once

#include <QString>

class CXmlObj;
struct stDef_CamConnect;

inline constexpr int g_nOnvifVendor = 4;

/// One camera as the form of the Camera page has it: texts and ports as they are written there.
struct stDef_CameraValues
{
    int nVendorID = -1; ///< -1: none
    QString sModel;
    QString sName;
    QString sIP;
    QString sHttpPort;
    QString sRtspPort;
    int nOnvifAuth = 1;
    QString sUser;
    QString sPassword;

    /// A stored camera as the form shows it: ports as the texts that stand there.
    static stDef_CameraValues s_F_o_Read(const CXmlObj& xmlCamera, const QString& sNode);
    /// A stored camera as its object has it: ports are numbers, and a missing one is the usual one.
    static stDef_CamConnect s_F_o_ReadConnect(const CXmlObj& xmlCamera, const QString& sNode);
    /// Writes what an update changes: neither the vendor nor the authentication, which reaches the object alone.
    void m_S_WriteUpdate(CXmlObj& xmlCamera, const QString& sNode) const;
    /// Ports that are no numbers become 0.
    stDef_CamConnect m_F_o_Connect() const;
};
