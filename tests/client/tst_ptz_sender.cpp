#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <map>
#include <random>

#include "ptz/CPtzSender.h"
#include "recorders/CNvrQuery.h"
#include "scene/CPtzBoard.h"
#include "support/HostFixture.h"
#include "support/LogReading.h"
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
        StartRecorder({.nChannels = Cameras, .bStreams = false});
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
        std::map<std::string, bool> mapMoving; // by command and camera
        for (const std::string& sCommand : TakeAnswered(vm_nvr.m_F_o_Log(), "continuous")) {
            const std::size_t nValue = sCommand.find('=') + 1;
            const bool bStop = sCommand.compare(nValue, 3, "0:0") == 0 || sCommand.compare(nValue, 3, "0,0") == 0;
            bool& bMoving = mapMoving[sCommand.substr(0, nValue) + sCommand.substr(sCommand.find("camera="), 8)];
            EXPECT_TRUE(bMoving || !bStop) << sCommand << " stops nothing";
            bMoving = !bStop;
        }
        EXPECT_FALSE(mapMoving.empty());
        for (const auto& [sWho, bMoving] : mapMoving)
            EXPECT_FALSE(bMoving) << sWho;
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
    for (const bool bInHaste : {false, true, false, true}) {
        SCOPED_TRACE(bInHaste);
        vm_nEnded = 0;
        auto pSender = MakeSender();
        for (int n = 0; n < 200; ++n) {
            const int nHeard = vm_nHeard;
            const stDef_PtzOrder stOrder = Order();
            pSender->m_S_Add(stOrder);
            if (stOrder.nKind == emDef_Kind::Once && n % 2 == 0) // or all of them would be there before one is sent
                EXPECT_TRUE(WaitUntil([&] { return vm_nHeard != nHeard; }));
        }
        for (int n = 0; n < Cameras * Axes; ++n)
            pSender->m_S_Add({emDef_Kind::Stop, n % Axes == 0 ? 25 : 26, n / Axes, 0, 0, n % Axes});
        if (!bInHaste) {
            pSender->m_S_Close();
            EXPECT_TRUE(WaitUntil([this] { return vm_nEnded == 1; }));
        }
        pSender.reset();
        EXPECT_EQ(vm_nEnded, 1);
        ExpectStandstill();
    }
}
