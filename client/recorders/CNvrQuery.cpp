#include "recorders/CNvrQuery.h"

CNvrQuery::CNvrQuery(CEnvObj* pEnv, stDef_NvrInit stInit, std::function<void(CWndNvrBase&)> fnAsk, QObject* pParent)
    : QObject(pParent), vm_pNvr(s_F_p_MakeObject(pEnv, std::move(stInit)))
{
    const auto Tell = [this] {
        QMetaObject::invokeMethod(
            this, [this] { Q_EMIT S_Done(); }, Qt::QueuedConnection);
    };
    if (!vm_pNvr) {
        Tell();
        return;
    }
    vm_objThread = std::thread([this, fnAsk = std::move(fnAsk), Tell] {
        fnAsk(*vm_pNvr);
        Tell();
    });
}

CNvrQuery::~CNvrQuery()
{
    if (!vm_pNvr)
        return;
    vm_pNvr->m_S_AbandonRequests();
    vm_objThread.join();
}

CNvrHolder CNvrQuery::s_F_p_MakeObject(CEnvObj* pEnv, stDef_NvrInit stInit)
{
    stInit.bDips = false; // the list has the address that was found last; a look-up would block
    CNvrHolder pNvr(CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(stInit.nNvrID, nullptr, pEnv));
    if (pNvr && pNvr->m_F_n_Init(stInit) != 1)
        pNvr.reset();
    if (pNvr)
        pNvr->m_S_InitHTTP();
    return pNvr;
}
