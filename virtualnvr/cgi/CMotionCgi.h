#pragma once

#include "cgi/CCgiSubject.h"

#include <functional>

class CMotionStore;
class CPtzBoard;
struct stDef_MotionCamera;

/// Motion before the cameras: the windows that watch for it, listed and changed, and what they see as a stream.
class CMotionCgi : public CCgiSubject
{
public:
    CMotionCgi(CMotionStore& objStore, const CPtzBoard& objPtz, int nChannels)
        : vm_objStore(objStore), vm_objPtz(objPtz), vm_nChannels(nChannels)
    {}

    std::vector<stDef_CgiRoute> m_F_ar_Routes() override;

private:
    using Change = std::function<bool(stDef_MotionCamera&, std::string& sError)>;

    stDef_CgiReply m_F_o_List(const stDef_CgiRequest& stRequest) const;
    stDef_CgiReply m_F_o_Add(const stDef_CgiRequest& stRequest);
    stDef_CgiReply m_F_o_Remove(const stDef_CgiRequest& stRequest);
    stDef_CgiReply m_F_o_Update(const stDef_CgiRequest& stRequest);
    stDef_CgiReply m_F_o_Stream(const stDef_CgiRequest& stRequest) const;

    const char* m_F_psz_Missing(int nCamera) const;
    stDef_CgiReply m_F_o_Change(const stDef_CgiRequest& stRequest, const Change& fnChange);

    CMotionStore& vm_objStore;
    const CPtzBoard& vm_objPtz;
    const int vm_nChannels;
};
