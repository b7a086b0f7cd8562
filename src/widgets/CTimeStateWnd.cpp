#include "widgets/CTimeStateWnd.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QTextDocument>
#include <QToolTip>

#include "widgets/CPixelPainter.h"
#include "widgets/CTimeStateBar.h"
#include "widgets/TimeCursors.h"

namespace {

constexpr int GripWidth = 4;   // pixels of an edge that resize
constexpr int FramedWidth = 8; // pixels; only a wider block has a frame
constexpr int FocusInset = 2;  // pixels
constexpr int DragModeMove = 0;
constexpr int DragModeRight = 1;
constexpr int DragModeLeft = 2;

} // namespace

CTimeStateWnd::CTimeStateWnd(QWidget* pBar) : QLabel(pBar)
{
    setMouseTracking(true);
}

void CTimeStateWnd::s_S_Focus(CTimeStateWnd* pWnd)
{
    const QPointer<CTimeStateWnd> pBefore = std::exchange(CTimeStateBar::s_pFocusWnd, pWnd);
    for (CTimeStateWnd* const pBlock : {pBefore.data(), pWnd}) {
        if (pBlock)
            pBlock->update();
    }
    if (pWnd && QAccessible::isActive()) {
        QAccessibleEvent objFocus(pWnd, QAccessible::Focus); // keys stay with the list, the reader tells the block
        QAccessible::updateAccessibility(&objFocus);
    }
}

bool CTimeStateWnd::event(QEvent* pEvent)
{
    if (pEvent->type() != QEvent::ToolTip)
        return QLabel::event(pEvent);
    const QString sText = m_F_p_Bar()->m_F_s_Tell(vm_nIndex);
    const bool bLooksRich = Qt::mightBeRichText(sText);
    QToolTip::showText(static_cast<QHelpEvent*>(pEvent)->globalPos(),
                       bLooksRich ? Qt::convertFromPlainText(sText) : sText, this, rect());
    return true;
}

void CTimeStateWnd::mousePressEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() != Qt::LeftButton)
        return pEvent->ignore();
    m_S_ShowGrip(pEvent->position().toPoint().x());
    setCursor(TimeCursor(emDef_TimeCursor::Grab));
    vm_nDragX = pEvent->globalPosition().toPoint().x();
    s_S_Focus(this);
    Q_EMIT S_Clicked(vm_nIndex);
}

void CTimeStateWnd::mouseMoveEvent(QMouseEvent* pEvent)
{
    vm_bTracking = true;
    if (vm_nDragX == -1)
        return m_S_ShowGrip(pEvent->position().toPoint().x());
    const QPoint ptScreen = pEvent->globalPosition().toPoint();
    if (!m_F_b_IsFar(ptScreen.x()) || !m_F_p_Bar()->m_F_b_TakeTick())
        return;
    m_S_DragTo(ptScreen.x());
    QToolTip::showText(ptScreen, m_F_p_Bar()->m_F_s_Times(vm_nIndex), this);
}

// The last step is never too early: where the pointer lets go, the block stays.
void CTimeStateWnd::mouseReleaseEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() != Qt::LeftButton || vm_nDragX == -1)
        return;
    const int nScreenX = pEvent->globalPosition().toPoint().x();
    if (m_F_b_IsFar(nScreenX))
        m_S_DragTo(nScreenX);
    vm_nDragX = -1;
    m_S_ShowGrip(mapFromGlobal(pEvent->globalPosition()).toPoint().x());
}

void CTimeStateWnd::mouseDoubleClickEvent(QMouseEvent* pEvent)
{
    mousePressEvent(pEvent);
    vm_nDragX = -1;
    if (pEvent->button() == Qt::LeftButton)
        Q_EMIT S_DoubleClicked();
}

void CTimeStateWnd::leaveEvent(QEvent* pEvent)
{
    vm_bTracking = false;
    setCursor(Qt::ArrowCursor);
    QLabel::leaveEvent(pEvent);
}

void CTimeStateWnd::paintEvent(QPaintEvent*)
{
    QPainter objPainter(this);
    CPixelPainter objPixels(&objPainter);
    objPixels.m_S_Fill(rect(), ColorOf(vm_nColor));
    if (width() > FramedWidth)
        objPixels.m_S_Frame(rect(), Qt::white, Qt::black);
    if (CTimeStateBar::s_pFocusWnd != this || width() <= 2 * FocusInset)
        return;
    const QRect rcInset = rect().adjusted(FocusInset, FocusInset, -FocusInset, -FocusInset);
    objPainter.setPen(QPen(Qt::white, 1, Qt::DotLine)); // a pixel of the screen
    objPainter.drawRect(objPixels.m_F_o_Screen(rcInset).adjusted(0, 0, -1, -1));
}

// The parent at the moment: the selection block moves from bar to bar.
CTimeStateBar* CTimeStateWnd::m_F_p_Bar() const
{
    return static_cast<CTimeStateBar*>(parentWidget());
}

void CTimeStateWnd::m_S_ShowGrip(int nX)
{
    vm_nDragMode = DragModeMove;
    if (nX > width() - GripWidth)
        vm_nDragMode = DragModeRight;
    else if (nX < GripWidth)
        vm_nDragMode = DragModeLeft;
    setCursor(TimeCursor(vm_nDragMode == DragModeMove ? emDef_TimeCursor::Move : emDef_TimeCursor::Resize));
}

bool CTimeStateWnd::m_F_b_IsFar(int nScreenX) const
{
    return std::abs(nScreenX - vm_nDragX) > TimeLine::DragThreshold;
}

void CTimeStateWnd::m_S_DragTo(int nScreenX)
{
    if (vm_nDragMode == DragModeMove) {
        Q_EMIT S_Move(vm_nIndex, nScreenX - std::exchange(vm_nDragX, nScreenX));
        return;
    }
    setCursor(TimeCursor(emDef_TimeCursor::Drag));
    if (vm_nDragMode == DragModeRight)
        Q_EMIT S_DragRight(vm_nIndex, nScreenX);
    else
        Q_EMIT S_DragLeft(vm_nIndex, nScreenX);
}
