#include "CProbe.h"
#include "CRawClient.h"
#include "CVirtualNvr.h"
#include "cgi/CDocumentStore.h"
#include "http/CRequestLog.h"
#include "support/Process.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <openssl/evp.h>
#include <pugixml.hpp>

namespace {
using emDef_Auth = CProbe::emDef_Auth;
namespace fs = std::filesystem;

constexpr char g_szSystemInfo[] = "/cgi-bin/param.cgi?action=systeminfo";
constexpr char g_szGetEMail[] = "/cgi-bin/SyncSetting.cgi?action=EMailXML";
constexpr char g_szPutEMail[] = "/cgi-bin/SyncSetting.cgi?action=UpdateEMail";

stDef_VirtualNvrConfig HttpOnly()
{
    stDef_VirtualNvrConfig stConfig;
    stConfig.bStreams = false;
    return stConfig;
}

/// A recorder that runs, or a failed test.
class CRunning
{
public:
    explicit CRunning(const stDef_VirtualNvrConfig& stConfig = HttpOnly())
    {
        std::string sError;
        EXPECT_TRUE(vm_objRecorder.m_F_b_Start(stConfig, sError)) << sError;
    }
    int m_F_n_Port() const { return vm_objRecorder.m_F_n_HttpPort(); }
    CVirtualNvr vm_objRecorder;
};

class CStateFolder
{
public:
    CStateFolder()
    {
        std::string sTemplate = (fs::temp_directory_path() / "tst-recorder-XXXXXX").string();
        vm_sPath = ::mkdtemp(sTemplate.data());
    }
    ~CStateFolder() { fs::remove_all(vm_sPath); }
    std::string vm_sPath;
};

std::string InEnvelope(const std::string& sDocument)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<XML>\n" + sDocument + "\n</XML>\n";
}

std::string Md5(const std::string& s)
{
    std::array<unsigned char, EVP_MAX_MD_SIZE> arDigest{};
    unsigned nLength = 0;
    EVP_Digest(s.data(), s.size(), arDigest.data(), &nLength, EVP_md5(), nullptr);
    std::string sHex;
    for (unsigned i = 0; i < nLength; ++i)
        sHex += {"0123456789abcdef"[arDigest[i] >> 4], "0123456789abcdef"[arDigest[i] & 15]};
    return sHex;
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

std::string ReadFile(const std::string& sPath)
{
    std::ifstream objFile(sPath, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(objFile), {});
}
} // namespace

TEST(Recorder, LogsInByAccountAndRequestTarget)
{
    stDef_VirtualNvrConfig stConfig = HttpOnly();
    stConfig.arAccounts = {{"admin", "Fl33t!ink"}, {"m\"ü\\ller", "a:b&c#d e"}, {"open", ""}};
    CRunning objRunning(stConfig);
    const std::string sQuoted = "/cgi-bin/logininfo.cgi?a=\"b\",uri=\"c\"&d=%41+%20";
    const struct
    {
        emDef_Auth eAuth;
        const char *pszUser, *pszPassword;
        std::string sTarget;
        long nStatus;
    } arCases[] = {
        {emDef_Auth::None, "", "", g_szSystemInfo, 401},
        {emDef_Auth::Basic, "admin", "Fl33t!ink", g_szSystemInfo, 200},
        {emDef_Auth::Digest, "admin", "Fl33t!ink", g_szSystemInfo, 200},
        {emDef_Auth::Basic, "admin", "fl33t!ink", g_szSystemInfo, 401},
        {emDef_Auth::Digest, "admin", "fl33t!ink", g_szSystemInfo, 401},
        {emDef_Auth::Basic, "", "", g_szSystemInfo, 401},
        {emDef_Auth::Basic, "m\"ü\\ller", "a:b&c#d e", g_szSystemInfo, 200},
        {emDef_Auth::Digest, "m\"ü\\ller", "a:b&c#d e", g_szSystemInfo, 200},
        {emDef_Auth::Digest, "m\"ü\\ller", "a:b&c#d", g_szSystemInfo, 401},
        {emDef_Auth::Digest, "open", "", g_szSystemInfo, 200},
        {emDef_Auth::Digest, "admin", "Fl33t!ink", sQuoted, 200},
        {emDef_Auth::Digest, "admin", "Fl33t!ink", "/cgi-bin/logininfo.cgi?name=T\xc3\xbcr", 200},
    };
    for (const auto& stCase : arCases) {
        SCOPED_TRACE(stCase.sTarget + " as \"" + stCase.pszUser + "\" with \"" + stCase.pszPassword + "\"");
        CProbe objProbe(objRunning.m_F_n_Port(), stCase.eAuth, stCase.pszUser, stCase.pszPassword);
        const stDef_ProbeReply stReply = objProbe.m_F_o_Get(stCase.sTarget);
        EXPECT_EQ(stReply.nStatus, stCase.nStatus);
        EXPECT_EQ(stReply.arHeads.back().find("stale"), std::string::npos);
    }
}

TEST(Recorder, TakesALoginForItsOwnTargetAndOnce)
{
    CRunning objRunning;
    CProbe objProbe(objRunning.m_F_n_Port(), emDef_Auth::None);
    const std::string sChallenge = objProbe.m_F_o_Get("/").arHeads.back();
    const std::string sInfo = "/logininfo.cgi";
    const struct
    {
        std::string sTarget, sUriText;
        int nCount;
        std::string sResult;    ///< "200", "401", or "stale"
        std::string sFrom, sTo; ///< changed in the login afterwards
    } arCases[] = {
        {sInfo + "?pwd=a#b", sInfo + "?pwd=a#b", 1, "200", "", ""},
        {sInfo + "?pwd=a#b", sInfo + "?pwd=a", 2, "401", "", ""},
        {sInfo + "?n=\"x\"", sInfo + "?n=\"x\"", 3, "200", "", ""},
        {sInfo + "?n=\"x\"", sInfo + "?n=\\\"x\\\"", 4, "200", "", ""},
        {sInfo + "?n=%2541%zz", sInfo + "?n=%2541%zz", 5, "200", "", ""},
        {sInfo, sInfo, 9, "200", "", ""},
        {sInfo, sInfo, 7, "200", "", ""}, // overtaken by the one before
        {sInfo, sInfo, 7, "stale", "", ""},
        {sInfo, sInfo, 9, "stale", "", ""},
        {sInfo, sInfo, 0, "stale", "", ""},
        {sInfo, sInfo, 80, "200", "", ""},
        {sInfo, sInfo, 10, "stale", "", ""}, // too far behind to be known as new
        {sInfo, sInfo, 81, "401", "nc=00000051", "nc=00000052"},
        {sInfo, sInfo, 81, "401", "nonce=\"0", "nonce=\"1"},
        {sInfo, sInfo, 81, "401", "qop=auth", "qop=auth-int"},
        {sInfo, sInfo, 81, "401", "qop=auth", "qop=auth, algorithm=SHA-256"},
        {sInfo, sInfo, 81, "401", "cnonce=\"0a\"", "cnonce=\"\""},
        {sInfo, sInfo, 81, "401", "response=\"", "response=\"0"},
        {sInfo, sInfo, 81, "401", "Digest ", "digit "},
        {sInfo, sInfo, 81, "200", "Digest ", "DIGEST ,, "},
    };
    for (const auto& stCase : arCases) {
        std::string sLogin = LoginByHand(sChallenge, stCase.sTarget, stCase.sUriText, stCase.nCount);
        ASSERT_NE(sLogin.find(stCase.sFrom), std::string::npos);
        objProbe.m_S_SetAuthorization(sLogin.replace(sLogin.find(stCase.sFrom), stCase.sFrom.size(), stCase.sTo));
        const stDef_ProbeReply stReply = objProbe.m_F_o_Get(stCase.sTarget);
        const bool bStale = stReply.arHeads.back().find("stale=true") != std::string::npos;
        EXPECT_EQ(bStale ? "stale" : std::to_string(stReply.nStatus), stCase.sResult) << sLogin;
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
    stDef_VirtualNvrConfig stConfig = HttpOnly();
    stConfig.nNonceLifetimeMs = 300;
    CRunning objRunning(stConfig);
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
    const std::string sSync = "/cgi-bin/SyncSetting.cgi?action=";
    const struct
    {
        bool bPC;
        std::string sTarget;
        const char* pszXPath; ///< true of the reply; null: there is no such program
    } arCases[] = {
        {false, g_szSystemInfo,
         "/XML/root/Local[@MaxCam='16' and @DINum and @DIPS]/Language[@LangNum='3' and @Lang002]"},
        {false, "/cgi-bin/logininfo.cgi",
         "/XML/root[string-length(Preview_Privilege)=16 and substring(DeviceFunc,27,1)='1']"},
        {false, "/logininfo.cgi", "/XML/root[substring(DeviceFunc,1,9)='1,1,1,1,1']"},
        {false, sSync + "SystemXML",
         "/XML/root[system/camera/template/@Resolution and system/network/DDNS and system/network/DIPS and "
         "system/Notification/FTP and account/USER003/@PreviewCam='1111111111111111']"},
        {false, "/cgi-bin/SyncSetting.cgi?x=1&action=%53ystemXML",
         "/XML/root/account/*[@PreviewCam='1110000000000000']"},
        {false, sSync + "ScheduleXML", "count(/XML/root/Main/SCH/*/*[@SetCount=count(*)])=28"},
        {false, sSync + "CameraXML",
         "/XML/root/Camera[@count=count(*) and count(*[@VendorID and @Name and @Enable])=4]"},
        {false, sSync + "EMailXML", "/XML/root/EMail[@count=count(*[@Mail!=''])]"},
        {false, sSync + "UpdateEMail", nullptr}, // by GET
        {false, sSync + "systemxml", nullptr},
        {false, "/cgi-bin/CMS.cgi?action=CamXml", nullptr},
        {false, "/cgi-bin/motiondata.cgi?camera=16", nullptr},
        {false, "/cgi-bin/motiondata.cgi?camera=-1", nullptr},
        {false, "/../../etc/passwd", nullptr},
        {true, "/cgi-bin/SystemStatus.cgi", "/XML/root[System/@MaxCam='16']/Status[count(*)=16]"},
        {true, "/cgi-bin/CMS.cgi?action=CamXml", "/XML/root/Camera[@count='4']"},
        {true, "/cgi-bin/logininfo.cgi", "/XML/root[string-length(Preview_Privilege)=16]"},
        {true, g_szSystemInfo, nullptr},
        {true, sSync + "SystemXML", nullptr},
    };
    stDef_VirtualNvrConfig stConfig = HttpOnly();
    stConfig.nChannels = 16;
    CRunning objEmbedded(stConfig);
    stConfig.bPC = true;
    CRunning objPC(stConfig);
    for (const auto& stCase : arCases) {
        SCOPED_TRACE((stCase.bPC ? "PC " : "embedded ") + stCase.sTarget);
        const auto stReply = CProbe((stCase.bPC ? objPC : objEmbedded).m_F_n_Port()).m_F_o_Get(stCase.sTarget);
        EXPECT_EQ(stReply.nStatus, stCase.pszXPath ? 200 : 404);
        if (!stCase.pszXPath)
            continue;
        pugi::xml_document objDocument;
        EXPECT_TRUE(objDocument.load_string(stReply.sBody.c_str()));
        EXPECT_TRUE(pugi::xpath_query(stCase.pszXPath).evaluate_boolean(objDocument)) << stReply.sBody;
        EXPECT_NE(stReply.sBody.find("<root>"), std::string::npos) << "clients look for this very text";
    }
}

TEST(Recorder, TellsAddressesOfDirectoryIdsWithoutLogin)
{
    stDef_VirtualNvrConfig stConfig = HttpOnly();
    stConfig.arDipsIds = {{"FL-7", "192.0.2.7:8080"}};
    CRunning objRunning(stConfig);
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

TEST(Recorder, StreamsMotionOfEveryWindow)
{
    CRunning objRunning;
    CProbe objProbe(objRunning.m_F_n_Port());
    const auto Count = [](const std::string& sBody, const std::string& sPart) {
        int nCount = 0;
        for (std::size_t n = sBody.find(sPart); n != std::string::npos; n = sBody.find(sPart, n + 1))
            ++nCount;
        return nCount;
    };
    const auto objStart = std::chrono::steady_clock::now();
    objProbe.m_S_SetWatcher([&](const std::string& sBody) { return Count(sBody, "Content-Length: ") < 6; });
    const stDef_ProbeReply stReply = objProbe.m_F_o_Get("/cgi-bin/motiondata.cgi?camera=2");
    const auto objTook = std::chrono::steady_clock::now() - objStart;
    EXPECT_GE(objTook, std::chrono::milliseconds(450)) << "six parts with 100 ms between them";
    EXPECT_NE(stReply.arHeads.back().find("multipart/x-mixed-replace; boundary="), std::string::npos);
    EXPECT_GE(Count(stReply.sBody, "group=2 "), 5);
    EXPECT_GE(Count(stReply.sBody, " motion="), 15);

    // A stream that somebody still reads doesn't hold up the end.
    objProbe.m_S_SetWatcher([&](const std::string&) {
        objRunning.vm_objRecorder.m_S_Stop();
        return true;
    });
    EXPECT_FALSE(objProbe.m_F_o_Get("/cgi-bin/motiondata.cgi?camera=0").bTransferred);
}

TEST(Documents, ComeBackAsPostedAlsoAfterARestart)
{
    const std::pair<const char*, std::string> arCases[] = {
        {"System", "<root>\r\n\t<system DeviceTitle=\"a&#10;b &lt; ü 倉庫\"/><!-- kept -->\n</root>"},
        {"Schedule", "<root><Main><SCH/></Main></root>"},
        {"Camera", "<!-- ahead --><root a='1'><![CDATA[<x>]]><Camera count=\"0\"></Camera></root>\n\n"},
        {"EMail", "<root/>"},
    };
    CStateFolder objFolder;
    stDef_VirtualNvrConfig stConfig = HttpOnly();
    stConfig.sStateFolder = objFolder.vm_sPath + "/deep/state";
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
    std::string sDeep;
    for (int i = 0; i < 100000; ++i)
        sDeep += "<a>";
    const std::string arBodies[] = {"",
                                    "no markup",
                                    "<root>",
                                    "<root><a></root>",
                                    "<other/>",
                                    "<XML><other/></XML>",
                                    "<root a=\"\xC3(\"/>",
                                    "<root>\xE5\x80</root>",
                                    std::string("<root>\0</root>", 14),
                                    "<!DOCTYPE r [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;\">]><root>&b;</root>",
                                    "<root>" + sDeep,
                                    std::string("\xFF\xFE<\0r\0/\0>\0", 10)};
    CRunning objRunning;
    CProbe objProbe(objRunning.m_F_n_Port());
    const std::string sBefore = objProbe.m_F_o_Get(g_szGetEMail).sBody;
    for (const std::string& sBody : arBodies) {
        const stDef_ProbeReply stReply = objProbe.m_F_o_Post(g_szPutEMail, sBody);
        EXPECT_EQ(stReply.nStatus, 400) << sBody.substr(0, 60);
        EXPECT_NE(stReply.sBody.find("Code=\"ERROR\" Reason=\""), std::string::npos) << stReply.sBody;
    }
    EXPECT_EQ(objProbe.m_F_o_Get(g_szGetEMail).sBody, sBefore);
    std::string sNested = "<root>";
    for (int i = 0; i < 300; ++i)
        sNested = "<root>" + sNested + "</root>";
    EXPECT_EQ(objProbe.m_F_o_Post(g_szPutEMail, sNested + "</root>").nStatus, 400);
    for (const std::string& sPart : {std::string("<a/>"), std::string("<a b=''/>")}) { // few bytes, much memory
        std::string sMany = "<root>";
        for (std::size_t i = 0; i <= CDocumentStore::MaxNodes / (sPart.size() / 4); ++i)
            sMany += sPart;
        EXPECT_EQ(objProbe.m_F_o_Post(g_szPutEMail, sMany + "</root>").nStatus, 400) << sPart;
    }
}

TEST(Documents, SurviveADamagedFile)
{
    CStateFolder objFolder;
    stDef_VirtualNvrConfig stConfig = HttpOnly();
    stConfig.sStateFolder = objFolder.vm_sPath;
    const std::string sFile = objFolder.vm_sPath + "/Camera.xml";
    std::string sSeed;
    {
        CRunning objRunning(stConfig);
        sSeed = objRunning.vm_objRecorder.m_F_o_Documents().m_F_s_Get(emDef_Document::Camera);
        CVirtualNvr objSecond;
        std::string sError;
        EXPECT_FALSE(objSecond.m_F_b_Start(stConfig, sError)) << "two recorders on one folder";
        EXPECT_NE(sError.find(objFolder.vm_sPath), std::string::npos);
    }
    EXPECT_EQ(ReadFile(sFile), sSeed);
    const std::string sCut = sSeed.substr(0, sSeed.size() / 2);
    std::ofstream(sFile, std::ios::binary) << sCut;
    ::testing::internal::CaptureStderr();
    CRunning objRunning(stConfig);
    EXPECT_NE(::testing::internal::GetCapturedStderr().find("Camera.xml is damaged"), std::string::npos);
    EXPECT_EQ(objRunning.vm_objRecorder.m_F_o_Documents().m_F_s_Get(emDef_Document::Camera), sSeed);
    EXPECT_EQ(ReadFile(sFile + ".damaged"), sCut);
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
        stDef_VirtualNvrConfig stConfig = HttpOnly();
        fnBreak(stConfig);
        std::string sError;
        EXPECT_FALSE(objRecorder.m_F_b_Start(stConfig, sError));
        EXPECT_TRUE(!sError.empty() && sError.find(pszPart) != std::string::npos) << pszPart << ": " << sError;
    }
    std::string sError;
    EXPECT_TRUE(objRecorder.m_F_b_Start(HttpOnly(), sError)) << "failed starts spoil nothing: " << sError;
}
