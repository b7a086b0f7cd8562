#include "widgets/CTimeRuler.h"

#include <algorithm>

#include "widgets/CPixelPainter.h"
#include "widgets/TimeLine.h"

namespace {

constexpr int BarSection = 1;
constexpr int CellsPerHour = 4;
constexpr int HoursPerDay = TimeLine::CellCount / CellsPerHour;
constexpr int NumberGap = 2; // pixels between two numbers
constexpr int g_anHourSteps[] = {1, 2, 3, 4, 6, 12, 24};

// At exact parts of the width, as blocks stand, so that they can be read against it.
qreal TickLeft(const QRect& rcSection, int nTick)
{
    return rcSection.left() + static_cast<qreal>(nTick) * rcSection.width() / TimeLine::CellCount;
}

} // namespace

CTimeRuler::CTimeRuler(QWidget* pParent) : QHeaderView(Qt::Horizontal, pParent)
{
    setHighlightSections(false);
}

QSize CTimeRuler::sizeHint() const
{
    return {QHeaderView::sizeHint().width(), fontMetrics().height() * 2};
}

void CTimeRuler::paintSection(QPainter* pPainter, const QRect& rcSection, int nSection) const
{
    pPainter->save();
    QHeaderView::paintSection(pPainter, rcSection, nSection);
    pPainter->restore();
    if (nSection != BarSection)
        return;
    m_S_PaintTicks(pPainter, rcSection);
    m_S_PaintNumbers(pPainter, rcSection);
}

void CTimeRuler::m_S_PaintTicks(QPainter* pPainter, const QRect& rcSection) const
{
    CPixelPainter objPixels(pPainter);
    for (int i = 0; i < TimeLine::CellCount; ++i) {
        const int nHeight = rcSection.height() / (i % CellsPerHour == 0 ? 2 : 4);
        const QPointF ptTop(TickLeft(rcSection, i), rcSection.bottom() + 1 - nHeight);
        objPixels.m_S_Line(ptTop, nHeight, palette().color(QPalette::ButtonText));
    }
}

// Above the ticks of the hours, as many as have room beside each other.
void CTimeRuler::m_S_PaintNumbers(QPainter* pPainter, const QRect& rcSection) const
{
    const int nNumber = fontMetrics().horizontalAdvance(QStringLiteral("00")) + NumberGap;
    const auto HasRoom = [&](int nHours) { return nHours * rcSection.width() >= nNumber * HoursPerDay; };
    const auto* const pStep = std::find_if(std::begin(g_anHourSteps), std::end(g_anHourSteps), HasRoom);
    if (pStep == std::end(g_anHourSteps))
        return;
    pPainter->setPen(palette().color(QPalette::ButtonText));
    for (int nHour = 0; nHour < HoursPerDay; nHour += *pStep) {
        const int nLeft = qRound(TickLeft(rcSection, nHour * CellsPerHour)) - nNumber / 2;
        const QRect rcNumber(std::max(nLeft, rcSection.left()), rcSection.top(), nNumber, rcSection.height() / 2);
        const Qt::Alignment nAlign = nHour == 0 ? Qt::AlignLeft | Qt::AlignVCenter : Qt::AlignCenter;
        pPainter->drawText(QRectF(rcNumber), QString::number(nHour), QTextOption(nAlign));
    }
}
