#include <QAction>
#include <QLabel>
#include <QMenuBar>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QtTest/QTest>
#include <gtest/gtest.h>
#include <memory>
#include <optional>

#include "CDocumentStore.h"
#include "CFaultTable.h"
#include "CLiveGrid.h"
#include "CMainWindow.h"
#include "CPictureCode.h"
#include "CRecorderList.h"
#include "CRequestLog.h"
#include "CStreamServer.h"
#include "CVirtualNvr.h"
#include "RecorderCard.h"
#include "support/Waiting.h"

namespace {

constexpr int LiveMs = 15000;

class MainWindowTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(vm_env.m_F_b_Init(vm_dir.path()));
        CWinAES_CMS::s_S_SetKeyFolder(vm_dir.path());
    }

    void StartRecorder(int nChannels = 4, const char* pszPassword = "Fl33t!ink")
    {
        std::string sError;
        ASSERT_TRUE(vm_nvr.m_F_b_Start(WithChannels(nChannels), sError)) << sError;
        Import("Lab", vm_nvr.m_F_n_HttpPort(), vm_nvr.m_F_n_RtspPort(), 4, pszPassword);
    }

    void Import(const char* pszName, int nHttpPort, int nRtspPort, int nChannels, const char* pszPassword = "Fl33t!ink")
    {
        const QString sCard = vm_dir.filePath("card.xml");
        WriteCard(sCard, pszName, nHttpPort, nRtspPort, nChannels, pszPassword);
        ASSERT_EQ(vm_store.m_F_o_Import(sCard).sError, QString());
    }

    void OpenWindow()
    {
        vm_pWindow = std::make_unique<CMainWindow>(&vm_env, &vm_store);
        vm_pWindow->show();
        QApplication::setActiveWindow(vm_pWindow.get());
    }

    const CLiveCell& Cell(int i) const { return *vm_pWindow->m_F_p_Grid()->m_F_ar_Cells()[i]; }

    bool AllIn(emDef_LiveState nState, int nLimitMs = LiveMs)
    {
        return WaitUntil(
            [&] {
                for (int i = 0; i < 4; ++i) {
                    if (!Cell(i).m_F_p_Channel() || Cell(i).m_F_p_Channel()->m_F_n_State() != nState)
                        return false;
                }
                return true;
            },
            nLimitMs);
    }

    // What the picture on the screen says of itself.
    std::optional<stDef_PictureCode> Code(int nCell) const
    {
        const stDef_Picture& st = Cell(nCell).m_F_o_Picture();
        if (st.nSerial == 0)
            return {};
        const QImage image = QImage(reinterpret_cast<const uchar*>(st.arPixels.data()), st.nWidth, st.nHeight,
                                    st.nStride * 4, QImage::Format_RGB32)
                                 .scaled(640, 360, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                                 .convertToFormat(QImage::Format_Grayscale8);
        return CPictureCode::s_F_o_Read(image.constBits(), int(image.bytesPerLine()), 640, 360);
    }

    void Key(Qt::Key nKey, Qt::KeyboardModifiers nModifiers = {})
    {
        QTest::keyClick(vm_pWindow.get(), nKey, nModifiers);
    }

    QString TableText(int nRow, int nColumn) const
    {
        return vm_pWindow->findChild<QTableWidget*>("DocumentTable")->item(nRow, nColumn)->text();
    }

    // The documents that were posted since the last call, in their order.
    std::vector<std::string> Posts()
    {
        std::vector<std::string> arNames;
        for (const stDef_LogEntry& stEntry : vm_nvr.m_F_o_Log().m_F_ar_Entries()) {
            if (stEntry.sMethod == "POST" && stEntry.nStatus != 401)
                arNames.push_back(stEntry.sTarget.substr(stEntry.sTarget.find("Update")));
        }
        vm_nvr.m_F_o_Log().m_S_Clear();
        return arNames;
    }

    static bool RingThere(int nNvrID, int nChannel)
    {
        return CShmRingReader().m_F_b_Open(emDef_RingKind::Video, nNvrID, nChannel, 0);
    }

    QTemporaryDir vm_dir;
    CEnvObj vm_env;
    CRecorderStore vm_store{&vm_env};
    CVirtualNvr vm_nvr;
    std::unique_ptr<CMainWindow> vm_pWindow;
};

TEST_F(MainWindowTest, FourCellsShowTheRunningPicturesOfTheirOwnChannels)
{
    StartRecorder();
    OpenWindow();
    EXPECT_EQ(vm_pWindow->windowTitle(), "Zentrix CMS");
    ASSERT_TRUE(AllIn(emDef_LiveState::Live));
    for (int i = 0; i < 4; ++i) {
        const std::optional<stDef_PictureCode> stFirst = Code(i);
        ASSERT_TRUE(stFirst) << "cell " << i;
        EXPECT_EQ(stFirst->nChannel, i);
        EXPECT_FALSE(stFirst->bSecond);
        const std::uint64_t nPacket = Cell(i).m_F_o_Picture().nPacketSerial;
        ASSERT_TRUE(WaitUntil([&] { return Cell(i).m_F_o_Picture().nPacketSerial >= nPacket + 5; }));
        const auto nPackets = static_cast<int>(Cell(i).m_F_o_Picture().nPacketSerial - nPacket);
        const std::optional<stDef_PictureCode> stLater = Code(i);
        ASSERT_TRUE(stLater);
        // The number runs with the packets, unless the clip began anew in between.
        EXPECT_TRUE(stLater->nFrame == stFirst->nFrame + nPackets || stLater->nFrame < nPackets)
            << stFirst->nFrame << " and " << nPackets << " packets gave " << stLater->nFrame;
        EXPECT_EQ(Cell(i).accessibleDescription(), "Live");
        EXPECT_TRUE(Cell(i).accessibleName().contains(QString("Channel %1").arg(i + 1)));
        EXPECT_GE(Cell(i).m_F_p_Channel()->m_F_n_FirstPictureMs(), 0);
    }
    EXPECT_TRUE(WaitUntil([&] { return Cell(0).m_F_p_Channel()->m_F_n_Rate() > 10; }));
    EXPECT_TRUE(WaitUntil([&] { return vm_pWindow->findChild<QLabel*>("Totals")->text().contains("4 of 4"); }));
    EXPECT_EQ(vm_pWindow->m_F_p_List()->item(0)->data(Qt::AccessibleTextRole).toString(),
              "Lab, 127.0.0.1, 4 of 4 live");
}

TEST_F(MainWindowTest, AKilledRecorderIsToldAndFoundAgainByCommand)
{
    StartRecorder();
    OpenWindow();
    ASSERT_TRUE(AllIn(emDef_LiveState::Live));
    ASSERT_TRUE(vm_nvr.m_F_o_Streams().m_F_b_SetFault("*", "killed"));
    ASSERT_TRUE(AllIn(emDef_LiveState::Lost));
    EXPECT_EQ(Cell(2).m_F_o_Picture().nSerial, 0U) << "an old picture must not pass for live";
    EXPECT_EQ(Cell(2).accessibleDescription(), "Connection lost");
    EXPECT_TRUE(vm_pWindow->m_F_p_List()->item(0)->toolTip().contains("Connection lost"));
    Key(Qt::Key_L, Qt::ControlModifier);
    ASSERT_TRUE(AllIn(emDef_LiveState::Live));
    Key(Qt::Key_D, Qt::ControlModifier);
    ASSERT_TRUE(AllIn(emDef_LiveState::Disconnected, 2000));
    EXPECT_TRUE(WaitUntil([&] { return vm_nvr.m_F_o_Streams().m_F_n_Sessions() == 0; }));
}

TEST_F(MainWindowTest, ACellSaysInPlainWordsWhyItShowsNothing)
{
    const auto Check = [&](emDef_LiveState nState, const char* pszText) {
        OpenWindow();
        EXPECT_TRUE(AllIn(nState)) << pszText << ", not " << Cell(0).accessibleDescription().toStdString();
        EXPECT_EQ(Cell(0).accessibleDescription(), pszText);
        vm_pWindow.reset();
    };
    StartRecorder(4, "wrong");
    Check(emDef_LiveState::Refused, "Refused");
    Import("Lab", vm_nvr.m_F_n_HttpPort(), vm_nvr.m_F_n_RtspPort(), 4);
    ASSERT_TRUE(vm_nvr.m_F_o_Streams().m_F_b_SetFault("*", "missing"));
    Check(emDef_LiveState::Refused, "Refused");
    ASSERT_TRUE(vm_nvr.m_F_o_Streams().m_F_b_SetFault("*", "none"));
    vm_nvr.m_S_Stop();
    Check(emDef_LiveState::NoAnswer, "No answer");
}

TEST_F(MainWindowTest, AStreamThatChangesItsSizeIsFollowed)
{
    StartRecorder();
    OpenWindow();
    ASSERT_TRUE(AllIn(emDef_LiveState::Live));
    ASSERT_TRUE(vm_nvr.m_F_o_Streams().m_F_b_SetFault("*", "params"));
    EXPECT_TRUE(WaitUntil([&] { return Code(3) && Code(3)->bSecond; }));
    EXPECT_EQ(Cell(3).accessibleDescription(), "Live");
}

TEST_F(MainWindowTest, AStreamWithoutPicturesDoesNotPassForLive)
{
    StartRecorder();
    OpenWindow();
    ASSERT_TRUE(AllIn(emDef_LiveState::Live));
    ASSERT_TRUE(vm_nvr.m_F_o_Streams().m_F_b_SetFault("*", "paused"));
    ASSERT_TRUE(AllIn(emDef_LiveState::Waiting, 5000));
    ASSERT_TRUE(vm_nvr.m_F_o_Streams().m_F_b_SetFault("*", "none"));
    EXPECT_TRUE(AllIn(emDef_LiveState::Live));
}

TEST_F(MainWindowTest, DocumentsAreExchangedByKey)
{
    StartRecorder();
    const auto Root = [&] {
        const std::string sText = vm_nvr.m_F_o_Documents().m_F_s_Get(emDef_Document::Camera);
        return sText.substr(sText.find("<root>"), sText.find("</root>") - sText.find("<root>"));
    };
    const std::string sBefore = Root();
    OpenWindow();
    Key(Qt::Key_E, Qt::ControlModifier);
    EXPECT_TRUE(Root() == sBefore) << "what goes back must be what came";
    using Names = std::vector<std::string>;
    EXPECT_EQ(Posts(), (Names{"UpdateEMail", "UpdateCamera", "UpdateSchedule", "UpdateSystem"}));
    const QList<stDef_DocumentResult>& arResults = vm_pWindow->m_F_ar_Documents();
    ASSERT_EQ(arResults.size(), 6);
    for (int i = 0; i < 6; ++i) {
        EXPECT_TRUE(arResults[i].m_F_b_Ok()) << arResults[i].sDocument.toStdString();
        EXPECT_GT(arResults[i].nFetchedBytes, 0);
        EXPECT_EQ(arResults[i].nPostedBytes > 0, i >= 2) << arResults[i].sDocument.toStdString();
    }
    EXPECT_EQ(TableText(0, 1), "Fetched");
    EXPECT_EQ(TableText(5, 0), "EMail");
    EXPECT_EQ(TableText(5, 1), "Fetched and posted");
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);

    // A document that didn't come is told, and never goes back.
    ASSERT_TRUE(vm_nvr.m_F_o_Faults().m_F_b_Set("ScheduleXML", {"status", 500}));
    Key(Qt::Key_E, Qt::ControlModifier);
    EXPECT_EQ(TableText(3, 1), "Fetch failed");
    EXPECT_EQ(Posts(), (Names{"UpdateEMail", "UpdateCamera", "UpdateSystem"}));
    EXPECT_TRUE(arResults[4].m_F_b_Ok());
    EXPECT_TRUE(vm_pWindow->findChild<QLabel*>("DocumentSummary")->text().contains("1 of 6 failed"));
}

TEST_F(MainWindowTest, AnotherRecorderIsPickedByKeyAndTheFirstOneIsLetGo)
{
    StartRecorder();
    Import("Annex", vm_nvr.m_F_n_HttpPort(), vm_nvr.m_F_n_RtspPort(), 2);
    OpenWindow();
    ASSERT_TRUE(AllIn(emDef_LiveState::Live));
    EXPECT_TRUE(RingThere(0, 3));
    QTest::keyClick(vm_pWindow->m_F_p_List(), Qt::Key_Down);
    EXPECT_FALSE(RingThere(0, 0));
    EXPECT_FALSE(RingThere(0, 3));
    ASSERT_TRUE(WaitUntil([&] { return Cell(1).m_F_p_Channel()->m_F_n_State() == emDef_LiveState::Live; }, LiveMs));
    EXPECT_EQ(Cell(1).m_F_p_Channel()->m_F_o_Source().nNvrID, 1);
    EXPECT_EQ(Cell(2).m_F_p_Channel(), nullptr);
    EXPECT_EQ(vm_pWindow->m_F_p_List()->item(0)->toolTip().contains("Not connected"), true);
}

TEST_F(MainWindowTest, TheWindowClosesCleanlyWhileStreaming)
{
    StartRecorder();
    OpenWindow();
    ASSERT_TRUE(AllIn(emDef_LiveState::Live));
    ASSERT_TRUE(RingThere(0, 0));
    Key(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(vm_pWindow->isVisible());
    vm_pWindow.reset();
    for (int nChannel = 0; nChannel < 4; ++nChannel)
        EXPECT_FALSE(RingThere(0, nChannel));
    EXPECT_TRUE(WaitUntil([&] { return vm_nvr.m_F_o_Streams().m_F_n_Sessions() == 0; }));
}

TEST_F(MainWindowTest, FullScreenShowsTheCellsAloneAndKeepsTheKeys)
{
    OpenWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(vm_pWindow.get()));
    Key(Qt::Key_F11);
    EXPECT_TRUE(vm_pWindow->isFullScreen());
    EXPECT_FALSE(vm_pWindow->m_F_p_List()->isVisible());
    EXPECT_FALSE(vm_pWindow->menuBar()->isVisible());
    Key(Qt::Key_Escape);
    EXPECT_FALSE(vm_pWindow->isFullScreen());
    EXPECT_TRUE(vm_pWindow->m_F_p_List()->isVisible());
    Key(Qt::Key_E, Qt::ControlModifier);
    EXPECT_EQ(vm_pWindow->findChild<QLabel*>("DocumentSummary")->text(), "Pick a recorder first");
}

} // namespace
