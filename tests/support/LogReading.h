#pragma once

#include <string>
#include <vector>

#include "http/CRequestLog.h"

/// Targets of the requests that were answered, logins aside, each from behind `nSkip` letters of where `sFrom` begins
/// in it; those without it are left out.
inline std::vector<std::string> Answered(const CRequestLog& objLog, const std::string& sFrom, std::size_t nSkip = 0)
{
    std::vector<std::string> arTargets;
    for (const stDef_LogEntry& stEntry : objLog.m_F_ar_Entries()) {
        const std::size_t nAt = stEntry.sTarget.find(sFrom);
        if (stEntry.nStatus != 401 && nAt != std::string::npos)
            arTargets.push_back(stEntry.sTarget.substr(nAt + nSkip));
    }
    return arTargets;
}

/// Those since the last call.
inline std::vector<std::string> TakeAnswered(CRequestLog& objLog, const std::string& sFrom = "/")
{
    std::vector<std::string> arTargets = Answered(objLog, sFrom);
    objLog.m_S_Clear();
    return arTargets;
}
