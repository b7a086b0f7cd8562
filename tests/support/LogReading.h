#pragma once

#include <string>
#include <vector>

#include "http/CRequestLog.h"

/// Targets of the requests that were answered since the last call, logins aside, each from where `sFrom` begins in it;
/// those without it are left out.
inline std::vector<std::string> TakeAnswered(CRequestLog& objLog, const std::string& sFrom = "/")
{
    std::vector<std::string> arTargets;
    for (const stDef_LogEntry& stEntry : objLog.m_F_ar_Entries()) {
        const std::size_t nAt = stEntry.sTarget.find(sFrom);
        if (stEntry.nStatus != 401 && nAt != std::string::npos)
            arTargets.push_back(stEntry.sTarget.substr(nAt));
    }
    objLog.m_S_Clear();
    return arTargets;
}
