#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QSpinBox>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "CVirtualNvr.h"
#include "RecorderCard.h"
#include "http/CFaultTable.h"
#include "live/CChannelDrag.h"
#include "recorders/CCameraNames.h"
#include "recorders/CRecorderDialog.h"
#include "recorders/CRecorderFilter.h"
#include "recorders/CRecorderTree.h"
#include "recorders/CRecorderWatch.h"
#include "rtsp/CStreamServer.h"
#include "support/Waiting.h"
#include "window/HostTexts.h"

namespace {

// A port where nobody listens.
int ClosedPort()
{
    QTcpServer objServer;
    objServer.listen(QHostAddress::LocalHost);
    return objServer.serverPort();
}

class RecorderDialogTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(vm_env.m_F_b_Init(vm_dir.path()));
        CWinAES_CMS::s_S_SetKeyFolder(vm_dir.path());
    }

    void StartRecorder(int nHttpPort = 0, int nRtspPort = 0)
    {
        std::string sError;
        stDef_VirtualNvrConfig stConfig = WithChannels(6);
        stConfig.nHttpPort = nHttpPort;
        stConfig.nRtspPort = nRtspPort;
        ASSERT_TRUE(vm_nvr.m_F_b_Start(stConfig, sError)) << sError;
    }

    stDef_RecorderForm Form(int nHttpPort, int nRtspPort, const char* pszPassword = "Fl33t!ink")
    {
        stDef_RecorderForm stForm;
        stForm.sAddress = "127.0.0.1";
        stForm.sUser = "admin";
        stForm.sPassword = pszPassword;
        stForm.nHttpPort = nHttpPort;
        stForm.nRtspPort = nRtspPort;
        return stForm;
    }

    QTemporaryDir vm_dir;
    CEnvObj vm_env;
    CRecorderStore vm_store{&vm_env};
    CVirtualNvr vm_nvr;
};

TEST_F(RecorderDialogTest, TheConnectionTestTellsWhatIsWrong)
{
    using enum stDef_TestResult::emDef_Verdict;
    StartRecorder();
    const int nHttp = vm_nvr.m_F_n_HttpPort(), nRtsp = vm_nvr.m_F_n_RtspPort();
    const auto Verdict = [](const stDef_RecorderForm& stForm) {
        std::optional<stDef_TestResult> stResult;
        CConnectionTest objTest;
        QObject::connect(&objTest, &CConnectionTest::S_Done, [&](const stDef_TestResult& st) { stResult = st; });
        objTest.m_S_Start(stForm);
        EXPECT_TRUE(WaitUntil([&] { return stResult.has_value(); }, 16000));
        return stResult.value_or(stDef_TestResult{});
    };
    const stDef_TestResult stFine = Verdict(Form(nHttp, nRtsp));
    EXPECT_EQ(stFine.nVerdict, Fine);
    EXPECT_EQ(stFine.sModel, "VN-16E");
    EXPECT_EQ(stFine.nChannels, 6);
    EXPECT_EQ(Verdict(Form(nHttp, nRtsp, "wrong")).nVerdict, Account);
    EXPECT_EQ(Verdict(Form(ClosedPort(), nRtsp)).nVerdict, Closed);
    EXPECT_EQ(Verdict(Form(nHttp, ClosedPort())).nVerdict, NoStream);
    stDef_RecorderForm stNameless = Form(nHttp, nRtsp);
    stNameless.sAddress = "no-such-host.invalid";
    EXPECT_EQ(Verdict(stNameless).nVerdict, NoHost);
    for (const char* const pszFault : {"garbage", "empty", "redirect", "deep"}) {
        vm_nvr.m_F_o_Faults().m_S_Clear();
        ASSERT_TRUE(vm_nvr.m_F_o_Faults().m_F_b_Set("*", {pszFault}));
        EXPECT_EQ(Verdict(Form(nHttp, nRtsp)).nVerdict, NoRecorder) << pszFault;
    }
}

TEST_F(RecorderDialogTest, ASilentTestIsStoppedAndTheDialogClosesAtOnce)
{
    StartRecorder();
    ASSERT_TRUE(vm_nvr.m_F_o_Faults().m_F_b_Set("*", {"silence"}));
    ASSERT_EQ(vm_store.m_F_o_Add(Form(vm_nvr.m_F_n_HttpPort(), vm_nvr.m_F_n_RtspPort())).nNvrID, 0);
    CRecorderDialog objDialog(&vm_store, 0);
    objDialog.show();
    auto* const pTest = objDialog.findChild<QPushButton*>("Test");
    auto* const pVerdict = objDialog.findChild<QLabel*>("Verdict");
    QTest::mouseClick(pTest, Qt::LeftButton);
    EXPECT_EQ(pVerdict->text(), Tr(nsHost::TestRunning));
    ASSERT_TRUE(WaitUntil([&] { return vm_nvr.m_F_o_Faults().m_F_o_Find("x")->nPlayed > 0; })) << "it is running";
    QTest::mouseClick(pTest, Qt::LeftButton);
    EXPECT_EQ(pVerdict->text(), Tr(nsHost::TestStopped));
    QTest::mouseClick(pTest, Qt::LeftButton);
    QElapsedTimer objClock;
    objClock.start();
    QTest::keyClick(&objDialog, Qt::Key_Escape);
    EXPECT_FALSE(objDialog.isVisible());
    EXPECT_LT(objClock.elapsed(), 1000);
}

TEST_F(RecorderDialogTest, ARecorderIsTypedInTestedAndStored)
{
    StartRecorder();
    CRecorderDialog objDialog(&vm_store, -1);
    objDialog.show();
    QPushButton* const pOk = objDialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
    EXPECT_FALSE(pOk->isEnabled());
    EXPECT_FALSE(pOk->toolTip().isEmpty()) << "the reason";
    const auto Type = [&](const char* pszName, const QString& sText) {
        QTest::keyClicks(objDialog.findChild<QWidget*>(pszName), sText);
    };
    Type("IP", "127.0.0.1");
    Type("UID", "admin");
    EXPECT_TRUE(pOk->isEnabled());
    EXPECT_EQ(objDialog.findChild<QLineEdit*>("PWD")->echoMode(), QLineEdit::Password);
    Type("PWD", "Fl33t!ink");
    objDialog.findChild<QSpinBox*>("HttpPort")->setValue(vm_nvr.m_F_n_HttpPort());
    objDialog.findChild<QSpinBox*>("RtspPort")->setValue(vm_nvr.m_F_n_RtspPort());
    QTest::mouseClick(objDialog.findChild<QPushButton*>("Test"), Qt::LeftButton);
    auto* const pTake = objDialog.findChild<QPushButton*>("TakeChannels");
    ASSERT_TRUE(WaitUntil([&] { return pTake->isVisible(); }, 10000));
    QTest::mouseClick(pTake, Qt::LeftButton);
    QTest::mouseClick(pOk, Qt::LeftButton);
    ASSERT_EQ(objDialog.m_F_n_NvrID(), 0);
    EXPECT_EQ(vm_store.m_F_ar_Recorders()[0].nChannels, 6);
    EXPECT_EQ(vm_store.m_F_o_InitRecord(0).sPWD, "Fl33t!ink");
    CRecorderDialog objTwin(&vm_store, -1);
    EXPECT_TRUE(objTwin.findChild<QLabel*>("Twin")->isHidden());
    QTest::keyClicks(objTwin.findChild<QLineEdit*>("IP"), "127.0.0.1");
    objTwin.findChild<QSpinBox*>("HttpPort")->setValue(vm_nvr.m_F_n_HttpPort());
    EXPECT_FALSE(objTwin.findChild<QLabel*>("Twin")->isHidden());
}

TEST_F(RecorderDialogTest, TheWatchSeesARecorderGoAndComeBack)
{
    const int nHttp = ClosedPort(), nRtsp = ClosedPort();
    CRecorderWatch objWatch;
    int nBack = 0;
    QObject::connect(&objWatch, &CRecorderWatch::S_Back, [&](int nNvrID) { nBack += nNvrID == 3 ? 1 : 0; });
    stDef_Recorder stRecorder;
    stRecorder.nNvrID = 3;
    stRecorder.sAddress = "127.0.0.1";
    stRecorder.nHttpPort = nHttp;
    stRecorder.nRtspPort = nRtsp;
    objWatch.m_S_SetRecorders({stRecorder});
    const auto Reaches = [&](emDef_Reach nReach) {
        return WaitUntil([&] { return objWatch.m_F_n_Reach(3) == nReach; }, 3500);
    };
    EXPECT_TRUE(Reaches(emDef_Reach::Away));
    StartRecorder(nHttp, nRtsp);
    ASSERT_TRUE(WaitUntil([&] { return nBack == 1; }, 3000));
    EXPECT_EQ(objWatch.m_F_n_Reach(3), emDef_Reach::There);
    ASSERT_TRUE(vm_nvr.m_F_o_Streams().m_F_b_SetFault("*", "refuse"));
    objWatch.m_S_ProbeNow(3);
    EXPECT_TRUE(Reaches(emDef_Reach::Away));
    ASSERT_TRUE(vm_nvr.m_F_o_Streams().m_F_b_SetFault("*", "none"));
    EXPECT_TRUE(WaitUntil([&] { return nBack == 2; }, 3500));
    stRecorder.nStreamType = 0;
    objWatch.m_S_SetRecorders({stRecorder});
    EXPECT_TRUE(Reaches(emDef_Reach::There)) << "by the HTTP port, whatever the status";
}

TEST_F(RecorderDialogTest, HostilePeersAreSilentAndDoNoHarm)
{
    QTcpServer objServer;
    ASSERT_TRUE(objServer.listen(QHostAddress::LocalHost));
    int nMode = 0; // 0 closes at once, 1 sends without end, 2 says nothing
    QObject::connect(&objServer, &QTcpServer::newConnection, [&] {
        QTcpSocket* const pPeer = objServer.nextPendingConnection();
        if (nMode == 0) {
            pPeer->close();
            return;
        }
        if (nMode == 2)
            return;
        QObject::connect(pPeer, &QTcpSocket::bytesWritten, pPeer, [pPeer] { pPeer->write(QByteArray(65536, 'x')); });
        pPeer->write(QByteArray(65536, 'x'));
    });
    for (nMode = 0; nMode < 3; ++nMode) {
        CRecorderWatch objWatch;
        objWatch.m_S_SetRecorders({{0, "x", "127.0.0.1", 1, 80, objServer.serverPort()}});
        EXPECT_TRUE(WaitUntil([&] { return objWatch.m_F_n_Reach(0) == emDef_Reach::Silent; }, 3000)) << nMode;
    }
}

TEST_F(RecorderDialogTest, TheTreeServesKeysDragAndFilter)
{
    CRecorderWatch objWatch;
    CCameraNames objNames(&vm_env, &vm_store, &objWatch);
    CRecorderTree objTree(&objNames);
    CRecorderFilter objFilter(&objTree);
    objTree.m_S_SetRecorders({{2, "Gate", "192.0.2.1", 1, 80, 554, 3}, {5, "Store", "192.0.2.2", 1, 80, 554, 64}});
    objTree.show();
    QStringList arHeard;
    QObject::connect(&objTree, &CRecorderTree::S_PlaceChannel, [&](stDef_ChannelKey st) {
        arHeard.append(QString("place %1/%2").arg(st.nNvrID).arg(st.nChannel));
    });
    QObject::connect(&objTree, &CRecorderTree::S_ShowRecorder,
                     [&](int n) { arHeard.append(QString("show %1").arg(n)); });
    QObject::connect(&objTree, &CRecorderTree::S_Edit, [&](int n) { arHeard.append(QString("edit %1").arg(n)); });
    QObject::connect(&objTree, &CRecorderTree::S_Remove, [&](int n) { arHeard.append(QString("remove %1").arg(n)); });
    EXPECT_EQ(objTree.m_F_n_CurrentRecorder(), 2);
    EXPECT_EQ(objTree.topLevelItem(1)->childCount(), 0) << "channels are made when they are opened";
    for (const Qt::Key nKey :
         {Qt::Key_Return, Qt::Key_Right, Qt::Key_Down, Qt::Key_Down, Qt::Key_Enter, Qt::Key_F2, Qt::Key_Delete})
        QTest::keyClick(&objTree, nKey);
    EXPECT_EQ(arHeard, (QStringList{"show 2", "place 2/1", "edit 2", "remove 2"}));
    const auto Payload = [&](QTreeWidgetItem* pItem) {
        const std::unique_ptr<QMimeData> pData(objTree.model()->mimeData({objTree.indexFromItem(pItem)}));
        return pData->data(CChannelDrag::MimeType);
    };
    EXPECT_EQ(Payload(objTree.currentItem()), "2/1");
    EXPECT_EQ(Payload(objTree.topLevelItem(0)), "2/0\n2/1\n2/2");

    objTree.m_S_SetChannelState({2, 1}, emDef_LiveState::Live);
    objTree.m_S_SetRecorderState(2, emDef_Reach::Away, {});
    EXPECT_EQ(objTree.currentItem()->data(0, Qt::AccessibleTextRole).toString(), "Gate, Channel 2, Live");
    objTree.m_S_SetRecorders({{2, "Gate 2", "192.0.2.1", 1, 80, 554, 3}, {5, "Store", "192.0.2.2"}});
    EXPECT_TRUE(objTree.topLevelItem(0)->isExpanded());
    EXPECT_EQ(objTree.currentItem()->data(0, Qt::AccessibleTextRole).toString(), "Gate 2, Channel 2, Live");
    EXPECT_TRUE(objTree.topLevelItem(0)->toolTip(0).contains("Unreachable"));
    QTest::keyClicks(&objFilter, "192.0.2.2");
    EXPECT_TRUE(objTree.topLevelItem(0)->isHidden());
    EXPECT_FALSE(objTree.topLevelItem(1)->isHidden());
    QTest::keyClick(&objFilter, Qt::Key_Escape);
    EXPECT_FALSE(objTree.topLevelItem(0)->isHidden());
}

} // namespace
