#include "widgets/CTimeStateBar.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <chrono>

#include "widgets/CPixelPainter.h"
#include "widgets/CTimeStateWnd.h"

using TimeLine::NoTime;

namespace {

constexpr int SelectionBlockID = 65535;
constexpr quint64 DragIntervalMs = 100;
constexpr quint32 CellColor = 0xC8C8C8;
constexpr quint32 CellColorOnDark = 0x505050;
constexpr quint32 ViewSpanColor = 0xFFC896;

int g_nBars = 0; // of the process

quint64 SteadyMs()
{
    const auto objNow = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<quint64>(std::chrono::duration_cast<std::chrono::milliseconds>(objNow).count());
}

CTimeStateBar::TickMs g_fnTickMs = SteadyMs;

stDef_Rect ClientOf(const QWidget& objWidget)
{
    return {0, 0, objWidget.width(), objWidget.height()};
}

QRect ToRect(const stDef_Rect& st)
{
    return {st.left, st.top, st.m_F_n_Width(), st.m_F_n_Height()};
}

bool IsDark(const QPalette& objPalette)
{
    return objPalette.color(QPalette::Base).lightness() < 128;
}

quint32 WordOf(const QColor& objColor)
{
    return static_cast<quint32>(objColor.red() | objColor.green() << 8 | objColor.blue() << 16);
}

} // namespace

CTimeStateBar::TIME_STATE CTimeStateBar::s_stSelect{{}, NoTime, NoTime};
quint64 CTimeStateBar::s_nMinTime = 0;
quint64 CTimeStateBar::s_nMaxTime = NoTime;
qint32 CTimeStateBar::s_nDragX = -1;
quint64 CTimeStateBar::s_nAnchor = NoTime;
qint32 CTimeStateBar::s_nSelectBar = -1;
QPointer<CTimeStateWnd> CTimeStateBar::s_pFocusWnd;
quint64 CTimeStateBar::s_nViewStart = 0;
quint64 CTimeStateBar::s_nViewEnd = 0;
quint64 CTimeStateBar::s_nViewAnchor = NoTime;

CTimeStateBar::CTimeStateBar(bool bViewOnly) : vm_bViewOnly(bViewOnly)
{
    ++g_nBars;
    s_nViewAnchor = NoTime;
    setMouseTracking(true);
}

CTimeStateBar::~CTimeStateBar()
{
    m_S_StepOut();
    for (const TIME_STATE& st : std::exchange(vm_arState, {}))
        delete st.pWnd;
    if (--g_nBars == 0)
        delete s_stSelect.pWnd;
}

bool CTimeStateBar::m_F_b_Create(const stDef_Rect& stRect, QWidget* pParent, int nID)
{
    if (!pParent)
        return false;
    setParent(pParent);
    setProperty("id", nID);
    setGeometry(ToRect(stRect));
    if (!s_stSelect.pWnd) {
        s_stSelect.pWnd = new CTimeStateWnd(this);
        s_stSelect.pWnd->setProperty("id", SelectionBlockID);
        // A press on the selection is one on the bar below it.
        s_stSelect.pWnd->setAttribute(Qt::WA_TransparentForMouseEvents);
        m_S_ClearSelect();
    }
    show();
    return true;
}

void CTimeStateBar::m_S_StepOut()
{
    if (s_pFocusWnd && s_pFocusWnd->parentWidget() == this)
        s_pFocusWnd = nullptr;
    if (!s_stSelect.pWnd || s_stSelect.pWnd->parentWidget() != this)
        return;
    s_stSelect.pWnd->setParent(nullptr); // hides it, too
    s_stSelect.nStart = s_stSelect.nEnd = s_nAnchor = NoTime;
    s_nDragX = s_nSelectBar = -1;
}

int CTimeStateBar::m_S_AddState(TIME_STATE& stState)
{
    const int nPosition = TimeLine::s_F_n_PositionFor(vm_arState, stState.nStart, stState.nEnd);
    if (nPosition < 0)
        return -1;
    stState.nStart = TimeLine::s_F_n_WholeMinute(stState.nStart);
    stState.nEnd = TimeLine::s_F_n_WholeMinute(stState.nEnd);
    stState.pWnd = m_F_p_TakeBlock();
    vm_arState.insert(nPosition, stState);
    m_S_Renumber();
    stState.pWnd->setAccessibleName(m_F_s_Tell(nPosition));
    m_S_Place(stState);
    stState.pWnd->show();
    return nPosition;
}

void CTimeStateBar::m_S_BeginFill()
{
    if (s_pFocusWnd && s_pFocusWnd->parentWidget() == this)
        s_pFocusWnd = nullptr;
    if (s_stSelect.pWnd && s_stSelect.pWnd->parentWidget() == this)
        m_S_ClearSelect();
    while (!vm_arState.isEmpty())
        vm_arSpare.append(vm_arState.takeLast().pWnd);
}

void CTimeStateBar::m_S_EndFill()
{
    for (CTimeStateWnd* const pWnd : vm_arSpare)
        pWnd->hide();
}

// In the order in which they stood, so that blocks that are filled in anew keep theirs.
CTimeStateWnd* CTimeStateBar::m_F_p_TakeBlock()
{
    if (vm_arSpare.isEmpty())
        return m_F_p_MakeBlock();
    CTimeStateWnd* const pWnd = vm_arSpare.takeLast();
    pWnd->vm_nDragX = -1;
    pWnd->update(); // its colour may be another one
    return pWnd;
}

CTimeStateWnd* CTimeStateBar::m_F_p_MakeBlock()
{
    auto* const pWnd = new CTimeStateWnd(this);
    pWnd->setAttribute(Qt::WA_TransparentForMouseEvents, vm_bViewOnly);
    connect(pWnd, &CTimeStateWnd::S_Move, this, [this](int nIndex, int nPixels) {
        m_S_Report(nIndex, TimeLine::s_F_b_Move(vm_arState, nIndex, TimeLine::s_F_n_Minutes(nPixels, width())));
    });
    connect(pWnd, &CTimeStateWnd::S_DragRight, this,
            [this](int nIndex, int nScreenX) { m_S_DragEdge(nIndex, nScreenX, TimeLine::s_F_b_SetEnd); });
    connect(pWnd, &CTimeStateWnd::S_DragLeft, this,
            [this](int nIndex, int nScreenX) { m_S_DragEdge(nIndex, nScreenX, TimeLine::s_F_b_SetStart); });
    connect(pWnd, &CTimeStateWnd::S_Clicked, this, [this](int nIndex) {
        m_S_ClearSelect();
        Q_EMIT S_Changed(nIndex, vm_nBarID);
    });
    connect(pWnd, &CTimeStateWnd::S_DoubleClicked, this, &CTimeStateBar::S_DoubleClicked);
    return pWnd;
}

void CTimeStateBar::m_S_ClearSelect()
{
    s_stSelect.nStart = s_stSelect.nEnd = NoTime;
    s_stSelect.nColor = WordOf(palette().color(IsDark(palette()) ? QPalette::Light : QPalette::Dark));
    CTimeStateWnd* const pWnd = s_stSelect.pWnd;
    if (!pWnd)
        return;
    pWnd->vm_nColor = s_stSelect.nColor;
    if (pWnd->parentWidget() != this)
        pWnd->setParent(this);
    m_S_Place(s_stSelect);
    pWnd->show();
}

void CTimeStateBar::m_S_SetTeller(const Teller& fnTeller)
{
    vm_fnTeller = fnTeller;
    for (const TIME_STATE& st : vm_arState)
        st.pWnd->setAccessibleName(m_F_s_Tell(st.pWnd->vm_nIndex));
}

QString CTimeStateBar::m_F_s_Times(int nIndex) const
{
    if (nIndex < 0 || nIndex >= vm_arState.size())
        return {};
    const TIME_STATE& st = vm_arState[nIndex];
    return TimeLine::s_F_s_Clock(st.nStart) + QStringLiteral(" - ") + TimeLine::s_F_s_Clock(st.nEnd);
}

QString CTimeStateBar::m_F_s_Tell(int nIndex) const
{
    const bool bKnown = nIndex >= 0 && nIndex < vm_arState.size();
    return bKnown && vm_fnTeller ? vm_fnTeller(vm_nBarID, vm_arState[nIndex]) : m_F_s_Times(nIndex);
}

bool CTimeStateBar::m_F_b_TakeTick()
{
    const quint64 nNow = g_fnTickMs();
    if (nNow - vm_nLastTick <= DragIntervalMs)
        return false;
    vm_nLastTick = nNow;
    return true;
}

bool CTimeStateBar::s_F_b_Dragging()
{
    return s_nDragX != -1 || (s_pFocusWnd && s_pFocusWnd->vm_nDragX != -1);
}

void CTimeStateBar::s_S_SetClock(const TickMs& fnTickMs)
{
    g_fnTickMs = fnTickMs ? fnTickMs : SteadyMs;
}

// Any button ends a selection; the left one begins the next.
void CTimeStateBar::mousePressEvent(QMouseEvent* pEvent)
{
    m_S_ClearSelect();
    if (pEvent->button() != Qt::LeftButton)
        return;
    CTimeStateWnd::s_S_Focus(nullptr);
    const int nX = pEvent->position().toPoint().x();
    const quint64 nTime = TimeLine::s_F_n_At(nX, width());
    if (vm_bViewOnly)
        m_S_BeginView(nTime);
    else
        m_S_BeginSelect(nX, nTime);
}

void CTimeStateBar::m_S_BeginView(quint64 nTime)
{
    s_nViewStart = s_nViewEnd = 0;
    s_nViewAnchor = nTime;
    Q_EMIT S_ViewSpan();
}

void CTimeStateBar::m_S_BeginSelect(int nX, quint64 nTime)
{
    Q_EMIT S_Changed(-1, vm_nBarID);
    const TimeLine::stDef_Reach stReach = TimeLine::s_F_o_Reach(vm_arState, nTime);
    s_nMinTime = stReach.nMin;
    s_nMaxTime = stReach.nMax;
    s_nAnchor = stReach.bFree ? nTime : NoTime;
    if (!stReach.bFree)
        return;
    s_nDragX = nX;
    s_nSelectBar = vm_nBarID;
}

void CTimeStateBar::mouseMoveEvent(QMouseEvent* pEvent)
{
    vm_bTracking = true;
    const int nX = pEvent->position().toPoint().x();
    const quint64 nTime = TimeLine::s_F_n_At(nX, width());
    if (s_nDragX != -1 && std::abs(nX - s_nDragX) > TimeLine::DragThreshold && m_F_b_TakeTick()) {
        m_S_SelectTo(nTime);
        const QString sTimes =
            TimeLine::s_F_s_Clock(s_stSelect.nStart) + QStringLiteral(" - ") + TimeLine::s_F_s_Clock(s_stSelect.nEnd);
        QToolTip::showText(pEvent->globalPosition().toPoint(), sTimes, this);
    } else if (s_nViewAnchor != NoTime && m_F_b_TakeTick()) {
        s_nViewStart = std::min(s_nViewAnchor, nTime);
        s_nViewEnd = std::max(s_nViewAnchor, nTime);
        Q_EMIT S_ViewSpan();
    }
}

// A span of view-only bars goes on following the pointer: only a selection ends here.
void CTimeStateBar::mouseReleaseEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() != Qt::LeftButton)
        return;
    if (s_nDragX != -1) {
        m_S_SelectTo(TimeLine::s_F_n_At(pEvent->position().toPoint().x(), width()));
        s_nDragX = -1;
        s_nAnchor = s_nViewAnchor = NoTime;
    }
    if (s_stSelect.nEnd - s_stSelect.nStart > TimeLine::Minute)
        Q_EMIT S_Selected();
}

void CTimeStateBar::m_S_SelectTo(quint64 nTime)
{
    const quint64 nReached = std::max(std::min(nTime, s_nMaxTime), s_nMinTime);
    s_stSelect.nStart = std::min(s_nAnchor, nReached);
    s_stSelect.nEnd = std::max(s_nAnchor, nReached);
    m_S_Place(s_stSelect);
}

void CTimeStateBar::leaveEvent(QEvent* pEvent)
{
    vm_bTracking = false;
    QWidget::leaveEvent(pEvent);
}

void CTimeStateBar::resizeEvent(QResizeEvent*)
{
    m_S_PlaceAll();
}

void CTimeStateBar::paintEvent(QPaintEvent*)
{
    QPainter objPainter(this);
    CPixelPainter objPixels(&objPainter);
    objPixels.m_S_Fill(rect(), palette().color(QPalette::Base));
    if (s_nViewStart < s_nViewEnd) {
        const stDef_Rect stSpan = TimeLine::s_F_o_Place(s_nViewStart, s_nViewEnd, ClientOf(*this));
        objPixels.m_S_Fill(QRect(stSpan.left, 0, stSpan.m_F_n_Width(), height()), ColorOf(ViewSpanColor));
    }
    const int nCell = width() / TimeLine::CellCount;
    const QColor objLine = ColorOf(IsDark(palette()) ? CellColorOnDark : CellColor);
    if (nCell == 0) // all cells stand at the left edge
        return objPixels.m_S_Line({0, 0}, height(), objLine);
    for (int i = 0; i < TimeLine::CellCount; ++i)
        objPixels.m_S_Frame(QRect(i * nCell, 0, nCell, height()), objLine, objLine);
}

void CTimeStateBar::m_S_Renumber()
{
    for (int i = 0; i < vm_arState.size(); ++i) {
        vm_arState[i].pWnd->vm_nIndex = i;
        vm_arState[i].pWnd->vm_nColor = vm_arState[i].nColor;
    }
}

void CTimeStateBar::m_S_Place(const TIME_STATE& stState)
{
    stState.pWnd->setGeometry(ToRect(TimeLine::s_F_o_Place(stState.nStart, stState.nEnd, ClientOf(*this))));
}

void CTimeStateBar::m_S_PlaceAll()
{
    for (const TIME_STATE& st : vm_arState)
        m_S_Place(st);
    if (s_stSelect.pWnd && s_stSelect.pWnd->parentWidget() == this)
        m_S_Place(s_stSelect);
}

void CTimeStateBar::m_S_DragEdge(int nIndex, int nScreenX, bool (*fnSet)(QList<TIME_STATE>&, int, quint64))
{
    const int nX = mapFromGlobal(QPoint(nScreenX, 0)).x();
    m_S_Report(nIndex, fnSet(vm_arState, nIndex, TimeLine::s_F_n_At(nX, width())));
}

void CTimeStateBar::m_S_Report(int nIndex, bool bChanged)
{
    if (!bChanged)
        return;
    m_S_Place(vm_arState[nIndex]);
    vm_arState[nIndex].pWnd->setAccessibleName(m_F_s_Tell(nIndex));
    Q_EMIT S_Changed(nIndex, vm_nBarID);
}

bool CTimeStateBar::m_F_b_Key(const QKeyEvent& objKey)
{
    static constexpr struct
    {
        int nKey;
        qint64 nMinutes;
    } s_aSteps[] = {{Qt::Key_Left, -1}, {Qt::Key_Right, 1}, {Qt::Key_Down, -15}, {Qt::Key_Up, 15}};
    const Qt::KeyboardModifiers nModifiers = objKey.modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier);
    if (vm_bViewOnly)
        return false;
    if (nModifiers == Qt::NoModifier)
        return m_F_b_Choose(objKey.key());
    for (const auto& stStep : s_aSteps) {
        if (stStep.nKey == objKey.key())
            return m_F_b_ChangeByKey(nModifiers, stStep.nMinutes);
    }
    return false;
}

int CTimeStateBar::m_F_n_Focused() const
{
    return s_pFocusWnd && s_pFocusWnd->parentWidget() == this ? s_pFocusWnd->vm_nIndex : -1;
}

bool CTimeStateBar::m_F_b_Choose(int nKey)
{
    const int nFocused = m_F_n_Focused(), nLast = static_cast<int>(vm_arState.size()) - 1;
    int nChosen = 0;
    if (nKey == Qt::Key_End || (nKey == Qt::Key_Left && nFocused == -1))
        nChosen = nLast;
    else if (nKey == Qt::Key_Left)
        nChosen = nFocused - 1;
    else if (nKey == Qt::Key_Right)
        nChosen = nFocused + 1;
    else if (nKey != Qt::Key_Home)
        return false;
    if (nLast >= 0) {
        nChosen = std::clamp(nChosen, 0, nLast);
        CTimeStateWnd::s_S_Focus(vm_arState[nChosen].pWnd);
        Q_EMIT S_Changed(nChosen, vm_nBarID);
    }
    return true;
}

// An edge stops before the other one here: what the mouse draws across it is another matter.
bool CTimeStateBar::m_F_b_ChangeByKey(Qt::KeyboardModifiers nModifiers, qint64 nMinutes)
{
    if (nModifiers != Qt::ControlModifier && nModifiers != Qt::ShiftModifier && nModifiers != Qt::AltModifier)
        return false;
    const int nIndex = m_F_n_Focused();
    if (nIndex < 0)
        return true;
    const TIME_STATE& st = vm_arState.at(nIndex);
    const quint64 nFrom = nModifiers == Qt::ShiftModifier ? st.nEnd : st.nStart;
    const auto nTo = static_cast<quint64>(
        std::max<qint64>(static_cast<qint64>(nFrom) + nMinutes * static_cast<qint64>(TimeLine::Minute), 0));
    bool bChanged = false;
    if (nModifiers == Qt::ControlModifier)
        bChanged = TimeLine::s_F_b_Move(vm_arState, nIndex, nMinutes);
    else if (nModifiers == Qt::ShiftModifier)
        bChanged = nTo > st.nStart && TimeLine::s_F_b_SetEnd(vm_arState, nIndex, nTo);
    else
        bChanged = nTo < st.nEnd && TimeLine::s_F_b_SetStart(vm_arState, nIndex, nTo);
    CTimeStateWnd* const pWnd = vm_arState[nIndex].pWnd;
    m_S_Report(nIndex, bChanged);
    QToolTip::showText(pWnd->mapToGlobal(pWnd->rect().bottomRight()), m_F_s_Times(nIndex), pWnd);
    return true;
}
