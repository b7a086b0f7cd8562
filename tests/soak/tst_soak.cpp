#include <QElapsedTimer>
#include <QTemporaryDir>
#include <cstdio>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "fleetlink/fleetlink.h"
#include "support/Process.h"
#include "support/ServerProcess.h"
#include "support/Waiting.h"

namespace {

using namespace Qt::StringLiterals;

constexpr unsigned Seed = 20;
constexpr int Channels = 4;
constexpr int WarmUpRounds = 200; // caches, arenas of the allocator, tables of the libraries
constexpr int Phases = 10;        // points of the memory's line
constexpr long GrowthKiB = 2048;  // over all rounds
constexpr int StopMs = 200 * Process::Slowness;
constexpr int ConnectMs = 10000 * Process::Slowness;
constexpr std::uint64_t SilenceMs = 10000;
constexpr int TimeoutMs = 5000;

/// A recorder of its own process, in the host's list.
class CRecorder
{
public:
    CRecorder(CEnvObj& env, int nNvrID, bool bPC) : vm_process({"--kind", bPC ? "pc" : "embedded"})
    {
        const int nHttpPort = vm_process.Printed("http"), nRtspPort = vm_process.Printed("rtsp");
        const QString sNode = QString::asprintf("/root/NVR/N%03d", nNvrID);
        const std::pair<const char*, QString> arValues[] = {
            {"Type", bPC ? u"0"_s : u"1"_s},
            {"IP", u"127.0.0.1"_s},
            {"UID", u"admin"_s},
            {"PWD", CWinAES_CMS::s_F_s_Encrypt(u"Fl33t!ink"_s)},
            {"HttpPort", QString::number(nHttpPort)},
            {"RtspPort", QString::number(nRtspPort)},
        };
        for (const auto& [pKey, sValue] : arValues)
            env.m_F_p_GetMemSysXML()->m_F_b_SetValue(sNode, QLatin1StringView(pKey), sValue);
        vm_stInit.nNvrID = nNvrID;
        vm_stInit.sIP = "127.0.0.1";
        vm_stInit.sUID = "admin";
        vm_stInit.sPWD = "Fl33t!ink";
        vm_stInit.nHttpPort = nHttpPort;
        vm_sUrl = bPC ? u"cgi-bin/CMS.cgi?action=CamXml"_s : u"cgi-bin/SyncSetting.cgi?action=CameraXML"_s;
    }

    stDef_NvrInit vm_stInit;
    QString vm_sUrl;

private:
    ServerProcess vm_process;
};

/// One stream of a recorder, for which connection objects are made, used and released one after the other.
class CSlot
{
public:
    CSlot(CEnvObj& env, const CRecorder& recorder, int nChannel, int nStream)
        : vm_env(env), vm_recorder(recorder), vm_nChannel(nChannel), vm_nStream(nStream)
    {}

    bool m_F_b_Idle() const { return !vm_pNvr; }
    bool m_F_b_Lost() const { return vm_bLost; }
    static inline int s_nMaxStopMs = 0;
    static inline int s_nStreamed = 0;

    /// Begins a life of one of six kinds.
    void m_S_Begin(int nKind)
    {
        vm_nKind = nKind;
        vm_pNvr.reset(CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(vm_recorder.vm_stInit.nNvrID, nullptr, &vm_env));
        ASSERT_EQ(vm_pNvr->m_F_n_Init(vm_recorder.vm_stInit), 1);
        vm_pNvr->m_S_Connect(vm_recorder.vm_stInit.nNvrID, vm_nChannel, vm_nStream);
        vm_clock.start();
        if (nKind == ReleasedWhileConnecting)
            vm_pNvr.reset();
        if (nKind == TakenBack)
            vm_pNvr->m_S_Disconnect(false);
        if (nKind == TakenBack || nKind == TwiceConnected)
            vm_pNvr->m_S_Connect(vm_recorder.vm_stInit.nNvrID, vm_nChannel, vm_nStream);
    }

    /// Polls, and ends the life when its time has come.
    void m_S_Step()
    {
        if (!vm_pNvr)
            return;
        const auto nStat = vm_pNvr->m_F_n_GetConnectStat(CRtspClient::s_F_n_NowMs() - SilenceMs);
        if (nStat == nsCMS::ConnectStat_Connecting && vm_clock.elapsed() < ConnectMs)
            return;
        vm_bLost = vm_bLost || nStat != nsCMS::ConnectStat_Connected;
        ++s_nStreamed;
        if (vm_nKind == WithRequests) {
            CXmlObj xml;
            EXPECT_TRUE(vm_pNvr->m_F_b_GetRequest(vm_recorder.vm_sUrl, &xml, TimeoutMs));
        }
        QElapsedTimer clock;
        clock.start();
        if (vm_nKind != ReleasedWhileStreaming)
            vm_pNvr->m_S_Disconnect(true);
        vm_pNvr.reset();
        s_nMaxStopMs = std::max(s_nMaxStopMs, int(clock.elapsed()));
    }

private:
    enum emDef_Kind
    {
        Plain,
        WithRequests,
        ReleasedWhileConnecting,
        ReleasedWhileStreaming,
        TakenBack,
        TwiceConnected
    };

    CEnvObj& vm_env;
    const CRecorder& vm_recorder;
    const int vm_nChannel, vm_nStream;
    int vm_nKind = Plain;
    CNvrHolder vm_pNvr;
    QElapsedTimer vm_clock;
    bool vm_bLost = false;
};

struct stDef_Holdings
{
    long nDescriptors, nThreads, nSharedNames;
    bool operator==(const stDef_Holdings&) const = default;
};

stDef_Holdings Holdings()
{
    return {Process::Descriptors(), Process::Status("Threads"),
            Process::SharedNames(CEnvObj::s_F_s_Instance().toStdString())};
}

/// Growth a step of the line that fits the points best.
double Slope(const std::vector<long>& arPoints)
{
    const double nMiddle = (double(arPoints.size()) - 1) / 2;
    double nProduct = 0, nSquare = 0;
    for (std::size_t i = 0; i < arPoints.size(); ++i) {
        nProduct += (double(i) - nMiddle) * double(arPoints[i]);
        nSquare += (double(i) - nMiddle) * (double(i) - nMiddle);
    }
    return nProduct / nSquare;
}

TEST(Soak, LivesOfConnectionObjectsLeaveNothing)
{
    const int nAsked = qEnvironmentVariableIntValue("FLEETLINK_SOAK_ROUNDS");
    const int nRounds = nAsked > 0 ? nAsked : 1000;
    QTemporaryDir dirConfig;
    CEnvObj env;
    ASSERT_TRUE(env.m_F_b_Init(dirConfig.path()));
    CWinAES_CMS::s_S_SetKeyFolder(dirConfig.path());
    CRecorder embedded(env, 7, false), pc(env, 8, true);
    std::vector<CSlot> arSlots;
    for (const CRecorder* pRecorder : {&embedded, &pc})
        for (int nChannel = 0; nChannel < Channels; ++nChannel)
            for (const int nStream : {0, 1})
                arSlots.emplace_back(env, *pRecorder, nChannel, nStream);

    env.m_F_p_GetShmSystem(true); // the host's own, which the first object would make
    const long nNamesAtFirst = Holdings().nSharedNames;
    std::mt19937 random(Seed);
    const auto live = [&](int nLives) {
        const bool bDone = WaitUntil(
            [&] {
                bool bIdle = true;
                for (CSlot& slot : arSlots) {
                    slot.m_S_Step();
                    if (slot.m_F_b_Idle() && nLives > 0 && nLives--)
                        slot.m_S_Begin(int(random() % 6));
                    bIdle = bIdle && slot.m_F_b_Idle();
                }
                return bIdle && nLives == 0;
            },
            nLives * 200 + ConnectMs);
        ASSERT_TRUE(bDone);
    };

    ASSERT_NO_FATAL_FAILURE(live(WarmUpRounds));
    const stDef_Holdings stBefore = Holdings();
    std::vector<long> arMemoryKiB{Process::MemoryKiB()};
    for (int nPhase = 0; nPhase < Phases; ++nPhase) {
        ASSERT_NO_FATAL_FAILURE(live(nRounds / Phases));
        EXPECT_TRUE(WaitUntil([&] { return Holdings() == stBefore; })) << "phase " << nPhase;
        arMemoryKiB.push_back(Process::MemoryKiB());
    }
    const stDef_Holdings stAfter = Holdings();
    EXPECT_EQ(stAfter.nDescriptors, stBefore.nDescriptors);
    EXPECT_EQ(stAfter.nThreads, stBefore.nThreads);
    EXPECT_EQ(stAfter.nSharedNames, nNamesAtFirst) << "rings";
    const double nSlopeKiB = Slope(arMemoryKiB);
    std::printf("seed %u, %d lives, %d streamed, longest stop %d ms, memory %ld to %ld KiB, %.1f KiB each %d lives\n",
                Seed, nRounds, CSlot::s_nStreamed, CSlot::s_nMaxStopMs, arMemoryKiB.front(), arMemoryKiB.back(),
                nSlopeKiB, nRounds / Phases);
    EXPECT_LE(arMemoryKiB.back() - arMemoryKiB.front(), GrowthKiB);
    EXPECT_LE(nSlopeKiB * Phases, GrowthKiB);
    EXPECT_LE(CSlot::s_nMaxStopMs, StopMs);
    for (const CSlot& slot : arSlots)
        EXPECT_FALSE(slot.m_F_b_Lost()) << "a stream that did not come";
}

} // namespace
