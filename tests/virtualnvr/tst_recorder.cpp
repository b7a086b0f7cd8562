#include "CProbe.h"
#include "CRawClient.h"
#include "CVirtualNvr.h"
#include "cgi/CDocumentStore.h"
#include "http/CRequestLog.h"
#include "support/Files.h"
#include "support/Process.h"
#include "support/Table.h"

#include <QCryptographicHash>
#include <QTemporaryDir>
#include <chrono>
#include <cstdio>
#include <gtest/gtest.h>
#include <map>
#include <pugixml.hpp>

namespace {
using emDef_Auth = CProbe::emDef_Auth;

constexpr char g_szSystemInfo[] = "/cgi-bin/param.cgi?action=systeminfo";
constexpr char g_szGetEMail[] = "/cgi-bin/SyncSetting.cgi?action=EMailXML";
constexpr char g_szPutEMail[] = "/cgi-bin/SyncSetting.cgi?action=UpdateEMail";

/// A recorder that runs, or a failed test.
class CRunning
{
public:
    explicit CRunning(const stDef_VirtualNvrConfig& stConfig = {.bStreams = false})
    {
        std::string sError;
        EXPECT_TRUE(vm_objRecorder.m_F_b_Start(stConfig, sError)) << sError;
    }
    int m_F_n_Port() const { return vm_objRecorder.m_F_n_HttpPort(); }
    CVirtualNvr vm_objRecorder;
};

std::string InEnvelope(const std::string& sDocument)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<XML>\n" + sDocument + "\n</XML>\n";
}

std::string Md5(const std::string& s)
{
    return QCryptographicHash::hash(QByteArray::fromStdString(s), QCryptographicHash::Md5).toHex().toStdString();
}

/// A login made by hand, for what no client library sends. sUriText: the target as it is written in the uri field.
std::string LoginByHand(const std::string& sChallenge, const std::string& sTarget, const std::string& sUriText,
                        int nCount)
{
    const std::size_t nNonce = sChallenge.find("nonce=\"") + 7;
    const std::string sNonce = sChallenge.substr(nNonce, sChallenge.find('"', nNonce) - nNonce);
    char szCount[16];
    std::snprintf(szCount, sizeof szCount, "%08x", static_cast<unsigned>(nCount));
    const std::string sUser = Md5("admin:Network Video Recorder:Fl33t!ink"), sRequest = Md5("GET:" + sTarget);
    return "Digest username=\"admin\", realm=\"Network Video Recorder\", nonce=\"" + sNonce + "\", uri=\"" + sUriText +
           "\", qop=auth, nc=" + szCount + ", cnonce=\"0a\", response=\"" +
           Md5(sUser + ":" + sNonce + ":" + szCount + ":0a:auth:" + sRequest) + "\"";
}

} // namespace

TEST(Recorder, LogsInByAccountAndRequestTarget)
{
    CRunning objRunning(
        {.arAccounts = {{"admin", "Fl33t!ink"}, {"m\"ü\\ller", "a:b&c#d e"}, {"open", ""}}, .bStreams = false});
    const std::map<std::string, emDef_Auth> mapAuths = {
        {"None", emDef_Auth::None}, {"Basic", emDef_Auth::Basic}, {"Digest", emDef_Auth::Digest}};
    for (const stDef_TableRow& row : ReadTable("logins.txt", 5)) {
        SCOPED_TRACE(row.sWhere);
        CProbe objProbe(objRunning.m_F_n_Port(), mapAuths.at(row[0]), row[1], row[2]);
        const stDef_ProbeReply stReply = objProbe.m_F_o_Get(row[3].empty() ? g_szSystemInfo : row[3]);
        EXPECT_EQ(stReply.nStatus, row.Number(4));
        EXPECT_EQ(stReply.arHeads.back().find("stale"), std::string::npos);
    }
}

TEST(Recorder, TakesALoginForItsOwnTargetAndOnce)
{
    CRunning objRunning;
    CProbe objProbe(objRunning.m_F_n_Port(), emDef_Auth::None);
    const std::string sChallenge = objProbe.m_F_o_Get("/").arHeads.back();
    const std::string sInfo = "/logininfo.cgi";
    for (const stDef_TableRow& row : ReadTable("digests.txt", 6)) {
        SCOPED_TRACE(row.sWhere);
        std::string sLogin = LoginByHand(sChallenge, row[0], row[1], row.Number(2));
        ASSERT_NE(sLogin.find(row[4]), std::string::npos);
        objProbe.m_S_SetAuthorization(sLogin.replace(sLogin.find(row[4]), row[4].size(), row[5]));
        const stDef_ProbeReply stReply = objProbe.m_F_o_Get(row[0]);
        const bool bStale = stReply.arHeads.back().find("stale=true") != std::string::npos;
        EXPECT_EQ(bStale ? "stale" : std::to_string(stReply.nStatus), row[3]) << sLogin;
    }
    // The right password under a nonce that the recorder never gave.
    std::string sForged = sChallenge;
    char& cSerial = sForged[sForged.find("nonce=\"") + 7 + 23];
    cSerial = cSerial == '9' ? '8' : '9';
    objProbe.m_S_SetAuthorization(LoginByHand(sForged, sInfo, sInfo, 1));
    EXPECT_EQ(objProbe.m_F_o_Get(sInfo).nStatus, 401);
}

TEST(Recorder, RenewsAStaleLogin)
{
    CRunning objRunning({.bStreams = false, .nNonceLifetimeMs = 300});
    CProbe objProbe(objRunning.m_F_n_Port());
    EXPECT_EQ(objProbe.m_F_o_Get(g_szSystemInfo).nStatus, 200);
    const auto objLimit = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    stDef_ProbeReply stReply;
    do
        stReply = objProbe.m_F_o_Get(g_szSystemInfo);
    while (stReply.arHeads.size() < 2 && std::chrono::steady_clock::now() < objLimit);
    ASSERT_EQ(stReply.arHeads.size(), 2U);
    EXPECT_NE(stReply.arHeads.front().find("stale=true"), std::string::npos);
    EXPECT_EQ(stReply.nStatus, 200);
}

TEST(Recorder, RefusesABodyWithoutLoginAndStaysInStep)
{
    CRunning objRunning;
    CProbe objProbe(objRunning.m_F_n_Port(), emDef_Auth::Basic, "admin", "wrong");
    const std::string sLarge = "<root a=\"" + std::string(3'000'000, 'x') + "\"/>";
    const std::string sBefore = objRunning.vm_objRecorder.m_F_o_Documents().m_F_s_Get(emDef_Document::EMail);
    for (int i = 0; i < 3; ++i) {
        const stDef_ProbeReply stReply = objProbe.m_F_o_Post(g_szPutEMail, sLarge);
        EXPECT_TRUE(stReply.bTransferred);
        EXPECT_EQ(stReply.nStatus, 401);
        EXPECT_EQ(stReply.nNewConnections, i ? 0 : 1);
    }
    EXPECT_EQ(objRunning.vm_objRecorder.m_F_o_Documents().m_F_s_Get(emDef_Document::EMail), sBefore);
    CProbe objRight(objRunning.m_F_n_Port());
    EXPECT_EQ(objRight.m_F_o_Post(g_szPutEMail, sLarge).nStatus, 200);
    EXPECT_EQ(objRight.m_F_o_Get(g_szGetEMail).sBody, InEnvelope(sLarge));
    EXPECT_EQ(objRight.m_F_o_Post(g_szPutEMail, "<root>" + std::string(70'000'000, 'x') + "</root>").nStatus, 413);
}

TEST(Recorder, KeepsNoBodyOfAStranger)
{
    constexpr std::size_t nBody = 60u << 20, nSent = 48u << 20;
    constexpr long AllowedKiB = 16 * 1024;
    CRunning objRunning;
    const std::string sTail = "/cgi-bin/SyncSetting.cgi?action=UpdateEMail HTTP/1.1\r\nHost: h\r\n"
                              "Content-Type: multipart/form-data; boundary=b\r\nContent-Length: ";
    const std::string sMebibyte(1u << 20, 'x');
    for (const std::string sMethod : {"POST", "PUT", "PATCH", "DELETE", "GET", "OPTIONS"}) {
        SCOPED_TRACE(sMethod);
        CRawClient client(objRunning.m_F_n_Port());
        const long nBeforeKiB = Process::MemoryKiB(); // the recorder's included
        client.m_F_b_Send(sMethod + ' ' + sTail + std::to_string(nBody) + "\r\n\r\n");
        for (std::size_t n = 0; n < nSent; n += sMebibyte.size())
            ASSERT_TRUE(client.m_F_b_Send(sMebibyte));
        EXPECT_LT(Process::MemoryKiB(), nBeforeKiB + AllowedKiB);
        for (std::size_t n = nSent; n < nBody; n += sMebibyte.size())
            ASSERT_TRUE(client.m_F_b_Send(sMebibyte));
        EXPECT_EQ(client.m_F_s_ReadReply().substr(9, 3), "401");
        EXPECT_EQ(client.m_F_s_Get("/dips/request.php?id=FL-000001").substr(9, 3), "200") << "out of step";
    }
    for (const stDef_LogEntry& stEntry : objRunning.vm_objRecorder.m_F_o_Log().m_F_ar_Entries())
        EXPECT_TRUE(stEntry.sBody.empty()) << stEntry.sMethod;
    CRawClient endless(objRunning.m_F_n_Port());
    endless.m_F_b_Send("PUT / HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n");
    for (int n = 0; n < 70 && endless.m_F_b_Send("100000\r\n" + sMebibyte + "\r\n"); ++n)
        ;
    EXPECT_EQ(endless.m_F_s_ReadUntil("\r\n").substr(9, 3), "413");
}

TEST(Recorder, AnswersAsItsKind)
{
    CRunning objEmbedded({.nChannels = 16, .bStreams = false});
    CRunning objPC({.nChannels = 16, .bPC = true, .bStreams = false});
    for (const stDef_TableRow& row : ReadTable("programs.txt", 3)) {
        SCOPED_TRACE(row[0] + ' ' + row[1]);
        const auto stReply = CProbe((row[0] == "PC" ? objPC : objEmbedded).m_F_n_Port()).m_F_o_Get(row[1]);
        EXPECT_EQ(stReply.nStatus, row[2].empty() ? 404 : 200);
        if (row[2].empty())
            continue;
        pugi::xml_document objDocument;
        EXPECT_TRUE(objDocument.load_string(stReply.sBody.c_str()));
        EXPECT_TRUE(pugi::xpath_query(row[2].c_str()).evaluate_boolean(objDocument)) << stReply.sBody;
        EXPECT_NE(stReply.sBody.find("<root>"), std::string::npos) << "clients look for this very text";
    }
}

TEST(Recorder, TellsAddressesOfDirectoryIdsWithoutLogin)
{
    CRunning objRunning({.bStreams = false, .arDipsIds = {{"FL-7", "192.0.2.7:8080"}}});
    CProbe objProbe(objRunning.m_F_n_Port(), emDef_Auth::None);
    const std::string sOwn = "http://127.0.0.1:" + std::to_string(objRunning.m_F_n_Port()) + "\r\n";
    EXPECT_NE(objProbe.m_F_o_Get("/dips/request.php?id=FL-000001").sBody.find(sOwn), std::string::npos);
    EXPECT_NE(objProbe.m_F_o_Get("/dips/request.php?id=FL-7").sBody.find("http://192.0.2.7:8080\r\n"),
              std::string::npos);
    for (const char* pszTarget : {"/dips/request.php?id=FL-8", "/dips/request.php?id=", "/dips/request.php"}) {
        const stDef_ProbeReply stReply = objProbe.m_F_o_Get(pszTarget);
        EXPECT_EQ(stReply.nStatus, 200);
        EXPECT_FALSE(stReply.sBody.empty());
        EXPECT_EQ(stReply.sBody.find("http://"), std::string::npos);
    }
}

TEST(Recorder, TakesATimeAndIsAwayForAWhile)
{
    constexpr char szSet[] = "/cgi-bin/DateTimeSetting.cgi?action=updatetime";
    CRunning objRunning({.bStreams = false, .nRestartMs = 300});
    CProbe objProbe(objRunning.m_F_n_Port());
    const auto Time = [](const std::string& sTime) {
        return "<root><DateTime ManuDateTime=\"" + sTime + "\" NTPTimeZone=\"7\"/></root>";
    };
    for (const char* pszTime : {"", "2027-02-30 00:00:00", "2027-03-14 24:00:00", "2027-03-14 02:00:00x", "now"})
        EXPECT_EQ(objProbe.m_F_o_Post(szSet, Time(pszTime)).nStatus, 400) << pszTime;
    EXPECT_EQ(objProbe.m_F_o_Post(szSet, "no document").nStatus, 400);
    EXPECT_EQ(objProbe.m_F_o_Get(g_szGetEMail).nStatus, 200) << "what was refused restarts nothing";
    EXPECT_EQ(objProbe.m_F_o_Post(szSet, Time("2028-02-29 23:59:59")).nStatus, 200);
    EXPECT_EQ(objProbe.m_F_o_Get(g_szGetEMail).nStatus, 503);
    const auto objLimit = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (objProbe.m_F_o_Get(g_szGetEMail).nStatus == 503)
        ASSERT_LT(std::chrono::steady_clock::now(), objLimit);
    const std::string sSystem = objProbe.m_F_o_Get("/cgi-bin/SyncSetting.cgi?action=SystemXML").sBody;
    EXPECT_NE(sSystem.find("NTPTimeZone=\"7\""), std::string::npos);
}

TEST(Documents, ComeBackAsPostedAlsoAfterARestart)
{
    const std::pair<const char*, std::string> arCases[] = {
        {"System", "<root>\r\n\t<system DeviceTitle=\"a&#10;b &lt; ü 倉庫\"/><!-- kept -->\n</root>"},
        {"Schedule", "<root><Main><SCH/></Main></root>"},
        {"Camera", "<!-- ahead --><root a='1'><![CDATA[<x>]]><Camera count=\"0\"></Camera></root>\n\n"},
        {"EMail", "<root/>"},
    };
    QTemporaryDir objFolder;
    const stDef_VirtualNvrConfig stConfig = {.sStateFolder = objFolder.filePath("deep/state").toStdString(),
                                             .bStreams = false};
    for (const bool bPost : {true, false}) {
        CRunning objRunning(stConfig);
        CProbe objProbe(objRunning.m_F_n_Port());
        for (const auto& [pszName, sText] : arCases) {
            const std::string sCgi = "/cgi-bin/SyncSetting.cgi?action=";
            if (bPost) {
                EXPECT_EQ(objProbe.m_F_o_Post(sCgi + "Update" + pszName, sText).nStatus, 200) << pszName;
            }
            EXPECT_EQ(objProbe.m_F_o_Get(sCgi + pszName + "XML").sBody, InEnvelope(sText)) << pszName;
        }
    }
    // A whole reply posted back loses its envelope, and a declaration doesn't end up inside one.
    CRunning objRunning(stConfig);
    CProbe objProbe(objRunning.m_F_n_Port());
    for (const std::string& sText :
         {InEnvelope("<root><a/></root>"), std::string("\xEF\xBB\xBF<?xml version='1.0'?>\n<root><a/></root>")}) {
        EXPECT_EQ(objProbe.m_F_o_Post(g_szPutEMail, sText).nStatus, 200);
        EXPECT_EQ(objProbe.m_F_o_Get(g_szGetEMail).sBody, InEnvelope("<root><a/></root>")) << sText;
    }
}

TEST(Documents, RefuseWhatIsNoDocument)
{
    const auto Repeated = [](const std::string& sPart, std::size_t nTimes) {
        std::string sAll;
        for (std::size_t i = 0; i < nTimes; ++i)
            sAll += sPart;
        return sAll;
    };
    constexpr std::size_t Many = CDocumentStore::MaxNodes;
    std::vector<std::string> arBodies = {"<root>" + Repeated("<a>", 100000),
                                         Repeated("<root>", 301) + Repeated("</root>", 301),
                                         "<root>" + Repeated("<a/>", Many + 1) + "</root>", // few bytes, much memory
                                         "<root>" + Repeated("<a b=''/>", Many / 2 + 1) + "</root>"};
    for (const stDef_TableRow& row : ReadTable("no_documents.txt", 1))
        arBodies.push_back(row[0]);
    CRunning objRunning;
    CProbe objProbe(objRunning.m_F_n_Port());
    const std::string sBefore = objProbe.m_F_o_Get(g_szGetEMail).sBody;
    for (const std::string& sBody : arBodies) {
        const stDef_ProbeReply stReply = objProbe.m_F_o_Post(g_szPutEMail, sBody);
        EXPECT_EQ(stReply.nStatus, 400) << sBody.substr(0, 60);
        EXPECT_NE(stReply.sBody.find("Code=\"ERROR\" Reason=\""), std::string::npos) << stReply.sBody;
    }
    EXPECT_EQ(objProbe.m_F_o_Get(g_szGetEMail).sBody, sBefore);
}

TEST(Documents, SurviveADamagedFile)
{
    QTemporaryDir objFolder;
    const stDef_VirtualNvrConfig stConfig = {.sStateFolder = objFolder.path().toStdString(), .bStreams = false};
    const QString sFile = objFolder.filePath("Camera.xml");
    std::string sSeed;
    {
        CRunning objRunning(stConfig);
        sSeed = objRunning.vm_objRecorder.m_F_o_Documents().m_F_s_Get(emDef_Document::Camera);
        CVirtualNvr objSecond;
        std::string sError;
        EXPECT_FALSE(objSecond.m_F_b_Start(stConfig, sError)) << "two recorders on one folder";
        EXPECT_NE(sError.find(stConfig.sStateFolder), std::string::npos);
    }
    EXPECT_EQ(ReadFile(sFile).toStdString(), sSeed);
    const std::string sCut = sSeed.substr(0, sSeed.size() / 2);
    WriteFile(sFile, QByteArray::fromStdString(sCut));
    ::testing::internal::CaptureStderr();
    CRunning objRunning(stConfig);
    EXPECT_NE(::testing::internal::GetCapturedStderr().find("Camera.xml is damaged"), std::string::npos);
    EXPECT_EQ(objRunning.vm_objRecorder.m_F_o_Documents().m_F_s_Get(emDef_Document::Camera), sSeed);
    EXPECT_EQ(ReadFile(sFile + ".damaged").toStdString(), sCut);
}

TEST(Recorder, TellsWhatKeepsItFromStarting)
{
    CRunning objTaken;
    const std::pair<const char*, std::function<void(stDef_VirtualNvrConfig&)>> arCases[] = {
        {"channels", [](auto& st) { st.nChannels = 65; }},
        {"account", [](auto& st) { st.arAccounts.clear(); }},
        {"System.xml", [](auto& st) { st.sDataFolder = "/nowhere"; }},
        {"", [&](auto& st) { st.nHttpPort = objTaken.m_F_n_Port(); }},
    };
    CVirtualNvr objRecorder;
    for (const auto& [pszPart, fnBreak] : arCases) {
        stDef_VirtualNvrConfig stConfig = {.bStreams = false};
        fnBreak(stConfig);
        std::string sError;
        EXPECT_FALSE(objRecorder.m_F_b_Start(stConfig, sError));
        EXPECT_TRUE(!sError.empty() && sError.find(pszPart) != std::string::npos) << pszPart << ": " << sError;
    }
    std::string sError;
    EXPECT_TRUE(objRecorder.m_F_b_Start({.bStreams = false}, sError)) << "failed starts spoil nothing: " << sError;
}
