#include "http/CLoggedReply.h"

#include "http/CSocket.h"

#include <charconv>

namespace {

/// Of the status line that the data begins with; 0 if it begins with none.
int StatusOf(std::string_view sData)
{
    constexpr std::size_t nAt = std::string_view("HTTP/1.1 ").size();
    int nStatus = 0;
    if (sData.starts_with("HTTP/1.") && sData.size() >= nAt + 3)
        std::from_chars(sData.data() + nAt, sData.data() + nAt + 3, nStatus);
    return nStatus;
}

} // namespace

void CLoggedReply::m_S_Begin(stDef_LogEntry stEntry)
{
    vm_stEntry = std::move(stEntry);
    vm_stEntry.nSequence = vm_objLog.m_F_n_Add(vm_stEntry);
}

void CLoggedReply::m_S_PlayFault(std::string sName)
{
    vm_stEntry.sFault = std::move(sName);
    vm_objLog.m_S_Update(vm_stEntry);
}

void CLoggedReply::m_S_End()
{
    vm_stEntry.bDone = true;
    vm_objLog.m_S_Update(vm_stEntry);
}

bool CLoggedReply::m_F_b_Send(std::string_view sData)
{
    if (vm_stEntry.nBytesOut == 0) {
        vm_stEntry.nStatus = StatusOf(sData);
        if (vm_stEntry.nStatus == 401)
            vm_stEntry.sBody = {}; // strangers fill no memory
        vm_objLog.m_S_Update(vm_stEntry);
    }
    if (!vm_objClient.m_F_b_Write(sData))
        return false;
    vm_stEntry.nBytesOut += sData.size();
    return true;
}

bool CLoggedReply::m_F_b_SendReply(int nStatus, std::string_view sReason, std::string_view sHeaders,
                                   std::string_view sBody)
{
    std::string sText = "HTTP/1.1 " + std::to_string(nStatus) + ' ' + std::string(sReason) + "\r\n";
    sText += sHeaders;
    const bool bBody = nStatus != 204 && nStatus != 304;
    if (bBody)
        sText += "Content-Length: " + std::to_string(sBody.size()) + "\r\n";
    sText += "\r\n";
    if (bBody && vm_stEntry.sMethod != "HEAD")
        sText += sBody;
    return m_F_b_Send(sText);
}
