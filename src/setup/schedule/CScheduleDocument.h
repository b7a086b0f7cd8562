#pragma once

#include "setup/schedule/stDef_ScheduleRecord.h"
#include "toolkit/form/CNumberedNodes.h"

class CXmlObj;

/// The recording schedule of all cameras as the recorder's document keeps it: a week of seven days for each camera, a
/// list of records for each day. A handle; the document is borrowed. From a closed document, days read as empty, and
/// changes do nothing. GUI thread only.
///
/// Cameras go by their index, days from Sunday 0 to Saturday 6, records by their place in their day.
class CScheduleDocument
{
public:
    static constexpr int Days = 7;

    explicit CScheduleDocument(CXmlObj* pDocument) : vm_pDocument(pDocument) {}

    bool m_F_b_IsOpen() const;
    int m_F_n_Count(int nCamera, int nDay) const;
    /// What the document lacks has the value of a new record.
    stDef_ScheduleRecord m_F_o_Record(int nCamera, int nDay, int nRecord) const;

    /// Writes the times of a record where it stands; those that it has already stay as they are written.
    void m_S_SetSpan(int nCamera, int nDay, int nRecord, int nStart, int nEnd);
    /// Whether another record of the day begins or ends within the minutes, both included.
    bool m_F_b_IsTaken(int nCamera, int nDay, int nRecord, int nStart, int nEnd) const;
    /// Writes a record, which is a new one if its number is the count, and moves it among the others by its start. Its
    /// number from then on.
    int m_F_n_Set(int nCamera, int nDay, int nRecord, const stDef_ScheduleRecord& stRecord);
    void m_S_Delete(int nCamera, int nDay, int nRecord);
    /// Puts the records of a day in the place of those of the six others.
    void m_S_CopyDay(int nCamera, int nDay);

    // What a change of the camera list does here; the cameras have changed already.
    /// Its days become whole ones.
    void m_S_CameraAdded(int nCamera);
    /// `nCamera` -1: all of them. `nCount` is the number of cameras that are left, or that there were for -1.
    void m_S_CameraRemoved(int nCamera, int nCount);
    /// A record that waits for an input of the source goes on naming that.
    void m_S_CameraCopied(int nFrom, int nTo);
    void m_S_CameraSwitched(int nFirst, int nSecond);

    /// A camera's week as the document has it, to be put back by `m_S_SetWeek`; empty where it has none.
    QString m_F_s_Week(int nCamera) const;
    void m_S_SetWeek(int nCamera, const QString& sWeek);

private:
    QString m_F_s_Day(int nCamera, int nDay) const;
    CNumberedNodes m_F_o_Cameras() const;
    CNumberedNodes m_F_o_Records(int nCamera, int nDay) const;
    QString m_F_s_Path(int nCamera, int nDay, int nRecord) const;
    void m_S_Write(int nCamera, int nDay, int nRecord, const stDef_ScheduleRecord& stRecord);
    void m_S_Copy(int nFrom, int nFromDay, int nTo, int nToDay);

    CXmlObj* vm_pDocument;
};
