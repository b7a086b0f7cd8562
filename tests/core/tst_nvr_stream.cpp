#include <QElapsedTimer>
#include <cerrno>
#include <fcntl.h>
#include <functional>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/HostFixture.h"
#include "support/Process.h"
#include "support/Waiting.h"

namespace {

std::atomic<off_t> g_nRoom{INT64_MAX}; // bytes that shared memory still has for one name

} // namespace

/// Stands before the system's own, as if shared memory were full.
extern "C" __attribute__((visibility("default"))) int posix_fallocate(int nFile, off_t nAt, off_t nSize)
{
    return nSize > g_nRoom ? ENOSPC : fallocate(nFile, 0, nAt, nSize) == 0 ? 0 : errno;
}

namespace {

const bool g_bLog = qputenv("FLEETLINK_DEBUG", "1");

using namespace std::string_view_literals;

constexpr std::uint64_t SilenceMs = 10000;
constexpr int SlackMs = 500 * Process::Slowness;
constexpr int StopMs = 200 * Process::Slowness;

struct stDef_FaultRow;

class NvrStream : public HostFixture
{
protected:
    static nsCMS::emDef_ConnectStat Poll(CWndNvrBase& nvr)
    {
        return nvr.m_F_n_GetConnectStat(CRtspClient::s_F_n_NowMs() - SilenceMs);
    }

    static bool Reaches(CWndNvrBase& nvr, nsCMS::emDef_ConnectStat nStat, int nLimitMs = 8000)
    {
        return WaitUntil([&] { return Poll(nvr) == nStat; }, nLimitMs);
    }

    CWndNvrBase* Create()
    {
        CWndNvrBase* pNvr = CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(NvrID, nullptr, &vm_env);
        EXPECT_EQ(pNvr->m_F_n_Init(Init()), 1);
        return pNvr;
    }

    void PlayFault(const stDef_FaultRow& row);

    static int StoredStat(int nChannel, int nStream)
    {
        CShmRingReader reader;
        return reader.m_F_b_Open(emDef_RingKind::Video, NvrID, nChannel, nStream) ? reader.m_F_n_ConnectStat() : -1;
    }

    static bool DeliversFrames(emDef_RingKind nKind, int nChannel, int nStream, const std::string& sInstance = {})
    {
        CShmRingReader reader;
        st_RingFrame stFrame;
        int nFrames = 0;
        return WaitUntil([&] {
            if (!reader.m_F_b_IsOpen())
                reader.m_F_b_Open(nKind, NvrID, nChannel, nStream, sInstance);
            while (reader.m_F_n_Read(stFrame) == emDef_RingRead::Frame)
                ++nFrames;
            return nFrames >= 5;
        });
    }
};

TEST_F(NvrStream, GoesThroughItsStates)
{
    StartRecorder({});
    CNvrHolder nvr(Create());
    EXPECT_EQ(Poll(*nvr.get()), nsCMS::ConnectStat_None);
    EXPECT_EQ(StoredStat(0, 0), -1) << "no ring before the first connect";
    nvr->m_S_Disconnect(true); // nothing to end yet

    nvr->m_S_Connect(NvrID, 0, 0);
    EXPECT_EQ(Poll(*nvr.get()), nsCMS::ConnectStat_Connecting);
    ASSERT_TRUE(Reaches(*nvr.get(), nsCMS::ConnectStat_Connected));
    EXPECT_EQ(StoredStat(0, 0), nsCMS::ConnectStat_Connected);
    EXPECT_TRUE(DeliversFrames(emDef_RingKind::Video, 0, 0));
    EXPECT_TRUE(DeliversFrames(emDef_RingKind::Audio, 0, 0));

    nvr->m_S_Connect(NvrID, 3, 1); // the object stays with its stream
    EXPECT_EQ(StoredStat(3, 1), -1);

    for (int nRound = 0; nRound < 2; ++nRound) {
        nvr->m_S_Disconnect(true);
        EXPECT_EQ(StoredStat(0, 0), nsCMS::ConnectStat_Disconnected);
        EXPECT_EQ(Poll(*nvr.get()), nsCMS::ConnectStat_Disconnected);
        nvr->m_S_Connect(NvrID, 0, 0);
        ASSERT_TRUE(Reaches(*nvr.get(), nsCMS::ConnectStat_Connected));
    }
    nvr->m_S_Disconnect(false);
    EXPECT_TRUE(Reaches(*nvr.get(), nsCMS::ConnectStat_Disconnected));
}

TEST_F(NvrStream, TakesWhatTheListTells)
{
    StartRecorder({});
    struct Row
    {
        const char* pKey;
        const char* pValue;
        int nChannel, nStream;
        nsCMS::emDef_ConnectStat nStat;
    };
    const Row arRows[] = {
        {"StreamType", "0", 1, 0, nsCMS::ConnectStat_Connected},  // HTTP tunnel on the HTTP port
        {"StreamType", "2", 1, 0, nsCMS::ConnectStat_Connected},  // UDP
        {"StreamType", "3", 2, 1, nsCMS::ConnectStat_Connected},  // unknown: TCP; second stream
        {"PWD", "", 0, 0, nsCMS::ConnectStat_Refused},            // no password
        {"RtspPort", "1", 0, 0, nsCMS::ConnectStat_Disconnected}, // nobody there
    };
    for (const Row& row : arRows) {
        SetNode(row.pKey, row.pValue);
        CNvrHolder nvr(Create());
        nvr->m_S_Connect(NvrID, row.nChannel, row.nStream);
        EXPECT_TRUE(Reaches(*nvr.get(), row.nStat)) << row.pKey << ' ' << row.pValue << " is " << Poll(*nvr.get());
        EXPECT_EQ(StoredStat(row.nChannel, row.nStream), row.nStat);
    }
}

TEST_F(NvrStream, HostsOfOtherFoldersHaveRingsOfTheirOwn)
{
    StartRecorder({});
    const QByteArray sGiven = CEnvObj::s_F_s_Instance();
    CEnvObj::s_S_SetInstance({});
    ASSERT_TRUE(vm_env.m_F_b_SaveSysXML());
    QTemporaryDir dirOther;
    CEnvObj envOther;
    ASSERT_TRUE(QFile::copy(vm_dirConfig.filePath("System.xml"), dirOther.filePath("System.xml")));
    ASSERT_TRUE(envOther.m_F_b_Init(dirOther.path()));
    const CNvrHolder nvr(Create()), other(CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(NvrID, nullptr, &envOther));
    for (CWndNvrBase* pNvr : {nvr.get(), other.get()})
        pNvr->m_S_Connect(NvrID, 0, 0);
    for (CWndNvrBase* pNvr : {nvr.get(), other.get()}) {
        EXPECT_TRUE(Reaches(*pNvr, nsCMS::ConnectStat_Connected));
        EXPECT_TRUE(DeliversFrames(emDef_RingKind::Video, 0, 0, pNvr->vm_pEnv->m_F_s_Instance().toStdString()));
    }
    CEnvObj::s_S_SetInstance(sGiven);
}

TEST_F(NvrStream, WithoutARingItIsDisconnectedAndTheLogSaysWhy)
{
    StartRecorder({});
    const std::string sRing =
        "/fleetlink." + std::to_string(geteuid()) + "." + CEnvObj::s_F_s_Instance().toStdString() + ".v.7.0.0";
    const auto file = [&] { return shm_open(sRing.c_str(), O_RDWR | O_CREAT, 0600); };
    const struct
    {
        const char* pWhat;
        bool bPlaying;
        std::function<void()> fnSpoil;
        const char* pLog;
    } arRows[] = {
        {"full", false, [] { g_nRoom = 0; }, "no room"},
        {"tiny", false, [] { g_nRoom = 4096; }, "no room"}, // enough for a header
        {"another's name", false, [&] { mkfifo(("/dev/shm" + sRing).c_str(), 0600); }, "no memory of this user"},
        {"another process", false, [&] { flock(file(), LOCK_EX); }, "another process"},
        {"cut", true, [&] { EXPECT_EQ(ftruncate(file(), 0), 0); }, "cut it short"},
        {"removed", true, [&] { shm_unlink(sRing.c_str()); }, "removed it"},
    };
    for (const auto& row : arRows) {
        SCOPED_TRACE(row.pWhat);
        const CNvrHolder nvr(Create());
        testing::internal::CaptureStderr();
        if (row.bPlaying) {
            nvr->m_S_Connect(NvrID, 0, 0);
            EXPECT_TRUE(Reaches(*nvr.get(), nsCMS::ConnectStat_Connected));
        }
        row.fnSpoil();
        if (!row.bPlaying)
            nvr->m_S_Connect(NvrID, 0, 0);
        EXPECT_TRUE(WaitUntil([&] {
            const auto nStat = Poll(*nvr.get());
            EXPECT_TRUE(row.bPlaying || nStat != nsCMS::ConnectStat_Connected) << "no frame is in the ring";
            return nStat == nsCMS::ConnectStat_Disconnected;
        }));
        EXPECT_EQ(nvr->m_F_n_GetConnectStat(UINT64_MAX), nsCMS::ConnectStat_Disconnected) << "however long it lasts";
        EXPECT_FALSE(nvr->m_F_b_HasRing());
        const std::string sLog = testing::internal::GetCapturedStderr();
        EXPECT_NE(sLog.find(row.pLog), std::string::npos) << sLog;
        EXPECT_EQ(sLog.find(sRing), sLog.rfind(sRing)) << "said once: " << sLog;

        g_nRoom = INT64_MAX;
        shm_unlink(sRing.c_str());
        nvr->m_S_Connect(NvrID, 0, 0);
        EXPECT_TRUE(Reaches(*nvr.get(), nsCMS::ConnectStat_Connected));
        EXPECT_TRUE(DeliversFrames(emDef_RingKind::Video, 0, 0));
    }
}

// Polled without a pause, so that a poll meets the very end of the client's thread.
TEST_F(NvrStream, ARefusalNeverShowsAsAnEnd)
{
    StartRecorder({});
    SetNode("PWD", CWinAES_CMS::s_F_s_Encrypt("wrong"));
    for (int nRound = 0; nRound < 1000; ++nRound) {
        CNvrHolder nvr(Create());
        nvr->m_S_Connect(NvrID, 0, 0);
        auto nStat = nsCMS::ConnectStat_Connecting;
        for (const QDeadlineTimer limit(5000); nStat == nsCMS::ConnectStat_Connecting && !limit.hasExpired();)
            nStat = Poll(*nvr.get());
        ASSERT_EQ(nStat, nsCMS::ConnectStat_Refused) << nRound;
    }
}

struct stDef_FaultRow
{
    const char* pFault;
    long nArg;
    bool bStreaming;               // it comes when the stream plays, else before it is asked for
    std::uint64_t nSilenceMs;      // after which the polls call the stream dead
    nsCMS::emDef_ConnectStat nEnd; // what the state at that time changes to; Connected: it stays
    int nLimitMs;
};

constexpr stDef_FaultRow g_arFaults[] = {
    {"wrong password", 0, false, SilenceMs, nsCMS::ConnectStat_Refused, 1000},
    {"no such channel", 0, false, SilenceMs, nsCMS::ConnectStat_Refused, 1000},
    {"missing", 0, false, SilenceMs, nsCMS::ConnectStat_Refused, 1000},
    {"refuse", 0, false, SilenceMs, nsCMS::ConnectStat_Disconnected, 1000},
    {"garbage", 0, false, SilenceMs, nsCMS::ConnectStat_Disconnected, 6000},
    {"silent", 0, false, 500, nsCMS::ConnectStat_NoAnswer, 600},
    {"paused", 0, false, 500, nsCMS::ConnectStat_NoAnswer, 1000},
    {"paused", 0, true, 500, nsCMS::ConnectStat_Disconnected, 800},
    {"killed", 0, true, SilenceMs, nsCMS::ConnectStat_Disconnected, 1000},
    {"silent", 0, true, SilenceMs, nsCMS::ConnectStat_Connected, 0}, // only new connections
    {"missing", 0, true, SilenceMs, nsCMS::ConnectStat_Connected, 0},
    {"params", 0, true, SilenceMs, nsCMS::ConnectStat_Connected, 0},
    {"jump", 5000, true, SilenceMs, nsCMS::ConnectStat_Connected, 0},
    {"jump", -5000, true, SilenceMs, nsCMS::ConnectStat_Connected, 0},
};

void NvrStream::PlayFault(const stDef_FaultRow& row)
{
    const bool bPassword = row.pFault == "wrong password"sv, bChannel = row.pFault == "no such channel"sv;
    const bool bServer = !bPassword && !bChannel;
    const int nChannel = bChannel ? 40 : 0;
    CStreamServer& objStreams = vm_nvr.m_F_o_Streams();
    if (bPassword)
        SetNode("PWD", CWinAES_CMS::s_F_s_Encrypt("wrong"));
    CNvrHolder nvr(Create());
    if (row.bStreaming) {
        nvr->m_S_Connect(NvrID, nChannel, 0);
        ASSERT_TRUE(Reaches(*nvr.get(), nsCMS::ConnectStat_Connected));
    }
    ASSERT_TRUE(!bServer || objStreams.m_F_b_SetFault("*", row.pFault, row.nArg));
    if (!row.bStreaming)
        nvr->m_S_Connect(NvrID, nChannel, 0);

    const auto nBegin = row.bStreaming ? nsCMS::ConnectStat_Connected : nsCMS::ConnectStat_Connecting;
    auto nStat = nBegin;
    const auto poll = [&] { return nStat = nvr->m_F_n_GetConnectStat(CRtspClient::s_F_n_NowMs() - row.nSilenceMs); };
    EXPECT_TRUE(row.nEnd == nBegin || WaitUntil([&] { return poll() != nBegin; }, row.nLimitMs + SlackMs));
    if (row.nEnd == nBegin)
        EXPECT_TRUE(DeliversFrames(emDef_RingKind::Video, nChannel, 0) && poll() == nBegin) << "it goes on";
    EXPECT_EQ(nStat, row.nEnd);
    EXPECT_EQ(StoredStat(nChannel, 0), row.nEnd) << "in the ring";
    if (row.nSilenceMs != SilenceMs)
        EXPECT_TRUE(Reaches(*nvr.get(), nsCMS::ConnectStat_Disconnected, SlackMs)) << "that poll told it to stop";

    QElapsedTimer clock;
    clock.start();
    nvr->m_S_Disconnect(true);
    EXPECT_LE(clock.elapsed(), StopMs);
    EXPECT_EQ(StoredStat(nChannel, 0), nsCMS::ConnectStat_Disconnected);
    objStreams.m_F_b_SetFault("*", "none");
    SetNode("PWD", CWinAES_CMS::s_F_s_Encrypt(Password));
    CNvrHolder other(Create()); // an object keeps account and channel of its first connect
    CWndNvrBase& next = bServer ? *nvr.get() : *other.get();
    next.m_S_Connect(NvrID, 0, 0);
    EXPECT_TRUE(Reaches(next, nsCMS::ConnectStat_Connected)) << "the next one";
    EXPECT_TRUE(DeliversFrames(emDef_RingKind::Video, 0, 0));
}

TEST_F(NvrStream, EachFaultShowsInTheStateAndTheNextConnectPlays)
{
    StartRecorder({});
    for (const char* pStreamType : {"0", "1", "2"}) // tunnel, TCP, UDP
        for (stDef_FaultRow row : g_arFaults) {
            SCOPED_TRACE(testing::Message() << row.pFault << ' ' << row.nArg << (row.bStreaming ? " playing" : "")
                                            << ", StreamType " << pStreamType);
            SetNode("StreamType", pStreamType);
            if (row.pFault == "refuse"sv && pStreamType == "0"sv)
                row.nEnd = nsCMS::ConnectStat_Connected; // the tunnel's port is another one
            PlayFault(row);
        }
}

TEST_F(NvrStream, DipsServesEmbeddedRecordersOnly)
{
    StartRecorder({});
    CWndNvrBase::s_F_o_DipsTarget() = {"127.0.0.1", vm_nvr.m_F_n_HttpPort()};
    SetNode("IP", "192.0.2.1");
    SetNode("DIPS", "FL-000001");
    SetNode("StreamType", "0");
    SetNode("HttpPort", "1");
    SetNode("DstType", "2");
    CNvrHolder nvr(Create());
    nvr->m_S_Connect(NvrID, 0, 0);
    EXPECT_TRUE(Reaches(*nvr.get(), nsCMS::ConnectStat_Connected)) << "address and tunnel port come from the service";

    vm_nvr.m_F_o_Log().m_S_Clear();
    for (const auto& [pType, pDstType] : {std::pair{"0", "2"}, std::pair{"1", "1"}}) {
        SetNode("Type", pType);
        SetNode("DstType", pDstType);
        CNvrHolder other(Create());
        other->m_S_Connect(NvrID, 1, 0);
    }
    for (const auto& stEntry : vm_nvr.m_F_o_Log().m_F_ar_Entries())
        EXPECT_EQ(stEntry.sTarget.find("dips/"), std::string::npos) << stEntry.sTarget;
}

} // namespace
