#pragma once

#include <QCursor>

/// The cursors of blocks on a time bar.
enum class emDef_TimeCursor
{
    Move,   ///< over a block
    Grab,   ///< while it is pressed or moved
    Resize, ///< over an edge
    Drag    ///< while the edge is dragged
};

/// GUI thread only.
QCursor TimeCursor(emDef_TimeCursor nCursor);
