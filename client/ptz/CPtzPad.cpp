#include "ptz/CPtzPad.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>
#include <QtMath>
#include <algorithm>
#include <cmath>
#include <utility>

#include "ptz/CPtzAction.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qreal HomePart = 0.36;  ///< radius of the home button, of the pad's
constexpr qreal ArrowPart = 0.70; ///< where the arrows stand
constexpr int Side = 184;

// Counterclockwise from the right, in steps of 45 degrees; up is positive.
constexpr QPoint g_aptDirections[] = {{1, 0}, {1, 1}, {0, 1}, {-1, 1}, {-1, 0}, {-1, -1}, {0, -1}, {1, -1}};

} // namespace

CPtzPad::CPtzPad(QWidget* pParent) : QWidget(pParent)
{
    setObjectName(u"PtzPad"_s);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setMinimumSize(Side, Side);
}

QSize CPtzPad::sizeHint() const
{
    return {Side, Side};
}

QRectF CPtzPad::m_F_o_Circle() const
{
    const qreal nDiameter = std::min(width(), height()) - 4.0;
    return QRectF((width() - nDiameter) / 2, (height() - nDiameter) / 2, nDiameter, nDiameter);
}

bool CPtzPad::m_F_b_InHome(QPointF pt) const
{
    const QPointF ptAway = pt - m_F_o_Circle().center();
    return std::hypot(ptAway.x(), ptAway.y()) <= m_F_o_Circle().width() / 2 * HomePart;
}

QPoint CPtzPad::m_F_o_Direction(QPointF pt) const
{
    const QPointF ptAway = pt - m_F_o_Circle().center();
    const int nEighth = qRound(qAtan2(-ptAway.y(), ptAway.x()) / M_PI_4);
    return g_aptDirections[(nEighth + 8) % 8];
}

// --- mouse

void CPtzPad::mousePressEvent(QMouseEvent* pEvent)
{
    const QPointF ptAway = pEvent->position() - m_F_o_Circle().center();
    if (pEvent->button() != Qt::LeftButton || std::hypot(ptAway.x(), ptAway.y()) > m_F_o_Circle().width() / 2)
        return;
    if (m_F_b_InHome(pEvent->position())) {
        vm_nPress = emDef_Press::Home;
    } else {
        vm_nPress = emDef_Press::Direction;
        vm_ptPressed = m_F_o_Direction(pEvent->position());
        Q_EMIT S_Direction(vm_ptPressed.x(), vm_ptPressed.y());
    }
    update();
}

void CPtzPad::mouseMoveEvent(QMouseEvent* pEvent)
{
    const QPoint ptDirection = m_F_o_Direction(pEvent->position());
    const bool bHome = m_F_b_InHome(pEvent->position());
    if (vm_nPress != emDef_Press::Direction)
        return m_S_SetHover(ptDirection, bHome);
    if (!bHome && std::exchange(vm_ptPressed, ptDirection) != ptDirection)
        Q_EMIT S_Direction(ptDirection.x(), ptDirection.y());
}

void CPtzPad::mouseReleaseEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() != Qt::LeftButton)
        return;
    const emDef_Press nPress = std::exchange(vm_nPress, emDef_Press::None);
    update();
    if (nPress == emDef_Press::Direction)
        Q_EMIT S_Direction(0, 0);
    else if (nPress == emDef_Press::Home && m_F_b_InHome(pEvent->position()))
        Q_EMIT S_Home();
}

void CPtzPad::leaveEvent(QEvent*)
{
    m_S_SetHover({}, false);
}

void CPtzPad::m_S_Reset()
{
    vm_nPress = emDef_Press::None;
    update();
}

void CPtzPad::m_S_SetLit(int nPan, int nTilt)
{
    vm_ptLit = {nPan, nTilt};
    update();
}

void CPtzPad::m_S_SetHover(const QPoint& ptDirection, bool bHome)
{
    vm_ptHover = bHome ? QPoint() : ptDirection;
    vm_bHoverHome = bHome;
    update();
}

bool CPtzPad::event(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::ToolTip) {
        const auto* const pHelp = static_cast<QHelpEvent*>(pEvent);
        const QPoint ptDirection = m_F_b_InHome(pHelp->pos()) ? QPoint() : m_F_o_Direction(pHelp->pos());
        const stDef_PtzAction* const pAction = CPtzAction::s_F_p_OfDirection(ptDirection.x(), ptDirection.y());
        QToolTip::showText(pHelp->globalPos(), CPtzAction::s_F_s_Tip(*pAction), this);
        return true;
    }
    if (pEvent->type() == QEvent::EnabledChange)
        m_S_Reset();
    return QWidget::event(pEvent);
}

// --- picture

void CPtzPad::paintEvent(QPaintEvent*)
{
    QPainter objPainter(this);
    objPainter.setRenderHint(QPainter::Antialiasing);
    const QRectF rcCircle = m_F_o_Circle();
    const QPalette::ColorGroup nGroup = isEnabled() ? QPalette::Active : QPalette::Disabled;
    objPainter.setPen(
        QPen(palette().color(nGroup, hasFocus() ? QPalette::Highlight : QPalette::Mid), hasFocus() ? 2 : 1));
    objPainter.setBrush(palette().color(nGroup, QPalette::Button));
    objPainter.drawEllipse(rcCircle);
    for (int nEighth = 0; nEighth < 8; ++nEighth)
        m_S_PaintArrow(objPainter, nEighth);
    m_S_PaintHome(objPainter);
}

void CPtzPad::m_S_PaintArrow(QPainter& objPainter, int nEighth) const
{
    const QRectF rcCircle = m_F_o_Circle();
    const QPoint ptDirection = g_aptDirections[nEighth];
    const bool bLit = isEnabled() && ptDirection == vm_ptLit;
    const bool bHover = isEnabled() && ptDirection == vm_ptHover;
    const qreal nRadius = rcCircle.width() / 2;
    if (bLit || bHover) {
        QPainterPath objSector(rcCircle.center());
        objSector.arcTo(rcCircle.adjusted(2, 2, -2, -2), 45 * nEighth - 22.5, 45);
        objSector.closeSubpath();
        QColor objColour = palette().color(QPalette::Highlight);
        objColour.setAlpha(bLit ? 255 : 60);
        objPainter.fillPath(objSector, objColour);
    }
    const QPalette::ColorGroup nGroup = isEnabled() ? QPalette::Active : QPalette::Disabled;
    const QColor objInk = palette().color(nGroup, bLit ? QPalette::HighlightedText : QPalette::ButtonText);
    const bool bDiagonal = nEighth % 2 != 0;
    const qreal nSize = nRadius * (bDiagonal ? 0.09 : 0.12);
    objPainter.save();
    objPainter.translate(rcCircle.center());
    objPainter.rotate(-45.0 * nEighth);
    objPainter.translate(nRadius * ArrowPart, 0);
    objPainter.setPen(Qt::NoPen);
    objPainter.setBrush(objInk);
    objPainter.drawPolygon(QPolygonF({{-nSize * 0.6, -nSize}, {nSize, 0}, {-nSize * 0.6, nSize}}));
    objPainter.restore();
}

void CPtzPad::m_S_PaintHome(QPainter& objPainter) const
{
    const QRectF rcCircle = m_F_o_Circle();
    const qreal nRadius = rcCircle.width() / 2 * HomePart;
    const bool bPressed = vm_nPress == emDef_Press::Home;
    const QPalette::ColorGroup nGroup = isEnabled() ? QPalette::Active : QPalette::Disabled;
    objPainter.setPen(QPen(palette().color(nGroup, QPalette::Mid), 1));
    objPainter.setBrush(palette().color(nGroup, bPressed ? QPalette::Highlight : QPalette::Window));
    objPainter.drawEllipse(rcCircle.center(), nRadius, nRadius);
    if (isEnabled() && vm_bHoverHome && !bPressed) {
        QColor objColour = palette().color(QPalette::Highlight);
        objColour.setAlpha(60);
        objPainter.setBrush(objColour);
        objPainter.drawEllipse(rcCircle.center(), nRadius, nRadius);
    }
    const QColor objInk = palette().color(nGroup, bPressed ? QPalette::HighlightedText : QPalette::WindowText);
    const qreal nUnit = nRadius / 12; // a house in a square of 24 units
    objPainter.save();
    objPainter.translate(rcCircle.center());
    objPainter.scale(nUnit, nUnit);
    objPainter.setBrush(Qt::NoBrush);
    objPainter.setPen(QPen(objInk, 1.3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    objPainter.drawPolyline(QPolygonF({{-6, 0}, {0, -5.5}, {6, 0}}));
    objPainter.drawPolyline(QPolygonF({{-4.2, -1}, {-4.2, 5}, {4.2, 5}, {4.2, -1}}));
    objPainter.restore();
}
