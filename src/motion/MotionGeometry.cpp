#include "motion/MotionGeometry.h"

#include <algorithm>

namespace {

constexpr int EdgeWidth = 3; // pixels, and the edge's own

bool IsNear(int nValue, int nEdge)
{
    return nValue >= nEdge - EdgeWidth && nValue <= nEdge;
}

bool IsFirst(int nValue)
{
    return nValue >= 0 && nValue <= EdgeWidth;
}

} // namespace

namespace nsMotionGeometry {

// The order counts: the first columns are body at every height, and the right edge has the corner.
emDef_Hit HitTest(const QPoint& pt, const QSize& szWindow)
{
    if (IsFirst(pt.x()))
        return emDef_Hit::Body;
    if (IsNear(pt.x(), szWindow.width()))
        return emDef_Hit::Right;
    if (IsFirst(pt.y()))
        return emDef_Hit::Body;
    return IsNear(pt.y(), szWindow.height()) ? emDef_Hit::Bottom : emDef_Hit::Body;
}

stDef_Rect Moved(const stDef_Rect& stDown, const QPoint& ptDown, const QPoint& ptMove, const stDef_Rect& stCanvas)
{
    const int nWidth = stDown.m_F_n_Width(), nHeight = stDown.m_F_n_Height();
    int nLeft = std::max(stDown.left - ptDown.x() + ptMove.x(), stCanvas.left);
    int nTop = std::max(stDown.top - ptDown.y() + ptMove.y(), stCanvas.top);
    nLeft = std::min(nLeft, stCanvas.right - nWidth);
    nTop = std::min(nTop, stCanvas.bottom - nHeight);
    return {nLeft, nTop, nLeft + nWidth, nTop + nHeight};
}

int Resized(int nLength, int nRoom)
{
    return std::min(std::max(nLength, 1), nRoom);
}

stDef_Rect Stepped(const stDef_Rect& stWindow, const QPoint& ptStep, const QSize& szCanvas)
{
    return Moved(stWindow, {}, ptStep, {0, 0, szCanvas.width(), szCanvas.height()});
}

stDef_Rect Grown(const stDef_Rect& stWindow, const QPoint& ptStep, const QSize& szCanvas)
{
    stDef_Rect st = stWindow;
    if (ptStep.x() != 0)
        st.right = st.left + Resized(st.m_F_n_Width() + ptStep.x(), szCanvas.width() - st.left);
    if (ptStep.y() != 0)
        st.bottom = st.top + Resized(st.m_F_n_Height() + ptStep.y(), szCanvas.height() - st.top);
    return st;
}

} // namespace nsMotionGeometry
