#include "CCommandLine.h"

#include "http/CFaultTable.h"
#include "records/RecordClock.h"
#include "records/RecordFaults.h"
#include "rtsp/CStreamServer.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iomanip>
#include <iterator>
#include <ostream>

namespace {
struct stDef_Option
{
    const char* pszName;
    const char* pszValue; ///< what the value is; null: the option takes none
    const char* pszHelp;
    bool (*pfnTake)(stDef_CommandLine& stLine, const std::string& sValue);
};

bool TakeNumber(const std::string& s, long nMin, long nMax, long& nOut)
{
    long n = 0;
    const auto [pEnd, eError] = std::from_chars(s.data(), s.data() + s.size(), n);
    if (eError != std::errc() || pEnd != s.data() + s.size() || n < nMin || n > nMax)
        return false;
    nOut = n;
    return true;
}

bool TakeInt(const std::string& s, long nMin, long nMax, int& nOut)
{
    long n = 0;
    const bool bTaken = TakeNumber(s, nMin, nMax, n);
    nOut = bTaken ? static_cast<int>(n) : nOut;
    return bTaken;
}

bool TakeText(const std::string& s, std::string& sOut)
{
    sOut = s;
    return !s.empty();
}

bool TakeKind(stDef_CommandLine& stLine, const std::string& s)
{
    stLine.stRecorder.bPC = s == "pc";
    return s == "pc" || s == "embedded";
}

bool OthersMayRead(const std::string& sFile)
{
    using std::filesystem::perms;
    std::error_code objIgnored;
    const perms ePerms = std::filesystem::status(sFile, objIgnored).permissions();
    return !objIgnored && (ePerms & (perms::group_read | perms::others_read)) != perms::none;
}

/// A line "user:password" an account; empty lines and lines that begin with '#' don't count.
bool TakeAccounts(stDef_CommandLine& stLine, const std::string& sFile)
{
    std::ifstream objFile(sFile);
    std::vector<stDef_Account> arAccounts;
    for (std::string s; std::getline(objFile, s);) {
        if (!s.empty() && s.back() == '\r')
            s.pop_back();
        if (s.empty() || s[0] == '#')
            continue;
        const std::size_t nColon = s.find(':');
        if (nColon == std::string::npos || nColon == 0)
            return false;
        arAccounts.push_back({s.substr(0, nColon), s.substr(nColon + 1)});
    }
    if (OthersMayRead(sFile))
        stLine.arWarnings.push_back("--accounts: \"" + sFile + "\" can be read by other users of this machine");
    const bool bRead = objFile.eof() && !objFile.bad() && !arAccounts.empty();
    if (bRead) {
        stLine.stRecorder.arAccounts = std::move(arAccounts);
        stLine.stRecorder.bStoredAccounts = false; // the passwords of the sample document are known to everybody
    }
    return bRead;
}

bool TakeDips(stDef_CommandLine& stLine, const std::string& s)
{
    const std::size_t nEquals = s.find('=');
    if (nEquals == std::string::npos || nEquals == 0 || s.find(':', nEquals) == std::string::npos)
        return false;
    stLine.stRecorder.arDipsIds.emplace_back(s.substr(0, nEquals), s.substr(nEquals + 1));
    return true;
}

bool TakeRecordTime(stDef_CommandLine& stLine, const std::string& s)
{
    long nMs = 0;
    const bool bTaken = TakeNumber(s, 0, nsRecordClock::MaxMs, nMs);
    stLine.stRecorder.fnNowMs = [nMs] { return std::int64_t(nMs); };
    return bTaken;
}

bool TakeFault(stDef_CommandLine& stLine, const std::string& s)
{
    stLine.arFaults.push_back(s);
    return CFaultTable().m_F_b_Parse(s);
}

bool TakeRecordFault(stDef_CommandLine& stLine, const std::string& s)
{
    stLine.arRecordFaults.push_back(s);
    return CFaultTable(nsRecordFaults::Kinds()).m_F_b_Parse(s);
}

bool TakeStreamFault(stDef_CommandLine& stLine, const std::string& sFault)
{
    stDef_CommandLine::stDef_StreamFault stFault;
    const std::size_t nAt = std::min(sFault.find('@'), sFault.size());
    if (nAt < sFault.size() && !TakeNumber(sFault.substr(nAt + 1), 0, 86400, stFault.nAfterS))
        return false;
    const std::string s = sFault.substr(0, nAt);
    const std::size_t nEquals = s.find('=');
    if (nEquals == std::string::npos || nEquals == 0)
        return false;
    const std::size_t nColon = std::min(s.find(':', nEquals), s.size());
    stFault.sMount = s.substr(0, nEquals);
    stFault.sName = s.substr(nEquals + 1, nColon - nEquals - 1);
    if (nColon < s.size() && !TakeNumber(s.substr(nColon + 1), -86400000, 86400000, stFault.nArg))
        return false;
    const auto& arNames = CStreamServer::s_F_ar_FaultNames();
    stLine.arStreamFaults.push_back(stFault);
    return std::find(arNames.begin(), arNames.end(), stFault.sName) != arNames.end();
}

using Line = stDef_CommandLine;
using Text = const std::string;

// clang-format off
constexpr stDef_Option g_arOptions[] = {
    {"--http-port", "N", "HTTP port; 0 (the default): any free one",
     [](Line& st, Text& s) { return TakeInt(s, 0, 65535, st.stRecorder.nHttpPort); }},
    {"--rtsp-port", "N", "RTSP port; 0 (the default): any free one",
     [](Line& st, Text& s) { return TakeInt(s, 0, 65535, st.stRecorder.nRtspPort); }},
    {"--channels", "N", "channels, 1 to 64 (default 4)",
     [](Line& st, Text& s) { return TakeInt(s, 1, 64, st.stRecorder.nChannels); }},
    {"--kind", "embedded|pc", "kind of recorder to play (default embedded)", TakeKind},
    {"--state", "DIR", "folder of the documents; default: a temporary one, removed at the end",
     [](Line& st, Text& s) { return TakeText(s, st.stRecorder.sStateFolder); }},
    {"--data", "DIR", "folder of the documents' seeds",
     [](Line& st, Text& s) { return TakeText(s, st.stRecorder.sDataFolder); }},
    {"--bind", "ADDR", "numeric address to listen on (default 127.0.0.1)",
     [](Line& st, Text& s) { return TakeText(s, st.stRecorder.sBind); }},
    {"--accounts", "FILE", "accounts, a line \"user:password\" each (default: one for admin)", TakeAccounts},
    {"--card", "FILE", "write a recorder card for import, readable by the user alone",
     [](Line& st, Text& s) { return TakeText(s, st.sCardFile); }},
    {"--dips", "ID=HOST:PORT", "an id that the directory service knows; may be repeated", TakeDips},
    {"--probe-delay", "MS", "how long a camera takes to answer the recorder, 0 to 60000 (default 300)",
     [](Line& st, Text& s) { return TakeInt(s, 0, 60000, st.stRecorder.nProbeDelayMs); }},
    {"--restart-time", "MS", "how long nothing is answered once the clock was set, 0 to 60000 (default 3000)",
     [](Line& st, Text& s) { return TakeInt(s, 0, 60000, st.stRecorder.nRestartMs); }},
    {"--recordings", "HOURS", "how many hours are recorded, 0 to 240 (default 1)",
     [](Line& st, Text& s) { return TakeInt(s, 0, stDef_VirtualNvrConfig::s_nMaxRecordHours, st.stRecorder.nRecordHours); }},
    {"--record-time", "MS", "recordings end at this time, in ms since 1970, and don't grow", TakeRecordTime},
    {"--fault", "PART=NAME[:ARG][xTIMES]", "a fault for each URL that contains PART (\"*\": all); may be repeated", TakeFault},
    {"--record-fault", "PART=NAME[:ARG][xTIMES]", "the same for what the record transfer service answers", TakeRecordFault},
    {"--name", "TEXT", "name of the recorder in its card", [](Line& st, Text& s) { return TakeText(s, st.sName); }},
    {"--stream-fault", "PART=NAME[:ARG][@S]", "a fault for each stream whose path contains PART, from second S on; may be repeated", TakeStreamFault},
    {"--log", nullptr, "print each request on stderr", [](Line& st, Text&) { return st.bLog = true; }},
    {"--help", nullptr, "print this text", [](Line& st, Text&) { return st.bHelp = true; }},
};
// clang-format on
} // namespace

bool CCommandLine::s_F_b_Parse(int nCount, char** ppszArgs, stDef_CommandLine& stLine, std::string& sError)
{
    for (int i = 1; i < nCount; ++i) {
        const std::string sArg = ppszArgs[i];
        const std::size_t nEquals = std::min(sArg.find('='), sArg.size());
        const std::string sName = sArg.substr(0, nEquals);
        const auto* pOption = std::find_if(std::begin(g_arOptions), std::end(g_arOptions),
                                           [&](const stDef_Option& st) { return sName == st.pszName; });
        if (pOption == std::end(g_arOptions)) {
            sError = "unknown option \"" + sName + "\"";
            return false;
        }
        std::string sValue = nEquals < sArg.size() ? sArg.substr(nEquals + 1) : std::string();
        if (pOption->pszValue && nEquals == sArg.size()) {
            if (++i == nCount) {
                sError = sName + " needs a value: " + pOption->pszValue;
                return false;
            }
            sValue = ppszArgs[i];
        }
        if (!pOption->pfnTake(stLine, sValue)) {
            sError = sName;
            sError.append(": \"").append(sValue).append("\" isn't ").append(pOption->pszValue);
            sError += " as it has to be";
            return false;
        }
    }
    return true;
}

void CCommandLine::s_S_PrintHelp(std::ostream& objOut)
{
    objOut << "virtualnvr [options]\nA network video recorder without hardware: HTTP with documents, RTSP with live "
              "streams.\nPrints \"http <port>\" and \"rtsp <port>\" and runs until it is interrupted.\n\n";
    for (const stDef_Option& st : g_arOptions) {
        const std::string sLeft = std::string(st.pszName) + (st.pszValue ? std::string(" ") + st.pszValue : "");
        objOut << "  " << std::left << std::setw(38) << sLeft << ' ' << st.pszHelp << '\n';
    }
    for (const auto& [pszOption, pKinds] :
         {std::pair("--fault", &CFaultTable::s_F_ar_Kinds()), std::pair("--record-fault", &nsRecordFaults::Kinds())}) {
        objOut << "\nFaults of " << pszOption << ":\n";
        for (const stDef_FaultKind& stKind : *pKinds)
            objOut << "  " << std::setw(20) << stKind.sName << ' ' << stKind.sHelp << '\n';
    }
    objOut << "\nFaults of --stream-fault:\n ";
    for (const auto& sName : CStreamServer::s_F_ar_FaultNames())
        objOut << ' ' << sName;
    objOut << '\n';
}
