#include "recorders/CDipsResolver.h"

CDipsResolver::CDipsResolver(CEnvObj* pEnv, QObject* pParent) : QObject(pParent), vm_pEnv(pEnv) {}

CDipsResolver::~CDipsResolver()
{
    for (auto& [nNvrID, pLookUp] : vm_mapRunning)
        pLookUp->objThread.join();
}

void CDipsResolver::m_S_Resolve(int nNvrID, const QByteArray& sDips)
{
    if (m_F_b_Runs(nNvrID))
        return;
    auto pLookUp = std::make_unique<stDef_LookUp>();
    pLookUp->sDips = sDips;
    pLookUp->pNvr.reset(CWndNvrBase::s_F_p_CreateNvrObject(1, nullptr, vm_pEnv));
    // The object lives here; the thread only sends its request, which touches no window.
    pLookUp->objThread = std::thread([this, p = pLookUp.get(), nNvrID] {
        if (!p->pNvr->m_F_b_DipsToIpPort(p->sDips, p->sAddress, p->nPort))
            p->sAddress.clear();
        QMetaObject::invokeMethod(
            this, [this, nNvrID] { m_S_End(nNvrID); }, Qt::QueuedConnection);
    });
    vm_mapRunning[nNvrID] = std::move(pLookUp);
}

void CDipsResolver::m_S_End(int nNvrID)
{
    const std::unique_ptr<stDef_LookUp> pLookUp = std::move(vm_mapRunning.at(nNvrID));
    vm_mapRunning.erase(nNvrID);
    pLookUp->objThread.join();
    Q_EMIT S_Resolved(nNvrID, pLookUp->sDips, QString::fromLatin1(pLookUp->sAddress), pLookUp->nPort);
}
