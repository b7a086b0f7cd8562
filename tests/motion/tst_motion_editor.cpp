#include <QImage>
#include <QtTest/QTest>

#include "motion/CSetMotionObj.h"
#include "motion/MotionGeometry.h"
#include "support/PromptQueue.h"

using namespace nsMotionGeometry;

void PrintTo(const stDef_Rect& st, std::ostream* pOut)
{
    *pOut << st.left << ',' << st.top << ' ' << st.right << ',' << st.bottom;
}

namespace {

constexpr int MoveMs = 100, PassMs = 200;
constexpr stDef_Rect Middle{100, 80, 160, 120};

TEST(MotionGeometry, HitsInItsOrder)
{
    const struct
    {
        QPoint pt;
        emDef_Hit nHit;
    } arRows[] = {{{0, 38}, emDef_Hit::Body},    {{3, 38}, emDef_Hit::Body},   {{4, 38}, emDef_Hit::Bottom},
                  {{56, 20}, emDef_Hit::Body},   {{57, 20}, emDef_Hit::Right}, {{60, 20}, emDef_Hit::Right},
                  {{61, 20}, emDef_Hit::Body},   {{57, 0}, emDef_Hit::Right},  {{59, 39}, emDef_Hit::Right},
                  {{30, 3}, emDef_Hit::Body},    {{30, 36}, emDef_Hit::Body},  {{30, 37}, emDef_Hit::Bottom},
                  {{30, 40}, emDef_Hit::Bottom}, {{-1, 20}, emDef_Hit::Body}};
    for (const auto& row : arRows)
        EXPECT_EQ(HitTest(row.pt, {60, 40}), row.nHit) << row.pt.x() << ',' << row.pt.y();
}

TEST(MotionGeometry, MovesWithinTheCanvas)
{
    const struct
    {
        stDef_Rect stDown;
        QPoint ptBy;
        stDef_Rect stWant;
    } arRows[] = {{Middle, {7, -9}, {107, 71, 167, 111}},
                  {Middle, {-500, -500}, {0, 0, 60, 40}},
                  {Middle, {500, 500}, {260, 200, 320, 240}},
                  {{0, 0, 400, 300}, {5, 5}, {-80, -60, 320, 240}}}; // larger than the canvas
    for (const auto& row : arRows)
        EXPECT_EQ(Stepped(row.stDown, row.ptBy, {320, 240}), row.stWant) << row.ptBy.x();
    EXPECT_EQ(Grown(Middle, {-100, 0}, {320, 240}), (stDef_Rect{100, 80, 101, 120}));
    EXPECT_EQ(Grown(Middle, {0, 500}, {320, 240}), (stDef_Rect{100, 80, 160, 240}));
}

class MotionEditor : public testing::Test
{
protected:
    void SetUp() override
    {
        vm_objPrompts.HoldTime();
        vm_canvas.resize(320, 240);
        vm_canvas.show();
        vm_canvas.m_S_ResetWnds(2, 3);
        ASSERT_TRUE(vm_canvas.m_F_b_Open(0, Middle));
        ASSERT_FALSE(vm_canvas.m_F_b_Open(3, Middle)) << "a surplus";
        QObject::connect(&vm_canvas, &CSetMotionObj::S_Selected, [this](int n) { vm_arSelected << n; });
    }
    CMotionWnd& Wnd() { return *vm_canvas.m_F_p_Wnd(0); }
    static void Send(CMotionWnd& wnd, QEvent::Type nType, const QPoint& pt)
    {
        const bool bMove = nType == QEvent::MouseMove, bUp = nType == QEvent::MouseButtonRelease;
        QMouseEvent event(nType, pt, wnd.mapToGlobal(pt), bMove ? Qt::NoButton : Qt::LeftButton,
                          bUp ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&wnd, &event);
    }
    void Drag(const QPoint& ptFrom, const QList<QPoint>& arTo, int nMsEach)
    {
        Send(Wnd(), QEvent::MouseButtonPress, ptFrom);
        for (const QPoint& pt : arTo) {
            Send(Wnd(), QEvent::MouseMove, pt);
            vm_objPrompts.Pass(nMsEach);
        }
        Send(Wnd(), QEvent::MouseButtonRelease, arTo.last());
    }
    QImage Picture()
    {
        vm_objPrompts.Pass(PassMs);
        return vm_canvas.grab().toImage();
    }

    PromptQueue vm_objPrompts;
    CSetMotionObj vm_canvas;
    QList<int> vm_arSelected;
};

TEST_F(MotionEditor, MovesTenTimesASecondAndStaysWhereItWas)
{
    Drag({30, 20}, {{40, 20}}, MoveMs - 1);
    EXPECT_EQ(Wnd().m_F_o_Rect(), Middle) << "released before the step";
    EXPECT_EQ(vm_arSelected, QList<int>({0}));
    Drag({30, 20}, {{40, 30}}, MoveMs);
    EXPECT_EQ(Wnd().m_F_o_Rect(), (stDef_Rect{110, 90, 170, 130}));
    vm_objPrompts.Pass(10 * MoveMs);
    EXPECT_EQ(Wnd().m_F_o_Rect(), (stDef_Rect{110, 90, 170, 130})) << "no step after the release";
    Drag({1, 39}, {{-400, -400}}, MoveMs); // the first columns are body at the very bottom, too
    EXPECT_EQ(Wnd().m_F_o_Rect(), (stDef_Rect{0, 0, 60, 40}));
}

TEST_F(MotionEditor, IsResizedByItsRightAndBottomEdges)
{
    Drag({59, 39}, {{61, 60}}, 0); // in the corner the right edge wins; within the dead zone nothing happens
    EXPECT_EQ(Wnd().m_F_o_Rect(), Middle);
    Drag({59, 20}, {{100, 90}, {60, 20}}, 0);
    EXPECT_EQ(Wnd().m_F_o_Rect(), (stDef_Rect{100, 80, 200, 120})) << "back near the press it keeps its last size";
    Drag({99, 20}, {{1000, 20}}, 0);
    EXPECT_EQ(Wnd().m_F_o_Rect().right, 320);
    Drag({30, 39}, {{30, -50}}, 0);
    EXPECT_EQ(Wnd().m_F_o_Rect(), (stDef_Rect{100, 80, 320, 81}));
}

TEST_F(MotionEditor, GoesByKeysAndTellsThatItWasReached)
{
    vm_canvas.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&vm_canvas));
    ASSERT_TRUE(vm_canvas.m_F_b_Open(1, {0, 0, 20, 20}));
    Wnd().setFocus();
    QTest::keyClick(&Wnd(), Qt::Key_Right);
    QTest::keyClick(&Wnd(), Qt::Key_Down, Qt::ControlModifier);
    QTest::keyClick(&Wnd(), Qt::Key_Left, Qt::ShiftModifier);
    QTest::keyClick(&Wnd(), Qt::Key_Up, Qt::ShiftModifier | Qt::ControlModifier);
    EXPECT_EQ(Wnd().m_F_o_Rect(), (stDef_Rect{101, 90, 160, 120}));
    EXPECT_TRUE(vm_arSelected.isEmpty());
    QTest::keyClick(&Wnd(), Qt::Key_Tab);
    EXPECT_TRUE(vm_canvas.m_F_p_Wnd(1)->hasFocus());
    EXPECT_EQ(vm_arSelected, QList<int>({1}));
}

TEST_F(MotionEditor, ASecondPressOfADoubleClickIsNone)
{
    Send(Wnd(), QEvent::MouseButtonDblClick, {30, 20});
    Send(Wnd(), QEvent::MouseMove, {90, 90});
    vm_objPrompts.Pass(MoveMs);
    EXPECT_EQ(Wnd().m_F_o_Rect(), Middle);
    EXPECT_TRUE(vm_arSelected.isEmpty());
}

TEST_F(MotionEditor, PaintsByBlendingAtItsPace)
{
    ASSERT_TRUE(vm_canvas.m_F_b_Open(1, {130, 80, 200, 120})); // over the first one's right half
    const QPoint ptFrame(101, 90), ptBody(110, 100), ptBoth(140, 100), ptNone(10, 10);
    EXPECT_EQ(vm_canvas.grab().toImage().pixelColor(ptBody), QColor(Qt::black)) << "before the first pass";
    QImage image = Picture();
    EXPECT_EQ(image.pixelColor(ptNone), QColor(0, 0, 0));
    EXPECT_EQ(image.pixelColor(ptFrame), QColor(0, 50, 0));
    EXPECT_EQ(image.pixelColor(ptBody), QColor(0, 100, 0));
    EXPECT_NEAR(image.pixelColor(ptBoth).green(), 161, 1); // 100 + 100 * 155 / 255
    Wnd().vm_bChecked = true;
    vm_canvas.m_F_p_Lights()->m_S_Set(0, true);
    EXPECT_EQ(vm_canvas.grab().toImage().pixelColor(ptBody), QColor(0, 100, 0)) << "between two passes";
    image = Picture();
    EXPECT_EQ(image.pixelColor(ptFrame), QColor(0, 0, 100));
    EXPECT_EQ(image.pixelColor(ptBody), QColor(100, 0, 0));
    Wnd().vm_bSelected = true;
    EXPECT_EQ(Picture().pixelColor(ptFrame), QColor(100, 100, 0));

    vm_canvas.resize(600, 400); // nothing is shown beyond the surface
    ASSERT_TRUE(vm_canvas.m_F_b_Open(2, {470, 10, 500, 60}));
    image = Picture();
    EXPECT_EQ(image.pixelColor(475, 30), QColor(0, 100, 0));
    EXPECT_EQ(image.pixelColor(485, 30), QColor(0, 0, 0));
    vm_canvas.m_S_ResetWnds(-1, 0);
    EXPECT_EQ(Picture().pixelColor(ptBody), QColor(0, 0, 0));
    EXPECT_EQ(vm_canvas.vm_nCamera, -1);
}

} // namespace
