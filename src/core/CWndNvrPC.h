#pragma once

#include "core/CWndNvrShared.h"

/// Connection to a recorder that is software on a PC. It has no settings sheets, and no language file unless the host
/// loads one.
class FLEETLINK_EXPORT CWndNvrPC : public CWndNvrShared
{
    Q_OBJECT

public:
    using CWndNvrShared::CWndNvrShared;

    void m_S_OnCommand(int) override {} // the menu shows, and does nothing
    /// Two requests; `pLoginInfo` is left alone.
    bool m_F_n_CameraSynchronization(CXmlObj* pSystemInfo, CXmlObj* pLoginInfo, CXmlObj* pCamera,
                                     int nTimeoutMs) override;
    int m_F_n_RecordBackup(stDef_RecordBackupInfo stInfo) override;

private:
    void m_S_CreateNewRtsp(int nNvrID, int nChannel, int nStream) override;
    QString m_F_s_CacheName() const override;
    std::array<stDef_CommandRow, 3> m_F_ar_Commands() const override;
    void m_S_ReadPtzNames(const CXmlObj& xmlReply, int nCamera, const QString& sGroup, QStringList& arNames) override;
};
