#include "toolkit/controls/CColorLegend.h"

#include <QHBoxLayout>
#include <QLabel>

CColorLegend::CColorLegend(QWidget* pParent) : QWidget(pParent)
{
    auto* const pLine = new QHBoxLayout(this);
    pLine->setContentsMargins(0, 0, 0, 0);
    pLine->addStretch();
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QLabel* CColorLegend::m_F_p_Add(const QColor& objColor)
{
    auto* const pPatch = new QLabel(this);
    QPalette objPalette;
    objPalette.setColor(QPalette::Window, objColor);
    pPatch->setPalette(objPalette);
    pPatch->setAutoFillBackground(true);
    pPatch->setFrameStyle(QFrame::Box | QFrame::Plain);
    pPatch->setFixedSize(fontMetrics().height(), fontMetrics().ascent());
    auto* const pText = new QLabel(this);
    auto* const pLine = static_cast<QHBoxLayout*>(layout());
    pLine->insertWidget(pLine->count() - 1, pPatch);
    pLine->insertWidget(pLine->count() - 1, pText);
    pLine->insertSpacing(pLine->count() - 1, fontMetrics().height());
    return pText;
}
