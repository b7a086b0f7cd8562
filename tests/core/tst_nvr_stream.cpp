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
#include "support/Table.h"
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

constexpr std::uint64_t SilenceMs = 10000;
constexpr int SlackMs = 500 * Process::Slowness;
constexpr int StopMs = 200 * Process::Slowness;

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

    void PlayFault(const stDef_TableRow& row, nsCMS::emDef_ConnectStat nEnd);

    /// By its name in a table.
    static nsCMS::emDef_ConnectStat Stat(const std::string& sName)
    {
        return sName == "Refused"        ? nsCMS::ConnectStat_Refused
               : sName == "Disconnected" ? nsCMS::ConnectStat_Disconnected
               : sName == "NoAnswer"     ? nsCMS::ConnectStat_NoAnswer
                                         : nsCMS::ConnectStat_Connected;
    }
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
    for (const stDef_TableRow& row : ReadTable("stream_lists.txt", 5)) {
        SetNode(row[0].c_str(), row[1].c_str());
        CNvrHolder nvr(Create());
        nvr->m_S_Connect(NvrID, row.Number(2), row.Number(3));
        EXPECT_TRUE(Reaches(*nvr.get(), Stat(row[4]))) << row.sWhere << " is " << Poll(*nvr.get());
        EXPECT_EQ(StoredStat(row.Number(2), row.Number(3)), Stat(row[4]));
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

void NvrStream::PlayFault(const stDef_TableRow& row, nsCMS::emDef_ConnectStat nEnd)
{
    const bool bPassword = row[0] == "wrong password", bChannel = row[0] == "no such channel";
    const bool bServer = !bPassword && !bChannel, bStreaming = row.Is(2);
    const std::uint64_t nSilenceMs = std::stoul(row[3]);
    const int nChannel = bChannel ? 40 : 0;
    CStreamServer& objStreams = vm_nvr.m_F_o_Streams();
    if (bPassword)
        SetNode("PWD", CWinAES_CMS::s_F_s_Encrypt("wrong"));
    CNvrHolder nvr(Create());
    if (bStreaming) {
        nvr->m_S_Connect(NvrID, nChannel, 0);
        ASSERT_TRUE(Reaches(*nvr.get(), nsCMS::ConnectStat_Connected));
    }
    ASSERT_TRUE(!bServer || objStreams.m_F_b_SetFault("*", row[0], row.Number(1)));
    if (!bStreaming)
        nvr->m_S_Connect(NvrID, nChannel, 0);

    const auto nBegin = bStreaming ? nsCMS::ConnectStat_Connected : nsCMS::ConnectStat_Connecting;
    auto nStat = nBegin;
    const auto poll = [&] { return nStat = nvr->m_F_n_GetConnectStat(CRtspClient::s_F_n_NowMs() - nSilenceMs); };
    EXPECT_TRUE(nEnd == nBegin || WaitUntil([&] { return poll() != nBegin; }, row.Number(5) + SlackMs));
    if (nEnd == nBegin)
        EXPECT_TRUE(DeliversFrames(emDef_RingKind::Video, nChannel, 0) && poll() == nBegin) << "it goes on";
    EXPECT_EQ(nStat, nEnd);
    EXPECT_EQ(StoredStat(nChannel, 0), nEnd) << "in the ring";
    if (nSilenceMs != SilenceMs)
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
    const auto arRows = ReadTable("stream_faults.txt", 6);
    for (const char* pStreamType : {"0", "1", "2"}) // tunnel, TCP, UDP
        for (const stDef_TableRow& row : arRows) {
            SCOPED_TRACE(row.sWhere + ", StreamType " + pStreamType);
            SetNode("StreamType", pStreamType);
            const bool bOtherPort = row[0] == "refuse" && *pStreamType == '0'; // that of the tunnel
            PlayFault(row, bOtherPort ? nsCMS::ConnectStat_Connected : Stat(row[4]));
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
