#include <QFile>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>
#include <gtest/gtest.h>
#include <random>
#include <set>

#include "widgets/CTimeListCtrl.h"
#include "widgets/CTimeStateWnd.h"

// The bars of a day: their arithmetic by tables and by thousands of drags, and the widgets by real events.

namespace {

using TimeLine::Minute;
using States = QList<TIME_STATE>;

constexpr int Width = 720; // of a bar: a pixel stands for two minutes

// "480-600 660-720" in minutes, there and back.
States Read(const QString& sStates)
{
    States arStates;
    for (const QString& sBlock : sStates.split(' ', Qt::SkipEmptyParts)) {
        const QStringList arTimes = sBlock.split('-');
        arStates.append({{}, arTimes[0].toULongLong() * Minute, arTimes[1].toULongLong() * Minute, 0xD8A878});
    }
    return arStates;
}

std::string Text(const States& arStates)
{
    QStringList arTexts;
    for (const TIME_STATE& st : arStates)
        arTexts.append(QStringLiteral("%1-%2").arg(st.nStart / Minute).arg(st.nEnd / Minute));
    return arTexts.join(' ').toStdString();
}

struct stDef_Case
{
    QString sStates;
    QStringList arWith;
    std::string sAfter;

    int m_F_n_With(int n) const { return arWith[n].toInt(); }
};

// The rows of a kind; what comes out of each is compared and told with its row.
void ForEach(const char* pszKind, const std::function<std::string(const stDef_Case&)>& fnDo)
{
    QFile objFile(QStringLiteral(FIXTURE_FOLDER "/days.txt"));
    ASSERT_TRUE(objFile.open(QIODevice::ReadOnly));
    int nRows = 0;
    for (const QString& sLine : QString(objFile.readAll()).split('\n')) {
        const QStringList arParts = sLine.split(';');
        if (arParts[0] != pszKind)
            continue;
        const stDef_Case st{arParts[1], arParts[2].split(' ', Qt::SkipEmptyParts), arParts[3].trimmed().toStdString()};
        EXPECT_EQ(fnDo(st), st.sAfter) << sLine.toStdString();
        ++nRows;
    }
    EXPECT_GT(nRows, 0) << pszKind;
}

TEST(TimeLine, PixelsAndTimes)
{
    const int aTimes[][3] = {{0, 576, 0},      {-9, 576, 0},     {1, 576, 2}, {288, 576, 720}, {575, 576, 1437},
                             {576, 576, 1439}, {900, 576, 1439}, {1, 96, 15}, {39, 40, 1404},  {3, 0, 0}};
    for (const auto& [nX, nWidth, nMinute] : aTimes)
        EXPECT_EQ(TimeLine::s_F_n_At(nX, nWidth), static_cast<quint64>(nMinute) * Minute) << nX << " of " << nWidth;
    EXPECT_EQ(TimeLine::s_F_n_Minutes(7, 576), 17);
    EXPECT_EQ(TimeLine::s_F_n_Minutes(-7, 576), -17);

    const int aPlaces[][4] = {{0, 1439, 10, 585},   {480, 600, 202, 250},   {600, 600, 250, 251},
                              {600, 540, 250, 251}, {1380, 1800, 562, 586}, {1441, 1500, 10, 10}};
    for (const auto& [nStart, nEnd, nLeft, nRight] : aPlaces) {
        const TIME_STATE st = Read(QStringLiteral("%1-%2").arg(nStart).arg(nEnd)).first();
        EXPECT_EQ(TimeLine::s_F_o_Place(st.nStart, st.nEnd, {10, 2, 586, 26}), (stDef_Rect{nLeft, 7, nRight, 21}));
    }
    EXPECT_EQ(TimeLine::s_F_o_Place(TimeLine::NoTime, TimeLine::NoTime, {0, 0, 576, 24}).m_F_n_Width(), 0);
}

TEST(TimeLine, BlocksAmongOthers)
{
    ForEach("position", [](const stDef_Case& st) {
        const TIME_STATE stNew = Read(st.arWith[0]).first();
        return std::to_string(TimeLine::s_F_n_PositionFor(Read(st.sStates), stNew.nStart, stNew.nEnd));
    });
    ForEach("reach", [](const stDef_Case& st) {
        const auto stReach = TimeLine::s_F_o_Reach(Read(st.sStates), st.arWith[0].toULongLong() * Minute);
        return stReach.bFree ? Text({{{}, stReach.nMin, stReach.nMax}}) : "none";
    });
}

TEST(TimeLine, ChangesOfABlock)
{
    const auto Change = [](auto fnChange, quint64 nUnit) {
        return [=](const stDef_Case& st) {
            States arStates = Read(st.sStates);
            const std::string sBefore = Text(arStates);
            const bool bChanged = fnChange(arStates, st.m_F_n_With(0), st.m_F_n_With(1) * static_cast<qint64>(nUnit));
            EXPECT_EQ(bChanged, Text(arStates) != sBefore) << sBefore;
            return Text(arStates);
        };
    };
    ForEach("move", Change(TimeLine::s_F_b_Move, 1));
    ForEach("start", Change(TimeLine::s_F_b_SetStart, Minute));
    ForEach("end", Change(TimeLine::s_F_b_SetEnd, Minute));
}

class TimeWidgets : public testing::Test
{
protected:
    void SetUp() override
    {
        CTimeStateBar::s_S_SetClock([this] { return vm_nNowMs; });
        CTimeStateBar::s_nSelectBar = -1;
        m_S_Make(false);
    }
    void TearDown() override
    {
        vm_pList.reset();
        CTimeStateBar::s_S_SetClock(nullptr);
        EXPECT_FALSE(CTimeStateBar::s_stSelect.pWnd);
        EXPECT_FALSE(CTimeStateBar::s_pFocusWnd);
    }
    void m_S_Make(bool bViewOnly)
    {
        vm_pList = std::make_unique<CTimeListCtrl>();
        vm_arChanged.clear();
        vm_pList->vm_bViewOnly = bViewOnly;
        vm_pList->setColumnWidth(0, 80);
        vm_pList->setColumnWidth(1, Width);
        vm_pList->setRowCount(3);
        for (int i = 0; i < 3; ++i)
            vm_pList->setItem(i, 0, new QTableWidgetItem(QStringLiteral("Day %1").arg(i)));
        vm_pList->resize(Width + 120, 200);
        vm_pList->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(vm_pList.get()));
        ASSERT_EQ(m_F_p_Bar(0)->width(), Width);
        QObject::connect(vm_pList.get(), &CTimeListCtrl::S_Changed, [this](int nItem, int nRow) {
            vm_arChanged.append({nItem, nRow});
        });
    }
    CTimeStateBar* m_F_p_Bar(int nRow) const { return vm_pList->vm_arBar[nRow]; }
    void m_S_Fill(int nRow, const QString& sStates)
    {
        for (TIME_STATE& st : Read(sStates))
            ASSERT_GE(m_F_p_Bar(nRow)->m_S_AddState(st), 0) << sStates.toStdString();
    }
    std::string m_F_s_States(int nRow) const { return Text(m_F_p_Bar(nRow)->vm_arState); }

    // The mouse, where it would hit the window; a step a second.
    void m_S_Mouse(QEvent::Type nType, int nRow, int nX, int nY = 12, Qt::MouseButton nButton = Qt::LeftButton)
    {
        QWindow* const pWindow = vm_pList->windowHandle();
        const QPoint pt = m_F_p_Bar(nRow)->mapTo(vm_pList.get(), QPoint(nX, nY));
        vm_nNowMs += vm_nStepMs;
        if (nType == QEvent::MouseButtonPress)
            QTest::mousePress(pWindow, nButton, {}, pt);
        else if (nType == QEvent::MouseMove)
            QTest::mouseMove(pWindow, pt);
        else
            QTest::mouseRelease(pWindow, nButton, {}, pt);
    }
    void m_S_Drag(int nRow, int nFrom, int nTo, int nY = 12)
    {
        m_S_Mouse(QEvent::MouseMove, nRow, nFrom, nY);
        m_S_Mouse(QEvent::MouseButtonPress, nRow, nFrom, nY);
        m_S_Mouse(QEvent::MouseMove, nRow, (nFrom + nTo) / 2, nY);
        m_S_Mouse(QEvent::MouseMove, nRow, nTo, nY);
        m_S_Mouse(QEvent::MouseButtonRelease, nRow, nTo, nY);
    }
    static std::string s_F_s_Selection() { return Text({CTimeStateBar::s_stSelect}); }

    std::unique_ptr<CTimeListCtrl> vm_pList;
    QList<std::pair<int, int>> vm_arChanged;
    quint64 vm_nNowMs = 1000;
    quint64 vm_nStepMs = 1000;
};

TEST_F(TimeWidgets, SelectsFreeSpans)
{
    QSignalSpy spySelected(vm_pList.get(), &CTimeListCtrl::S_Selected);
    m_S_Fill(1, "480-600");
    ForEach("select", [&](const stDef_Case& st) {
        vm_arChanged.clear();
        spySelected.clear();
        m_S_Drag(1, st.m_F_n_With(0), st.m_F_n_With(1));
        EXPECT_EQ(CTimeStateBar::s_nSelectBar, 1);
        EXPECT_TRUE(vm_arChanged.contains(std::pair(-1, 1)));
        QCoreApplication::processEvents();
        EXPECT_EQ(spySelected.count(), st.arWith[0] != st.arWith[1]) << st.sAfter;
        return s_F_s_Selection();
    });
}

TEST_F(TimeWidgets, SelectionsThatDontCount)
{
    m_S_Fill(0, "480-600");
    QSignalSpy spySelected(vm_pList.get(), &CTimeListCtrl::S_Selected);
    m_S_Drag(0, 270, 500, 1); // above a block
    EXPECT_EQ(CTimeStateBar::s_nSelectBar, -1);
    EXPECT_EQ(CTimeStateBar::s_stSelect.nStart, TimeLine::NoTime);
    vm_pList->setColumnWidth(1, 1440);
    m_S_Drag(0, 100, 101);
    EXPECT_EQ(s_F_s_Selection(), "100-101"); // not longer than a minute
    QCoreApplication::processEvents();
    EXPECT_EQ(spySelected.count(), 0);
    m_S_Drag(0, 100, 102);
    QCoreApplication::processEvents();
    EXPECT_EQ(spySelected.count(), 1);
    m_S_Mouse(QEvent::MouseButtonPress, 0, 101, 12, Qt::RightButton); // on the selection itself
    m_S_Mouse(QEvent::MouseButtonRelease, 0, 101, 12, Qt::RightButton);
    EXPECT_EQ(CTimeStateBar::s_stSelect.nStart, TimeLine::NoTime);
}

TEST_F(TimeWidgets, StepsWaitForTheClock)
{
    m_S_Fill(1, "480-600");
    for (const int nRow : {0, 1}) { // a selection, a block
        const auto Shown = [&] { return nRow == 0 ? s_F_s_Selection() : m_F_s_States(1); };
        m_S_Mouse(QEvent::MouseMove, nRow, 270);
        vm_nStepMs = 50;
        m_S_Mouse(QEvent::MouseButtonPress, nRow, 270);
        m_S_Mouse(QEvent::MouseMove, nRow, 280);
        const std::string sFirst = Shown();
        EXPECT_EQ(sFirst, nRow == 0 ? "540-560" : "500-620");
        EXPECT_EQ(QToolTip::text(), nRow == 0 ? "09:00 - 09:20" : "08:20 - 10:20");
        m_S_Mouse(QEvent::MouseMove, nRow, 290);
        m_S_Mouse(QEvent::MouseMove, nRow, 300); // 100 ms are not yet more than 100 ms
        EXPECT_EQ(Shown(), sFirst);
        m_S_Mouse(QEvent::MouseMove, nRow, 310);
        EXPECT_EQ(Shown(), nRow == 0 ? "540-620" : "560-680");
        m_S_Mouse(QEvent::MouseMove, nRow, 320);
        m_S_Mouse(QEvent::MouseButtonRelease, nRow, 320);
        EXPECT_EQ(Shown(), nRow == 0 ? "540-640" : "580-700"); // where the pointer let go
        vm_nStepMs = 1000;
    }
}

TEST_F(TimeWidgets, DragsBlocks)
{
    ForEach("drag", [&](const stDef_Case& st) {
        m_S_Make(false);
        m_S_Fill(1, st.sStates);
        m_S_Drag(1, st.m_F_n_With(0), st.m_F_n_With(1));
        const auto stHit = std::pair(st.m_F_n_With(0) < 350 ? 0 : 1, 1);
        EXPECT_EQ(vm_arChanged.value(0), stHit);
        const TIME_STATE& stBlock = m_F_p_Bar(1)->vm_arState[stHit.first];
        EXPECT_EQ(CTimeStateBar::s_pFocusWnd, stBlock.pWnd);
        const stDef_Rect stPlace = TimeLine::s_F_o_Place(stBlock.nStart, stBlock.nEnd, {0, 0, Width, 24});
        EXPECT_EQ(stBlock.pWnd->x(), stPlace.left);
        EXPECT_EQ(stBlock.pWnd->width(), stPlace.m_F_n_Width());
        return m_F_s_States(1);
    });
}

TEST_F(TimeWidgets, NoDragMakesBlocksOverlap)
{
    std::mt19937 objRandom(20240229);
    const auto Below = [&objRandom](int n) { return static_cast<int>(objRandom() % static_cast<unsigned>(n)); };
    int nChanges = 0;
    for (int i = 0; i < 3000; ++i) {
        if (i % 50 == 0) { // drags push the blocks together
            m_S_Make(false);
            m_S_Fill(1, "5-95 96-180 300-301 500-700 700-710 712-900 1100-1439");
        }
        const States arBefore = m_F_p_Bar(1)->vm_arState;
        const QWidget& objBlock = *arBefore[Below(int(arBefore.size()))].pWnd;
        const int nFrom = i % 2 ? Below(Width) : objBlock.x() + Below(objBlock.width());
        m_S_Drag(1, nFrom, Below(Width + 70) - 35);
        const States& arAfter = m_F_p_Bar(1)->vm_arState;
        ASSERT_EQ(arAfter.size(), arBefore.size());
        int nChanged = 0;
        quint64 nFree = 0; // where the next block may begin
        for (int k = 0; k < arAfter.size(); ++k) {
            const TIME_STATE &st = arAfter[k], &stBefore = arBefore[k];
            ASSERT_TRUE(st.nStart >= nFree && st.nStart + Minute <= st.nEnd && st.nEnd <= TimeLine::LastTime)
                << i << ": " << Text(arBefore) << " became " << Text(arAfter);
            ASSERT_TRUE(st.nStart % Minute == 0 && st.nEnd % Minute == 0 && st.pWnd->vm_nIndex == k);
            nFree = st.nEnd;
            nChanged += st.nStart != stBefore.nStart || st.nEnd != stBefore.nEnd;
        }
        ASSERT_LE(nChanged, 1) << i;
        nChanges += nChanged;
        const TIME_STATE& stSelect = CTimeStateBar::s_stSelect;
        if (stSelect.nStart != TimeLine::NoTime && stSelect.nEnd - stSelect.nStart > Minute) {
            ASSERT_GE(TimeLine::s_F_n_PositionFor(arAfter, stSelect.nStart, stSelect.nEnd), 0) << s_F_s_Selection();
        }
    }
    EXPECT_GT(nChanges, 500);
}

TEST_F(TimeWidgets, Keys)
{
    ForEach("keys", [&](const stDef_Case& st) {
        m_S_Make(false);
        m_S_Fill(1, st.sStates);
        vm_pList->setCurrentCell(1, 0);
        for (const QString& sKey : st.arWith) {
            const QKeyCombination objKey = QKeySequence::fromString(sKey)[0];
            QTest::keyClick(vm_pList.get(), objKey.key(), objKey.keyboardModifiers());
            EXPECT_EQ(vm_pList->currentRow(), 1);
        }
        EXPECT_EQ(vm_arChanged.isEmpty(), Text(Read(st.sStates)) == st.sAfter);
        return m_F_s_States(1);
    });
    QTest::keyClick(vm_pList.get(), Qt::Key_Down);
    EXPECT_EQ(vm_arChanged.last(), std::pair(0, 2)); // as a click on that row
}

TEST_F(TimeWidgets, ViewOnlySpanFollowsThePointer)
{
    m_S_Make(true);
    m_S_Fill(1, "480-600");
    const auto Span = [] { return Text({{{}, CTimeStateBar::s_nViewStart, CTimeStateBar::s_nViewEnd}}); };
    m_S_Drag(1, 270, 400); // blocks let the mouse through
    EXPECT_EQ(Span(), "540-800");
    EXPECT_EQ(vm_arChanged.last(), std::pair(-1, 0));
    m_S_Mouse(QEvent::MouseMove, 2, 100);
    EXPECT_EQ(Span(), "200-540");
    EXPECT_EQ(m_F_p_Bar(0)->grab().toImage().pixelColor(200, 6), QColor(150, 200, 255));
    m_S_Mouse(QEvent::MouseButtonPress, 0, 100);
    m_S_Mouse(QEvent::MouseButtonRelease, 0, 100);
    EXPECT_EQ(Span(), "0-0");
    EXPECT_EQ(CTimeStateBar::s_stSelect.nStart, TimeLine::NoTime);
    QTest::keyClick(vm_pList.get(), Qt::Key_Right);
    EXPECT_EQ(m_F_s_States(1), "480-600");

    QSignalSpy spyChecked(vm_pList.get(), &CTimeListCtrl::S_Checked);
    for (int i = 0; i < 3; ++i)
        vm_pList->item(i, 0)->setCheckState(Qt::Unchecked);
    vm_pList->selectAll();
    spyChecked.clear();
    vm_pList->item(1, 0)->setCheckState(Qt::Checked);
    EXPECT_EQ(vm_pList->item(2, 0)->checkState(), Qt::Checked);
    EXPECT_EQ(spyChecked.count(), 1);
}

TEST_F(TimeWidgets, RowsBringAndTakeTheirBars)
{
    m_S_Fill(1, "480-600");
    m_S_Fill(2, "100-200");
    QSignalSpy spyDouble(vm_pList.get(), &CTimeListCtrl::S_DoubleClicked);
    QTest::mouseDClick(m_F_p_Bar(2)->vm_arState[0].pWnd, Qt::LeftButton);
    EXPECT_EQ(spyDouble.count(), 0); // posted
    QCoreApplication::processEvents();
    EXPECT_EQ(spyDouble.count(), 1);
    m_S_Drag(2, 300, 400);
    vm_pList->insertRow(0);
    EXPECT_EQ(Text(vm_pList->vm_arBar[3]->vm_arState), "100-200");
    EXPECT_EQ(vm_pList->vm_arBar[3]->vm_nBarID, 3);
    QTest::mouseClick(vm_pList->viewport(), Qt::LeftButton, {}, QPoint(20, m_F_p_Bar(2)->y() + 5));
    EXPECT_EQ(vm_arChanged.last(), std::pair(0, 2));
    m_S_Drag(2, 270, 300);
    vm_pList->removeRow(2); // with the focused block
    EXPECT_FALSE(CTimeStateBar::s_pFocusWnd);
    m_S_Mouse(QEvent::MouseButtonPress, 2, 500);
    m_S_Mouse(QEvent::MouseMove, 2, 600);
    EXPECT_EQ(s_F_s_Selection(), "1000-1200");
    vm_pList->removeRow(2); // with the selection, while it is drawn
    EXPECT_EQ(CTimeStateBar::s_nDragX, -1);
    EXPECT_EQ(CTimeStateBar::s_nSelectBar, -1);
    EXPECT_EQ(CTimeStateBar::s_stSelect.nStart, TimeLine::NoTime);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_S_Mouse(QEvent::MouseButtonRelease, 1, 600);
    ASSERT_TRUE(CTimeStateBar::s_stSelect.pWnd);
    m_S_Drag(1, 300, 400);
    EXPECT_EQ(CTimeStateBar::s_stSelect.pWnd->parentWidget(), m_F_p_Bar(1));
}

TEST_F(TimeWidgets, TellsBlocksInWords)
{
    m_S_Fill(1, "495-720");
    CTimeStateWnd* const pWnd = m_F_p_Bar(1)->vm_arState[0].pWnd;
    EXPECT_EQ(pWnd->accessibleName(), "08:15 - 12:00");
    vm_pList->m_S_SetTeller([this](int nRow, const TIME_STATE& st) {
        return vm_pList->item(nRow, 0)->text() + "<b> " + TimeLine::s_F_s_Clock(st.nStart);
    });
    EXPECT_EQ(pWnd->accessibleName(), "Day 1<b> 08:15");
    EXPECT_EQ(m_F_p_Bar(1)->accessibleName(), "Day 1");
    m_S_Drag(1, 300, 330);
    EXPECT_EQ(pWnd->accessibleName(), "Day 1<b> 09:15");
    QHelpEvent objHelp(QEvent::ToolTip, {5, 5}, pWnd->mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(pWnd, &objHelp);
    EXPECT_TRUE(QToolTip::text().contains("&lt;b")) << QToolTip::text().toStdString();
}

TEST_F(TimeWidgets, CursorsTellWhatAPressWillDo)
{
    m_S_Fill(1, "480-600");
    const QWidget* const pWnd = m_F_p_Bar(1)->vm_arState[0].pWnd;
    std::set<qint64> setCursors;
    const auto Look = [&] {
        EXPECT_EQ(pWnd->cursor().shape(), Qt::BitmapCursor);
        EXPECT_EQ(pWnd->cursor().hotSpot(), QPoint(16, 9));
        setCursors.insert(pWnd->cursor().pixmap().cacheKey());
    };
    m_S_Mouse(QEvent::MouseMove, 1, 270);
    Look(); // move
    m_S_Mouse(QEvent::MouseMove, 1, 298);
    Look(); // resize
    m_S_Mouse(QEvent::MouseButtonPress, 1, 298);
    Look(); // grab
    m_S_Mouse(QEvent::MouseMove, 1, 310);
    Look(); // drag
    EXPECT_EQ(setCursors.size(), 4U);
    m_S_Mouse(QEvent::MouseButtonRelease, 1, 310);
    m_S_Mouse(QEvent::MouseMove, 1, 500);
    EXPECT_EQ(pWnd->cursor().shape(), Qt::ArrowCursor);
}

QImage Painted(QWidget* pWidget, qreal nRatio)
{
    QImage objImage((QSizeF(pWidget->size()) * nRatio).toSize(), QImage::Format_RGB32);
    objImage.setDevicePixelRatio(nRatio);
    objImage.fill(Qt::magenta);
    pWidget->render(&objImage);
    return objImage;
}

// Widths of the lines in a row of pixels.
std::set<int> LineWidths(const QImage& objImage, int nY, QRgb nColor)
{
    std::set<int> setWidths;
    for (int x = 0, nWidth = 0; x < objImage.width(); ++x) {
        if (objImage.pixel(x, nY) == nColor)
            ++nWidth;
        else if (nWidth > 0)
            setWidths.insert(std::exchange(nWidth, 0));
    }
    return setWidths;
}

// Only the colours that are meant, none a mixture, and every pixel painted; all lines of the same width.
TEST(TimeBar, IsSharpAtEveryWidthAndScale)
{
    QPalette objPalette;
    objPalette.setColor(QPalette::Base, QColor(251, 252, 253));
    const QRgb nBase = qRgb(251, 252, 253), nCell = qRgb(200, 200, 200), nBlock = qRgb(0x78, 0xA8, 0xD8),
               nWhite = qRgb(255, 255, 255), nBlack = qRgb(0, 0, 0);
    for (const int nWidth : {40, 96, 300, 576, 1400}) {
        QWidget objParent;
        CTimeStateBar* const pBar = new CTimeStateBar(false);
        pBar->m_F_b_Create({0, 0, nWidth, 30}, &objParent, 7);
        pBar->setPalette(objPalette);
        for (TIME_STATE& st : Read("60-300 700-701 720-1200"))
            pBar->m_S_AddState(st);
        CTimeStateWnd::s_S_Focus(pBar->vm_arState[2].pWnd);
        for (const qreal nRatio : {1.0, 1.25, 1.5, 2.0}) {
            SCOPED_TRACE(std::to_string(nWidth) + " at " + std::to_string(nRatio));
            const QImage objImage = Painted(pBar, nRatio);
            for (int i = 0; i < objImage.width() * objImage.height(); ++i) {
                const QRgb nPixel = objImage.pixel(i % objImage.width(), i / objImage.width());
                ASSERT_TRUE(std::set({nBase, nCell, nBlock, nWhite, nBlack}).contains(nPixel)) << std::hex << nPixel;
            }
            const int nLine = static_cast<int>(nRatio);
            if (nWidth >= 300)
                EXPECT_EQ(LineWidths(objImage, int(4 * nRatio), nCell), (std::set{nLine, 2 * nLine}));
            const auto At = [&](double x, double y) { return objImage.pixel(int(x * nRatio), int(y * nRatio)); };
            EXPECT_EQ(At(0, 2), nCell);
            EXPECT_EQ(At(nWidth - 0.5, 2), nWidth % 96 == 0 ? nCell : nBase); // the strip at the right
            EXPECT_EQ(At(nWidth / 8.0, 15), nBlock);
            EXPECT_EQ(At(nWidth / 8.0, 8.5), nWidth > 48 ? nWhite : nBlock);
            EXPECT_EQ(At(nWidth / 8.0, 21.9), nWidth > 48 ? nBlack : nBlock);
        }
    }
}

} // namespace
