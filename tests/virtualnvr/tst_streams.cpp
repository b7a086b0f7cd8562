#include "CStreamPlayer.h"
#include "http/CSocket.h"
#include "rtsp/CStreamServer.h"
#include "scene/CGstPlugins.h"
#include "scene/CLiveView.h"
#include "scene/CSceneClock.h"
#include "scene/stDef_EncodedClip.h"
#include "support/Waiting.h"

#include <cmath>
#include <filesystem>
#include <functional>
#include <future>
#include <gtest/gtest.h>
#include <latch>
#include <memory>
#include <thread>

namespace {

constexpr int g_nMissing404 = -875574520; // AVERROR_HTTP_NOT_FOUND
constexpr int g_nStopped = -1414092869;   // AVERROR_EXIT
constexpr int g_nQuietMs = 700;           // more than ten pictures' time

constexpr std::int64_t g_nWrapMs = (1LL << 32) / 90;

class Streams : public testing::Test
{
protected:
    void SetUp() override
    {
        std::string sError;
        vm_pPtz->m_S_Reset(4);
        ASSERT_TRUE(
            vm_objServer.m_F_b_Start({"127.0.0.1", 0, 4, {{"admin", "p@ss:w"}, {"guest", "g"}}, vm_pPtz}, sError))
            << sError;
    }

    std::string Url(const std::string& sMount, const std::string& sAccount = "admin:p%40ss%3Aw", int nPort = 0) const
    {
        return "rtsp://" + sAccount + "@127.0.0.1:" + std::to_string(nPort ? nPort : vm_objServer.m_F_n_Port()) +
               "/stream/" + sMount;
    }

    std::unique_ptr<CStreamPlayer> Play(const std::string& sMount) const
    {
        auto pPlayer = std::make_unique<CStreamPlayer>();
        EXPECT_EQ(pPlayer->m_F_n_Open(Url(sMount), "tcp"), 0) << sMount;
        EXPECT_TRUE(pPlayer->m_F_o_Next().has_value()) << sMount;
        return pPlayer;
    }

    std::shared_ptr<CPtzBoard> vm_pPtz = std::make_shared<CPtzBoard>();
    CStreamServer vm_objServer;
};

// The next picture of a frame number. Pictures before it count up by one each, whatever they show.
CStreamPlayer::stDef_Picture Frame(CStreamPlayer& objPlayer, int nFrame)
{
    for (int n = 0, nLast = -1; n <= stDef_EncodedClip::s_nFrames; ++n) {
        auto stPicture = objPlayer.m_F_o_Next();
        if (!stPicture || !stPicture->stCode) {
            ADD_FAILURE() << "no picture, or none with a code, after " << nLast;
            return {};
        }
        EXPECT_TRUE(nLast < 0 || stPicture->stCode->nFrame == (nLast + 1) % stDef_EncodedClip::s_nFrames) << nLast;
        nLast = stPicture->stCode->nFrame;
        if (nLast == nFrame)
            return std::move(*stPicture);
    }
    ADD_FAILURE() << "no frame " << nFrame;
    return {};
}

// Mean difference of luma between a picture and what the view should make of the scene, below the captions.
double Difference(const CStreamPlayer::stDef_Picture& stSeen, const CStreamPlayer::stDef_Picture& stScene,
                  const stDef_PtzView& stView)
{
    if (stSeen.arLuma.empty() || stScene.arLuma.size() != stSeen.arLuma.size())
        return 255;
    const int nWidth = stSeen.nWidth, nHeight = stSeen.nHeight;
    const float fUnit = static_cast<float>(nWidth) / 640.0F;
    const auto from = [&](int n, int nSize, float fMiddle) {
        const float fHalf = static_cast<float>(nSize - 1) / 2;
        const float fAt = (static_cast<float>(n) - fHalf) / stView.fZoom + fHalf + fMiddle * fUnit;
        return std::clamp(static_cast<int>(std::lround(fAt)), 0, nSize - 1);
    };
    double fSum = 0;
    int nCount = 0;
    for (int nY = nHeight / 3; nY < nHeight * 9 / 10; nY += 3) {
        for (int nX = 0; nX < nWidth; nX += 3, ++nCount) {
            const int nFrom = from(nY, nHeight, stView.fY) * nWidth + from(nX, nWidth, stView.fX);
            fSum += std::abs(stSeen.arLuma[static_cast<std::size_t>(nY * nWidth + nX)] -
                             stScene.arLuma[static_cast<std::size_t>(nFrom)]);
        }
    }
    return fSum / nCount;
}

// The first picture that a client gets. It may take a second to reach it.
void ExpectByClock(int nFrame)
{
    EXPECT_EQ(nFrame % stDef_EncodedClip::s_nGop, 0);
    const int nFrames = stDef_EncodedClip::s_nFrames;
    const int nLate = (CSceneClock::s_F_n_Frame(CSceneClock::s_F_n_NowNs()) - nFrame + nFrames) % nFrames;
    EXPECT_TRUE(nLate < stDef_EncodedClip::s_nFps + stDef_EncodedClip::s_nGop / 2 ||
                nFrames - nLate <= stDef_EncodedClip::s_nGop / 2)
        << nLate;
}

// Thirty pictures in a row, from a key frame near to the scene's clock on.
void ExpectRun(CStreamPlayer& objPlayer, int nChannel, bool bSecond)
{
    int nNext = -1;
    std::int64_t nLastMs = 0;
    for (int n = 0; n < 30; ++n) {
        const auto stPicture = objPlayer.m_F_o_Next();
        ASSERT_TRUE(stPicture && stPicture->stCode) << "picture " << n << (stPicture ? " without code" : " missing");
        EXPECT_EQ(stPicture->stCode->nChannel, nChannel);
        EXPECT_EQ(stPicture->stCode->bSecond, bSecond);
        EXPECT_EQ(stPicture->nWidth, bSecond ? 320 : 640);
        EXPECT_EQ(stPicture->nHeight, bSecond ? 180 : 360);
        if (nNext < 0)
            ExpectByClock(nNext = stPicture->stCode->nFrame);
        EXPECT_EQ(stPicture->stCode->nFrame, nNext);
        nNext = (nNext + 1) % stDef_EncodedClip::s_nFrames;
        // Steady also when the first sender reports relate the two streams' times; the first picture may have no time.
        if (n > 1)
            EXPECT_NEAR(static_cast<double>(stPicture->nPtsMs - nLastMs), 1000.0 / stDef_EncodedClip::s_nFps, 5) << n;
        nLastMs = stPicture->nPtsMs;
    }
    EXPECT_GE(objPlayer.vm_nSounds, 25);
    EXPECT_GE(objPlayer.vm_nSequences, 2);
}

} // namespace

TEST(PictureCode, IsReadBackAndNeverMisread)
{
    for (const int nFrame : {0, 1, 89, 2048, 4095}) {
        const stDef_PictureCode stCode{nFrame % 64, nFrame % 2 != 0, nFrame};
        std::vector<std::uint8_t> arLuma(40, 128);
        for (int nCell = 0; nCell < CPictureCode::s_nCells; ++nCell)
            arLuma[static_cast<std::size_t>(nCell)] =
                CPictureCode::s_F_b_Cell(stCode, nCell) ? CPictureCode::s_nWhite : CPictureCode::s_nBlack;
        EXPECT_EQ(CPictureCode::s_F_o_Read(arLuma.data(), 40, 40, 1), stCode);
        for (std::size_t nCell = 0; nCell < CPictureCode::s_nCells; ++nCell) {
            std::vector<std::uint8_t> arWrong = arLuma;
            arWrong[nCell] = static_cast<std::uint8_t>(240 - arWrong[nCell]);
            EXPECT_FALSE(CPictureCode::s_F_o_Read(arWrong.data(), 40, 40, 1)) << nCell;
        }
    }
}

TEST_F(Streams, EachKeyFrameBringsItsParameterSets)
{
    const auto pClip = stDef_EncodedClip::s_F_p_Encode(1, true);
    ASSERT_TRUE(pClip);
    for (std::size_t nUnit = 0; nUnit < pClip->arUnits.size(); ++nUnit) {
        const auto& arBytes = pClip->arUnits[nUnit].arBytes;
        std::string sKinds;
        for (std::size_t n = 3; n < arBytes.size(); ++n) {
            const int nKind = arBytes[n] & 0x1F;
            if (arBytes[n - 1] == 1 && arBytes[n - 2] == 0 && arBytes[n - 3] == 0 && nKind != 6)
                sKinds += std::to_string(nKind) + " ";
        }
        const bool bKey = nUnit % stDef_EncodedClip::s_nGop == 0;
        EXPECT_EQ(sKinds, bKey ? "7 8 5 " : "1 ") << nUnit;
        EXPECT_EQ(pClip->arUnits[nUnit].bKey, bKey) << nUnit;
    }
}

// The units of a frame's two showings are the same once they come from memory; what follows begins with a key frame.
TEST(LiveView, KeepsTheLoopOfACameraAtRest)
{
    constexpr int nFrames = stDef_EncodedClip::s_nFrames;
    std::string sError;
    ASSERT_TRUE(CGstPlugins::s_F_b_Load(sError)) << sError;
    CLiveView objLive(2, true);
    stDef_PtzView stView;
    std::vector<std::vector<std::uint8_t>> arShown;
    const auto show = [&](int nFirst, int nCount) {
        for (int n = nFirst; n < nFirst + nCount; ++n) {
            const auto* pUnit = objLive.m_F_p_Picture(n % nFrames, stView);
            ASSERT_NE(pUnit, nullptr);
            arShown.push_back(*pUnit);
        }
    };
    const auto isKey = [](const std::vector<std::uint8_t>& arUnit) { return (arUnit.at(4) & 0x1F) == 7; };
    for (int n = 7; n < 20; ++n) { // it moves
        stView.fX = static_cast<float>(n);
        show(n, 1);
    }
    EXPECT_TRUE(isKey(arShown.front()));
    show(20, nFrames + stDef_EncodedClip::s_nGop);
    arShown.clear();
    show(30, nFrames);
    const auto arFirst = std::move(arShown);
    arShown.clear();
    show(30, nFrames);
    EXPECT_EQ(arShown, arFirst);
    stView.fX += 1;
    arShown.clear();
    show(30, 3);
    EXPECT_TRUE(isKey(arShown[0]));
    EXPECT_NE(arShown[2], arFirst[2]);
}

TEST_F(Streams, EveryMountPlaysOverEveryTransport)
{
    std::latch objAllDone(25);
    std::vector<std::future<void>> arClients;
    for (const char* pszTransport : {"udp", "tcp", "http"}) {
        for (int n = 0; n < 8; ++n) {
            arClients.push_back(std::async(std::launch::async, [&, n, pszTransport] {
                const std::string sMount = (n % 2 != 0 ? "SCH" : "CH") + std::to_string(n / 2);
                SCOPED_TRACE(sMount + " over " + pszTransport);
                CStreamPlayer objPlayer;
                const std::string sUrl = Url(sMount, n < 4 ? "guest:g" : "admin:p%40ss%3Aw");
                EXPECT_EQ(objPlayer.m_F_n_Open(sUrl, pszTransport, 20000), 0);
                ExpectRun(objPlayer, n / 2, n % 2 != 0);
                objAllDone.arrive_and_wait();
            }));
        }
    }
    EXPECT_TRUE(WaitUntil([this] { return vm_objServer.m_F_n_Sessions() == 24; }, 30000));
    objAllDone.count_down();
    for (auto& objClient : arClients)
        objClient.get();
    EXPECT_TRUE(WaitUntil([this] { return vm_objServer.m_F_n_Sessions() == 0; }));
}

TEST_F(Streams, OffersBasicAndDigest)
{
    const auto describe = [this](const std::string& sMore) {
        CSocket objSocket;
        EXPECT_TRUE(objSocket.m_F_b_Open() && objSocket.m_F_b_ConnectLoopback(vm_objServer.m_F_n_Port()));
        objSocket.m_F_b_Write("DESCRIBE rtsp://127.0.0.1/stream/CH0 RTSP/1.0\r\nCSeq: 1\r\n" + sMore + "\r\n");
        char acAnswer[4096];
        const long nGot = objSocket.m_F_n_Read(acAnswer, sizeof(acAnswer), 10000);
        return std::string(acAnswer, nGot > 0 ? static_cast<std::size_t>(nGot) : 0);
    };
    const std::string sAsked = describe("");
    EXPECT_NE(sAsked.find("401"), std::string::npos);
    EXPECT_NE(sAsked.find("WWW-Authenticate: Basic"), std::string::npos);
    EXPECT_NE(sAsked.find("WWW-Authenticate: Digest"), std::string::npos);
    EXPECT_EQ(describe("Authorization: Basic Z3Vlc3Q6Zw==\r\n").find("RTSP/1.0 200"), 0U);
}

TEST_F(Streams, SilentGarbageAndMissingBelongToTheirMount)
{
    const struct
    {
        const char* pszFault;
        int nLimitMs;
        std::function<bool(int)> isExpected;
    } arRows[] = {
        {"silent", g_nQuietMs, [](int n) { return n == g_nStopped; }},
        {"garbage", 5000, [](int n) { return n != 0 && n != g_nStopped; }},
        {"missing", 5000, [](int n) { return n == g_nMissing404; }},
    };
    for (const auto& stRow : arRows) {
        SCOPED_TRACE(stRow.pszFault);
        const auto pBefore = Play("CH0");
        ASSERT_TRUE(vm_objServer.m_F_b_SetFault("/CH0", stRow.pszFault));
        for (const char* pszTransport : {"tcp", "http"}) {
            CStreamPlayer objHit;
            const int nResult = objHit.m_F_n_Open(Url("CH0"), pszTransport, stRow.nLimitMs);
            EXPECT_TRUE(stRow.isExpected(nResult)) << pszTransport << " " << nResult;
        }
        EXPECT_TRUE(pBefore->m_F_o_Next()) << "what plays goes on";
        Play("SCH0");
        ASSERT_TRUE(vm_objServer.m_F_b_SetFault("*", "none"));
        Play("CH0");
    }
}

TEST_F(Streams, TimeStampsJumpOnceByWhatIsTold)
{
    const auto pPlayer = Play("SCH2");
    for (const long nJumpMs : {20000L, -50000L}) {
        auto stLast = pPlayer->m_F_o_Next();
        ASSERT_TRUE(stLast);
        ASSERT_TRUE(vm_objServer.m_F_b_SetFault("SCH2", "jump", nJumpMs));
        int nJumps = 0;
        for (int n = 0; n < 20; ++n) {
            const auto stPicture = pPlayer->m_F_o_Next();
            ASSERT_TRUE(stPicture);
            std::int64_t nStepMs = stPicture->nPtsMs - stLast->nPtsMs;
            if (nStepMs > g_nWrapMs / 2) // the client takes a stamp before the last sender report's for a wrapped one
                nStepMs -= g_nWrapMs;
            if (std::abs(nStepMs) > 1000) {
                EXPECT_NEAR(static_cast<double>(nStepMs), static_cast<double>(nJumpMs) + 67, 70);
                ++nJumps;
            }
            stLast = stPicture;
        }
        EXPECT_EQ(nJumps, 1) << nJumpMs;
    }
}

TEST_F(Streams, PicturesTurnWithTheirCamera)
{
    const auto pPlayer = Play("CH3");
    const auto pOther = Play("SCH0");
    const auto stHome = Frame(*pPlayer, 25);
    const auto stOther = Frame(*pOther, 25);
    // A client on a busy machine may be some pictures behind.
    const auto comesTo = [](CStreamPlayer& objPlayer, const auto& isExpected) {
        for (int n = 0; n < 3; ++n) {
            if (isExpected(Frame(objPlayer, 25)))
                return true;
        }
        return false;
    };
    ASSERT_TRUE(vm_pPtz->m_F_b_Command(3, {{"gotoserverpresetno", "0"}}));
    ASSERT_TRUE(WaitUntil([&] { return !vm_pPtz->m_F_o_State(3).bMoving; }));
    const stDef_PtzView stView = vm_pPtz->m_F_o_View(3);
    const auto isTurned = [&](const auto& st) { return Difference(st, stHome, stView) < 5; };
    EXPECT_GT(Difference(stHome, stHome, stView), 20) << "the test can tell the two apart";
    EXPECT_TRUE(comesTo(*pPlayer, isTurned));
    EXPECT_TRUE(isTurned(Frame(*pPlayer, 25))) << "from memory by now";
    EXPECT_TRUE(isTurned(Frame(*Play("CH3"), 25))) << "for a client that comes late, too";
    EXPECT_EQ(Frame(*pOther, 25).arLuma, stOther.arLuma) << "the camera beside it";
    ASSERT_TRUE(vm_pPtz->m_F_b_Command(3, {{"move", "home"}}));
    EXPECT_TRUE(comesTo(*pPlayer, [&](const auto& st) { return st.arLuma == stHome.arLuma; }));
}

TEST_F(Streams, UnknownFaultsAndMountsAreToldApart)
{
    EXPECT_FALSE(vm_objServer.m_F_b_SetFault("*", "bogus"));
    EXPECT_FALSE(vm_objServer.m_F_b_SetFault("/CH9", "silent"));
    for (const std::string_view sName : CStreamServer::s_F_ar_FaultNames())
        EXPECT_TRUE(vm_objServer.m_F_b_SetFault("/CH3", std::string(sName))) << sName;
    vm_objServer.m_S_Stop();
    EXPECT_FALSE(vm_objServer.m_F_b_SetFault("*", "none"));
    EXPECT_FALSE(vm_objServer.m_F_b_TransferConnection(-1, "127.0.0.1", 1, ""));
}

// Another port that gives its connections away once it has read the head of their first request.
TEST_F(Streams, TakesConnectionsOfAnotherPort)
{
    CSocket objListener;
    std::string sError;
    ASSERT_TRUE(objListener.m_F_b_Listen("127.0.0.1", 0, sError)) << sError;
    std::thread objAcceptor([&] {
        for (int nSocket = objListener.m_F_n_Accept(); nSocket >= 0; nSocket = objListener.m_F_n_Accept()) {
            CSocket objSocket(nSocket);
            std::string sHead;
            char acPiece[512];
            while (sHead.find("\r\n\r\n") == std::string::npos) {
                const long nGot = objSocket.m_F_n_Read(acPiece, sizeof(acPiece), 5000);
                if (nGot <= 0)
                    break;
                sHead.append(acPiece, static_cast<std::size_t>(nGot));
            }
            EXPECT_TRUE(vm_objServer.m_F_b_TransferConnection(objSocket.m_F_n_Release(), "127.0.0.1", 4711, sHead));
        }
    });
    for (const char* pszTransport : {"http", "tcp"}) {
        SCOPED_TRACE(pszTransport);
        CStreamPlayer objPlayer;
        EXPECT_EQ(objPlayer.m_F_n_Open(Url("SCH1", "guest:g", objListener.m_F_n_Port()), pszTransport), 0);
        ExpectRun(objPlayer, 1, true);
        ASSERT_TRUE(vm_objServer.m_F_b_SetFault("SCH1", "killed"));
        while (objPlayer.m_F_o_Next()) {
        }
        EXPECT_FALSE(objPlayer.m_F_b_TimedOut());
    }
    objListener.m_S_Wake();
    objAcceptor.join();
}

TEST(StreamServer, RefusesBadConfigurations)
{
    CStreamServer objOther;
    std::string sError;
    ASSERT_TRUE(objOther.m_F_b_Start({}, sError)) << sError;
    EXPECT_FALSE(objOther.m_F_b_Start({}, sError)) << "it runs already";
    const struct
    {
        stDef_StreamConfig stConfig;
        const char* pszExpected;
    } arRows[] = {
        {{"127.0.0.1", 0, 0, {}}, "channels"},         {{"127.0.0.1", 0, 65, {}}, "channels"},
        {{"127.0.0.1", 65536, 4, {}}, "out of range"}, {{"127.0.0.1", -1, 4, {}}, "out of range"},
        {{"nowhere", 0, 4, {}}, "numeric address"},    {{"127.0.0.1", objOther.m_F_n_Port(), 4, {}}, "can't be used"},
    };
    CStreamServer objServer;
    for (const auto& stRow : arRows) {
        sError.clear();
        EXPECT_FALSE(objServer.m_F_b_Start(stRow.stConfig, sError));
        EXPECT_NE(sError.find(stRow.pszExpected), std::string::npos) << sError;
        EXPECT_EQ(objServer.m_F_n_Port(), 0);
    }
    ASSERT_TRUE(objServer.m_F_b_Start({"127.0.0.1", 0, 64, {}}, sError)) << sError;
    CStreamPlayer objPlayer;
    const std::string sUrl = "rtsp://127.0.0.1:" + std::to_string(objServer.m_F_n_Port()) + "/stream/SCH63";
    ASSERT_EQ(objPlayer.m_F_n_Open(sUrl, "tcp"), 0) << "without accounts everybody may play";
    ExpectRun(objPlayer, 63, true);
}

TEST(StreamServer, StartsAndStopsWithoutLeavingAnything)
{
    const auto count = [](const char* pszFolder) {
        return std::distance(std::filesystem::directory_iterator(pszFolder), {});
    };
    std::ptrdiff_t nThreads = 0;
    std::ptrdiff_t nHandles = 0;
    for (int nRound = 0; nRound < 14; ++nRound) {
        if (nRound == 4) { // by now the thread pools of the libraries have settled
            nThreads = count("/proc/self/task");
            nHandles = count("/proc/self/fd");
        }
        CStreamServer objServer;
        std::string sError;
        ASSERT_TRUE(objServer.m_F_b_Start({}, sError)) << sError;
        CStreamPlayer objPlayer;
        const std::string sUrl = "rtsp://127.0.0.1:" + std::to_string(objServer.m_F_n_Port()) + "/stream/SCH0";
        ASSERT_EQ(objPlayer.m_F_n_Open(sUrl, nRound % 2 != 0 ? "udp" : "tcp"), 0);
        ASSERT_TRUE(objPlayer.m_F_o_Next());
        objServer.m_S_Stop();
        objServer.m_S_Stop();
    }
    EXPECT_TRUE(WaitUntil([&] { return count("/proc/self/task") <= nThreads + 1; }, 20000)) << count("/proc/self/task");
    EXPECT_TRUE(WaitUntil([&] { return count("/proc/self/fd") <= nHandles + 1; })) << count("/proc/self/fd");
}
