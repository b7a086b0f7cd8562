#include <QAction>
#include <QDir>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QStatusBar>
#include <QTableWidget>
#include <QTimer>
#include <QToolButton>
#include <algorithm>
#include <array>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

#include "WindowFixture.h"
#include "cgi/CDocumentStore.h"
#include "http/CFaultTable.h"
#include "live/CChannelDrag.h"
#include "recorders/CRecorderTree.h"
#include "rtsp/CStreamServer.h"
#include "scene/CPictureCode.h"
#include "support/LogReading.h"
#include "support/Process.h"
#include "support/PromptQueue.h"

namespace {

class MainWindowTest : public WindowFixture
{
protected:
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

    /// A recorder of four channels, and a window that shows them.
    void GoLive()
    {
        StartRecorder();
        OpenWindow();
        ASSERT_TRUE(AllIn(emDef_LiveState::Live));
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

    QString TableText(int nRow, int nColumn) const
    {
        return Find<QTableWidget>("DocumentTable").item(nRow, nColumn)->text();
    }

    // The documents that were posted since the last call, in their order.
    std::vector<std::string> Posts() { return TakeAnswered(vm_nvr.m_F_o_Log(), "Update"); }

    static bool RingThere(int nNvrID, int nChannel)
    {
        return CShmRingReader().m_F_b_Open(emDef_RingKind::Video, nNvrID, nChannel, 0);
    }
};

TEST_F(MainWindowTest, AnEmptyWindowLeadsToTheFirstRecorders)
{
    vm_pWindow = std::make_unique<CMainWindow>(&vm_env, &vm_store);
    const QSize szScreen = vm_pWindow->screen()->availableSize();
    EXPECT_EQ(vm_pWindow->size().boundedTo(szScreen), vm_pWindow->size());
    EXPECT_EQ(vm_pWindow->minimumSizeHint().boundedTo({640, 400}), vm_pWindow->minimumSizeHint()) << "at scale 2";
    OpenWindow();
    EXPECT_TRUE(vm_pWindow->statusBar()->currentMessage().contains("lang_ENVR_eng.xml")) << "this test has none";
    for (const char* const pszName : {"EditRecorder", "RemoveRecorder", "Settings", "NvrMenu", "Exchange", "ConnectAll",
                                      "Snapshot", "PreviousPage", "NextPage"})
        EXPECT_FALSE(Find<QAction>(pszName).isEnabled()) << pszName;
    PromptQueue objPrompts;
    const auto TypeIn = [&objPrompts](const char* pszAddress) {
        objPrompts.ExpectDialog([pszAddress](QDialog& objDialog) {
            QTest::keyClicks(objDialog.findChild<QLineEdit*>("IP"), pszAddress);
            QTest::keyClicks(objDialog.findChild<QLineEdit*>("UID"), "admin");
            QTest::keyClick(&objDialog, Qt::Key_Return);
        });
    };
    auto& objFirst = Find<QToolButton>("FirstRecorder");
    EXPECT_TRUE(objFirst.hasFocus());
    TypeIn("127.0.0.1");
    QTest::mouseClick(&objFirst, Qt::LeftButton);
    EXPECT_FALSE(objFirst.isVisible());
    QApplication::setActiveWindow(vm_pWindow.get());
    auto& objFilter = Find<QLineEdit>("RecorderFilter");
    objFilter.setFocus();
    QTest::keyClicks(&objFilter, "127.0.0.1");
    TypeIn("127.0.0.2");
    QTest::keyClick(&objFilter, Qt::Key_Insert);
    const CRecorderTree& objTree = *vm_pWindow->m_F_p_Tree();
    EXPECT_EQ(objTree.m_F_n_CurrentRecorder(), 1);
    EXPECT_FALSE(objTree.currentItem()->isHidden());
    EXPECT_TRUE(Find<QAction>("Settings").isEnabled());
}

TEST_F(MainWindowTest, ARecordersMenuHasItsOwnCommandsAndTheHosts)
{
    StartRecorder();
    stDef_RecorderForm stForm;
    stForm.sAddress = "192.0.2.1";
    stForm.sUser = "admin";
    stForm.nType = 0; // a PC recorder, which has no settings here
    ASSERT_EQ(vm_store.m_F_o_Add(stForm).nNvrID, 1);
    OpenWindow();
    CRecorderTree& objTree = *vm_pWindow->m_F_p_Tree();
    QStringList arItems;
    const auto ChooseAtRow = [&](int nRow, Qt::Key nKey) {
        objTree.m_S_Select(nRow);
        arItems.clear();
        QTimer::singleShot(50, [&arItems, nKey] {
            auto* const pMenu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_TRUE(pMenu);
            for (const QAction* const pAction : pMenu->actions())
                arItems.append((pAction->isEnabled() ? "" : "-") + pAction->text());
            for (const Qt::Key nPressed : {Qt::Key_Down, nKey})
                QTest::keyClick(pMenu, nPressed);
        });
        const QPoint ptRow = objTree.visualItemRect(objTree.topLevelItem(nRow)).center();
        QContextMenuEvent objEvent(QContextMenuEvent::Mouse, ptRow, objTree.viewport()->mapToGlobal(ptRow), {});
        QApplication::sendEvent(objTree.viewport(), &objEvent);
    };
    const QStringList arHosts = {"",
                                 "Sho&w channels",
                                 "&Add recorder\u2026",
                                 "&Edit recorder\u2026",
                                 "&Remove recorder\u2026",
                                 "E&xchange documents\u2026"};
    const QString sNone = " (not in this version)";
    ChooseAtRow(1, Qt::Key_Escape);
    EXPECT_EQ(arItems, (QStringList{"-System Setting" + sNone, "-System Management" + sNone, "-Event Setting" + sNone} +
                        arHosts));
    EXPECT_FALSE(Find<QAction>("Settings").isEnabled());
    // The sheet doesn't say whose it is.
    PromptQueue objPrompts;
    QStringList arSheets;
    for (int n = 0; n < 2; ++n)
        objPrompts.ExpectDialog([&](QDialog&) { arSheets.append(Find<QLabel>("SheetOf").text()); });
    ChooseAtRow(0, Qt::Key_Return);
    EXPECT_EQ(arItems,
              (QStringList{"System Setting", "-System Management" + sNone, "-Event Setting" + sNone} + arHosts));
    Find<QAction>("Settings").trigger();
    EXPECT_EQ(arSheets, (QStringList{"Settings of Lab", "Settings of Lab"}));
    EXPECT_EQ(Find<QLabel>("SheetOf").text(), "");
}

TEST_F(MainWindowTest, FourCellsShowTheRunningPicturesOfTheirOwnChannels)
{
    GoLive();
    EXPECT_EQ(vm_pWindow->windowTitle(), "Zentrix CMS");
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
        EXPECT_TRUE(Cell(i).accessibleName().contains(QString("(%1)").arg(i + 1)));
        EXPECT_GE(Cell(i).m_F_p_Channel()->m_F_n_FirstPictureMs(), 0);
    }
    EXPECT_TRUE(WaitUntil([&] { return Cell(0).m_F_p_Channel()->m_F_n_Rate() > 10; }));
    EXPECT_TRUE(WaitUntil([&] { return Find<QLabel>("Totals").text().contains("4 of 4"); }));
    EXPECT_EQ(vm_pWindow->m_F_p_Tree()->topLevelItem(0)->data(0, Qt::AccessibleTextRole).toString(),
              "Lab, 127.0.0.1, 4 channels, 4 of 4 live");
}

TEST_F(MainWindowTest, AKilledStreamIsToldAndConnectedAgain)
{
    GoLive();
    ASSERT_TRUE(vm_nvr.m_F_o_Streams().m_F_b_SetFault("*", "killed"));
    ASSERT_TRUE(AllIn(emDef_LiveState::Lost));
    EXPECT_EQ(Cell(2).m_F_o_Picture().nSerial, 0U) << "an old picture must not pass for live";
    EXPECT_EQ(Cell(2).accessibleDescription(), "Connection lost");
    EXPECT_GT(Cell(2).m_F_p_Channel()->m_F_n_RetryInMs(), 0);
    ASSERT_TRUE(AllIn(emDef_LiveState::Live)) << "nobody did anything";
    Key(Qt::Key_D, Qt::ControlModifier);
    ASSERT_TRUE(AllIn(emDef_LiveState::Disconnected, 2000));
    EXPECT_TRUE(WaitUntil([&] { return vm_nvr.m_F_o_Streams().m_F_n_Sessions() == 0; }));
    EXPECT_EQ(Cell(0).m_F_p_Channel()->m_F_n_RetryInMs(), -1) << "ended from here, it stays ended";
    Key(Qt::Key_L, Qt::ControlModifier);
    EXPECT_TRUE(AllIn(emDef_LiveState::Live));
}

TEST_F(MainWindowTest, ARecorderThatIsBackIsLiveWithinThreeSeconds)
{
    stDef_VirtualNvrConfig stConfig = WithChannels(4);
    GoLive();
    stConfig.nHttpPort = vm_nvr.m_F_n_HttpPort();
    stConfig.nRtspPort = vm_nvr.m_F_n_RtspPort();
    vm_nvr.m_S_Stop();
    // Long enough for pauses that alone would take longer than that.
    ASSERT_TRUE(WaitUntil([&] { return Cell(0).m_F_p_Channel()->m_F_n_RetryInMs() > 5000; }, 20000));
    ASSERT_TRUE(WaitUntil([&] { return vm_pWindow->m_F_o_Watch().m_F_n_Reach(0) == emDef_Reach::Away; }));
    std::string sError;
    ASSERT_TRUE(vm_nvr.m_F_b_Start(stConfig, sError)) << sError;
    EXPECT_TRUE(AllIn(emDef_LiveState::Live, 3000 * Process::Slowness));
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
    ImportRecorder("Lab", 4);
    ASSERT_TRUE(vm_nvr.m_F_o_Streams().m_F_b_SetFault("*", "missing"));
    Check(emDef_LiveState::Refused, "Refused");
    ASSERT_TRUE(vm_nvr.m_F_o_Streams().m_F_b_SetFault("*", "none"));
    QStringList arNames;
    for (int i = 0; i < 4; ++i) { // no ring can be made where a pipe stands
        arNames << QString("/dev/shm/fleetlink.%1.%2.v.0.%3.0").arg(geteuid()).arg(vm_env.m_F_s_Instance()).arg(i);
        ASSERT_EQ(mkfifo(arNames[i].toUtf8(), 0600), 0);
    }
    Check(emDef_LiveState::NoRing, "No shared memory");
    for (const QString& sName : arNames)
        QFile::remove(sName);
    vm_nvr.m_S_Stop();
    Check(emDef_LiveState::NoAnswer, "No answer");
}

TEST_F(MainWindowTest, ACellSaysAfterTenSecondsWhatItsPicturesLack)
{
    StartRecorder(2);
    CStreamServer& objStreams = vm_nvr.m_F_o_Streams();
    ASSERT_TRUE(objStreams.m_F_b_SetFault("CH0", "no-key"));
    ASSERT_TRUE(objStreams.m_F_b_SetFault("CH1", "no-sets"));
    OpenWindow();
    EXPECT_TRUE(Comes(0, emDef_LiveState::NoPicture) && Comes(1, emDef_LiveState::NoPicture));
    EXPECT_EQ(Cell(0).accessibleDescription(), "No picture. The camera has not sent a key frame yet");
    EXPECT_EQ(Cell(1).accessibleDescription(), "No picture. The camera sends no parameter sets (SPS, PPS)");
    ASSERT_TRUE(objStreams.m_F_b_SetFault("*", "none"));
    EXPECT_TRUE(Comes(0, emDef_LiveState::Live) && Comes(1, emDef_LiveState::Live));
}

TEST_F(MainWindowTest, AStreamThatChangesItsSizeIsFollowed)
{
    GoLive();
    ASSERT_TRUE(vm_nvr.m_F_o_Streams().m_F_b_SetFault("*", "params"));
    EXPECT_TRUE(WaitUntil([&] { return Code(3) && Code(3)->bSecond; }));
    EXPECT_EQ(Cell(3).accessibleDescription(), "Live");
}

TEST_F(MainWindowTest, AStreamWithoutPicturesDoesNotPassForLive)
{
    GoLive();
    ASSERT_TRUE(vm_nvr.m_F_o_Streams().m_F_b_SetFault("*", "paused"));
    ASSERT_TRUE(AllIn(emDef_LiveState::Stalled, 5000));
    EXPECT_EQ(Cell(1).accessibleDescription(), "Stalled");
    const QImage imgStalled = Cell(1).grab().toImage();
    ASSERT_TRUE(vm_nvr.m_F_o_Streams().m_F_b_SetFault("*", "none"));
    ASSERT_TRUE(AllIn(emDef_LiveState::Live));
    const auto Brightness = [](const QImage& image) {
        return image.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).pixelColor(0, 0).lightness();
    };
    EXPECT_LT(Brightness(imgStalled) + 15, Brightness(Cell(1).grab().toImage())) << "the old picture is dimmed";
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
    const auto Exchange = [&](const char* pszAnswer) {
        PromptQueue objPrompts;
        objPrompts.ExpectToDestroy(
            "Download the documents of Lab and upload its settings again, unchanged? The settings "
            "on the recorder are overwritten.",
            "Zentrix CMS", pszAnswer);
        Key(Qt::Key_E, Qt::ControlModifier);
    };
    Exchange("");
    EXPECT_TRUE(Posts().empty());
    Exchange("yes");
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
    EXPECT_EQ(TableText(0, 1), "Downloaded");
    EXPECT_EQ(TableText(5, 0), "EMail");
    EXPECT_EQ(TableText(5, 1), "Downloaded and uploaded");
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);

    // A document that didn't come is told, and never goes back.
    ASSERT_TRUE(vm_nvr.m_F_o_Faults().m_F_b_Set("ScheduleXML", {"status", 500}));
    ASSERT_TRUE(vm_nvr.m_F_o_Faults().m_F_b_Set("UpdateEMail", {"status", 500}));
    Exchange("yes");
    EXPECT_EQ(TableText(3, 1), "Download failed");
    EXPECT_EQ(TableText(5, 1), "Upload failed");
    EXPECT_EQ(Posts(), (Names{"UpdateEMail", "UpdateCamera", "UpdateSystem"}));
    EXPECT_TRUE(arResults[4].m_F_b_Ok());
    EXPECT_TRUE(Find<QLabel>("DocumentSummary").text().contains("2 of 6 failed"));
}

TEST_F(MainWindowTest, ShapesAndPagesGoByKeyAndOnlyThePageStreams)
{
    StartRecorder(5);
    OpenWindow();
    ASSERT_TRUE(AllIn(emDef_LiveState::Live));
    const QString sPages = Find<QLabel>("Pages").text();
    EXPECT_EQ(sPages, "Page 1 of 2");
    Key(Qt::Key_PageDown);
    EXPECT_EQ(Grid().m_F_n_Page(), 1);
    EXPECT_FALSE(Find<QAction>("NextPage").isEnabled());
    EXPECT_EQ(Cell(0).m_F_o_Key(), (stDef_ChannelKey{0, 4}));
    EXPECT_EQ(Cell(1).m_F_o_Key().nNvrID, -1);
    for (int nChannel = 0; nChannel < 4; ++nChannel)
        EXPECT_FALSE(RingThere(0, nChannel)) << nChannel;
    Key(Qt::Key_PageUp);
    ASSERT_TRUE(AllIn(emDef_LiveState::Live));
    // Nine cells: what streams already plays on, in small cells by the second stream.
    Key(Qt::Key_3, Qt::ControlModifier);
    EXPECT_EQ(Grid().m_F_n_Shape(), 9);
    EXPECT_EQ(Cell(0).m_F_n_State(), emDef_LiveState::Live) << "it isn't connected anew";
    EXPECT_TRUE(WaitUntil([&] { return Code(4) && Code(4)->bSecond && Code(0) && Code(0)->bSecond; }, LiveMs));
    // Enlarged, it shows the main stream again.
    Cell(4).setFocus();
    QTest::keyClick(&Cell(4), Qt::Key_Return);
    EXPECT_TRUE(Grid().m_F_b_Enlarged());
    EXPECT_FALSE(Cell(0).isVisible());
    EXPECT_TRUE(WaitUntil([&] { return Code(4) && !Code(4)->bSecond; }, LiveMs));
    Key(Qt::Key_Escape);
    EXPECT_FALSE(Grid().m_F_b_Enlarged());
    Key(Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(Cell(0).m_F_o_Key(), (stDef_ChannelKey{0, 4})) << "the current cell stays in view";
}

TEST_F(MainWindowTest, ChannelsArePlacedMovedAndEmptied)
{
    Import("Lab", 1, 1, 4);
    OpenWindow();
    const auto Channels = [&] {
        QList<int> arChannels;
        for (const CLiveCell* const pCell : Grid().m_F_ar_Cells())
            arChannels.append(pCell->m_F_o_Key().nNvrID < 0 ? -1 : pCell->m_F_o_Key().nChannel);
        return arChannels;
    };
    EXPECT_EQ(Channels(), QList<int>({0, 1, 2, 3}));
    Cell(1).setFocus();
    QTest::keyClick(&Cell(1), Qt::Key_Delete);
    EXPECT_EQ(Channels(), QList<int>({0, -1, 2, 3}));
    QTest::keyClick(&Cell(1), Qt::Key_Down);
    EXPECT_EQ(Grid().m_F_p_Current(), &Cell(3));
    // From the tree by Enter: channel 1 takes the place of 3, and the next goes to the next cell.
    CRecorderTree& tree = *vm_pWindow->m_F_p_Tree();
    tree.expandItem(tree.topLevelItem(0));
    for (const int nChannel : {1, 2}) {
        tree.setCurrentItem(tree.topLevelItem(0)->child(nChannel));
        QTest::keyClick(&tree, Qt::Key_Return);
    }
    EXPECT_EQ(Channels(), QList<int>({2, -1, 0, 1})) << "a channel stands in one cell only";
    // By drop, as a drag from the tree or from another cell brings it.
    const auto Drop = [&](int nCell, const QList<stDef_ChannelKey>& arKeys) {
        const std::unique_ptr<QMimeData> pData(CChannelDrag::s_F_p_Make(arKeys));
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, pData.get(), Qt::LeftButton, {});
        QApplication::sendEvent(&Cell(nCell), &enter);
        QDropEvent drop(QPointF(5, 5), Qt::CopyAction, pData.get(), Qt::LeftButton, {});
        QApplication::sendEvent(&Cell(nCell), &drop);
        return drop.isAccepted() && enter.isAccepted();
    };
    QTest::keyClick(&Cell(1), Qt::Key_Down);
    EXPECT_EQ(Grid().m_F_p_Current(), &Cell(3));
    EXPECT_TRUE(Drop(1, {{0, 0}, {0, 3}, {7, 0}, {0, 9}}));
    EXPECT_EQ(Channels(), QList<int>({2, 0, 3, 1})) << "what isn't there is left out";
    EXPECT_EQ(Grid().m_F_p_Current(), &Cell(1)) << "the cell of the drop";
    EXPECT_FALSE(Drop(0, {}));
    QMimeData alien;
    alien.setData(CChannelDrag::MimeType, "0/1/2\nx/y\n-1/3\n0/64\n99999/0\n0/");
    EXPECT_TRUE(CChannelDrag::s_F_ar_Read(&alien).isEmpty());
    // The next window comes back with it.
    vm_pWindow.reset();
    OpenWindow();
    EXPECT_EQ(Channels(), QList<int>({2, 0, 3, 1}));
}

TEST_F(MainWindowTest, ADeadRecorderSlowsNeitherTheOthersNorTheWindow)
{
    StartRecorder(3);
    Import("Dead", 1, 1, 1);
    OpenWindow();
    ASSERT_TRUE(WaitUntil([&] { return Cell(3).m_F_n_State() == emDef_LiveState::NoAnswer; }, LiveMs));
    ASSERT_TRUE(WaitUntil([&] { return Cell(2).m_F_n_State() == emDef_LiveState::Live; }, LiveMs));
    QElapsedTimer clock, gap;
    qint64 nLongest = 0;
    const auto nBefore = Cell(0).m_F_p_Channel()->m_F_n_Pictures();
    gap.start();
    for (clock.start(); clock.elapsed() < 4000; gap.restart()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        nLongest = std::max(nLongest, gap.elapsed());
    }
    EXPECT_LT(nLongest, 500 * Process::Slowness) << "ms that the window didn't answer";
    EXPECT_GT(Cell(0).m_F_p_Channel()->m_F_n_Pictures() - nBefore, 40U);
    EXPECT_GE(Cell(3).m_F_p_Channel()->m_F_ar_History().size(), 4U) << "it was tried again meanwhile";
}

TEST_F(MainWindowTest, AClosedWindowAndARemovedRecorderLeaveNothingBehind)
{
    StartRecorder();
    ImportRecorder("Twin", 4); // the same one once more
    const auto AnyRingThere = [](int nChannel) {
        return std::ranges::any_of(std::array{0, 1}, [nChannel](int nNvr) {
            return CShmRingReader().m_F_b_Open(emDef_RingKind::Video, nNvr, nChannel, 1) || RingThere(nNvr, nChannel);
        });
    };
    const auto Sessions = [&] { return vm_nvr.m_F_o_Streams().m_F_n_Sessions(); };
    long nThreads = 0, nFiles = 0;
    for (const bool bWarmUp : {true, false}) { // the recorder, in the same process, keeps what its first clients took
        OpenWindow();
        Key(Qt::Key_3, Qt::ControlModifier);
        ASSERT_TRUE(WaitUntil([&] { return Grid().m_F_o_Totals().nLive == 8; }, LiveMs));
        if (!bWarmUp)
            break;
        Key(Qt::Key_Q, Qt::ControlModifier);
        EXPECT_FALSE(vm_pWindow->isVisible());
        vm_pWindow.reset();
        ASSERT_TRUE(WaitUntil([&] { return Sessions() == 0; }));
        for (int nChannel = 0; nChannel < 4; ++nChannel)
            EXPECT_FALSE(AnyRingThere(nChannel));
        nThreads = Process::Status("Threads");
        nFiles = Process::Descriptors();
    }
    PromptQueue objPrompts;
    CRecorderTree& tree = *vm_pWindow->m_F_p_Tree();
    for (const int nLeft : {4, 0}) {
        tree.setCurrentItem(tree.topLevelItem(0));
        objPrompts.ExpectToDestroy(
            QString("Remove %1 from the list? Its streams stop, and its account and password are deleted here.")
                .arg(nLeft ? "Lab" : "Twin"),
            "Zentrix CMS");
        QTest::keyClick(&tree, Qt::Key_Delete);
        EXPECT_EQ(tree.topLevelItemCount(), nLeft / 4);
        for (int nChannel = 0; nChannel < 4; ++nChannel)
            EXPECT_EQ(AnyRingThere(nChannel), nLeft > 0);
    }
    EXPECT_EQ(Grid().m_F_o_Totals().nChannels, 0);
    vm_pWindow.reset();
    EXPECT_TRUE(WaitUntil([&] { return Sessions() == 0; }));
    EXPECT_TRUE(WaitUntil([&] { return Process::Status("Threads") <= nThreads; }, 20000))
        << Process::Status("Threads") << " of " << nThreads;
    EXPECT_TRUE(WaitUntil([&] { return Process::Descriptors() <= nFiles; }, 20000))
        << Process::Descriptors() << " of " << nFiles;
}

TEST_F(MainWindowTest, APictureIsSavedInTheStreamsOwnSize)
{
    StartRecorder();
    OpenWindow();
    Key(Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(WaitUntil([&] { return vm_pWindow->statusBar()->currentMessage().contains("no picture"); }));
    ASSERT_TRUE(AllIn(emDef_LiveState::Live));
    for (int nPictures = 1; nPictures <= 2; ++nPictures) {
        Key(Qt::Key_S, Qt::ControlModifier);
        ASSERT_TRUE(
            WaitUntil([&] { return QDir(vm_dir.filePath("pictures")).entryList({"*.png"}).size() == nPictures; }));
    }
    const QDir pictures(vm_dir.filePath("pictures"));
    const QString sName = pictures.entryList({"*.png"}).first();
    EXPECT_TRUE(sName.startsWith("Entrance (1) - Lab ")) << sName.toStdString();
    const QImage image = QImage(pictures.filePath(sName)).convertToFormat(QImage::Format_Grayscale8);
    ASSERT_EQ(image.size(), QSize(640, 360));
    EXPECT_TRUE(CPictureCode::s_F_o_Read(image.constBits(), int(image.bytesPerLine()), 640, 360));
    vm_pWindow->m_S_SetPictureFolder(vm_dir.filePath("System.xml/below"));
    Key(Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(WaitUntil([&] { return vm_pWindow->statusBar()->currentMessage().contains("can't be written"); }));
}

TEST_F(MainWindowTest, FullScreenShowsTheCellsAloneAndKeepsTheKeys)
{
    Import("Lab", 1, 1, 4);
    OpenWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(vm_pWindow.get()));
    Cell(2).setFocus();
    vm_pWindow->m_F_p_Tree()->setFocus();
    Key(Qt::Key_F11);
    EXPECT_EQ(Grid().m_F_p_Current(), &Cell(2));
    EXPECT_TRUE(vm_pWindow->isFullScreen());
    EXPECT_FALSE(vm_pWindow->m_F_p_Tree()->isVisible());
    EXPECT_FALSE(vm_pWindow->menuBar()->isVisible());
    Key(Qt::Key_Escape);
    EXPECT_FALSE(vm_pWindow->isFullScreen());
    EXPECT_TRUE(vm_pWindow->m_F_p_Tree()->isVisible());
    PromptQueue objPrompts;
    objPrompts.Expect("A sample client of the Fleetlink library, version " FLEETLINK_VERSION
                      ". It shows the live pictures of network video recorders and edits their settings.",
                      "Zentrix CMS");
    Find<QAction>("About").trigger();
}

} // namespace
