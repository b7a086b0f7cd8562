#include "HttpProxyFixture.h"
#include "support/Table.h"

#include <chrono>
#include <map>
#include <set>

namespace {

using testing::EndsWith;
using testing::HasSubstr;
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

/// A check of the table: a word and, behind a blank, its text.
bool Holds(const std::string& sCheck, const std::string& sBytes)
{
    const std::size_t nBlank = std::min(sCheck.find(' '), sCheck.size());
    const std::string sWord = sCheck.substr(0, nBlank), sText = sCheck.substr(std::min(nBlank + 1, sCheck.size()));
    if (sWord == "body")
        return sBytes.ends_with("\r\n\r\n" + sText) &&
               sBytes.find("\r\nContent-Length: " + std::to_string(sText.size()) + "\r\n") < sBytes.find("\r\n\r\n");
    return sWord.empty()         ? true
           : sWord == "is"       ? sBytes == sText
           : sWord == "begins"   ? sBytes.starts_with(sText)
           : sWord == "ends"     ? sBytes.ends_with(sText)
           : sWord == "contains" ? sBytes.find(sText) != sBytes.npos
           : sWord == "lacks"    ? sBytes.find(sText) == sBytes.npos
           : sWord == "size"     ? sBytes.size() == std::stoul(sText)
                                 : sWord == "least" && sBytes.size() >= std::stoul(sText);
}

TEST_F(HttpProxy, PlaysEachFault)
{
    const std::map<std::string, Then> mapThens = {{"Stays", Then::Stays},
                                                  {"Closes", Then::Closes},
                                                  {"Resets", Then::Resets},
                                                  {"Hangs", Then::Hangs},
                                                  {"Endless", Then::Endless}};
    const std::string sTrue = Client().m_F_s_Get("/doc", g_sLogin);
    const std::pair<std::string, std::string> arMarks[] = {{"{reply}", sTrue},
                                                           {"{head}", sTrue.substr(0, sTrue.find("\r\n\r\n") + 4)}};
    std::set<std::string_view> arSeen;
    for (const stDef_TableRow& row : ReadTable("faults_played.txt", 4)) {
        SCOPED_TRACE(row[0]);
        ASSERT_TRUE(vm_objFaults.m_F_b_Parse("doc=" + row[0] + "x1"));
        const auto* pKind = CFaultTable::s_F_p_Kind(row[0].substr(0, row[0].find(':')));
        arSeen.insert(pKind->sName);
        vm_objLog.m_S_Clear();
        CRawClient client = Client();
        if (pKind->nWhen != stDef_FaultKind::emDef_When::AtOnce) {
            EXPECT_THAT(client.m_F_s_Get("/doc"), HasSubstr("nonce=\"fresh\", qop=\"auth\"\r\n"))
                << "not before the login";
        }
        const Played played = Play(client);
        EXPECT_EQ(played.nThen, mapThens.at(row[1]));
        for (std::string sCheck : {row[2], row[3]}) {
            for (const auto& [sMark, sMeaning] : arMarks)
                if (const std::size_t nAt = sCheck.find(sMark); nAt != sCheck.npos)
                    sCheck.replace(nAt, sMark.size(), sMeaning);
            EXPECT_TRUE(Holds(sCheck, played.sBytes)) << sCheck << "\nin " << played.sBytes.substr(0, 500);
        }
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
