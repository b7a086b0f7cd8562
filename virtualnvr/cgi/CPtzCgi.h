#pragma once

#include "cgi/CCgiSubject.h"

class CPtzBoard;

/// PTZ: commands, state, names of presets and tours.
class CPtzCgi : public CCgiSubject
{
public:
    CPtzCgi(CPtzBoard& objPtz, int nChannels, bool bPC) : vm_objPtz(objPtz), vm_nChannels(nChannels), vm_bPC(bPC) {}

    std::vector<stDef_CgiRoute> m_F_ar_Routes() override;

private:
    stDef_CgiReply m_F_o_Command(const stDef_CgiRequest& stRequest);
    stDef_CgiReply m_F_o_Status(const stDef_CgiRequest& stRequest) const;
    stDef_CgiReply m_F_o_Names(const stDef_CgiRequest& stRequest) const;

    CPtzBoard& vm_objPtz;
    const int vm_nChannels;
    const bool vm_bPC;
};
