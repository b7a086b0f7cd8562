#include "window/CRecorderCommands.h"

#include <QElapsedTimer>
#include <QMenu>
#include <algorithm>

#include "fleetlink/fleetlink.h"
#include "recorders/CRecorderStore.h"
#include "window/CDocumentPanel.h"
#include "window/CHostStatus.h"
#include "window/HostTexts.h"

using namespace Qt::StringLiterals;

namespace {

// False if nothing can be made of the recorder's entry.
bool IsReady(const CNvrHolder& pNvr, const stDef_NvrInit& stInit)
{
    return pNvr && pNvr->m_F_n_Init(stInit) == 1;
}

} // namespace

CRecorderCommands::CRecorderCommands(CEnvObj* pEnv, const CRecorderStore* pStore, QWidget* pWindow,
                                     CHostStatus* pStatus)
    : vm_pEnv(pEnv), vm_pStore(pStore), vm_pWindow(pWindow), vm_pStatus(pStatus)
{}

// Those of the recorder's own menu, in its language; also where its entry is not usable.
QList<stDef_MenuItem> CRecorderCommands::m_F_ar_Items(int nNvrID) const
{
    const CNvrHolder pNvr(CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(nNvrID, nullptr, vm_pEnv));
    if (!pNvr)
        return {};
    stDef_NvrInit stInit = vm_pStore->m_F_o_InitRecord(nNvrID);
    stInit.bDips = false; // no look-up for a list of words
    pNvr->m_F_n_Init(stInit);
    return pNvr->m_F_ar_MenuItems();
}

bool CRecorderCommands::m_F_b_Works(int nNvrID, int nCommand) const
{
    const QList<stDef_MenuItem> arItems = m_F_ar_Items(nNvrID);
    return std::any_of(arItems.begin(), arItems.end(),
                       [nCommand](const stDef_MenuItem& stItem) { return stItem.nId == nCommand && stItem.bWorks; });
}

void CRecorderCommands::m_S_AddTo(QMenu& objMenu, int nNvrID) const
{
    for (const stDef_MenuItem& stItem : m_F_ar_Items(nNvrID)) {
        QAction* const pItem =
            objMenu.addAction(stItem.bWorks ? stItem.sText : Tr(nsHost::CommandMissing).arg(stItem.sText));
        pItem->setEnabled(stItem.bWorks);
        pItem->setData(stItem.nId);
    }
}

void CRecorderCommands::m_S_Run(int nNvrID, int nCommand)
{
    const CNvrHolder pNvr(CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(nNvrID, vm_pWindow, vm_pEnv));
    if (!IsReady(pNvr, vm_pStore->m_F_o_InitRecord(nNvrID))) {
        vm_pStatus->m_S_Tell(Tr(nsHost::HintUnusable));
        return;
    }
    const QString sName = vm_pStore->m_F_o_Form(nNvrID).sName;
    vm_pStatus->m_S_ShowSheetOf(sName);
    vm_pStatus->m_S_ShowNotTaken({});
    connect(pNvr.get(), &CWndNvrBase::S_NotTaken, vm_pStatus, [pStatus = vm_pStatus, sName](const QString& sText) {
        pStatus->m_S_ShowNotTaken(sName + u": "_s + sText);
    });
    pNvr->m_S_OnCommand(nCommand);
    vm_pStatus->m_S_ShowSheetOf({});
    Q_EMIT S_Closed(nNvrID);
}

QList<stDef_DocumentResult> CRecorderCommands::m_F_ar_Exchange(int nNvrID, CDocumentPanel& objPanel)
{
    objPanel.show();
    const QString sName = vm_pStore->m_F_o_Form(nNvrID).sName;
    const CNvrHolder pNvr(CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(nNvrID, vm_pWindow, vm_pEnv));
    if (!IsReady(pNvr, vm_pStore->m_F_o_InitRecord(nNvrID))) {
        objPanel.m_S_ShowOutcome(sName, -1);
        return {};
    }
    QElapsedTimer objClock;
    objClock.start();
    const QList<stDef_DocumentResult> arResults =
        CDocumentRunner::s_F_ar_Run(*pNvr, [&objPanel](const auto& arSoFar) { objPanel.m_S_ShowResults(arSoFar); });
    objPanel.m_S_ShowOutcome(sName, objClock.elapsed());
    return arResults;
}
