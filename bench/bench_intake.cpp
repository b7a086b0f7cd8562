#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QThread>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "BenchTable.h"
#include "Benches.h"
#include "core/CRtspInfo_CMS.h"
#include "host/Lib_Livefeed.h"

namespace {

constexpr int Seconds = 20;
constexpr const char* Account = "admin:Fl33t!ink"; // of the virtual recorder, which is nobody's secret

/// A child process with its standard output on a pipe.
struct stDef_Child
{
    pid_t nPid = -1;
    FILE* pOut = nullptr;
};

stDef_Child Start(const std::vector<std::string>& arArgs)
{
    int arPipe[2];
    if (pipe(arPipe) != 0)
        return {};
    const pid_t nPid = fork();
    if (nPid == 0) {
        std::vector<char*> ppArgs;
        for (const std::string& sArg : arArgs)
            ppArgs.push_back(const_cast<char*>(sArg.c_str()));
        ppArgs.push_back(nullptr);
        dup2(arPipe[1], STDOUT_FILENO);
        dup2(open("/dev/null", O_RDWR), STDIN_FILENO);
        execvp(ppArgs[0], ppArgs.data());
        _exit(127);
    }
    close(arPipe[1]);
    return {nPid, fdopen(arPipe[0], "r")};
}

/// CPU seconds, user and system, of a child that ends by itself; negative if it failed.
double CpuOf(const stDef_Child& stChild)
{
    int nStatus = 0;
    rusage stUsage{};
    wait4(stChild.nPid, &nStatus, 0, &stUsage);
    std::fclose(stChild.pOut);
    if (!WIFEXITED(nStatus) || WEXITSTATUS(nStatus) != 0)
        return -1;
    const auto seconds = [](const timeval& st) {
        return static_cast<double>(st.tv_sec) + static_cast<double>(st.tv_usec) / 1e6;
    };
    return seconds(stUsage.ru_utime) + seconds(stUsage.ru_stime);
}

std::string StreamUrl(int nPort, int nChannel)
{
    return "rtsp://" + std::string(Account) + "@127.0.0.1:" + std::to_string(nPort) + "/stream/CH" +
           std::to_string(nChannel);
}

double FfmpegCpu(int nPort, int nStreams)
{
    // All inputs in one process, as ours are.
    std::vector<std::string> arArgs = {"ffmpeg", "-nostdin", "-loglevel", "error"};
    for (int i = 0; i < nStreams; ++i)
        arArgs.insert(arArgs.end(), {"-rtsp_transport", "tcp", "-i", StreamUrl(nPort, i)});
    for (int i = 0; i < nStreams; ++i)
        arArgs.insert(arArgs.end(), {"-map", std::to_string(i)});
    arArgs.insert(arArgs.end(), {"-c", "copy", "-t", std::to_string(Seconds), "-f", "null", "-"});
    return CpuOf(Start(arArgs));
}

double OurCpu(int nPort, int nStreams)
{
    return CpuOf(Start({"/proc/self/exe", "--intake", std::to_string(nPort), std::to_string(nStreams)}));
}

void Measure(int nPort, int nStreams)
{
    const double dOurs = OurCpu(nPort, nStreams);
    const double dFfmpeg = FfmpegCpu(nPort, nStreams);
    PrintRow({"live intake of " + std::to_string(nStreams) + " streams, " + std::to_string(Seconds) + " s", dOurs,
              dFfmpeg, "CPU s", 0.5, dOurs < 0 || dFfmpeg < 0 ? "FAILED" : "ffmpeg -c copy -f null"});
}

} // namespace

int IntakeProcess(int nArgs, char** ppArgs)
{
    if (nArgs < 2)
        return 2;
    const int nPort = std::atoi(ppArgs[0]);
    const int nStreams = std::atoi(ppArgs[1]);
    struct stDef_Stream
    {
        CRtspInfo_CMS objInfo;
        CShmEncVideo_CMS objVideo{-1, -1, 0, false};
        CShmEncAudio_CMS objAudio{-1, -1, 0, false};
        CRtspClient objClient;
    };
    std::vector<std::unique_ptr<stDef_Stream>> arStreams;
    for (int i = 0; i < nStreams; ++i) {
        auto& st = *arStreams.emplace_back(std::make_unique<stDef_Stream>());
        st.objVideo.m_S_Init(901, i, 0, true);
        st.objAudio.m_S_Init(901, i, 0, true);
        stDef_RtspParam stParam{QString::fromStdString(StreamUrl(nPort, i)), 0, 1, &st.objVideo, &st.objAudio};
        st.objInfo.m_S_SetParam(&stParam);
        st.objClient.m_S_Connect(&st.objInfo);
    }
    QThread::sleep(Seconds);
    bool bAll = true;
    for (const auto& pStream : arStreams)
        bAll &= pStream->objInfo.vm_nRtspState == 1 && pStream->objClient.m_F_b_ThreadRun();
    return bAll ? 0 : 1;
}

void BenchIntake()
{
    const stDef_Child stNvr = Start({VIRTUALNVR_PROGRAM, "--channels", "16"});
    int nPort = 0;
    char szLine[128];
    while (nPort == 0 && stNvr.pOut && std::fgets(szLine, sizeof szLine, stNvr.pOut))
        std::sscanf(szLine, "rtsp %d", &nPort);
    if (nPort == 0) {
        std::fprintf(stderr, "the virtual recorder did not start\n");
        return;
    }
    Measure(nPort, 4);
    Measure(nPort, 16);
    kill(stNvr.nPid, SIGTERM);
    CpuOf(stNvr);
}
