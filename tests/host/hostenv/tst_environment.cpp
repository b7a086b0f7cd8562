#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <array>
#include <cstring>
#include <thread>
#include <vector>

#include "host/hostenv/RingContent.h"
#include "support/Files.h"

namespace {

const bool g_bOwnNames = RingContent::UseOwnNames("tst_environment-");

mode_t Rights(const QString& sPath)
{
    struct stat st
    {};
    stat(QFile::encodeName(sPath).constData(), &st);
    return st.st_mode & 0777;
}

class Environment : public testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(vm_dir.isValid()); }
    QString Path(const char* pName) const { return vm_dir.filePath(pName); }

    QTemporaryDir vm_dir;
    CEnvObj vm_env;
};

TEST_F(Environment, RecorderListSurvives)
{
    const QString sFolder = Path("new/config");
    ASSERT_TRUE(vm_env.m_F_b_Init(sFolder));
    EXPECT_EQ(vm_env.m_F_s_GetConfigFolder(), sFolder + '/');
    EXPECT_EQ(Rights(sFolder), 0700u);
    vm_env.m_F_p_GetMemSysXML()->m_F_b_SetValue("/root/NVR/N003", "IP", "192.0.2.3");
    ASSERT_TRUE(vm_env.m_F_b_SaveSysXML());
    EXPECT_EQ(Rights(sFolder + "/System.xml"), 0600u);

    CEnvObj other;
    ASSERT_TRUE(other.m_F_b_Init(sFolder));
    EXPECT_EQ(other.m_F_p_GetMemSysXML()->m_F_s_Value("/root/NVR/N003", "IP"), "192.0.2.3");
}

TEST_F(Environment, DamagedListsAreKeptAside)
{
    for (const char* pName : {"System.damaged.xml", "System.damaged.2.xml", "System.damaged.3.xml"}) {
        const QByteArray sText = QByteArray("<root><NVR><N000 IP=") + pName;
        WriteFile(Path("System.xml"), sText);
        ASSERT_TRUE(vm_env.m_F_b_Init(vm_dir.path()));
        EXPECT_FALSE(vm_env.m_F_p_GetMemSysXML()->m_S_SelectNodesByKey("/root/NVR").m_F_o_NextNode().m_F_b_IsNull());
        EXPECT_EQ(vm_env.m_F_s_DamagedSysXML(), Path(pName));
        EXPECT_EQ(ReadFile(Path(pName)), sText);
    }
    ASSERT_TRUE(vm_env.m_F_b_Init(vm_dir.path()));
    EXPECT_EQ(vm_env.m_F_s_DamagedSysXML(), "");
}

TEST_F(Environment, BadFoldersAreRefused)
{
    WriteFile(Path("file"), "no folder");
    EXPECT_FALSE(vm_env.m_F_b_Init({}));
    EXPECT_FALSE(vm_env.m_F_b_Init(Path("file/below")));
    ASSERT_TRUE(QDir(vm_dir.path()).mkpath("unreadable/System.xml"));
    EXPECT_FALSE(vm_env.m_F_b_Init(Path("unreadable")));
    EXPECT_FALSE(QFile::exists(Path("unreadable/System.damaged.xml"))) << "what can't be read isn't damaged";
    ASSERT_TRUE(QDir(vm_dir.path()).mkpath("pipe"));
    ASSERT_EQ(mkfifo(QFile::encodeName(Path("pipe/System.xml")), 0600), 0);
    EXPECT_FALSE(vm_env.m_F_b_Init(Path("pipe")));
    EXPECT_FALSE(vm_env.m_F_b_SaveSysXML()) << "there is no folder yet";
    EXPECT_NE(vm_env.m_F_p_GetMemSysXML(), nullptr);
}

TEST_F(Environment, LanguageFolderStandsInTheSystemRecord)
{
    const QString sFolder = QString::fromUtf8("/opt/caf\xc3\xa9/\xe8\xaa\x9e");
    ASSERT_TRUE(vm_env.m_F_b_SetLangFolder(sFolder));
    EXPECT_EQ(vm_env.m_F_s_GetLangFolder(), sFolder + '/');
    const auto* pRecord = reinterpret_cast<const unsigned char*>(vm_env.m_F_p_GetShmSystem(false));
    EXPECT_EQ(std::memcmp(pRecord + 493, "/\0o\0p\0t\0", 8), 0) << "UTF-16LE from byte 493 on";

    const QString sLongest(265, 'x'); // with separator and zero, 267 units: all that there is
    EXPECT_TRUE(vm_env.m_F_b_SetLangFolder(sLongest));
    EXPECT_EQ(vm_env.m_F_s_GetLangFolder(), sLongest + '/');
    EXPECT_FALSE(vm_env.m_F_b_SetLangFolder(sLongest + 'x'));
    EXPECT_EQ(vm_env.m_F_s_GetLangFolder(), sLongest + '/');

    std::memset(vm_env.m_F_p_GetShmSystem(true)->arLangFolder, 'x', 534); // a host that forgot the zero
    EXPECT_EQ(vm_env.m_F_s_GetLangFolder().size(), 267);

    CEnvObj other; // of another part of the process
    std::memset(vm_env.m_F_p_GetShmSystem(true)->arTimeZone, 0x5A, 172);
    EXPECT_EQ(other.m_F_p_GetShmSystem(false)->arTimeZone[171], 0x5A);
}

TEST_F(Environment, OtherProcessesSeeTheSystemRecordAndCannotChangeIt)
{
    vm_env.m_F_p_GetShmSystem(true)->hMainWnd = 0x1122334455667788;
    ASSERT_TRUE(vm_env.m_F_b_SetLangFolder("/opt/first"));
    const pid_t nPid = fork();
    if (nPid == 0) {
        CEnvObj other;
        const bool bSeen = other.m_F_p_GetShmSystem(false)->hMainWnd == 0x1122334455667788 &&
                           other.m_F_s_GetLangFolder() == "/opt/first/";
        _exit(bSeen && other.m_F_b_SetLangFolder("/opt/second") && other.m_F_s_GetLangFolder() == "/opt/second/" ? 0
                                                                                                                 : 1);
    }
    int nStatus = -1;
    waitpid(nPid, &nStatus, 0);
    EXPECT_EQ(nStatus, 0);
    EXPECT_EQ(vm_env.m_F_s_GetLangFolder(), "/opt/first/");
}

TEST_F(Environment, EachConfigurationFolderHasAnInstance)
{
    const QByteArray sGiven = vm_env.m_F_s_Instance();
    ASSERT_TRUE(QDir(vm_dir.path()).mkpath("a") && QDir(vm_dir.path()).mkpath("b"));
    ASSERT_TRUE(QFile::link("a", Path("link")));
    CEnvObj envLink, envOther;
    CEnvObj::s_S_SetInstance({});
    EXPECT_EQ(vm_env.m_F_s_Instance(), "cms");
    ASSERT_TRUE(vm_env.m_F_b_SetLangFolder("/opt/early"));
    ASSERT_TRUE(vm_env.m_F_b_Init(Path("a")) && envLink.m_F_b_Init(Path("b/../link/")) &&
                envOther.m_F_b_Init(Path("b")));
    EXPECT_EQ(vm_env.m_F_s_GetLangFolder(), "/opt/early/") << "what was set before goes along";
    EXPECT_EQ(envLink.m_F_s_Instance(), vm_env.m_F_s_Instance()) << "the same folder by another path";
    EXPECT_EQ(CEnvObj::s_F_s_InstanceOf(Path("link")), vm_env.m_F_s_Instance());
    EXPECT_NE(envOther.m_F_s_Instance(), vm_env.m_F_s_Instance());
    EXPECT_EQ(envLink.m_F_s_GetLangFolder(), "/opt/early/");
    EXPECT_EQ(envOther.m_F_s_GetLangFolder(), "");
    CEnvObj::s_S_SetInstance("09-AZ_az/.:@[`{");
    EXPECT_EQ(envOther.m_F_s_Instance(), "09-AZ_az_______") << "it becomes part of a name in shared memory";
    CEnvObj::s_S_SetInstance(sGiven);
    EXPECT_EQ(envOther.m_F_s_Instance(), sGiven);
}

TEST_F(Environment, LanguageFileAnswersKeys)
{
    WriteFile(Path("lang.xml"), "<root><Text Key='Add' Value='Hinzu&amp;'/><Text Key='Add' Value='later'/>"
                                "<Text Key='Empty' Value=''/><Other Key='No' Value='no'/></root>");
    CLangXMLObj lang;
    QString sOut;
    EXPECT_EQ(lang.m_F_n_GetLangStr("Add", sOut, "default"), 0);
    EXPECT_EQ(sOut, "default");
    ASSERT_TRUE(lang.m_F_b_LoadXMLFile(Path("lang.xml")));
    struct Row
    {
        const char* pKey;
        int nResult;
        const char* pText;
    };
    for (const Row& row :
         {Row{"Add", 1, "Hinzu&"}, Row{"Empty", 1, ""}, Row{"No", 0, "default"}, Row{"add", 0, "default"}}) {
        EXPECT_EQ(lang.m_F_n_GetLangStr(row.pKey, sOut, "default"), row.nResult) << row.pKey;
        EXPECT_EQ(sOut, row.pText) << row.pKey;
    }
    ASSERT_TRUE(lang.m_F_b_LoadXML("<root><Text Key='Two' Value='one&#10;two'/></root>"));
    EXPECT_EQ(lang.m_F_n_GetLangStr("Add", sOut, {}), 0);
    EXPECT_EQ(lang.m_F_n_GetLangStr("Two", sOut, {}), 1);
    EXPECT_EQ(sOut, "one\ntwo");
    ASSERT_TRUE(lang.m_F_b_LoadXMLFile(Path("lang.xml")));
    ASSERT_EQ(mkfifo(QFile::encodeName(Path("pipe.xml")), 0600), 0);
    EXPECT_FALSE(lang.m_F_b_LoadXMLFile(Path("pipe.xml"))) << "nobody waits for who may write to it";
    EXPECT_FALSE(lang.m_F_b_LoadXMLFile(Path("missing.xml")));
    EXPECT_EQ(lang.m_F_n_GetLangStr("Add", sOut, "default"), 0) << "the former texts are gone";
}

TEST_F(Environment, StoredPasswords)
{
    CWinAES_CMS::s_S_SetKeyFolder(vm_dir.path());
    for (const QString& sClear :
         {QString(), QString("Fl33t!ink"), QString::fromUtf8("p\xc3\xa4ss \xe5\xaf\x86"), QString(500, 'x')}) {
        const QString sStored = CWinAES_CMS::s_F_s_Encrypt(sClear);
        EXPECT_NE(sStored, CWinAES_CMS::s_F_s_Encrypt(sClear)) << "a nonce of its own each time";
        EXPECT_EQ(CWinAES_CMS::s_F_s_Decrypt(sStored), sClear);
        if (!sClear.isEmpty())
            EXPECT_FALSE(sStored.contains(sClear));
    }
    EXPECT_EQ(Rights(Path("fleetlink.key")), 0600u);

    const QString sStored = CWinAES_CMS::s_F_s_Encrypt("secret");
    QByteArray sRaw = QByteArray::fromBase64(sStored.mid(3).toLatin1());
    for (qsizetype i = 0; i < sRaw.size(); ++i) { // one bit anywhere
        QByteArray sTampered = sRaw;
        sTampered[i] = static_cast<char>(sTampered[i] ^ 4);
        EXPECT_EQ(CWinAES_CMS::s_F_s_Decrypt("v1:" + sTampered.toBase64()), "") << i;
    }
    for (const char* pNone : {"", "secret", "v1:", "v1:AAAA", "v1:!!!!", "v2:AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA"})
        EXPECT_EQ(CWinAES_CMS::s_F_s_Decrypt(pNone), "") << pNone;

    QTemporaryDir dirOther;
    CWinAES_CMS::s_S_SetKeyFolder(dirOther.path());
    EXPECT_EQ(CWinAES_CMS::s_F_s_Decrypt(sStored), "") << "another user's key";
    EXPECT_FALSE(QFile::exists(dirOther.filePath("fleetlink.key"))) << "reading makes no key";
    CWinAES_CMS::s_S_SetKeyFolder(vm_dir.path());
    QFile::setPermissions(Path("fleetlink.key"),
                          QFileDevice::ReadOwner | QFileDevice::ReadOther | QFileDevice::WriteOwner);
    EXPECT_EQ(CWinAES_CMS::s_F_s_Decrypt(sStored), "secret");
    EXPECT_EQ(Rights(Path("fleetlink.key")), 0600u) << "rights of others are taken back";
}

TEST_F(Environment, AllWhoStartAtOnceAgreeOnOneKey)
{
    for (int nRound = 0; nRound < 150; ++nRound) {
        QTemporaryDir dir;
        CWinAES_CMS::s_S_SetKeyFolder(dir.path());
        std::array<QString, 8> arStored;
        std::vector<std::thread> arThreads;
        for (QString& sStored : arStored)
            arThreads.emplace_back([&sStored] { sStored = CWinAES_CMS::s_F_s_Encrypt("secret"); });
        for (std::thread& objThread : arThreads)
            objThread.join();
        for (const QString& sStored : arStored)
            ASSERT_EQ(CWinAES_CMS::s_F_s_Decrypt(sStored), "secret") << "round " << nRound;
        EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList("fleetlink.key"));
    }
}

} // namespace
