#include "toolkit/CWaits.h"

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLabel>
#include <QProgressBar>
#include <QTimer>
#include <QVBoxLayout>

namespace {

constexpr int StepMs = 100;

CWaits* g_pReplacement = nullptr;

} // namespace

void CWaits::m_S_Wait(QWidget* pParent, const QString& sText, int nMs)
{
    QDialog objBox(pParent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    auto* const pText = new QLabel(sText);
    auto* const pBar = new QProgressBar;
    pText->setVisible(!sText.isEmpty());
    pBar->setRange(0, nMs);
    pBar->setAccessibleName(sText);
    auto* const pLayout = new QVBoxLayout(&objBox);
    pLayout->addWidget(pText);
    pLayout->addWidget(pBar);
    pBar->setMinimumWidth(24 * objBox.fontMetrics().averageCharWidth());
    objBox.setModal(true);
    objBox.show();

    QElapsedTimer objClock;
    objClock.start();
    for (qint64 nLeft = nMs; nLeft > 0; nLeft = nMs - objClock.elapsed()) {
        pBar->setValue(static_cast<int>(nMs - nLeft));
        pBar->setFormat(QStringLiteral("%1 s").arg((nLeft + 999) / 1000));
        QEventLoop objLoop;
        QTimer::singleShot(StepMs, &objLoop, &QEventLoop::quit);
        objLoop.exec(QEventLoop::ExcludeUserInputEvents);
    }
    // What was clicked and typed meanwhile is delivered now, while this box still keeps it from the windows behind.
    QCoreApplication::processEvents();
}

CWaits& CWaits::s_F_o_Get()
{
    static CWaits s_objReal;
    return g_pReplacement ? *g_pReplacement : s_objReal;
}

void CWaits::s_S_Replace(CWaits* pWaits)
{
    g_pReplacement = pWaits;
}
