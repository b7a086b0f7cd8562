#include <QDragEnterEvent>
#include <QElapsedTimer>
#include <QMimeData>
#include <QtTest/QSignalSpy>
#include <algorithm>

#include "WindowFixture.h"
#include "live/CChannelDrag.h"
#include "live/CSnapshot.h"
#include "recorders/CNvrQuery.h"
#include "recorders/CRecorderFilter.h"
#include "recorders/CRecorderTree.h"
#include "rtsp/CStreamServer.h"
#include "support/Files.h"

namespace {

class LiveGridTest : public WindowFixture
{
protected:
    bool AllPlay(int nStream) const
    {
        const auto Plays = [nStream](const CLiveCell* pCell) {
            return pCell->m_F_n_State() == emDef_LiveState::Live &&
                   pCell->m_F_p_Channel()->m_F_o_Source().nStream == nStream;
        };
        return WaitUntil(
            [&] {
                const QList<CLiveCell*> arCells = Grid().m_F_ar_Cells();
                return std::all_of(arCells.begin(), arCells.end(), Plays);
            },
            LiveMs);
    }
};

TEST_F(LiveGridTest, CellsKeepTheirChannelsWhenTheRecorderWasEdited)
{
    StartRecorder(4);
    OpenWindow();
    ASSERT_TRUE(AllPlay(0));
    Grid().m_S_RecorderChanged(0);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(Cell(i).m_F_o_Key(), (stDef_ChannelKey{0, i}));
    EXPECT_TRUE(AllPlay(0));
}

TEST_F(LiveGridTest, StreamsBeginInTheSizeOfTheirCellsAndChangeWithoutAGap)
{
    StartRecorder(16);
    stDef_Layout stLayout;
    stLayout.nShape = 16;
    for (int i = 0; i < 16; ++i)
        stLayout.arSlots.push_back({0, i});
    ASSERT_TRUE(CLayoutStore(vm_dir.path()).m_F_b_Save(stLayout));
    OpenWindow();
    for (int i = 0; i < 16; ++i) {
        ASSERT_NE(Cell(i).m_F_p_Channel(), nullptr);
        EXPECT_EQ(Cell(i).m_F_p_Channel()->m_F_o_Source().nStream, 1) << i;
    }
    ASSERT_TRUE(AllPlay(1));
    Grid().m_S_SetShape(4);
    bool bGap = false;
    EXPECT_TRUE(WaitUntil(
        [&] {
            bGap = bGap || Cell(0).m_F_o_Picture().nSerial == 0;
            return Cell(0).m_F_p_Channel()->m_F_o_Source().nStream == 0 &&
                   Cell(0).m_F_n_State() == emDef_LiveState::Live;
        },
        LiveMs));
    EXPECT_FALSE(bGap);
}

TEST_F(LiveGridTest, ATryThatHangsBeginsAnewWhenTheRecorderIsBack)
{
    StartRecorder(1);
    OpenWindow();
    ASSERT_TRUE(Comes(0, emDef_LiveState::Live));
    CStreamServer& objStreams = vm_nvr.m_F_o_Streams();
    for (const char* const pszFault : {"silent", "killed"})
        ASSERT_TRUE(objStreams.m_F_b_SetFault("*", pszFault));
    ASSERT_TRUE(Comes(0, emDef_LiveState::Lost));
    ASSERT_TRUE(Comes(0, emDef_LiveState::Connecting));
    QElapsedTimer objTry;
    objTry.start();
    ASSERT_TRUE(WaitUntil([&] { return objTry.elapsed() > 700; })); // the request is on its way by now
    ASSERT_TRUE(objStreams.m_F_b_SetFault("*", "none"));
    Grid().m_S_RetryNow(0);
    EXPECT_TRUE(WaitUntil([&] { return Cell(0).m_F_n_State() == emDef_LiveState::Live; }, 3000));
}

TEST_F(LiveGridTest, ACellWithoutAPictureGivesNoSnapshot)
{
    StartRecorder(1);
    OpenWindow();
    ASSERT_TRUE(Comes(0, emDef_LiveState::Live));
    QList<QImage> arImages;
    QObject::connect(&Grid(), &CLiveGrid::S_Snapshot, [&](const QImage& image) { arImages.append(image); });
    Grid().m_S_Snapshot();
    ASSERT_TRUE(WaitUntil([&] { return arImages.size() == 1; }));
    EXPECT_FALSE(arImages[0].isNull());
    vm_nvr.m_S_Stop();
    ASSERT_TRUE(Comes(0, emDef_LiveState::Lost));
    Grid().m_S_Snapshot();
    ASSERT_TRUE(WaitUntil([&] { return arImages.size() == 2; }));
    EXPECT_TRUE(arImages[1].isNull());
}

TEST_F(LiveGridTest, CamerasHaveTheNamesThatTheirRecorderTells)
{
    StartRecorder(5);
    QTreeWidgetItem* pRow = nullptr;
    const auto OpenTree = [&] {
        OpenWindow();
        pRow = vm_pWindow->m_F_p_Tree()->topLevelItem(0);
        pRow->setExpanded(true);
    };
    OpenTree();
    EXPECT_TRUE(WaitUntil([&] { return Cell(0).m_F_s_Title() == QString::fromUtf8("Entrance (1) – Lab"); }));
    EXPECT_EQ(pRow->child(1)->text(0), QString::fromUtf8("Parking – Süd (2)"));
    EXPECT_EQ(pRow->child(4)->text(0), "Channel 5");
    CXmlObj xmlCamera;
    CNvrQuery objQuery(&vm_env, vm_store.m_F_o_InitRecord(0), [&](CWndNvrBase& objNvr) {
        objNvr.m_F_b_GetRequest("cgi-bin/SyncSetting.cgi?action=CameraXML", &xmlCamera, 5000);
        xmlCamera.m_F_b_SetValue("/root/Camera/Cam000", "Name", QString::fromUtf8("<b>%2</b>\n\u202egate"));
        objNvr.m_F_b_PostRequest("cgi-bin/SyncSetting.cgi?action=UpdateCamera", &xmlCamera, 5000);
    });
    ASSERT_TRUE(QSignalSpy(&objQuery, &CNvrQuery::S_Done).wait());

    vm_pWindow.reset();
    OpenTree();
    EXPECT_EQ(pRow->child(1)->text(0), QString::fromUtf8("Parking – Süd (2)")) << "before anybody was asked";
    EXPECT_TRUE(WaitUntil([&] { return Cell(0).m_F_s_Title() == QString::fromUtf8("<b>%2</b> gate (1) – Lab"); }));
    EXPECT_TRUE(pRow->child(0)->toolTip(0).contains("&lt;b&gt;%2&lt;/b&gt;"));
    vm_pWindow.reset();
    vm_nvr.m_S_Stop();
    OpenTree();
    EXPECT_EQ(pRow->child(0)->text(0), "<b>%2</b> gate (1)");
    EXPECT_FALSE(ReadFile(vm_dir.filePath("Embedded/N000/Camera.xml")).contains("Password"));
    vm_pWindow.reset();
    ASSERT_EQ(vm_store.m_F_s_Remove(0), "");
    Import("Other", 1, 1, 1);
    OpenTree();
    EXPECT_EQ(pRow->child(0)->text(0), "Channel 1") << "another recorder under the same number";
}

TEST_F(LiveGridTest, InSmallCellsTheNameStaysLongerThanTheWordOfTheState)
{
    CLiveCell objCell;
    objCell.m_S_Announce({0, 0}, "Loading bay, south gate (1)");
    const auto Name = [&objCell](int nWidth) {
        objCell.resize(nWidth, 200);
        return objCell.grab(QRect(4, 4, 200, 18)).toImage();
    };
    EXPECT_EQ(Name(250), Name(600));
}

TEST_F(LiveGridTest, KeysOfTheTreeAndItsFilterComeBeforeThoseOfTheWindow)
{
    for (int i = 0; i < 40; ++i)
        Import(QString("Away %1").arg(i), 1, 1, 1);
    OpenWindow();
    CRecorderTree* const pTree = vm_pWindow->m_F_p_Tree();
    pTree->setFocus();
    pTree->setCurrentItem(pTree->topLevelItem(0));
    QTest::keyClick(pTree, Qt::Key_PageDown);
    EXPECT_GT(pTree->m_F_n_CurrentRecorder(), 0);
    EXPECT_EQ(Grid().m_F_n_Page(), 0);
    auto* const pFilter = vm_pWindow->findChild<CRecorderFilter*>();
    pFilter->setFocus();
    pFilter->setText("Away 1");
    QTest::keyClick(pFilter, Qt::Key_Escape);
    EXPECT_EQ(pFilter->text(), QString());
    Cell(0).setFocus();
    QTest::keyClick(&Cell(0), Qt::Key_PageDown);
    EXPECT_EQ(Grid().m_F_n_Page(), 1);
}

} // namespace
