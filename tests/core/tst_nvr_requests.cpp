#include <QFile>
#include <QStringEncoder>

#include "support/HostFixture.h"

namespace {

constexpr int TimeoutMs = 1500;
constexpr const char* Camera = "cgi-bin/SyncSetting.cgi?action=CameraXML";
constexpr const char* UpdateCamera = "cgi-bin/SyncSetting.cgi?action=UpdateCamera";

class NvrRequests : public HostFixture
{
protected:
    void SetUp() override
    {
        HostFixture::SetUp();
        stDef_VirtualNvrConfig stConfig;
        stConfig.bStreams = false;
        StartRecorder(stConfig);
        vm_pNvr = CWndNvrBase::s_F_p_CreateNvrObject(1, nullptr, &vm_env);
        ASSERT_EQ(vm_pNvr->m_F_n_Init(Init()), 1);
    }

    void TearDown() override { CWndNvrBase::s_S_ReleaseNvrObject(&vm_pNvr); }

    CWndNvrBase* vm_pNvr = nullptr;
};

TEST_F(NvrRequests, ExchangesEachDocument)
{
    struct Row
    {
        const char* pGet;
        const char* pPost;
    };
    const Row arRows[] = {
        {"cgi-bin/param.cgi?action=systeminfo", nullptr},
        {"cgi-bin/logininfo.cgi", nullptr},
        {"cgi-bin/SyncSetting.cgi?action=SystemXML", "cgi-bin/SyncSetting.cgi?action=UpdateSystem"},
        {"cgi-bin/SyncSetting.cgi?action=ScheduleXML", "cgi-bin/SyncSetting.cgi?action=UpdateSchedule"},
        {Camera, UpdateCamera},
        {"cgi-bin/SyncSetting.cgi?action=EMailXML", "cgi-bin/SyncSetting.cgi?action=UpdateEMail"},
    };
    for (const Row& row : arRows) {
        CXmlObj xml;
        ASSERT_TRUE(vm_pNvr->m_F_b_GetRequest(row.pGet, &xml, TimeoutMs)) << row.pGet;
        EXPECT_TRUE(xml.m_F_s_GetXML().startsWith("<root")) << "the envelope is cut off";
        if (!row.pPost)
            continue;
        const QString sBefore = xml.m_F_s_GetXML();
        ASSERT_TRUE(vm_pNvr->m_F_b_PostRequest(row.pPost, &xml, TimeoutMs)) << row.pPost;
        ASSERT_TRUE(vm_pNvr->m_F_b_GetRequest(row.pGet, &xml, TimeoutMs));
        EXPECT_EQ(xml.m_F_s_GetXML(), sBefore) << "an unchanged document comes back as it was";

        const QString sMark = QString::fromUtf8("caf\xc3\xa9 \xe6\x94\x9d <&\">");
        xml.m_F_b_SetValue("/root/Mark", "Text", sMark);
        ASSERT_TRUE(vm_pNvr->m_F_b_PostRequest(row.pPost, &xml, TimeoutMs));
        ASSERT_TRUE(vm_pNvr->m_F_b_GetRequest(row.pGet, &xml, TimeoutMs));
        EXPECT_EQ(xml.m_F_s_Value("/root/Mark", "Text"), sMark) << row.pGet;
    }
}

TEST_F(NvrRequests, ADocumentFromAUtf16FileIsPostedAsWhatItIsThen)
{
    const QString sText = QString("<?xml version=\"1.0\" encoding=\"utf-16\"?><root a=\"%1\"/>").arg(QChar(0x6E2C));
    QFile file(vm_dirConfig.filePath("wide.xml"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(QStringEncoder(QStringConverter::Utf16, QStringConverter::Flag::WriteBom).encode(sText)));
    file.close();
    CXmlObj xml;
    ASSERT_TRUE(xml.m_F_b_LoadXMLFile(file.fileName()));
    ASSERT_TRUE(vm_pNvr->m_F_b_PostRequest(UpdateCamera, &xml, TimeoutMs));
    EXPECT_EQ(vm_nvr.m_F_o_Log().m_F_ar_Entries().back().sBody,
              QString(sText).replace("utf-16", "UTF-8").toStdString());
}

TEST_F(NvrRequests, ABigReplyDoesNotStayInMemory)
{
    CXmlObj xml;
    ASSERT_TRUE(xml.m_F_b_LoadXML("<root a='" + QString(2 << 20, 'x') + "'/>"));
    ASSERT_TRUE(vm_pNvr->m_F_b_PostRequest(UpdateCamera, &xml, TimeoutMs));
    ASSERT_TRUE(vm_pNvr->m_F_b_GetRequest(Camera, &xml, TimeoutMs));
    EXPECT_GT(xml.m_F_s_GetXML().size(), 2 << 20);
    EXPECT_EQ(vm_pNvr->vm_objReply.m_F_p_GetMemPoint(), nullptr);
}

TEST_F(NvrRequests, DipsLookUpFillsTheInit)
{
    struct Row
    {
        const char* pId;
        int nResult;
    };
    const Row arRows[] = {{"FL-000001", 1}, {"unknown", 0}, {"", 0}};
    CWndNvrBase::s_F_o_DipsTarget() = {"127.0.0.1", vm_nvr.m_F_n_HttpPort()};
    for (const Row& row : arRows) {
        stDef_NvrInit stInit = Init();
        stInit.bDips = true;
        stInit.sDips = row.pId;
        stInit.sIP = "192.0.2.1";
        stInit.nHttpPort = 4;
        EXPECT_EQ(vm_pNvr->m_F_n_Init(stInit), row.nResult) << row.pId;
        EXPECT_EQ(vm_pNvr->vm_stInit.sDips, row.pId) << "the new record stands also when the look-up failed";
        EXPECT_EQ(vm_pNvr->vm_stInit.sIP, row.nResult ? "127.0.0.1" : "192.0.2.1");
        EXPECT_EQ(vm_pNvr->vm_stInit.nHttpPort, row.nResult ? vm_nvr.m_F_n_HttpPort() : 4);
    }
    EXPECT_TRUE(vm_nvr.m_F_o_Log().m_F_b_Wait(
        [](const auto& stEntry) { return stEntry.sTarget == "/dips/request.php?id=FL-000001"; }, 1000));
}

TEST_F(NvrRequests, BadArgumentsAreFailures)
{
    CXmlObj xmlClosed;
    EXPECT_FALSE(vm_pNvr->m_F_b_GetRequest(Camera, nullptr, TimeoutMs));
    EXPECT_FALSE(vm_pNvr->m_F_b_PostRequest(UpdateCamera, nullptr, TimeoutMs));
    EXPECT_FALSE(vm_pNvr->m_F_b_GetRequestData(Camera, nullptr, TimeoutMs));
    EXPECT_EQ(vm_nvr.m_F_o_Log().m_F_n_Count(), 0u) << "nothing was sent";
    vm_pNvr->vm_stInit.sIP.clear();
    EXPECT_FALSE(vm_pNvr->m_F_b_GetRequest(Camera, &xmlClosed, TimeoutMs));
    EXPECT_FALSE(vm_pNvr->m_F_b_PostRequest(UpdateCamera, &xmlClosed, TimeoutMs));
}

TEST_F(NvrRequests, AFailedRequestKeepsTheDocumentABrokenReplyClosesIt)
{
    CXmlObj xml;
    xml.m_F_b_LoadXML("<root/>");
    vm_nvr.m_F_o_Faults().m_F_b_Parse("*=status:500x1");
    EXPECT_FALSE(vm_pNvr->m_F_b_GetRequest(Camera, &xml, TimeoutMs));
    EXPECT_TRUE(xml.m_F_b_IsOpen());
    vm_nvr.m_F_o_Faults().m_S_Clear();
    vm_nvr.m_F_o_Faults().m_F_b_Parse("*=no-root-endx1");
    EXPECT_FALSE(vm_pNvr->m_F_b_GetRequest(Camera, &xml, TimeoutMs));
    EXPECT_FALSE(xml.m_F_b_IsOpen());
}

} // namespace
