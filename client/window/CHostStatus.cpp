#include "window/CHostStatus.h"

#include <QLabel>

#include "live/CLiveGrid.h"
#include "window/HostTexts.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int MessageMs = 10000;
const QString g_sTotalsGap = u"     "_s;

} // namespace

CHostStatus::CHostStatus(QWidget* pParent)
    : QStatusBar(pParent),
      vm_pSheetOf(m_F_p_MakeLabel("SheetOf")),
      vm_pTotals(m_F_p_MakeLabel("Totals")),
      vm_pNotTaken(m_F_p_MakeLabel("NotTaken"))
{
    connect(this, &QStatusBar::messageChanged, this, &CHostStatus::m_S_Settle);
}

QLabel* CHostStatus::m_F_p_MakeLabel(const char* pszName)
{
    auto* const pLabel = new QLabel;
    pLabel->setObjectName(QString::fromLatin1(pszName));
    pLabel->setTextFormat(Qt::PlainText);
    pLabel->setContentsMargins(4, 0, 8, 0);
    addPermanentWidget(pLabel);
    return pLabel;
}

void CHostStatus::m_S_Tell(const QString& sText)
{
    showMessage(sText, MessageMs);
}

void CHostStatus::m_S_ShowTotals(int nRecorders, const stDef_GridTotals& stTotals)
{
    const QStringList arParts = {
        Tr(nsHost::TotalRecorders).arg(nRecorders),
        Tr(nsHost::TotalLive).arg(stTotals.nLive).arg(stTotals.nChannels),
        Tr(nsHost::TotalFrames).arg(stTotals.nRate, 0, 'f', 1),
    };
    vm_pTotals->setText(arParts.join(g_sTotalsGap));
}

void CHostStatus::m_S_ShowSheetOf(const QString& sRecorder)
{
    vm_pSheetOf->setText(sRecorder.isEmpty() ? QString() : Tr(nsHost::SettingsOpen).arg(sRecorder));
    m_S_Settle();
}

void CHostStatus::m_S_ShowNotTaken(const QString& sText)
{
    vm_pNotTaken->setText(sText);
}

void CHostStatus::m_S_SetFullScreen(bool bOn)
{
    vm_bFullScreen = bOn;
    m_S_Settle();
}

void CHostStatus::m_S_Settle()
{
    setVisible(!vm_bFullScreen || !currentMessage().isEmpty() || !vm_pSheetOf->text().isEmpty());
}
