#pragma once

#include <QList>
#include <memory>

#include "core/CNvrPage.h"
#include "drivers/stDef_CameraTemplate.h"
#include "setup/camera/CCameraProbe.h"
#include "setup/camera/CCameraSearchList.h"
#include "toolkit/form/CMemberForm.h"

class CCameraForm;
class CCameraList;
class CCameraTable;
class CCameraTree;
class CEnvObj;
class CForm;
class CWndNvrEmbedded;
class QLayout;
class QPushButton;
struct stDef_AutoSettingResult;

/// Tab Camera: the cameras of the recorder, how they are found and set up. Each action writes into the Camera document
/// (the template into the System document) at once.
class CDlgSetupPageSystemSetting_Camera : public CNvrPage
{
    Q_OBJECT

public:
    explicit CDlgSetupPageSystemSetting_Camera(CWndNvrEmbedded* pNvr);
    ~CDlgSetupPageSystemSetting_Camera() override;

    /// The sheet's cameras, borrowed; needed before the page is shown.
    void m_S_SetCameraTable(CCameraTable* pTable) { vm_pTable = pTable; }

    bool OnApply() override;
    void OnCancel() override;

private:
    // The window.
    void m_S_Make(CForm& objForm) override;
    void m_S_Opened() override;
    QWidget* m_F_p_MakeList(CForm& objForm);
    QLayout* m_F_p_MakeForm(CForm& objForm);
    QWidget* m_F_p_MakeTemplate(CForm& objForm);
    QWidget* m_F_p_MakeSearch(CForm& objForm);
    void m_S_Connect();
    void m_S_ShowTemplate();
    void m_S_StoreTemplate(int stDef_CameraTemplate::*pMember);
    void m_S_EnableAdding();
    void m_S_EnableShown(bool bShown);

    // The camera that is shown.
    void m_S_ShowCamera(int nIndex);
    void m_S_ShowFound(const stDef_SearchIPC* pRow);
    void m_S_ResetForm();

    // The actions.
    /// `bVendorKnown`: no vendor needs to be chosen.
    bool m_F_b_CheckInput(bool bVendorKnown);
    void m_S_Add();
    void m_S_Delete();
    void m_S_Update();
    void m_S_Detect();
    void m_S_ShowParameter();
    void m_S_EditTemplate();
    void m_S_QuickSetup();
    void m_S_ShowMenu(const QPoint& ptGlobal);
    void m_S_Switch(int nSelected, int nOther);
    void m_S_RemoveAll();

    // Search and Auto Setting.
    void m_S_SearchCameras();
    void m_S_ReadRows(const CXmlObj& xmlReply, const std::function<bool(const stDef_SearchIPC&)>& fnPasses);
    void m_S_DropRows();
    void m_S_AutoSetting();
    void m_S_TellResult(const stDef_AutoSettingResult& stResult);

    CCameraTable* vm_pTable = nullptr;
    std::unique_ptr<CCameraList> vm_pCameras;
    CCameraTree* vm_pTree = nullptr;
    CCameraForm* vm_pForm = nullptr;
    CCameraSearchList* vm_pFound = nullptr;
    CMemberForm<stDef_CameraTemplate> vm_objTemplate;
    QList<QPushButton*> vm_arShownButtons; ///< Delete, Update: for the camera that is shown
    QPushButton* vm_pParameter = nullptr;  ///< for it, too
    QPushButton* vm_pAdd = nullptr;
    QPushButton* vm_pAutoSetting = nullptr;

    CCameraSearchList::Rows m_listSearch; ///< what the last search found, in its order
    bool m_bQuickAdd = false;             ///< while Auto Setting runs
};
