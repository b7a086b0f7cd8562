#include "CFaultTable.h"

#include <algorithm>
#include <charconv>

namespace {

using enum stDef_FaultKind::emDef_When;

template <typename Number>
bool ParseNumber(std::string_view sText, Number& nValue)
{
    const auto result = std::from_chars(sText.data(), sText.data() + sText.size(), nValue);
    return !sText.empty() && result.ec == std::errc() && result.ptr == sText.data() + sText.size();
}

} // namespace

const std::vector<stDef_FaultKind>& CFaultTable::s_F_ar_Kinds()
{
    static const std::vector<stDef_FaultKind> s_arKinds = {
        {"refuse", AtOnce, "resets the connection"},
        {"silence", AtOnce, "never answers"},
        {"endless-headers", AtOnce, "sends header lines without end"},
        {"401", AtOnce, "refuses every login"},
        {"changing-challenge", AtOnce, "asks for another kind of login each time"},
        {"redirect", AtOnce, "sends the client elsewhere (arg: status, 302)"},
        {"status", AtOnce, "answers with a status (arg, 500)"},
        {"garbage", AtOnce, "answers with bytes that are no HTTP"},
        {"huge", AtOnce, "sends a huge body (arg: MiB, 200)"},
        {"deep", AtOnce, "sends deeply nested elements (arg, 100000)"},
        {"entity-bomb", AtOnce, "sends entities that multiply"},
        {"empty", AtOnce, "answers without a body"},
        {"endless-chunks", AtOnce, "sends chunks without end"},
        {"bad-chunks", AtOnce, "sends chunks with nonsense for lengths"},
        {"dips-no-colon", AtOnce, "directory answer without a port"},
        {"dips-no-http", AtOnce, "directory answer without an address"},
        {"close-after-login", LoggedIn, "closes the connection on a request that logs in"},
        {"stale-nonce", LoggedIn, "calls the login stale, once a connection"},
        {"slow", OnReply, "sends slowly (arg: bytes a second, 1)"},
        {"delay", OnReply, "answers late (arg: ms, 1000)"},
        {"cut-head", OnReply, "closes inside the head (arg: at byte, 20)"},
        {"cut-body", OnReply, "closes inside the body (arg: at byte, 0)"},
        {"short-length", OnReply, "announces half of the body"},
        {"long-length", OnReply, "announces more body than there is, and closes"},
        {"huge-length", OnReply, "announces a length beyond 64 bits"},
        {"negative-length", OnReply, "announces a negative length"},
        {"chunked", OnReply, "sends the body in chunks (arg: bytes each, 100)"},
        {"no-root-end", OnReply, "leaves out the end of the document"},
        {"cut-utf8", OnReply, "ends the body inside a character"},
        {"wrong-encoding", OnReply, "sends the body as UTF-16 and calls it UTF-8"},
    };
    return s_arKinds;
}

const stDef_FaultKind* CFaultTable::s_F_p_Kind(std::string_view sName)
{
    const auto& arKinds = s_F_ar_Kinds();
    const auto it =
        std::find_if(arKinds.begin(), arKinds.end(), [&](const auto& stKind) { return stKind.sName == sName; });
    return it == arKinds.end() ? nullptr : &*it;
}

std::vector<std::string_view> CFaultTable::s_F_ar_Names()
{
    std::vector<std::string_view> arNames;
    for (const stDef_FaultKind& stKind : s_F_ar_Kinds())
        arNames.push_back(stKind.sName);
    return arNames;
}

bool CFaultTable::m_F_b_Set(const std::string& sUrlPart, const stDef_Fault& stFault)
{
    if (!s_F_p_Kind(stFault.sName))
        return false;
    const std::lock_guard lock(vm_objMutex);
    vm_arRows.insert(vm_arRows.begin(), {sUrlPart, stFault});
    return true;
}

bool CFaultTable::m_F_b_Parse(const std::string& sText)
{
    const auto nEqual = sText.rfind('=');
    if (nEqual == std::string::npos || nEqual == 0)
        return false;
    stDef_Fault stFault;
    std::string sFault = sText.substr(nEqual + 1);
    // A name may hold an x of its own: only digits behind one make it the number of times.
    const auto nTimes = sFault.rfind('x');
    if (nTimes != std::string::npos && ParseNumber(std::string_view(sFault).substr(nTimes + 1), stFault.nTimes))
        sFault.resize(nTimes);
    const auto nColon = sFault.find(':');
    if (nColon != std::string::npos && !ParseNumber(std::string_view(sFault).substr(nColon + 1), stFault.nArg))
        return false;
    stFault.sName = sFault.substr(0, nColon);
    return stFault.nTimes != 0 && m_F_b_Set(sText.substr(0, nEqual), stFault);
}

void CFaultTable::m_S_Clear()
{
    const std::lock_guard lock(vm_objMutex);
    vm_arRows.clear();
}

const CFaultTable::stDef_Row* CFaultTable::m_F_p_Row(const std::string& sUrl) const
{
    const auto it = std::find_if(vm_arRows.begin(), vm_arRows.end(), [&](const stDef_Row& stRow) {
        return stRow.stFault.nTimes != 0 && (stRow.sUrlPart == "*" || sUrl.find(stRow.sUrlPart) != std::string::npos);
    });
    return it == vm_arRows.end() ? nullptr : &*it;
}

std::optional<stDef_Fault> CFaultTable::m_F_o_Find(const std::string& sUrl) const
{
    const std::lock_guard lock(vm_objMutex);
    const stDef_Row* pRow = m_F_p_Row(sUrl);
    return pRow ? std::optional(pRow->stFault) : std::nullopt;
}

std::optional<stDef_Fault> CFaultTable::m_F_o_Take(const std::string& sUrl)
{
    const std::lock_guard lock(vm_objMutex);
    auto* pRow = const_cast<stDef_Row*>(m_F_p_Row(sUrl));
    if (!pRow)
        return std::nullopt;
    const stDef_Fault stFault = pRow->stFault;
    if (pRow->stFault.nTimes > 0)
        --pRow->stFault.nTimes;
    return stFault;
}
