#include "toolkit/user/CWaitBox.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int TextWidth = 44; ///< letters

} // namespace

CWaitBox::CWaitBox(QWidget* pParent, const stDef_WaitTexts& stTexts)
    : QDialog(pParent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint),
      vm_pText(new QLabel),
      vm_pSeconds(new QLabel),
      vm_pBar(new QProgressBar)
{
    setObjectName(QStringLiteral("WaitBox"));
    setWindowTitle(stTexts.sCaption);
    setModal(true);
    for (QLabel* const pLabel : {vm_pText, vm_pSeconds})
        pLabel->setTextFormat(Qt::PlainText);
    vm_pText->setObjectName(QStringLiteral("WaitText"));
    vm_pText->setWordWrap(true);
    vm_pText->setMinimumWidth(TextWidth * fontMetrics().averageCharWidth());
    vm_pSeconds->setObjectName(QStringLiteral("WaitSeconds"));
    vm_pBar->setTextVisible(false);
    vm_pBar->hide();
    auto* const pLayout = new QVBoxLayout(this);
    pLayout->addWidget(vm_pText);
    pLayout->addWidget(vm_pBar);
    auto* const pFoot = new QHBoxLayout;
    pLayout->addLayout(pFoot);
    pFoot->addWidget(vm_pSeconds);
    pFoot->addStretch();
    if (!stTexts.sStop.isEmpty()) {
        auto* const pStop = new QPushButton(stTexts.sStop);
        pStop->setObjectName(QStringLiteral("Stop"));
        pStop->setDefault(true);
        connect(pStop, &QPushButton::clicked, this, &CWaitBox::reject);
        pFoot->addWidget(pStop);
    }
    m_S_SetText(stTexts.sFor);
    m_S_SetSeconds(0);
}

void CWaitBox::m_S_SetText(const QString& sText)
{
    vm_pText->setText(sText);
    vm_pText->setVisible(!sText.isEmpty());
    vm_pBar->setAccessibleName(sText);
}

void CWaitBox::m_S_SetSeconds(qint64 nSeconds)
{
    vm_pSeconds->setText(QStringLiteral("%1 s").arg(nSeconds));
}

void CWaitBox::m_S_SetProgress(int nDone, int nAll)
{
    vm_pBar->setRange(0, nAll);
    vm_pBar->setValue(nDone);
    vm_pBar->show();
}
