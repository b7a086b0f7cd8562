#pragma once

#include "cgi/CCgiSubject.h"

#include <map>
#include <mutex>

/// The layout of the recorder's own display, set from afar.
class CDisplayCgi : public CCgiSubject
{
public:
    std::vector<stDef_CgiRoute> m_F_ar_Routes() override;

private:
    stDef_CgiReply m_F_o_Set(const stDef_CgiRequest& stRequest);
    stDef_CgiReply m_F_o_Status(const stDef_CgiRequest& stRequest) const;

    mutable std::mutex vm_objLock;
    std::map<std::string, std::string> vm_mapLayout; ///< the last one, as it came
};
