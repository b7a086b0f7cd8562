#pragma once

#include <QByteArray>

/// How a camera is reached: by the recorder, never by us.
struct stDef_CamConnect
{
    qint32 nVendorID = -1;
    QByteArray strModel = "Any";
    QByteArray strName; ///< UTF-8
    QByteArray strIP;
    qint32 nHttpPort = 80;
    qint32 nRtspPort = 554;
    qint32 nOnvifAuth = 1; ///< 0 none, 1 WSSE
    QByteArray strUser = "admin";
    QByteArray strPassword;
};
