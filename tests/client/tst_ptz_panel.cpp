#include <QAbstractButton>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QMenu>
#include <QSlider>
#include <QTimer>

#include "WindowFixture.h"
#include "http/CFaultTable.h"
#include "ptz/CPtzPad.h"
#include "ptz/CPtzPanel.h"
#include "recorders/CLoginPanel.h"
#include "recorders/CRecorderTree.h"
#include "scene/CPtzBoard.h"
#include "support/LogReading.h"
#include "support/Process.h"
#include "support/Table.h"

namespace {

using Texts = std::vector<std::string>;

class PtzPanelTest : public WindowFixture
{
protected:
    void SetUp() override
    {
        WindowFixture::SetUp();
        StartRecorder(2);
    }

    // With the panel open, the first cell live and its presets known.
    void Open()
    {
        OpenWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(vm_pWindow.get()));
        if (!Panel().isVisible())
            Key(Qt::Key_T, Qt::ControlModifier);
        Cell(0).setFocus();
        ASSERT_TRUE(WaitUntil([&] { return Find<QComboBox>("PtzPresets").count() == 6; }, LiveMs)) << Line();
        ASSERT_TRUE(Comes(1, emDef_LiveState::Live));
        vm_nvr.m_F_o_Log().m_S_Clear();
    }

    CPtzPanel& Panel() const { return Find<CPtzPanel>("PtzPanel"); }
    CPtzPad& Pad() const { return Find<CPtzPad>("PtzPad"); }
    std::string Line() const { return Find<QLabel>("PtzLine").text().toStdString(); }

    QPoint OnPad(int nPan, int nTilt) const
    {
        return Pad().rect().center() + QPoint(nPan, -nTilt) * Pad().height() / 4;
    }

    // PTZ commands as the recorder got them, logins aside.
    Texts Commands() const { return Answered(vm_nvr.m_F_o_Log(), "ptz.cgi?", 8); }

    void ExpectCommands(Texts arExpected, const std::string& sWhat)
    {
        EXPECT_TRUE(WaitUntil([&] { return Commands().size() >= arExpected.size(); })) << sWhat << Line();
        EXPECT_EQ(Commands(), arExpected) << sWhat;
        vm_nvr.m_F_o_Log().m_S_Clear();
    }

    // A menu or another window before may still be giving the focus back.
    void FocusFirstCell()
    {
        EXPECT_TRUE(WaitUntil([&] {
            vm_pWindow->activateWindow();
            Cell(0).setFocus();
            QCoreApplication::processEvents();
            return QGuiApplication::focusWindow() == vm_pWindow->windowHandle() &&
                   QApplication::focusWidget() == &Cell(0) && !QApplication::activePopupWidget();
        }));
    }

    void Fault(const char* pszUrl, const stDef_Fault& stFault)
    {
        ASSERT_TRUE(vm_nvr.m_F_o_Faults().m_F_b_Set(pszUrl, stFault));
    }
};

const std::string g_sUp = "continuouspantiltmove=0:16384&camera=0&speed=0";
const std::string g_sStop = "continuouspantiltmove=0:0&camera=0&speed=0";
const std::string g_sZoomIn = "continuouszoommove=16384,0&camera=0";
const std::string g_sZoomStop = "continuouszoommove=0,0&camera=0";

TEST_F(PtzPanelTest, EachKeyAndButtonSendsItsCommand)
{
    Open();
    for (const stDef_TableRow& row : ReadTable("ptz_keys.txt", 4)) {
        Texts arCommands = {row[2], row[3]};
        std::erase(arCommands, "");
        const auto Held = [&] { return arCommands.empty() || Commands().size() == 1; };
        const auto nKey = Qt::Key(row[0][0]);
        QTest::keyPress(&Cell(0), nKey);
        EXPECT_TRUE(WaitUntil(Held)) << row[0];
        QKeyEvent objRepeat(QEvent::KeyPress, nKey, {}, {}, true);
        QApplication::sendEvent(&Cell(0), &objRepeat);
        QTest::keyRelease(&Cell(0), nKey);
        ExpectCommands(arCommands, row[0]);
        if (row[1].empty())
            continue;
        auto& objButton = Find<QAbstractButton>(row[1].c_str());
        EXPECT_TRUE(objButton.toolTip().contains(QString("(%1)").arg(row[0][0]))) << row[1];
        QTest::mousePress(&objButton, Qt::LeftButton);
        EXPECT_TRUE(WaitUntil([&] { return arCommands.size() < 2 || Held(); })) << row[1];
        QTest::mouseRelease(&objButton, Qt::LeftButton);
        ExpectCommands(arCommands, row[1]);
    }
    EXPECT_EQ(Find<QComboBox>("PtzTours").currentText(), "1  Shop fronts");
    QTest::keyPress(&Cell(0), Qt::Key_W);
    EXPECT_TRUE(WaitUntil([&] { return Commands().size() == 1; }));
    QKeyEvent objHeld(QEvent::KeyRelease, Qt::Key_W, {}, {}, true); // as some systems repeat a key
    QApplication::sendEvent(&Cell(0), &objHeld);
    QTest::keyPress(&Cell(0), Qt::Key_R);
    EXPECT_TRUE(WaitUntil([&] { return Commands().size() == 2; }));
    QTest::keyRelease(&Cell(0), Qt::Key_R);
    ExpectCommands({g_sUp, g_sZoomIn, g_sZoomStop}, "a second key let go");
    QTest::keyRelease(&Cell(0), Qt::Key_W);
    ExpectCommands({g_sStop}, "the first key let go");
    QTest::keyClick(&Cell(0), Qt::Key_Period);
    EXPECT_EQ(Find<QSlider>("PtzSpeed").value(), 6);
    QTest::keyClick(&Cell(0), Qt::Key_8, Qt::KeypadModifier);
    QTest::keyClick(&Cell(0), Qt::Key_W, Qt::ControlModifier);
    QTest::keyClick(vm_pWindow->m_F_p_Tree(), Qt::Key_W);
    EXPECT_TRUE(WaitUntil([&] { return vm_nvr.m_F_o_Ptz().m_F_o_State(0).stPose.fTilt != 0 || !Commands().empty(); }));
    for (const std::string& sCommand : Commands())
        EXPECT_TRUE(sCommand == "continuouspantiltmove=0:19660&camera=0&speed=0" || sCommand == g_sStop) << sCommand;
}

TEST_F(PtzPanelTest, WhateverEndsAHoldStopsTheCameraOnce)
{
    Import("Away", 1, 1, 3); // another page
    Open();
    const auto PressUp = [&] { QTest::mousePress(&Pad(), Qt::LeftButton, {}, OnPad(0, 1)); };
    const auto KeyUp = [&](bool bRepeat = false) {
        QKeyEvent objPress(QEvent::KeyPress, Qt::Key_W, {}, "w", bRepeat);
        QApplication::sendEvent(&Cell(0), &objPress);
    };
    struct stDef_Row
    {
        const char* pszWhat;
        std::function<void()> fnBegin;
        std::function<void()> fnEnd;
    };
    const std::vector<stDef_Row> arRows = {
        {"release", PressUp, [&] { QTest::mouseRelease(&Pad(), Qt::LeftButton, {}, OnPad(0, 1)); }},
        {"release elsewhere", PressUp, [&] { QTest::mouseRelease(&Pad(), Qt::LeftButton, {}, QPoint(-50, -50)); }},
        {"focus", PressUp, [&] { vm_pWindow->m_F_p_Tree()->setFocus(); }},
        {"focus, by key", [&] { KeyUp(); }, [&] { vm_pWindow->m_F_p_Tree()->setFocus(); }},
        {"window", [&] { KeyUp(); },
         [&] {
             QWidget objOther;
             objOther.show();
             objOther.activateWindow();
             EXPECT_TRUE(WaitUntil([&] { return Commands().size() == 2; }));
         }},
        {"menu", [&] { KeyUp(); },
         [&] {
             QMenu objMenu;
             objMenu.addAction("x");
             objMenu.popup({10, 10});
             EXPECT_TRUE(WaitUntil([&] { return Commands().size() == 2; }));
         }},
        {"channel", PressUp, [&] { Cell(1).setFocus(); }},
        {"channel, by key", [&] { KeyUp(); }, [&] { QTest::keyClick(&Cell(0), Qt::Key_Right); }},
        {"page", PressUp, [&] { Key(Qt::Key_PageDown); }},
        {"hiding", PressUp, [&] { Key(Qt::Key_T, Qt::ControlModifier); }},
        {"held key and mouse",
         [&] {
             KeyUp();
             PressUp();
             KeyUp(true);
             KeyUp(true);
         },
         [&] {
             QTest::mouseRelease(&Pad(), Qt::LeftButton, {}, OnPad(0, 1));
             QTest::keyRelease(&Cell(0), Qt::Key_W);
         }},
        {"end of the stream", PressUp, [&] { Key(Qt::Key_D, Qt::ControlModifier); }},
    };
    FocusFirstCell();
    for (const stDef_Row& stRow : arRows) {
        stRow.fnBegin();
        EXPECT_TRUE(WaitUntil([&] { return Commands() == Texts{g_sUp}; })) << stRow.pszWhat;
        stRow.fnEnd();
        ExpectCommands({g_sUp, g_sStop}, stRow.pszWhat);
        EXPECT_TRUE(WaitUntil([&] { return !vm_nvr.m_F_o_Ptz().m_F_o_State(0).bMoving; })) << stRow.pszWhat;
        // What is released or repeated late says nothing any more.
        QTest::mouseRelease(&Pad(), Qt::LeftButton, {}, OnPad(0, 1));
        KeyUp(true);
        QTest::keyRelease(&Cell(0), Qt::Key_W);
        ExpectCommands({}, stRow.pszWhat);
        if (!Panel().isVisible())
            Key(Qt::Key_T, Qt::ControlModifier);
        Key(Qt::Key_PageUp);
        FocusFirstCell();
        const bool bEnded = Cell(0).m_F_n_State() == emDef_LiveState::Disconnected;
        EXPECT_TRUE(bEnded || WaitUntil([&] { return Pad().isEnabled(); }, LiveMs)) << stRow.pszWhat << Line();
    }
    EXPECT_FALSE(Pad().isEnabled());
    EXPECT_NE(Line().find("Disconnected"), std::string::npos) << Line();
}

TEST_F(PtzPanelTest, ClosingTheWindowStopsTheCamera)
{
    Open();
    QTest::keyPress(&Cell(0), Qt::Key_R);
    EXPECT_TRUE(WaitUntil([&] { return Commands() == Texts{g_sZoomIn}; }));
    vm_pWindow.reset();
    ExpectCommands({g_sZoomIn, g_sZoomStop}, "closed");
    // The next window comes back with the panel.
    OpenWindow();
    EXPECT_TRUE(Panel().isVisible());
}

TEST_F(PtzPanelTest, ASilentRecorderHoldsUpNothingAndGetsItsStop)
{
    Open();
    Fault("ptz.cgi", {"silence", 0, 1});
    QElapsedTimer clock, gap;
    clock.start();
    QTest::keyPress(&Cell(0), Qt::Key_A);
    EXPECT_TRUE(WaitUntil([&] { return vm_nvr.m_F_o_Log().m_F_n_Count() > 0; }));
    for (const Qt::Key nKey : {Qt::Key_W, Qt::Key_T, Qt::Key_D, Qt::Key_X}) {
        QTest::keyPress(&Cell(0), nKey);
        QTest::keyRelease(&Cell(0), nKey);
    }
    QTest::keyRelease(&Cell(0), Qt::Key_A);
    EXPECT_LT(clock.elapsed(), 1500) << "no key waits for an answer";
    qint64 nLongest = 0;
    gap.start();
    while (clock.elapsed() < 1500) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        nLongest = std::max(nLongest, gap.restart());
    }
    EXPECT_LT(nLongest, 500 * Process::Slowness) << "ms that the window didn't answer";
    EXPECT_TRUE(WaitUntil([&] { return Line().find("did not answer") != std::string::npos; })) << Line();
    EXPECT_TRUE(WaitUntil([&] { return !Commands().empty() && Commands().back() == g_sStop; }));
    for (const std::string& sCommand : Commands())
        EXPECT_TRUE(sCommand == g_sStop || sCommand.find("=-16384:0") != std::string::npos) << sCommand << " is stale";
    QTest::keyClick(&Cell(0), Qt::Key_S);
    EXPECT_TRUE(WaitUntil([&] { return Line().find("Hold a direction") == 0; })) << Line();
}

TEST_F(PtzPanelTest, AStopWithoutAnswerGoesAgainThoughTheStreamHasEnded)
{
    Open();
    Panel().m_S_SetSpeed(1); // far from where it stops by itself
    const auto Moves = [&] { return vm_nvr.m_F_o_Ptz().m_F_o_State(0).bMoving; };
    for (const auto& [pszFault, nTimes] : {std::pair{"silence", 1}, {"refuse", 2}}) {
        SCOPED_TRACE(pszFault);
        FocusFirstCell();
        EXPECT_TRUE(WaitUntil([&] { return Pad().isEnabled(); }, LiveMs));
        Fault("move=0:0", {pszFault, 0, nTimes});
        QTest::keyPress(&Cell(0), Qt::Key_D);
        EXPECT_TRUE(WaitUntil(Moves));
        Key(Qt::Key_D, Qt::ControlModifier);
        EXPECT_FALSE(Pad().isEnabled());
        EXPECT_TRUE(WaitUntil([&] { return !Moves(); }));
        QTest::keyRelease(&Cell(0), Qt::Key_D);
        Key(Qt::Key_L, Qt::ControlModifier);
    }
}

TEST_F(PtzPanelTest, SaysInPlainWordsWhatIsTheMatter)
{
    Fault("group=", {"status", 500});
    OpenWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(vm_pWindow.get()));
    Key(Qt::Key_T, Qt::ControlModifier);
    const auto Says = [&](const char* pszText) {
        EXPECT_TRUE(WaitUntil([&] { return Line().find(pszText) != std::string::npos; }, LiveMs)) << pszText << Line();
    };
    Says("no presets or tours");
    EXPECT_FALSE(Find<QAbstractButton>("PtzPresetGo").isEnabled());
    for (const auto& [nStatus, pszText] : {std::pair{400, "refused the last"}, {401, "refused the account"}}) {
        Fault("ptz.cgi", {"status", nStatus});
        QTest::keyClick(&Cell(0), Qt::Key_S);
        Says(pszText);
    }
    Cell(3).setFocus();
    Says("Select a live cell");
    EXPECT_FALSE(Pad().isEnabled());
    Cell(0).setFocus();
    vm_nvr.m_S_Stop();
    Says("can't be reached");
    EXPECT_FALSE(Pad().isEnabled());
}

TEST_F(PtzPanelTest, TellsWhatTheAccountMaySee)
{
    EXPECT_EQ(CLoginPanel::s_F_s_Channels("110111010"), QString::fromUtf8("1–2, 4–6, 8"));
    EXPECT_EQ(CLoginPanel::s_F_s_Channels("000"), QString());
    Fault("cgi-bin/logininfo", {"silence", 0, 1}); // the first one never ends; the names of cameras don't ask there
    Open();
    const auto Is = [&](const char* pszLabel, const char* pszText) {
        const auto Shown = [&] { return Find<QLabel>(pszLabel).text().remove(QChar(0x2060)); };
        EXPECT_TRUE(WaitUntil([&] { return Shown() == QString::fromUtf8(pszText); }))
            << pszLabel << ": " << Shown().toStdString();
    };
    Is("LoginAccount", "admin");
    Is("LoginView", "Loading…");
    vm_pWindow.reset(); // at once, though a question runs
    Open();
    Is("LoginView", "2 of 2 channels: 1–2");
    Is("LoginStyles", "Normal, Simple, Professional, Advanced");
    Is("LoginSecondOnly", "Can be recorded alone");
    QPalette objDark(QColor(40, 40, 40), QColor(30, 30, 30));
    objDark.setColor(QPalette::PlaceholderText, Qt::black);
    vm_pWindow->setPalette(objDark);
    for (const QLabel* const pLabel : vm_pWindow->findChild<CLoginPanel*>()->findChildren<QLabel*>())
        EXPECT_GT(pLabel->palette().color(QPalette::WindowText).lightness(), 128) << pLabel->text().toStdString();
}

} // namespace
