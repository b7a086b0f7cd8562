#include "recorders/CRecorderPanel.h"

#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

#include "recorders/CLoginPanel.h"
#include "recorders/CRecorderFilter.h"
#include "recorders/CRecorderTree.h"
#include "window/HostTexts.h"

CRecorderPanel::CRecorderPanel(CEnvObj* pEnv, const CRecorderStore* pStore, CCameraNames* pNames,
                               const CRecorderWatch* pWatch, QWidget* pParent)
    : QWidget(pParent),
      vm_pTree(new CRecorderTree(pNames)),
      vm_pFilter(new CRecorderFilter(vm_pTree)),
      vm_pLogin(new CLoginPanel(pEnv, pStore, vm_pTree, pWatch)),
      vm_pTitle(new QLabel(Tr(nsHost::Recorders)))
{
    QFont objBold = vm_pTitle->font();
    objBold.setBold(true);
    vm_pTitle->setFont(objBold);
    vm_pTitle->setContentsMargins(12, 10, 12, 6);
    vm_pTitle->setBuddy(vm_pTree);
    auto* const pFilterLine = new QHBoxLayout;
    pFilterLine->setContentsMargins(8, 0, 8, 8);
    pFilterLine->addWidget(vm_pFilter);
    auto* const pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(0);
    pLayout->addWidget(vm_pTitle);
    pLayout->addLayout(pFilterLine);
    pLayout->addWidget(vm_pTree, 1);
    pLayout->addWidget(vm_pLogin);
}

void CRecorderPanel::m_S_SetRecorders(const QList<stDef_Recorder>& arRecorders)
{
    vm_pTree->m_S_SetRecorders(arRecorders);
    vm_pLogin->m_S_Refresh();
}

void CRecorderPanel::m_S_Select(int nNvrID)
{
    vm_pFilter->clear();
    vm_pTree->m_S_Select(nNvrID);
}

void CRecorderPanel::changeEvent(QEvent* pEvent)
{
    QWidget::changeEvent(pEvent);
    if (pEvent->type() == QEvent::LanguageChange)
        vm_pTitle->setText(Tr(nsHost::Recorders));
}
