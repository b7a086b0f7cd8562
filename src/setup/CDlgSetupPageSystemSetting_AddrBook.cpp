#include "setup/CDlgSetupPageSystemSetting_AddrBook.h"

#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <iterator>

#include "core/CWndNvrEmbedded.h"
#include "toolkit/CPrompts.h"
#include "toolkit/controls/CItemList.h"
#include "toolkit/form/CForm.h"
#include "toolkit/form/CommonTexts.h"

using namespace Qt::StringLiterals;

namespace {

struct stDef_ColumnRow
{
    const char* pszKey; ///< of the entry's node, and the name of the edit
    Text stLabel;
};

constexpr stDef_ColumnRow g_astColumns[] = {
    {"Name", Text{"Name", "Name"}},
    {"Phone", Text{"Phone", "Phone"}},
    {"Mail", Text{"EMail", "E-Mail"}},
    {"Remark", Text{"Remark", "Remark"}},
};
constexpr int NameColumn = 0;
constexpr int MailColumn = 2;
constexpr int ColumnWidth = 230;

constexpr Text EmptyText{"Empty", "Name Or E-Mail Is Empty."};
// One key, two defaults: Add and Modify say it in different capitals.
constexpr Text AddTwiceText{"Change", "You add the same e-Mail. Please change it!"};
constexpr Text ModifyTwiceText{"Change", "You Add The Same E-Mail. Please Change It!"};

} // namespace

CDlgSetupPageSystemSetting_AddrBook::CDlgSetupPageSystemSetting_AddrBook(CWndNvrEmbedded* pNvr)
    : vm_pNvr(pNvr), vm_pEnv(pNvr->vm_pEnv), vm_objEntries(&pNvr->vm_xmlEMail, u"/root/EMail"_s, u"Mail"_s)
{}

int CDlgSetupPageSystemSetting_AddrBook::OnInitDialog()
{
    m_S_MakeControls();
    m_S_Fill();
    vm_pList->m_S_Select(0);
    vm_objTexts.m_S_Apply(*vm_pNvr);
    return CPropertyPage::OnInitDialog();
}

void CDlgSetupPageSystemSetting_AddrBook::m_S_MakeControls()
{
    CForm objForm(this, &vm_objTexts);
    (new QVBoxLayout(this))->addWidget(objForm.m_F_p_Group(Text{"AddressBook", "Address Book"}, "AddressBook"));
    vm_pList = new CItemList;
    vm_pList->m_S_SetColumns(QList<int>(std::size(g_astColumns), ColumnWidth));
    vm_objTexts.m_S_Add(Text{"AddressBook", "Address Book"},
                        [this](const QString& sText) { vm_pList->setAccessibleName(sText); });
    objForm.m_S_Wide(vm_pList, "Entries");
    for (int nColumn = 0; const stDef_ColumnRow& stRow : g_astColumns) {
        vm_objTexts.m_S_Add(stRow.stLabel,
                            [this, nColumn](const QString& sText) { vm_pList->m_S_SetColumnText(nColumn, sText); });
        vm_arEdits.append(objForm.m_F_p_Edit(stRow.stLabel, stRow.pszKey));
        ++nColumn;
    }
    const QList<QPushButton*> arButtons = objForm.m_F_ar_Buttons(
        {{Text{"Add", "Add"}, "Add"}, {Text{"Delete", "Delete"}, "Delete"}, {Text{"Modify", "Modify"}, "Modify"}});
    vm_pDelete = arButtons[1];
    vm_pModify = arButtons[2];
    using Page = CDlgSetupPageSystemSetting_AddrBook;
    connect(arButtons[0], &QPushButton::clicked, this, &Page::m_S_Add);
    connect(vm_pDelete, &QPushButton::clicked, this, &Page::m_S_Delete);
    connect(vm_pModify, &QPushButton::clicked, this, &Page::m_S_Modify);
    connect(vm_pList, &CItemList::S_Selected, this, &Page::m_S_ShowRow);
}

void CDlgSetupPageSystemSetting_AddrBook::m_S_Fill()
{
    vm_pList->m_S_Clear();
    const int nCount = vm_objEntries.m_F_n_Count();
    for (int nEntry = 0; nEntry < nCount; ++nEntry) {
        QStringList arValues;
        for (const stDef_ColumnRow& stRow : g_astColumns) {
            QString sValue;
            vm_pNvr->vm_xmlEMail.m_F_n_GetValue(vm_objEntries.m_F_s_Path(nEntry), QString::fromLatin1(stRow.pszKey),
                                                sValue, {});
            arValues.append(sValue);
        }
        vm_pList->m_S_Insert(nEntry, arValues, nEntry);
    }
}

void CDlgSetupPageSystemSetting_AddrBook::m_S_ShowRow(int nRow)
{
    const QStringList arTexts = nRow >= 0 ? vm_pList->m_F_ar_Texts(nRow) : QStringList();
    for (int nColumn = 0; nColumn < vm_arEdits.size(); ++nColumn)
        vm_arEdits[nColumn]->setText(arTexts.value(nColumn));
    vm_pDelete->setEnabled(nRow >= 0);
    vm_pModify->setEnabled(nRow >= 0);
}

QStringList CDlgSetupPageSystemSetting_AddrBook::m_F_ar_Edited() const
{
    QStringList arValues;
    for (const QLineEdit* const pEdit : vm_arEdits)
        arValues.append(pEdit->text());
    return arValues;
}

bool CDlgSetupPageSystemSetting_AddrBook::m_F_b_Check(int nOwnRow, const stDef_Text& stDuplicate)
{
    const QStringList arValues = m_F_ar_Edited();
    const stDef_Text* pProblem = nullptr;
    if (arValues[NameColumn].isEmpty() || arValues[MailColumn].isEmpty())
        pProblem = &EmptyText;
    for (int nRow = 0; nRow < vm_pList->rowCount() && !pProblem; ++nRow) {
        if (nRow != nOwnRow && vm_pList->m_F_ar_Texts(nRow)[MailColumn] == arValues[MailColumn])
            pProblem = &stDuplicate;
    }
    if (!pProblem)
        return true;
    CPrompts::s_S_Message(this, vm_pNvr->m_F_s_Text(*pProblem), vm_pNvr->m_F_s_Text(nsTexts::Error));
    return false;
}

void CDlgSetupPageSystemSetting_AddrBook::m_S_Write(int nEntry, const QStringList& arValues)
{
    for (int nColumn = 0; const stDef_ColumnRow& stRow : g_astColumns)
        vm_pNvr->vm_xmlEMail.m_F_b_SetValue(vm_objEntries.m_F_s_Path(nEntry), QString::fromLatin1(stRow.pszKey),
                                            arValues[nColumn++]);
}

void CDlgSetupPageSystemSetting_AddrBook::m_S_Add()
{
    if (!vm_pNvr->vm_xmlEMail.m_F_b_IsOpen() || !m_F_b_Check(-1, AddTwiceText))
        return;
    const QStringList arValues = m_F_ar_Edited();
    const int nEntry = vm_objEntries.m_F_n_Count();
    vm_pList->m_S_Insert(nEntry, arValues, nEntry);
    m_S_Write(nEntry, arValues);
    vm_objEntries.m_F_n_Append();
    vm_pList->m_S_Select(nEntry);
}

void CDlgSetupPageSystemSetting_AddrBook::m_S_Modify()
{
    const int nRow = vm_pList->m_F_n_Selected();
    if (nRow < 0 || !vm_pNvr->vm_xmlEMail.m_F_b_IsOpen() || !m_F_b_Check(nRow, ModifyTwiceText))
        return;
    m_S_Write(vm_pList->m_F_n_Data(nRow), m_F_ar_Edited());
    vm_pList->m_S_SetTexts(nRow, m_F_ar_Edited());
    vm_pList->m_S_Select(nRow);
}

void CDlgSetupPageSystemSetting_AddrBook::m_S_Delete()
{
    const int nRow = vm_pList->m_F_n_Selected();
    if (nRow < 0 || !vm_pNvr->vm_xmlEMail.m_F_b_IsOpen())
        return;
    vm_objEntries.m_S_Remove(vm_pList->m_F_n_Data(nRow));
    m_S_Fill();
    vm_pList->m_S_Select(std::max(nRow - 1, 0));
}
