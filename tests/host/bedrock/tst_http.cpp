#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QRegularExpression>

#include <dlfcn.h>
#include <time.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <future>
#include <thread>

#include "CScriptedServer.h"
#include "CVirtualNvr.h"
#include "host/bedrock/CHTTP.h"
#include "host/bedrock/CMemManage.h"
#include "http/CRequestLog.h"
#include "support/BlockedNames.h"
#include "support/Table.h"
#include "support/Waiting.h"

namespace {

std::atomic<long> g_nClockAheadMs = 0;

} // namespace

/// Takes the place of the system's for the whole program: a kept connection grows old without a wait.
extern "C" __attribute__((visibility("default"))) int clock_gettime(clockid_t nClock, timespec* pTime) noexcept
{
    static const auto s_pSystem = reinterpret_cast<decltype(&clock_gettime)>(dlsym(RTLD_NEXT, "clock_gettime"));
    const int nResult = s_pSystem(nClock, pTime);
    const long nNs = pTime->tv_nsec + g_nClockAheadMs % 1000 * 1000000;
    pTime->tv_sec += g_nClockAheadMs / 1000 + nNs / 1000000000;
    pTime->tv_nsec = nNs % 1000000000;
    return nResult;
}

namespace {

using testing::AnyOf;
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

class Http : public testing::Test
{
protected:
    void SetUp() override
    {
        qputenv("http_proxy", "http://127.0.0.1:1"); // not for a recorder
        Start(0);
    }
    void Start(int nPort)
    {
        std::string sError;
        ASSERT_TRUE(vm_nvr.m_F_b_Start({.nHttpPort = nPort, .bStreams = false}, sError)) << sError;
    }

    int Port() const { return vm_nvr.m_F_n_HttpPort(); }
    int Get(const QByteArray& sUrl, int nTimeoutMs = LongMs, const char* pPassword = Password, const char* pUser = User)
    {
        return vm_http.m_F_n_HTTPGetDataDirect(Host, pUser, pPassword, Port(), sUrl, &vm_mem, nTimeoutMs);
    }
    int GetFrom(int nPort, const char* pHost = Host, const char* pUser = User)
    {
        return vm_http.m_F_n_HTTPGetDataDirect(pHost, pUser, Password, nPort, "x", &vm_mem, LongMs);
    }
    int Post(int nPort, const QByteArray& sUrl, const QByteArray& sBody, int nBody, int nTimeoutMs = LongMs)
    {
        return vm_http.m_F_n_HTTPPostDataDirect(Host, User, Password, nPort, sUrl, sBody, nBody, "X-Extra: 1\r\nrest",
                                                12, nTimeoutMs);
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
    CVirtualNvr vm_nvr;
    CHTTP vm_http;
    CMemManage vm_mem{0};
    std::array<char, 1024> vm_arBuffer{};
    std::uint32_t vm_nBuffer = 1024;
};

TEST_F(Http, SendsTheUrlAsItWasGiven)
{
    for (const stDef_TableRow& row : ReadTable("request_targets.txt", 2)) {
        EXPECT_EQ(Get(QByteArray::fromStdString(row[0])), CHTTP::Result_ErrorStatus)
            << row[1] << ": not found; refused, had the login been for another";
        EXPECT_EQ(Log(row[1]).back().sTarget, row[1]);
    }
}

TEST_F(Http, PostsBodiesWholeAndOnceWithOneLogin)
{
    for (const int nSize : {0, 70000, 2000000}) {
        SCOPED_TRACE(nSize);
        const QByteArray sBody = "<root><Mark Text=\"" + QByteArray(nSize, 'x') + "\"/></root>";
        for (int i = 0; i < 5; ++i) {
            ASSERT_GE(Post(Port(), PutEMail, sBody + "behind", int(sBody.size())), 0);
            ASSERT_GT(Get(GetEMail), 0);
            ASSERT_TRUE(QByteArray(vm_mem.m_F_p_GetStrCHAR()).contains(sBody));
        }
    }
    EXPECT_EQ(vm_http.m_F_n_LastStatus(), 200);
    EXPECT_EQ(Post(Port(), PutEMail, "<root/>", -1), 0) << "no document, but a reply";
    EXPECT_EQ(vm_http.m_F_n_LastStatus(), 400);
    EXPECT_EQ(Get("last"), CHTTP::Result_ErrorStatus);
    const auto arLog = Log("/last");
    EXPECT_EQ(arLog.size(), 1U + 30 + 2) << "one request is repeated, for the login";
    for (const stDef_LogEntry& stEntry : arLog)
        EXPECT_EQ(stEntry.nConnection, 1U);
}

TEST_F(Http, NoAccountTakesOverFromAnother)
{
    std::size_t nRequests = 0;
    for (const stDef_TableRow& row : ReadTable("accounts.txt", 5)) {
        SCOPED_TRACE(row.sWhere);
        const int nResult = Get(row[2].c_str(), LongMs, row[1].c_str(), row[0].c_str());
        EXPECT_TRUE(row.Is(4) ? nResult > 0 : nResult == CHTTP::Result_Unauthorised) << nResult;
        const std::string sLast = "dips/request.php?" + row.sWhere;
        Get(sLast.c_str(), LongMs, row[1].c_str(), row[0].c_str());
        const auto arLog = Log("/" + sLast);
        EXPECT_EQ(arLog.size() - nRequests, std::stoul(row[3]) + 1);
        nRequests = arLog.size();
    }
    EXPECT_EQ(vm_nvr.m_F_o_Log().m_F_ar_Entries().back().nConnection, 6U) << "one for each account that takes its turn";
}

TEST_F(Http, OutlivesARestartOfTheRecorder)
{
    ASSERT_GT(Get(Info), 0);
    ASSERT_TRUE(vm_http.m_S_Init(Host, User, Password, Port()));
    ASSERT_GT(NextPart(Motion), 0);
    const int nPort = Port();
    vm_nvr.m_S_Stop();
    EXPECT_EQ(GetFrom(nPort), CHTTP::Result_Unreachable);
    int nPart = 1;
    for (int i = 0; i < 100 && nPart > 0; ++i)
        nPart = NextPart(Motion); // what was under way may still come
    EXPECT_EQ(nPart, CHTTP::Result_Broken);
    EXPECT_EQ(NextPart(Motion), CHTTP::Result_Unreachable);
    Start(nPort);
    EXPECT_GT(Get(Info), 0) << "the recorder knows nothing of the login any more";
    EXPECT_GT(NextPart(Motion), 0);
}

TEST_F(Http, LogsInAnewWhereALoginIsForgotten)
{
    std::atomic<int> nGranted = 0;
    CScriptedServer server([&nGranted](CSocket& socket) {
        for (std::string sHead = CScriptedServer::s_F_s_ReadHead(socket); !sHead.empty();
             sHead = CScriptedServer::s_F_s_ReadHead(socket)) {
            const std::string sNonce = "nonce=\"" + std::to_string(nGranted / 2) + "\"";
            const bool bGrant = sHead.find(sNonce) != sHead.npos;
            nGranted += bGrant ? 1 : 0;
            socket.m_F_b_Write(bGrant ? "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok"
                                      : "HTTP/1.1 401 No\r\nWWW-Authenticate: Digest realm=\"r\", qop=\"auth\", " +
                                            sNonce + "\r\nContent-Length: 0\r\n\r\n");
        }
    });
    for (int i = 0; i < 6; ++i) // a nonce lasts for two, and the server never calls it stale
        EXPECT_EQ(GetFrom(server.m_F_n_Port()), 2);
    EXPECT_EQ(nGranted, 6);
}

TEST_F(Http, ARequestOnADyingConnectionFailsAndGoesOutOnce)
{
    for (const bool bLogin : {false, true}) {
        std::atomic<int> nHeads = 0;
        CScriptedServer server([&](CSocket& socket) { // answers one request a connection, and closes at the second
            for (int i = 0; !CScriptedServer::s_F_s_ReadHead(socket).empty() && ++nHeads && i == 0; ++i)
                socket.m_F_b_Write(bLogin ? "HTTP/1.1 401 No\r\nWWW-Authenticate: Digest realm=\"r\", nonce=\"n\"\r\n"
                                            "Content-Length: 0\r\n\r\n"
                                          : "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok");
        });
        const int nPort = server.m_F_n_Port();
        ASSERT_TRUE(vm_http.m_S_Init(Host, User, Password, nPort));
        const std::function<int()> arRows[] = {
            [&] { return GetFrom(nPort); },
            [&] { return Post(nPort, "x", "body", 4); },
            [&] { return vm_http.m_F_n_HTTPGetData("x", LongMs), vm_http.m_F_n_LastGetResult(); },
        };
        for (const auto& row : arRows) {
            SCOPED_TRACE(std::to_string(&row - arRows) + (bLogin ? " with login" : ""));
            nHeads = 0;
            if (!bLogin)
                EXPECT_EQ(row(), 2);
            EXPECT_EQ(row(), CHTTP::Result_Broken);
            EXPECT_EQ(nHeads, 2);
        }
    }
}

TEST_F(Http, AConnectionIsKeptForThreeSeconds)
{
    Get(Info);
    for (const auto& [nIdleMs, nConnection] : {std::pair{2500L, 1U}, {2500L, 1U}, {3100L, 2U}}) {
        g_nClockAheadMs += nIdleMs;
        const std::string sUrl = "dips/request.php?" + std::to_string(g_nClockAheadMs);
        Get(sUrl.c_str());
        EXPECT_EQ(Log("/" + sUrl).back().nConnection, nConnection);
    }
    g_nClockAheadMs = 0;
}

QByteArray HashOf(QCryptographicHash::Algorithm nHash, const QByteArray& sText)
{
    return QCryptographicHash::hash(sText, nHash).toHex();
}

TEST_F(Http, LogsInForABodyAlone)
{
    using enum QCryptographicHash::Algorithm;
    struct Row
    {
        const char *pOffer, *pPassword;
        QCryptographicHash::Algorithm nHash;
        bool bSession;
        int nStatus, nRequests; ///< of two POSTs
    };
    const Row arRows[] = {
        {"qop=\"auth-int\"", Password, Md5, false, 200, 3},
        {"Qop=auth-int, algorithm=SHA-256, opaque=\"o, p\"", Password, Sha256, false, 200, 3},
        {"algorithm=\"MD5-sess\", qop=\"auth-int\"", Password, Md5, true, 200, 3},
        {"qop=\"auth-int\"", "wrong", Md5, false, 401, 4},
    };
    const QByteArray sBody = "<root>\xe6\x94\x9d</root>", sUser = "a \"user\\";
    for (const Row& row : arRows) {
        SCOPED_TRACE(row.pOffer);
        std::atomic<int> nRequests = 0;
        CScriptedServer server([&](CSocket& socket) {
            for (QByteArray sHead = QByteArray::fromStdString(CScriptedServer::s_F_s_ReadHead(socket));
                 !sHead.isEmpty(); sHead = QByteArray::fromStdString(CScriptedServer::s_F_s_ReadHead(socket))) {
                ++nRequests;
                QByteArray sRead(sBody.size(), 0);
                for (qsizetype n = 0;
                     sHead.contains("Content-Length: " + QByteArray::number(sRead.size())) && n < sRead.size();)
                    n += socket.m_F_n_Read(sRead.data() + n, std::size_t(sRead.size() - n));
                const auto Field = [&](const char* pName) {
                    const QRegularExpression objPattern(QLatin1String(pName) + QLatin1String("=\"?([^\",]*)"));
                    return objPattern.match(QString::fromUtf8(sHead)).captured(1).toUtf8();
                };
                QByteArray sAccount = HashOf(row.nHash, sUser + ":r:" + Password);
                if (row.bSession)
                    sAccount = HashOf(row.nHash, sAccount + ":n:" + Field("cnonce"));
                const QByteArray sRequest = HashOf(row.nHash, "POST:/x?a=%22b#c:" + HashOf(row.nHash, sRead));
                const QByteArray sRight = HashOf(row.nHash, sAccount + ":n:" + Field(" nc") + ":" + Field("cnonce") +
                                                                ":auth-int:" + sRequest);
                const bool bGrant = sRead == sBody && sHead.startsWith("POST /x?a=%22b#c ") &&
                                    sHead.contains(R"(username="a \"user\\")") && Field("response") == sRight;
                socket.m_F_b_Write(bGrant
                                       ? "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok"
                                       : "HTTP/1.1 401 No\r\nWWW-Authenticate: Basic realm=\"b\", Digest realm=\"r\", "
                                         "nonce=\"n\", " +
                                             std::string(row.pOffer) + "\r\nContent-Length: 0\r\n\r\n");
            }
        });
        for (int i = 0; i < 2; ++i) {
            EXPECT_GE(vm_http.m_F_n_HTTPPostDataDirect(Host, sUser, row.pPassword, server.m_F_n_Port(), "x?a=\"b#c",
                                                       sBody, int(sBody.size()), {}, 0, LongMs),
                      0);
            EXPECT_EQ(vm_http.m_F_n_LastStatus(), row.nStatus);
        }
        EXPECT_EQ(nRequests, row.nRequests);
    }
}

TEST_F(Http, ItsEndEndsADirectRequestAndWaitsForIt)
{
    std::atomic<bool> bAsked = false;
    CScriptedServer server([&bAsked](CSocket& socket) {
        bAsked = !CScriptedServer::s_F_s_ReadHead(socket).empty();
        socket.m_F_b_WaitReadable(LongMs);
    });
    auto pHttp = std::make_unique<CHTTP>();
    std::atomic<int> nResult = 0;
    std::thread asker([&, pAsked = pHttp.get()] {
        nResult = pAsked->m_F_n_HTTPGetDataDirect(Host, {}, {}, server.m_F_n_Port(), "x", &vm_mem, LongMs);
    });
    EXPECT_TRUE(WaitUntil([&] { return bAsked.load(); }));
    const auto nBegin = Clock::now();
    pHttp.reset();
    EXPECT_LT(MsSince(nBegin), 1000);
    asker.join();
    EXPECT_EQ(nResult, CHTTP::Result_Stopped);
}

TEST_F(Http, RefusesWhatIsNoRequest)
{
    for (const stDef_TableRow& row : ReadTable("no_hosts.txt", 2)) {
        SCOPED_TRACE(row.sWhere);
        const QByteArray sHost = QByteArray::fromStdString(row[0]);
        const int nPort = row[1].empty() ? Port() : row.Number(1);
        vm_mem.m_F_b_SetContent("old", 3);
        EXPECT_EQ(vm_http.m_F_n_HTTPGetDataDirect(sHost, User, Password, nPort, Info, &vm_mem, LongMs),
                  CHTTP::Result_BadArgument);
        EXPECT_EQ(vm_mem.m_F_n_GetMemSize(), 0U);
        EXPECT_FALSE(vm_http.m_S_Init(sHost, User, Password, nPort));
    }
    EXPECT_FALSE(vm_http.m_S_Init(Host, QByteArray("admin\0x", 7), Password, Port()));
    EXPECT_EQ(NextPart(Motion), CHTTP::Result_BadArgument) << "no target";
    EXPECT_EQ(vm_http.m_F_n_HTTPGetData(Info, LongMs), 0U);
    EXPECT_TRUE(vm_http.m_S_Release() && vm_http.m_S_Release()) << "without a target, twice";
    ASSERT_TRUE(vm_http.m_S_Init(Host, User, Password, Port()));
    EXPECT_EQ(vm_http.m_F_n_HTTPGetDataDirect(Host, User, Password, Port(), Info, nullptr, LongMs),
              CHTTP::Result_BadArgument);
    EXPECT_EQ(vm_http.m_F_n_MultiPartStreamGet(Motion, nullptr, 10, LongMs), CHTTP::Result_BadArgument);
    EXPECT_EQ(NextPart(Motion, 0), CHTTP::Result_TimedOut);
    EXPECT_EQ(Get(Info, -5), CHTTP::Result_TimedOut);
    EXPECT_EQ(NextPart("cgi-bin/none.cgi"), CHTTP::Result_ErrorStatus);
    EXPECT_GT(vm_http.m_F_n_HTTPGetData(Info, LongMs), 0U);
}

TEST_F(Http, SendsAPlainHeadToEitherFamily)
{
    std::string sHead;
    const auto script = [&sHead](CSocket& socket) {
        sHead = CScriptedServer::s_F_s_ReadHead(socket);
        socket.m_F_b_Write("HTTP/1.1 200 OK\r\nContent-Length: 2\r\nConnection: close\r\n\r\nok");
    };
    CScriptedServer serverV4(script), serverV6(script, "::1");
    EXPECT_EQ(GetFrom(serverV4.m_F_n_Port(), "localhost", ""), 2);
    EXPECT_TRUE(sHead.starts_with("GET /x HTTP/1.1\r\nHost: localhost:")) << sHead;
    if (serverV6.m_F_n_Port() != 0) // else there is no IPv6 here
        for (const char* pHost : {"::1", "[::1]", "0:0:0:0:0:0:0:1"})
            EXPECT_EQ(GetFrom(serverV6.m_F_n_Port(), pHost, ""), 2) << pHost;

    const int nSize = 2 << 20;
    EXPECT_EQ(vm_http.m_F_n_HTTPPostDataDirect(Host, {}, {}, serverV4.m_F_n_Port(), "x", QByteArray(nSize, 'x'), nSize,
                                               "X-Extra: 1\r\nrest", 12, LongMs),
              2);
    for (const char* pLine : {"Content-Type: text/xml; charset=utf-8", "Content-Length: 2097152", "X-Extra: 1"})
        EXPECT_NE(sHead.find(std::string("\r\n") + pLine + "\r\n"), sHead.npos) << pLine;
    EXPECT_EQ(sHead.find("rest"), sHead.npos);
    EXPECT_EQ(sHead.find("Expect"), sHead.npos) << "it would cost a second with most recorders";
}

TEST_F(Http, EndsWellWhenALongPostIsRefusedBeforeItsEnd)
{
    std::atomic<int> nConnections = 0;
    CScriptedServer server([&nConnections](CSocket& socket) {
        CScriptedServer::s_F_s_ReadHead(socket);
        socket.m_F_b_Write(nConnections++ == 0 ? "HTTP/1.1 401 No\r\nWWW-Authenticate: Basic realm=\"r\"\r\n"
                                                 "Content-Length: 0\r\nConnection: close\r\n\r\n"
                                               : "HTTP/1.1 413 No\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
    });
    const auto nBegin = Clock::now();
    EXPECT_THAT(Post(server.m_F_n_Port(), "x", QByteArray(20 << 20, 'x'), 20 << 20, 2000),
                AnyOf(0, CHTTP::Result_Broken));
    EXPECT_LT(MsSince(nBegin), 1900);
    EXPECT_GT(Get(Info), 0);
}

TEST_F(Http, ASlowNameServiceHoldsNobody)
{
    auto nBegin = Clock::now();
    EXPECT_EQ(vm_http.m_F_n_HTTPGetDataDirect("blocked.test", User, Password, 80, "x", &vm_mem, TimeoutMs),
              CHTTP::Result_TimedOut);
    EXPECT_LE(MsSince(nBegin), TimeoutMs + SlackMs);
    ASSERT_TRUE(vm_http.m_S_Init("blocked2.test", User, Password, 80));
    auto reader = std::async(std::launch::async, [this] { return NextPart(Motion); });
    EXPECT_TRUE(WaitUntil([] { return BlockedNames::g_nWaiting == 2; }));
    nBegin = Clock::now();
    vm_http.m_S_Release();
    EXPECT_EQ(reader.get(), CHTTP::Result_Stopped);
    EXPECT_LT(MsSince(nBegin), SlackMs);
    BlockedNames::g_bBlocks = false;
    EXPECT_TRUE(WaitUntil([] { return BlockedNames::g_nWaiting == 0; })) << "threads that libcurl let go";
    EXPECT_EQ(GetFrom(80, "blocked3.test"), CHTTP::Result_Unreachable) << "now it says that there is none";
}

TEST_F(Http, ReadsPartAfterPartOverOneConnection)
{
    ASSERT_TRUE(vm_http.m_S_Init(Host, User, Password, Port()));
    for (int i = 0; i < 4; ++i) {
        const int nPart = NextPart(Motion);
        ASSERT_GT(nPart, 0);
        EXPECT_EQ(QByteArray(vm_arBuffer.data(), nPart).count("group="), 4) << "one whole part";
        EXPECT_TRUE(QByteArray(vm_arBuffer.data()).startsWith("group=0"));
    }
    int nTimeouts = 0;
    for (int nPart = 0; nPart <= 0; ++nTimeouts) {
        nPart = NextPart(Motion, 10);
        ASSERT_TRUE(nPart > 0 || (nPart == CHTTP::Result_TimedOut && nTimeouts < 1000)) << nPart;
    }
    EXPECT_GT(nTimeouts, 1) << "a part comes each 100 ms";
    vm_nBuffer = 5;
    EXPECT_EQ(NextPart(Motion), 5);
    EXPECT_STREQ(vm_arBuffer.data(), "group");
    vm_nBuffer = 1024;
    EXPECT_GT(NextPart(Motion), 5);
    EXPECT_EQ(vm_arBuffer[0], 'g') << "the rest of a part is not another one";
    EXPECT_GT(NextPart(Info), 100) << "another URL, and no multipart stream";
    EXPECT_GT(NextPart("cgi-bin/motiondata.cgi?camera=2"), 0);
    vm_http.m_S_Release();
    Log("/cgi-bin/motiondata.cgi?camera=2");
    EXPECT_EQ(std::ranges::count(Log(std::string("/") + Motion), std::string("/") + Motion, &stDef_LogEntry::sTarget),
              2)
        << "one stream, and its log-in";
}

TEST_F(Http, ReleaseEndsABlockedReadAtOnce)
{
    CScriptedServer server([](CSocket& socket) {
        CScriptedServer::s_F_s_ReadHead(socket);
        socket.m_F_b_Write("HTTP/1.1 200 OK\r\nContent-Type: multipart/mixed; boundary=b\r\n\r\n"
                           "--b\r\n\r\nold 1\r\n--b\r\n\r\nold 2\r\n--b\r\n\r\n");
        socket.m_F_b_WaitReadable(LongMs);
    });
    std::vector<long> arMs;
    for (int nRound = 0; nRound < 20; ++nRound) {
        ASSERT_TRUE(vm_http.m_S_Init(Host, User, Password, server.m_F_n_Port()));
        std::atomic<bool> bBlocksNext = false;
        auto reader = std::async(std::launch::async, [&] {
            NextPart(Motion);
            NextPart(Motion);
            bBlocksNext = true;
            return NextPart(Motion);
        });
        EXPECT_TRUE(WaitUntil([&] { return bBlocksNext.load(); }));
        const bool bUnderWay = nRound % 2 == 0;
        if (bUnderWay)
            EXPECT_GT(Get(Info), 0) << "another group; meanwhile the read gets under way for sure";
        const auto nBegin = Clock::now();
        vm_http.m_S_Release();
        EXPECT_THAT(reader.get(), AnyOf(CHTTP::Result_Stopped, CHTTP::Result_BadArgument))
            << "in the call, or before it";
        if (bUnderWay)
            arMs.push_back(MsSince(nBegin));
    }
    std::sort(arMs.begin(), arMs.end());
    EXPECT_LT(arMs[arMs.size() / 2], 50);
    EXPECT_LT(arMs.back(), 500) << "on a machine that is busy with other things";

    ASSERT_TRUE(vm_http.m_S_Init(Host, User, Password, server.m_F_n_Port()));
    EXPECT_EQ(NextPart(Motion), 5);
    ASSERT_TRUE(vm_http.m_S_Init(Host, User, Password, Port()));
    EXPECT_GT(NextPart(Motion), 0);
    EXPECT_EQ(vm_arBuffer[0], 'g') << "a part of the former recorder";
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
    EXPECT_TRUE(WaitUntil([&] { return Get(Info) < 0 || (nParts >= 2 && nCommands >= 20); }));
    vm_http.m_S_Release();
    stream.join();
    commands.join();
    Get("last");
    EXPECT_EQ(std::ranges::count(Log("/last"), 401, &stDef_LogEntry::nStatus), 3) << "one login a connection";
}

} // namespace
