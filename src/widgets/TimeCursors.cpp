#include "widgets/TimeCursors.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>

namespace {

constexpr int CursorSize = 32;     ///< pixels
constexpr int HotX = 16, HotY = 9; ///< what a cursor points with; its drawing has its origin there
constexpr qreal ArrowEnd = 11.5;

// An arrow to the right, which begins so far from the hot spot.
QPainterPath ArrowPath(qreal dBegin)
{
    const QPointF aHalf[] = {{dBegin, -1.5}, {6, -1.5}, {6, -5}, {ArrowEnd, 0}};
    QPainterPath path(aHalf[0]);
    for (const QPointF& pt : aHalf)
        path.lineTo(pt);
    for (int i = static_cast<int>(std::size(aHalf)) - 1; i >= 0; --i)
        path.lineTo(aHalf[i].x(), -aHalf[i].y());
    path.closeSubpath();
    return path;
}

// To both sides. That of an edge that isn't held yet has the edge's two sides in its middle.
QPainterPath EdgePath(bool bHeld)
{
    const QPainterPath pathArrow = ArrowPath(bHeld ? -1 : 4);
    QPainterPath path = pathArrow.united(QTransform().rotate(180).map(pathArrow));
    for (const qreal dLeft : {-2.5, 1.0}) {
        if (!bHeld)
            path.addRect(dLeft, -7, 1.5, 14);
    }
    return path;
}

constexpr qreal FingerWidth = 3.5;
constexpr qreal Knuckles = 5; // where the palm begins

// Four fingers over a palm, and a thumb at its left; a closed hand has its fingers bent.
QPainterPath HandPath(bool bClosed)
{
    constexpr qreal Tops[] = {-5, -7.5, -7, -5}, ClosedTops[] = {0, -1, -1, 0};
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addRoundedRect(QRectF(-7, Knuckles - 1, 14, 14), 4, 4);
    path.addRoundedRect(bClosed ? QRectF(-9, 5, 5, 5) : QRectF(-11, 4, 6, 9), 2.5, 2.5);
    for (int i = 0; i < 4; ++i) {
        const qreal dTop = (bClosed ? ClosedTops : Tops)[i];
        path.addRoundedRect(QRectF((i - 2) * FingerWidth, dTop, FingerWidth, 10 - dTop), 1.7, 1.7);
    }
    return path.simplified();
}

void DrawHand(QPainter& objPainter, bool bClosed)
{
    objPainter.setPen(QPen(Qt::black, 1));
    objPainter.setBrush(Qt::white);
    objPainter.drawPath(HandPath(bClosed));
    for (int i = -1; i <= 1; ++i) // between the fingers
        objPainter.drawLine(QPointF(i * FingerWidth, bClosed ? 1 : -4), QPointF(i * FingerWidth, Knuckles));
}

void DrawEdge(QPainter& objPainter, bool bHeld)
{
    const QPainterPath path = EdgePath(bHeld);
    objPainter.strokePath(path, QPen(Qt::white, 2)); // half of it lies within, under the black
    objPainter.fillPath(path, Qt::black);
}

QCursor Draw(emDef_TimeCursor nCursor, qreal nRatio)
{
    QPixmap objPicture(QSize(CursorSize, CursorSize) * nRatio);
    objPicture.setDevicePixelRatio(nRatio);
    objPicture.fill(Qt::transparent);
    QPainter objPainter(&objPicture);
    objPainter.setRenderHint(QPainter::Antialiasing);
    objPainter.translate(HotX, HotY);
    if (nCursor == emDef_TimeCursor::Move || nCursor == emDef_TimeCursor::Grab)
        DrawHand(objPainter, nCursor == emDef_TimeCursor::Grab);
    else
        DrawEdge(objPainter, nCursor == emDef_TimeCursor::Drag);
    return QCursor(objPicture, HotX, HotY);
}

} // namespace

QCursor TimeCursor(emDef_TimeCursor nCursor)
{
    // Kept, because a pointer that moves over a block asks at each step.
    static QHash<emDef_TimeCursor, QCursor> s_mapCursors;
    if (!s_mapCursors.contains(nCursor))
        s_mapCursors.insert(nCursor, Draw(nCursor, qGuiApp->devicePixelRatio()));
    return s_mapCursors[nCursor];
}
