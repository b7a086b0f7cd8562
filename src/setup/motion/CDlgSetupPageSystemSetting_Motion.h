#pragma once

#include "core/CNvrPage.h"

class CCamObj_Base;
class CCameraTable;
class CCameraTree;
class QWidget;

/// Tab Motion Detection: a tree of the cameras, and beside it the motion window of the one that is chosen, which the
/// camera object opens and closes. One is open at a time.
class CDlgSetupPageSystemSetting_Motion : public CNvrPage
{
    Q_OBJECT

public:
    explicit CDlgSetupPageSystemSetting_Motion(CWndNvrEmbedded* pNvr);
    /// Closes the window that is open.
    ~CDlgSetupPageSystemSetting_Motion() override;

    /// The cameras, borrowed. Told before the page is shown.
    void m_S_SetCameraTable(CCameraTable* pCameras) { vm_pCameras = pCameras; }
    /// The camera list has changed; nothing before the page was first shown. `nCamera` is what the sheet has for each
    /// kind of change.
    void m_S_RefreshCameras(int nCamera);

    /// Puts what is checked in the open window into the Camera document, and closes it. Always true.
    bool OnApply() override;
    void OnCancel() override;

private:
    void m_S_Make(CForm& objForm) override;
    void m_S_Opened() override;
    void m_S_FillTree();
    void m_S_Open(int nPosition);
    void m_S_Close(bool bSave);

    CCameraTable* vm_pCameras = nullptr;
    CCameraTree* vm_pTree = nullptr;
    QWidget* vm_pPlace = nullptr;       ///< of the motion window
    CCamObj_Base* vm_pCamObj = nullptr; ///< whose window is open; it may have been released meanwhile
    int vm_nCamera = -1;                ///< its index; -1 while none is open
    bool vm_bInit = false;
};
