#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <condition_variable>
#include <set>
#include <thread>

#include "CFaultTable.h"
#include "CRequestLog.h"
#include "CScriptedServer.h"
#include "CVirtualNvr.h"
#include "host/bedrock/CHTTP.h"
#include "host/bedrock/CMemManage.h"

namespace {

using testing::AnyOf;
using testing::Ge;
using testing::Gt;
using Clock = std::chrono::steady_clock;

constexpr int TimeoutMs = 600;
constexpr int SlackMs = 300;
constexpr int LongMs = 10000;
constexpr const char* Host = "127.0.0.1";
constexpr const char* User = "admin";
constexpr const char* Password = "Fl33t!ink";
constexpr const char* Info = "cgi-bin/logininfo.cgi";
constexpr const char* Motion = "cgi-bin/motiondata.cgi?camera=0";
constexpr const char* GetEMail = "cgi-bin/SyncSetting.cgi?action=EMailXML";
constexpr const char* PutEMail = "cgi-bin/SyncSetting.cgi?action=UpdateEMail";

long MsSince(Clock::time_point nBegin)
{
    return static_cast<long>(std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - nBegin).count());
}

/// Something that one thread tells another.
class CSignal
{
public:
    void m_S_Set()
    {
        const std::lock_guard lock(vm_objMutex);
        vm_bSet = true;
        vm_objChanged.notify_all();
    }
    bool m_F_b_Wait()
    {
        std::unique_lock lock(vm_objMutex);
        return vm_objChanged.wait_for(lock, std::chrono::milliseconds(LongMs), [this] { return vm_bSet; });
    }

private:
    std::mutex vm_objMutex;
    std::condition_variable vm_objChanged;
    bool vm_bSet = false;
};

class Http : public testing::Test
{
protected:
    void SetUp() override { Start(0); }
    void Start(int nPort)
    {
        stDef_VirtualNvrConfig stConfig;
        stConfig.bStreams = false;
        stConfig.nHttpPort = nPort;
        std::string sError;
        ASSERT_TRUE(vm_nvr.m_F_b_Start(stConfig, sError)) << sError;
    }

    int Port() const { return vm_nvr.m_F_n_HttpPort(); }
    int Get(const QByteArray& sUrl, int nTimeoutMs = LongMs, const char* pPassword = Password)
    {
        return vm_http.m_F_n_HTTPGetDataDirect(Host, User, pPassword, Port(), sUrl, &vm_mem, nTimeoutMs);
    }
    int Post(const QByteArray& sUrl, const QByteArray& sBody)
    {
        return vm_http.m_F_n_HTTPPostDataDirect(Host, User, Password, Port(), sUrl, sBody, int(sBody.size()), {}, 0,
                                                LongMs);
    }
    int NextPart(const char* pUrl, int nTimeoutMs = LongMs)
    {
        vm_arBuffer.fill('\0');
        return vm_http.m_F_n_MultiPartStreamGet(pUrl, vm_arBuffer.data(), vm_nBuffer, nTimeoutMs);
    }

    /// The recorder's log, once the request that was made last stands in it: it is written after the reply.
    std::vector<stDef_LogEntry> Log(const std::string& sLastTarget)
    {
        EXPECT_TRUE(vm_nvr.m_F_o_Log().m_F_b_Wait(
            [&](const stDef_LogEntry& stEntry) { return stEntry.sTarget == sLastTarget && stEntry.nStatus != 401; },
            LongMs))
            << sLastTarget << " isn't the last: " << vm_nvr.m_F_o_Log().m_F_ar_Entries().back().sTarget;
        return vm_nvr.m_F_o_Log().m_F_ar_Entries();
    }
    static int Count(const std::vector<stDef_LogEntry>& arLog, const char* pMethod, int nStatus)
    {
        return int(std::count_if(arLog.begin(), arLog.end(), [&](const stDef_LogEntry& stEntry) {
            return stEntry.sMethod == pMethod && stEntry.nStatus == nStatus;
        }));
    }

    CVirtualNvr vm_nvr;
    CHTTP vm_http;
    CMemManage vm_mem{0};
    std::array<char, 1024> vm_arBuffer{};
    std::uint32_t vm_nBuffer = 1024;
};

TEST_F(Http, EndsEachFaultInTimeAndWorksOn)
{
    struct Row
    {
        const char* pFault;
        testing::Matcher<int> result;
    };
    const Row arRows[] = {
        {"refuse", CHTTP::Result_Broken},
        {"silence", CHTTP::Result_TimedOut},
        {"endless-headers", CHTTP::Result_TooLarge},
        {"401", CHTTP::Result_Unauthorised},
        {"changing-challenge", CHTTP::Result_Unauthorised},
        {"redirect", CHTTP::Result_ErrorStatus},
        {"status", CHTTP::Result_ErrorStatus},
        {"status:404", CHTTP::Result_ErrorStatus},
        {"garbage", CHTTP::Result_Broken},
        {"huge", CHTTP::Result_TooLarge},
        {"deep", Gt(100000)},
        {"entity-bomb", Gt(0)},
        {"empty", 0},
        {"endless-chunks", CHTTP::Result_TooLarge},
        {"bad-chunks", CHTTP::Result_Broken},
        {"dips-no-colon", Gt(0)},
        {"dips-no-http", Gt(0)},
        {"close-after-login", CHTTP::Result_Broken},
        {"stale-nonce", Gt(0)},
        {"slow", CHTTP::Result_TimedOut},
        {"delay:100", Gt(0)},
        {"delay:5000", CHTTP::Result_TimedOut},
        {"cut-head", CHTTP::Result_Broken},
        {"cut-body:10", CHTTP::Result_Broken},
        {"short-length", Gt(0)},
        {"long-length", CHTTP::Result_Broken},
        {"huge-length", CHTTP::Result_TooLarge},
        {"negative-length", CHTTP::Result_Broken},
        {"chunked:7", Gt(0)},
        {"no-root-end", Gt(0)},
        {"cut-utf8", Gt(0)},
        {"wrong-encoding", Gt(0)},
    };
    std::set<std::string> arNames;
    vm_http.m_S_SetBodyLimit(8u << 20);
    for (const Row& row : arRows) {
        SCOPED_TRACE(row.pFault);
        const std::string sFault(row.pFault);
        arNames.insert(sFault.substr(0, sFault.find(':')));
        ASSERT_TRUE(vm_nvr.m_F_o_Faults().m_F_b_Parse("logininfo=" + sFault));
        const auto nBegin = Clock::now();
        const int nResult = Get(Info, TimeoutMs);
        EXPECT_LE(MsSince(nBegin), TimeoutMs + SlackMs);
        EXPECT_THAT(nResult, row.result);
        EXPECT_EQ(vm_mem.m_F_n_GetMemSize(), quint64(std::max(nResult, 0))) << "a failure leaves nothing";
        EXPECT_EQ(vm_mem.m_F_p_GetStrCHAR()[vm_mem.m_F_n_GetMemSize()], '\0');
        vm_nvr.m_F_o_Faults().m_S_Clear();
        EXPECT_GT(Get(Info), 0) << "the next request";
    }
    for (const std::string_view sName : CFaultTable::s_F_ar_Names())
        EXPECT_EQ(arNames.count(std::string(sName)), 1U) << sName << " stands in no row";
}

TEST_F(Http, SendsTheUrlAsItWasGiven)
{
    struct Row
    {
        QByteArray sUrl;
        const char* pTarget;
    };
    const Row arRows[] = {
        {"cgi-bin/x.cgi?a=1&b=2", "/cgi-bin/x.cgi?a=1&b=2"},
        {"/cgi-bin/x.cgi", "/cgi-bin/x.cgi"},
        {"", "/"},
        {"?a=1", "/?a=1"},
        {"x.cgi?", "/x.cgi?"},
        {"x.cgi?a=b c\td\r\n\x7f", "/x.cgi?a=b%20c%09d%0D%0A%7F"},
        {"x.cgi?a=T\xc3\xbcr", "/x.cgi?a=T%C3%BCr"},
        {"x.cgi?a=T\xfcr", "/x.cgi?a=T%FCr"},
        {QByteArray("x.cgi?a=\0b", 10), "/x.cgi?a=%00b"},
        {"a/../b/./c//d?e=/../f", "/a/../b/./c//d?e=/../f"},
        {"%2F%2f%41/x?y=%C3%bc%zz%", "/%2F%2f%41/x?y=%C3%bc%zz%"},
        {"x.cgi?url=http://a@b:1/?c?d", "/x.cgi?url=http://a@b:1/?c?d"},
        {R"(x.cgi?a="<>\^`{|}'()*!$+,;[])", R"(/x.cgi?a="<>\^`{|}'()*!$+,;[])"},
        {"x.cgi?name=a#b c", "/x.cgi?name=a#b%20c"},
        {"x.cgi?name=a#", "/x.cgi?name=a#"},
        {"a/%2F../b?name=a#b#c?d#e", "/a/%2F../b?name=a#b#c?d#e"},
        {"a/../b#c?d=%2F", "/a/../b#c?d=%2F"},
        {"#", "/#"},
    };
    for (const Row& row : arRows) {
        SCOPED_TRACE(row.pTarget);
        const int nResult = Get(row.sUrl);
        EXPECT_EQ(nResult, CHTTP::Result_ErrorStatus)
            << "not found; with a login for another target it would be refused";
        EXPECT_EQ(Log(row.pTarget).back().sTarget, row.pTarget);
    }
}

TEST_F(Http, LogsInOnceForManyRequests)
{
    ASSERT_GT(Get(GetEMail), 0);
    const QByteArray sText(vm_mem.m_F_p_GetStrCHAR());
    const auto nBegin = sText.indexOf("<root"), nEnd = sText.indexOf("</root>") + 7;
    for (int i = 0; i < 20; ++i) {
        ASSERT_GE(Post(PutEMail, sText.mid(nBegin, nEnd - nBegin)), 0);
        ASSERT_GT(Get(GetEMail), 0);
    }
    EXPECT_EQ(Get("last"), CHTTP::Result_ErrorStatus);
    const auto arLog = Log("/last");
    EXPECT_EQ(arLog.size(), 1U + 1 + 40 + 1) << "one request is repeated, for the login";
    for (const stDef_LogEntry& stEntry : arLog)
        EXPECT_EQ(stEntry.nConnection, 1U);
}

TEST_F(Http, NoAccountTakesOverFromAnother)
{
    struct Row
    {
        const char *pUser, *pPassword, *pUrl;
        int nRequests;
        testing::Matcher<int> result;
    };
    const Row arRows[] = {
        {User, Password, Info, 2, Gt(0)},
        {User, "wrong", Info, 2, CHTTP::Result_Unauthorised},
        {User, "wrong", Info, 2, CHTTP::Result_Unauthorised},
        {User, Password, Info, 2, Gt(0)},
        {"other", Password, Info, 2, CHTTP::Result_Unauthorised},
        {"", "", Info, 1, CHTTP::Result_Unauthorised},
        {"", "", "dips/request.php?id=FL-000001", 1, Gt(0)},
        {User, Password, Info, 2, Gt(0)},
    };
    std::size_t nRequests = 0, nConnections = 0;
    for (const Row& row : arRows) {
        const auto nNumber = &row - arRows;
        SCOPED_TRACE(nNumber);
        EXPECT_THAT(vm_http.m_F_n_HTTPGetDataDirect(Host, row.pUser, row.pPassword, Port(), row.pUrl, &vm_mem, LongMs),
                    row.result);
        const std::string sLast = "dips/request.php?" + std::to_string(nNumber);
        vm_http.m_F_n_HTTPGetDataDirect(Host, row.pUser, row.pPassword, Port(), sLast.c_str(), &vm_mem, LongMs);
        const auto arLog = Log("/" + sLast);
        EXPECT_EQ(arLog.size() - nRequests, std::size_t(row.nRequests) + 1);
        EXPECT_LE(arLog.back().nConnection, nConnections + 1);
        nRequests = arLog.size();
        nConnections = arLog.back().nConnection;
    }
    EXPECT_EQ(nConnections, 6U) << "a connection for each of the accounts that take turns";
}

TEST_F(Http, OutlivesARestartOfTheRecorder)
{
    ASSERT_GT(Get(Info), 0);
    ASSERT_TRUE(vm_http.m_S_Init(Host, User, Password, Port()));
    ASSERT_GT(NextPart(Motion), 0);
    const int nPort = Port();
    vm_nvr.m_S_Stop();
    EXPECT_EQ(vm_http.m_F_n_HTTPGetDataDirect(Host, User, Password, nPort, Info, &vm_mem, LongMs),
              CHTTP::Result_Unreachable);
    int nPart = 1;
    for (int i = 0; i < 100 && nPart > 0; ++i)
        nPart = NextPart(Motion); // what was under way may still come
    EXPECT_EQ(nPart, CHTTP::Result_Broken);
    EXPECT_EQ(NextPart(Motion), CHTTP::Result_Unreachable);
    Start(nPort);
    EXPECT_GT(Get(Info), 0) << "the recorder knows nothing of the login any more";
    EXPECT_GT(NextPart(Motion), 0);
}

TEST_F(Http, PostsABodyWholeAndOnce)
{
    for (const int nSize : {0, 1, 70000, 1000000}) {
        SCOPED_TRACE(nSize);
        vm_nvr.m_F_o_Log().m_S_Clear();
        const QByteArray sBody = "<root><Mark Text=\"" + QByteArray(nSize, 'x') + "\"/></root>";
        CHTTP fresh;
        for (CHTTP* pHttp : {&fresh, &fresh, &vm_http})
            EXPECT_GE(pHttp->m_F_n_HTTPPostDataDirect(Host, User, Password, Port(), PutEMail, sBody + "behind",
                                                      int(sBody.size()), "X-Extra: 1\r\nrest", 12, LongMs),
                      0);
        const std::string sLast = "/last" + std::to_string(nSize);
        EXPECT_EQ(Post(sLast.c_str(), "x"), CHTTP::Result_ErrorStatus);
        const auto arLog = Log(sLast);
        EXPECT_EQ(Count(arLog, "POST", 200), 3);
        for (const stDef_LogEntry& stEntry : arLog)
            EXPECT_TRUE(stEntry.sMethod != "POST" || stEntry.nStatus != 200 || stEntry.sBody == sBody.toStdString())
                << stEntry.nBytesIn;
        ASSERT_GT(Get(GetEMail), 0);
        EXPECT_TRUE(QByteArray(vm_mem.m_F_p_GetStrCHAR()).contains(sBody));
    }
    EXPECT_EQ(Post(PutEMail, "no document"), CHTTP::Result_ErrorStatus);
    EXPECT_EQ(Post(PutEMail, {}), CHTTP::Result_ErrorStatus);
}

TEST_F(Http, RefusesWhatIsNoRequest)
{
    struct Row
    {
        QByteArray sHost;
        int nPort;
        QByteArray sUser;
        int nTimeoutMs;
        int nResult;
    };
    const int nPort = Port();
    const Row arRows[] = {
        {"", nPort, User, LongMs, CHTTP::Result_BadArgument},
        {Host, 0, User, LongMs, CHTTP::Result_BadArgument},
        {Host, -1, User, LongMs, CHTTP::Result_BadArgument},
        {Host, 65536, User, LongMs, CHTTP::Result_BadArgument},
        {"127.0.0.1/x", nPort, User, LongMs, CHTTP::Result_BadArgument},
        {"a@127.0.0.1", nPort, User, LongMs, CHTTP::Result_BadArgument},
        {"127.0.0.1?", nPort, User, LongMs, CHTTP::Result_BadArgument},
        {"127.0.0.1#", nPort, User, LongMs, CHTTP::Result_BadArgument},
        {"127.0.0.1:80", nPort, User, LongMs, CHTTP::Result_BadArgument},
        {"127.0.0.1 ", nPort, User, LongMs, CHTTP::Result_BadArgument},
        {QByteArray("127.0.0.1\0x", 11), nPort, User, LongMs, CHTTP::Result_BadArgument},
        {QByteArray(300, 'a'), nPort, User, LongMs, CHTTP::Result_BadArgument},
        {Host, nPort, QByteArray("admin\0x", 7), LongMs, CHTTP::Result_BadArgument},
        {Host, nPort, User, 0, CHTTP::Result_TimedOut},
        {Host, nPort, User, -5, CHTTP::Result_TimedOut},
    };
    for (const Row& row : arRows) {
        SCOPED_TRACE(row.sHost.toStdString() + ":" + std::to_string(row.nPort));
        vm_mem.m_F_b_SetContent("old", 3);
        EXPECT_EQ(
            vm_http.m_F_n_HTTPGetDataDirect(row.sHost, row.sUser, Password, row.nPort, Info, &vm_mem, row.nTimeoutMs),
            row.nResult);
        EXPECT_EQ(vm_mem.m_F_n_GetMemSize(), 0U);
        EXPECT_EQ(vm_http.m_S_Init(row.sHost, row.sUser, Password, row.nPort),
                  row.nResult != CHTTP::Result_BadArgument);
        vm_http.m_S_Release();
    }
    EXPECT_EQ(vm_http.m_F_n_HTTPGetDataDirect(Host, User, Password, nPort, Info, nullptr, LongMs),
              CHTTP::Result_BadArgument);
    EXPECT_EQ(vm_http.m_F_n_HTTPPostDataDirect(Host, User, Password, nPort, PutEMail, "x", -3, "y", -4, LongMs),
              CHTTP::Result_ErrorStatus)
        << "an empty document";
    EXPECT_EQ(NextPart(Motion), CHTTP::Result_BadArgument) << "no target";
    EXPECT_EQ(vm_http.m_F_n_HTTPGetData(Info, LongMs), 0U);
    EXPECT_TRUE(vm_http.m_S_Release() && vm_http.m_S_Release()) << "without a target, twice";
    ASSERT_TRUE(vm_http.m_S_Init(Host, User, Password, nPort));
    EXPECT_EQ(vm_http.m_F_n_MultiPartStreamGet(Motion, nullptr, 10, LongMs), CHTTP::Result_BadArgument);
    EXPECT_EQ(NextPart(Motion, 0), CHTTP::Result_TimedOut);
    EXPECT_EQ(NextPart("cgi-bin/none.cgi"), CHTTP::Result_ErrorStatus);
    EXPECT_GT(vm_http.m_F_n_HTTPGetData(Info, LongMs), 0U);
}

TEST_F(Http, SpeaksToAnAddressOfTheOtherFamily)
{
    CScriptedServer server(
        [](CSocket& socket, int) {
            CScriptedServer::s_F_s_ReadHead(socket);
            socket.m_F_b_Write("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok");
        },
        "::1");
    if (server.m_F_n_Port() == 0)
        GTEST_SKIP() << "no IPv6 here";
    for (const char* pHost : {"::1", "[::1]", "0:0:0:0:0:0:0:1"})
        EXPECT_EQ(vm_http.m_F_n_HTTPGetDataDirect(pHost, {}, {}, server.m_F_n_Port(), "x", &vm_mem, LongMs), 2)
            << pHost;
}

TEST_F(Http, EndsWellWhenALongPostIsRefusedBeforeItsEnd)
{
    CScriptedServer server([](CSocket& socket, int nConnection) {
        if (CScriptedServer::s_F_s_ReadHead(socket).empty())
            return;
        socket.m_F_b_Write(nConnection == 0 ? "HTTP/1.1 401 No\r\nWWW-Authenticate: Basic realm=\"r\"\r\n"
                                              "Content-Length: 0\r\nConnection: close\r\n\r\n"
                                            : "HTTP/1.1 413 No\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
    });
    const QByteArray sBody(20 << 20, 'x');
    const auto nBegin = Clock::now();
    EXPECT_THAT(vm_http.m_F_n_HTTPPostDataDirect(Host, User, Password, server.m_F_n_Port(), "x", sBody,
                                                 int(sBody.size()), {}, 0, 2000),
                AnyOf(CHTTP::Result_ErrorStatus, CHTTP::Result_Broken));
    EXPECT_LT(MsSince(nBegin), 1900);
    EXPECT_GT(Get(Info), 0);
}

TEST_F(Http, ReadsPartAfterPartOverOneConnection)
{
    ASSERT_TRUE(vm_http.m_S_Init(Host, User, Password, Port()));
    for (int i = 0; i < 4; ++i) {
        const int nPart = NextPart(Motion);
        ASSERT_GT(nPart, 0);
        EXPECT_EQ(QByteArray(vm_arBuffer.data(), nPart).count("group="), 3) << "one whole part";
        EXPECT_TRUE(QByteArray(vm_arBuffer.data()).startsWith("group=0"));
    }
    int nTimeouts = 0, nParts = 0;
    const auto nBegin = Clock::now();
    while (nParts < 3 && MsSince(nBegin) < LongMs) {
        const int nPart = NextPart(Motion, 20);
        nParts += nPart > 0 ? 1 : 0;
        nTimeouts += nPart == CHTTP::Result_TimedOut ? 1 : 0;
        ASSERT_TRUE(nPart > 0 || nPart == CHTTP::Result_TimedOut);
    }
    EXPECT_EQ(nParts, 3);
    EXPECT_GT(nTimeouts, 3) << "a part comes each 100 ms";
    vm_nBuffer = 5;
    EXPECT_EQ(NextPart(Motion), 5);
    EXPECT_STREQ(vm_arBuffer.data(), "group");
    vm_nBuffer = 1024;
    EXPECT_TRUE(NextPart(Motion) > 0 && vm_arBuffer[0] == 'g') << "the rest of a part is not another one";
    EXPECT_GT(NextPart(Info), 100) << "another URL, and no multipart stream";
    EXPECT_GT(NextPart("cgi-bin/motiondata.cgi?camera=1"), 0);
    vm_http.m_S_Release();
    int nFirst = 0;
    for (const stDef_LogEntry& stEntry : Log("/cgi-bin/motiondata.cgi?camera=1"))
        nFirst += stEntry.sTarget.ends_with("camera=0") && stEntry.nStatus == 200 ? 1 : 0;
    EXPECT_EQ(nFirst, 1);
}

TEST_F(Http, ReleaseEndsABlockedReadAtOnce)
{
    CSignal asked;
    CScriptedServer server([&](CSocket& socket, int) {
        CScriptedServer::s_F_s_ReadHead(socket);
        asked.m_S_Set();
        socket.m_F_b_WaitReadable(LongMs);
    });
    ASSERT_TRUE(vm_http.m_S_Init(Host, User, Password, server.m_F_n_Port()));
    int nResult = 0;
    std::thread reader([&] { nResult = NextPart(Motion, 60000); });
    ASSERT_TRUE(asked.m_F_b_Wait());
    const auto nBegin = Clock::now();
    vm_http.m_S_Release();
    reader.join();
    EXPECT_LT(MsSince(nBegin), 50);
    EXPECT_EQ(nResult, CHTTP::Result_Stopped);
    ASSERT_TRUE(vm_http.m_S_Init(Host, User, Password, Port()));
    EXPECT_GT(NextPart(Motion), 0);
}

TEST_F(Http, StreamCommandsAndRequestsRunBesideEachOther)
{
    ASSERT_TRUE(vm_http.m_S_Init(Host, User, Password, Port()));
    std::atomic<int> nParts = 0, nCommands = 0;
    std::thread stream([&] {
        while (NextPart(Motion) > 0)
            ++nParts;
    });
    std::thread commands([&] {
        while (vm_http.m_F_n_HTTPGetData(Info, LongMs) > 0)
            ++nCommands;
    });
    const auto nBegin = Clock::now();
    while ((nParts < 5 || nCommands < 20) && MsSince(nBegin) < LongMs)
        ASSERT_GT(Get(Info), 0);
    vm_http.m_S_Release();
    stream.join();
    commands.join();
    EXPECT_GE(nParts, 5);
    EXPECT_GE(nCommands, 20);
    Get("last");
    EXPECT_EQ(Count(Log("/last"), "GET", 401), 3) << "one login a connection";
}

} // namespace
