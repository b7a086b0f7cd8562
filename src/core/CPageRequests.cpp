#include "core/CPageRequests.h"

#include "core/CNvrTransfer.h"

namespace {

constexpr Text StopText{"Stop", "Stop"};

stDef_WaitTexts Texts(const CTextSource& objTexts, const QWidget* pPage, const stDef_Text& stFor)
{
    const auto Word = [&](const stDef_Text& st) { return objTexts.m_F_s_Text(st, QString::fromUtf8(st.pszDefault)); };
    return {pPage ? pPage->window()->windowTitle() : QString(), Word(stFor), Word(StopText)};
}

} // namespace

CPageRequests::CPageRequests(CWndNvrBase* pNvr, QWidget* pPage, const stDef_Text& stFor)
    : vm_objUse(pNvr), vm_pNvr(pNvr), vm_objRun(pPage, Texts(*pNvr, pPage, stFor))
{
    vm_pNvr->vm_arRequests.append(this);
    if (vm_pNvr->vm_bReleased)
        m_S_Stop();
}

CPageRequests::~CPageRequests()
{
    vm_pNvr->vm_arRequests.removeOne(this);
}

bool CPageRequests::m_F_b_Get(const QString& sUrl, CXmlObj* pXml, int nTimeoutMs)
{
    CNvrTransfer objTransfer(*vm_pNvr);
    return pXml &&
           m_F_b_Run(objTransfer.m_F_o_Http(),
                     [&] { return objTransfer.m_F_b_Get(sUrl, &objTransfer.m_F_o_Reply(), nTimeoutMs); }) &&
           objTransfer.m_F_b_Load(*pXml);
}

bool CPageRequests::m_F_b_Post(const QString& sUrl, CXmlObj* pXml, int nTimeoutMs)
{
    vm_bTaken = false;
    if (!pXml)
        return false;
    CNvrTransfer objTransfer(*vm_pNvr);
    const QByteArray sBody = pXml->m_F_s_GetUtf8();
    const bool bReply =
        m_F_b_Run(objTransfer.m_F_o_Http(), [&] { return objTransfer.m_F_b_Post(sUrl, sBody, nTimeoutMs); });
    vm_bTaken = bReply && objTransfer.m_F_o_Http().m_F_b_LastTaken();
    return bReply;
}

bool CPageRequests::m_F_b_GetData(const QString& sUrl, CMemManage* pMem, int nTimeoutMs)
{
    CNvrTransfer objTransfer(*vm_pNvr);
    return m_F_b_Run(objTransfer.m_F_o_Http(), [&] { return objTransfer.m_F_b_Get(sUrl, pMem, nTimeoutMs); });
}

bool CPageRequests::m_F_b_Run(CHTTP& objHttp, const std::function<bool()>& fnRequest)
{
    bool bDone = false, bStopped = false;
    vm_objRun.m_F_b_Run([&] { bDone = fnRequest(); },
                        [&] {
                            bStopped = true;
                            objHttp.m_S_AbandonDirect();
                        });
    if (bStopped) {
        const std::lock_guard objLock(vm_pNvr->vm_objAbandonMutex);
        if (!vm_pNvr->vm_bAbandoned)
            objHttp.m_S_AllowDirect(); // the object's next request is another matter
    }
    return bDone;
}
