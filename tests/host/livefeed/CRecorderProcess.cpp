#include "CRecorderProcess.h"

#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <sstream>

#include "CVirtualNvr.h"
#include "rtsp/CStreamServer.h"

CRecorderProcess::~CRecorderProcess()
{
    if (vm_nProcess < 0)
        return;
    close(vm_nSocket); // the end of its input is the end of the process
    waitpid(vm_nProcess, nullptr, 0);
}

bool CRecorderProcess::m_F_b_Start()
{
    int arEnds[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, arEnds) != 0)
        return false;
    vm_nProcess = fork();
    if (vm_nProcess == 0) {
        setenv("TSAN_OPTIONS", "report_bugs=0", 1);
        dup2(arEnds[1], STDIN_FILENO);
        dup2(arEnds[1], STDOUT_FILENO);
        execl("/proc/self/exe", "recorder", "--recorder", nullptr);
        _exit(127);
    }
    close(arEnds[1]);
    vm_nSocket = arEnds[0];
    vm_nHttpPort = static_cast<int>(m_F_n_Ask("http"));
    vm_nRtspPort = static_cast<int>(m_F_n_Ask("rtsp"));
    return vm_nHttpPort > 0 && vm_nRtspPort > 0;
}

bool CRecorderProcess::m_F_b_SetFault(const std::string& sMount, const std::string& sName, long nArg)
{
    return m_F_n_Ask("fault " + sMount + ' ' + sName + ' ' + std::to_string(nArg)) == 1;
}

int CRecorderProcess::m_F_n_Sessions()
{
    return static_cast<int>(m_F_n_Ask("sessions"));
}

long CRecorderProcess::m_F_n_Ask(const std::string& sLine)
{
    const std::string sSent = sLine + '\n';
    if (send(vm_nSocket, sSent.data(), sSent.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(sSent.size()))
        return -1;
    std::string sReply;
    char c = 0;
    while (read(vm_nSocket, &c, 1) == 1 && c != '\n')
        sReply += c;
    return sReply.empty() ? -1 : std::stol(sReply);
}

int CRecorderProcess::s_F_n_Main()
{
    CVirtualNvr objNvr;
    stDef_VirtualNvrConfig stConfig;
    stConfig.arAccounts.push_back({"odd", OddPassword});
    std::string sError;
    if (!objNvr.m_F_b_Start(stConfig, sError)) {
        std::cerr << sError << std::endl;
        return 1;
    }
    for (std::string sLine; std::getline(std::cin, sLine);) {
        std::istringstream words(sLine);
        std::string sWord, sMount, sName;
        long nArg = 0;
        words >> sWord >> sMount >> sName >> nArg;
        if (sWord == "fault")
            std::cout << objNvr.m_F_o_Streams().m_F_b_SetFault(sMount, sName, nArg) << std::endl;
        else if (sWord == "sessions")
            std::cout << objNvr.m_F_o_Streams().m_F_n_Sessions() << std::endl;
        else
            std::cout << (sWord == "http" ? objNvr.m_F_n_HttpPort() : objNvr.m_F_n_RtspPort()) << std::endl;
    }
    return 0;
}
