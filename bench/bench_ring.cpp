#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "BenchTable.h"
#include "Benches.h"
#include "host/Lib_Hostenv.h"

namespace {

constexpr int RingNvr = 900;
constexpr int Warmup = 50;

struct stDef_Reader
{
    pid_t nPid = -1;
    FILE* pOut = nullptr;
};

stDef_Reader StartReader(int nPackets)
{
    int arPipe[2];
    if (pipe(arPipe) != 0)
        return {};
    const pid_t nPid = fork();
    if (nPid == 0) {
        dup2(arPipe[1], STDOUT_FILENO);
        execl("/proc/self/exe", "fleetlink-bench", "--ring-reader", std::to_string(nPackets).c_str(),
              static_cast<char*>(nullptr));
        _exit(127);
    }
    close(arPipe[1]);
    return {nPid, fdopen(arPipe[0], "r")};
}

/// Reads "ready", then the latencies in ns, one a line.
bool WaitReady(const stDef_Reader& stReader)
{
    char szLine[64];
    return stReader.pOut && std::fgets(szLine, sizeof szLine, stReader.pOut) && !std::strcmp(szLine, "ready\n");
}

void Measure(std::size_t nSize, int nReaders, int nPackets, double dGoalUs)
{
    CShmEncVideo_CMS ring(RingNvr, 0, 0, true);
    ring.m_F_b_ClaimWriter(&ring);
    ring.m_F_b_SetParam({});
    std::vector<unsigned char> arData(nSize);
    st_RingPacket stPacket;
    stPacket.bKey = true;
    ring.m_F_b_Write(stPacket, arData.data(), 8); // something to stand at

    std::vector<stDef_Reader> arReaders;
    for (int i = 0; i < nReaders; ++i)
        arReaders.push_back(StartReader(nPackets));
    for (const stDef_Reader& stReader : arReaders)
        if (!WaitReady(stReader))
            return;

    const auto gap = std::chrono::microseconds(nSize > 100000 ? 5000 : 2000);
    for (int i = 0; i < nPackets + Warmup; ++i) {
        std::this_thread::sleep_for(gap); // the reader shall wait, as it does between two pictures
        const long long nNow = NowNs();
        std::memcpy(arData.data(), &nNow, sizeof nNow);
        ring.m_F_b_Write(stPacket, arData.data(), static_cast<std::uint32_t>(nSize));
    }
    std::vector<double> arUs;
    for (const stDef_Reader& stReader : arReaders) {
        char szLine[64];
        while (std::fgets(szLine, sizeof szLine, stReader.pOut))
            arUs.push_back(std::atof(szLine) / 1000);
        std::fclose(stReader.pOut);
        waitpid(stReader.nPid, nullptr, 0);
    }
    const std::string sName =
        "ring " + std::to_string(nSize / 1024) + " KB, " + std::to_string(nReaders) + " reader(s), ";
    PrintRow({sName + "50th", Percentile(arUs, 0.5), 0, "us", 0, ""});
    PrintRow({sName + "99th", Percentile(arUs, 0.99), 0, "us", dGoalUs, "write to copied, another process"});
}

} // namespace

int RingReaderProcess(int nArgs, char** ppArgs)
{
    const int nPackets = nArgs > 0 ? std::atoi(ppArgs[0]) : 0;
    CShmRingReader reader;
    st_RingFrame stFrame;
    if (!reader.m_F_b_Open(emDef_RingKind::Video, RingNvr, 0, 0))
        return 1;
    while (reader.m_F_n_Read(stFrame) == emDef_RingRead::Frame) {
    }
    std::puts("ready");
    std::fflush(stdout);
    std::vector<long long> arNs;
    for (int nSeen = 0; nSeen < nPackets + Warmup;) {
        if (!reader.m_F_b_Wait(5000))
            return 1;
        while (reader.m_F_n_Read(stFrame) == emDef_RingRead::Frame) {
            long long nWritten = 0;
            std::memcpy(&nWritten, stFrame.arData.data(), sizeof nWritten);
            if (++nSeen > Warmup)
                arNs.push_back(NowNs() - nWritten);
        }
    }
    for (const long long nNs : arNs)
        std::printf("%lld\n", nNs);
    return 0;
}

void BenchRing()
{
    Measure(8 << 10, 1, 2000, 20);
    Measure(8 << 10, 8, 2000, 20);
    Measure(1 << 20, 1, 400, 0);
    Measure(1 << 20, 8, 400, 0);
}
