#include "toolkit/form/CEntryTable.h"

#include <QLineEdit>
#include <QPushButton>
#include <algorithm>

#include "host/Lib_Bedrock.h"
#include "toolkit/controls/CItemList.h"

using namespace Qt::StringLiterals;

CEntryTable::CEntryTable(CFormGroup objGroup, const stDef_Entries& stEntries, QObject* pParent)
    : QObject(pParent),
      vm_pDocument(stEntries.stParent.pDocument),
      vm_objEntries(vm_pDocument, stEntries.stParent.sPath, QString::fromLatin1(stEntries.pszStem)),
      vm_pList(new CItemList)
{
    CTextTable& objTexts = objGroup.m_F_o_Form().m_F_o_Texts();
    vm_pList->m_S_SetColumns(QList<int>(std::ssize(stEntries.arColumns), stEntries.nColumnWidth));
    objTexts.m_S_Add(stEntries.stTitle, [pList = vm_pList](const QString& s) { pList->setAccessibleName(s); });
    objGroup.m_S_AddWide(vm_pList, "Entries");
    objGroup.m_S_SetRows(&vm_objRows);
    for (int nColumn = 0; const stDef_Column& st : stEntries.arColumns) {
        objTexts.m_S_Add(st.stTitle,
                         [pList = vm_pList, nColumn](const QString& s) { pList->m_S_SetColumnText(nColumn, s); });
        vm_arKeys.append(QString::fromLatin1(st.pszKey));
        vm_arEdits.append(objGroup.m_F_p_Edit(st.stTitle, {{vm_pDocument}, st.pszKey}));
        ++nColumn;
    }
    m_S_MakeButtons(objGroup);
    connect(vm_pList, &CItemList::S_Selected, this, &CEntryTable::m_S_ShowRow);
}

void CEntryTable::m_S_MakeButtons(CFormGroup& objGroup)
{
    const QList<QPushButton*> arButtons = objGroup.m_F_ar_Buttons(
        {{Text{"Add", "Add"}, "Add"}, {Text{"Delete", "Delete"}, "Delete"}, {Text{"Modify", "Modify"}, "Modify"}});
    vm_arForChosen = arButtons.mid(1);
    objGroup.m_F_o_Form().m_S_SetEnterButtons({arButtons[2], arButtons[0]});
    connect(arButtons[0], &QPushButton::clicked, this, &CEntryTable::m_S_Add);
    connect(arButtons[1], &QPushButton::clicked, this, &CEntryTable::m_S_Delete);
    connect(arButtons[2], &QPushButton::clicked, this, &CEntryTable::m_S_Modify);
}

void CEntryTable::m_S_Refuse(emDef_Action nAction, const stDef_Text& stReason, Check fnCheck)
{
    vm_arChecks.push_back({nAction, stReason, std::move(fnCheck)});
}

bool CEntryTable::m_F_b_Refused(emDef_Action nAction, int nOwnRow)
{
    for (const stDef_Check& st : vm_arChecks) {
        if (st.nAction != nAction || !st.fnCheck(nOwnRow))
            continue;
        Q_EMIT S_Refused(st.stReason);
        return true;
    }
    return false;
}

bool CEntryTable::m_F_b_IsTaken(int nColumn, int nOwnRow) const
{
    for (int nRow = 0; nRow < vm_pList->rowCount(); ++nRow) {
        if (nRow != nOwnRow && vm_pList->m_F_ar_Texts(nRow)[nColumn] == m_F_s_Edited(nColumn))
            return true;
    }
    return false;
}

QStringList CEntryTable::m_F_ar_Edited() const
{
    QStringList arTexts;
    for (const QLineEdit* const pEdit : vm_arEdits)
        arTexts.append(pEdit->text());
    return arTexts;
}

QStringList CEntryTable::m_F_ar_Stored(int nEntry) const
{
    QStringList arTexts;
    for (const QString& sKey : vm_arKeys)
        arTexts.append(vm_pDocument->m_F_s_Value(vm_objEntries.m_F_s_Path(nEntry), sKey));
    return arTexts;
}

void CEntryTable::m_S_Open()
{
    m_S_Fill();
    vm_pList->m_S_Select(0);
}

void CEntryTable::m_S_Fill()
{
    vm_pList->m_S_Clear();
    const int nCount = vm_objEntries.m_F_n_Count();
    for (int nEntry = 0; nEntry < nCount; ++nEntry)
        vm_pList->m_S_Insert(nEntry, m_F_ar_Stored(nEntry), nEntry);
}

void CEntryTable::m_S_ShowRow(int nRow)
{
    if (nRow >= 0)
        vm_objRows.m_S_Load(vm_objEntries.m_F_s_Path(vm_pList->m_F_n_Data(nRow)));
    else
        for (QLineEdit* const pEdit : vm_arEdits)
            pEdit->clear();
    for (QPushButton* const pButton : vm_arForChosen)
        CForm::s_S_EnableButton(pButton, nRow >= 0, vm_pList);
}

void CEntryTable::m_S_Add()
{
    if (!vm_pDocument->m_F_b_IsOpen() || m_F_b_Refused(emDef_Action::Add, -1))
        return;
    const int nEntry = vm_objEntries.m_F_n_Count();
    vm_pList->m_S_Insert(nEntry, m_F_ar_Edited(), nEntry);
    vm_objRows.m_F_b_Store(vm_objEntries.m_F_s_Path(nEntry));
    vm_objEntries.m_F_n_Append();
    vm_pList->m_S_Select(nEntry);
}

void CEntryTable::m_S_Modify()
{
    const int nRow = vm_pList->m_F_n_Selected();
    if (nRow < 0 || !vm_pDocument->m_F_b_IsOpen() || m_F_b_Refused(emDef_Action::Modify, nRow))
        return;
    vm_objRows.m_F_b_Store(vm_objEntries.m_F_s_Path(vm_pList->m_F_n_Data(nRow)));
    vm_pList->m_S_SetTexts(nRow, m_F_ar_Edited());
    vm_pList->m_S_Select(nRow);
}

void CEntryTable::m_S_Delete()
{
    const int nRow = vm_pList->m_F_n_Selected();
    if (nRow < 0 || !vm_pDocument->m_F_b_IsOpen())
        return;
    vm_objEntries.m_S_Remove(vm_pList->m_F_n_Data(nRow));
    m_S_Fill();
    vm_pList->m_S_Select(std::max(nRow - 1, 0));
}
