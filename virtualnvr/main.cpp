#include "CAtomicFile.h"
#include "CCommandLine.h"
#include "CVirtualNvr.h"
#include "http/CFaultTable.h"
#include "http/CRequestLog.h"
#include "rtsp/CStreamServer.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <iostream>
#include <pthread.h>
#include <pugixml.hpp>
#include <sstream>

namespace {
constexpr int g_nExitFailed = 1, g_nExitUsage = 2;
constexpr int g_nProbeDelayMs = 300; // slow enough to be seen
constexpr int g_nRestartMs = 3000;

int Fail(int nExit, const std::string& sError)
{
    std::cerr << "virtualnvr: " << sError << '\n';
    return nExit;
}

/// Seeds beside an installed program; empty where it runs from its build folder, which knows its own.
std::string InstalledSeeds()
{
    std::error_code objError;
    const auto objProgram = std::filesystem::read_symlink("/proc/self/exe", objError);
    const auto objSeeds = objProgram.parent_path().parent_path() / "share" / "fleetlink" / "virtualnvr";
    return !objError && std::filesystem::is_directory(objSeeds, objError) ? objSeeds.string() : std::string();
}

/// The document that the sample host imports to know this recorder.
bool WriteCard(const stDef_CommandLine& stLine, const CVirtualNvr& objRecorder, std::string& sError)
{
    const stDef_VirtualNvrConfig& stRecorder = stLine.stRecorder;
    const bool bAny = stRecorder.sBind == "0.0.0.0" || stRecorder.sBind == "::";
    pugi::xml_document objDocument;
    pugi::xml_node objCard = objDocument.append_child("root").append_child("Recorder");
    objCard.append_attribute("Name") = stLine.sName.c_str();
    objCard.append_attribute("Type") = stRecorder.bPC ? 0 : 1;
    objCard.append_attribute("IP") = bAny ? "127.0.0.1" : stRecorder.sBind.c_str();
    objCard.append_attribute("HttpPort") = objRecorder.m_F_n_HttpPort();
    objCard.append_attribute("RtspPort") = objRecorder.m_F_n_RtspPort();
    objCard.append_attribute("UID") = stRecorder.arAccounts.front().sUser.c_str();
    objCard.append_attribute("ClearPWD") = stRecorder.arAccounts.front().sPassword.c_str();
    objCard.append_attribute("Channels") = stRecorder.nChannels;
    std::ostringstream objText;
    objDocument.save(objText, "  ", pugi::format_indent | pugi::format_no_declaration);
    return CAtomicFile::s_F_b_Write(stLine.sCardFile, objText.str(), 0600, sError);
}

bool SetFaults(const stDef_CommandLine& stLine, CVirtualNvr& objRecorder, std::string& sError)
{
    for (const std::string& sFault : stLine.arFaults)
        objRecorder.m_F_o_Faults().m_F_b_Parse(sFault);
    for (const std::string& sFault : stLine.arRecordFaults)
        objRecorder.m_F_o_RecordFaults().m_F_b_Parse(sFault);
    for (const auto& stFault : stLine.arStreamFaults) {
        const char* pszName =
            stFault.nAfterS == 0 ? stFault.sName.c_str() : "none"; // a later one is tried for its path
        if (!objRecorder.m_F_o_Streams().m_F_b_SetFault(stFault.sMount, pszName, stFault.nArg)) {
            sError = "--stream-fault: no stream has \"" + stFault.sMount + "\" in its path";
            return false;
        }
    }
    return true;
}

/// Waits for one of the signals; the stream faults that are due later begin meanwhile.
void Wait(const sigset_t& stSignals, const stDef_CommandLine& stLine, CVirtualNvr& objRecorder)
{
    const auto tmStart = std::chrono::steady_clock::now();
    auto arLater = stLine.arStreamFaults;
    std::erase_if(arLater, [](const auto& st) { return st.nAfterS == 0; });
    std::sort(arLater.begin(), arLater.end(), [](const auto& a, const auto& b) { return a.nAfterS < b.nAfterS; });
    for (const auto& stFault : arLater) {
        const auto tmLeft = tmStart + std::chrono::seconds(stFault.nAfterS) - std::chrono::steady_clock::now();
        const auto nLeft = std::max<long>(std::chrono::duration_cast<std::chrono::milliseconds>(tmLeft).count(), 0);
        const timespec stLeft{nLeft / 1000, nLeft % 1000 * 1000000};
        if (sigtimedwait(&stSignals, nullptr, &stLeft) > 0)
            return;
        objRecorder.m_F_o_Streams().m_F_b_SetFault(stFault.sMount, stFault.sName, stFault.nArg);
    }
    int nSignal = 0;
    sigwait(&stSignals, &nSignal);
}
} // namespace

int main(int nCount, char** ppszArgs)
{
    stDef_CommandLine stLine;
    stLine.stRecorder.nProbeDelayMs = g_nProbeDelayMs;
    stLine.stRecorder.nRestartMs = g_nRestartMs;
    std::string sError;
    if (!CCommandLine::s_F_b_Parse(nCount, ppszArgs, stLine, sError))
        return Fail(g_nExitUsage, sError + " (--help lists all options)");
    for (const std::string& sWarning : stLine.arWarnings)
        std::cerr << "virtualnvr: " << sWarning << '\n';
    if (stLine.bHelp) {
        CCommandLine::s_S_PrintHelp(std::cout);
        return 0;
    }
    // Blocked before any thread begins, so that only the wait below takes them.
    sigset_t stSignals;
    sigemptyset(&stSignals);
    sigaddset(&stSignals, SIGINT);
    sigaddset(&stSignals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &stSignals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);

    if (stLine.stRecorder.sDataFolder.empty())
        stLine.stRecorder.sDataFolder = InstalledSeeds();
    CVirtualNvr objRecorder;
    if (stLine.bLog)
        objRecorder.m_F_o_Log().m_S_SetEcho(&std::cerr);
    if (!objRecorder.m_F_b_Start(stLine.stRecorder, sError) || !SetFaults(stLine, objRecorder, sError))
        return Fail(g_nExitFailed, sError);
    if (!stLine.sCardFile.empty() && !WriteCard(stLine, objRecorder, sError))
        return Fail(g_nExitFailed, "--card: " + sError);
    std::cout << "http " << objRecorder.m_F_n_HttpPort() << "\nrtsp " << objRecorder.m_F_n_RtspPort() << std::endl;
    Wait(stSignals, stLine, objRecorder);
    objRecorder.m_S_Stop();
    return 0;
}
