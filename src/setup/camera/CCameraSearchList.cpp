#include "setup/camera/CCameraSearchList.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <algorithm>
#include <functional>
#include <iterator>

#include "toolkit/form/CTextTable.h"
#include "toolkit/form/CommonTexts.h"

namespace {

using Less = bool (*)(const stDef_SearchIPC&, const stDef_SearchIPC&);

// By the values of the rows, not by what they show: numbers by value, texts by their code units.
template <auto pMember>
bool LessBy(const stDef_SearchIPC& stLeft, const stDef_SearchIPC& stRight)
{
    return stLeft.*pMember < stRight.*pMember;
}

struct stDef_ColumnRow
{
    Text stHead;
    int nWidth; ///< pixels at 96 dpi
    Less fnLess;
};

const stDef_ColumnRow g_astColumns[] = {
    {Text{"Vendor", "Vendor"}, 130, LessBy<&stDef_SearchIPC::Vendor>},
    {Text{"CameraName", "Camera Name"}, 170, LessBy<&stDef_SearchIPC::DeviceName>},
    {Text{"IP", "IP"}, 130, LessBy<&stDef_SearchIPC::IP>},
    {Text{"MAC", "MAC"}, 150, LessBy<&stDef_SearchIPC::MAC>},
    {nsTexts::HttpPort, 100, LessBy<&stDef_SearchIPC::HttpPort>},
};

} // namespace

CCameraSearchList::CCameraSearchList(QWidget* pParent) : CItemList(pParent)
{
    QList<int> arWidths;
    for (const stDef_ColumnRow& stColumn : g_astColumns)
        arWidths.append(stColumn.nWidth);
    m_S_SetColumns(arWidths);
    horizontalHeader()->setSectionsClickable(true);
    connect(horizontalHeader(), &QHeaderView::sectionClicked, this, &CCameraSearchList::m_S_Sort);
    connect(this, &CItemList::S_Selected, this, &CCameraSearchList::m_S_Choose);
}

void CCameraSearchList::m_S_AddTexts(CTextTable& objTexts)
{
    for (int nColumn = 0; const stDef_ColumnRow& stColumn : g_astColumns) {
        objTexts.m_S_Add(stColumn.stHead, [this, nColumn](const QString& s) { m_S_SetColumnText(nColumn, s); });
        ++nColumn;
    }
}

void CCameraSearchList::m_S_Show(const Rows& arRows, const std::function<QString(const stDef_SearchIPC&)>& fnVendor)
{
    vm_arShown.clear();
    for (const auto& pRow : arRows)
        vm_arShown.push_back({pRow.get(), fnVendor(*pRow)});
    m_S_Fill();
}

void CCameraSearchList::m_S_Fill()
{
    m_S_Clear();
    for (int nRow = 0; const stDef_Shown& stShown : vm_arShown) {
        const stDef_SearchIPC& st = *stShown.pRow;
        m_S_Insert(nRow, {stShown.sVendor, st.DeviceName, st.m_F_s_Address(), st.MAC, QString::number(st.HttpPort)},
                   nRow);
        ++nRow;
    }
}

void CCameraSearchList::m_S_Sort(int nColumn)
{
    if (nColumn < 0 || nColumn >= static_cast<int>(std::size(g_astColumns)))
        return;
    const int nSelected = m_F_n_Selected();
    const stDef_SearchIPC* const pSelected =
        nSelected < 0 ? nullptr : vm_arShown[static_cast<std::size_t>(nSelected)].pRow;
    std::stable_sort(vm_arShown.begin(), vm_arShown.end(),
                     [fnLess = g_astColumns[nColumn].fnLess](const stDef_Shown& stLeft, const stDef_Shown& stRight) {
                         return fnLess(*stLeft.pRow, *stRight.pRow);
                     });
    const QSignalBlocker objQuiet(this); // the selection stays with its camera
    m_S_Fill();
    const auto it = std::find_if(vm_arShown.begin(), vm_arShown.end(),
                                 [pSelected](const stDef_Shown& st) { return st.pRow == pSelected; });
    if (it != vm_arShown.end())
        m_S_Select(static_cast<int>(it - vm_arShown.begin()));
}

void CCameraSearchList::m_S_Choose(int nRow)
{
    const bool bThere = nRow >= 0 && nRow < static_cast<int>(vm_arShown.size());
    Q_EMIT S_RowChosen(bThere ? vm_arShown[static_cast<std::size_t>(nRow)].pRow : nullptr);
}

// Beside the rows there is no camera, also where none was selected before.
void CCameraSearchList::mousePressEvent(QMouseEvent* pEvent)
{
    CItemList::mousePressEvent(pEvent);
    if (!itemAt(pEvent->position().toPoint()))
        m_S_Choose(-1);
}
