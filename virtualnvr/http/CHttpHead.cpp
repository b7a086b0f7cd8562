#include "http/CHttpHead.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdlib>

namespace {

bool SameName(std::string_view sLeft, std::string_view sRight)
{
    return std::equal(sLeft.begin(), sLeft.end(), sRight.begin(), sRight.end(),
                      [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); });
}

std::string Trimmed(std::string_view sText)
{
    const auto nBegin = sText.find_first_not_of(" \t");
    if (nBegin == sText.npos)
        return {};
    return std::string(sText.substr(nBegin, sText.find_last_not_of(" \t") - nBegin + 1));
}

std::string Lower(std::string sText)
{
    std::transform(sText.begin(), sText.end(), sText.begin(), [](unsigned char c) { return std::tolower(c); });
    return sText;
}

} // namespace

bool CHttpHead::m_F_b_Parse(std::string_view sText)
{
    vm_sFirst.clear();
    vm_arLines.clear();
    bool bFirst = true;
    while (!sText.empty()) {
        const auto nEnd = std::min(sText.find('\n'), sText.size());
        std::string_view sLine = sText.substr(0, nEnd);
        sText.remove_prefix(std::min(nEnd + 1, sText.size()));
        if (sLine.ends_with('\r'))
            sLine.remove_suffix(1);
        const auto nColon = sLine.find(':');
        if (bFirst)
            vm_sFirst = sLine;
        else if (nColon != sLine.npos)
            vm_arLines.emplace_back(std::string(sLine.substr(0, nColon)), Trimmed(sLine.substr(nColon + 1)));
        bFirst = false;
    }
    return vm_sFirst.find(' ') != std::string::npos && vm_sFirst.find("HTTP/") != std::string::npos;
}

std::string CHttpHead::m_F_s_Value(std::string_view sName) const
{
    const auto it = std::find_if(vm_arLines.begin(), vm_arLines.end(),
                                 [&](const auto& line) { return SameName(line.first, sName); });
    return it == vm_arLines.end() ? std::string() : it->second;
}

void CHttpHead::m_S_Remove(std::string_view sName)
{
    std::erase_if(vm_arLines, [&](const auto& line) { return SameName(line.first, sName); });
}

void CHttpHead::m_S_Set(std::string_view sName, std::string sValue)
{
    m_S_Remove(sName);
    vm_arLines.emplace_back(std::string(sName), std::move(sValue));
}

std::string CHttpHead::m_F_s_Text() const
{
    std::string sText = vm_sFirst + "\r\n";
    for (const auto& [sName, sValue] : vm_arLines)
        sText += sName + ": " + sValue + "\r\n";
    return sText + "\r\n";
}

std::string CHttpHead::m_F_s_Method() const
{
    return vm_sFirst.substr(0, vm_sFirst.find(' '));
}

std::string CHttpHead::m_F_s_Target() const
{
    const auto nBegin = vm_sFirst.find(' ') + 1;
    return vm_sFirst.substr(nBegin, vm_sFirst.rfind(' ') - nBegin);
}

int CHttpHead::m_F_n_Status() const
{
    return std::atoi(vm_sFirst.c_str() + std::min(vm_sFirst.find(' '), vm_sFirst.size()));
}

bool CHttpHead::m_F_b_KeepAlive() const
{
    const std::string sConnection = Lower(m_F_s_Value("Connection"));
    if (vm_sFirst.find("HTTP/1.0") != std::string::npos)
        return sConnection.find("keep-alive") != std::string::npos;
    return sConnection.find("close") == std::string::npos;
}

CBodyFramer::CBodyFramer(const CHttpHead& objHead, std::string_view sMethod)
{
    const bool bReply = !sMethod.empty();
    const int nStatus = bReply ? objHead.m_F_n_Status() : 0;
    const std::string sLength = objHead.m_F_s_Value("Content-Length");
    if (bReply && (sMethod == "HEAD" || nStatus == 204 || nStatus == 304 || (nStatus >= 100 && nStatus < 200)))
        vm_bDone = true;
    else if (Lower(objHead.m_F_s_Value("Transfer-Encoding")).find("chunked") != std::string::npos)
        vm_nKind = emDef_Kind::Chunked;
    else if (!sLength.empty())
        m_S_SetLength(sLength, 10);
    else if (!bReply)
        vm_bDone = true;
    else
        vm_nKind = emDef_Kind::UntilClose;
}

void CBodyFramer::m_S_SetLength(const std::string& sText, int nBase)
{
    const char* pEnd = sText.data() + sText.size();
    const auto result = std::from_chars(sText.data(), pEnd, vm_nLeft, nBase);
    vm_bBad = result.ec != std::errc() || (result.ptr != pEnd && *result.ptr != ';' && *result.ptr != ' ');
    vm_bDone = !vm_bBad && vm_nKind == emDef_Kind::Counted && vm_nLeft == 0;
}

std::size_t CBodyFramer::m_F_n_Feed(std::string_view sData)
{
    if (vm_nKind == emDef_Kind::UntilClose)
        return sData.size();
    std::size_t nTaken = 0;
    while (!vm_bDone && !vm_bBad && nTaken < sData.size()) {
        const bool bBulk = vm_nKind == emDef_Kind::Counted || vm_nChunk == emDef_Chunk::Data;
        if (!bBulk) {
            m_S_FeedChunkByte(sData[nTaken++]);
            continue;
        }
        const std::size_t nPart = std::min<std::uint64_t>(vm_nLeft, sData.size() - nTaken);
        vm_nLeft -= nPart;
        nTaken += nPart;
        if (vm_nLeft == 0 && vm_nKind == emDef_Kind::Counted)
            vm_bDone = true;
        else if (vm_nLeft == 0)
            vm_nChunk = emDef_Chunk::DataEnd;
    }
    return nTaken;
}

void CBodyFramer::m_S_FeedChunkByte(char c)
{
    if (c != '\n') {
        if (c != '\r' && vm_sLine.size() < 64)
            vm_sLine += c;
        return;
    }
    const std::string sLine = std::exchange(vm_sLine, {});
    if (vm_nChunk == emDef_Chunk::Size) {
        m_S_SetLength(sLine, 16);
        vm_nChunk = vm_nLeft ? emDef_Chunk::Data : emDef_Chunk::Trailer;
    } else if (vm_nChunk == emDef_Chunk::DataEnd) {
        vm_nChunk = emDef_Chunk::Size;
    } else if (sLine.empty()) {
        vm_bDone = true;
    }
}
