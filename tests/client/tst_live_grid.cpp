#include <QDragEnterEvent>
#include <QElapsedTimer>
#include <QMimeData>
#include <algorithm>

#include "CChannelDrag.h"
#include "CRecorderFilter.h"
#include "CRecorderTree.h"
#include "CSnapshot.h"
#include "WindowFixture.h"
#include "rtsp/CStreamServer.h"

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
