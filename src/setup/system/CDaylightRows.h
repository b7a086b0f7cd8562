#pragma once

#include "toolkit/form/CFormGroup.h"

class CDatePicker;

/// The rows of a group that hold time zone and daylight saving of a node: the zones, off and on, begin, end and offset.
/// A text that can't be read leaves its pickers as they were made.
class CDaylightRows
{
public:
    struct stDef_Texts
    {
        Text stSaving, stStart, stEnd, stOffset;
    };

    /// Makes the rows. While `arWhile` holds and daylight saving is on, its pickers are enabled. The group may go.
    CDaylightRows(CFormGroup& grp, const stDef_Texts& stTexts, const QList<CRules::stDef_While>& arWhile);

    QComboBox* m_F_p_Zones() const { return vm_pZones; }
    QButtonGroup* m_F_p_Saving() const { return vm_pSaving; }
    QString m_F_s_Start() const;
    QString m_F_s_End() const;
    QString m_F_s_Offset() const;

private:
    struct stDef_Moment
    {
        CDatePicker* pDate;
        CTimePicker* pTime;
    };

    static stDef_Moment s_F_o_Moment(CFormGroup& grp, const Text& stLabel, const char* pszKey);
    static QString s_F_s_Stored(const stDef_Moment& stMoment);

    QComboBox* vm_pZones;
    QButtonGroup* vm_pSaving;
    stDef_Moment vm_stStart, vm_stEnd;
    CTimePicker* vm_pOffset;
};
