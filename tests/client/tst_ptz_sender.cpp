#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <map>
#include <random>

#include "CNvrQuery.h"
#include "CPtzBoard.h"
#include "CPtzSender.h"
#include "support/HostFixture.h"
#include "support/Waiting.h"

namespace {

using emDef_Kind = stDef_PtzOrder::emDef_Kind;

constexpr int Cameras = 2;
constexpr int Axes = 2;

/// The sender and whoever gives it orders, on two threads, and a recorder without streams: all of it for the thread
/// sanitizer, too.
class PtzSender : public HostFixture
{
protected:
    void SetUp() override
    {
        HostFixture::SetUp();
        stDef_VirtualNvrConfig stConfig;
        stConfig.bStreams = false;
        stConfig.nChannels = Cameras;
        StartRecorder(stConfig);
    }

    std::unique_ptr<CPtzSender> MakeSender()
    {
        return std::make_unique<CPtzSender>(
            CNvrQuery::s_F_p_MakeObject(&vm_env, Init()),
            [this](int nResult) {
                ++vm_nHeard;
                vm_nFailed += nResult < 0;
            },
            [this] { ++vm_nEnded; });
    }

    /// Some order or other; a stop comes as often as a movement.
    stDef_PtzOrder Order()
    {
        const auto Any = [this](int nEnd) { return static_cast<int>(vm_objRandom() % static_cast<unsigned>(nEnd)); };
        stDef_PtzOrder st;
        st.nKind = std::array{emDef_Kind::Once, emDef_Kind::Move, emDef_Kind::Stop}[static_cast<std::size_t>(Any(3))];
        st.nCamera = Any(Cameras);
        st.nAxis = Any(Axes);
        const bool bStop = st.nKind == emDef_Kind::Stop;
        if (st.nKind == emDef_Kind::Once)
            st.nCmd = 16;
        else if (st.nAxis == 0)
            st.nCmd = bStop ? 25 : 24;
        else
            st.nCmd = 26;
        st.nParam1 = bStop ? 0 : 1 + Any(10);
        return st;
    }

    /// Every movement that went out has been stopped, each once, and the cameras stand still.
    void ExpectStandstill()
    {
        std::map<std::pair<std::string, std::string>, bool> mapMoving; // by command and camera
        for (const stDef_LogEntry& stEntry : vm_nvr.m_F_o_Log().m_F_ar_Entries()) {
            const std::size_t nAt = stEntry.sTarget.find("?continuous");
            if (nAt == std::string::npos || stEntry.nStatus == 401)
                continue;
            const std::size_t nEquals = stEntry.sTarget.find('=', nAt), nCamera = stEntry.sTarget.find("camera=");
            const bool bStop = stEntry.sTarget.substr(nEquals + 1).starts_with("0:0") ||
                               stEntry.sTarget.substr(nEquals + 1).starts_with("0,0");
            bool& bMoving = mapMoving[{stEntry.sTarget.substr(nAt, nEquals - nAt), stEntry.sTarget.substr(nCamera, 8)}];
            EXPECT_TRUE(bMoving || !bStop) << stEntry.sTarget << " stops nothing";
            bMoving = !bStop;
        }
        EXPECT_FALSE(mapMoving.empty());
        for (const auto& [arWho, bMoving] : mapMoving)
            EXPECT_FALSE(bMoving) << arWho.first << ' ' << arWho.second;
        for (int nCamera = 0; nCamera < Cameras; ++nCamera)
            EXPECT_FALSE(vm_nvr.m_F_o_Ptz().m_F_o_State(nCamera).bMoving) << nCamera;
        EXPECT_EQ(vm_nFailed, 0);
    }

    std::atomic<int> vm_nHeard{0};
    std::atomic<int> vm_nFailed{0};
    std::atomic<int> vm_nEnded{0};
    std::minstd_rand vm_objRandom{7};
};

} // namespace

TEST_F(PtzSender, LeavesNothingMovingInWhateverOrderTheOrdersCome)
{
    auto pSender = MakeSender();
    for (int n = 0; n < 400; ++n) {
        const int nHeard = vm_nHeard;
        const stDef_PtzOrder stOrder = Order();
        pSender->m_S_Add(stOrder);
        if (stOrder.nKind == emDef_Kind::Once && n % 2 == 0) // or all of them would be there before one is sent
            EXPECT_TRUE(WaitUntil([&] { return vm_nHeard != nHeard; }));
    }
    for (int n = 0; n < Cameras * Axes; ++n)
        pSender->m_S_Add({emDef_Kind::Stop, n % Axes == 0 ? 25 : 26, n / Axes, 0, 0, n % Axes});
    pSender->m_S_Close();
    EXPECT_TRUE(WaitUntil([this] { return vm_nEnded == 1; }));
    pSender.reset();
    ExpectStandstill();
}

TEST_F(PtzSender, SendsTheStopsThatAreDueWhenItGoesAtOnce)
{
    constexpr int Rounds = 20;
    for (int n = 0; n < Rounds; ++n) {
        const auto pSender = MakeSender();
        pSender->m_S_Add({emDef_Kind::Move, 24, n % Cameras, 5, 5, 0});
        if (n % 3 != 0) // sent, or still to be sent
            EXPECT_TRUE(WaitUntil([&] { return vm_nvr.m_F_o_Ptz().m_F_o_State(n % Cameras).bMoving; }));
        pSender->m_S_Add({emDef_Kind::Stop, 25, n % Cameras, 0, 0, 0});
    }
    EXPECT_EQ(vm_nEnded, Rounds);
    ExpectStandstill();
}
