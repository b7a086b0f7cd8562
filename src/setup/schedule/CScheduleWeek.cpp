#include "setup/schedule/CScheduleWeek.h"

#include <QSignalBlocker>

#include "widgets/CTimeListCtrl.h"

namespace {

constexpr int MostBlocks = 1440; // a document that has more records than minutes makes no more windows

} // namespace

void CScheduleWeek::m_S_SetGrid(CTimeListCtrl* pGrid, const Labels& arLabels)
{
    vm_pGrid = pGrid;
    vm_arLabels = arLabels;
}

void CScheduleWeek::m_S_RebuildBars(int nCamera)
{
    vm_nCamera = nCamera;
    if (vm_pGrid->rowCount() == 0)
        m_S_MakeRows();
    CTimeStateBar::s_nSelectBar = -1;
    vm_pGrid->setUpdatesEnabled(false); // painted once, not piece by piece as its blocks move
    for (int nDay = 0; nDay < CScheduleDocument::Days; ++nDay)
        m_S_FillBar(nDay);
    vm_pGrid->setUpdatesEnabled(true);
}

void CScheduleWeek::m_S_MakeRows()
{
    const QSignalBlocker objQuiet(vm_pGrid);
    vm_pGrid->setRowCount(CScheduleDocument::Days);
    for (int nDay = 0; nDay < CScheduleDocument::Days; ++nDay)
        vm_pGrid->setItem(nDay, 0, new QTableWidgetItem(vm_arLabels[static_cast<std::size_t>(nDay)]));
}

void CScheduleWeek::m_S_FillBar(int nDay)
{
    vm_arRecords[static_cast<std::size_t>(nDay)].clear();
    vm_pGrid->vm_arBar[nDay]->m_S_BeginFill();
    const int nCount = vm_nCamera < 0 ? 0 : vm_objSchedule.m_F_n_Count(vm_nCamera, nDay);
    for (int nRecord = 0; nRecord < nCount; ++nRecord)
        m_S_AddBlock(nDay, nRecord, vm_objSchedule.m_F_o_Record(vm_nCamera, nDay, nRecord).m_F_o_Block());
    vm_pGrid->vm_arBar[nDay]->m_S_EndFill();
}

void CScheduleWeek::m_S_AddBlock(int nDay, int nRecord, TIME_STATE stBlock)
{
    QList<int>& arRecords = vm_arRecords[static_cast<std::size_t>(nDay)];
    if (arRecords.size() >= MostBlocks)
        return;
    const int nBlock = vm_pGrid->vm_arBar[nDay]->m_S_AddState(stBlock);
    if (nBlock >= 0)
        arRecords.insert(nBlock, nRecord);
}

void CScheduleWeek::m_S_Insert(int nDay, int nRecord, const TIME_STATE& stBlock)
{
    for (int& n : vm_arRecords[static_cast<std::size_t>(nDay)])
        n += n >= nRecord ? 1 : 0;
    m_S_AddBlock(nDay, nRecord, stBlock);
}

int CScheduleWeek::m_F_n_RecordOf(int nDay, int nBlock) const
{
    return vm_arRecords[static_cast<std::size_t>(nDay)].value(nBlock, -1);
}

int CScheduleWeek::m_F_n_BlockOf(int nDay, int nRecord) const
{
    return static_cast<int>(vm_arRecords[static_cast<std::size_t>(nDay)].indexOf(nRecord));
}

const TIME_STATE* CScheduleWeek::m_F_p_Block(int nDay, int nRecord) const
{
    const int nBlock = m_F_n_BlockOf(nDay, nRecord);
    return nBlock < 0 ? nullptr : &vm_pGrid->vm_arBar[nDay]->vm_arState.at(nBlock);
}

bool CScheduleWeek::m_F_b_Whole() const
{
    for (int nDay = 0; nDay < CScheduleDocument::Days; ++nDay) {
        if (vm_arRecords[static_cast<std::size_t>(nDay)].size() != vm_objSchedule.m_F_n_Count(vm_nCamera, nDay))
            return false;
    }
    return true;
}

void CScheduleWeek::m_S_ClearSelect(int nDay)
{
    vm_pGrid->vm_arBar[nDay]->m_S_ClearSelect();
    CTimeStateBar::s_nSelectBar = -1;
}
