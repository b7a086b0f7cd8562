#include "setup/system/CDlgSetupPageSystemSetting_System.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QRadioButton>
#include <algorithm>
#include <numeric>

#include "core/CWndNvrEmbedded.h"
#include "setup/system/CDaylightRows.h"
#include "setup/system/CDlgSetupPageSystemSetting_System_Date.h"
#include "setup/system/DirectoryTest.h"
#include "toolkit/controls/CDatePicker.h"
#include "toolkit/form/CommonTexts.h"
#include "toolkit/user/CPrompts.h"
#include "toolkit/user/CUserSide.h"

using namespace Qt::StringLiterals;

using Page = CDlgSetupPageSystemSetting_System;

namespace {

constexpr CDaylightRows::stDef_Texts DaylightTexts{{"DaylightSavingTime", "Daylight SavingTime"},
                                                   {"DaylightSavingTimeStart", "Daylight SavingTime Start"},
                                                   {"DaylightSavingTimeEnd", "Daylight SavingTime End"},
                                                   {"DaylightSavingTimeOffset", "Daylight SavingTime Offset"}};
constexpr Text DipsTestText{"DIPSTest", "DIPS Test"};
constexpr int Manual = 0, Ntp = 1;
constexpr stDef_Choice g_aAdjust[] = {{Text{"Manual", "Manual"}, Manual},
                                      {Text{"SynchronizewithNTP", "Synchronize With NTP"}, Ntp}};
constexpr int Intervals = 24;
constexpr int MostLanguages = 10000; ///< a number beyond is not believed
const QList<int> g_arSwitchSeconds = {5, 10, 15, 20, 30, 60};
const QList<int> g_arLogDays = {10, 20, 30, 60};
const QList<int> g_arBitrateLogDays = {30, 60, 90, 180, 360};

/// A list of seconds for a value in ms.
struct AsMilliseconds
{
    static constexpr int PerSecond = 1000;
    static void s_S_Show(QComboBox& objList, const QString& sValue)
    {
        nsForms::ByDataOrFirst::s_S_Show(objList, s_F_s_Seconds(sValue));
    }
    static QString s_F_s_Stored(const QComboBox& objList)
    {
        return QString::number(objList.currentData().toInt() * PerSecond);
    }
    static bool s_F_b_Knows(const QComboBox& objList, const QString& sValue)
    {
        return s_F_s_Stored(objList).toInt() == CXmlObj::s_F_n_ToInt(sValue);
    }
    static QString s_F_s_Seconds(const QString& sValue)
    {
        return QString::number(CXmlObj::s_F_n_ToInt(sValue) / PerSecond);
    }
};

/// A list of "ENG" and the like for a file name such as "lang_eng.xml". Of several that it has in it the last counts.
struct AsLanguageFile
{
    static void s_S_Show(QComboBox& objList, const QString& sValue)
    {
        objList.setCurrentIndex(-1);
        for (int nRow = 0; nRow < objList.count(); ++nRow) {
            if (sValue.contains(objList.itemText(nRow).toLower()))
                objList.setCurrentIndex(nRow);
        }
    }
    static QString s_F_s_Stored(const QComboBox& objList)
    {
        return u"lang_"_s + objList.currentText().toLower() + u".xml"_s;
    }
    static bool s_F_b_Knows(const QComboBox& objList, const QString& sValue) { return s_F_s_Stored(objList) == sValue; }
};

} // namespace

stDef_Node Page::m_F_o_System(const char* pszName) const
{
    return {&vm_pNvr->vm_xmlSystem, u"/root/system"_s + QString::fromLatin1(pszName)};
}

stDef_Node Page::m_F_o_Local() const
{
    return {&vm_pNvr->vm_xmlSystemInfo, u"/root/Local"_s};
}

void Page::m_S_Make(CForm& objForm)
{
    objForm.m_S_BeginColumn();
    m_S_MakeDevice(objForm);
    m_S_MakeClock(objForm);
    objForm.m_S_BeginColumn();
    m_S_MakeDisplay(objForm);
    m_S_MakeServices(objForm);
    m_S_MakeLogs(objForm);
}

void Page::m_S_MakeDevice(CForm& objForm)
{
    CFormGroup grp(objForm, Text{"DeviceInfo", "Device Info"}, m_F_o_System());
    grp.m_F_p_ReadOnly(Text{"ModelName", "Model Name"}, {m_F_o_Local(), "Model"});
    grp.m_F_p_ReadOnly(Text{"SoftwareVersion", "Software Version"}, {m_F_o_Local(), "Version"});
    grp.m_F_p_Edit(Text{"DeviceTitle", "Device Title"}, "DeviceTitle", "(0 ~ 30 %1)"); // nobody checks that length
}

void Page::m_S_MakeClock(CForm& objForm)
{
    CFormGroup grp(objForm, Text{"DateTimeInfo", "Date Time Info"}, m_F_o_System("/DateTime"));
    const QDateTime objNow = CUserSide::s_F_o_Get().m_F_o_Now();
    auto* const pDate = new CDatePicker;
    auto* const pTime = new CTimePicker("HH:mm:ss");
    grp.m_S_AddPair(Text{"CurrentTime", "Current Time"}, "Current", pDate, pTime);
    pDate->setDate(objNow.date());
    pTime->setTime(objNow.time());
    pDate->setEnabled(false);
    pTime->setEnabled(false);

    QButtonGroup* const pAdjust = grp.m_F_p_Choices(Text{"Adjust", "Adjust"}, {"Adjust", "0"}, g_aAdjust);
    QPushButton* const pSetting = grp.m_F_p_ButtonBeside(Text{"Setting", "Setting"}, "Setting");
    connect(pSetting, &QPushButton::clicked, this, &Page::m_S_SetClock);
    QLineEdit* const pServer = grp.m_F_p_Edit(Text{"NTPServer", "NTP Server"}, "NTPServer");
    QPushButton* const pTest = grp.m_F_p_ButtonBeside(nsTexts::Test, "NTPTest");
    connect(pTest, &QPushButton::clicked, this, [this] { m_S_TellNoCgi(); });
    QList<int> arIntervals(Intervals);
    std::iota(arIntervals.begin(), arIntervals.end(), 0); // n stands for n + 1 hours
    QComboBox* const pInterval =
        grp.m_F_p_List(Text{"NTPSyncInterval", "NTP Sync Interval"}, "NTPSyncInterval", arIntervals);
    objForm.m_F_o_Texts().m_S_Add(Text{"Hour", "Hour"}, [pInterval](const QString& sHour) {
        for (int nRow = 0; nRow < pInterval->count(); ++nRow)
            pInterval->setItemText(nRow, QString::number(nRow + 1) + u' ' + sHour);
    });
    const CRules::stDef_While stNtp{pAdjust->button(Ntp)};
    const CDaylightRows objDaylight(grp, DaylightTexts, {stNtp});

    CRules& objRules = objForm.m_F_o_Rules();
    objRules.m_S_Enable({pSetting}, {{pAdjust->button(Manual)}});
    objRules.m_S_Enable({pServer, pTest, pInterval, objDaylight.m_F_p_Zones(), objDaylight.m_F_p_Saving()->button(0),
                         objDaylight.m_F_p_Saving()->button(1)},
                        {stNtp});
}

void Page::m_S_MakeDisplay(CForm& objForm)
{
    CFormGroup grp(objForm, Text{"System", "System"}, m_F_o_System());
    grp.m_F_p_Check(Text{"AutoFullScreen", "Auto Full Screen"}, {m_F_o_System("/AutoFullScreen"), "isAutoFullScreen"});
    grp.m_F_p_Row<AsLanguageFile>(Text{"Language", "Language"}, "Language", m_F_p_Languages());
    grp.m_F_p_Row<AsMilliseconds>(Text{"AutoSwitch", "Auto Switch"}, {m_F_o_System("/QuadType"), "AutoSwitchInterval"},
                                  CFormGroup::s_F_p_Filled(g_arSwitchSeconds));
    grp.m_S_AddUnit(Text{"Second", "Second"});
}

// "lang_eng.xml" is listed as "ENG", and what has no such part as an empty row.
QComboBox* Page::m_F_p_Languages() const
{
    const CXmlObj& xmlInfo = vm_pNvr->vm_xmlSystemInfo;
    const QString sNode = u"/root/Local/Language"_s;
    const int nLanguages = std::min(xmlInfo.m_F_n_GetValueInt(sNode, u"LangNum"_s, 0), MostLanguages);
    auto* const pList = new QComboBox;
    for (int nLanguage = 0; nLanguage < nLanguages; ++nLanguage) {
        const QString sFile = xmlInfo.m_F_s_Value(sNode, QString::asprintf("Lang%03d", nLanguage));
        pList->addItem(sFile.section(u'_', 1, 1).section(u'.', 0, 0).toUpper());
    }
    pList->setCurrentIndex(-1); // none until one is found
    return pList;
}

void Page::m_S_MakeServices(CForm& objForm)
{
    CRules& objRules = objForm.m_F_o_Rules();
    CFormGroup grpDips(objForm, Text{"DIPS", "DIPS"}, m_F_o_System("/network/DIPS"));
    QCheckBox* const pDips = grpDips.m_F_p_Check(nsTexts::Enable, "Enable");
    QLineEdit* const pId = grpDips.m_F_p_ReadOnly(Text{"ID", "ID"}, {m_F_o_Local(), "DIPS"});
    QPushButton* const pTest = grpDips.m_F_p_ButtonBeside(nsTexts::Test, "DIPSTest");
    connect(pTest, &QPushButton::clicked, this, &Page::m_S_TestDips);
    objRules.m_S_Enable({pId, pTest}, {{pDips}});

    // The box is read from one node and written to another, and that is meant; account and password have the one that
    // it is written to.
    CFormGroup grpLogin(objForm, Text{"AutoLogin", "Auto Login"}, m_F_o_System("/AutoLogin"));
    const stDef_Value stRead{m_F_o_System("/network/AutoLogin"), "isAutologin"};
    QCheckBox* const pLogin =
        grpLogin.m_F_p_Check(nsTexts::Enable, stRead.m_F_o_WrittenTo(u"/root/system/AutoLogin"_s));
    QLineEdit* const pUser = grpLogin.m_F_p_Edit(nsTexts::Account, "UserName");
    objRules.m_S_Enable({pUser, grpLogin.m_F_p_Password(nsTexts::Password, "Password")}, {{pLogin}});
}

void Page::m_S_MakeLogs(CForm& objForm)
{
    CFormGroup grp(objForm, Text{"RecycleDays", "Recycle Days"}, m_F_o_System("/log"));
    const auto Days = [&](const Text& stLabel, const char* pszKey, const QList<int>& arDays) {
        grp.m_F_p_Row<nsForms::ByDataOrFirst>(stLabel, pszKey, CFormGroup::s_F_p_Filled(arDays));
    };
    Days(Text{"SystemLog", "System Log"}, "SystemLogRecycleDay", g_arLogDays);
    Days(Text{"EventLog", "Event Log"}, "EventLogRecycleDay", g_arLogDays);
    Days(Text{"BitrateLog", "Bitrate Log"}, "BitrateLogRecycleDay", g_arBitrateLogDays);
}

bool Page::OnApply()
{
    m_F_b_Store();
    return true;
}

void Page::m_S_SetClock()
{
    CDlgSetupPageSystemSetting_System_Date objDialog(vm_pNvr, this);
    // Behind the dialog's end: the recorder restarts, and what was changed on the pages is not sent to it.
    connect(&objDialog, &CDlgSetupPageSystemSetting_System_Date::S_ClockSet, static_cast<QDialog*>(window()),
            &QDialog::reject, Qt::QueuedConnection);
    CUserSide::s_F_o_Get().m_F_n_RunModal(objDialog);
}

void Page::m_S_TestDips()
{
    const QString sReply = nsDirectoryTest::Run(*vm_pNvr, this);
    if (!vm_pNvr->m_F_b_Released())
        CPrompts::s_S_Message(this, sReply, m_F_s_Text(DipsTestText));
}
