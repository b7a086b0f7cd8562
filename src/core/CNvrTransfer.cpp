#include "core/CNvrTransfer.h"

#include "core/CReplyEnvelope.h"

CNvrTransfer::CNvrTransfer(CWndNvrBase& objNvr) : vm_objNvr(objNvr), vm_stInit(objNvr.vm_stInit)
{
    if (vm_objNvr.vm_bTransferTaken.exchange(true))
        vm_objSpare.emplace();
}

CNvrTransfer::~CNvrTransfer()
{
    if (vm_objSpare)
        return;
    vm_objNvr.vm_objReply.m_S_GiveBack();
    vm_objNvr.vm_bTransferTaken = false;
}

bool CNvrTransfer::m_F_b_Get(const QString& sUrl, CMemManage* pMem, int nTimeoutMs)
{
    return pMem && !vm_stInit.sIP.isEmpty() &&
           m_F_o_Http().m_F_n_HTTPGetDataDirect(vm_stInit.sIP, vm_stInit.sUID, vm_stInit.sPWD, vm_stInit.nHttpPort,
                                                CSFunc::s_F_s_UnicodeToAnsi(sUrl), pMem, nTimeoutMs) >= 0;
}

bool CNvrTransfer::m_F_b_Post(const QString& sUrl, const QByteArray& sBody, int nTimeoutMs)
{
    return !vm_stInit.sIP.isEmpty() &&
           m_F_o_Http().m_F_n_HTTPPostDataDirect(vm_stInit.sIP, vm_stInit.sUID, vm_stInit.sPWD, vm_stInit.nHttpPort,
                                                 CSFunc::s_F_s_UnicodeToAnsi(sUrl), sBody,
                                                 static_cast<int>(sBody.size()), {}, 0, nTimeoutMs) >= 0;
}

bool CNvrTransfer::m_F_b_Load(CXmlObj& xml)
{
    const QString sReply = CSFunc::s_F_s_Utf8ToUnicode(QByteArray(m_F_o_Reply().m_F_p_GetStrCHAR()));
    return xml.m_F_b_LoadXML(CReplyEnvelope::s_F_s_CutRoot(sReply));
}
