#pragma once

#include "setup/schedule/CScheduleDocument.h"
#include "toolkit/form/CMemberForm.h"
#include "toolkit/sheet/CFormDialog.h"

class CEnvObj;
class CTimePicker;
class CWndNvrEmbedded;
class QComboBox;

/// Makes or changes one record of a day: its times, its type, its alarm times and its digital input. OK refuses times
/// that another record has, writes the record into the Schedule document and keeps the day sorted; Cancel writes
/// nothing.
class CDlgSetupPageSystemSetting_Schedule_Setting : public CFormDialog
{
    Q_OBJECT

public:
    /// Connection and item are borrowed. Start and end of the item are read, and written with its colour at OK.
    /// `nRecord` is the count of the day for a new record.
    CDlgSetupPageSystemSetting_Schedule_Setting(CWndNvrEmbedded* pNvr, TIME_STATE* pItem, int nCamera, int nDay,
                                                int nRecord, QWidget* pParent);

    /// Where the record stands among those of its day, after OK.
    int m_F_n_Record() const { return vm_nRecord; }

protected:
    void accept() override;

private:
    void m_S_Make();
    void m_S_MakeTime();
    void m_S_MakeType();
    void m_S_Show();
    void m_S_FillInputs(const stDef_ScheduleRecord& st);
    void m_S_AddInputs(const QString& sFormat, int nCount, int nFirstData, int nChosen);
    void m_S_TakeInput(stDef_ScheduleRecord& st) const;
    bool m_F_b_Refused(int nStart, int nEnd);

    CEnvObj* vm_pEnv; ///< not owned
    CWndNvrEmbedded* vm_pNvr;
    TIME_STATE* vm_pItem;
    int vm_nCamera;
    int vm_nDay;
    int vm_nRecord;
    CScheduleDocument vm_objSchedule;
    CMemberForm<stDef_ScheduleRecord> vm_objValues;
    CTimePicker* vm_pStart = nullptr;
    CTimePicker* vm_pEnd = nullptr;
    QComboBox* vm_pInputs = nullptr;
};
