#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "BenchTable.h"
#include "Benches.h"
#include "host/Lib_Hostenv.h"
#include "host/Platform.h"

namespace {

constexpr int RingNvr = 900;
constexpr int Warmup = 50;
constexpr std::size_t MaxBytes = 1 << 20;

/// The least that can be done: one packet in shared memory, a word to wait on, no order, no check.
struct stDef_BareSlot
{
    std::atomic<std::uint32_t> nSerial;
    unsigned char arData[MaxBytes];
};

stDef_BareSlot* Map(int nFile)
{
    void* p = mmap(nullptr, sizeof(stDef_BareSlot), PROT_READ | PROT_WRITE, MAP_SHARED, nFile, 0);
    return p == MAP_FAILED ? nullptr : static_cast<stDef_BareSlot*>(p);
}

struct stDef_Reader
{
    pid_t nPid = -1;
    FILE* pOut = nullptr;
};

/// `nFile` below 0: a reader of the ring, else one of the bare slot in that file.
stDef_Reader StartReader(int nPackets, int nFile, std::size_t nSize)
{
    int arPipe[2];
    if (pipe(arPipe) != 0)
        return {};
    const pid_t nPid = fork();
    if (nPid == 0) {
        dup2(arPipe[1], STDOUT_FILENO);
        execl("/proc/self/exe", "fleetlink-bench", "--ring-reader", std::to_string(nPackets).c_str(),
              std::to_string(nFile).c_str(), std::to_string(nSize).c_str(), static_cast<char*>(nullptr));
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

/// Latencies in us of all readers together, while `write` hands over packets that begin with their time.
std::vector<double> Run(const std::vector<stDef_Reader>& arReaders, std::size_t nSize, int nPackets,
                        const std::function<void(const unsigned char*)>& write)
{
    for (const stDef_Reader& stReader : arReaders)
        if (!WaitReady(stReader))
            return {};
    std::vector<unsigned char> arData(nSize);
    const auto gap = std::chrono::microseconds(nSize > 100000 ? 5000 : 2000);
    for (int i = 0; i < nPackets + Warmup; ++i) {
        std::this_thread::sleep_for(gap); // the reader shall wait, as it does between two pictures
        const long long nNow = NowNs();
        std::memcpy(arData.data(), &nNow, sizeof nNow);
        write(arData.data());
    }
    std::vector<double> arUs;
    for (const stDef_Reader& stReader : arReaders) {
        char szLine[64];
        while (std::fgets(szLine, sizeof szLine, stReader.pOut))
            arUs.push_back(std::atof(szLine) / 1000);
        std::fclose(stReader.pOut);
        waitpid(stReader.nPid, nullptr, 0);
    }
    return arUs;
}

std::vector<stDef_Reader> StartReaders(int nReaders, int nPackets, int nFile, std::size_t nSize)
{
    std::vector<stDef_Reader> arReaders;
    for (int i = 0; i < nReaders; ++i)
        arReaders.push_back(StartReader(nPackets, nFile, nSize));
    return arReaders;
}

std::vector<double> MeasureRing(std::size_t nSize, int nReaders, int nPackets)
{
    CShmEncVideo_CMS ring(RingNvr, 0, 0, true);
    ring.m_F_b_ClaimWriter(&ring);
    ring.m_F_b_SetParam({});
    st_RingPacket stPacket;
    stPacket.bKey = true;
    const std::uint64_t nFirst = 0;
    ring.m_F_b_Write(stPacket, reinterpret_cast<const unsigned char*>(&nFirst), sizeof nFirst); // something to stand at
    return Run(StartReaders(nReaders, nPackets, -1, nSize), nSize, nPackets, [&](const unsigned char* pData) {
        ring.m_F_b_Write(stPacket, pData, static_cast<std::uint32_t>(nSize));
    });
}

std::vector<double> MeasureBare(std::size_t nSize, int nReaders, int nPackets)
{
    const int nFile = memfd_create("bare", 0); // the readers inherit it
    stDef_BareSlot* const pSlot = ftruncate(nFile, sizeof(stDef_BareSlot)) == 0 ? Map(nFile) : nullptr;
    std::vector<double> arUs;
    if (pSlot) {
        arUs = Run(StartReaders(nReaders, nPackets, nFile, nSize), nSize, nPackets, [&](const unsigned char* pData) {
            std::memcpy(pSlot->arData, pData, nSize);
            ++pSlot->nSerial;
            Platform::s_S_WakeWord(&pSlot->nSerial);
        });
        munmap(pSlot, sizeof(stDef_BareSlot));
    }
    close(nFile);
    return arUs;
}

void Measure(std::size_t nSize, int nReaders, int nPackets, double dGoalUs)
{
    std::vector<double> arOurs = MeasureRing(nSize, nReaders, nPackets);
    std::vector<double> arBare = MeasureBare(nSize, nReaders, nPackets);
    const std::string sName =
        "ring " + std::to_string(nSize / 1024) + " KB, " + std::to_string(nReaders) + " reader(s), ";
    for (const auto& [pName, dShare, dGoal] : {std::tuple{"50th", 0.5, 0.0}, std::tuple{"99th", 0.99, dGoalUs}})
        PrintRow({sName + pName, Percentile(arOurs, dShare), Percentile(arBare, dShare), "us", dGoal,
                  arOurs.empty() ? "FAILED" : "bare word and copy", true});
}

void ReadRing(int nPackets, const std::function<void(const unsigned char*)>& take)
{
    CShmRingReader reader;
    st_RingFrame stFrame;
    if (!reader.m_F_b_Open(emDef_RingKind::Video, RingNvr, 0, 0))
        return;
    while (reader.m_F_n_Read(stFrame) == emDef_RingRead::Frame) {
    }
    std::puts("ready");
    std::fflush(stdout);
    for (int nSeen = 0; nSeen < nPackets && reader.m_F_b_Wait(5000);) {
        for (; reader.m_F_n_Read(stFrame) == emDef_RingRead::Frame; ++nSeen)
            take(stFrame.arData.data());
    }
}

void ReadBare(int nPackets, int nFile, std::size_t nSize, const std::function<void(const unsigned char*)>& take)
{
    stDef_BareSlot* const pSlot = Map(nFile);
    if (!pSlot)
        return;
    std::vector<unsigned char> arData(nSize);
    std::puts("ready");
    std::fflush(stdout);
    for (std::uint32_t nSerial = 0; nSerial < static_cast<std::uint32_t>(nPackets);) {
        if (!Platform::s_F_b_WaitWord(&pSlot->nSerial, nSerial, 5000))
            return;
        nSerial = pSlot->nSerial;
        std::memcpy(arData.data(), pSlot->arData, nSize);
        take(arData.data());
    }
}

} // namespace

int RingReaderProcess(int nArgs, char** ppArgs)
{
    if (nArgs < 3)
        return 2;
    const int nPackets = std::atoi(ppArgs[0]) + Warmup;
    const int nFile = std::atoi(ppArgs[1]);
    std::vector<long long> arNs;
    const auto take = [&arNs](const unsigned char* pData) {
        long long nWritten = 0;
        std::memcpy(&nWritten, pData, sizeof nWritten);
        arNs.push_back(NowNs() - nWritten);
    };
    if (nFile < 0)
        ReadRing(nPackets, take);
    else
        ReadBare(nPackets, nFile, static_cast<std::size_t>(std::atoll(ppArgs[2])), take);
    for (std::size_t i = Warmup; i < arNs.size(); ++i)
        std::printf("%lld\n", arNs[i]);
    return 0;
}

void BenchRing()
{
    Measure(8 << 10, 1, 2000, 20);
    Measure(8 << 10, 8, 2000, 20);
    Measure(1 << 20, 1, 400, 0);
    Measure(1 << 20, 8, 400, 0);
}
