#include "http/CFaultTable.h"

#include "http/NumberText.h"

#include <algorithm>

namespace {

using enum stDef_FaultKind::emDef_When;

const stDef_FaultKind* KindOf(const std::vector<stDef_FaultKind>& arKinds, std::string_view sName)
{
    const auto it =
        std::find_if(arKinds.begin(), arKinds.end(), [&](const auto& stKind) { return stKind.sName == sName; });
    return it == arKinds.end() ? nullptr : &*it;
}

} // namespace

const std::vector<stDef_FaultKind>& CFaultTable::s_F_ar_Kinds()
{
    constexpr long nManyBytes = 1L << 30;
    static const std::vector<stDef_FaultKind> s_arKinds = {
        {"refuse", AtOnce, {}, "resets the connection"},
        {"silence", AtOnce, {}, "never answers"},
        {"endless-headers", AtOnce, {}, "sends header lines without end"},
        {"401", AtOnce, {}, "refuses every login"},
        {"changing-challenge", AtOnce, {}, "asks for another kind of login each time"},
        {"redirect",
         AtOnce,
         {302, 300, 399},
         "sends the client to another host, next time to another page (arg: status, 302)"},
        {"status", AtOnce, {500, 200, 599}, "answers with a status (arg, 500)"},
        {"garbage", AtOnce, {}, "answers with bytes that are no HTTP"},
        {"huge", AtOnce, {200, 1, 1L << 20}, "sends a huge body (arg: MiB, 200)"},
        {"deep", AtOnce, {100000, 1, 10000000}, "sends deeply nested elements (arg, 100000)"},
        {"entity-bomb", AtOnce, {}, "sends entities that multiply"},
        {"empty", AtOnce, {}, "answers without a body"},
        {"endless-chunks", AtOnce, {}, "sends chunks without end"},
        {"bad-chunks", AtOnce, {}, "sends chunks with nonsense for lengths"},
        {"dips-no-colon", AtOnce, {}, "directory answer without a port"},
        {"dips-no-http", AtOnce, {}, "directory answer without an address"},
        {"close-after-login", LoggedIn, {}, "closes the connection on a request that logs in"},
        {"stale-nonce", Unlogged, {}, "calls the login stale, once a connection"},
        {"slow", OnBytes, {1, 1, nManyBytes}, "sends slowly (arg: bytes a second, 1)"},
        {"delay", OnBytes, {1000, 1, 3600000}, "answers late (arg: ms, 1000)"},
        {"cut-head", OnBytes, {20, 1, nManyBytes}, "closes inside the head (arg: at byte, 20)"},
        {"cut-body", OnBytes, {0, 0, nManyBytes}, "closes inside the body (arg: at byte, 0)"},
        {"short-length", OnReply, {}, "announces half of the body"},
        {"long-length", OnReply, {}, "announces more body than there is, and closes"},
        {"huge-length", OnReply, {}, "announces a length beyond 64 bits"},
        {"negative-length", OnReply, {}, "announces a negative length"},
        {"chunked", OnReply, {100, 1, nManyBytes}, "sends the body in chunks (arg: bytes each, 100)"},
        {"no-root-end", OnReply, {}, "leaves out the end of the document"},
        {"cut-utf8", OnReply, {}, "ends the body inside a character"},
        {"wrong-encoding", OnReply, {}, "sends the body as UTF-16 and calls it UTF-8"},
    };
    return s_arKinds;
}

const stDef_FaultKind* CFaultTable::s_F_p_Kind(std::string_view sName)
{
    return KindOf(s_F_ar_Kinds(), sName);
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
    const stDef_FaultKind* pKind = KindOf(vm_arKinds, stFault.sName);
    if (!pKind)
        return false;
    stDef_Row stRow{sUrlPart, stFault};
    stRow.stFault.nPlayed = 0;
    long& nArg = stRow.stFault.nArg;
    nArg = nArg ? nArg : pKind->stArg.nDefault;
    if (nArg < pKind->stArg.nMin || nArg > pKind->stArg.nMax)
        return false;
    const std::lock_guard lock(vm_objMutex);
    vm_arRows.insert(vm_arRows.begin(), std::move(stRow));
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
    if (nTimes != std::string::npos && ParseNumber(std::string_view(sFault).substr(nTimes + 1), stFault.nTimes)) {
        sFault.resize(nTimes);
        if (stFault.nTimes < 1)
            return false;
    }
    const auto nColon = sFault.find(':');
    if (nColon != std::string::npos && !ParseNumber(std::string_view(sFault).substr(nColon + 1), stFault.nArg))
        return false;
    stFault.sName = sFault.substr(0, nColon);
    return m_F_b_Set(sText.substr(0, nEqual), stFault);
}

void CFaultTable::m_S_Clear()
{
    const std::lock_guard lock(vm_objMutex);
    vm_arRows.clear();
}

std::size_t CFaultTable::m_F_n_Row(const std::string& sUrl, std::string_view sName) const
{
    const auto it = std::find_if(vm_arRows.begin(), vm_arRows.end(), [&](const stDef_Row& stRow) {
        return stRow.stFault.nTimes != 0 && (sName.empty() || sName == stRow.stFault.sName) &&
               (stRow.sUrlPart == "*" || sUrl.find(stRow.sUrlPart) != std::string::npos);
    });
    return static_cast<std::size_t>(it - vm_arRows.begin());
}

std::optional<stDef_Fault> CFaultTable::m_F_o_Find(const std::string& sUrl) const
{
    const std::lock_guard lock(vm_objMutex);
    const std::size_t nRow = m_F_n_Row(sUrl, {});
    return nRow < vm_arRows.size() ? std::optional(vm_arRows[nRow].stFault) : std::nullopt;
}

std::optional<stDef_Fault> CFaultTable::m_F_o_Take(const std::string& sUrl, std::string_view sName)
{
    const std::lock_guard lock(vm_objMutex);
    const std::size_t nRow = m_F_n_Row(sUrl, sName);
    if (nRow == vm_arRows.size())
        return std::nullopt;
    stDef_Fault& stFault = vm_arRows[nRow].stFault;
    const stDef_Fault stTaken = stFault;
    ++stFault.nPlayed;
    if (stFault.nTimes > 0)
        --stFault.nTimes;
    return stTaken;
}
