#include "setup/system/CDlgSetupPageSystemSetting_System_Date.h"

#include <QButtonGroup>
#include <QCalendarWidget>
#include <QComboBox>
#include <QVBoxLayout>

#include "core/CPageRequests.h"
#include "core/CWndNvrEmbedded.h"
#include "toolkit/user/CPrompts.h"
#include "toolkit/user/CUserSide.h"

using namespace Qt::StringLiterals;

using Dialog = CDlgSetupPageSystemSetting_System_Date;

namespace {

// The blank in "Saving Time" tells these from the texts of the page, under the same keys.
constexpr CDaylightRows::stDef_Texts DaylightTexts{{"DaylightSavingTime", "Daylight Saving Time"},
                                                   {"DaylightSavingTimeStart", "Daylight Saving Time Start"},
                                                   {"DaylightSavingTimeEnd", "Daylight Saving Time End"},
                                                   {"DaylightSavingTimeOffset", "Daylight Saving Time Offset"}};
constexpr Text TitleText{"SetDateTime", "Set Date Time"};
constexpr Text WarningText{"Warning", "Warning"};
constexpr Text ModifyText{"ModifyDateTime",
                          "Modify System Time Will Re-Start Record Service, Please Click \"Yes\" To Coutinue Or \"No\" "
                          "To Cancel."};
constexpr Text SendingText{"SendingDateTime", "The recorder is told the time."};
constexpr int PostMs = 50000;

} // namespace

Dialog::CDlgSetupPageSystemSetting_System_Date(CWndNvrEmbedded* pNvr, QWidget* pParent)
    : CFormDialog(TitleText, pParent), vm_pNvr(pNvr)
{
    m_S_Make();
    if (pNvr->vm_xmlSystem.m_F_b_IsOpen())
        m_F_o_Form().m_F_o_Values().m_S_Load();
    m_S_Finish(*pNvr);
    vm_pDate->setFocus();
}

void Dialog::m_S_Make()
{
    m_F_o_Form().m_S_BeginColumn();
    CFormGroup grp(m_F_o_Form(), Text{"DateTimeSetting", "Date Time Setting"},
                   {&vm_pNvr->vm_xmlSystem, u"/root/system/DateTime"_s});
    const QDateTime objNow = CUserSide::s_F_o_Get().m_F_o_Now();
    vm_pDate = grp.m_F_p_Row<nsForms::Unbound>(Text{"CurrentDate", "Current Date"}, "CurrentDate", new QCalendarWidget);
    vm_pDate->setSelectedDate(objNow.date());
    vm_pDate->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    vm_pTime = grp.m_F_p_Row<nsForms::Unbound>(Text{"CurrentTime", "Current Time"}, "CurrentTime",
                                               new CTimePicker("HH:mm:ss"));
    vm_pTime->setTime(objNow.time());
    vm_objDaylight.emplace(grp, DaylightTexts, QList<CRules::stDef_While>());
}

void Dialog::accept()
{
    if (!CPrompts::s_F_b_Ask(this, vm_pNvr->m_F_s_Text(ModifyText), vm_pNvr->m_F_s_Text(WarningText)))
        return;
    m_S_Post();
    Q_EMIT S_ClockSet();
    CFormDialog::accept();
}

void Dialog::m_S_Post()
{
    const QString sNode = u"/root/DateTime"_s;
    CXmlObj xml;
    xml.m_F_b_LoadXML(u"<root></root>"_s);
    xml.m_F_b_AddNods(u"/root"_s, u"DateTime"_s);
    const QDate objDate = vm_pDate->selectedDate();
    const QTime objTime = vm_pTime->time();
    xml.m_F_b_SetValue(sNode, u"ManuDateTime"_s,
                       QString::asprintf("%04d-%02d-%02d %02d:%02d:%02d", objDate.year(), objDate.month(),
                                         objDate.day(), objTime.hour(), objTime.minute(), objTime.second()));
    xml.m_F_b_SetValue(sNode, u"NTPTimeZone"_s, nsForms::ByData::s_F_s_Stored(*vm_objDaylight->m_F_p_Zones()));
    xml.m_F_b_SetValue(sNode, u"isDaylight"_s, vm_objDaylight->m_F_p_Saving()->checkedId() == 1 ? 1 : 0);
    xml.m_F_b_SetValue(sNode, u"DaylightStart"_s, vm_objDaylight->m_F_s_Start());
    xml.m_F_b_SetValue(sNode, u"DaylightStop"_s, vm_objDaylight->m_F_s_End());
    xml.m_F_b_SetValue(sNode, u"DaylightOffset"_s, vm_objDaylight->m_F_s_Offset());
    CPageRequests(vm_pNvr, this, SendingText)
        .m_F_b_Post(u"cgi-bin/DateTimeSetting.cgi?action=updatetime"_s, &xml, PostMs);
}
