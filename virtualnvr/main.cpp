#include "CAtomicFile.h"
#include "CCommandLine.h"
#include "CFaultTable.h"
#include "CRequestLog.h"
#include "CStreamServer.h"
#include "CVirtualNvr.h"

#include <csignal>
#include <filesystem>
#include <iostream>
#include <pthread.h>
#include <pugixml.hpp>
#include <sstream>

namespace {
constexpr int g_nExitFailed = 1, g_nExitUsage = 2;

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
    objCard.append_attribute("Name") = "Virtual recorder";
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
    for (const auto& stFault : stLine.arStreamFaults)
        if (!objRecorder.m_F_o_Streams().m_F_b_SetFault(stFault.sMount, stFault.sName, stFault.nArg)) {
            sError = "--stream-fault: no stream has \"" + stFault.sMount + "\" in its path";
            return false;
        }
    return true;
}
} // namespace

int main(int nCount, char** ppszArgs)
{
    stDef_CommandLine stLine;
    std::string sError;
    if (!CCommandLine::s_F_b_Parse(nCount, ppszArgs, stLine, sError))
        return Fail(g_nExitUsage, sError + " (--help lists all options)");
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
    int nSignal = 0;
    sigwait(&stSignals, &nSignal);
    objRecorder.m_S_Stop();
    return 0;
}
