#include "setup/schedule/stDef_ScheduleRecord.h"

#include <algorithm>

#include "setup/schedule/stDef_RecordType.h"

namespace {

using Record = stDef_ScheduleRecord;

constexpr int MinutesPerHour = 60;
constexpr qint64 MostMinutes = 100 * MinutesPerHour - 1;

// In the order in which the recorder has them.
constexpr stDef_Member<Record> g_aRows[] = {
    {"SHour", &Record::nSHour},
    {"SMin", &Record::nSMin},
    {"EHour", &Record::nEHour},
    {"EMin", &Record::nEMin},
    {"Pre", &Record::nPre, "", 3},
    {"Post", &Record::nPost, "", 3},
    {"EventForceRecord", &Record::nEventForceRecord},
    {"Mode", &Record::nMode, "", 1},
    {"DIID", &Record::nDIID},
    {"DICam", &Record::nDICam},
    {"DIMode", &Record::nDIMode, "", 1},
};

int Minutes(int nHour, int nMinute)
{
    return static_cast<int>(std::clamp(qint64{nHour} * MinutesPerHour + nMinute, qint64{0}, MostMinutes));
}

} // namespace

Record Record::s_F_o_WholeDay(int nCamera)
{
    Record st;
    st.nEHour = 23;
    st.nEMin = 59;
    st.nEventForceRecord = 1;
    st.nDICam = nCamera;
    return st;
}

nsMembers::Rows<Record> Record::s_F_ar_Rows()
{
    return g_aRows;
}

int Record::m_F_n_Start() const
{
    return Minutes(nSHour, nSMin);
}

int Record::m_F_n_End() const
{
    return Minutes(nEHour, nEMin);
}

void Record::m_S_SetSpan(int nStart, int nEnd)
{
    nSHour = nStart / MinutesPerHour;
    nSMin = nStart % MinutesPerHour;
    nEHour = nEnd / MinutesPerHour;
    nEMin = nEnd % MinutesPerHour;
}

TIME_STATE Record::m_F_o_Block() const
{
    return {{},
            static_cast<quint64>(m_F_n_Start()) * TimeLine::Minute,
            static_cast<quint64>(m_F_n_End()) * TimeLine::Minute,
            stDef_RecordType::s_F_n_ColorOf(nMode)};
}

QString Record::m_F_s_StartText() const
{
    return QString::asprintf("%02d:%02d", nSHour, nSMin);
}

QString Record::m_F_s_EndText() const
{
    return QString::asprintf("%02d:%02d", nEHour, nEMin);
}
