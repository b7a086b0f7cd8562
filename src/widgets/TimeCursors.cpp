#include "widgets/TimeCursors.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>

namespace {

constexpr int CursorSize = 32; ///< pixels; the hot spot is the middle

// An arrow from the middle to the right, its half above the axis; the other half mirrors it. It begins a little before
// the middle, so that arrows become one.
constexpr QPointF g_aArrow[] = {{-1, -1.5}, {6, -1.5}, {6, -5}, {11.5, 0}};

QPainterPath ArrowPath()
{
    QPainterPath path(g_aArrow[0]);
    for (const QPointF& pt : g_aArrow)
        path.lineTo(pt);
    for (int i = static_cast<int>(std::size(g_aArrow)) - 1; i >= 0; --i)
        path.lineTo(g_aArrow[i].x(), -g_aArrow[i].y());
    path.closeSubpath();
    return path;
}

// Two arrows for an edge, four for a block; what is held has a core in their middle.
QPainterPath CursorPath(emDef_TimeCursor nCursor)
{
    const bool bEdge = nCursor == emDef_TimeCursor::Resize || nCursor == emDef_TimeCursor::Drag;
    QPainterPath path;
    for (int nDegrees = 0; nDegrees < 360; nDegrees += bEdge ? 180 : 90)
        path = path.united(QTransform().rotate(nDegrees).map(ArrowPath()));
    QPainterPath pathCore;
    if (nCursor == emDef_TimeCursor::Grab)
        pathCore.addEllipse(QPointF(0, 0), 4.5, 4.5);
    else if (nCursor == emDef_TimeCursor::Drag)
        pathCore.addRect(-1.5, -10, 3, 20);
    return path.united(pathCore);
}

QCursor Draw(emDef_TimeCursor nCursor, qreal nRatio)
{
    QPixmap objPicture(QSize(CursorSize, CursorSize) * nRatio);
    objPicture.setDevicePixelRatio(nRatio);
    objPicture.fill(Qt::transparent);
    QPainter objPainter(&objPicture);
    objPainter.setRenderHint(QPainter::Antialiasing);
    objPainter.translate(CursorSize / 2.0, CursorSize / 2.0);
    objPainter.setPen(QPen(Qt::white, 1.5));
    objPainter.setBrush(Qt::black);
    objPainter.drawPath(CursorPath(nCursor));
    return QCursor(objPicture, CursorSize / 2, CursorSize / 2);
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
