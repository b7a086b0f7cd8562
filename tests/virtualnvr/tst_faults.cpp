#include "HttpProxyFixture.h"
#include "support/Table.h"

#include <chrono>
#include <set>

namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::Ge;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Matcher;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;
using Clock = std::chrono::steady_clock;

enum class Then
{
    Stays,  // the next request on the connection is answered
    Closes, // in order
    Resets,
    Hangs,  // nothing more comes
    Endless // more comes than anybody wants
};

constexpr std::size_t EndlessBytes = 4u << 20;
constexpr int QuietMs = 300;

struct Played
{
    std::string sBytes; // up to the answer to the next request
    Then nThen;
};

/// Sends a logged-in request and behind it one that no fault is set for.
Played Play(CRawClient& client, const std::string& sMethodAndTarget = "GET /doc")
{
    const std::string sMark = "<plain/>";
    client.m_F_b_Send(sMethodAndTarget + " HTTP/1.1\r\nHost: h\r\n" + g_sLogin +
                      "\r\nGET /plain HTTP/1.1\r\nHost: h\r\n\r\n");
    std::string sBytes = client.m_F_s_ReadUntil(sMark, QuietMs, EndlessBytes);
    if (client.m_F_b_WasReset())
        return {sBytes, Then::Resets};
    if (client.m_F_b_Closed())
        return {sBytes, Then::Closes};
    if (!sBytes.ends_with(sMark))
        return {sBytes, sBytes.size() >= EndlessBytes ? Then::Endless : Then::Hangs};
    sBytes.resize(sBytes.rfind("HTTP/1.1 200 OK\r\n"));
    return {sBytes, Then::Stays};
}

MATCHER_P(LongAsTold, sBody, "")
{
    const std::string sText = arg;
    const auto nHead = sText.find("\r\n\r\n");
    return nHead != sText.npos && sText.substr(nHead + 4) == std::string(sBody) &&
           sText.find("Content-Length: " + std::to_string(std::string(sBody).size()) + "\r\n") < nHead;
}

std::string Utf16(const std::string& sText)
{
    std::string sOut = "\xff\xfe";
    for (const char c : sText)
        sOut += {c, '\0'};
    return sOut;
}

std::string Times(const std::string& sText, int nTimes)
{
    return nTimes ? sText + Times(sText, nTimes - 1) : "";
}

TEST_F(HttpProxy, PlaysEachFault)
{
    struct Row
    {
        const char* pFault;
        Then nThen;
        Matcher<std::string> bytes;
    };
    const std::string sTrue = Client().m_F_s_Get("/doc", g_sLogin);
    const std::string sHead = sTrue.substr(0, sTrue.find("\r\n\r\n") + 4);
    const std::string sLength = std::to_string(g_sDocument.size());
    const auto status = [](const char* pStatus) { return StartsWith(std::string("HTTP/1.1 ") + pStatus); };
    const auto length = [&](const std::string& s) {
        return AllOf(HasSubstr("Content-Length: " + s + "\r\n"), EndsWith("\r\n\r\n" + g_sDocument));
    };
    const Row arRows[] = {
        {"refuse", Then::Resets, IsEmpty()},
        {"silence", Then::Hangs, IsEmpty()},
        {"endless-headers", Then::Endless, AllOf(status("200"), Not(HasSubstr("\r\n\r\n")))},
        {"401", Then::Stays, AllOf(status("401"), HasSubstr("WWW-Authenticate: Basic"))},
        {"changing-challenge", Then::Stays, AllOf(status("401"), HasSubstr("WWW-Authenticate: Digest"))},
        {"redirect", Then::Stays, AllOf(status("302"), HasSubstr("Location: http://192.0.2.1/"))},
        {"redirect:307", Then::Stays, status("307")},
        {"status", Then::Stays, status("500")},
        {"status:404", Then::Stays, status("404")},
        {"status:204", Then::Stays, AllOf(status("204"), EndsWith("\r\n\r\n"))},
        {"garbage", Then::Closes, AllOf(SizeIs(4096), Not(HasSubstr("HTTP/")))},
        {"huge:3", Then::Stays, AllOf(HasSubstr("Content-Length: 3145728\r\n"), SizeIs(Ge(3u << 20)))},
        {"huge", Then::Endless, HasSubstr("Content-Length: 209715200\r\n")},
        {"deep:500", Then::Stays, LongAsTold("<root>" + Times("<a>", 500) + Times("</a>", 500) + "</root>")},
        {"deep", Then::Stays, SizeIs(Ge(700000u))},
        {"entity-bomb", Then::Stays, AllOf(HasSubstr("<!ENTITY a39 \"&a38;&a38;\">"), EndsWith("&a39;</root>"))},
        {"empty", Then::Stays, AllOf(status("200"), LongAsTold(""))},
        {"endless-chunks", Then::Endless, HasSubstr("Transfer-Encoding: chunked\r\n\r\n400\r\nx")},
        {"bad-chunks", Then::Closes, HasSubstr("chunked\r\n\r\nnonsense\r\n")},
        {"dips-no-colon", Then::Stays, LongAsTold("registered at http://192.0.2.7/")},
        {"dips-no-http", Then::Stays, LongAsTold("registered at 192.0.2.7:80")},
        {"close-after-login", Then::Closes, IsEmpty()},
        {"stale-nonce", Then::Stays, AllOf(status("401"), HasSubstr("nonce=\"fresh\", qop=\"auth\", stale=true"))},
        {"slow:1000", Then::Stays, sTrue},
        {"slow", Then::Hangs, "H"},
        {"delay:20", Then::Stays, sTrue},
        {"cut-head", Then::Closes, sTrue.substr(0, 20)},
        {"cut-head:3", Then::Closes, "HTT"},
        {"cut-body", Then::Closes, sHead},
        {"cut-body:7", Then::Closes, sHead + g_sDocument.substr(0, 7)},
        {"short-length", Then::Closes, length(std::to_string(g_sDocument.size() / 2))},
        {"long-length", Then::Closes, length(std::to_string(g_sDocument.size() + 1000))},
        {"huge-length", Then::Closes, length("99999999999999999999999999")},
        {"negative-length", Then::Closes, length("-5")},
        {"chunked:60", Then::Stays,
         AllOf(Not(HasSubstr("Content-Length")), EndsWith("\r\n\r\n3c\r\n" + g_sDocument.substr(0, 60) + "\r\n1\r\n" +
                                                          g_sDocument.substr(60) + "\r\n0\r\n\r\n"))},
        {"no-root-end", Then::Stays, LongAsTold(g_sDocument.substr(0, g_sDocument.find("</root>")))},
        {"cut-utf8", Then::Stays, LongAsTold(g_sDocument.substr(0, g_sDocument.find('\xBC')))},
        {"wrong-encoding", Then::Stays, LongAsTold(Utf16(g_sDocument))},
    };
    ASSERT_EQ(g_sDocument.size(), 61u) << "the row of the chunks counts on it";
    std::set<std::string_view> arSeen;
    for (const Row& row : arRows) {
        SCOPED_TRACE(row.pFault);
        ASSERT_TRUE(vm_objFaults.m_F_b_Parse("doc=" + std::string(row.pFault) + "x1"));
        const auto* pKind =
            CFaultTable::s_F_p_Kind(std::string_view(row.pFault).substr(0, std::string_view(row.pFault).find(':')));
        arSeen.insert(pKind->sName);
        vm_objLog.m_S_Clear();
        CRawClient client = Client();
        if (pKind->nWhen != stDef_FaultKind::emDef_When::AtOnce) {
            EXPECT_THAT(client.m_F_s_Get("/doc"), HasSubstr("nonce=\"fresh\", qop=\"auth\"\r\n"))
                << "not before the login";
        }
        const Played played = Play(client);
        EXPECT_EQ(played.nThen, row.nThen);
        // Not EXPECT_THAT: it would print megabytes.
        EXPECT_TRUE(row.bytes.Matches(played.sBytes)) << testing::DescribeMatcher<std::string>(row.bytes).substr(0, 500)
                                                      << "\nin " << played.sBytes.substr(0, 500);
        EXPECT_TRUE(vm_objLog.m_F_b_Wait([&](const auto& st) { return st.sFault == pKind->sName; }, QuietMs));
        EXPECT_EQ(Client().m_F_s_Get("/doc", g_sLogin), sTrue) << "it was to happen once";
        vm_objFaults.m_S_Clear();
    }
    for (const auto& stKind : CFaultTable::s_F_ar_Kinds())
        EXPECT_EQ(arSeen.count(stKind.sName), 1u) << stKind.sName << " stands in no row";
}

TEST_F(HttpProxy, ChangesWhatItAsksForFromConnectionToConnection)
{
    ASSERT_TRUE(vm_objFaults.m_F_b_Parse("/doc=changing-challenge"));
    ASSERT_TRUE(vm_objFaults.m_F_b_Parse("/echo=redirect"));
    for (const char* pScheme : {"Digest realm=\"r0\"", "Basic realm=\"r1\"", "Digest realm=\"r2\", nonce=\"n2\""})
        EXPECT_THAT(Client().m_F_s_Get("/doc", g_sLogin), HasSubstr(pScheme));
    for (const char* pTo : {"http://192.0.2.1/", "/elsewhere", "http://192.0.2.1/"})
        EXPECT_THAT(Client().m_F_s_Get("/echo"), HasSubstr(std::string("Location: ") + pTo + "\r\n"));
}

TEST_F(HttpProxy, CallsALoginStaleOnceAConnection)
{
    ASSERT_TRUE(vm_objFaults.m_F_b_Parse("*=stale-nonce"));
    for (int i = 0; i < 2; ++i) {
        CRawClient client = Client();
        EXPECT_THAT(client.m_F_s_Get("/doc", g_sLogin), StartsWith("HTTP/1.1 401"));
        EXPECT_THAT(client.m_F_s_Get("/doc", g_sLogin), StartsWith("HTTP/1.1 200"));
    }
}

TEST_F(HttpProxy, KeepsItsTimes)
{
    const auto timed = [&](const char* pFault) {
        vm_objFaults.m_S_Clear();
        EXPECT_TRUE(vm_objFaults.m_F_b_Parse(pFault));
        CRawClient client = Client();
        const auto nBegin = Clock::now();
        client.m_F_s_Get("/doc", g_sLogin);
        return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - nBegin).count();
    };
    EXPECT_GE(timed("*=delay:150"), 150);
    EXPECT_GE(timed("*=slow:500"), 200); // some 130 bytes
}

TEST_F(HttpProxy, PlaysOnStreamsWhatNeedsNoEnd)
{
    ASSERT_TRUE(vm_objFaults.m_F_b_Parse("*=cut-body:12"));
    CRawClient client = Client();
    SendPiece(2);
    client.m_F_b_Send("GET /stream HTTP/1.1\r\n\r\n");
    EXPECT_THAT(client.m_F_s_ReadToEnd(), EndsWith("\r\n\r\n5\r\npiece\r\n5\r"));
    EXPECT_TRUE(client.m_F_b_Closed());
}

TEST_F(HttpProxy, LeavesStreamsAloneThatHaveNoLengthToLieAbout)
{
    ASSERT_TRUE(vm_objFaults.m_F_b_Parse("*=short-lengthx1"));
    CRawClient client = Client();
    SendPiece();
    client.m_F_b_Send("GET /stream HTTP/1.1\r\n\r\n");
    EXPECT_THAT(client.m_F_s_ReadUntil("piece\r\n"), EndsWith("5\r\npiece\r\n"));
    EXPECT_TRUE(vm_objFaults.m_F_o_Find("/doc")) << "it was not counted";
}

TEST_F(HttpProxy, CountsAFaultExactlyAmongManyClients)
{
    ASSERT_TRUE(vm_objFaults.m_F_b_Parse("/plain=status:503x7"));
    std::atomic<int> nPlayed{0};
    std::vector<std::thread> arThreads;
    for (int i = 0; i < 4; ++i)
        arThreads.emplace_back([&] {
            CRawClient client = Client();
            for (int j = 0; j < 20; ++j)
                nPlayed += client.m_F_s_Get("/plain").starts_with("HTTP/1.1 503");
        });
    for (std::thread& thread : arThreads)
        thread.join();
    EXPECT_EQ(nPlayed, 7);
}

TEST(FaultTable, ReadsTexts)
{
    for (const stDef_TableRow& row : ReadTable("fault_texts.txt", 5)) {
        SCOPED_TRACE(row[0]);
        CFaultTable table;
        EXPECT_EQ(table.m_F_b_Parse(row[0]), !row[1].empty());
        const auto fault = table.m_F_o_Find(row[1].empty() ? "/any" : row[1]);
        ASSERT_EQ(fault.has_value(), !row[1].empty());
        if (!fault)
            continue;
        EXPECT_EQ(fault->sName, row[2]);
        EXPECT_EQ(fault->nArg, row.Number(3));
        EXPECT_EQ(fault->nTimes, row.Number(4));
    }
}

TEST(FaultTable, TheLatestThatFitsCounts)
{
    CFaultTable table;
    ASSERT_TRUE(table.m_F_b_Set("*", {"silence"}));
    ASSERT_TRUE(table.m_F_b_Set("Camera", {"status", 404, 1}));
    EXPECT_EQ(table.m_F_o_Find("/System")->sName, "silence");
    EXPECT_FALSE(table.m_F_o_Take("/Camera", "garbage"));
    EXPECT_EQ(table.m_F_o_Take("/Camera")->sName, "status");
    EXPECT_EQ(table.m_F_o_Take("/Camera")->sName, "silence") << "the other has been played";
    table.m_S_Clear();
    EXPECT_FALSE(table.m_F_o_Find("/Camera"));
}

} // namespace
