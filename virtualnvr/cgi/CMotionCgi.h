#pragma once

#include "cgi/CCgiSubject.h"

/// Motion before the cameras, as a stream of states.
class CMotionCgi : public CCgiSubject
{
public:
    explicit CMotionCgi(int nChannels) : vm_nChannels(nChannels) {}

    std::vector<stDef_CgiRoute> m_F_ar_Routes() override;

private:
    stDef_CgiReply m_F_o_Stream(const stDef_CgiRequest& stRequest) const;

    const int vm_nChannels;
};
