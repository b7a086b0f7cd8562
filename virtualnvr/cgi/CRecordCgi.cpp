#include "cgi/CRecordCgi.h"

#include "http/NumberText.h"
#include "records/RecordClock.h"
#include "records/RecordFaults.h"
#include "records/RecordForms.h"

#include <algorithm>

namespace {
constexpr std::uint64_t g_nMaxBytes = 4U << 20, g_nMaxRecords = 400;
constexpr std::size_t g_nMaxImages = 100;
constexpr std::int64_t g_nHeadNumber = -1;

bool TakeNumber(const stDef_CgiRequest& stRequest, const char* pszKey, std::uint64_t nMax, std::uint64_t& nValue)
{
    return ParseNumber(stRequest.m_F_s_Value(pszKey), nValue) && nValue <= nMax;
}

/// Record numbers between commas; each is 0 or more, or the head's.
bool TakeNumbers(std::string_view sText, std::vector<std::int64_t>& arNumbers)
{
    while (arNumbers.size() < g_nMaxImages) {
        const std::size_t nEnd = std::min(sText.find(','), sText.size());
        std::int64_t nNumber = 0;
        if (!ParseNumber(sText.substr(0, nEnd), nNumber) || nNumber < g_nHeadNumber || nNumber > UINT32_MAX)
            return false;
        arNumbers.push_back(nNumber);
        if (nEnd == sText.size())
            return std::find(arNumbers.begin(), arNumbers.end(), g_nHeadNumber) == arNumbers.end() ||
                   arNumbers.size() == 1;
        sText.remove_prefix(nEnd + 1);
    }
    return false;
}

bool TakeKinds(std::string_view sLetters, std::set<emDef_RecordKind>& setKinds)
{
    for (const stDef_RecordKindRow& stRow : g_arRecordKinds)
        if (sLetters.empty() || sLetters.find(stRow.cLetter) != std::string_view::npos)
            setKinds.insert(stRow.eKind);
    return sLetters.find_first_not_of("msat") == std::string_view::npos;
}

bool Holds(std::string_view sMask, int nChannel)
{
    const auto nPlace = static_cast<std::size_t>(nChannel);
    return nPlace < sMask.size() && sMask[nPlace] == '1';
}

bool MayPlay(const stDef_Account& stAccount, int nChannel)
{
    return !stAccount.sPlayback || Holds(*stAccount.sPlayback, nChannel);
}

stDef_CgiReply BadRequest()
{
    return stDef_CgiReply::s_F_o_Plain(400, "ERROR: the request can't be read");
}

stDef_CgiReply Missing()
{
    return stDef_CgiReply::s_F_o_Plain(404, "ERROR: no such file");
}

void AppendBlock(std::string& sReply, std::int64_t nNumber, std::string_view sImage)
{
    nsRecordForms::Append(sReply, static_cast<std::uint64_t>(nNumber), 4);
    nsRecordForms::Append(sReply, sImage.size(), 4);
    sReply += sImage;
    sReply += '\0';
}
} // namespace

std::vector<stDef_CgiRoute> CRecordCgi::m_F_ar_Routes()
{
    using enum emDef_NvrKinds;
    return {
        {Both, "GET", "rpb/info", "", std::bind_front(&CRecordCgi::m_F_o_Info, this)},
        {Both, "GET", "rpb/file", "", std::bind_front(&CRecordCgi::m_F_o_OnFile, this, &CRecordCgi::m_F_o_File)},
        {Both, "GET", "rpb/dat", "", std::bind_front(&CRecordCgi::m_F_o_OnFile, this, &CRecordCgi::m_F_o_Dat)},
        {Both, "GET", "rpb/img", "", std::bind_front(&CRecordCgi::m_F_o_OnFile, this, &CRecordCgi::m_F_o_Img)},
    };
}

/// Lets the file that a request names be answered, if its account may play it; else says why not. Once names were told
/// that lead elsewhere, there is something to fetch by them: a client that falls for them is to be found out.
stDef_CgiReply CRecordCgi::m_F_o_OnFile(OnFile pfnAnswer, const stDef_CgiRequest& stRequest)
{
    const std::string sName = stRequest.m_F_s_Value("name");
    auto stPath = stDef_RecordPath::s_F_o_Parse(sName, vm_objRecordings.m_F_b_PC());
    if (!stPath && vm_bHostile)
        stPath = vm_objRecordings.m_F_o_StandIn(sName);
    if (stPath && MayPlay(stRequest.stAccount, stPath->nChannel))
        return (this->*pfnAnswer)(stRequest, *stPath);
    if (sName.empty())
        return BadRequest();
    return stPath ? stDef_CgiReply::s_F_o_Plain(403, "ERROR: not for this account") : Missing();
}

/// What goes back, spoilt by the faults that are due.
stDef_CgiReply CRecordCgi::m_F_o_Bytes(const stDef_CgiRequest& stRequest, const char* pszReply, std::string sBytes)
{
    stDef_CgiReply stReply;
    stReply.sType = "application/octet-stream";
    stReply.sBody = std::move(sBytes);
    const std::string sTarget = "/" + stRequest.sPath + "?" + stRequest.sQuery;
    if (nsRecordFaults::Play(vm_objFaults, sTarget, pszReply, vm_objRecordings.m_F_b_PC(), stReply.sBody))
        vm_bHostile = true;
    return stReply;
}

stDef_CgiReply CRecordCgi::m_F_o_Info(const stDef_CgiRequest& stRequest)
{
    std::uint64_t nStartMs = 0, nEndMs = 0;
    stDef_RecordSearch stSearch;
    if (!TakeNumber(stRequest, "start", UINT64_MAX, nStartMs) || !TakeNumber(stRequest, "end", UINT64_MAX, nEndMs) ||
        !TakeKinds(stRequest.m_F_s_Value("select"), stSearch.setKinds))
        return BadRequest();
    constexpr std::uint64_t nMaxMs = nsRecordClock::MaxMs;
    stSearch.nStartMs = static_cast<std::int64_t>(std::min(nStartMs, nMaxMs));
    stSearch.nEndMs = static_cast<std::int64_t>(std::min(nEndMs, nMaxMs));
    stSearch.fnWanted = [&, sMask = stRequest.m_F_s_Value("channels")](int nChannel) {
        return Holds(sMask, nChannel) && MayPlay(stRequest.stAccount, nChannel);
    };
    std::string sList;
    if (!vm_objRecordings.m_F_b_PC())
        sList = "ImgVer=" + std::to_string(nsRecordForms::ImageVersion) +
                "\nDatVer=" + std::to_string(nsRecordForms::DataVersion) + "\n";
    for (const std::string& sPath : vm_objRecordings.m_F_ar_IndexFiles(stSearch))
        sList += sPath + "\n";
    stDef_CgiReply stReply = m_F_o_Bytes(stRequest, "info", std::move(sList));
    stReply.sType = "text/plain; charset=utf-8";
    return stReply;
}

stDef_CgiReply CRecordCgi::m_F_o_File(const stDef_CgiRequest& stRequest, const stDef_RecordPath& stPath)
{
    std::uint64_t nFrom = 0, nLength = 0;
    if (!TakeNumber(stRequest, "from", UINT64_MAX, nFrom) || !TakeNumber(stRequest, "length", g_nMaxBytes, nLength))
        return BadRequest();
    auto sBytes = vm_objRecordings.m_F_o_Bytes(stPath, nFrom, nLength);
    const char* pszReply = stPath.eFile == emDef_RecordFile::Index ? "index" : "file";
    return sBytes ? m_F_o_Bytes(stRequest, pszReply, std::move(*sBytes)) : Missing();
}

stDef_CgiReply CRecordCgi::m_F_o_Dat(const stDef_CgiRequest& stRequest, const stDef_RecordPath& stPath)
{
    std::uint64_t nFirst = 0, nCount = 0;
    if (!TakeNumber(stRequest, "first", UINT64_MAX, nFirst) || !TakeNumber(stRequest, "count", g_nMaxRecords, nCount))
        return BadRequest();
    const auto objFile = vm_objRecordings.m_F_o_File(stPath);
    return objFile && stPath.eFile == emDef_RecordFile::Data
               ? m_F_o_Bytes(stRequest, "dat", objFile->m_F_s_Records(nFirst, nCount))
               : Missing();
}

stDef_CgiReply CRecordCgi::m_F_o_Img(const stDef_CgiRequest& stRequest, const stDef_RecordPath& stPath)
{
    std::vector<std::int64_t> arNumbers;
    if (!TakeNumbers(stRequest.m_F_s_Value("records"), arNumbers))
        return BadRequest();
    const auto objFile = vm_objRecordings.m_F_o_File(stPath);
    if (!objFile || stPath.eFile != emDef_RecordFile::Image)
        return Missing();
    std::string sReply;
    for (const std::int64_t nNumber : arNumbers) {
        const auto sImage = nNumber == g_nHeadNumber ? std::optional(objFile->m_F_s_Head())
                                                     : objFile->m_F_o_Image(static_cast<std::uint64_t>(nNumber));
        if (sImage)
            AppendBlock(sReply, nNumber, *sImage);
    }
    return m_F_o_Bytes(stRequest, "img", std::move(sReply));
}
