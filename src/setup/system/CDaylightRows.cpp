#include "setup/system/CDaylightRows.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QRadioButton>

#include "setup/system/DaylightText.h"
#include "setup/system/TimeZones.h"
#include "toolkit/controls/CDatePicker.h"
#include "toolkit/form/CommonTexts.h"

namespace {

constexpr int ZoneLetters = 24;
constexpr stDef_Choice g_aSaving[] = {{Text{"Disable", "Disable"}, 0}, {nsTexts::Enable, 1}};

} // namespace

CDaylightRows::CDaylightRows(CFormGroup& grp, const stDef_Texts& stTexts, const QList<CRules::stDef_While>& arWhile)
    : vm_pZones(grp.m_F_p_List(Text{"TimeZone", "Time Zone"}, "NTPTimeZone", nsTimeZones::Items())),
      vm_pSaving(grp.m_F_p_Choices(stTexts.stSaving, "isDaylight", g_aSaving)),
      vm_stStart(s_F_o_Moment(grp, stTexts.stStart, "DaylightStart")),
      vm_stEnd(s_F_o_Moment(grp, stTexts.stEnd, "DaylightStop")),
      vm_pOffset(grp.m_F_p_Time(stTexts.stOffset, "DaylightOffset"))
{
    // A zone's text is long enough to push the page beyond a small screen; opened, the list shows it whole.
    vm_pZones->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    vm_pZones->setMinimumContentsLength(ZoneLetters);
    grp.m_S_AddValue(
        "DaylightOffset",
        [pOffset = vm_pOffset](const QString& sValue) {
            if (const auto oOffset = nsDaylightText::ReadOffset(sValue))
                pOffset->setTime(*oOffset);
        },
        [pOffset = vm_pOffset] { return nsDaylightText::ComposeOffset(pOffset->time()); });
    auto arOn = arWhile;
    arOn.append({vm_pSaving->button(1), true});
    grp.m_F_o_Form().m_F_o_Rules().m_S_Enable(
        {vm_stStart.pDate, vm_stStart.pTime, vm_stEnd.pDate, vm_stEnd.pTime, vm_pOffset}, arOn);
}

CDaylightRows::stDef_Moment CDaylightRows::s_F_o_Moment(CFormGroup& grp, const Text& stLabel, const char* pszKey)
{
    const stDef_Moment st{new CDatePicker, new CTimePicker("HH:mm:ss")};
    grp.m_S_AddPair(stLabel, pszKey, st.pDate, st.pTime);
    grp.m_S_AddValue(
        pszKey,
        [st](const QString& sValue) {
            if (const auto oMoment = nsDaylightText::Read(sValue)) {
                st.pDate->setDate(oMoment->date());
                st.pTime->setTime(oMoment->time());
            }
        },
        [st] { return s_F_s_Stored(st); });
    return st;
}

QString CDaylightRows::s_F_s_Stored(const stDef_Moment& stMoment)
{
    return nsDaylightText::Compose(stMoment.pDate->date(), stMoment.pTime->time());
}

QString CDaylightRows::m_F_s_Start() const
{
    return s_F_s_Stored(vm_stStart);
}

QString CDaylightRows::m_F_s_End() const
{
    return s_F_s_Stored(vm_stEnd);
}

QString CDaylightRows::m_F_s_Offset() const
{
    return nsDaylightText::ComposeOffset(vm_pOffset->time());
}
