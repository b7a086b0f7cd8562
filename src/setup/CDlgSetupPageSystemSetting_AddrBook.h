#pragma once

#include <QList>

#include "toolkit/form/CNumberedNodes.h"
#include "toolkit/form/CTextTable.h"
#include "toolkit/sheet/CPropertyPage.h"

class CEnvObj;
class CItemList;
class CWndNvrEmbedded;
class QLineEdit;
class QPushButton;

/// Tab Address Book: the recipients of the recorder's e-mails. Each action writes into the EMail document at once.
class CDlgSetupPageSystemSetting_AddrBook : public CPropertyPage
{
    Q_OBJECT

public:
    explicit CDlgSetupPageSystemSetting_AddrBook(CWndNvrEmbedded* pNvr);

    int OnInitDialog() override;

private:
    void m_S_MakeControls();
    void m_S_Fill();
    void m_S_ShowRow(int nRow);
    void m_S_Add();
    void m_S_Delete();
    void m_S_Modify();

    QStringList m_F_ar_Edited() const;
    /// Tells why the edits can't be taken, with `stDuplicate` for an e-mail that another row has. False then: the same
    /// row stays selected, and what was typed stays in the edits.
    bool m_F_b_Check(int nOwnRow, const stDef_Text& stDuplicate);
    void m_S_Write(int nEntry, const QStringList& arValues);

    CWndNvrEmbedded* vm_pNvr;
    CEnvObj* vm_pEnv;
    CNumberedNodes vm_objEntries;
    CTextTable vm_objTexts;
    CItemList* vm_pList = nullptr;
    QList<QLineEdit*> vm_arEdits; ///< in the order of the columns
    QPushButton* vm_pDelete = nullptr;
    QPushButton* vm_pModify = nullptr;
};
