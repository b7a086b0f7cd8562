#include <QElapsedTimer>
#include <QStringEncoder>
#include <future>

#include "support/Files.h"
#include "support/HostFixture.h"
#include "support/Waiting.h"

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
        StartRecorder({.bStreams = false});
        vm_pNvr.reset(CWndNvrBase::s_F_p_CreateNvrObject(1, nullptr, &vm_env));
        ASSERT_EQ(vm_pNvr->m_F_n_Init(Init()), 1);
    }

    CNvrHolder vm_pNvr;
};

TEST_F(NvrRequests, ExchangesEachDocument)
{
    for (const stDef_Document& row : nsDocuments::All) {
        SCOPED_TRACE(row.stName.pszKey);
        CXmlObj xml;
        ASSERT_TRUE(vm_pNvr->m_F_b_GetRequest(row.pszFetch, &xml, TimeoutMs));
        EXPECT_TRUE(xml.m_F_s_GetXML().startsWith("<root")) << "the envelope is cut off";
        if (!row.pszPost)
            continue;
        const QString sBefore = xml.m_F_s_GetXML();
        ASSERT_TRUE(vm_pNvr->m_F_b_PostRequest(row.pszPost, &xml, TimeoutMs));
        EXPECT_TRUE(vm_pNvr->m_F_b_LastTaken());
        ASSERT_TRUE(vm_pNvr->m_F_b_GetRequest(row.pszFetch, &xml, TimeoutMs));
        EXPECT_EQ(xml.m_F_s_GetXML(), sBefore) << "an unchanged document comes back as it was";

        const QString sMark = QString::fromUtf8("caf\xc3\xa9 \xe6\x94\x9d <&\">");
        xml.m_F_b_SetValue("/root/Mark", "Text", sMark);
        ASSERT_TRUE(vm_pNvr->m_F_b_PostRequest(row.pszPost, &xml, TimeoutMs));
        ASSERT_TRUE(vm_pNvr->m_F_b_GetRequest(row.pszFetch, &xml, TimeoutMs));
        EXPECT_EQ(xml.m_F_s_Value("/root/Mark", "Text"), sMark);
    }
}

TEST_F(NvrRequests, ADocumentFromAUtf16FileIsPostedAsWhatItIsThen)
{
    const QString sText = QString("<?xml version=\"1.0\" encoding=\"utf-16\"?><root a=\"%1\"/>").arg(QChar(0x6E2C));
    const QString sFile = vm_dirConfig.filePath("wide.xml");
    WriteFile(sFile, QStringEncoder(QStringConverter::Utf16, QStringConverter::Flag::WriteBom).encode(sText));
    CXmlObj xml;
    ASSERT_TRUE(xml.m_F_b_LoadXMLFile(sFile));
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
    EXPECT_EQ(vm_pNvr->m_F_n_LastStatus(), 500);
    EXPECT_FALSE(vm_pNvr->m_F_b_LastTaken());
    EXPECT_TRUE(xml.m_F_b_IsOpen());
    vm_nvr.m_F_o_Faults().m_S_Clear();
    vm_nvr.m_F_o_Faults().m_F_b_Parse("*=no-root-endx1");
    EXPECT_FALSE(vm_pNvr->m_F_b_GetRequest(Camera, &xml, TimeoutMs));
    EXPECT_FALSE(xml.m_F_b_IsOpen());
}

// The second one runs beside the first, on a transfer of its own.
TEST_F(NvrRequests, AbandonEndsAllThatRunAndAllThatFollow)
{
    ASSERT_TRUE(vm_nvr.m_F_o_Faults().m_F_b_Set("*", {"silence"}));
    const auto Ask = [this] {
        CXmlObj xml;
        return vm_pNvr->m_F_b_GetRequest(Camera, &xml, 30000);
    };
    auto first = std::async(std::launch::async, Ask), second = std::async(std::launch::async, Ask);
    ASSERT_TRUE(WaitUntil([this] { return vm_nvr.m_F_o_Log().m_F_n_Count() >= 2; }, 5000));
    QElapsedTimer timer;
    timer.start();
    vm_pNvr->m_S_AbandonRequests();
    EXPECT_FALSE(first.get());
    EXPECT_FALSE(second.get());
    EXPECT_FALSE(Ask());
    EXPECT_LT(timer.elapsed(), 2000);
}

} // namespace
