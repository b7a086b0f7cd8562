#pragma once

#include "cgi/CCgiSubject.h"
#include "records/CRecordings.h"

/// The record transfer service: lists recordings and hands them over, to accounts that may play them back.
class CRecordCgi : public CCgiSubject
{
public:
    /// @param fnNowMs, nHours as of CRecordings
    CRecordCgi(int nChannels, bool bPC, int nHours, std::function<std::int64_t()> fnNowMs)
        : vm_objRecordings(nChannels, bPC, nHours, std::move(fnNowMs))
    {}

    std::vector<stDef_CgiRoute> m_F_ar_Routes() override;

private:
    stDef_CgiReply m_F_o_Info(const stDef_CgiRequest& stRequest) const;
    stDef_CgiReply m_F_o_File(const stDef_CgiRequest& stRequest) const;
    stDef_CgiReply m_F_o_Dat(const stDef_CgiRequest& stRequest) const;
    stDef_CgiReply m_F_o_Img(const stDef_CgiRequest& stRequest) const;

    CRecordings vm_objRecordings;
};
