#pragma once

#include <QString>

/// What an operator or a recorder card tells of a recorder. The password is in clear: hold it only as long as the form
/// is open, and never print it.
struct stDef_RecorderForm
{
    QString sName; ///< empty: the address serves as name
    QString sAddress;
    QString sDips; ///< id at the directory service
    QString sUser;
    QString sPassword; ///< empty: the stored one stays
    int nType = 1;     ///< 0 PC recorder, 1 embedded recorder
    int nHttpPort = 80;
    int nRtspPort = 554;
    int nStreamType = 1; ///< 0 HTTP tunnel, 1 TCP, 2 UDP
    int nDstType = 0;    ///< 1: the address comes from the directory service
    int nChannels = 4;
};

enum class emDef_RecorderField
{
    Name,
    Address,
    Dips,
    User,
    Type,
    HttpPort,
    RtspPort,
    StreamType,
    DstType,
    Channels
};

/// What is wrong with a field, as a sentence for the operator.
struct stDef_FormFault
{
    emDef_RecorderField nField;
    QString sText;
};
