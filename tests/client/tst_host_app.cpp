#include <QApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTimer>
#include <gtest/gtest.h>

#include "CVirtualNvr.h"
#include "RecorderCard.h"
#include "host/Lib_Hostenv.h"
#include "live/CLiveGrid.h"
#include "rtsp/CStreamServer.h"
#include "support/Files.h"
#include "support/ServerProcess.h"
#include "support/Waiting.h"
#include "tour/CTourApp.h"
#include "window/CHostApp.h"
#include "window/CMainWindow.h"

namespace {

class HostAppTest : public testing::Test
{
protected:
    void SetUp() override { CWinAES_CMS::s_S_SetKeyFolder(vm_dir.path()); }

    int Run(const QStringList& arArguments) { return RunAs(&RunHost, {"fleetlink-client"}, arArguments); }
    int RunTour(const QStringList& arArguments)
    {
        return RunAs(&CTourApp::s_F_n_Run, {"fleetlink-tour", Path("tour")}, arArguments);
    }

    static int RunHost(QStringList arArguments) { return CHostApp::s_F_n_Run(arArguments); }
    int RunAs(int (*fnProgram)(QStringList), const QStringList& arFirst, const QStringList& arArguments)
    {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const int nExit = fnProgram(arFirst + arArguments);
        vm_sOut = testing::internal::GetCapturedStdout();
        vm_sErr = testing::internal::GetCapturedStderr();
        EXPECT_EQ((vm_sOut + vm_sErr).find("Fl33t!ink"), std::string::npos);
        return nExit;
    }

    QString Path(const char* pszName) const { return vm_dir.filePath(pszName); }

    QTemporaryDir vm_dir;
    std::string vm_sOut;
    std::string vm_sErr;
};

TEST_F(HostAppTest, UnusableOptionsEndWithTwo)
{
    WriteFile(Path("file"), {});
    const QString sConfig = Path("config");
    const struct
    {
        QStringList arArguments;
        const char* pszTold;
    } arCases[] = {
        {{"--frobnicate"}, "frobnicate"},
        {{"recorder.xml"}, "no arguments but options"},
        {{"--config"}, "config"},
        {{"--config", Path("file") + "/below"}, "can't be used"},
        {{"--config", sConfig, "--import", Path("none.xml")}, "no such file"},
        {{"--config", sConfig, "--lang-dir", QString(300, 'x')}, "too long"},
    };
    for (const auto& stCase : arCases) {
        EXPECT_EQ(Run(stCase.arArguments), CHostApp::ExitSetup) << stCase.pszTold;
        EXPECT_NE(vm_sErr.find(stCase.pszTold), std::string::npos) << vm_sErr;
    }
    WriteCard(Path("card.xml"), "Lab", 80, 554, 4);
    EXPECT_EQ(Run({"--config", sConfig, "--import", Path("card.xml"), "--import-only"}), CHostApp::ExitOk);
    EXPECT_NE(vm_sOut.find("added: 1"), std::string::npos);
}

TEST_F(HostAppTest, TheProgramTellsOfItselfWithoutADisplayAndEndsCleanlyWhenItIsAskedTo)
{
    qputenv("QT_QPA_PLATFORM", "none");
    for (const auto& [pszOption, pszTold] : {std::pair{"--help", "--import"}, {"--version", FLEETLINK_VERSION}}) {
        ServerProcess objProgram({pszOption});
        EXPECT_NE(objProgram.AllPrinted().find(pszTold), std::string::npos) << pszOption;
        EXPECT_EQ(objProgram.End(0), CHostApp::ExitOk);
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    CVirtualNvr nvr;
    std::string sError;
    ASSERT_TRUE(nvr.m_F_b_Start({}, sError)) << sError;
    WriteCard(Path("card.xml"), "Lab", nvr.m_F_n_HttpPort(), nvr.m_F_n_RtspPort(), 4);
    ServerProcess objHost({"--config", Path("config").toStdString(), "--import", Path("card.xml").toStdString()});
    ASSERT_TRUE(WaitUntil([&] { return nvr.m_F_o_Streams().m_F_n_Sessions() == 4; }, 15000));
    EXPECT_EQ(objHost.End(SIGTERM), CHostApp::ExitOk);
    EXPECT_EQ(CEnvObj::s_F_n_RemoveStaleShm(), 0) << "names left in shared memory";
}

TEST_F(HostAppTest, ALaterHostOnTheSameFolderLeavesItToTheFirst)
{
    const auto Start = [this](QProcess& objHost, const QStringList& arArguments) {
        objHost.start(PROGRAM, QStringList{"--config", Path("config/../config")} + arArguments);
        return objHost.waitForStarted();
    };
    const auto Ends = [](QProcess& objHost) {
        return WaitUntil([&] { return objHost.state() == QProcess::NotRunning; }, 15000) ? objHost.exitCode() : -1;
    };
    ASSERT_TRUE(QDir(vm_dir.path()).mkpath("config"));
    QProcess objDead; // what a killed one leaves keeps nobody out
    ASSERT_TRUE(Start(objDead, {}));
    ASSERT_TRUE(WaitUntil([this] { return QFile::exists(Path("config/host.socket")); }, 15000));
    objDead.kill();
    ASSERT_TRUE(objDead.waitForFinished());
    ASSERT_TRUE(QFile::exists(Path("config/host.lock")));

    WriteCard(Path("card.xml"), "Lab", 80, 554, 4);
    const QDir dirBefore = QDir::current();
    ASSERT_TRUE(QDir::setCurrent(vm_dir.path()));
    QTimer::singleShot(0, [&] {
        const auto objQuit = qScopeGuard([] { QApplication::quit(); });
        CMainWindow* pWindow = nullptr;
        for (QWidget* const pTop : QApplication::topLevelWidgets())
            pWindow = pWindow ? pWindow : qobject_cast<CMainWindow*>(pTop);
        ASSERT_NE(pWindow, nullptr);
        const struct
        {
            QStringList arArguments;
            int nExit;
            const char* pszTold;
            bool bShown;
        } arCases[] = {
            {{"--import", "none.xml"}, CHostApp::ExitSetup, "no such file", true},
            {{"--import", "card.xml", "--import-only"}, CHostApp::ExitOk, "added: 1", false},
            {{"--import", "card.xml"}, CHostApp::ExitOk, "updated: 1", true},
            {{}, CHostApp::ExitOk, "", true},
        };
        for (const auto& stCase : arCases) {
            SCOPED_TRACE(stCase.arArguments.join(' ').toStdString());
            pWindow->showMinimized();
            QProcess objSecond;
            objSecond.setProcessChannelMode(QProcess::MergedChannels);
            ASSERT_TRUE(Start(objSecond, stCase.arArguments));
            EXPECT_EQ(Ends(objSecond), stCase.nExit);
            const QByteArray sTold = objSecond.readAll();
            EXPECT_TRUE(sTold.contains(stCase.pszTold)) << sTold.toStdString();
            EXPECT_EQ(pWindow->isMinimized(), !stCase.bShown);
        }
        EXPECT_EQ(pWindow->m_F_p_Grid()->m_F_ar_Cells()[0]->m_F_o_Key().nNvrID, 0) << "the new recorder is shown";
        QProcess objTour; // it needs a window of its own
        objTour.start(TOUR_PROGRAM, {"tour", "--config", "config"});
        EXPECT_EQ(Ends(objTour), CHostApp::ExitSetup);
        EXPECT_TRUE(objTour.readAllStandardError().contains("another host uses"));
        QProcess objBeside;
        objBeside.start(PROGRAM, {"--config", Path("other"), "--import", "card.xml", "--import-only"});
        EXPECT_EQ(Ends(objBeside), CHostApp::ExitOk) << "another folder is another host's";
    });
    EXPECT_EQ(Run({"--config", Path("config")}), CHostApp::ExitOk);
    QDir::setCurrent(dirBefore.path());
    EXPECT_EQ(ReadFile(Path("config/System.xml")).count("Name=\"Lab\""), 1);
}

TEST_F(HostAppTest, TheTourTellsWhatItSaw)
{
    CVirtualNvr nvr;
    std::string sError;
    ASSERT_TRUE(nvr.m_F_b_Start({}, sError)) << sError;
    WriteCard(Path("card.xml"), "Lab", nvr.m_F_n_HttpPort(), nvr.m_F_n_RtspPort(), 4);
    const QStringList arArguments = {"--config", Path("config"), "--import", Path("card.xml")};
    EXPECT_EQ(RunTour(arArguments), CHostApp::ExitOk) << vm_sErr;
    for (const char* const pszName :
         {"1-live", "3-sixteen-cells", "5-enlarged", "7-dark", "8-test-good", "9-shortcuts", "10-documents",
          "settings-1-camera", "settings-progress", "settings-8-notification-chinese", "11-disconnected",
          "12-connected-again", "state-connecting"})
        EXPECT_FALSE(QImage(Path("tour/") + pszName + ".png").isNull()) << pszName;
    const QByteArray sReport = ReadFile(Path("tour/tour.txt"));
    EXPECT_NE(vm_sOut.find(sReport.toStdString()), std::string::npos);
    EXPECT_EQ(vm_sErr, "") << "no word of the platform either";
    EXPECT_EQ(sReport.count("Connecting "), 4);
    EXPECT_EQ(sReport.count("Live "), 4);
    EXPECT_EQ(sReport.count("Downloaded and uploaded"), 4);

    // A recorder that lacks what the list promises: every part is told, and the tour goes on to its end.
    nvr.m_S_Stop();
    ASSERT_TRUE(nvr.m_F_b_Start(WithChannels(2), sError)) << sError;
    WriteCard(Path("card.xml"), "Lab", nvr.m_F_n_HttpPort(), nvr.m_F_n_RtspPort(), 4);
    EXPECT_EQ(RunTour(arArguments), CTourApp::ExitTourFailed);
    EXPECT_EQ(vm_sErr.find("cell 2"), std::string::npos);
    EXPECT_NE(vm_sErr.find("cell 3 shows no moving picture: Connecting"), std::string::npos) << vm_sErr;
    EXPECT_NE(vm_sErr.find("Refused"), std::string::npos) << vm_sErr;
    EXPECT_TRUE(QFile::exists(Path("tour/12-connected-again.png")));
}

TEST_F(HostAppTest, ATourWithoutARecorderFails)
{
    EXPECT_EQ(RunTour({"--config", Path("config")}), CTourApp::ExitTourFailed);
    EXPECT_NE(vm_sErr.find("no recorder in the list"), std::string::npos);
}

} // namespace
