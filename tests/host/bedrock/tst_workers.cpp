#include <atomic>
#include <gtest/gtest.h>
#include <memory>

#ifndef _WIN32
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include "host/Platform.h"
#include "host/bedrock/CStdThread.h"

namespace {

// What a worker of these tests does: tells that it runs, waits to be let go, tells that it ended.
struct st_Work
{
    std::atomic<std::uint32_t> nStarted{0};
    std::atomic<std::uint32_t> nRelease{0};
    std::atomic<std::uint32_t> nEnded{0};

    static unsigned int Run(void* pWork)
    {
        auto* pThis = static_cast<st_Work*>(pWork);
        Raise(pThis->nStarted);
        Platform::s_F_b_WaitWord(&pThis->nRelease, 0, 10'000);
        Raise(pThis->nEnded);
        return 7;
    }

    static void Raise(std::atomic<std::uint32_t>& nWord)
    {
        nWord.store(1, std::memory_order_release);
        Platform::s_S_WakeWord(&nWord);
    }

    static bool IsRaised(const std::atomic<std::uint32_t>& nWord)
    {
        return Platform::s_F_b_WaitWord(&nWord, 0, 10'000);
    }
};

TEST(StdThread, HoldsOneThreadAtATime)
{
    CStdThread objThread;
    EXPECT_EQ(objThread.m_F_n_CloseThread(1000), 1);
    EXPECT_EQ(objThread.m_F_n_CreaetThread(nullptr, nullptr), 0);
    for (int i = 0; i < 3; ++i) {
        st_Work stWork;
        ASSERT_EQ(objThread.m_F_n_CreaetThread(&st_Work::Run, &stWork), 1);
        ASSERT_TRUE(st_Work::IsRaised(stWork.nStarted));
        EXPECT_EQ(objThread.m_F_n_CreaetThread(&st_Work::Run, &stWork), 0);
        st_Work::Raise(stWork.nRelease);
        EXPECT_EQ(objThread.m_F_n_CloseThread(10'000), 1);
        EXPECT_EQ(stWork.nEnded.load(), 1u);
    }
}

TEST(StdThread, LetsALateThreadGo)
{
    st_Work stWork;
    {
        CStdThread objThread;
        ASSERT_EQ(objThread.m_F_n_CreaetThread(&st_Work::Run, &stWork), 1);
        ASSERT_TRUE(st_Work::IsRaised(stWork.nStarted));
        EXPECT_EQ(objThread.m_F_n_CloseThread(20), 0);
        EXPECT_EQ(objThread.m_F_n_CloseThread(20), 1) << "none is held any more";
    }
    st_Work::Raise(stWork.nRelease);
    EXPECT_TRUE(st_Work::IsRaised(stWork.nEnded));

    st_Work stOther;
    auto pThread = std::make_unique<CStdThread>();
    ASSERT_EQ(pThread->m_F_n_CreaetThread(&st_Work::Run, &stOther), 1);
    const std::uint64_t nBegin = Platform::s_F_n_SteadyMs();
    pThread.reset();
    EXPECT_LT(Platform::s_F_n_SteadyMs() - nBegin, 5000u) << "the destructor doesn't wait for the entry";
    st_Work::Raise(stOther.nRelease);
    EXPECT_TRUE(st_Work::IsRaised(stOther.nEnded));
}

TEST(WaitWord, TellsChangeAndTimeOut)
{
    std::atomic<std::uint32_t> nWord{5};
    EXPECT_TRUE(Platform::s_F_b_WaitWord(&nWord, 4, 0));
    EXPECT_FALSE(Platform::s_F_b_WaitWord(&nWord, 5, 0));
    EXPECT_FALSE(Platform::s_F_b_WaitWord(&nWord, 5, -1));
    const std::uint64_t nBegin = Platform::s_F_n_SteadyUs();
    EXPECT_FALSE(Platform::s_F_b_WaitWord(&nWord, 5, 30));
    EXPECT_GE(Platform::s_F_n_SteadyUs() - nBegin, 30'000u);
}

#ifndef _WIN32
TEST(WaitWord, WakesAReadOnlyMappingOfAnotherProcess)
{
    const int nFile = memfd_create("word", 0);
    ASSERT_EQ(ftruncate(nFile, 4096), 0);
    using Word = std::atomic<std::uint32_t>;
    auto* pWord = static_cast<Word*>(mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_SHARED, nFile, 0));
    auto* pReadOnly = static_cast<const Word*>(mmap(nullptr, 4096, PROT_READ, MAP_SHARED, nFile, 0));
    ASSERT_TRUE(pWord != MAP_FAILED && pReadOnly != MAP_FAILED);
    const pid_t nChild = fork();
    if (nChild == 0) {
        st_Work::Raise(pWord[1]);
        const bool bWoken = Platform::s_F_b_WaitWord(pReadOnly, 0, 10'000);
        st_Work::Raise(pWord[2]);
        _exit(bWoken ? 0 : 1);
    }
    ASSERT_TRUE(st_Work::IsRaised(pWord[1]));
    EXPECT_FALSE(Platform::s_F_b_WaitWord(&pWord[2], 0, 20)) << "the child didn't wait";
    const std::uint64_t nBegin = Platform::s_F_n_SteadyMs();
    st_Work::Raise(pWord[0]);
    EXPECT_TRUE(st_Work::IsRaised(pWord[2]));
    EXPECT_LT(Platform::s_F_n_SteadyMs() - nBegin, 5000u) << "it was woken by its time-out";
    int nStatus = -1;
    ASSERT_EQ(waitpid(nChild, &nStatus, 0), nChild);
    EXPECT_EQ(nStatus, 0);
    close(nFile);
}
#endif

} // namespace
