#include "host/bedrock/CMultipartReader.h"

#include <algorithm>
#include <charconv>

namespace {

constexpr std::string_view Blanks = " \t\r\n";

char Lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool StartsWithNoCase(std::string_view sText, std::string_view sStart)
{
    return sText.size() >= sStart.size() &&
           std::equal(sStart.begin(), sStart.end(), sText.begin(), [](char a, char b) { return Lower(a) == Lower(b); });
}

std::string_view WithoutLeading(std::string_view sText, std::string_view sSet)
{
    return sText.substr(std::min(sText.find_first_not_of(sSet), sText.size()));
}

std::string_view Trimmed(std::string_view sText)
{
    sText = WithoutLeading(sText, Blanks);
    return sText.substr(0, sText.find_last_not_of(Blanks) + 1);
}

/// Value of the parameter "boundary" of a Content-Type, without quotes.
std::string_view Boundary(std::string_view sContentType)
{
    if (!StartsWithNoCase(Trimmed(sContentType), "multipart/"))
        return {};
    constexpr std::string_view sKey = "boundary=";
    for (auto nNext = sContentType.find(';'); nNext != sContentType.npos; nNext = sContentType.find(';')) {
        sContentType.remove_prefix(nNext + 1);
        const std::string_view sParam = WithoutLeading(sContentType, Blanks);
        if (!StartsWithNoCase(sParam, sKey))
            continue;
        const std::string_view sValue = sParam.substr(sKey.size());
        if (sValue.starts_with('"'))
            return sValue.substr(1, sValue.find('"', 1) - 1);
        return Trimmed(sValue.substr(0, sValue.find(';')));
    }
    return {};
}

/// The number of a Content-Length line; nothing for any other line, or a number that is none or doesn't fit.
std::optional<std::size_t> ContentLength(std::string_view sLine)
{
    constexpr std::string_view sKey = "content-length:";
    if (!StartsWithNoCase(sLine, sKey))
        return std::nullopt;
    const std::string_view sNumber = Trimmed(sLine.substr(sKey.size()));
    const char* pEnd = sNumber.data() + sNumber.size();
    std::size_t nLength = 0;
    const auto result = std::from_chars(sNumber.data(), pEnd, nLength);
    return result.ec == std::errc() && result.ptr == pEnd ? std::optional(nLength) : std::nullopt;
}

/// `sBody` without the line end that belongs to the delimiter behind it.
std::string_view WithoutLineEnd(std::string_view sBody)
{
    if (sBody.ends_with('\n'))
        sBody.remove_suffix(1);
    if (sBody.ends_with('\r'))
        sBody.remove_suffix(1);
    return sBody;
}

} // namespace

void CMultipartReader::m_S_Begin(std::string_view sContentType)
{
    *this = CMultipartReader();
    vm_sBoundary = WithoutLeading(Boundary(sContentType), "-");
    if (!vm_sBoundary.empty())
        vm_nState = emDef_State::Outside;
}

void CMultipartReader::m_S_Feed(const char* pData, std::size_t nSize)
{
    if (vm_nState == emDef_State::Whole) {
        vm_bOversized |= nSize > MaxPart - vm_sBuffer.size();
        if (!vm_bOversized)
            vm_sBuffer.append(pData, nSize);
        return;
    }
    vm_sBuffer.append(pData, nSize);
    while (m_F_b_Step()) {
    }
    vm_sBuffer.erase(0, vm_nStart);
    vm_nLine -= vm_nStart;
    vm_nScanned -= vm_nStart;
    vm_nStart = 0;
}

void CMultipartReader::m_S_End()
{
    const std::string_view sLine = std::string_view(vm_sBuffer).substr(vm_nLine);
    if (vm_nState == emDef_State::Whole && !vm_bOversized)
        m_S_Push(std::move(vm_sBuffer));
    else if (vm_nState != emDef_State::Whole && m_F_n_Kind(sLine) != emDef_Line::Other)
        m_S_Feed("\n", 1); // the last delimiter may end without a line end
    else if (vm_nState == emDef_State::Body && vm_nLength && vm_sBuffer.size() >= *vm_nLength)
        m_S_Push(vm_sBuffer.substr(0, *vm_nLength));
    vm_sBuffer.clear();
    vm_nStart = vm_nLine = vm_nScanned = 0;
    vm_nState = emDef_State::Outside;
}

bool CMultipartReader::m_F_b_Pop(std::string& sPart)
{
    if (vm_arParts.empty())
        return false;
    sPart = std::move(vm_arParts.front());
    vm_arParts.pop_front();
    vm_nQueuedBytes -= sPart.size();
    return true;
}

void CMultipartReader::m_S_Push(std::string sPart)
{
    if (sPart.empty() || sPart.size() > MaxPart)
        return;
    vm_nQueuedBytes += sPart.size();
    vm_arParts.push_back(std::move(sPart));
    while (vm_arParts.size() > MaxQueued || (vm_arParts.size() > 1 && vm_nQueuedBytes > MaxQueuedBytes)) {
        vm_nQueuedBytes -= vm_arParts.front().size();
        vm_arParts.pop_front();
    }
}

bool CMultipartReader::m_F_b_Step()
{
    switch (vm_nState) {
    case emDef_State::Outside:
        return m_F_b_StepOutside();
    case emDef_State::Head:
        return m_F_b_StepHead();
    case emDef_State::Body:
        return m_F_b_StepBody();
    case emDef_State::Whole:
        break;
    }
    return false;
}

/// The next whole line, without its LF; false if it hasn't come yet.
bool CMultipartReader::m_F_b_NextLine(std::string_view& sLine)
{
    const auto nEnd = vm_sBuffer.find('\n', vm_nScanned);
    if (nEnd == std::string::npos) {
        vm_nScanned = vm_sBuffer.size();
        return false;
    }
    sLine = std::string_view(vm_sBuffer).substr(vm_nLine, nEnd - vm_nLine);
    vm_nLine = vm_nScanned = nEnd + 1;
    return true;
}

CMultipartReader::emDef_Line CMultipartReader::m_F_n_Kind(std::string_view sLine) const
{
    const std::string_view sText = WithoutLeading(sLine, "-");
    if (!sText.starts_with(vm_sBoundary))
        return emDef_Line::Other;
    const std::string_view sBehind = Trimmed(sText.substr(vm_sBoundary.size()));
    if (sBehind.empty())
        return emDef_Line::Delimiter;
    return sBehind == "--" ? emDef_Line::Closing : emDef_Line::Other;
}

bool CMultipartReader::m_F_b_MayBecomeDelimiter(std::string_view sBegun) const
{
    if (sBegun.size() > MaxHead)
        return false;
    const std::string_view sText = WithoutLeading(sBegun, "-");
    if (sText.size() < vm_sBoundary.size())
        return std::string_view(vm_sBoundary).starts_with(sText);
    return m_F_n_Kind(sBegun) != emDef_Line::Other || m_F_n_Kind(std::string(sBegun) + "-") != emDef_Line::Other;
}

void CMultipartReader::m_S_Leave(emDef_Line nDelimiter)
{
    vm_nStart = vm_nLine;
    vm_nHeadBytes = 0;
    vm_nLength.reset();
    vm_bBehindCounted = false;
    vm_nState = nDelimiter == emDef_Line::Delimiter ? emDef_State::Head : emDef_State::Outside;
}

/// Gives up all bytes before `nEnd`, inside a line that is too long to mean anything: a zero byte stands for it, which
/// no delimiter has.
void CMultipartReader::m_S_DropUpTo(std::size_t nEnd)
{
    vm_nStart = vm_nLine = nEnd - 1;
    vm_sBuffer[vm_nLine] = '\0';
}

bool CMultipartReader::m_F_b_StepOutside()
{
    std::string_view sLine;
    if (!m_F_b_NextLine(sLine)) {
        if (vm_sBuffer.size() - vm_nLine > MaxHead)
            m_S_DropUpTo(vm_sBuffer.size());
        return false;
    }
    const emDef_Line nKind = m_F_n_Kind(sLine);
    const bool bBlank = Trimmed(sLine).empty();
    if (vm_bBehindCounted && nKind == emDef_Line::Other && !bBlank)
        vm_bTrustLength = false;
    vm_bBehindCounted &= bBlank;
    vm_nStart = vm_nLine;
    if (nKind != emDef_Line::Other)
        m_S_Leave(nKind);
    return true;
}

bool CMultipartReader::m_F_b_StepHead()
{
    std::string_view sLine;
    const bool bLine = m_F_b_NextLine(sLine);
    const std::size_t nBytes = vm_nHeadBytes + (bLine ? sLine.size() + 1 : vm_sBuffer.size() - vm_nLine);
    if (nBytes > MaxHead) {
        m_S_Leave(emDef_Line::Closing);
        return true;
    }
    if (!bLine)
        return false;
    vm_nHeadBytes = nBytes;
    vm_nStart = vm_nLine;
    if (const emDef_Line nKind = m_F_n_Kind(sLine); nKind != emDef_Line::Other) {
        m_S_Leave(nKind);
    } else if (Trimmed(sLine).empty()) {
        vm_bOversized = false;
        vm_nState = emDef_State::Body;
    } else if (const auto nLength = ContentLength(sLine)) {
        vm_nLength = nLength;
    }
    return true;
}

bool CMultipartReader::m_F_b_StepBody()
{
    if (!vm_bTrustLength || vm_nLength.value_or(MaxPart + 1) > MaxPart)
        vm_nLength.reset();
    const std::size_t nEnd = vm_nLength ? vm_nStart + *vm_nLength : std::string::npos;
    std::string_view sLine;
    for (std::size_t nLine = vm_nLine; nLine < nEnd && m_F_b_NextLine(sLine); nLine = vm_nLine) {
        const emDef_Line nKind = m_F_n_Kind(sLine);
        if (nKind == emDef_Line::Other)
            continue;
        vm_bTrustLength &= !vm_nLength; // the part ends before its length
        if (!vm_bOversized)
            m_S_Push(std::string(WithoutLineEnd(std::string_view(vm_sBuffer).substr(vm_nStart, nLine - vm_nStart))));
        m_S_Leave(nKind);
        return true;
    }
    if (!vm_nLength) {
        m_S_BoundBody();
        return false;
    }
    if (vm_sBuffer.size() < nEnd)
        return false;
    if (vm_nLine < nEnd && m_F_b_MayBecomeDelimiter(std::string_view(vm_sBuffer).substr(vm_nLine)))
        return false;
    m_S_Push(vm_sBuffer.substr(vm_nStart, *vm_nLength));
    vm_nLine = vm_nScanned = nEnd;
    m_S_Leave(emDef_Line::Closing);
    vm_bBehindCounted = true;
    return true;
}

/// Drops a body that has grown beyond the bound, up to the line that may still be the delimiter.
void CMultipartReader::m_S_BoundBody()
{
    const std::size_t nLineEnd = 2; // that of the delimiter
    vm_bOversized |= vm_sBuffer.size() - vm_nStart > MaxPart + MaxHead + nLineEnd;
    if (!vm_bOversized)
        return;
    vm_nStart = vm_nLine;
    if (vm_sBuffer.size() - vm_nLine > MaxHead)
        m_S_DropUpTo(vm_sBuffer.size());
}
