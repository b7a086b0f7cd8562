#include "motion/CMotionReader.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>

namespace {

constexpr int Windows = 4;

std::string Lit(const CMotionLights& lights)
{
    std::string sLit;
    for (int i = 0; i < Windows; ++i)
        sLit += lights.m_F_b_Lit(i) ? '1' : '0';
    return sLit;
}

TEST(MotionReader, TakesWhatMakesSense)
{
    const struct
    {
        const char *pszPart, *pszLit; ///< of windows 0 and 2, which were lit before
    } arRows[] = {
        {"group=0 level=3 motion=0\r\ngroup=1 motion=1\r\n", "0110"},
        {"xgroup=3 motion=1 threshold=2\r\nnoise\r\ngroup=2motion=0\r\n", "1001"},
        {"group=1 motion=1", "1110"},
        {"group=1 motion=10\r\ngroup=0 motion=x\r\n", "0010"},
        {"group=1 level=5\r\n", "1010"},
        {"group=3 level=5\r\ngroup=1 motion=1\r\n", "1011"}, // "motion=" is looked for beyond the line
        {"group=0 motion=0\rgroup=2 motion=0\r", "0010"},
        {"group=4 motion=1\r\ngroup=-1 motion=1\r\ngroup= motion=1\r\n", "1010"},
        {"group=99999999999999999999 motion=1\r\ngroup=3 motion=1\r\n", "1011"},
        {"", "1010"},
        {"motion=1 group=", "1010"},
    };
    for (const auto& row : arRows) {
        CMotionLights lights;
        lights.m_S_Reset(Windows);
        lights.m_S_Set(0, true);
        lights.m_S_Set(2, true);
        CMotionReader::s_S_Take(row.pszPart, lights);
        EXPECT_EQ(Lit(lights), row.pszLit) << row.pszPart;
    }
}

/// Of each call, what the stream gives: a part, or a failure.
TEST(MotionReader, GoesOnUntilItIsToldToStop)
{
    const auto pLights = std::make_shared<CMotionLights>();
    pLights->m_S_Reset(Windows);
    std::atomic<int> nCalls{0};
    CMotionReader reader(pLights, [&](CMemManage& memPart) {
        EXPECT_EQ(memPart.m_F_n_GetMemSize(), 1024u);
        const int nCall = nCalls++;
        if (nCall == 1)
            return -3;
        const std::string sPart = nCall % 2 ? "group=1 motion=0\r\n" : "group=1 motion=1\r\n";
        sPart.copy(memPart.m_F_p_GetStrCHAR(), sPart.size());
        std::this_thread::yield();
        return static_cast<int>(sPart.size());
    });
    const auto nBegin = std::chrono::steady_clock::now();
    std::thread thread([&] { reader.m_S_Run(); });
    while (nCalls < 3)
        std::this_thread::yield();
    EXPECT_GE(std::chrono::steady_clock::now() - nBegin, std::chrono::milliseconds(500)) << "after a failure it waits";
    pLights->m_S_Reset(Windows); // a list is loaded meanwhile
    while (!pLights->m_F_b_Lit(1))
        std::this_thread::yield();
    reader.m_S_Stop();
    thread.join();
}

TEST(MotionReader, APauseEndsWhenItIsTold)
{
    std::atomic<int> nCalls{0};
    CMotionReader reader(std::make_shared<CMotionLights>(), [&](CMemManage&) { return nCalls++, -1; });
    std::thread thread([&] { reader.m_S_Run(); });
    while (nCalls == 0)
        std::this_thread::yield();
    const auto nBegin = std::chrono::steady_clock::now();
    reader.m_S_Stop();
    thread.join();
    EXPECT_LT(std::chrono::steady_clock::now() - nBegin, std::chrono::milliseconds(400));
    EXPECT_EQ(nCalls, 1);
}

} // namespace
