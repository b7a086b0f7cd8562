#pragma once

#include <optional>

#include "core/CWndNvrBase.h"

/// What one request of a connection object runs on: the object's own transfer and reply buffer, or, while another
/// request has those, a pair that goes with the request. Made on any thread; its operations belong to one.
class CNvrTransfer
{
public:
    /// Takes the object's connection data as they are now.
    explicit CNvrTransfer(CWndNvrBase& objNvr);
    ~CNvrTransfer();
    CNvrTransfer(const CNvrTransfer&) = delete;
    CNvrTransfer& operator=(const CNvrTransfer&) = delete;

    /// The buffer that `m_F_b_Get` fills unless it is given another one.
    CMemManage& m_F_o_Reply() { return vm_objSpare ? vm_objSpare->objReply : vm_objNvr.vm_objReply; }
    CHTTP& m_F_o_Http() { return vm_objSpare ? vm_objSpare->objHttp : vm_objNvr.vm_objHttp; }

    bool m_F_b_Get(const QString& sUrl, CMemManage* pMem, int nTimeoutMs);
    bool m_F_b_Post(const QString& sUrl, const QByteArray& sBody, int nTimeoutMs);
    /// Loads the reply without its envelope; false, and the document closed, if it is none.
    bool m_F_b_Load(CXmlObj& xml);

private:
    struct st_Spare
    {
        st_Spare() : objReply(0) {}
        CHTTP objHttp;
        CMemManage objReply;
    };

    template <class Exchange>
    bool m_F_b_Exchange(Exchange fnExchange);

    CWndNvrBase& vm_objNvr;
    stDef_NvrInit vm_stInit;
    std::optional<st_Spare> vm_objSpare;
};
