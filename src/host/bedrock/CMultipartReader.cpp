#include "host/bedrock/CMultipartReader.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <optional>

namespace {

char Lower(char c)
{
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

bool StartsWithNoCase(std::string_view sText, std::string_view sStart)
{
    return sText.size() >= sStart.size() &&
           std::equal(sStart.begin(), sStart.end(), sText.begin(), [](char a, char b) { return Lower(a) == Lower(b); });
}

std::string_view Trimmed(std::string_view sText)
{
    const auto nBegin = sText.find_first_not_of(" \t\r");
    return nBegin == sText.npos ? std::string_view()
                                : sText.substr(nBegin, sText.find_last_not_of(" \t\r") - nBegin + 1);
}

/// Value of the parameter "boundary" of a Content-Type, without quotes.
std::string_view Boundary(std::string_view sContentType)
{
    if (!StartsWithNoCase(Trimmed(sContentType), "multipart/"))
        return {};
    while (true) {
        const auto nNext = sContentType.find(';');
        if (nNext == sContentType.npos)
            return {};
        sContentType.remove_prefix(nNext + 1);
        const std::string_view sParam = Trimmed(sContentType);
        if (!StartsWithNoCase(sParam, "boundary="))
            continue;
        const std::string_view sValue = sParam.substr(9);
        if (sValue.starts_with('"'))
            return sValue.substr(1, sValue.find('"', 1) - 1);
        return Trimmed(sValue.substr(0, sValue.find(';')));
    }
}

std::optional<std::size_t> ContentLength(std::string_view sHead)
{
    while (!sHead.empty()) {
        const auto nEnd = std::min(sHead.find('\n'), sHead.size());
        const std::string_view sLine = sHead.substr(0, nEnd);
        sHead.remove_prefix(std::min(nEnd + 1, sHead.size()));
        if (!StartsWithNoCase(sLine, "content-length:"))
            continue;
        const std::string_view sNumber = Trimmed(sLine.substr(15));
        std::size_t nLength = 0;
        const auto result = std::from_chars(sNumber.data(), sNumber.data() + sNumber.size(), nLength);
        if (result.ec == std::errc() && result.ptr == sNumber.data() + sNumber.size())
            return nLength;
    }
    return std::nullopt;
}

} // namespace

void CMultipartReader::m_S_Begin(std::string_view sContentType)
{
    *this = CMultipartReader();
    std::string_view sBoundary = Boundary(sContentType);
    sBoundary.remove_prefix(std::min(sBoundary.find_first_not_of('-'), sBoundary.size()));
    if (sBoundary.empty())
        return;
    vm_sDelimiter = "--" + std::string(sBoundary);
    vm_nState = emDef_State::Delimiter;
}

void CMultipartReader::m_S_Feed(const char* pData, std::size_t nSize)
{
    if (vm_nState == emDef_State::Whole && vm_sBuffer.size() + nSize > MaxPart) {
        vm_bOversized = true;
        return;
    }
    vm_sBuffer.append(pData, nSize);
    while (m_F_b_Step()) {
    }
}

void CMultipartReader::m_S_End()
{
    const bool bPart = vm_nState == emDef_State::Whole && !vm_bOversized;
    if (bPart)
        m_S_Push(std::move(vm_sBuffer));
    vm_sBuffer.clear();
}

bool CMultipartReader::m_F_b_Pop(std::string& sPart)
{
    if (vm_arParts.empty())
        return false;
    sPart = std::move(vm_arParts.front());
    vm_arParts.pop_front();
    return true;
}

void CMultipartReader::m_S_Push(std::string sPart)
{
    if (sPart.empty())
        return;
    if (vm_arParts.size() >= MaxQueued)
        vm_arParts.pop_front();
    vm_arParts.push_back(std::move(sPart));
}

bool CMultipartReader::m_F_b_Step()
{
    switch (vm_nState) {
    case emDef_State::Delimiter:
        return m_F_b_StepDelimiter();
    case emDef_State::Head:
        return m_F_b_StepHead();
    case emDef_State::Counted:
        return m_F_b_StepCounted();
    case emDef_State::Searched:
        return m_F_b_StepSearched();
    case emDef_State::After:
        return m_F_b_StepAfter();
    case emDef_State::Whole:
        break;
    }
    return false;
}

/// Begin of the next whole delimiter line at or behind `nFrom`, its dashes included, and the end of that line; npos if
/// there is none in the buffer.
std::size_t CMultipartReader::m_F_n_FindDelimiter(std::size_t nFrom, std::size_t& nEnd) const
{
    for (auto nAt = vm_sBuffer.find(vm_sDelimiter, nFrom); nAt != std::string::npos;
         nAt = vm_sBuffer.find(vm_sDelimiter, nAt + 1)) {
        std::size_t nBegin = nAt;
        while (nBegin > 0 && vm_sBuffer[nBegin - 1] == '-')
            --nBegin;
        if (nBegin > 0 && vm_sBuffer[nBegin - 1] != '\n')
            continue;
        const auto nLineEnd = vm_sBuffer.find('\n', nAt + vm_sDelimiter.size());
        if (nLineEnd == std::string::npos)
            return std::string::npos;
        // A longer word that only begins like the boundary is no delimiter; the closing one has two dashes behind.
        const std::string_view sBehind(vm_sBuffer.data() + nAt + vm_sDelimiter.size(),
                                       nLineEnd - nAt - vm_sDelimiter.size());
        const std::string_view sRest = Trimmed(sBehind);
        if (!sRest.empty() && sRest != "--")
            continue;
        nEnd = nLineEnd + 1;
        return nBegin;
    }
    return std::string::npos;
}

bool CMultipartReader::m_F_b_StepDelimiter()
{
    std::size_t nEnd = 0;
    if (m_F_n_FindDelimiter(0, nEnd) == std::string::npos) {
        // Only the last line can still become a delimiter.
        const auto nLine = vm_sBuffer.rfind('\n');
        if (nLine != std::string::npos)
            vm_sBuffer.erase(0, nLine + 1);
        if (vm_sBuffer.size() > MaxHead)
            vm_sBuffer.erase(0, vm_sBuffer.size() - 1);
        return false;
    }
    vm_sBuffer.erase(0, nEnd);
    vm_nState = emDef_State::Head;
    return true;
}

bool CMultipartReader::m_F_b_StepHead()
{
    std::size_t nLine = 0;
    while (true) {
        const auto nEnd = vm_sBuffer.find('\n', nLine);
        if (nEnd == std::string::npos || nLine > MaxHead) {
            if (vm_sBuffer.size() <= MaxHead)
                return false;
            vm_nState = emDef_State::Delimiter;
            return true;
        }
        const bool bBlank = Trimmed(std::string_view(vm_sBuffer).substr(nLine, nEnd - nLine)).empty();
        nLine = nEnd + 1;
        if (bBlank)
            break;
    }
    const auto nLength = ContentLength(std::string_view(vm_sBuffer).substr(0, nLine));
    vm_sBuffer.erase(0, nLine);
    vm_nScanned = 0;
    vm_bOversized = false;
    const bool bCounted = vm_bTrustLength && nLength && *nLength <= MaxPart;
    vm_nLength = nLength.value_or(0);
    vm_nState = bCounted ? emDef_State::Counted : emDef_State::Searched;
    return true;
}

bool CMultipartReader::m_F_b_StepCounted()
{
    if (vm_sBuffer.size() < vm_nLength) {
        // A delimiter inside what was announced as body: the length is wrong.
        std::size_t nEnd = 0;
        if (m_F_n_FindDelimiter(vm_nScanned, nEnd) == std::string::npos) {
            const auto nLine = vm_sBuffer.rfind('\n');
            vm_nScanned = nLine == std::string::npos ? 0 : nLine;
            return false;
        }
        vm_bTrustLength = false;
        vm_nScanned = 0;
        vm_nState = emDef_State::Searched;
        return true;
    }
    m_S_Push(vm_sBuffer.substr(0, vm_nLength));
    vm_sBuffer.erase(0, vm_nLength);
    vm_nState = emDef_State::After;
    return true;
}

bool CMultipartReader::m_F_b_StepAfter()
{
    const auto nText = vm_sBuffer.find_first_not_of("\r\n");
    if (nText == std::string::npos || vm_sBuffer.size() - nText < vm_sDelimiter.size())
        return false;
    if (vm_sBuffer.compare(nText, 2, "--") != 0)
        vm_bTrustLength = false;
    vm_nState = emDef_State::Delimiter;
    return true;
}

bool CMultipartReader::m_F_b_StepSearched()
{
    std::size_t nEnd = 0;
    const auto nBegin = m_F_n_FindDelimiter(vm_nScanned, nEnd);
    if (nBegin != std::string::npos) {
        std::size_t nBody = nBegin;
        if (nBody > 0 && vm_sBuffer[nBody - 1] == '\n')
            --nBody;
        if (nBody > 0 && vm_sBuffer[nBody - 1] == '\r')
            --nBody;
        if (!vm_bOversized && nBody <= MaxPart)
            m_S_Push(vm_sBuffer.substr(0, nBody));
        vm_sBuffer.erase(0, nEnd);
        vm_nState = emDef_State::Head;
        return true;
    }
    // The line that may become a delimiter is looked at again; a line of that length can't.
    const auto nLine = vm_sBuffer.rfind('\n');
    const std::size_t nKeep = nLine == std::string::npos ? 0 : nLine;
    vm_nScanned = vm_sBuffer.size() - nKeep > MaxHead ? vm_sBuffer.size() - 1 : nKeep;
    if (vm_sBuffer.size() > MaxPart + MaxHead) {
        vm_bOversized = true;
        vm_sBuffer.erase(0, vm_nScanned);
        vm_nScanned = 0;
    }
    return false;
}
