#pragma once

#include "cgi/CCgiSubject.h"
#include "cgi/stDef_ServicePorts.h"
#include "stDef_VirtualNvrConfig.h"

/// What the recorder tells of itself: device and login information, its state, and its address in the two directory
/// services, of which one is asked without an account.
class CDeviceCgi : public CCgiSubject
{
public:
    /// The ports must outlive it; they are read at each request.
    CDeviceCgi(const stDef_VirtualNvrConfig& stConfig, const stDef_ServicePorts& stPorts)
        : vm_stConfig(stConfig), vm_stPorts(stPorts)
    {}

    std::vector<stDef_CgiRoute> m_F_ar_Routes() override;

private:
    stDef_CgiReply m_F_o_SystemInfo(const stDef_CgiRequest& stRequest) const;
    stDef_CgiReply m_F_o_LoginInfo(const stDef_CgiRequest& stRequest) const;
    stDef_CgiReply m_F_o_SystemStatus(const stDef_CgiRequest& stRequest) const;
    stDef_CgiReply m_F_o_TestDdns(const stDef_CgiRequest& stRequest) const;
    stDef_CgiReply m_F_o_Register(const stDef_CgiRequest& stRequest) const;
    stDef_CgiReply m_F_o_Dips(const stDef_CgiRequest& stRequest) const;
    std::string m_F_s_OwnAddress(const stDef_CgiRequest& stRequest) const;

    const stDef_VirtualNvrConfig vm_stConfig;
    const stDef_ServicePorts& vm_stPorts;
};
