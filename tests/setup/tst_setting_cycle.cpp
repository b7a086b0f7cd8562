#include <QCloseEvent>
#include <QLabel>
#include <QTabBar>
#include <QTreeWidget>

#include "At.h"
#include "CycleFixture.h"
#include "core/CWndNvrEmbedded.h"
#include "toolkit/sheet/CPropertyPage.h"

namespace {

using Names = std::vector<std::string>;
const Names g_arUploads = {"UpdateEMail", "UpdateCamera", "UpdateSchedule", "UpdateSystem"};
constexpr emDef_Document g_arDocuments[] = {emDef_Document::System, emDef_Document::Schedule, emDef_Document::Camera,
                                            emDef_Document::EMail};
constexpr const char* TryAgain = "Get Setting File Faild, Please Try Again.";

TEST_F(CycleFixture, OneFailedDownloadEndsTheCycleWithAMessage)
{
    for (const char* pUrl : {"systeminfo", "SystemXML", "ScheduleXML", "CameraXML", "EMailXML"}) {
        SCOPED_TRACE(pUrl);
        vm_nvr.m_F_o_Faults().m_S_Clear();
        ASSERT_TRUE(vm_nvr.m_F_o_Faults().m_F_b_Set(pUrl, {"status", 500}));
        vm_objPrompts.Expect(TryAgain, "Error");
        Nvr().OnMenuSystemSetting();
        // The others are asked for all the same.
        for (const char* pAsked : {"systeminfo", "SystemXML", "ScheduleXML", "CameraXML", "EMailXML"})
            EXPECT_TRUE(vm_nvr.m_F_o_Log().m_F_b_Wait(
                [pAsked](const stDef_LogEntry& st) { return st.sTarget.find(pAsked) != std::string::npos; }, 0))
                << pAsked;
        EXPECT_EQ(Posts(), Names());
        EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    }
    vm_nvr.m_F_o_Faults().m_S_Clear();
    EXPECT_TRUE(RunCycle([](CPropertySheet& sheet) { Press(sheet, "Cancel"); })) << "and the next cycle is a good one";
}

TEST_F(CycleFixture, CancelPostsNothingAndTheNextCycleBeginsAnew)
{
    EXPECT_TRUE(RunCycle([&](CPropertySheet& sheet) {
        Nvr().vm_xmlSystem.m_F_b_SetValue("/root/system", "DeviceTitle", "changed");
        Press(sheet, "Cancel");
    }));
    EXPECT_EQ(Posts(), Names());
    EXPECT_TRUE(vm_objPrompts.TakeWaits().empty());
    EXPECT_TRUE(RunCycle([&](CPropertySheet& sheet) {
        EXPECT_NE(Nvr().vm_xmlSystem.m_F_s_Value("/root/system", "DeviceTitle"), "changed");
        QTest::keyClick(&sheet, Qt::Key_Escape);
        EXPECT_FALSE(sheet.isVisible());
    }));
    EXPECT_EQ(Posts(), Names());
}

TEST_F(CycleFixture, EscAndTheWindowsCloseAskBeforeAChangeIsLost)
{
    const auto CloseByUser = [](CPropertySheet& sheet) {
        QCloseEvent event;
        QSpontaneKeyEvent::setSpontaneous(&event);
        qApp->notify(&sheet, &event);
    };
    const AtSheet Esc = [](CPropertySheet& sheet) { QTest::keyClick(&sheet, Qt::Key_Escape); };
    const struct
    {
        AtSheet fnLeave;
        bool bAsks;
    } arWays[] = {{Esc, true},
                  {CloseByUser, true},
                  {[](CPropertySheet& sheet) { Press(sheet, "Cancel"); }, false},
                  {[](CPropertySheet& sheet) { sheet.close(); }, false},
                  {[](CPropertySheet& sheet) { sheet.done(QDialog::Rejected); }, false}};
    const AtSheet arChanges[] = {
        [](CPropertySheet& sheet) { // nothing changes, wherever one looks
            for (int nTab = 0; nTab < 8; ++nTab)
                OpenTab(sheet, nTab);
        },
        [](CPropertySheet& sheet) { At(OpenTab(sheet, 2)).Type("server.HTTPPort", "8080"); }, // written at OK
        [](CPropertySheet& sheet) { At(OpenTab(sheet, 6)).Click("Delete"); },                 // written at once
    };
    for (const auto& way : arWays) {
        for (const AtSheet& fnChange : arChanges) {
            const bool bAsks = way.bAsks && &fnChange != arChanges;
            EXPECT_TRUE(RunCycle([&](CPropertySheet& sheet) {
                fnChange(sheet);
                const QString sBefore = Nvr().vm_xmlSystem.m_F_s_GetXML();
                for (const char* pszAnswer : {"", "yes"}) {
                    if (bAsks)
                        vm_objPrompts.ExpectToDestroy("Close without saving the changes?", "System Setting", pszAnswer);
                    way.fnLeave(sheet);
                    EXPECT_EQ(sheet.isVisible(), bAsks && !*pszAnswer);
                    EXPECT_EQ(Nvr().vm_xmlSystem.m_F_s_GetXML(), sBefore) << "asking writes nothing";
                    if (!bAsks)
                        break;
                }
            }));
            EXPECT_EQ(Posts(), Names());
        }
    }
}

TEST_F(CycleFixture, EnterBelongsToThePageAndWithCtrlIsOk)
{
    EXPECT_TRUE(RunCycle([&](CPropertySheet& sheet) {
        const auto Enter = [&sheet](At at, const char* pszAt) {
            at.Find(pszAt)->setFocus();
            QTest::keyClick(sheet.focusWidget(), Qt::Key_Return);
            QTest::keyClick(sheet.focusWidget(), Qt::Key_Enter, Qt::KeypadModifier);
        };
        const At network(OpenTab(sheet, 2));
        for (const char* pszField : {"network.IPAddress", "server.HTTPPort", "server.RTSPOverHTTP", "DDNS.Server"})
            Enter(network, pszField);

        const At camera(OpenTab(sheet, 0));
        auto* const pTree = static_cast<QTreeWidget*>(camera.Find("Cameras"));
        QTest::mouseClick(pTree->viewport(), Qt::LeftButton, {},
                          pTree->visualItemRect(pTree->topLevelItem(1)).center());
        camera.Type("Name", "Typed");
        Enter(camera, "Name");
        EXPECT_EQ(pTree->topLevelItem(1)->text(0), "Typed") << "a camera is shown: Update";

        const At at(OpenTab(sheet, 6));
        const auto Count = [this] { return Nvr().vm_xmlEMail.m_F_n_GetValueInt("/root/EMail", "count", -1); };
        at.Type("Phone", "110");
        Enter(at, "Phone");
        EXPECT_EQ(Nvr().vm_xmlEMail.m_F_s_Value("/root/EMail/Mail000", "Phone"), "110") << "an entry is chosen: Modify";
        while (Count() > 0)
            at.Click("Delete");
        at.Type("Name", "Only");
        at.Type("Mail", "only@example.com");
        for (const char* pszAt : {"Mail", "Entries"}) {
            Enter(at, pszAt);
            EXPECT_EQ(Count(), 1) << "none was chosen: Add";
        }
        Enter(at, "Delete");
        EXPECT_EQ(Count(), 0) << "a button that has the focus is meant";
        EXPECT_TRUE(sheet.isVisible());
        EXPECT_EQ(Posts(), Names());
        ExpectWaiting();
        QTest::keyClick(at.Find("Name"), Qt::Key_Return, Qt::ControlModifier);
        EXPECT_FALSE(sheet.isVisible());
    }));
    EXPECT_EQ(Posts(), g_arUploads);
}

TEST_F(CycleFixture, AnUneditedOkPostsWhatWasFetchedInOrder)
{
    for (const bool bAllTabs : {false, true}) {
        std::vector<QString> arBefore;
        for (const emDef_Document nDocument : g_arDocuments)
            arBefore.push_back(Stored(nDocument).m_F_s_GetXML());
        EXPECT_TRUE(RunCycle([&](CPropertySheet& sheet) {
            for (int nTab = 0; nTab < 8 && bAllTabs; ++nTab)
                OpenTab(sheet, nTab);
            ExpectWaiting();
            Press(sheet, "OK");
        }));
        EXPECT_EQ(Posts(), g_arUploads);
        EXPECT_EQ(vm_objPrompts.TakeWaits(), std::vector<int>{60000});
        for (std::size_t i = 0; i < arBefore.size(); ++i)
            EXPECT_EQ(Stored(g_arDocuments[i]).m_F_s_GetXML(), arBefore[i]) << "all tabs opened: " << bAllTabs;
    }
    // A failed upload is followed by the others, and waited for all the same.
    ASSERT_TRUE(vm_nvr.m_F_o_Faults().m_F_b_Set("UpdateCamera", {"status", 500}));
    ASSERT_TRUE(vm_nvr.m_F_o_Faults().m_F_b_Set("UpdateSystem", {"refuse"}));
    QString sTold;
    QObject::connect(&Nvr(), &CWndNvrBase::S_NotTaken, [&](const QString& sText) { sTold = sText; });
    EXPECT_FALSE(vm_objPrompts.WaitText().contains('\n'));
    EXPECT_TRUE(RunCycle([&](CPropertySheet& sheet) {
        ExpectWaiting();
        Press(sheet, "OK");
    }));
    EXPECT_EQ(Posts(), g_arUploads);
    EXPECT_EQ(vm_objPrompts.TakeWaits(), std::vector<int>{60000});
    EXPECT_EQ(sTold, "Not taken by the recorder: Camera / System");
    EXPECT_TRUE(vm_objPrompts.WaitText().endsWith('\n' + sTold)) << qPrintable(vm_objPrompts.WaitText());
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(CycleFixture, PagesFillThemselvesWhenTheyAreFirstShown)
{
    EXPECT_TRUE(RunCycle([](CPropertySheet& sheet) {
        const auto& arPages = sheet.m_F_ar_Pages();
        ASSERT_EQ(arPages.size(), 8);
        EXPECT_TRUE(arPages[0]->m_F_b_Initialised());
        QTabBar* const pTabs = sheet.findChild<QTabWidget*>("Tabs")->tabBar();
        pTabs->setFocus();
        QTest::keyClick(pTabs, Qt::Key_Right);
        QTest::keyClick(pTabs, Qt::Key_Right);
        EXPECT_TRUE(arPages[2]->m_F_b_Initialised());
        EXPECT_FALSE(arPages[3]->m_F_b_Initialised());
        const auto nControls = arPages[2]->findChildren<QWidget*>().size();
        OpenTab(sheet, 0);
        OpenTab(sheet, 2);
        EXPECT_EQ(arPages[2]->findChildren<QWidget*>().size(), nControls) << "only once";
        EXPECT_TRUE(arPages[6]->findChildren<QWidget*>().isEmpty());
    }));
}

TEST_F(CycleFixture, APageThatRefusesKeepsTheSheetAndIsShown)
{
    EXPECT_TRUE(RunCycle([&](CPropertySheet& sheet) {
        OpenTab(sheet, 2);
        OpenTab(sheet, 6);
        const QString sSystem = Nvr().vm_xmlSystem.m_F_s_GetXML();
        Nvr().vm_xmlSystem.m_F_b_Close();
        Press(sheet, "OK");
        EXPECT_TRUE(sheet.isVisible());
        EXPECT_EQ(sheet.findChild<QTabWidget*>("Tabs")->currentIndex(), 2);
        Nvr().vm_xmlSystem.m_F_b_LoadXML(sSystem);
        ExpectWaiting();
        Press(sheet, "OK");
        EXPECT_FALSE(sheet.isVisible());
    }));
}

// Labels keep their defaults then, and messages and the title are empty.
TEST_F(CycleFixture, TextsStandWithoutALanguageFile)
{
    vm_env.vm_nLanguage = 7;
    MakeNvr();
    EXPECT_TRUE(RunCycle([&](CPropertySheet& sheet) {
        EXPECT_EQ(sheet.windowTitle(), "");
        QStringList arTexts = {sheet.findChild<QPushButton*>("OK")->text()};
        const auto* const pTabs = sheet.findChild<QTabWidget*>("Tabs");
        for (int nTab = 0; nTab < pTabs->count(); ++nTab)
            arTexts.append(pTabs->tabText(nTab));
        EXPECT_EQ(arTexts, QStringList({"OK", "Camera", "Schedule", "Network", "System", "User", "Motion Detection",
                                        "Address Book", "Notification"}));
        vm_objPrompts.Expect("", "");
        Press(sheet, "OK");
    }));
}

TEST_F(CycleFixture, TheSheetHasASlotForEachCameraThatTheRecorderTakes)
{
    for (const auto& [pszInfo, nSlots] :
         {std::pair{"<root><Local MaxCam='3'/></root>", 3}, {"<root/>", 0}, {"<root><Local MaxCam='-4'/></root>", 0}}) {
        ASSERT_TRUE(Nvr().vm_xmlSystemInfo.m_F_b_LoadXML(pszInfo));
        CDlgSetupPageSystemSetting sheet(&Nvr(), "", 0);
        EXPECT_EQ(sheet.m_arrCamObj, std::vector<CCamObj_Base*>(nSlots)) << pszInfo;
        sheet.m_S_AddCamera(1); // nobody listens
    }
}

} // namespace
