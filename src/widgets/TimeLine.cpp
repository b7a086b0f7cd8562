#include "widgets/TimeLine.h"

#include <algorithm>

namespace TimeLine {

namespace {

// Signed, so that a block pushed beyond midnight is seen as such.
struct stDef_Span
{
    qint64 nStart;
    qint64 nEnd;
};

constexpr qint64 MinuteStep = Minute;

bool IsValid(const QList<TIME_STATE>& arStates, int nIndex)
{
    return nIndex >= 0 && nIndex < arStates.size();
}

stDef_Span SpanOf(const TIME_STATE& stState)
{
    return {static_cast<qint64>(stState.nStart), static_cast<qint64>(stState.nEnd)};
}

// What neighbours and day leave to a block.
stDef_Span RoomOf(const QList<TIME_STATE>& arStates, int nIndex)
{
    stDef_Span stRoom{0, LastTime};
    if (nIndex > 0)
        stRoom.nStart = std::max(stRoom.nStart, SpanOf(arStates[nIndex - 1]).nEnd + MinuteStep);
    if (nIndex + 1 < arStates.size())
        stRoom.nEnd = std::min(stRoom.nEnd, SpanOf(arStates[nIndex + 1]).nStart - MinuteStep);
    return stRoom;
}

bool Store(QList<TIME_STATE>& arStates, int nIndex, stDef_Span stSpan)
{
    const stDef_Span stRoom = RoomOf(arStates, nIndex);
    stSpan = {std::max(stSpan.nStart, stRoom.nStart), std::min(stSpan.nEnd, stRoom.nEnd)};
    if (stSpan.nEnd - stSpan.nStart < MinuteStep)
        return false;
    const stDef_Span stBefore = SpanOf(arStates[nIndex]);
    arStates[nIndex].nStart = static_cast<quint64>(stSpan.nStart);
    arStates[nIndex].nEnd = static_cast<quint64>(stSpan.nEnd);
    return stBefore.nStart != stSpan.nStart || stBefore.nEnd != stSpan.nEnd;
}

} // namespace

quint64 s_F_n_WholeMinute(quint64 nTime)
{
    return nTime / Minute * Minute;
}

quint64 s_F_n_At(int nX, int nWidth)
{
    if (nWidth <= 0)
        return 0;
    const auto nPixel = static_cast<quint64>(std::clamp(nX, 0, nWidth));
    return std::min(s_F_n_WholeMinute(nPixel * Day / static_cast<quint64>(nWidth)), LastTime);
}

qint64 s_F_n_Minutes(int nPixels, int nWidth)
{
    return nWidth <= 0 ? 0 : nPixels * static_cast<qint64>(Day) / nWidth / MinuteStep;
}

stDef_Rect s_F_o_Place(quint64 nStart, quint64 nEnd, const stDef_Rect& stBar)
{
    const int nTop = stBar.top + (stBar.m_F_n_Height() - BlockHeight) / 2;
    stDef_Rect stPlace{stBar.left, nTop, stBar.left, nTop + BlockHeight};
    if (nStart > Day)
        return stPlace;
    const auto nWidth = static_cast<quint64>(std::max(stBar.m_F_n_Width(), 0));
    const quint64 nLength = std::max(std::min(nEnd, Day), nStart) - nStart;
    stPlace.left += static_cast<int>(nStart * nWidth / Day);
    stPlace.right = stPlace.left + std::max(static_cast<int>(nLength * nWidth / Day), 1);
    return stPlace;
}

QString s_F_s_Clock(quint64 nTime)
{
    const quint64 nMinutes = nTime / Minute;
    return QStringLiteral("%1:%2").arg(nMinutes / 60, 2, 10, QChar(u'0')).arg(nMinutes % 60, 2, 10, QChar(u'0'));
}

int s_F_n_PositionFor(const QList<TIME_STATE>& arStates, quint64 nStart, quint64 nEnd)
{
    for (const TIME_STATE& st : arStates) {
        const bool bStartsWithin = st.nStart < nStart && nStart < st.nEnd;
        const bool bEndsWithin = st.nStart < nEnd && nEnd < st.nEnd;
        const bool bContains = nStart < st.nStart && st.nEnd < nEnd;
        if (bStartsWithin || bEndsWithin || bContains)
            return -1;
        if (nEnd < st.nStart)
            break;
    }
    const auto itNext = std::upper_bound(arStates.begin(), arStates.end(), s_F_n_WholeMinute(nStart),
                                         [](quint64 nTime, const TIME_STATE& st) { return nTime < st.nStart; });
    return static_cast<int>(itNext - arStates.begin());
}

stDef_Reach s_F_o_Reach(const QList<TIME_STATE>& arStates, quint64 nTime)
{
    stDef_Reach stReach;
    for (const TIME_STATE& st : arStates) {
        if (st.nStart <= nTime && nTime <= st.nEnd)
            return {.bFree = false};
        if (nTime < st.nStart && stReach.nMax == NoTime)
            stReach.nMax = st.nStart - Minute;
        if (st.nEnd <= nTime)
            stReach.nMin = st.nEnd + Minute;
    }
    return stReach;
}

bool s_F_b_Move(QList<TIME_STATE>& arStates, int nIndex, qint64 nMinutes)
{
    if (!IsValid(arStates, nIndex) || nMinutes == 0)
        return false;
    const stDef_Span stRoom = RoomOf(arStates, nIndex);
    stDef_Span stSpan = SpanOf(arStates[nIndex]);
    const qint64 nLength = stSpan.nEnd - stSpan.nStart;
    if (nMinutes > 0) {
        stSpan.nEnd = std::min(stSpan.nEnd + nMinutes * MinuteStep, stRoom.nEnd);
        stSpan.nStart = stSpan.nEnd - nLength;
    } else {
        stSpan.nStart = std::max(stSpan.nStart + nMinutes * MinuteStep, stRoom.nStart);
        stSpan.nEnd = stSpan.nStart + nLength;
    }
    return Store(arStates, nIndex, stSpan);
}

bool s_F_b_SetStart(QList<TIME_STATE>& arStates, int nIndex, quint64 nTime)
{
    if (!IsValid(arStates, nIndex))
        return false;
    stDef_Span stSpan = SpanOf(arStates[nIndex]);
    stSpan.nStart = static_cast<qint64>(s_F_n_WholeMinute(nTime));
    if (stSpan.nEnd <= stSpan.nStart)
        stSpan.nStart = stSpan.nEnd - static_cast<qint64>(ResizedLength);
    return Store(arStates, nIndex, stSpan);
}

bool s_F_b_SetEnd(QList<TIME_STATE>& arStates, int nIndex, quint64 nTime)
{
    if (!IsValid(arStates, nIndex))
        return false;
    stDef_Span stSpan = SpanOf(arStates[nIndex]);
    stSpan.nEnd = static_cast<qint64>(s_F_n_WholeMinute(nTime));
    if (stSpan.nEnd <= stSpan.nStart)
        stSpan.nEnd = stSpan.nStart + static_cast<qint64>(ResizedLength);
    return Store(arStates, nIndex, stSpan);
}

} // namespace TimeLine
