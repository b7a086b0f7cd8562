#include "core/CNvrTransfer.h"

#include "core/CReplyEnvelope.h"

CNvrTransfer::CNvrTransfer(CWndNvrBase& objNvr) : vm_objNvr(objNvr), vm_stInit(objNvr.vm_stInit)
{
    if (!vm_objNvr.vm_bTransferTaken.exchange(true))
        return;
    vm_objSpare.emplace();
    const std::lock_guard objLock(vm_objNvr.vm_objAbandonMutex);
    vm_objNvr.vm_arSpares.append(&vm_objSpare->objHttp);
    if (vm_objNvr.vm_bAbandoned)
        vm_objSpare->objHttp.m_S_AbandonDirect();
}

CNvrTransfer::~CNvrTransfer()
{
    if (vm_objSpare) {
        const std::lock_guard objLock(vm_objNvr.vm_objAbandonMutex);
        vm_objNvr.vm_arSpares.removeOne(&vm_objSpare->objHttp);
        return;
    }
    vm_objNvr.vm_objReply.m_S_GiveBack();
    vm_objNvr.vm_bTransferTaken = false;
}

// Runs the exchange, unless there is no address to run it with, and keeps the status of its reply.
template <class Exchange>
bool CNvrTransfer::m_F_b_Exchange(Exchange fnExchange)
{
    vm_objNvr.vm_nLastStatus = 0;
    if (vm_stInit.sIP.isEmpty())
        return false;
    const bool bReply = fnExchange() >= 0;
    vm_objNvr.vm_nLastStatus = m_F_o_Http().m_F_n_LastStatus();
    return bReply;
}

bool CNvrTransfer::m_F_b_Get(const QString& sUrl, CMemManage* pMem, int nTimeoutMs)
{
    return pMem && m_F_b_Exchange([&] {
               return m_F_o_Http().m_F_n_HTTPGetDataDirect(vm_stInit.sIP, vm_stInit.sUID, vm_stInit.sPWD,
                                                           vm_stInit.nHttpPort, CSFunc::s_F_s_UnicodeToAnsi(sUrl), pMem,
                                                           nTimeoutMs);
           });
}

bool CNvrTransfer::m_F_b_Post(const QString& sUrl, const QByteArray& sBody, int nTimeoutMs)
{
    return m_F_b_Exchange([&] {
        return m_F_o_Http().m_F_n_HTTPPostDataDirect(vm_stInit.sIP, vm_stInit.sUID, vm_stInit.sPWD, vm_stInit.nHttpPort,
                                                     CSFunc::s_F_s_UnicodeToAnsi(sUrl), sBody,
                                                     static_cast<int>(sBody.size()), {}, 0, nTimeoutMs);
    });
}

bool CNvrTransfer::m_F_b_Load(CXmlObj& xml)
{
    const QString sReply = CSFunc::s_F_s_Utf8ToUnicode(QByteArray(m_F_o_Reply().m_F_p_GetStrCHAR()));
    return xml.m_F_b_LoadXML(CReplyEnvelope::s_F_s_CutRoot(sReply));
}
