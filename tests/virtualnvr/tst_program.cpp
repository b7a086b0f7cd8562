#include "CProbe.h"
#include "support/Files.h"
#include "support/ServerProcess.h"
#include "support/Table.h"

#include <QTemporaryDir>
#include <atomic>
#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <pugixml.hpp>
#include <sys/stat.h>
#include <thread>

namespace {
namespace fs = std::filesystem;
constexpr char g_szPut[] = "/cgi-bin/SyncSetting.cgi?action=UpdateSchedule";
constexpr char g_szGet[] = "/cgi-bin/SyncSetting.cgi?action=ScheduleXML";

class Program : public ::testing::Test
{
protected:
    std::string m_F_s_Write(const char* pszName, const char* pszText) const
    {
        WriteFile(vm_dir.filePath(pszName), pszText);
        return vm_dir.filePath(pszName).toStdString();
    }
    QTemporaryDir vm_dir;
    const std::string vm_sFolder = vm_dir.path().toStdString();
};

/// Documents of growing number, large enough that a kill has a chance to hit the middle of a write.
std::string Numbered(int nNumber)
{
    const std::string s = std::to_string(nNumber);
    return "<root><Main Number=\"" + s + "\">" + std::string(400'000, 'x') + "</Main><End Number=\"" + s +
           "\"/></root>";
}

std::string Document(int nPort)
{
    const std::string sBody = CProbe(nPort).m_F_o_Get(g_szGet).sBody;
    const std::size_t nBegin = sBody.find("<root>");
    const std::size_t nEnd = sBody.rfind("</root>");
    return nBegin == std::string::npos || nEnd == std::string::npos ? "" : sBody.substr(nBegin, nEnd + 7 - nBegin);
}
} // namespace

TEST_F(Program, KeepsWholeDocumentsWhenItIsKilledDuringPosts)
{
    int nAcknowledged = -1;
    for (int nRound = 0; nRound < 4; ++nRound) {
        ServerProcess objProcess({"--state", vm_sFolder});
        const int nPort = objProcess.Printed("http");
        ASSERT_GT(nPort, 0) << objProcess.AllPrinted();
        if (nAcknowledged >= 0) {
            const std::string sDocument = Document(nPort);
            const bool bWhole = sDocument == Numbered(nAcknowledged) || sDocument == Numbered(nAcknowledged + 1);
            ASSERT_TRUE(bWhole) << "round " << nRound << ": " << sDocument.substr(0, 60);
            nAcknowledged += sDocument == Numbered(nAcknowledged) ? 0 : 1;
        }
        std::atomic<int> nPosted = nAcknowledged;
        std::atomic<bool> bEnded = false;
        std::jthread objPoster([&nPosted, &bEnded, nPort](const std::stop_token& objStop) {
            CProbe objProbe(nPort);
            while (!objStop.stop_requested())
                if (objProbe.m_F_o_Post(g_szPut, Numbered(nPosted + 1)).nStatus == 200)
                    ++nPosted;
                else
                    break;
            bEnded = true;
        });
        const auto objLimit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (nPosted < nAcknowledged + 3 + nRound && !bEnded && std::chrono::steady_clock::now() < objLimit)
            std::this_thread::yield();
        EXPECT_EQ(objProcess.End(SIGKILL), -SIGKILL);
        objPoster.join();
        EXPECT_GT(nPosted, nAcknowledged);
        nAcknowledged = nPosted;
    }
}

TEST_F(Program, DoesWhatItsOptionsSayAndLeavesNothingBehind)
{
    const std::string sAccounts =
        m_F_s_Write("accounts", "# the first goes on the card\nkeeper:p<ss:w\"rd\r\nguest:\n");
    ASSERT_EQ(::chmod(sAccounts.c_str(), 0644), 0);
    const std::string sCard = vm_sFolder + "/card.xml";
    ASSERT_EQ(::chmod(m_F_s_Write("card.xml.new", "left by a killed run").c_str(), 0644), 0);
    fs::create_directory(vm_sFolder + "/tmp");
    ::setenv("TMPDIR", (vm_sFolder + "/tmp").c_str(), 1);
    ServerProcess objProcess({"--card", sCard, "--accounts=" + sAccounts, "--channels", "9", "--fault",
                              "logininfo=status:503x1", "--log", "--dips", "FL-9=192.0.2.9:81"});
    ::unsetenv("TMPDIR");
    const int nHttpPort = objProcess.Printed("http"), nRtspPort = objProcess.Printed("rtsp");
    ASSERT_GT(nHttpPort, 0) << objProcess.AllPrinted();
    EXPECT_GT(nRtspPort, 0);
    EXPECT_FALSE(fs::is_empty(vm_sFolder + "/tmp"));

    struct stat stFile
    {};
    ASSERT_EQ(::stat(sCard.c_str(), &stFile), 0);
    EXPECT_EQ(stFile.st_mode & 0777, 0600U);
    pugi::xml_document objDocument;
    ASSERT_TRUE(objDocument.load_file(sCard.c_str()));
    const std::string sExpected =
        "/root/Recorder[@Type='1' and @IP='127.0.0.1' and @UID='keeper' and @Channels='9' and "
        "@ClearPWD='p<ss:w\"rd' and @HttpPort='" +
        std::to_string(nHttpPort) + "' and @RtspPort='" + std::to_string(nRtspPort) + "']";
    EXPECT_TRUE(objDocument.select_node(sExpected.c_str())) << sExpected;

    CProbe objProbe(nHttpPort, CProbe::emDef_Auth::Basic, "keeper", "p<ss:w\"rd");
    EXPECT_EQ(objProbe.m_F_o_Get("/cgi-bin/logininfo.cgi").nStatus, 503);
    EXPECT_EQ(objProbe.m_F_o_Get("/cgi-bin/logininfo.cgi").nStatus, 200);
    EXPECT_EQ(CProbe(nHttpPort).m_F_o_Get(g_szGet).nStatus, 401) << "the default account is gone";
    EXPECT_NE(objProbe.m_F_o_Get("/dips/request.php?id=FL-9").sBody.find("http://192.0.2.9:81"), std::string::npos);
    EXPECT_EQ(objProcess.End(SIGTERM), 0);
    EXPECT_TRUE(fs::is_empty(vm_sFolder + "/tmp"));
    const std::string sPrinted = objProcess.AllPrinted();
    EXPECT_NE(sPrinted.find("/cgi-bin/logininfo.cgi"), std::string::npos) << sPrinted;
    EXPECT_EQ(sPrinted.find("Basic "), std::string::npos) << "a login in the log";
    const auto warns = [](const std::string& s) { return s.find("can be read by other users") != std::string::npos; };
    EXPECT_TRUE(warns(sPrinted)) << sPrinted;
    ASSERT_EQ(::chmod(sAccounts.c_str(), 0600), 0);
    EXPECT_FALSE(warns(ServerProcess({"--help", "--accounts", sAccounts}).AllPrinted()));
}

TEST_F(Program, TellsWrongOptions)
{
    const std::string sBroken = m_F_s_Write("broken", "no colon\n"), sEmpty = m_F_s_Write("empty", "# none\n");
    std::vector<std::vector<std::string>> arCases = {
        {"--state", ""}, {"--accounts", vm_sFolder + "/missing"}, {"--accounts", sBroken}, {"--accounts", sEmpty}};
    for (const stDef_TableRow& row : ReadTable("wrong_options.txt", 2))
        arCases.push_back(row[1].empty() ? std::vector{row[0]} : row.arFields);
    for (const auto& arArgs : arCases) {
        ServerProcess objProcess(arArgs);
        const std::string sPrinted = objProcess.AllPrinted();
        EXPECT_EQ(objProcess.End(0), 2) << arArgs[0];
        EXPECT_NE(sPrinted.find(arArgs[0]), std::string::npos) << sPrinted;
    }
    ServerProcess objHelp({"--help"});
    const std::string sHelp = objHelp.AllPrinted();
    EXPECT_EQ(objHelp.End(0), 0);
    for (const char* pszPart : {"--fault", "--card", "endless-headers", "entity-bomb", "paused"})
        EXPECT_NE(sHelp.find(pszPart), std::string::npos) << pszPart;
    ServerProcess objFailed({"--data", vm_sFolder});
    EXPECT_NE(objFailed.AllPrinted().find("System.xml"), std::string::npos);
    EXPECT_EQ(objFailed.End(0), 1);
}
