#pragma once

#include "core/CNvrPage.h"
#include "setup/user/CUserAccounts.h"
#include "toolkit/form/CFormGroup.h"

class CCheckGrid;
class CItemList;
class QBoxLayout;

/// Tab User: the recorder's accounts and their rights. Add, Modify and Delete write into the System document at once.
/// Behind the accounts the list has one more row, which stands for a new one.
class CDlgSetupPageSystemSetting_User : public CNvrPage
{
    Q_OBJECT

public:
    explicit CDlgSetupPageSystemSetting_User(CWndNvrEmbedded* pNvr);

private:
    /// What the selected row is.
    enum class emDef_RowKind
    {
        None, ///< no row, or no document
        New,
        Account,
        Administrator ///< built in: only password and description can be changed
    };
    /// What an action is refused for.
    enum class emDef_Fault
    {
        NameEmpty,
        NameTaken,
        NotConfirmed
    };
    /// A right for each camera, with a box that checks or clears all of them.
    struct stDef_CameraRights
    {
        emDef_Rights nRights;
        QCheckBox* pAll;
        CCheckGrid* pBoxes;
    };

    void m_S_Make(CForm& objForm) override;
    void m_S_Opened() override;
    QWidget* m_F_p_MakeList(CForm& objForm);
    QWidget* m_F_p_MakeForm(CForm& objForm);
    void m_S_MakeCapabilities(CFormGroup& grp);
    QWidget* m_F_p_MakeCameras(CForm& objForm, const stDef_Text& stTitle, emDef_Rights nRights, const char* pszName);
    QBoxLayout* m_F_p_MakeButtons(CForm& objForm);

    void m_S_Fill();
    void m_S_ShowRow(int nRow);
    void m_S_ShowValues(emDef_RowKind nKind, int nAccount);
    void m_S_EnableFor(emDef_RowKind nKind, int nAccount);
    void m_S_TellHidden(int nAccount);
    void m_S_CheckAll(const stDef_CameraRights& stRights, bool bChecked);

    void m_S_Add();
    void m_S_Modify();
    void m_S_Delete();
    bool m_F_b_Refused(std::initializer_list<emDef_Fault> arFaults, int nOwnRow);
    bool m_F_b_Has(emDef_Fault nFault, int nOwnRow) const;
    void m_S_TellFault(emDef_Fault nFault);
    /// The selected row's account; for the row of a new one the number that it will have.
    int m_F_n_Chosen() const;
    bool m_F_b_IsNew(int nAccount) const { return nAccount == vm_objAccounts.m_F_n_Count(); }
    emDef_RowKind m_F_n_KindOf(int nRow) const;
    QStringList m_F_ar_RowTexts(int nAccount) const;
    CUserAccounts::Rights m_F_ar_Marks() const;

    CUserAccounts vm_objAccounts;
    CValueRows vm_objRows; ///< of the chosen account
    CItemList* vm_pList = nullptr;
    QComboBox* vm_pGroup = nullptr;
    QLineEdit* vm_pName = nullptr;
    QLineEdit* vm_pPassword = nullptr;
    QLineEdit* vm_pConfirm = nullptr;
    QLineEdit* vm_pDescription = nullptr;
    CCheckGrid* vm_pCapabilities = nullptr;
    QList<stDef_CameraRights> vm_arCameras; ///< live view, playback
    QPushButton* vm_pAdd = nullptr;
    QPushButton* vm_pModify = nullptr;
    QPushButton* vm_pDelete = nullptr;
};
