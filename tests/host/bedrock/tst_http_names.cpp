#include <gtest/gtest.h>

#include <dlfcn.h>
#include <netdb.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <thread>

#include "host/bedrock/CHTTP.h"
#include "host/bedrock/CMemManage.h"

namespace {

constexpr int LimitMs = 10000;

/// A name service that says nothing until it is let go.
struct stDef_SlowNames
{
    std::mutex objMutex;
    std::condition_variable objChanged;
    bool bGo = false;
    int nInside = 0;

    template <typename Condition>
    bool Wait(Condition condition)
    {
        std::unique_lock lock(objMutex);
        return objChanged.wait_for(lock, std::chrono::milliseconds(LimitMs), condition);
    }
    void Change(int nCallers, bool bLetGo)
    {
        const std::lock_guard lock(objMutex);
        nInside += nCallers;
        bGo |= bLetGo;
        objChanged.notify_all();
    }
};

stDef_SlowNames g_stNames;

} // namespace

/// Takes the place of the system's for the whole program: names that begin with "slow" are not answered.
extern "C" __attribute__((visibility("default"))) int getaddrinfo(const char* pName, const char* pService,
                                                                  const addrinfo* pHints, addrinfo** ppResult)
{
    if (pName && std::strncmp(pName, "slow", 4) == 0) {
        g_stNames.Change(1, false);
        g_stNames.Wait([] { return g_stNames.bGo; });
        g_stNames.Change(-1, false);
        return EAI_FAIL;
    }
    static const auto s_pSystem = reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"));
    return s_pSystem(pName, pService, pHints, ppResult);
}

namespace {

TEST(HttpNames, ASlowNameServiceHoldsNobody)
{
    using Clock = std::chrono::steady_clock;
    CHTTP http;
    CMemManage mem;
    auto nBegin = Clock::now();
    EXPECT_EQ(http.m_F_n_HTTPGetDataDirect("slow.test", "u", "p", 80, "x", &mem, 300), CHTTP::Result_TimedOut);
    EXPECT_LT(Clock::now() - nBegin, std::chrono::milliseconds(600));

    ASSERT_TRUE(http.m_S_Init("slow2.test", "u", "p", 80));
    char arBuffer[16];
    int nResult = 0;
    std::thread reader([&] { nResult = http.m_F_n_MultiPartStreamGet("x", arBuffer, sizeof arBuffer, 60000); });
    EXPECT_TRUE(g_stNames.Wait([] { return g_stNames.nInside == 2; }));
    nBegin = Clock::now();
    http.m_S_Release();
    reader.join();
    EXPECT_LT(Clock::now() - nBegin, std::chrono::milliseconds(100));
    EXPECT_EQ(nResult, CHTTP::Result_Stopped);
    g_stNames.Change(0, true);
    EXPECT_TRUE(g_stNames.Wait([] { return g_stNames.nInside == 0; }));
}

TEST(HttpNames, AnUnknownNameIsUnreachable)
{
    CHTTP http;
    CMemManage mem;
    EXPECT_EQ(http.m_F_n_HTTPGetDataDirect("no-such-host.invalid", {}, {}, 80, "x", &mem, LimitMs),
              CHTTP::Result_Unreachable);
}

} // namespace
