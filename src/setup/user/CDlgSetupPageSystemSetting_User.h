#pragma once

#include "core/CNvrPage.h"
#include "setup/user/CUserRights.h"
#include "toolkit/form/CEntryTable.h"

class CCheckGrid;
class QBoxLayout;

/// Tab User: the recorder's accounts and their rights. Add, Modify and Delete write into the System document at once.
/// Behind the accounts the list has one more row, which stands for a new one.
class CDlgSetupPageSystemSetting_User : public CNvrPage
{
    Q_OBJECT

public:
    explicit CDlgSetupPageSystemSetting_User(CWndNvrEmbedded* pNvr);

private:
    /// A right for each camera, with a box that checks or clears all of them.
    struct stDef_CameraRights
    {
        emDef_Rights nRights;
        QCheckBox* pAll;
        CCheckGrid* pBoxes;
    };

    void m_S_Make(CForm& objForm) override;
    void m_S_Opened() override;
    QWidget* m_F_p_MakeForm(CForm& objForm);
    void m_S_MakeCapabilities(CFormGroup& grp);
    QWidget* m_F_p_MakeCameras(CForm& objForm, const stDef_Text& stTitle, emDef_Rights nRights, const char* pszName);
    QBoxLayout* m_F_p_MakeButtons(CForm& objForm);
    void m_S_AddChecks();

    void m_S_ShowChosen(const CEntryTable::stDef_Chosen& stChosen);
    void m_S_EnableFor(const CEntryTable::stDef_Chosen& stChosen);
    void m_S_CheckAll(const stDef_CameraRights& stRights, bool bChecked);
    void m_S_StoreRights(int nAccount, bool bNew);

    CUserRights vm_objRights;
    CEntryTable* vm_pTable = nullptr;
    QComboBox* vm_pGroup = nullptr;
    QLineEdit* vm_pName = nullptr;
    QLineEdit* vm_pPassword = nullptr;
    QLineEdit* vm_pConfirm = nullptr;
    QLineEdit* vm_pDescription = nullptr;
    CCheckGrid* vm_pCapabilities = nullptr;
    QList<stDef_CameraRights> vm_arCameras; ///< live view, playback
    QPushButton* vm_pAdd = nullptr;
    QPushButton* vm_pDelete = nullptr;
};
