#include "setup/schedule/CScheduleStep.h"

CScheduleStep::CScheduleStep(const CScheduleDocument& objSchedule, int nCamera, const QString& sWeekBefore, Show fnShow)
    : vm_objSchedule(objSchedule), vm_nCamera(nCamera), vm_sOther(sWeekBefore), vm_fnShow(std::move(fnShow))
{}

// The stack does each step that it is given, too.
void CScheduleStep::redo()
{
    if (!std::exchange(vm_bDone, false))
        m_S_Exchange();
}

void CScheduleStep::m_S_Exchange()
{
    const QString sNow = vm_objSchedule.m_F_s_Week(vm_nCamera);
    vm_objSchedule.m_S_SetWeek(vm_nCamera, vm_sOther);
    vm_sOther = sNow;
    vm_fnShow();
}
