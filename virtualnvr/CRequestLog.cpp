#include "CRequestLog.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <ostream>

namespace {

bool PasswordLike(std::string sKey)
{
    std::transform(sKey.begin(), sKey.end(), sKey.begin(), [](unsigned char c) { return std::tolower(c); });
    return sKey.find("pwd") != std::string::npos || sKey.find("pass") != std::string::npos;
}

} // namespace

std::string CRequestLog::s_F_s_Masked(const std::string& sTarget)
{
    const auto nQuery = sTarget.find('?');
    if (nQuery == std::string::npos)
        return sTarget;
    std::string sOut = sTarget.substr(0, nQuery + 1);
    for (std::size_t nAt = nQuery + 1; nAt <= sTarget.size();) {
        const auto nEnd = std::min(sTarget.find('&', nAt), sTarget.size());
        const std::string sPair = sTarget.substr(nAt, nEnd - nAt);
        const auto nEqual = sPair.find('=');
        const bool bMask = nEqual != std::string::npos && PasswordLike(sPair.substr(0, nEqual));
        sOut += bMask ? sPair.substr(0, nEqual + 1) + "***" : sPair;
        if (nEnd < sTarget.size())
            sOut += '&';
        nAt = nEnd + 1;
    }
    return sOut;
}

void CRequestLog::m_S_Add(stDef_LogEntry stEntry)
{
    {
        const std::lock_guard lock(vm_objMutex);
        stEntry.nSequence = ++vm_nSequence;
        if (vm_pEcho) {
            *vm_pEcho << stEntry.sMethod << ' ' << s_F_s_Masked(stEntry.sTarget) << ' ' << stEntry.nStatus << ' '
                      << stEntry.nBytesIn << " in " << stEntry.nBytesOut << " out"
                      << (stEntry.sFault.empty() ? "" : " fault " + stEntry.sFault) << '\n'
                      << std::flush;
        }
        if (vm_arEntries.size() >= MaxEntries)
            vm_arEntries.erase(vm_arEntries.begin(), vm_arEntries.begin() + MaxEntries / 10);
        vm_arEntries.push_back(std::move(stEntry));
    }
    vm_objChanged.notify_all();
}

std::vector<stDef_LogEntry> CRequestLog::m_F_ar_Entries() const
{
    const std::lock_guard lock(vm_objMutex);
    return vm_arEntries;
}

std::size_t CRequestLog::m_F_n_Count() const
{
    const std::lock_guard lock(vm_objMutex);
    return vm_arEntries.size();
}

void CRequestLog::m_S_Clear()
{
    const std::lock_guard lock(vm_objMutex);
    vm_arEntries.clear();
}

bool CRequestLog::m_F_b_Wait(const std::function<bool(const stDef_LogEntry&)>& condition, int nTimeoutMs) const
{
    std::unique_lock lock(vm_objMutex);
    const auto nUntil = std::chrono::steady_clock::now() + std::chrono::milliseconds(nTimeoutMs);
    return vm_objChanged.wait_until(lock, nUntil,
                                    [&] { return std::any_of(vm_arEntries.begin(), vm_arEntries.end(), condition); });
}

void CRequestLog::m_S_SetEcho(std::ostream* pStream)
{
    const std::lock_guard lock(vm_objMutex);
    vm_pEcho = pStream;
}
