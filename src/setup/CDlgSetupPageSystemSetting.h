#pragma once

#include <vector>

#include "toolkit/sheet/CSettingSheet.h"

class CCamObj_Base;
class CEnvObj;
class CMotionFollower;
class CScheduleFollower;
class CWndNvrEmbedded;

/// The sheet in which an operator edits all settings of one recorder. Its eight pages work on the documents of the
/// connection object; the sheet itself holds none. It owns the table of camera objects, and tells the pages that keep
/// something for each camera of every change of the camera list.
class FLEETLINK_EXPORT CDlgSetupPageSystemSetting : public CSettingSheet
{
    Q_OBJECT

public:
    /// The connection is borrowed; its documents are there already.
    CDlgSetupPageSystemSetting(CWndNvrEmbedded* pNvr, const QString& sCaption, unsigned int nSelectPage);
    ~CDlgSetupPageSystemSetting() override;

    // The camera operations: the Schedule page hears first, then the Motion page. Each has its fixed arguments.
    void m_S_AddCamera(int nIndex);
    /// `nIndex` -1: every camera. `nCount` as `CScheduleFollower::m_S_CameraRemoved` has it.
    void m_S_RemoveCamera(int nIndex, int nCount);
    void m_S_UpdateCamera(int nIndex, bool bSame);
    void m_S_CopyCamera(int nFrom, int nTo);
    void m_S_SwitchCamera(int nFirst, int nSecond);

    /// Number of cameras that the recorder takes, read anew from its system information; 0 where that doesn't tell.
    int m_F_n_MaxCam() const;
    /// Who hears of the camera list; borrowed, and null where there is nobody.
    void m_S_SetFollowers(CScheduleFollower* pSchedule, CMotionFollower* pMotion);

    /// One slot a camera index, null while no camera has it; `MaxCam` of them as long as the sheet lives.
    std::vector<CCamObj_Base*> m_arrCamObj;

private:
    void m_S_AddPages();
    void m_S_RefreshMotion(int nIndex);

    CWndNvrEmbedded* vm_pNvr;
    CEnvObj* vm_pEnv;
    CScheduleFollower* vm_pSchedule = nullptr;
    CMotionFollower* vm_pMotion = nullptr;
};
