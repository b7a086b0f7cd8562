#include <QCalendarWidget>
#include <QComboBox>
#include <QDateEdit>
#include <QLabel>

#include "DeferredPage.h"
#include "core/CWndNvrEmbedded.h"
#include "setup/system/DaylightText.h"
#include "support/Waiting.h"

namespace {

constexpr int SystemTab = 3;
constexpr int NotificationTab = 7;

TEST(DaylightText, ComposesTheRuleWithItsOddities)
{
    const struct
    {
        QDate objDate;
        QTime objTime;
        const char* pszText;
    } arRows[] = {
        {{2027, 3, 14}, {2, 0, 0}, "3.3.-1/02:00(2027-03-14 02:00:00)"}, // a Sunday
        {{2027, 3, 13}, {2, 0, 9}, "3.2.5/02:00(2027-03-13 02:00:09)"},  // a Saturday
        {{2028, 2, 29}, {23, 59, 59}, "2.5.1/23:59(2028-02-29 23:59:59)"},
        {{2027, 1, 1}, {0, 0, 0}, "1.1.4/00:00(2027-01-01 00:00:00)"},
        {{2027, 12, 31}, {0, 1, 0}, "12.5.4/00:01(2027-12-31 00:01:00)"},
    };
    for (const auto& row : arRows) {
        EXPECT_EQ(nsDaylightText::Compose(row.objDate, row.objTime), row.pszText);
        EXPECT_EQ(nsDaylightText::Read(row.pszText), QDateTime(row.objDate, row.objTime, Qt::UTC));
    }
    for (int nMonth = 1; nMonth <= 12; ++nMonth) { // a 7th is in the second week, a 6th in the first
        EXPECT_EQ(nsDaylightText::Compose({2027, nMonth, 7}, {1, 0}).section('.', 1, 1), "2") << nMonth;
        EXPECT_EQ(nsDaylightText::Compose({2027, nMonth, 6}, {1, 0}).section('.', 1, 1), "1") << nMonth;
    }
}

TEST(DaylightText, ReadsTheBracketsAlone)
{
    EXPECT_EQ(nsDaylightText::Read("9.9.9/99:99(2027-03-14 02:03:04"), QDateTime({2027, 3, 14}, {2, 3, 4}, Qt::UTC));
    EXPECT_EQ(nsDaylightText::Read("(2027-3-4 2:3:4x)"), QDateTime({2027, 3, 4}, {2, 3, 4}, Qt::UTC));
    for (const char* pszText :
         {"", "3.3.-1/02:00", "(", "()", "(2027-02-30 02:00:00)", "(2027-03-14 25:00:00)", "(x-y-z a:b:c)"})
        EXPECT_FALSE(nsDaylightText::Read(pszText)) << pszText;
    EXPECT_EQ(nsDaylightText::ReadOffset("1:5"), QTime(1, 5));
    EXPECT_EQ(nsDaylightText::ComposeOffset({1, 5}), "01:05");
    for (const char* pszText : {"", "24:00", "1:60"})
        EXPECT_FALSE(nsDaylightText::ReadOffset(pszText)) << pszText;
}

class SystemPage : public DeferredPage
{
protected:
    /// Gives the recorder's System document other values of `/root/system`.
    void Store(const std::vector<std::array<const char*, 3>>& arValues)
    {
        CXmlObj xml = Stored(emDef_Document::System);
        for (const auto& [pszNode, pszKey, pszValue] : arValues)
            xml.m_F_b_SetValue(QString("/root/system") + pszNode, pszKey, QString(pszValue));
        std::string sError;
        ASSERT_TRUE(
            vm_nvr.m_F_o_Documents().m_F_b_Put(emDef_Document::System, xml.m_F_s_GetUtf8().toStdString(), sError));
    }
    /// Types a date or a time over the one that stands.
    static void TypeMoment(QWidget* pPicker, const QString& sText)
    {
        pPicker->setFocus();
        static_cast<QDateTimeEdit*>(pPicker)->setSelectedSection(static_cast<QDateTimeEdit*>(pPicker)->sectionAt(0));
        QTest::keyClicks(pPicker, sText);
    }
    static QString Note(const At& at) { return static_cast<QLabel*>(at.Find("Note"))->text(); }
    static QString Chosen(const At& at, const char* pszList)
    {
        return at.Find(pszList)->property("currentText").toString();
    }
};

TEST_F(SystemPage, WritesWhatWasEditedAndNothingElse)
{
    Check(SystemTab, "system", [](At at) {
        EXPECT_EQ(at.Shown("Local.Model"), "VN-16E");
        EXPECT_EQ(Chosen(at, "system.Language"), "ENG");
        EXPECT_EQ(Chosen(at, "DateTime.NTPSyncInterval"), "6 Hour");
        EXPECT_EQ(Note(at), "");
        at.Type("system.DeviceTitle", "new & \"gate\"");
        at.Type("DateTime.NTPServer", "192.0.2.9");
        for (const char* pszList :
             {"DateTime.NTPSyncInterval", "DateTime.NTPTimeZone", "system.Language", "QuadType.AutoSwitchInterval",
              "log.SystemLogRecycleDay", "log.BitrateLogRecycleDay"})
            QTest::keyClick(at.Find(pszList), Qt::Key_Down);
        TypeMoment(at.Find("DateTime.DaylightStart"), "2027-03-14");
        TypeMoment(at.Find("DateTime.DaylightStopTime"), "04:05:06");
        TypeMoment(at.Find("DateTime.DaylightOffset"), "02:30");
        at.Click("AutoFullScreen.isAutoFullScreen");
        at.Type("AutoLogin.Password", "n3w");
        at.Click("AutoLogin.isAutologin");
        at.Click("DIPS.Enable");
    });
}

TEST_F(SystemPage, ButtonsEnableWhatBelongsToThem)
{
    const QStringList arPickers = {"DateTime.DaylightStart", "DateTime.DaylightStartTime", "DateTime.DaylightStop",
                                   "DateTime.DaylightStopTime", "DateTime.DaylightOffset"};
    const QStringList arNtp = {"DateTime.NTPServer",       "NTPTest",
                               "DateTime.NTPSyncInterval", "DateTime.NTPTimeZone",
                               "DateTime.isDaylight0",     "DateTime.isDaylight1"};
    EXPECT_TRUE(RunCycle([&](CPropertySheet& sheet) {
        const At at(OpenTab(sheet, SystemTab));
        const auto Expect = [&](bool bNtp, bool bPickers) {
            EXPECT_EQ(at.NotEnabled(arNtp, bNtp), QStringList());
            EXPECT_EQ(at.NotEnabled({"Setting"}, !bNtp), QStringList());
            EXPECT_EQ(at.NotEnabled(arPickers, bPickers), QStringList());
        };
        Expect(true, true);
        at.Click("DateTime.Adjust0");
        Expect(false, false); // although daylight saving is on
        at.Click("DateTime.Adjust1");
        Expect(true, true);
        at.Click("DateTime.isDaylight0");
        Expect(true, false);
        for (const auto& [pszBox, arWidgets] :
             {std::pair("DIPS.Enable", QStringList{"Local.DIPS", "DIPSTest"}),
              {"AutoLogin.isAutologin", QStringList{"AutoLogin.UserName", "AutoLogin.Password"}}}) {
            EXPECT_EQ(at.NotEnabled(arWidgets, true), QStringList());
            at.Click(pszBox);
            EXPECT_EQ(at.NotEnabled(arWidgets, false), QStringList());
        }
        vm_objPrompts.Expect("No CGI", "Error");
        at.Click("NTPTest");
    }));
}

TEST_F(SystemPage, TellsWhatTheListsDoNotKnowAndWritesWhatTheyShow)
{
    Store({{"/DateTime", "NTPTimeZone", "77"},
           {"/DateTime", "DaylightStart", "garbage"},
           {"", "Language", "lang_fra.xml"},
           {"/QuadType", "AutoSwitchInterval", "7000"},
           {"/log", "EventLogRecycleDay", "11"}});
    CXmlObj xmlExpected = Stored(emDef_Document::System);
    const auto Change = [&](const char* pszNode, const char* pszKey, const QString& sValue) {
        xmlExpected.m_F_b_SetValue(QString("/root/system") + pszNode, pszKey, sValue);
    };
    EXPECT_TRUE(RunCycle([&](CPropertySheet& sheet) {
        const At at(OpenTab(sheet, SystemTab));
        EXPECT_EQ(Note(at), "Stored values that the lists don't have, which OK replaces: Time Zone, Language, Auto "
                            "Switch, Event Log");
        EXPECT_EQ(Chosen(at, "DateTime.NTPTimeZone"), "");
        EXPECT_EQ(Chosen(at, "QuadType.AutoSwitchInterval"), "5");
        const auto* const pStart = static_cast<QDateEdit*>(at.Find("DateTime.DaylightStart"));
        Change("/DateTime", "DaylightStart", nsDaylightText::Compose(pStart->date(), QTime(0, 0)));
        ExpectWaiting();
        Press(sheet, "OK");
    }));
    Change("/DateTime", "NTPTimeZone", "-1");
    Change("", "Language", "lang_.xml");
    Change("/QuadType", "AutoSwitchInterval", "5000");
    Change("/log", "EventLogRecycleDay", "10");
    EXPECT_EQ(Stored(emDef_Document::System).m_F_s_GetUtf8().toStdString(), xmlExpected.m_F_s_GetUtf8().toStdString());

    Store({{"/Notification/SMTP", "Retry", "9"}, {"/Notification/FTP", "Retry", ""}});
    EXPECT_TRUE(RunCycle([&](CPropertySheet& sheet) {
        const At at(OpenTab(sheet, NotificationTab));
        EXPECT_EQ(Note(at), "Stored values that the lists don't have, which OK replaces: Retry");
    }));
}

TEST_F(SystemPage, AsksTheDirectoryServiceThatTheRecorderNames)
{
    EXPECT_TRUE(RunCycle([&](CPropertySheet& sheet) {
        const At at(OpenTab(sheet, SystemTab));
        vm_objPrompts.Expect("OK FL-000001 IS AT 203.0.113.24\r\n", "DIPS Test");
        at.Click("DIPSTest");
        Nvr().vm_xmlSystemInfo.m_F_b_SetValue("/root/Local", "ExternalIP", QString("203.0.113.24"));
        Nvr().vm_xmlSystemInfo.m_F_b_SetValue("/root/Local", "ExternalPort", QString("9"));
        vm_objPrompts.Expect("FAILED", "DIPS Test");
        at.Click("DIPSTest");
    }));
}

TEST_F(SystemPage, ClockGoesOutAtOnceAndClosesTheSheetAsCancelDoes)
{
    const QString sWarning =
        "Modify System Time Will Re-Start Record Service, Please Click \"Yes\" To Coutinue Or \"No\" To Cancel.";
    const CXmlObj xmlBefore = Stored(emDef_Document::System);
    int nResult = -1;
    EXPECT_TRUE(RunCycle([&](CPropertySheet& sheet) {
        const At page(OpenTab(sheet, SystemTab));
        page.Type("system.DeviceTitle", "lost");
        page.Click("DateTime.Adjust0");
        vm_objPrompts.ExpectDialog([&](QDialog& dialog) { At(&dialog).Click("Cancel"); });
        page.Click("Setting");
        EXPECT_TRUE(Posts().empty());
        vm_objPrompts.ExpectDialog([&](QDialog& dialog) {
            const At at(&dialog);
            static_cast<QCalendarWidget*>(at.Find("DateTime.CurrentDate"))->setSelectedDate({2031, 2, 3});
            TypeMoment(at.Find("DateTime.CurrentTime"), "04:05:06");
            QTest::keyClick(at.Find("DateTime.NTPTimeZone"), Qt::Key_Up);
            at.Click("DateTime.isDaylight0");
            EXPECT_FALSE(at.Find("DateTime.DaylightStart")->isEnabled());
            vm_objPrompts.Expect(sWarning, "Warning", "");
            at.Click("OK");
            EXPECT_TRUE(dialog.isVisible());
            vm_objPrompts.Expect(sWarning, "Warning");
            at.Click("OK");
            EXPECT_FALSE(dialog.isVisible());
        });
        QObject::connect(&sheet, &QDialog::finished, [&](int n) { nResult = n; });
        page.Click("Setting");
        EXPECT_TRUE(sheet.isVisible()) << "the sheet closes behind the dialog";
        EXPECT_TRUE(WaitUntil([&] { return !sheet.isVisible(); }));
    }));
    EXPECT_EQ(nResult, QDialog::Rejected);
    for (const auto& st : vm_nvr.m_F_o_Log().m_F_ar_Entries())
        EXPECT_EQ(st.sTarget.find("Update"), std::string::npos) << st.sTarget;
    const CXmlObj xmlAfter = Stored(emDef_Document::System);
    const auto Of = [](const CXmlObj& xml, const char* pszKey) {
        return xml.m_F_s_Value("/root/system/DateTime", pszKey).toStdString();
    };
    EXPECT_EQ(Of(xmlAfter, "NTPTimeZone"), "18");
    EXPECT_EQ(Of(xmlAfter, "isDaylight"), "0");
    for (const char* pszKey : {"DaylightStart", "DaylightStop", "DaylightOffset", "Adjust", "NTPServer"})
        EXPECT_EQ(Of(xmlAfter, pszKey), Of(xmlBefore, pszKey));
    EXPECT_EQ(xmlAfter.m_F_s_GetNods("/root/account/USER002").contains("0perator"), true);
}

} // namespace
