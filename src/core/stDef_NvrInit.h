#pragma once

#include <QByteArray>

/// Address, account and ports of a recorder, as a host hands them to `CWndNvrBase::m_F_n_Init`.
struct stDef_NvrInit
{
    int nNvrID = -1;            ///< number of the recorder in the host's list, the N of `N%03d`; at most 1000
    QByteArray sIP = "0.0.0.0"; ///< address or host name
    QByteArray sDips;           ///< id of the recorder at the DIPS service
    QByteArray sUID;            ///< account name
    QByteArray sPWD;            ///< account password, in clear
    int nHttpPort = 80;
    int nRtspPort = 554;  ///< kept for the host; streams take theirs from the recorder list
    int nDataPort = 8866; ///< kept for the host
    int nOption = 1;      ///< kept for the host
    bool bDips = false;   ///< true: fetch address and port from the DIPS service in `m_F_n_Init`
};
