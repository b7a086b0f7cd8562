#pragma once

#include "core/CWndNvrShared.h"

/// Connection to a recorder appliance.
class FLEETLINK_EXPORT CWndNvrEmbedded : public CWndNvrShared
{
    Q_OBJECT

public:
    using CWndNvrShared::CWndNvrShared;

    /// Loads the language file of the host's language first, also when the checks of the base then fail.
    int m_F_n_Init(stDef_NvrInit stInit) override;

    /// Fetches the recorder's settings, lets the user edit them in a sheet, and after OK posts them back and waits a
    /// minute for the recorder to take them over. Returns when all that is done. `S_NotTaken` tells what it refused.
    /// Nothing while another command or a page's request of this object is under way.
    void OnMenuSystemSetting();
    /// The management sheet; not there yet.
    void OnMenuSystemManagement() {}
    void OnMenuEventSetting() {}
    void OnMenuLogViewer() {}

    void m_S_OnCommand(int nId) override;
    bool m_F_n_CameraSynchronization(CXmlObj* pSystemInfo, CXmlObj* pLoginInfo, CXmlObj* pCamera,
                                     int nTimeoutMs) override;
    int m_F_n_RecordBackup(stDef_RecordBackupInfo stInfo) override;

private:
    bool m_F_b_DownloadSettings();
    void m_S_UploadSettings();
    void m_S_CreateNewRtsp(int nNvrID, int nChannel, int nStream) override;
    QString m_F_s_CacheName() const override;
    std::array<stDef_CommandRow, 3> m_F_ar_Commands() const override;
    void m_S_ReadPtzNames(const CXmlObj& xmlReply, int nCamera, const QString& sGroup, QStringList& arNames) override;
};
