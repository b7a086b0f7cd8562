#pragma once

#include "cgi/CCgiSubject.h"

class CCameraRegistry;

/// What the recorder asks of the cameras on its network for its client: search, detect, abilities.
class CCameraCgi : public CCgiSubject
{
public:
    /// @param nProbeDelayMs how long a camera takes to answer the recorder
    CCameraCgi(const CCameraRegistry& objCameras, int nProbeDelayMs)
        : vm_objCameras(objCameras), vm_nProbeDelayMs(nProbeDelayMs)
    {}

    std::vector<stDef_CgiRoute> m_F_ar_Routes() override;

private:
    stDef_CgiReply m_F_o_Detect(const stDef_CgiRequest& stRequest) const;
    stDef_CgiReply m_F_o_Support(const stDef_CgiRequest& stRequest) const;
    stDef_CgiReply m_F_o_Search(const stDef_CgiRequest& stRequest) const;
    void m_S_Wait(int nDelays) const;

    const CCameraRegistry& vm_objCameras;
    const int vm_nProbeDelayMs;
};
