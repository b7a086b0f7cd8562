#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <random>
#include <sstream>
#include <string>
#include <thread>
#include <utility>

#include "host/hostenv/CRingLayout.h"
#include "host/hostenv/RingContent.h"
#include "support/ServerProcess.h"

namespace {

using RingContent::Check;
using RingContent::Write;

constexpr int Nvr = 5;
constexpr off_t HeaderAndLog = RingLayout::HeaderSize + RingLayout::CapacityVideoMain;
const bool g_bOwnNames = RingContent::UseOwnNames("tst_ring-");
constexpr int HostsExit = 7;
const auto g_pBefore = signal(SIGBUS, [](int) { _exit(HostsExit); }); // as a host has one before its first ring

/// Name of a ring in shared memory, as the system knows it.
std::string NameOf(const std::string& sRing)
{
    std::ostringstream sName;
    sName << "/fleetlink." << geteuid() << '.' << CEnvObj::s_F_s_Instance().constData() << '.' << sRing;
    return sName.str();
}

int NamesLeft()
{
    int nNames = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/dev/shm"))
        nNames += (std::filesystem::path("/") / entry.path().filename()).string().starts_with(NameOf({}));
    return nNames;
}

/// The raw memory of a ring of channel 0, as a broken or hostile process of the same user has it.
class RawRing
{
public:
    explicit RawRing(const char* pRing)
    {
        const int nFile = shm_open(NameOf(pRing).c_str(), O_RDWR, 0);
        struct stat st
        {};
        EXPECT_EQ(fstat(nFile, &st), 0);
        vm_nSize = static_cast<std::size_t>(st.st_size);
        vm_pMemory = static_cast<std::uint8_t*>(mmap(nullptr, vm_nSize, PROT_READ | PROT_WRITE, MAP_SHARED, nFile, 0));
        close(nFile);
    }
    ~RawRing() { munmap(vm_pMemory, vm_nSize); }
    RawRing(const RawRing&) = delete;
    RawRing& operator=(const RawRing&) = delete;

    RingLayout::st_Header& Header() { return *reinterpret_cast<RingLayout::st_Header*>(vm_pMemory); }

    std::uint8_t* vm_pMemory = nullptr;
    std::size_t vm_nSize = 0;
};

/// Leaves a ring with so many packets behind, as a process does that dies between two of them.
void LeaveRing(std::uint32_t nPackets)
{
    const pid_t nPid = fork();
    if (nPid == 0) {
        CShmEncVideo_CMS ring(Nvr, 0, 0, true);
        std::vector<std::uint8_t> arData;
        for (std::uint32_t nNumber = 0; nNumber < nPackets; ++nNumber)
            Write(ring, arData, nNumber);
        _exit(0);
    }
    waitpid(nPid, nullptr, 0);
}

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
    for (std::uint32_t nNumber = 0; nNumber < 300; ++nNumber) { // some laps of the ring
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
    st_RingFrame stFrame;
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
        second.m_S_ReleaseWriter(&second);
        EXPECT_TRUE(first.m_F_b_ClaimWriter(&first));
        ASSERT_TRUE(reader.m_F_b_Open(emDef_RingKind::Audio, Nvr, 1, 0));
        first.m_S_Detach();
        EXPECT_TRUE(second.m_F_b_ClaimWriter(&second)) << "the claim went with the object";
        EXPECT_TRUE(second.m_F_b_Write({}, "sound", 5));
        EXPECT_EQ(reader.m_F_n_Read(stFrame), emDef_RingRead::Frame);
        EXPECT_EQ(std::string(stFrame.arData.begin(), stFrame.arData.end()), "sound");
    }
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
    for (std::uint32_t nNumber = 1; nNumber < 600 || nWhole < 200; ++nNumber)
        ASSERT_TRUE(Write(ring, arData, nNumber));
    bStop = true;
    for (std::thread& objReader : arReaders)
        objReader.join();
    EXPECT_EQ(nTorn, 0);
}

TEST(Ring, NextWriterGoesOnWhereADeadOneStopped)
{
    struct Row
    {
        const char* pWhat;
        void (*pDamage)(RingLayout::st_Header&);
        emDef_RingRead nFirstRead; ///< of a reader that was attached all the time
    };
    const Row arRows[] = {
        {"between packets", [](auto&) {}, emDef_RingRead::Empty},
        {"inside a packet", [](auto& stHeader) { stHeader.nReserved += 4096; }, emDef_RingRead::Lost},
        {"inside parameters", [](auto& stHeader) { stHeader.stParam.nSequence += 1; }, emDef_RingRead::Empty},
        {"other version", [](auto& stHeader) { stHeader.nVersion += 1; }, emDef_RingRead::Bad},
        {"senseless positions", [](auto& stHeader) { stHeader.nPublished += 8; }, emDef_RingRead::Bad},
    };
    for (const Row& row : arRows) {
        SCOPED_TRACE(row.pWhat);
        LeaveRing(5);
        CShmRingReader attached, fresh;
        st_RingFrame stFrame;
        std::uint32_t nNumber = 0;
        ASSERT_TRUE(attached.m_F_b_Open(emDef_RingKind::Video, Nvr, 0, 0));
        for (std::uint32_t n = 0; n < 5; ++n)
            ASSERT_TRUE(ReadNext(attached, stFrame, nNumber));
        row.pDamage(RawRing("v.5.0.0").Header());

        CShmEncVideo_CMS ring(Nvr, 0, 0, true);
        ASSERT_TRUE(ring.m_F_b_IsAttached());
        EXPECT_EQ(attached.m_F_n_Read(stFrame), row.nFirstRead);
        ASSERT_TRUE(fresh.m_F_b_Open(emDef_RingKind::Video, Nvr, 0, 0));
        EXPECT_EQ(fresh.m_F_n_Read(stFrame), emDef_RingRead::Empty) << "pictures of the dead one are no live ones";

        std::vector<std::uint8_t> arData;
        st_RingParam stParam;
        std::uint32_t nSerial = 0;
        ASSERT_TRUE(ring.m_F_b_SetParam({}));
        EXPECT_TRUE(fresh.m_F_b_GetParam(stParam, nSerial));
        ASSERT_TRUE(Write(ring, arData, 10));
        ASSERT_TRUE(ReadNext(fresh, stFrame, nNumber));
        EXPECT_EQ(nNumber, 10u);
        EXPECT_EQ(attached.m_F_b_IsOpen(), row.nFirstRead != emDef_RingRead::Bad);
        if (attached.m_F_b_IsOpen()) {
            ASSERT_TRUE(ReadNext(attached, stFrame, nNumber));
            EXPECT_EQ(nNumber, 10u);
            EXPECT_EQ(stFrame.nSerial, 7u) << "a gap: it doesn't build on what came before";
        }
    }
}

TEST(Ring, ReaderSeesThatADeadRingWasRemoved)
{
    LeaveRing(1);
    CShmRingReader reader;
    st_RingFrame stFrame;
    std::uint32_t nNumber = 0;
    ASSERT_TRUE(reader.m_F_b_Open(emDef_RingKind::Video, Nvr, 0, 0));
    EXPECT_EQ(CEnvObj::s_F_n_RemoveStaleShm(), 1);
    EXPECT_TRUE(ReadNext(reader, stFrame, nNumber)) << "what is in it can still be read";
    EXPECT_EQ(reader.m_F_n_Read(stFrame), emDef_RingRead::Closed);
}

TEST(Ring, RemovingStaleNamesDisturbsNoCreator)
{
    std::atomic<bool> bStop{false};
    std::thread sweeper([&] {
        while (!bStop)
            CEnvObj::s_F_n_RemoveStaleShm();
    });
    int nAttached = 0, nFound = 0;
    constexpr int Rounds = 2000;
    for (int i = 0; i < Rounds; ++i) {
        CShmEncAudio_CMS ring(Nvr, 0, 0, true);
        CShmRingReader reader;
        nAttached += ring.m_F_b_IsAttached();
        nFound += reader.m_F_b_Open(emDef_RingKind::Audio, Nvr, 0, 0);
    }
    bStop = true;
    sweeper.join();
    EXPECT_EQ(nAttached, Rounds);
    EXPECT_EQ(nFound, Rounds);
    EXPECT_EQ(NamesLeft(), 0);
}

TEST(Ring, WithoutMemoryItIsUnattached)
{
    rlimit stBefore{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &stBefore), 0);
    const auto pBefore = signal(SIGXFSZ, SIG_IGN);
    rlimit stSmall = stBefore;
    stSmall.rlim_cur = 64 << 10;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &stSmall), 0);
    CShmEncAudio_CMS ring(Nvr, 0, 0, true);
    setrlimit(RLIMIT_FSIZE, &stBefore);
    signal(SIGXFSZ, pBefore);
    EXPECT_FALSE(ring.m_F_b_IsAttached());
    EXPECT_FALSE(ring.m_F_b_Write({}, "sound", 5));
    EXPECT_NE(ring.m_F_p_GetData(), nullptr);
    EXPECT_EQ(NamesLeft(), 0);
}

TEST(Ring, WhatOthersPlantedUnderItsNameIsNoRing)
{
    const std::string sName = NameOf("v.5.0.0"), sPath = "/dev/shm" + sName, sOther = "/dev/shm" + NameOf("other");
    const auto copy = [](const std::string& sTo) { // of a sound ring
        LeaveRing(1);
        std::filesystem::rename("/dev/shm" + NameOf("v.5.0.0"), sTo);
    };
    const std::pair<const char*, std::function<void()>> arRows[] = {
        {"a pipe", [&] { ASSERT_EQ(mkfifo(sPath.c_str(), 0600), 0); }},
        {"a folder", [&] { std::filesystem::create_directory(sPath); }},
        {"a link", [&] { copy(sOther), std::filesystem::create_symlink(sOther, sPath); }},
        {"a hard link", [&] { copy(sOther), std::filesystem::create_hard_link(sOther, sPath); }},
        {"another user's file",
         [&] {
             LeaveRing(1);
             if (chown(sPath.c_str(), 12345, 12345) != 0) // only root can give a file away
                 ASSERT_TRUE(std::filesystem::remove(sPath) && mkfifo(sPath.c_str(), 0600) == 0);
         }},
    };
    for (const auto& [pWhat, fnPlant] : arRows) {
        SCOPED_TRACE(pWhat);
        fnPlant();
        CShmRingReader reader;
        EXPECT_FALSE(reader.m_F_b_Open(emDef_RingKind::Video, Nvr, 0, 0));
        const CShmEncVideo_CMS ring(Nvr, 0, 0, true);
        EXPECT_FALSE(ring.m_F_b_IsAttached());
        EXPECT_NE(ring.m_F_s_WhyNot().find(sName + ": "), std::string::npos) << ring.m_F_s_WhyNot();
        EXPECT_TRUE(std::filesystem::symlink_status(sPath).type() != std::filesystem::file_type::not_found);
        std::filesystem::remove(sOther);
        std::filesystem::remove(sPath);
    }
}

TEST(Ring, OutlivesWhoCutsOrRemovesIt)
{
    const std::string sName = NameOf("v.5.0.0");
    const struct
    {
        const char* pWhat;
        off_t nCut, nRegrown; ///< -1: removed
        bool bWriterSeesIt;
    } arRows[] = {
        {"nothing left", 0, 0, true},       {"only the header left", 4096, 4096, true},
        {"emptied", 0, HeaderAndLog, true}, {"log emptied", 4096, HeaderAndLog, false},
        {"removed", -1, -1, true},
    };
    for (const auto& row : arRows) {
        SCOPED_TRACE(row.pWhat);
        CShmEncVideo_CMS ring(Nvr, 0, 0, true);
        CShmRingReader readers[2];
        st_RingFrame stFrame;
        std::vector<std::uint8_t> arData;
        std::uint32_t nNumber = 0, nSerial = 0;
        st_RingParam stParam;
        ASSERT_TRUE(ring.m_F_b_SetParam({}) && Write(ring, arData, 0) && Write(ring, arData, 1));
        for (CShmRingReader& reader : readers)
            ASSERT_TRUE(reader.m_F_b_Open(emDef_RingKind::Video, Nvr, 0, 0));
        ASSERT_TRUE(ReadNext(readers[0], stFrame, nNumber));

        const int nFile = shm_open(sName.c_str(), O_RDWR, 0);
        EXPECT_EQ(
            row.nCut < 0 ? shm_unlink(sName.c_str()) : ftruncate(nFile, row.nCut) | ftruncate(nFile, row.nRegrown), 0);
        close(nFile);
        readers[1].m_F_b_Wait(0);
        readers[1].m_F_b_GetParam(stParam, nSerial);
        readers[1].m_F_n_ConnectStat();
        for (int i = 0; i < 2; ++i) {
            const emDef_RingRead nRead = readers[0].m_F_n_Read(stFrame);
            EXPECT_TRUE(nRead != emDef_RingRead::Frame || Check(stFrame, nNumber));
        }
        ring.m_F_p_GetData()->vm_nConnectStat = 2;
        EXPECT_NE(Write(ring, arData, 10), row.bWriterSeesIt);
        EXPECT_NE(ring.m_F_b_IsAttached(), row.bWriterSeesIt);
        EXPECT_EQ(ring.m_F_s_WhyNot().empty(), !row.bWriterSeesIt);

        EXPECT_TRUE(ring.m_F_b_AttachAgain());
        EXPECT_TRUE(Write(ring, arData, 20));
        CShmRingReader again;
        ASSERT_TRUE(again.m_F_b_Open(emDef_RingKind::Video, Nvr, 0, 0));
        ASSERT_TRUE(ReadNext(again, stFrame, nNumber));
        EXPECT_EQ(nNumber, 20u);
    }
    EXPECT_EQ(NamesLeft(), 0);
}

TEST(Ring, AFaultElsewhereIsStillTheHosts)
{
    const pid_t nPid = fork();
    if (nPid == 0) {
        CShmEncVideo_CMS ring(Nvr, 0, 0, true);
        void* const pHole = mmap(nullptr, 4096, PROT_READ, MAP_SHARED, fileno(std::tmpfile()), 0);
        _exit(*static_cast<volatile char*>(pHole));
    }
    int nStatus = 0;
    waitpid(nPid, &nStatus, 0);
    EXPECT_EQ(WEXITSTATUS(nStatus), HostsExit) << nStatus;
    CEnvObj::s_F_n_RemoveStaleShm();
}

/// Reads for so long; false at the first packet that is not whole.
bool ReadsWholeFor(CShmRingReader& reader, std::chrono::microseconds time)
{
    const auto tmEnd = std::chrono::steady_clock::now() + time;
    st_RingFrame stFrame;
    std::uint32_t nNumber = 0;
    while (std::chrono::steady_clock::now() < tmEnd) {
        if (!reader.m_F_b_IsOpen())
            reader.m_F_b_Open(emDef_RingKind::Video, Nvr, 0, 0);
        const emDef_RingRead nRead = reader.m_F_n_Read(stFrame);
        if (nRead == emDef_RingRead::Bad || (nRead == emDef_RingRead::Frame && !Check(stFrame, nNumber)))
            return false;
    }
    return true;
}

TEST(Ring, OutlivesKillsOfEitherSideAtRandomMoments)
{
    constexpr unsigned Seed = 7;
    std::printf("seed %u\n", Seed);
    std::mt19937 random(Seed);
    const auto moment = [&random] { return std::chrono::microseconds(random() % 4000); };
    CShmRingReader reader; // it and the witness stay attached over the deaths
    const std::string sNvr = std::to_string(Nvr);
    ServerProcess witness({"read", sNvr});
    std::uint64_t nSerial = 0;
    for (int nRound = 0; nRound < 100; ++nRound) {
        SCOPED_TRACE(nRound);
        ServerProcess writer({"write", sNvr}), victim({"read", sNvr});
        ASSERT_TRUE(writer.Printed("ready") == 1);
        ASSERT_TRUE(nRound > 0 || witness.Printed("ready") == 1);
        ASSERT_TRUE(victim.Printed("ready") == 1);
        ASSERT_TRUE(ReadsWholeFor(reader, moment()));
        victim.End(SIGKILL);
        ASSERT_TRUE(ReadsWholeFor(reader, moment()));
        st_RingFrame stFrame;
        std::uint32_t nNumber = 0;
        ASSERT_TRUE(ReadNext(reader, stFrame, nNumber)) << "the writer doesn't mind";
        EXPECT_GT(stFrame.nSerial, std::exchange(nSerial, stFrame.nSerial)) << "the ring of the dead one goes on";
        if (nRound == 0) {
            CShmEncVideo_CMS other(Nvr, 0, 0, true);
            EXPECT_FALSE(other.m_F_b_IsAttached()) << "another process writes it";
            EXPECT_NE(other.m_F_p_GetData(), nullptr);
            EXPECT_EQ(CEnvObj::s_F_n_RemoveStaleShm(), 0) << "it is in use";
        }
        ASSERT_TRUE(writer.Runs());
        writer.End(SIGKILL);
        ASSERT_TRUE(ReadsWholeFor(reader, moment()));
        ASSERT_TRUE(witness.Runs()) << "it saw a torn packet";
    }
    EXPECT_EQ(NamesLeft(), 1) << "what the last one left";
    EXPECT_EQ(CEnvObj::s_F_n_RemoveStaleShm(), 1);
    EXPECT_EQ(NamesLeft(), 0);
    EXPECT_TRUE(CShmEncVideo_CMS(Nvr, 0, 0, true).m_F_b_IsAttached());
    EXPECT_EQ(NamesLeft(), 0) << "one that lives its normal life takes its name along";
}

} // namespace
