#pragma once

#include "core/CWndNvrBase.h"
#include "toolkit/user/CRequestRun.h"

/// Requests of a page, one after the other: blocking calls, as those of the connection object are, during which windows
/// are painted, pictures move and input is held back. After a second a box tells what is waited for and can stop it;
/// the request ends then as its time-out would end it, and those after it fail without being sent. Release the object
/// meanwhile, or close the page's sheet, and the same happens. GUI thread only.
class CPageRequests
{
public:
    /// `stFor` says what is waited for. The page, or another widget, may be null and may go meanwhile.
    CPageRequests(CWndNvrBase* pNvr, QWidget* pPage, const stDef_Text& stFor);
    ~CPageRequests();
    CPageRequests(const CPageRequests&) = delete;
    CPageRequests& operator=(const CPageRequests&) = delete;

    /// As the operations of the connection object.
    bool m_F_b_Get(const QString& sUrl, CXmlObj* pXml, int nTimeoutMs);
    bool m_F_b_Post(const QString& sUrl, CXmlObj* pXml, int nTimeoutMs);
    bool m_F_b_GetData(const QString& sUrl, CMemManage* pMem, int nTimeoutMs);

    /// Whether the last post was not only answered but taken.
    bool m_F_b_LastTaken() const { return vm_bTaken; }
    bool m_F_b_Stopped() const { return vm_objRun.m_F_b_Stopped(); }
    void m_S_Stop() { vm_objRun.m_S_Stop(); }
    /// Tells how far a series has come, in the box, which from now on stands at once.
    void m_S_ShowProgress(const QString& sText, int nDone, int nAll) { vm_objRun.m_S_ShowProgress(sText, nDone, nAll); }

private:
    bool m_F_b_Run(CHTTP& objHttp, const std::function<bool()>& fnRequest);

    CNvrUse vm_objUse; // goes last
    CWndNvrBase* vm_pNvr;
    CRequestRun vm_objRun;
    bool vm_bTaken = false;
};
