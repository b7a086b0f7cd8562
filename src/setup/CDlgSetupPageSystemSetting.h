#pragma once

#include "core/CWndNvrBase.h"
#include "setup/CCameraTable.h"
#include "toolkit/sheet/CSettingSheet.h"

class CDlgSetupPageSystemSetting_Motion;
class CDlgSetupPageSystemSetting_Schedule;
class CEnvObj;
class CWndNvrEmbedded;

/// The sheet in which an operator edits all settings of one recorder. Its eight pages work on the documents of the
/// connection object; the sheet itself holds none. It is the table of camera objects, and tells the pages that keep
/// something for each camera of every change of the camera list.
class FLEETLINK_EXPORT CDlgSetupPageSystemSetting : public CSettingSheet, public CCameraTable
{
    Q_OBJECT

public:
    /// The connection is borrowed; its documents are there already.
    CDlgSetupPageSystemSetting(CWndNvrEmbedded* pNvr, const QString& sCaption, unsigned int nSelectPage);
    ~CDlgSetupPageSystemSetting() override;

    // The camera operations: the Schedule page hears first, then the Motion page. Each has its fixed arguments.
    void m_S_AddCamera(int nIndex) override;
    void m_S_RemoveCamera(int nIndex, int nCount) override;
    void m_S_UpdateCamera(int nIndex, bool bSame) override;
    void m_S_CopyCamera(int nFrom, int nTo) override;
    void m_S_SwitchCamera(int nFirst, int nSecond) override;

Q_SIGNALS:
    /// The camera list has changed, with the index that each kind of change has for the Motion page, which listens.
    void S_RefreshCameras(int nIndex);

private:
    void m_S_AddPages();
    void m_S_TellMotion(int nIndex);

    CNvrUse vm_objUse; // as long as the sheet stands
    CWndNvrEmbedded* vm_pNvr;
    CEnvObj* vm_pEnv;
    CDlgSetupPageSystemSetting_Schedule* vm_pSchedule = nullptr; ///< one of the pages
};
