#pragma once

#include "cgi/CCgiSubject.h"
#include "records/CRecordings.h"

#include <atomic>

class CFaultTable;

/// The record transfer service: lists recordings and hands them over, to accounts that may play them back.
class CRecordCgi : public CCgiSubject
{
public:
    /// @param fnNowMs, nHours as of CRecordings
    /// @param objFaults of the kinds of nsRecordFaults
    CRecordCgi(int nChannels, bool bPC, int nHours, std::function<std::int64_t()> fnNowMs, CFaultTable& objFaults)
        : vm_objRecordings(nChannels, bPC, nHours, std::move(fnNowMs)), vm_objFaults(objFaults)
    {}

    std::vector<stDef_CgiRoute> m_F_ar_Routes() override;

private:
    stDef_CgiReply m_F_o_Info(const stDef_CgiRequest& stRequest);
    stDef_CgiReply m_F_o_File(const stDef_CgiRequest& stRequest, const stDef_RecordPath& stPath);
    stDef_CgiReply m_F_o_Dat(const stDef_CgiRequest& stRequest, const stDef_RecordPath& stPath);
    stDef_CgiReply m_F_o_Img(const stDef_CgiRequest& stRequest, const stDef_RecordPath& stPath);

    using OnFile = stDef_CgiReply (CRecordCgi::*)(const stDef_CgiRequest&, const stDef_RecordPath&);
    stDef_CgiReply m_F_o_OnFile(OnFile pfnAnswer, const stDef_CgiRequest& stRequest);
    stDef_CgiReply m_F_o_Bytes(const stDef_CgiRequest& stRequest, const char* pszReply, std::string sBytes);

    CRecordings vm_objRecordings;
    CFaultTable& vm_objFaults;
    std::atomic<bool> vm_bHostile{false}; ///< names that no file has were told
};
