#pragma once

#include <QList>
#include <array>

#include "setup/schedule/CScheduleDocument.h"

class CTimeListCtrl;
class CTimeStateBar;

/// The bars of a camera's week, and which record each of their blocks shows: a bar has its blocks sorted, and refuses
/// one that would reach into another.
class CScheduleWeek
{
public:
    using Labels = std::array<QString, CScheduleDocument::Days>;

    explicit CScheduleWeek(const CScheduleDocument& objSchedule) : vm_objSchedule(objSchedule) {}

    /// The list of the bars, borrowed, and the days' names; needed first.
    void m_S_SetGrid(CTimeListCtrl* pGrid, const Labels& arLabels);
    /// Fills the bars anew from a camera; of none: they are empty.
    void m_S_RebuildBars(int nCamera);
    int m_F_n_Camera() const { return vm_nCamera; } ///< -1: none

    // Blocks and records of a day; -1 where there is none.
    int m_F_n_RecordOf(int nDay, int nBlock) const;
    int m_F_n_BlockOf(int nDay, int nRecord) const;
    /// The record's block as it stands on its bar; null if it has none.
    const TIME_STATE* m_F_p_Block(int nDay, int nRecord) const;
    /// Whether every record has its block.
    bool m_F_b_Whole() const;

    /// A record came into the day at this place; its block, too, unless the bar refuses it.
    void m_S_Insert(int nDay, int nRecord, const TIME_STATE& stBlock);
    /// No time is selected any more; a selection that has begun stands on the day's bar.
    void m_S_ClearSelect(int nDay);

private:
    void m_S_MakeRows();
    void m_S_FillBar(int nDay);
    void m_S_AddBlock(int nDay, int nRecord, TIME_STATE stBlock);

    CScheduleDocument vm_objSchedule;
    CTimeListCtrl* vm_pGrid = nullptr;
    Labels vm_arLabels;
    int vm_nCamera = -1;
    std::array<QList<int>, CScheduleDocument::Days> vm_arRecords; ///< by block
};
