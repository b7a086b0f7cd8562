#include "HttpProxyFixture.h"
#include "support/Table.h"
#include "support/Waiting.h"

#include <algorithm>
#include <chrono>
#include <future>
#include <set>
#include <sstream>

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using Clock = std::chrono::steady_clock;

/// Last line of a reply of /echo, without the port of the inner connection.
std::string Echoed(const std::string& sReply)
{
    const std::string sBody = sReply.substr(sReply.rfind("\r\n") + 2);
    return sBody.substr(std::min(sBody.find(' ') + 1, sBody.size()));
}

TEST_F(HttpProxy, PassesRequestsAndRepliesOnUnchanged)
{
    const std::string sBig(3u << 20, 'b');
    auto arRows = ReadTable("echoes.txt", 2);
    arRows.push_back({"big",
                      {"POST /echo HTTP/1.1\r\nContent-Length: " + std::to_string(sBig.size()) + "\r\n\r\n" + sBig,
                       "POST /echo  " + sBig + ";"}});
    CRawClient kept = Client();
    for (const stDef_TableRow& row : arRows) {
        SCOPED_TRACE(row.sWhere);
        ASSERT_TRUE(kept.m_F_b_Send(row[0]));
        EXPECT_TRUE(Echoed(kept.m_F_s_ReadReply()) == row[1]);
        CRawClient dripping = Client();
        const std::size_t nPiece = row[0].size() < 200 ? 1 : row[0].size();
        for (std::size_t n = 0; n < row[0].size(); n += nPiece)
            dripping.m_F_b_Send(std::string_view(row[0]).substr(n, nPiece));
        EXPECT_TRUE(Echoed(dripping.m_F_s_ReadReply()) == row[1]);
    }
    EXPECT_EQ(Client().m_F_s_Get("/plain"), CRawClient(vm_nInnerPort).m_F_s_Get("/plain"));
    EXPECT_EQ(Client().m_F_s_Get("/doc"), CRawClient(vm_nInnerPort).m_F_s_Get("/doc"));
}

TEST_F(HttpProxy, AnswersPipelinedRequestsInOrderOverOneInnerConnection)
{
    CRawClient client = Client();
    client.m_F_b_Send(
        "GET /echo/1 HTTP/1.1\r\n\r\nPOST /echo/2 HTTP/1.1\r\nContent-Length: 3\r\n\r\nabcGET /echo/3 HTTP/1.1\r\n\r\n"
        "HEAD /echo/4 HTTP/1.1\r\n\r\nGET /echo/5 HTTP/1.1\r\n\r\n");
    std::set<std::string> arInner;
    for (const char* pExpected : {"GET /echo/1  ;", "POST /echo/2  abc;", "GET /echo/3  ;", "", "GET /echo/5  ;"}) {
        const std::string sReply = client.m_F_s_ReadReply(*pExpected ? "GET" : "HEAD");
        if (!*pExpected) {
            EXPECT_THAT(sReply, EndsWith("\r\n\r\n"));
            continue;
        }
        EXPECT_EQ(Echoed(sReply), pExpected);
        const std::string sBody = sReply.substr(sReply.rfind('\n') + 1);
        arInner.insert(sBody.substr(0, sBody.find(' ')));
    }
    EXPECT_EQ(arInner.size(), 1u);
}

TEST_F(HttpProxy, PassesStreamsOnAsTheyCome)
{
    CRawClient client = Client();
    client.m_F_b_Send("GET /stream HTTP/1.1\r\n\r\n");
    for (int i = 0; i < 5; ++i) {
        SendPiece(); // no sooner than the one before has arrived
        EXPECT_THAT(client.m_F_s_ReadUntil("piece\r\n", 3000), HasSubstr("piece")) << i;
    }
}

TEST_F(HttpProxy, ClosesWhenEitherSideAsksForIt)
{
    struct Row
    {
        const char* pRequest;
        bool bCloses;
    };
    const Row arRows[] = {
        {"GET /plain HTTP/1.1\r\nConnection: close\r\n\r\n", true},
        {"GET /plain HTTP/1.0\r\n\r\n", true},
        {"GET /plain HTTP/1.1\r\nConnection: keep-alive\r\n\r\n", false},
    };
    for (const Row& row : arRows) {
        CRawClient client = Client();
        client.m_F_b_Send(row.pRequest);
        EXPECT_THAT(client.m_F_s_ReadUntil({}, row.bCloses ? CRawClient::LimitMs : 100), EndsWith("<plain/>"));
        EXPECT_EQ(client.m_F_b_Closed(), row.bCloses) << row.pRequest;
    }
    CRawClient waiting = Client();
    waiting.m_F_b_Send("POST /echo HTTP/1.1\r\nContent-Length: 2\r\nExpect: 100-continue\r\n\r\n");
    EXPECT_EQ(waiting.m_F_s_ReadUntil("\r\n\r\n"), "HTTP/1.1 100 Continue\r\n\r\n");
    waiting.m_F_b_Send("ok");
    EXPECT_EQ(Echoed(waiting.m_F_s_ReadReply()), "POST /echo  ok;");
}

TEST_F(HttpProxy, EndsBadRequestsAndServesOn)
{
    auto arRows = ReadTable("bad_requests.txt", 2);
    arRows.push_back({"a long line", {"GET / HTTP/1.1\r\nX: " + std::string(100000, 'x') + "\r\n\r\n", "431"}});
    for (const stDef_TableRow& row : arRows) {
        SCOPED_TRACE(row.sWhere);
        CRawClient client = Client();
        client.m_F_b_Send(row[0]);
        EXPECT_THAT(client.m_F_s_ReadToEnd(), StartsWith("HTTP/1.1 " + row[1]));
        EXPECT_TRUE(client.m_F_b_Closed());
    }
    EXPECT_THAT(Client().m_F_s_Get("/plain"), EndsWith("<plain/>"));
}

TEST(BodyFramer, FindsTheEnd)
{
    for (const stDef_TableRow& row : ReadTable("bodies.txt", 5)) {
        SCOPED_TRACE(row.sWhere);
        CHttpHead objHead;
        ASSERT_TRUE(objHead.m_F_b_Parse("HTTP/1.1 200 OK\r\n" + row[0] + "\r\n"));
        CBodyFramer objWhole(objHead, row[1]), objPieces(objHead, row[1]);
        EXPECT_EQ(objWhole.m_F_n_Feed(row[2]), std::stoul(row[3]));
        EXPECT_EQ(objWhole.m_F_b_Done(), row.Is(4));
        std::size_t nTaken = 0;
        for (const char c : row[2])
            nTaken += objPieces.m_F_n_Feed({&c, 1});
        EXPECT_EQ(nTaken, std::stoul(row[3]));
        EXPECT_EQ(objPieces.m_F_b_Done(), row.Is(4));
    }
}

TEST_F(HttpProxy, HandsTunnelsOverWithSocketAndBytes)
{
    const std::string sHead = "GET /stream/CH0 HTTP/1.1\r\n";
    for (const char* pLine : {"x-sessioncookie: 77\r\n", "Accept: application/x-rtsp-tunnelled\r\n",
                              "Content-Type: application/x-rtsp-tunnelled\r\n"}) {
        SCOPED_TRACE(pLine);
        EXPECT_THAT(Client().m_F_s_Get("/stream/CH0", pLine), StartsWith("HTTP/1.1 404")) << "no handler";
        vm_objProxy.m_S_Stop();
        std::promise<std::pair<int, std::string>> handed;
        vm_objProxy.m_S_SetTunnelHandler([&](int nSocket, const std::string& sInitial) {
            handed.set_value({nSocket, sInitial});
            return true;
        });
        Start();
        CRawClient client = Client();
        client.m_F_b_Send(sHead + pLine + "\r\nfirst bytes");
        auto future = handed.get_future();
        ASSERT_EQ(future.wait_for(std::chrono::seconds(5)), std::future_status::ready);
        const auto [nSocket, sInitial] = future.get();
        EXPECT_THAT(sInitial, StartsWith(sHead + pLine + "\r\n"));
        EXPECT_TRUE(vm_objLog.m_F_b_Wait([](const auto& st) { return st.sTarget == "/stream/CH0" && st.bDone; }, 5000));
        vm_objProxy.m_S_Stop();
        CSocket mine(nSocket);
        EXPECT_TRUE(mine.m_F_b_Write("still open"));
        EXPECT_EQ(client.m_F_s_ReadUntil("open"), "still open");
        vm_objProxy.m_S_SetTunnelHandler({});
        Start();
    }
}

TEST_F(HttpProxy, LogsRequestsBeforeTheirRepliesAndNoSecret)
{
    std::ostringstream echo;
    vm_objLog.m_S_SetEcho(&echo);
    CRawClient client = Client(), other = Client();
    client.m_F_s_Get("/doc?user=u&Passwd=pw1&x=2&pwd=pw2",
                     "Authorization: Digest username=\"u\", response=\"c2VjcmV0\"\r\n");
    const auto stFirst = vm_objLog.m_F_ar_Entries().at(0);
    EXPECT_EQ(stFirst.sTarget, "/doc?user=u&Passwd=pw1&x=2&pwd=pw2");
    EXPECT_EQ(stFirst.nStatus, 200);
    EXPECT_EQ(stFirst.sScheme, "Digest");
    other.m_F_s_Get("/doc", "Authorization: c2VjcmV0\r\n");
    EXPECT_EQ(vm_objLog.m_F_ar_Entries().at(1).sScheme, "unknown");
    EXPECT_NE(vm_objLog.m_F_ar_Entries().at(1).nConnection, stFirst.nConnection);
    const std::string sBody(CRequestLog::MaxBody + 5, 'b');
    client.m_F_b_Send("POST /echo HTTP/1.1\r\nContent-Length: " + std::to_string(sBody.size()) + "\r\n\r\n" + sBody);
    client.m_F_s_ReadReply();
    const auto stPost = vm_objLog.m_F_ar_Entries().at(2);
    EXPECT_EQ(stPost.nConnection, stFirst.nConnection);
    EXPECT_EQ(stPost.nBytesIn, sBody.size());
    EXPECT_EQ(stPost.sBody.size(), CRequestLog::MaxBody);
    client.m_F_b_Send("GET /\x1b[2J HTTP/1.1\r\n\r\n");
    const std::size_t nReply = client.m_F_s_ReadReply().size();
    EXPECT_TRUE(vm_objLog.m_F_b_Wait(
        [&](const auto& st) { return st.nSequence == 4 && st.bDone && st.nBytesOut == nReply; }, 5000));
    vm_objLog.m_S_SetEcho(nullptr);
    EXPECT_THAT("\n" + echo.str(), HasSubstr("\nGET /doc?user=u&Passwd=*** 200 0 in ")); // in the order of their ends
    EXPECT_THAT(echo.str(), HasSubstr("\nGET /?[2J 404 "));
    EXPECT_THAT(echo.str(), Not(HasSubstr("c2VjcmV0")));
    const std::string sEcho = echo.str();
    EXPECT_EQ(std::count(sEcho.begin(), sEcho.end(), '\n'), 4);
}

TEST(RequestLog, StaysWithinItsBounds)
{
    CRequestLog log;
    stDef_LogEntry stEntry;
    stEntry.sBody.assign(CRequestLog::MaxBody, 'b');
    const std::size_t nBodies = CRequestLog::MaxBodies / CRequestLog::MaxBody;
    for (std::size_t i = 0; i < nBodies + 3; ++i) {
        stDef_LogEntry stEmpty;
        stEntry.nSequence = log.m_F_n_Add(stEmpty);
        log.m_S_Update(stEntry);
    }
    const auto arEntries = log.m_F_ar_Entries();
    EXPECT_EQ(arEntries.size(), nBodies + 3) << "only bodies go";
    EXPECT_EQ(std::count_if(arEntries.begin(), arEntries.end(), [](const auto& st) { return !st.sBody.empty(); }),
              static_cast<long>(nBodies));
    EXPECT_TRUE(arEntries[2].sBody.empty());
    stEntry.sBody.clear();
    for (std::size_t i = 0; i < 2 * CRequestLog::MaxEntries; ++i)
        log.m_F_n_Add(stEntry);
    EXPECT_LE(log.m_F_n_Count(), CRequestLog::MaxEntries);
    EXPECT_EQ(log.m_F_ar_Entries().back().nSequence, nBodies + 3 + 2 * CRequestLog::MaxEntries);
    log.m_S_Clear();
    log.m_S_Update(arEntries.back());
    EXPECT_EQ(log.m_F_n_Count(), 0u) << "an entry that was cleared stays away";
    EXPECT_FALSE(log.m_F_b_Wait([](const auto&) { return true; }, 10));
}

TEST_F(HttpProxy, StopEndsEveryWaitAtOnce)
{
    for (const char* pFault : {"silence", "endless-chunks", "slow", "delay:60000", "huge"})
        ASSERT_TRUE(vm_objFaults.m_F_b_Parse(std::string("/") + pFault + "=" + pFault));
    ASSERT_TRUE(vm_objFaults.m_F_b_Parse("/doc?=slow"));
    std::vector<std::unique_ptr<CRawClient>> arClients;
    for (const char* pTarget : {"/silence", "/endless-chunks", "/doc?", "/stream", "/huge"}) {
        arClients.push_back(std::make_unique<CRawClient>(vm_objProxy.m_F_n_Port()));
        arClients.back()->m_F_b_Send(std::string("GET ") + pTarget + " HTTP/1.1\r\n" + g_sLogin + "\r\n");
        EXPECT_TRUE(vm_objLog.m_F_b_Wait([&](const auto& st) { return st.sTarget == pTarget; }, 5000));
    }
    arClients.push_back(std::make_unique<CRawClient>(vm_objProxy.m_F_n_Port())); // idle
    arClients.push_back(std::make_unique<CRawClient>(vm_objProxy.m_F_n_Port()));
    arClients.back()->m_F_b_Send("POST /echo HTTP/1.1\r\nContent-Length: 100\r\n\r\nhalf");
    EXPECT_TRUE(vm_objLog.m_F_b_Wait([&](const auto& st) { return st.sTarget == "/echo"; }, 5000));
    const auto nBegin = Clock::now();
    vm_objProxy.m_S_Stop();
    EXPECT_LT(MsSince(nBegin), 1000);
    for (const auto& pClient : arClients)
        EXPECT_LT(pClient->m_F_s_ReadToEnd().size(), 100u << 20);
    for (const auto& stEntry : vm_objLog.m_F_ar_Entries())
        EXPECT_TRUE(stEntry.bDone) << stEntry.sTarget;
    Start();
    EXPECT_THAT(Client().m_F_s_Get("/plain"), EndsWith("<plain/>"));
}

TEST_F(HttpProxy, GivesThePlacesOfThoseWhoKeepItWaiting)
{
    const struct
    {
        const char* pRequest;
        bool bMakesRoom;
    } arRows[] = {
        {"", true},
        {"GET / HTTP/1.1\r\n", true},
        {"POST /echo HTTP/1.1\r\nContent-Length: 9\r\n\r\nx", true},
        {"GET /stream HTTP/1.1\r\n\r\n", false},
    };
    for (const auto& row : arRows) {
        SCOPED_TRACE(row.pRequest);
        std::vector<std::unique_ptr<CRawClient>> arClients;
        for (int i = 0; i < CHttpProxy::MaxConnections; ++i) {
            arClients.push_back(std::make_unique<CRawClient>(vm_objProxy.m_F_n_Port()));
            arClients.back()->m_F_b_Send(row.pRequest);
        }
        const auto nBegin = Clock::now();
        bool bServed = false;
        while (!bServed && MsSince(nBegin) < (row.bMakesRoom ? 10000 : 1000)) {
            CRawClient client = Client();
            client.m_F_b_Send("GET /plain HTTP/1.1\r\n\r\n");
            bServed = client.m_F_s_ReadUntil("<plain/>").ends_with("<plain/>");
        }
        EXPECT_EQ(bServed, row.bMakesRoom);
        vm_objProxy.m_S_Stop();
        Start();
    }
}

TEST_F(HttpProxy, EndsAHeadThatDrips)
{
    vm_objProxy.m_S_Stop();
    vm_objProxy.m_S_SetHeadLimit(300);
    Start();
    CRawClient idle = Client(), client = Client();
    std::string sReply;
    for (const auto nBegin = Clock::now(); sReply.empty() && MsSince(nBegin) < 5000;) {
        client.m_F_b_Send("X");
        sReply = client.m_F_s_ReadUntil("\r\n\r\n", 20);
    }
    EXPECT_THAT(sReply, StartsWith("HTTP/1.1 408"));
    EXPECT_THAT(idle.m_F_s_Get("/plain"), EndsWith("<plain/>")) << "one that has begun no head isn't late";
}

TEST_F(HttpProxy, TellsWhatKeepsItFromWorking)
{
    CHttpProxy second;
    std::string sError;
    EXPECT_FALSE(second.m_F_b_Start("127.0.0.1", vm_objProxy.m_F_n_Port(), 1, vm_objFaults, vm_objLog, sError));
    EXPECT_THAT(sError, HasSubstr(std::to_string(vm_objProxy.m_F_n_Port())));
    EXPECT_FALSE(second.m_F_b_Start("nowhere", 0, 1, vm_objFaults, vm_objLog, sError));
    EXPECT_THAT(sError, HasSubstr("nowhere"));
    ASSERT_TRUE(second.m_F_b_Start("127.0.0.1", 0, 1, vm_objFaults, vm_objLog, sError)); // nobody listens on port 1
    EXPECT_THAT(CRawClient(second.m_F_n_Port()).m_F_s_Get("/plain"), StartsWith("HTTP/1.1 502"));
}

} // namespace
