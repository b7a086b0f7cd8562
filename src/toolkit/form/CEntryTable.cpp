#include "toolkit/form/CEntryTable.h"

#include <QLineEdit>
#include <QPushButton>
#include <algorithm>

#include "host/Lib_Bedrock.h"
#include "toolkit/controls/CItemList.h"

using namespace Qt::StringLiterals;

CEntryTable::CEntryTable(CForm& objForm, const stDef_Entries& stEntries, QObject* pParent)
    : QObject(pParent),
      vm_pDocument(stEntries.stParent.pDocument),
      vm_objEntries(vm_pDocument, stEntries.stParent.sPath, QString::fromLatin1(stEntries.pszStem), "count",
                    stEntries.nCountIfMissing),
      vm_bNewRow(stEntries.bNewRow),
      vm_pList(new CItemList),
      vm_arColumns(stEntries.arColumns.begin(), stEntries.arColumns.end())
{
    CTextTable& objTexts = objForm.m_F_o_Texts();
    vm_pList->m_S_SetColumns(QList<int>(std::ssize(vm_arColumns), stEntries.nColumnWidth));
    objTexts.m_S_Add(stEntries.stTitle, [pList = vm_pList](const QString& s) { pList->setAccessibleName(s); });
    for (int nColumn = 0; const stDef_Column& st : vm_arColumns) {
        objTexts.m_S_Add(st.stTitle,
                         [pList = vm_pList, nColumn](const QString& s) { pList->m_S_SetColumnText(nColumn, s); });
        ++nColumn;
    }
    connect(vm_pList, &CItemList::S_Selected, this, &CEntryTable::m_S_ShowRow);
}

CEntryTable::CEntryTable(CFormGroup objGroup, const stDef_Entries& stEntries, QObject* pParent)
    : CEntryTable(objGroup.m_F_o_Form(), stEntries, pParent)
{
    objGroup.m_S_AddWide(vm_pList, "Entries");
    objGroup.m_S_SetRows(&vm_objRows);
    for (const stDef_Column& st : vm_arColumns)
        vm_arEdits.append(objGroup.m_F_p_Edit(st.stTitle, {{vm_pDocument}, st.pszKey}));
    const QList<QPushButton*> arButtons = objGroup.m_F_ar_Buttons(
        {{Text{"Add", "Add"}, "Add"}, {Text{"Delete", "Delete"}, "Delete"}, {Text{"Modify", "Modify"}, "Modify"}});
    m_S_SetButtons(objGroup.m_F_o_Form(), {arButtons[0], arButtons[1], arButtons[2]});
}

void CEntryTable::m_S_SetButtons(CForm& objForm, const stDef_Buttons& stButtons)
{
    vm_arForChosen = {stButtons.pDelete, stButtons.pModify};
    objForm.m_S_SetEnterButtons({stButtons.pModify, stButtons.pAdd});
    connect(stButtons.pAdd, &QPushButton::clicked, this, &CEntryTable::m_S_Add);
    connect(stButtons.pDelete, &QPushButton::clicked, this, &CEntryTable::m_S_Delete);
    connect(stButtons.pModify, &QPushButton::clicked, this, &CEntryTable::m_S_Modify);
}

void CEntryTable::m_S_Refuse(emDef_Action nAction, const stDef_Text& stReason, Check fnCheck, QLineEdit* pField)
{
    vm_arChecks.push_back({nAction, stReason, std::move(fnCheck), pField});
}

bool CEntryTable::m_F_b_Refused(emDef_Action nAction, int nOwnRow)
{
    for (const stDef_Check& st : vm_arChecks) {
        if (st.nAction != nAction || !st.fnCheck(nOwnRow))
            continue;
        Q_EMIT S_Refused(st.stReason);
        if (st.pField) {
            st.pField->setFocus();
            st.pField->selectAll();
        }
        return true;
    }
    return false;
}

bool CEntryTable::m_F_b_IsTaken(int nColumn, const QString& sText, int nOwnRow) const
{
    for (int nRow = 0; nRow < vm_pList->rowCount(); ++nRow) {
        if (nRow != nOwnRow && vm_pList->item(nRow, nColumn)->text() == sText)
            return true;
    }
    return false;
}

QStringList CEntryTable::m_F_ar_Shown(int nEntry) const
{
    QStringList arTexts;
    for (const stDef_Column& st : vm_arColumns) {
        const QString sStored =
            vm_pDocument->m_F_s_Value(vm_objEntries.m_F_s_Path(nEntry), QString::fromLatin1(st.pszKey));
        arTexts.append(st.fnShown ? st.fnShown(sStored) : sStored);
    }
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
        vm_pList->m_S_Insert(nEntry, m_F_ar_Shown(nEntry), nEntry);
    if (vm_bNewRow && vm_pDocument->m_F_b_IsOpen())
        vm_pList->m_S_Insert(nCount, {}, nCount);
}

// The row for a new entry is the last one, by its number: an entry may have empty texts, too.
CEntryTable::stDef_Chosen CEntryTable::m_F_o_Chosen() const
{
    const int nRow = vm_pList->m_F_n_Selected();
    const int nEntry = vm_pList->m_F_n_Data(nRow);
    if (nRow < 0 || !vm_pDocument->m_F_b_IsOpen())
        return {emDef_Row::None, nEntry};
    return {vm_bNewRow && nEntry == vm_objEntries.m_F_n_Count() ? emDef_Row::New : emDef_Row::Entry, nEntry};
}

void CEntryTable::m_S_ShowRow()
{
    const stDef_Chosen stChosen = m_F_o_Chosen();
    const bool bEntry = stChosen.nRow == emDef_Row::Entry;
    if (bEntry)
        vm_objRows.m_S_Load(vm_objEntries.m_F_s_Path(stChosen.nEntry));
    else
        vm_objRows.m_S_ShowDefaults(); // not what a stray node behind the entries has
    for (QPushButton* const pButton : vm_arForChosen)
        CForm::s_S_EnableButton(pButton, bEntry, vm_pList);
    Q_EMIT S_Shown(stChosen);
}

// Where the document was closed meanwhile, the chosen row is shown again as none.
bool CEntryTable::m_F_b_CanAct()
{
    if (vm_pDocument->m_F_b_IsOpen())
        return true;
    if (const int nRow = vm_pList->m_F_n_Selected(); nRow >= 0)
        vm_pList->m_S_Select(nRow);
    return false;
}

void CEntryTable::m_S_Store(int nEntry, bool bNew)
{
    vm_objRows.m_F_b_Store(vm_objEntries.m_F_s_Path(nEntry));
    Q_EMIT S_Stored(nEntry, bNew);
}

// With a row for new entries it is that row which becomes the entry's.
void CEntryTable::m_S_Add()
{
    if (!m_F_b_CanAct() || m_F_b_Refused(emDef_Action::Add, -1))
        return;
    const int nEntry = vm_objEntries.m_F_n_Count();
    m_S_Store(nEntry, true);
    vm_objEntries.m_F_n_Append();
    const int nAdded = vm_bNewRow ? nEntry + 1 : nEntry;
    vm_pList->m_S_Insert(nAdded, {}, nAdded);
    vm_pList->m_S_SetTexts(nEntry, m_F_ar_Shown(nEntry));
    vm_pList->m_S_Select(nEntry);
}

void CEntryTable::m_S_Modify()
{
    const int nRow = vm_pList->m_F_n_Selected();
    if (!m_F_b_CanAct() || nRow < 0 || m_F_b_Refused(emDef_Action::Modify, nRow))
        return;
    const int nEntry = vm_pList->m_F_n_Data(nRow);
    m_S_Store(nEntry, false);
    vm_pList->m_S_SetTexts(nRow, m_F_ar_Shown(nEntry));
    vm_pList->m_S_Select(nRow);
}

void CEntryTable::m_S_Delete()
{
    const int nRow = vm_pList->m_F_n_Selected();
    if (!m_F_b_CanAct() || nRow < 0)
        return;
    vm_objEntries.m_S_Remove(vm_pList->m_F_n_Data(nRow));
    m_S_Fill();
    vm_pList->m_S_Select(std::max(nRow - 1, 0));
}
