#include "motion/CMotionWnd.h"

#include <QMouseEvent>
#include <QPainter>
#include <cstdlib>

#include "motion/MotionGeometry.h"
#include "toolkit/user/CUserSide.h"
#include "widgets/TimeCursors.h"

using namespace nsMotionGeometry;

namespace {

constexpr int MoveMs = 100;
constexpr int DeadZone = 3;            // pixels around the press in which nothing is resized
constexpr int FrameWidth = 3;          // pixels
constexpr int BlendAlpha = 100;        // of 255
constexpr int Step = 1, LongStep = 10; // pixels of an arrow key

stDef_Rect RectOf(const QRect& rc)
{
    return {rc.x(), rc.y(), rc.x() + rc.width(), rc.y() + rc.height()};
}

QPoint StepOf(int nKey)
{
    switch (nKey) {
    case Qt::Key_Left:
        return {-1, 0};
    case Qt::Key_Right:
        return {1, 0};
    case Qt::Key_Up:
        return {0, -1};
    case Qt::Key_Down:
        return {0, 1};
    default:
        return {};
    }
}

} // namespace

CMotionWnd::CMotionWnd(QWidget* pParent) : QWidget(pParent)
{
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
}

bool CMotionWnd::m_F_b_Create(const stDef_Rect& stRect, int nID)
{
    vm_nID = nID;
    vm_rcInit = stRect;
    setProperty("id", nID);
    setObjectName(QStringLiteral("MotionWnd%1").arg(nID));
    setGeometry(stRect.left, stRect.top, stRect.m_F_n_Width(), stRect.m_F_n_Height());
    show();
    return true;
}

stDef_Rect CMotionWnd::m_F_o_Rect() const
{
    return RectOf(geometry());
}

void CMotionWnd::m_S_DrawOn(QPainter& objSurface) const
{
    const auto Blended = [](QColor objColor) {
        objColor.setAlpha(BlendAlpha);
        return objColor;
    };
    const QColor objFrame = vm_bSelected ? QColor(255, 255, 0) : vm_bChecked ? QColor(0, 0, 255) : QColor(0, 128, 0);
    const QRect rcBody = geometry().adjusted(FrameWidth, FrameWidth, -FrameWidth, -FrameWidth);
    // The frame is what the body doesn't cover: each point is blended once.
    const QRegion objRing = rcBody.isEmpty() ? QRegion(geometry()) : QRegion(geometry()).subtracted(rcBody);
    for (const QRect& rc : objRing)
        objSurface.fillRect(rc, Blended(objFrame));
    if (!rcBody.isEmpty())
        objSurface.fillRect(rcBody, Blended(vm_bMotion ? QColor(255, 0, 0) : QColor(0, 255, 0)));
}

void CMotionWnd::m_S_ShowGrip(const QPoint& pt)
{
    const emDef_Hit nHit = HitTest(pt, size());
    setCursor(nHit == emDef_Hit::Right    ? QCursor(Qt::SizeHorCursor)
              : nHit == emDef_Hit::Bottom ? QCursor(Qt::SizeVerCursor)
                                          : TimeCursor(emDef_TimeCursor::Move));
}

void CMotionWnd::mousePressEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() != Qt::LeftButton)
        return pEvent->ignore();
    Q_EMIT S_Pressed(vm_nID);
    const QPoint ptClient = pEvent->position().toPoint();
    vm_rcDown = RectOf({mapToGlobal(QPoint()), size()});
    vm_nDownW = width();
    vm_nDownH = height();
    const emDef_Hit nHit = HitTest(ptClient, size());
    if (nHit == emDef_Hit::Body)
        m_S_BeginMove(pEvent->globalPosition().toPoint());
    else
        m_S_BeginResize(nHit == emDef_Hit::Right ? emDef_Edge::Right : emDef_Edge::Bottom, ptClient);
}

void CMotionWnd::m_S_BeginMove(const QPoint& ptScreen)
{
    vm_ptDown = vm_ptMove = vm_ptMoved = ptScreen;
    vm_nDragMode = emDef_Drag::Move;
    vm_nEdge = emDef_Edge::None;
    setCursor(TimeCursor(emDef_TimeCursor::Grab));
    vm_pTimer = std::make_unique<QObject>();
    m_S_AwaitStep();
}

void CMotionWnd::m_S_BeginResize(emDef_Edge nEdge, const QPoint& ptClient)
{
    vm_nEdge = nEdge;
    vm_ptDown = ptClient;
    vm_nDragMode = emDef_Drag::Resize;
    setCursor(nEdge == emDef_Edge::Right ? Qt::SizeHorCursor : Qt::SizeVerCursor);
}

void CMotionWnd::mouseMoveEvent(QMouseEvent* pEvent)
{
    if (vm_nDragMode == emDef_Drag::Move)
        vm_ptMove = pEvent->globalPosition().toPoint();
    else if (vm_nDragMode == emDef_Drag::Resize)
        m_S_ResizeTo(pEvent->position().toPoint());
    else
        m_S_ShowGrip(pEvent->position().toPoint());
}

// A window moves to the newest place of the pointer ten times a second; at the release it stays where the last step
// brought it.
void CMotionWnd::m_S_AwaitStep()
{
    CUserSide::s_F_o_Get().m_S_After(MoveMs, vm_pTimer.get(), [this] {
        m_S_Step();
        m_S_AwaitStep();
    });
}

void CMotionWnd::m_S_Step()
{
    if (vm_ptMove == vm_ptMoved)
        return;
    vm_ptMoved = vm_ptMove;
    const stDef_Rect stCanvas = m_F_o_CanvasOnScreen();
    const stDef_Rect st = Moved(vm_rcDown, vm_ptDown, vm_ptMove, stCanvas);
    const int nLeft = st.left - stCanvas.left, nTop = st.top - stCanvas.top;
    m_S_Place({nLeft, nTop, nLeft + vm_nDownW, nTop + vm_nDownH});
}

// The size follows from where the pointer is, not from how far it went. The dead zone lies around the press, not around
// the last place.
void CMotionWnd::m_S_ResizeTo(const QPoint& ptClient)
{
    stDef_Rect st = m_F_o_Rect();
    const QSize szCanvas = parentWidget()->size();
    if (vm_nEdge == emDef_Edge::Right) {
        if (std::abs(ptClient.x() - vm_ptDown.x()) < DeadZone)
            return;
        st.right = st.left + Resized(ptClient.x(), szCanvas.width() - st.left);
        st.bottom = st.top + vm_nDownH;
    } else if (vm_nEdge == emDef_Edge::Bottom) {
        if (std::abs(ptClient.y() - vm_ptDown.y()) < DeadZone)
            return;
        st.bottom = st.top + Resized(ptClient.y(), szCanvas.height() - st.top);
        st.right = st.left + vm_nDownW;
    }
    m_S_Place(st);
}

void CMotionWnd::mouseReleaseEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() == Qt::LeftButton)
        m_S_EndDrag();
}

void CMotionWnd::m_S_EndDrag()
{
    vm_ptDown = {-1, -1};
    vm_nDragMode = emDef_Drag::Idle;
    vm_nEdge = emDef_Edge::None;
    setCursor(Qt::ArrowCursor);
    vm_pTimer.reset();
}

// The second press of a double click is none of its own: it neither selects nor drags.
void CMotionWnd::mouseDoubleClickEvent(QMouseEvent*) {}

void CMotionWnd::keyPressEvent(QKeyEvent* pEvent)
{
    const QPoint ptStep = StepOf(pEvent->key());
    if (ptStep.isNull() || vm_nDragMode != emDef_Drag::Idle)
        return QWidget::keyPressEvent(pEvent);
    const int nPixels = pEvent->modifiers() & Qt::ControlModifier ? LongStep : Step;
    const bool bSize = pEvent->modifiers() & Qt::ShiftModifier;
    m_S_Place((bSize ? Grown : Stepped)(m_F_o_Rect(), ptStep * nPixels, parentWidget()->size()));
}

// By the mouse the press tells it.
void CMotionWnd::focusInEvent(QFocusEvent* pEvent)
{
    QWidget::focusInEvent(pEvent);
    if (pEvent->reason() == Qt::TabFocusReason || pEvent->reason() == Qt::BacktabFocusReason)
        Q_EMIT S_Pressed(vm_nID);
}

void CMotionWnd::m_S_Place(const stDef_Rect& stRect)
{
    setGeometry(stRect.left, stRect.top, stRect.m_F_n_Width(), stRect.m_F_n_Height());
    raise();
    Q_EMIT S_Placed(vm_nID);
}

stDef_Rect CMotionWnd::m_F_o_CanvasOnScreen() const
{
    return RectOf({parentWidget()->mapToGlobal(QPoint()), parentWidget()->size()});
}
