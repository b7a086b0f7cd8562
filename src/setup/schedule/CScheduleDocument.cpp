#include "setup/schedule/CScheduleDocument.h"

#include <algorithm>

#include "host/Lib_Bedrock.h"

using namespace Qt::StringLiterals;

namespace {

constexpr char16_t AllCameras[] = u"/root/Main/SCH";
constexpr const char* g_apszDays[CScheduleDocument::Days] = {"SUN", "MON", "TUE", "WED", "THU", "FRI", "SAT"};

// In the order in which a copy gets them.
constexpr const char* g_apszCopied[] = {"DIID", "SHour", "Mode", "EventForceRecord", "EHour", "DICam", "DIMode", "EMin",
                                        "Post", "SMin",  "Pre"};

} // namespace

bool CScheduleDocument::m_F_b_IsOpen() const
{
    return vm_pDocument->m_F_b_IsOpen();
}

CNumberedNodes CScheduleDocument::m_F_o_Cameras() const
{
    return {vm_pDocument, QString::fromUtf16(AllCameras), u"C"_s, nullptr};
}

QString CScheduleDocument::m_F_s_Day(int nCamera, int nDay) const
{
    return m_F_o_Cameras().m_F_s_Path(nCamera) + u'/' + QString::fromLatin1(g_apszDays[nDay]);
}

CNumberedNodes CScheduleDocument::m_F_o_Records(int nCamera, int nDay) const
{
    return {vm_pDocument, m_F_s_Day(nCamera, nDay), u"Set"_s, "SetCount"};
}

QString CScheduleDocument::m_F_s_Path(int nCamera, int nDay, int nRecord) const
{
    return m_F_o_Records(nCamera, nDay).m_F_s_Path(nRecord);
}

int CScheduleDocument::m_F_n_Count(int nCamera, int nDay) const
{
    return m_F_o_Records(nCamera, nDay).m_F_n_Count();
}

stDef_ScheduleRecord CScheduleDocument::m_F_o_Record(int nCamera, int nDay, int nRecord) const
{
    stDef_ScheduleRecord st;
    nsMembers::Read(*vm_pDocument, m_F_s_Path(nCamera, nDay, nRecord), stDef_ScheduleRecord::s_F_ar_Rows(), st);
    return st;
}

void CScheduleDocument::m_S_Write(int nCamera, int nDay, int nRecord, const stDef_ScheduleRecord& stRecord)
{
    nsMembers::Write(*vm_pDocument, m_F_s_Path(nCamera, nDay, nRecord), stDef_ScheduleRecord::s_F_ar_Rows(), stRecord);
}

void CScheduleDocument::m_S_SetSpan(int nCamera, int nDay, int nRecord, int nStart, int nEnd)
{
    stDef_ScheduleRecord st = m_F_o_Record(nCamera, nDay, nRecord);
    if (st.m_F_n_Start() == nStart && st.m_F_n_End() == nEnd)
        return;
    st.m_S_SetSpan(nStart, nEnd);
    constexpr std::size_t Times = 4; // the first rows are those of the times
    nsMembers::Write(*vm_pDocument, m_F_s_Path(nCamera, nDay, nRecord),
                     stDef_ScheduleRecord::s_F_ar_Rows().first(Times), st);
}

bool CScheduleDocument::m_F_b_IsTaken(int nCamera, int nDay, int nRecord, int nStart, int nEnd) const
{
    const auto IsWithin = [=](int nMinute) { return nStart <= nMinute && nMinute <= nEnd; };
    const int nCount = m_F_n_Count(nCamera, nDay);
    for (int i = 0; i < nCount; ++i) {
        const stDef_ScheduleRecord st = m_F_o_Record(nCamera, nDay, i);
        if (i != nRecord && (IsWithin(st.m_F_n_Start()) || IsWithin(st.m_F_n_End())))
            return true;
    }
    return false;
}

int CScheduleDocument::m_F_n_Set(int nCamera, int nDay, int nRecord, const stDef_ScheduleRecord& stRecord)
{
    CNumberedNodes objRecords = m_F_o_Records(nCamera, nDay);
    m_S_Write(nCamera, nDay, nRecord, stRecord);
    if (nRecord == objRecords.m_F_n_Count())
        objRecords.m_F_n_Append();
    const auto Start = [&](int n) { return m_F_o_Record(nCamera, nDay, n).m_F_n_Start(); };
    const int nStart = stRecord.m_F_n_Start(), nCount = objRecords.m_F_n_Count();
    for (; nRecord > 0 && Start(nRecord - 1) > nStart; --nRecord)
        objRecords.m_S_Swap(nRecord - 1, nRecord);
    for (; nRecord + 1 < nCount && Start(nRecord + 1) < nStart; ++nRecord)
        objRecords.m_S_Swap(nRecord, nRecord + 1);
    return nRecord;
}

void CScheduleDocument::m_S_Delete(int nCamera, int nDay, int nRecord)
{
    m_F_o_Records(nCamera, nDay).m_S_Remove(nRecord);
}

// Key by key as text; a key that the source lacks is lacking in the copy, too.
void CScheduleDocument::m_S_Copy(int nFrom, int nFromDay, int nTo, int nToDay)
{
    const int nCount = m_F_n_Count(nFrom, nFromDay);
    vm_pDocument->m_F_b_RemoveNods(m_F_o_Cameras().m_F_s_Path(nTo), QString::fromLatin1(g_apszDays[nToDay]));
    m_F_o_Records(nTo, nToDay).m_S_SetCount(nCount);
    for (int i = 0; i < nCount; ++i) {
        const QString sFrom = m_F_s_Path(nFrom, nFromDay, i), sTo = m_F_s_Path(nTo, nToDay, i);
        for (const char* const pszKey : g_apszCopied) {
            const QString sKey = QString::fromLatin1(pszKey);
            QString sValue;
            if (vm_pDocument->m_F_n_GetValue(sFrom, sKey, sValue, {}))
                vm_pDocument->m_F_b_SetValue(sTo, sKey, sValue);
        }
    }
}

void CScheduleDocument::m_S_CopyDay(int nCamera, int nDay)
{
    for (int nOther = 0; nOther < Days; ++nOther) {
        if (nOther != nDay)
            m_S_Copy(nCamera, nDay, nCamera, nOther);
    }
}

void CScheduleDocument::m_S_CameraAdded(int nCamera)
{
    for (int nDay = 0; nDay < Days; ++nDay) {
        m_F_o_Records(nCamera, nDay).m_S_SetCount(1);
        m_S_Write(nCamera, nDay, 0, stDef_ScheduleRecord::s_F_o_WholeDay(nCamera));
    }
}

void CScheduleDocument::m_S_CameraRemoved(int nCamera, int nCount)
{
    if (nCamera < 0)
        m_F_o_Cameras().m_S_TakeOutAll(nCount);
    else
        m_F_o_Cameras().m_S_TakeOut(nCamera, nCount);
}

void CScheduleDocument::m_S_CameraCopied(int nFrom, int nTo)
{
    for (int nDay = 0; nDay < Days && nFrom != nTo; ++nDay)
        m_S_Copy(nFrom, nDay, nTo, nDay);
}

void CScheduleDocument::m_S_CameraSwitched(int nFirst, int nSecond)
{
    if (nFirst != nSecond)
        m_F_o_Cameras().m_S_Swap(nFirst, nSecond);
}

QString CScheduleDocument::m_F_s_Week(int nCamera) const
{
    return vm_pDocument->m_F_s_GetNods(m_F_o_Cameras().m_F_s_Path(nCamera));
}

void CScheduleDocument::m_S_SetWeek(int nCamera, const QString& sWeek)
{
    vm_pDocument->m_F_b_SetNods(QString::fromUtf16(AllCameras), m_F_o_Cameras().m_F_s_Name(nCamera), sWeek);
}
