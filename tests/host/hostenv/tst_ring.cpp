#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <random>
#include <string>
#include <thread>

#include "host/hostenv/RingContent.h"

namespace {

using RingContent::Check;
using RingContent::Write;

constexpr int Nvr = 5;

std::string Prefix()
{
    return "fleetlink." + std::to_string(geteuid()) + "." + CEnvObj::s_F_s_Instance().toStdString() + ".";
}

int NamesLeft()
{
    int nNames = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/dev/shm"))
        nNames += entry.path().filename().string().starts_with(Prefix());
    return nNames;
}

/// A `ring_peer` process; killed at the end of its scope.
class Peer
{
public:
    Peer(const char* pRole, int nNvr)
    {
        int arPipe[2];
        EXPECT_EQ(pipe(arPipe), 0);
        vm_nPid = fork();
        if (vm_nPid == 0) {
            dup2(arPipe[1], STDOUT_FILENO);
            execl(RING_PEER, RING_PEER, pRole, std::to_string(nNvr).c_str(), static_cast<char*>(nullptr));
            _exit(127);
        }
        close(arPipe[1]);
        vm_pOut = fdopen(arPipe[0], "r");
    }
    ~Peer()
    {
        Kill();
        std::fclose(vm_pOut);
    }
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    bool WaitReady()
    {
        char szLine[16];
        return std::fgets(szLine, sizeof szLine, vm_pOut) && !std::strcmp(szLine, "ready\n");
    }
    bool Alive() { return vm_nPid > 0 && waitpid(vm_nPid, nullptr, WNOHANG) == 0; }
    void Kill()
    {
        if (vm_nPid <= 0)
            return;
        kill(vm_nPid, SIGKILL);
        waitpid(vm_nPid, nullptr, 0);
        vm_nPid = -1;
    }

private:
    pid_t vm_nPid = -1;
    FILE* vm_pOut = nullptr;
};

/// Reads until a whole packet comes; false if none does within the limit or one is torn.
bool ReadNext(CShmRingReader& reader, st_RingFrame& stFrame, std::uint32_t& nNumber)
{
    for (int i = 0; i < 200; ++i) {
        const emDef_RingRead nRead = reader.m_F_n_Read(stFrame);
        if (nRead == emDef_RingRead::Frame)
            return Check(stFrame, nNumber);
        if (nRead == emDef_RingRead::Closed || nRead == emDef_RingRead::Bad)
            return false;
        reader.m_F_b_Wait(50);
    }
    return false;
}

TEST(Ring, HandsPacketsOnWholeAndInOrder)
{
    CShmEncVideo_CMS ring(Nvr, 0, 0, true);
    CShmRingReader reader;
    st_RingFrame stFrame;
    std::vector<std::uint8_t> arData;
    ASSERT_TRUE(ring.m_F_b_IsAttached());
    ASSERT_TRUE(reader.m_F_b_Open(emDef_RingKind::Video, Nvr, 0, 0));
    EXPECT_EQ(reader.m_F_n_Read(stFrame), emDef_RingRead::Empty);
    EXPECT_FALSE(reader.m_F_b_Wait(0));
    for (std::uint32_t nNumber = 0; nNumber < 500; ++nNumber) { // some laps of the ring
        ASSERT_TRUE(Write(ring, arData, nNumber));
        std::uint32_t nRead = 0;
        ASSERT_TRUE(reader.m_F_b_Wait(1000));
        ASSERT_EQ(reader.m_F_n_Read(stFrame), emDef_RingRead::Frame);
        ASSERT_TRUE(Check(stFrame, nRead));
        ASSERT_EQ(nRead, nNumber);
        ASSERT_EQ(stFrame.nSerial, nNumber + 1);
    }
}

TEST(Ring, OvertakenReaderGoesOnAtAKeyFrame)
{
    CShmEncVideo_CMS ring(Nvr, 0, 0, true);
    CShmRingReader reader;
    st_RingFrame stFrame;
    std::vector<std::uint8_t> arData;
    std::uint32_t nNumber = 0, nRead = 0;
    ASSERT_TRUE(Write(ring, arData, nNumber++));
    ASSERT_TRUE(reader.m_F_b_Open(emDef_RingKind::Video, Nvr, 0, 0));
    while (nNumber < 305)
        ASSERT_TRUE(Write(ring, arData, nNumber++));
    EXPECT_EQ(reader.m_F_n_Read(stFrame), emDef_RingRead::Lost);
    ASSERT_EQ(reader.m_F_n_Read(stFrame), emDef_RingRead::Frame);
    ASSERT_TRUE(Check(stFrame, nRead));
    EXPECT_EQ(nRead, 300u) << "the latest key frame";

    CShmRingReader late;
    ASSERT_TRUE(late.m_F_b_Open(emDef_RingKind::Video, Nvr, 0, 0));
    ASSERT_TRUE(ReadNext(late, stFrame, nRead));
    EXPECT_EQ(nRead, 300u) << "where a new reader begins, too";
}

TEST(Ring, RefusesWhatItCannotHold)
{
    CShmEncVideo_CMS ring(Nvr, 0, 0, true);
    CShmEncAudio_CMS unattached(-1, -1, 0, false);
    std::vector<std::uint8_t> arData(9u << 20);
    EXPECT_FALSE(ring.m_F_b_Write({}, arData.data(), 0));
    EXPECT_FALSE(ring.m_F_b_Write({}, nullptr, 5));
    EXPECT_FALSE(ring.m_F_b_Write({}, arData.data(), static_cast<std::uint32_t>(arData.size())));
    EXPECT_TRUE(ring.m_F_b_Write({}, arData.data(), 3u << 20));
    EXPECT_FALSE(unattached.m_F_b_IsAttached());
    EXPECT_FALSE(unattached.m_F_b_Write({}, arData.data(), 5));
    EXPECT_FALSE(unattached.m_F_b_ClaimWriter(&unattached));
    ASSERT_NE(unattached.m_F_p_GetData(), nullptr);
}

TEST(Ring, ParametersTravelWithPackets)
{
    CShmEncVideo_CMS ring(Nvr, 0, 0, true);
    CShmRingReader reader;
    ASSERT_TRUE(reader.m_F_b_Open(emDef_RingKind::Video, Nvr, 0, 0));
    st_RingParam stParam, stRead;
    std::uint32_t nSerial = 0;
    EXPECT_FALSE(reader.m_F_b_GetParam(stRead, nSerial));
    std::vector<std::uint8_t> arData;
    for (std::uint32_t n = 1; n <= 3; ++n) {
        stParam.nWidth = static_cast<int>(n * 100);
        stParam.arExtra[n] = 7;
        stParam.nExtraSize = n + 1;
        ASSERT_TRUE(ring.m_F_b_SetParam(stParam));
        ASSERT_TRUE(ring.m_F_b_SetParam(stParam)); // the same again is no change
        ASSERT_TRUE(reader.m_F_b_GetParam(stRead, nSerial));
        EXPECT_EQ(nSerial, n);
        EXPECT_EQ(std::memcmp(&stRead, &stParam, sizeof stParam), 0);
        ASSERT_TRUE(Write(ring, arData, n * 10));
        st_RingFrame stFrame;
        ASSERT_EQ(reader.m_F_n_Read(stFrame), emDef_RingRead::Frame);
        EXPECT_EQ(stFrame.stPacket.nParamSerial, n);
    }
    ring.m_F_p_GetData()->vm_nConnectStat = 6;
    EXPECT_EQ(reader.m_F_n_ConnectStat(), 6);
}

TEST(Ring, ObjectsOfOneNameShareOneRing)
{
    CShmRingReader reader;
    {
        CShmEncAudio_CMS first(Nvr, 1, 0, true);
        CShmEncAudio_CMS second(Nvr, 1, 0, true);
        EXPECT_EQ(first.m_F_p_GetData(), second.m_F_p_GetData());
        EXPECT_TRUE(first.m_F_b_ClaimWriter(&first));
        EXPECT_TRUE(first.m_F_b_ClaimWriter(&first));
        EXPECT_FALSE(second.m_F_b_ClaimWriter(&second));
        second.m_S_ReleaseWriter(&second); // not its own to give
        EXPECT_FALSE(second.m_F_b_ClaimWriter(&second));
        first.m_S_ReleaseWriter(&first);
        EXPECT_TRUE(second.m_F_b_ClaimWriter(&second));
        ASSERT_TRUE(reader.m_F_b_Open(emDef_RingKind::Audio, Nvr, 1, 0));
        first.m_S_Detach();
        std::vector<std::uint8_t> arData;
        st_RingFrame stFrame;
        std::uint32_t nNumber = 0;
        EXPECT_TRUE(second.m_F_b_Write({}, "sound", 5));
        EXPECT_EQ(reader.m_F_n_Read(stFrame), emDef_RingRead::Frame);
        (void)nNumber;
    }
    st_RingFrame stFrame;
    EXPECT_EQ(reader.m_F_n_Read(stFrame), emDef_RingRead::Closed);
    EXPECT_FALSE(reader.m_F_b_Open(emDef_RingKind::Audio, Nvr, 1, 0));
    EXPECT_EQ(NamesLeft(), 0);
}

TEST(Ring, ReadersNeverSeeATornPacketWhileItIsWritten)
{
    CShmEncVideo_CMS ring(Nvr, 0, 1, true); // the small one: it is lapped all the time
    std::atomic<bool> bStop{false};
    std::atomic<int> nTorn{0}, nWhole{0};
    std::vector<std::thread> arReaders;
    std::vector<std::uint8_t> arData;
    ASSERT_TRUE(Write(ring, arData, 0));
    for (int i = 0; i < 3; ++i)
        arReaders.emplace_back([&] {
            CShmRingReader reader;
            reader.m_F_b_Open(emDef_RingKind::Video, Nvr, 0, 1);
            st_RingFrame stFrame;
            std::uint32_t nNumber = 0;
            while (!bStop) {
                if (reader.m_F_n_Read(stFrame) == emDef_RingRead::Frame)
                    ++(Check(stFrame, nNumber) ? nWhole : nTorn);
                else
                    reader.m_F_b_Wait(5);
            }
        });
    for (std::uint32_t nNumber = 1; nNumber < 1500 || nWhole < 500; ++nNumber)
        ASSERT_TRUE(Write(ring, arData, nNumber));
    bStop = true;
    for (std::thread& objReader : arReaders)
        objReader.join();
    EXPECT_EQ(nTorn, 0);
}

TEST(Ring, SurvivesKilledWriters)
{
    std::mt19937 random(7);
    CShmRingReader reader;
    st_RingFrame stFrame;
    std::uint32_t nNumber = 0;
    for (int nRound = 0; nRound < 40; ++nRound) {
        Peer writer("write", Nvr);
        ASSERT_TRUE(writer.WaitReady());
        // The reader stays attached over the deaths; it only opens again if the ring was made anew.
        if (!reader.m_F_b_IsOpen())
            ASSERT_TRUE(reader.m_F_b_Open(emDef_RingKind::Video, Nvr, 0, 0));
        for (unsigned n = random() % 30 + 1; n > 0; --n)
            ASSERT_TRUE(ReadNext(reader, stFrame, nNumber)) << "round " << nRound;
        writer.Kill();
        while (reader.m_F_n_Read(stFrame) == emDef_RingRead::Frame)
            ASSERT_TRUE(Check(stFrame, nNumber)) << "round " << nRound;
    }
    EXPECT_EQ(NamesLeft(), 1) << "what the last one left";
    EXPECT_EQ(CEnvObj::s_F_n_RemoveStaleShm(), 1);
    EXPECT_EQ(NamesLeft(), 0);
}

TEST(Ring, KilledReadersDisturbNobody)
{
    Peer writer("write", Nvr);
    ASSERT_TRUE(writer.WaitReady());
    Peer witness("read", Nvr);
    ASSERT_TRUE(witness.WaitReady());
    for (int nRound = 0; nRound < 20; ++nRound) {
        Peer reader("read", Nvr);
        ASSERT_TRUE(reader.WaitReady());
        reader.Kill();
        ASSERT_TRUE(writer.Alive());
        ASSERT_TRUE(witness.Alive()) << "it saw a torn packet";
    }
    CShmEncVideo_CMS other(Nvr, 0, 0, true);
    EXPECT_FALSE(other.m_F_b_IsAttached()) << "another process writes it";
    EXPECT_NE(other.m_F_p_GetData(), nullptr);
    EXPECT_EQ(CEnvObj::s_F_n_RemoveStaleShm(), 0) << "it is in use";
    writer.Kill();
    witness.Kill();
    CEnvObj::s_F_n_RemoveStaleShm();
}

TEST(Ring, HostileMemoryIsRefused)
{
    CShmEncVideo_CMS ring(Nvr, 0, 1, true);
    std::vector<std::uint8_t> arData;
    for (std::uint32_t nNumber = 0; nNumber < 25; ++nNumber)
        ASSERT_TRUE(Write(ring, arData, nNumber));
    const std::string sName = "/" + Prefix() + "v." + std::to_string(Nvr) + ".0.1";
    const int nFile = shm_open(sName.c_str(), O_RDWR, 0);
    ASSERT_GE(nFile, 0);
    struct stat st
    {};
    fstat(nFile, &st);
    auto* pMemory = static_cast<std::uint8_t*>(
        mmap(nullptr, static_cast<std::size_t>(st.st_size), PROT_READ | PROT_WRITE, MAP_SHARED, nFile, 0));
    close(nFile);
    // Every word of the header and of the records gets values that a broken or hostile writer could leave.
    std::mt19937_64 random(11);
    const std::uint64_t arValues[] = {
        0, 1, 7, UINT64_MAX, UINT64_MAX / 2, static_cast<std::uint64_t>(st.st_size), 1ull << 40};
    for (int nRound = 0; nRound < 4000; ++nRound) {
        const bool bHeader = nRound % 2 == 0;
        const std::size_t nAt = bHeader ? random() % 16 * 8 : 4096 + random() % 4096 * 8;
        std::uint64_t nBefore, nHostile = nRound % 3 ? arValues[random() % std::size(arValues)] : random();
        std::memcpy(&nBefore, pMemory + nAt, 8);
        std::memcpy(pMemory + nAt, &nHostile, 8);
        CShmRingReader reader;
        st_RingFrame stFrame;
        st_RingParam stParam;
        std::uint32_t nSerial = 0;
        reader.m_F_b_Open(emDef_RingKind::Video, Nvr, 0, 1);
        for (int i = 0; i < 40 && reader.m_F_b_IsOpen(); ++i) {
            if (reader.m_F_n_Read(stFrame) == emDef_RingRead::Frame)
                EXPECT_LE(stFrame.arData.size(), std::size_t(st.st_size));
        }
        reader.m_F_b_GetParam(stParam, nSerial);
        std::memcpy(pMemory + nAt, &nBefore, 8);
    }
    CShmRingReader reader;
    ASSERT_TRUE(reader.m_F_b_Open(emDef_RingKind::Video, Nvr, 0, 1)) << "sound again";
    munmap(pMemory, static_cast<std::size_t>(st.st_size));
}

} // namespace
