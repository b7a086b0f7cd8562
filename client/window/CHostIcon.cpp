#include "window/CHostIcon.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>

namespace {

// All shapes are drawn in a square of 24 units.
void DrawConnect(QPainter& objPainter)
{
    QPainterPath objPath(QPointF(8, 5));
    objPath.lineTo(19, 12);
    objPath.lineTo(8, 19);
    objPath.closeSubpath();
    objPainter.fillPath(objPath, objPainter.pen().color());
}

void DrawDisconnect(QPainter& objPainter)
{
    objPainter.fillRect(QRectF(6.5, 6.5, 11, 11), objPainter.pen().color());
}

void DrawArrow(QPainter& objPainter, QPointF ptFrom, QPointF ptTo, qreal nHead)
{
    objPainter.drawLine(ptFrom, ptTo);
    objPainter.drawLine(ptTo, ptTo + QPointF(-nHead, -4));
    objPainter.drawLine(ptTo, ptTo + QPointF(-nHead, 4));
}

void DrawExchange(QPainter& objPainter)
{
    DrawArrow(objPainter, {4, 8}, {20, 8}, 4);
    DrawArrow(objPainter, {20, 16}, {4, 16}, -4);
}

void DrawFullScreen(QPainter& objPainter)
{
    for (const int nTurn : {0, 1, 2, 3}) {
        objPainter.save();
        objPainter.translate(12, 12);
        objPainter.rotate(90 * nTurn);
        objPainter.drawPolyline(QPolygonF({{-7, -2}, {-7, -7}, {-2, -7}}));
        objPainter.restore();
    }
}

void DrawSnapshot(QPainter& objPainter)
{
    objPainter.drawRoundedRect(QRectF(3, 7, 18, 13), 2, 2);
    objPainter.drawPolyline(QPolygonF({{8, 7}, {9.5, 4}, {14.5, 4}, {16, 7}}));
    objPainter.drawEllipse(QPointF(12, 13.5), 3.5, 3.5);
}

void DrawPrevious(QPainter& objPainter)
{
    objPainter.drawPolyline(QPolygonF({{14, 5}, {8, 12}, {14, 19}}));
}

void DrawNext(QPainter& objPainter)
{
    objPainter.drawPolyline(QPolygonF({{10, 5}, {16, 12}, {10, 19}}));
}

void DrawPtz(QPainter& objPainter)
{
    for (const int nTurn : {0, 1, 2, 3}) {
        objPainter.save();
        objPainter.translate(12, 12);
        objPainter.rotate(90 * nTurn);
        objPainter.drawPolyline(QPolygonF({{-3, -6.5}, {0, -9.5}, {3, -6.5}}));
        objPainter.restore();
    }
    objPainter.drawEllipse(QPointF(12, 12), 2.5, 2.5);
}

void DrawMinus(QPainter& objPainter)
{
    objPainter.drawLine(QPointF(6, 12), QPointF(18, 12));
}

void DrawPlus(QPainter& objPainter)
{
    DrawMinus(objPainter);
    objPainter.drawLine(QPointF(12, 6), QPointF(12, 18));
}

void DrawSettings(QPainter& objPainter)
{
    objPainter.drawEllipse(QPointF(12, 12), 5, 5);
    for (int nTooth = 0; nTooth < 8; ++nTooth) {
        objPainter.save();
        objPainter.translate(12, 12);
        objPainter.rotate(45 * nTooth);
        objPainter.drawLine(QPointF(0, -6.5), QPointF(0, -9));
        objPainter.restore();
    }
}

constexpr void (*g_apfnDraw[])(QPainter&) = {DrawConnect,  DrawDisconnect, DrawExchange, DrawFullScreen,
                                             DrawSnapshot, DrawPrevious,   DrawNext,     DrawPtz,
                                             DrawPlus,     DrawMinus,      DrawSettings};

class CDrawnIcon : public QIconEngine
{
public:
    explicit CDrawnIcon(emDef_HostIcon nIcon) : vm_nIcon(nIcon) {}

    QIconEngine* clone() const override { return new CDrawnIcon(vm_nIcon); }

    void paint(QPainter* pPainter, const QRect& rcTarget, QIcon::Mode nMode, QIcon::State) override
    {
        const QPalette::ColorGroup nGroup = nMode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const QColor objColour = QGuiApplication::palette().color(nGroup, QPalette::ButtonText);
        pPainter->save();
        pPainter->setRenderHint(QPainter::Antialiasing);
        pPainter->translate(rcTarget.topLeft());
        pPainter->scale(rcTarget.width() / 24.0, rcTarget.height() / 24.0);
        pPainter->setPen(QPen(objColour, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        g_apfnDraw[static_cast<std::size_t>(vm_nIcon)](*pPainter);
        pPainter->restore();
    }

    QPixmap pixmap(const QSize& szPixels, QIcon::Mode nMode, QIcon::State nState) override
    {
        QPixmap objPixmap(szPixels);
        objPixmap.fill(Qt::transparent);
        QPainter objPainter(&objPixmap);
        paint(&objPainter, QRect({}, szPixels), nMode, nState);
        return objPixmap;
    }

private:
    emDef_HostIcon vm_nIcon;
};

} // namespace

QIcon CHostIcon::s_F_o_Get(emDef_HostIcon nIcon)
{
    return nIcon == emDef_HostIcon::None ? QIcon() : QIcon(new CDrawnIcon(nIcon));
}
