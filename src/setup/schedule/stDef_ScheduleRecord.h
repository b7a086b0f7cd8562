#pragma once

#include <QString>

#include "host/Lib_Bedrock.h"
#include "widgets/TimeLine.h"

/// One record of a day: from when to when the recorder records, and on what. The values are those of the document,
/// whatever they are.
struct stDef_ScheduleRecord
{
    int nSHour = 0;
    int nSMin = 0;
    int nEHour = 0;
    int nEMin = 0;
    int nPre = 3;  ///< s
    int nPost = 3; ///< s
    int nEventForceRecord = 0;
    int nMode = 1; ///< see `stDef_RecordType`
    int nDIID = 0;
    int nDICam = 0; ///< camera that has the input, -1: the recorder
    int nDIMode = 1;

    static constexpr int LocalInput = -1;

    /// Continuously over the whole day, as a camera that is added records.
    static stDef_ScheduleRecord s_F_o_WholeDay(int nCamera);
    static nsMembers::Rows<stDef_ScheduleRecord> s_F_ar_Rows();

    // Minutes of the day; what no day has stays below 100 hours.
    int m_F_n_Start() const;
    int m_F_n_End() const;
    void m_S_SetSpan(int nStart, int nEnd);
    /// Its block on a bar.
    TIME_STATE m_F_o_Block() const;
    QString m_F_s_StartText() const; ///< "08:15"
    QString m_F_s_EndText() const;
};
