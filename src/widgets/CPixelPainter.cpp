#include "widgets/CPixelPainter.h"

#include <algorithm>

// What a widget is painted into may have another scale than the widget: the transformation knows it.
CPixelPainter::CPixelPainter(QPainter* pPainter)
    : vm_pPainter(pPainter),
      vm_objToScreen(pPainter->deviceTransform()),
      vm_nLine(std::max(static_cast<int>(vm_objToScreen.m11()), 1))
{
    vm_pPainter->save();
    vm_pPainter->setWorldTransform(vm_objToScreen.inverted(), true);
}

QRect CPixelPainter::m_F_o_Screen(const QRectF& rcWindow) const
{
    const QRectF rcScreen = vm_objToScreen.mapRect(rcWindow);
    return {QPoint(qRound(rcScreen.left()), qRound(rcScreen.top())),
            QPoint(qRound(rcScreen.right()) - 1, qRound(rcScreen.bottom()) - 1)};
}

void CPixelPainter::m_S_Fill(const QRectF& rcWindow, const QColor& objColor)
{
    vm_pPainter->fillRect(m_F_o_Screen(rcWindow), objColor);
}

void CPixelPainter::m_S_Line(const QPointF& ptTop, qreal nHeight, const QColor& objColor)
{
    QRect rc = m_F_o_Screen({ptTop, QSizeF(0, nHeight)});
    rc.setWidth(vm_nLine);
    vm_pPainter->fillRect(rc, objColor);
}

void CPixelPainter::m_S_Frame(const QRectF& rcWindow, const QColor& objTopLeft, const QColor& objBottomRight)
{
    const QRect rc = m_F_o_Screen(rcWindow);
    vm_pPainter->fillRect(rc.left(), rc.top(), rc.width(), vm_nLine, objTopLeft);
    vm_pPainter->fillRect(rc.left(), rc.top(), vm_nLine, rc.height(), objTopLeft);
    vm_pPainter->fillRect(rc.left(), rc.top() + rc.height() - vm_nLine, rc.width(), vm_nLine, objBottomRight);
    vm_pPainter->fillRect(rc.left() + rc.width() - vm_nLine, rc.top(), vm_nLine, rc.height(), objBottomRight);
}
