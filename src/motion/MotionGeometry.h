#pragma once

#include <QPoint>
#include <QSize>

#include "host/Lib_Bedrock.h"

/// Where motion windows stand on their canvas, and what a drag or a key makes of them: arithmetic that knows no widget.
/// All lengths are canvas pixels, which are units of the recorder's grid.
namespace nsMotionGeometry {

/// What a pointer is over. A window can't be resized by its left or top edge.
enum class emDef_Hit
{
    Body,
    Right,
    Bottom
};

/// The point is within a window of that size.
emDef_Hit HitTest(const QPoint& pt, const QSize& szWindow);

/// Where a window that was pressed at `ptDown` stands when the pointer is at `ptMove`; all in one system of
/// coordinates. It stays within the canvas; one that is larger than the canvas is held at the right and bottom sides.
stDef_Rect Moved(const stDef_Rect& stDown, const QPoint& ptDown, const QPoint& ptMove, const stDef_Rect& stCanvas);
/// A length that an edge was dragged or stepped to, from 1 up to `nRoom`, which goes first.
int Resized(int nLength, int nRoom);

/// A step by a key: of the place, or of the size with the left and top edges where they are.
stDef_Rect Stepped(const stDef_Rect& stWindow, const QPoint& ptStep, const QSize& szCanvas);
stDef_Rect Grown(const stDef_Rect& stWindow, const QPoint& ptStep, const QSize& szCanvas);

} // namespace nsMotionGeometry
