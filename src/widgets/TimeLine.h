#pragma once

#include <QList>
#include <QPointer>
#include <QString>

#include "host/Platform.h"

class CTimeStateWnd;

/// One block of a bar that stands for a day. Times are milliseconds since the start of the day.
struct TIME_STATE
{
    QPointer<CTimeStateWnd> pWnd; ///< its window, which the bar owns
    quint64 nStart = 0;
    quint64 nEnd = 0;
    quint32 nColor = 0xFFFFFF; ///< red in the low byte
};

/// The arithmetic of a day on a bar: between pixels and times, and what a change may do to a block that has neighbours.
/// Blocks are sorted by their start. It knows no window; any thread.
namespace TimeLine {

constexpr quint64 Minute = 60'000;
constexpr quint64 Day = 86'400'000;
constexpr quint64 LastTime = Day - Minute;     ///< 23:59, the last time that can be chosen
constexpr quint64 ResizedLength = 10 * Minute; ///< what an edge leaves that was drawn across the other one
constexpr quint64 NoTime = ~static_cast<quint64>(0);
constexpr int DragThreshold = 5; ///< pixels that the pointer has to pass
constexpr int BlockHeight = 14;  ///< pixels
constexpr int CellCount = 96;    ///< of 15 minutes

/// Where a selection that begins at some time may reach.
struct stDef_Reach
{
    bool bFree = true; ///< false: a block stands there, and no selection begins
    quint64 nMin = 0;
    quint64 nMax = NoTime;
};

quint64 s_F_n_WholeMinute(quint64 nTime); ///< cut down
/// The whole minute at pixel `nX` of a bar. Beyond an edge the edge counts, and the right one is 23:59.
quint64 s_F_n_At(int nX, int nWidth);
/// Whole minutes that a way of so many pixels stands for, with its sign.
qint64 s_F_n_Minutes(int nPixels, int nWidth);
/// Where a block stands on a bar, at least a pixel wide; a start beyond the day has no width.
stDef_Rect s_F_o_Place(quint64 nStart, quint64 nEnd, const stDef_Rect& stBar);
/// "08:15", for times below 100 hours
QString s_F_s_Clock(quint64 nTime);

/// Position at which a new block keeps the order, or -1 if it would reach into another one. Blocks may touch.
int s_F_n_PositionFor(const QList<TIME_STATE>& arStates, quint64 nStart, quint64 nEnd);
stDef_Reach s_F_o_Reach(const QList<TIME_STATE>& arStates, quint64 nTime);

/// Changes of a block. Neighbours keep a minute between them, and a block stays within 00:00 and 23:59. A change that
/// would leave less than a minute of it does nothing. True if the block changed.
bool s_F_b_Move(QList<TIME_STATE>& arStates, int nIndex, qint64 nMinutes);
bool s_F_b_SetStart(QList<TIME_STATE>& arStates, int nIndex, quint64 nTime);
bool s_F_b_SetEnd(QList<TIME_STATE>& arStates, int nIndex, quint64 nTime);

} // namespace TimeLine
