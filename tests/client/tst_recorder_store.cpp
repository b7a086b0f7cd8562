#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "recorders/CRecorderStore.h"
#include "support/Files.h"
#include "support/Table.h"

namespace {

QString Fixture(const char* pszName)
{
    return QStringLiteral(FIXTURE_FOLDER "/") + pszName;
}

stDef_RecorderForm Form(const QString& sAddress)
{
    stDef_RecorderForm stForm;
    stForm.sAddress = sAddress;
    stForm.sUser = "admin";
    stForm.sPassword = "s3cret";
    return stForm;
}

class RecorderStoreTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(vm_env.m_F_b_Init(vm_dir.path()));
        CWinAES_CMS::s_S_SetKeyFolder(vm_dir.path());
    }

    // All bytes of all files below the configuration folder.
    QByteArray Disk() const
    {
        QByteArray sAll;
        for (QDirIterator it(vm_dir.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories); it.hasNext();)
            sAll += ReadFile(it.next());
        return sAll;
    }

    QString Attribute(const char* pszNode, const char* pszKey)
    {
        return vm_env.m_F_p_GetMemSysXML()->m_F_s_Value(QString("/root/NVR/") + pszNode, pszKey, "missing");
    }

    QTemporaryDir vm_dir;
    CEnvObj vm_env;
    CRecorderStore vm_store{&vm_env};
};

TEST_F(RecorderStoreTest, CardsAreTakenIntoTheListOnDisk)
{
    const stDef_ImportResult stResult = vm_store.m_F_o_Import(Fixture("two.xml"));
    ASSERT_EQ(stResult.sError, QString());
    EXPECT_EQ(stResult.arAdded.size(), 2);

    CEnvObj envAgain;
    ASSERT_TRUE(envAgain.m_F_b_Init(vm_dir.path()));
    const QList<stDef_Recorder> arRecorders = CRecorderStore(&envAgain).m_F_ar_Recorders();
    ASSERT_EQ(arRecorders.size(), 2);
    EXPECT_EQ(arRecorders[0].sName, "Front gate");
    EXPECT_EQ(arRecorders[0].sAddress, "192.0.2.10");
    EXPECT_EQ(arRecorders[0].nHttpPort, 8080);
    EXPECT_EQ(arRecorders[0].nRtspPort, 8554);
    EXPECT_EQ(arRecorders[0].nChannels, 16);
    EXPECT_EQ(arRecorders[1].nNvrID, 1);
    EXPECT_EQ(arRecorders[1].sName, QString::fromUtf8("庫房"));
    EXPECT_EQ(arRecorders[1].nType, 0);
    EXPECT_EQ(arRecorders[1].nHttpPort, 80) << "a card may leave out what has a default";

    const stDef_NvrInit stInit = CRecorderStore(&envAgain).m_F_o_InitRecord(1);
    EXPECT_EQ(stInit.nNvrID, 1);
    EXPECT_EQ(stInit.sIP, "nvr.example");
    EXPECT_EQ(stInit.sUID, "operator");
    EXPECT_EQ(stInit.sPWD, "pass:w@rd/#?");
}

TEST_F(RecorderStoreTest, PasswordsStandOnDiskInTheirStoredFormOnly)
{
    ASSERT_EQ(vm_store.m_F_o_Import(Fixture("two.xml")).sError, QString());
    const QByteArray sDisk = Disk();
    EXPECT_TRUE(sDisk.contains("192.0.2.10"));
    EXPECT_FALSE(sDisk.contains("s3cret"));
    EXPECT_FALSE(sDisk.contains("pass:w@rd"));
    EXPECT_FALSE(sDisk.contains("ClearPWD"));
    EXPECT_EQ(CWinAES_CMS::s_F_s_Decrypt(Attribute("N000", "PWD")), "s3cret & \"quoted\"");
}

TEST_F(RecorderStoreTest, ACardOfAKnownNameUpdatesAndKeepsThePasswordThatItLacks)
{
    ASSERT_EQ(vm_store.m_F_o_Import(Fixture("two.xml")).sError, QString());
    const QString sStored = Attribute("N000", "PWD");
    const stDef_ImportResult stResult = vm_store.m_F_o_Import(Fixture("update.xml"));
    EXPECT_EQ(stResult.arAdded.size(), 0);
    EXPECT_EQ(stResult.arUpdated.size(), 1);
    EXPECT_EQ(Attribute("N000", "IP"), "192.0.2.99");
    EXPECT_EQ(Attribute("N000", "Channels"), "8");
    EXPECT_EQ(Attribute("N000", "PWD"), sStored);
    EXPECT_EQ(vm_store.m_F_o_Import(Fixture("nameless.xml")).arAdded.size(), 1);
    EXPECT_EQ(Attribute("N002", "Name"), "192.0.2.7");
    EXPECT_EQ(vm_store.m_F_o_InitRecord(2).sPWD, "") << "an account without a password";
}

TEST_F(RecorderStoreTest, ABadCardIsToldAndChangesNothing)
{
    ASSERT_EQ(vm_store.m_F_o_Import(Fixture("two.xml")).sError, QString());
    const QByteArray sBefore = Disk();
    const QString sXmlBefore = vm_env.m_F_p_GetMemSysXML()->m_F_s_GetXML();
    for (const stDef_TableRow& row : ReadTable("bad_cards.txt", 2)) {
        const stDef_ImportResult stResult = vm_store.m_F_o_Import(Fixture(row[0].c_str()));
        EXPECT_TRUE(stResult.sError.contains(row[1].c_str())) << row[0] << ": " << stResult.sError.toStdString();
        EXPECT_EQ(stResult.arAdded.size() + stResult.arUpdated.size(), 0) << row[0];
    }
    EXPECT_EQ(Disk(), sBefore);
    EXPECT_EQ(vm_env.m_F_p_GetMemSysXML()->m_F_s_GetXML(), sXmlBefore);
}

TEST_F(RecorderStoreTest, ADamagedListIsReadAsFarAsItGoes)
{
    CXmlObj& objXml = *vm_env.m_F_p_GetMemSysXML();
    ASSERT_TRUE(objXml.m_F_b_LoadXML("<root><NVR count='2000000000'><N001 Type='1' IP='192.0.2.1' Channels='-3'/>"
                                     "<N1000 Type='1' IP='192.0.2.2'/><N1001 Type='1'/></NVR></root>"));
    const QList<stDef_Recorder> arRecorders = vm_store.m_F_ar_Recorders();
    ASSERT_EQ(arRecorders.size(), 2);
    EXPECT_EQ(arRecorders[0].nNvrID, 1);
    EXPECT_EQ(arRecorders[0].nChannels, 1);
    EXPECT_EQ(arRecorders[1].nNvrID, 1000);
    EXPECT_EQ(arRecorders[1].sName, "192.0.2.2");
    EXPECT_EQ(vm_store.m_F_o_Import(Fixture("nameless.xml")).arAdded.size(), 1);
    EXPECT_EQ(Attribute("N000", "IP"), "192.0.2.7") << "a gap is filled";
    EXPECT_EQ(objXml.m_F_n_GetValueInt("/root/NVR", "count", 0), 1001);

    QString sFull = "<root><NVR count='1000'>";
    for (int i = 0; i < 1000; ++i)
        sFull += QString::asprintf("<N%03d Type='1' IP='192.0.2.1'/>", i);
    ASSERT_TRUE(objXml.m_F_b_LoadXML(sFull + "</NVR></root>"));
    EXPECT_TRUE(vm_store.m_F_o_Import(Fixture("two.xml")).sError.contains("full"));
    EXPECT_EQ(objXml.m_F_n_GetValueInt("/root/NVR", "count", 0), 1000) << "all cards are taken or none";
    EXPECT_EQ(vm_store.m_F_o_Add(Form("192.0.2.5")).nNvrID, 1000);
    EXPECT_TRUE(vm_store.m_F_o_Add(Form("192.0.2.6")).sError.contains("full"));
}

TEST_F(RecorderStoreTest, ARecorderKeepsItsNumberAndARemovalLeavesAGap)
{
    for (int i = 0; i < 4; ++i)
        ASSERT_EQ(vm_store.m_F_o_Add(Form(QString("192.0.2.%1").arg(i))).nNvrID, i);
    const auto Count = [&] { return vm_env.m_F_p_GetMemSysXML()->m_F_n_GetValueInt("/root/NVR", "count", -1); };
    ASSERT_EQ(vm_store.m_F_s_Remove(1), QString());
    EXPECT_EQ(Attribute("N001", "PWD"), "missing") << "the password goes with its recorder";
    EXPECT_EQ(Count(), 4);
    EXPECT_EQ(vm_store.m_F_o_InitRecord(2).sIP, "192.0.2.2");
    EXPECT_NE(vm_store.m_F_s_Remove(1), QString()) << "gone already";
    EXPECT_NE(vm_store.m_F_s_Edit(1, Form("192.0.2.9")), QString());
    EXPECT_EQ(vm_store.m_F_o_Add(Form("192.0.2.8")).nNvrID, 1);
    ASSERT_EQ(vm_store.m_F_s_Remove(2), QString());
    ASSERT_EQ(vm_store.m_F_s_Remove(3), QString());
    EXPECT_EQ(Count(), 2) << "one above the highest number";

    CEnvObj envAgain;
    ASSERT_TRUE(envAgain.m_F_b_Init(vm_dir.path()));
    const QList<stDef_Recorder> arRecorders = CRecorderStore(&envAgain).m_F_ar_Recorders();
    ASSERT_EQ(arRecorders.size(), 2) << "each change is on disk";
    EXPECT_EQ(arRecorders[1].sAddress, "192.0.2.8");
    EXPECT_EQ(vm_store.m_F_n_Twin(Form("192.0.2.8"), 1), -1) << "it is no twin of itself";
    EXPECT_EQ(vm_store.m_F_n_Twin(Form("192.0.2.8"), -1), 1);
}

TEST_F(RecorderStoreTest, AnEditWithoutAPasswordKeepsTheStoredOne)
{
    stDef_RecorderForm stForm = Form("192.0.2.1");
    stForm.sPassword = "first one";
    ASSERT_EQ(vm_store.m_F_o_Add(stForm).nNvrID, 0);
    const QString sStored = Attribute("N000", "PWD");
    stForm = vm_store.m_F_o_Form(0);
    EXPECT_EQ(stForm.sPassword, "") << "a form never brings the password out";
    stForm.sName = "Gate";
    stForm.nStreamType = 2;
    ASSERT_EQ(vm_store.m_F_s_Edit(0, stForm), QString());
    EXPECT_EQ(Attribute("N000", "PWD"), sStored);
    EXPECT_EQ(Attribute("N000", "StreamType"), "2");
    stForm.sPassword = "second one";
    ASSERT_EQ(vm_store.m_F_s_Edit(0, stForm), QString());
    EXPECT_EQ(vm_store.m_F_o_InitRecord(0).sPWD, "second one");
    EXPECT_FALSE(Disk().contains("second one"));
}

TEST_F(RecorderStoreTest, AChangeThatCannotBeSavedIsTakenBack)
{
    ASSERT_EQ(vm_store.m_F_o_Add(Form("192.0.2.1")).nNvrID, 0);
    const QString sBefore = vm_env.m_F_p_GetMemSysXML()->m_F_s_GetXML();
    // A folder in the place of the file can't be replaced by one, not even by root.
    ASSERT_TRUE(QFile::remove(vm_dir.filePath("System.xml")));
    ASSERT_TRUE(QDir(vm_dir.path()).mkpath("System.xml/in the way"));
    EXPECT_TRUE(vm_store.m_F_o_Add(Form("192.0.2.2")).sError.contains("can't be saved"));
    EXPECT_NE(vm_store.m_F_s_Edit(0, Form("192.0.2.3")), QString());
    EXPECT_NE(vm_store.m_F_s_Remove(0), QString());
    EXPECT_EQ(vm_env.m_F_p_GetMemSysXML()->m_F_s_GetXML(), sBefore);
}

TEST_F(RecorderStoreTest, AFormTellsEachFieldThatIsWrong)
{
    using enum emDef_RecorderField;
    const auto Fields = [](auto objSpoil) {
        stDef_RecorderForm stForm = Form("192.0.2.1");
        objSpoil(stForm);
        QList<emDef_RecorderField> arFields;
        for (const stDef_FormFault& stFault : CRecorderStore::s_F_ar_Faults(stForm)) {
            EXPECT_FALSE(stFault.sText.isEmpty());
            arFields.append(stFault.nField);
        }
        return arFields;
    };
    const QList<emDef_RecorderField> arAddress = {Address};
    EXPECT_TRUE(Fields([](auto&) {}).isEmpty());
    for (const char* const pszBad :
         {"", "  ", "a b", "nvr/x", "user@nvr", "nvr:80", "nvr?", "nvr#", "nvr\\x", "nvr\x7f"})
        EXPECT_EQ(Fields([&](auto& st) { st.sAddress = pszBad; }), arAddress) << pszBad;
    for (const char* const pszGood : {"nvr", " 10.0.0.1 ", "[2001:db8::1]"})
        EXPECT_TRUE(Fields([&](auto& st) { st.sAddress = pszGood; }).isEmpty()) << pszGood;
    EXPECT_EQ(Fields([](auto& st) {
                  st.sUser.clear();
                  st.nHttpPort = 0;
                  st.nRtspPort = 65536;
                  st.nChannels = 65;
              }),
              (QList<emDef_RecorderField>{User, HttpPort, RtspPort, Channels}));
    EXPECT_EQ(Fields([](auto& st) { st.nDstType = 1; }), QList<emDef_RecorderField>{Dips});
    EXPECT_TRUE(Fields([](auto& st) {
                    st.nDstType = 1;
                    st.sDips = "FL-000001";
                    st.sAddress.clear();
                }).isEmpty());
}

} // namespace
