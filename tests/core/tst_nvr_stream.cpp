#include "support/HostFixture.h"
#include "support/Waiting.h"

namespace {

constexpr std::uint64_t SilenceMs = 10000;

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

    static int StoredStat(int nChannel, int nStream)
    {
        CShmRingReader reader;
        return reader.m_F_b_Open(emDef_RingKind::Video, NvrID, nChannel, nStream) ? reader.m_F_n_ConnectStat() : -1;
    }

    static bool DeliversFrames(emDef_RingKind nKind, int nChannel, int nStream)
    {
        CShmRingReader reader;
        st_RingFrame stFrame;
        int nFrames = 0;
        return WaitUntil([&] {
            if (!reader.m_F_b_IsOpen())
                reader.m_F_b_Open(nKind, NvrID, nChannel, nStream);
            while (reader.m_F_n_Read(stFrame) == emDef_RingRead::Frame)
                ++nFrames;
            return nFrames >= 5;
        });
    }
};

TEST_F(NvrStream, GoesThroughItsStates)
{
    StartRecorder({});
    ScopedNvr nvr(Create());
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
        {"StreamType", "1", 40, 0, nsCMS::ConnectStat_Refused},   // no such channel
        {"PWD", "", 0, 0, nsCMS::ConnectStat_Refused},            // wrong account
        {"RtspPort", "1", 0, 0, nsCMS::ConnectStat_Disconnected}, // nobody there
    };
    for (const Row& row : arRows) {
        SetNode(row.pKey, row.pValue);
        ScopedNvr nvr(Create());
        nvr->m_S_Connect(NvrID, row.nChannel, row.nStream);
        EXPECT_TRUE(Reaches(*nvr.get(), row.nStat)) << row.pKey << ' ' << row.pValue << " is " << Poll(*nvr.get());
        EXPECT_EQ(StoredStat(row.nChannel, row.nStream), row.nStat);
    }
}

TEST_F(NvrStream, ReleasedWhileConnectedLeavesNothing)
{
    StartRecorder({});
    {
        ScopedNvr first(Create());
        ScopedNvr second(Create());
        first->m_S_Connect(NvrID, 0, 0);
        second->m_S_Connect(NvrID, 0, 1);
        ASSERT_TRUE(Reaches(*first.get(), nsCMS::ConnectStat_Connected));
        ASSERT_TRUE(Reaches(*second.get(), nsCMS::ConnectStat_Connected));
        EXPECT_TRUE(DeliversFrames(emDef_RingKind::Video, 0, 1));
        EXPECT_TRUE(DeliversFrames(emDef_RingKind::Audio, 0, 0)) << "both streams share the audio ring of stream 0";
    }
    CShmRingReader reader;
    EXPECT_FALSE(reader.m_F_b_Open(emDef_RingKind::Video, NvrID, 0, 0));
    EXPECT_FALSE(reader.m_F_b_Open(emDef_RingKind::Audio, NvrID, 0, 0));
    EXPECT_TRUE(WaitUntil([&] { return vm_nvr.m_F_o_Streams().m_F_n_Sessions() == 0; }));
}

TEST_F(NvrStream, SilenceIsJudgedByTheStamp)
{
    StartRecorder({});
    vm_nvr.m_F_o_Streams().m_F_b_SetFault("*", "silent");
    ScopedNvr nvr(Create());
    nvr->m_S_Connect(NvrID, 0, 0);
    EXPECT_EQ(Poll(*nvr.get()), nsCMS::ConnectStat_Connecting);
    EXPECT_EQ(nvr->m_F_n_GetConnectStat(CRtspClient::s_F_n_NowMs() + 1), nsCMS::ConnectStat_NoAnswer);
    EXPECT_EQ(StoredStat(0, 0), nsCMS::ConnectStat_NoAnswer);
    EXPECT_TRUE(Reaches(*nvr.get(), nsCMS::ConnectStat_Disconnected, 1000)) << "that poll told the client to stop";

    vm_nvr.m_F_o_Streams().m_F_b_SetFault("*", "none");
    nvr->m_S_Connect(NvrID, 0, 0);
    ASSERT_TRUE(Reaches(*nvr.get(), nsCMS::ConnectStat_Connected));
    EXPECT_EQ(nvr->m_F_n_GetConnectStat(CRtspClient::s_F_n_NowMs() + 1000), nsCMS::ConnectStat_Disconnected)
        << "silence after data is no missing answer";
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
    ScopedNvr nvr(Create());
    nvr->m_S_Connect(NvrID, 0, 0);
    EXPECT_TRUE(Reaches(*nvr.get(), nsCMS::ConnectStat_Connected)) << "address and tunnel port come from the service";

    vm_nvr.m_F_o_Log().m_S_Clear();
    for (const auto& [pType, pDstType] : {std::pair{"0", "2"}, std::pair{"1", "1"}}) {
        SetNode("Type", pType);
        SetNode("DstType", pDstType);
        ScopedNvr other(Create());
        other->m_S_Connect(NvrID, 1, 0);
    }
    for (const auto& stEntry : vm_nvr.m_F_o_Log().m_F_ar_Entries())
        EXPECT_EQ(stEntry.sTarget.find("dips/"), std::string::npos) << stEntry.sTarget;
}

} // namespace
