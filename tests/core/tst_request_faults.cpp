#include <QElapsedTimer>
#include <functional>
#include <set>

#include "support/HostFixture.h"
#include "support/Process.h"

namespace {

constexpr int TimeoutMs = 400;
constexpr int SlackMs = 400 * Process::Slowness; // other tests run beside it
constexpr int LongMs = 10000;
constexpr std::uint64_t BodyLimit = 8u << 20;
constexpr long PeakKiB = 3 * (BodyLimit >> 10) * Process::Weight; // a buffer that grows holds its old bytes, too
constexpr const char* Camera = "cgi-bin/SyncSetting.cgi?action=CameraXML";
constexpr const char* UpdateCamera = "cgi-bin/SyncSetting.cgi?action=UpdateCamera";
constexpr const char* CameraOfPC = "cgi-bin/CMS.cgi?action=CamXml";
constexpr const char* Motion = "cgi-bin/motiondata.cgi?camera=0";
constexpr const char* OtherMotion = "cgi-bin/motiondata.cgi?camera=2";
constexpr const char* DipsId = "FL-000001";

using enum CHTTP::emDef_Result;
constexpr int Bytes = 1; ///< a reply with a body
constexpr int Empty = 0; ///< a reply without one

/// What comes of each kind of operation under a fault. Whether a body is the document that was asked for is seen only
/// where it is read as one. The directory is asked without login. The motion stream has no length that could be wrong;
/// one that ends without a part is broken, and a part beyond its bound is left out while the next one is waited for.
struct stDef_Row
{
    const char* pFault;
    int nReply;     ///< raw replies, of GET and POST
    bool bDocument; ///< replies read as XML
    int nPart;      ///< a part of the motion stream
    bool bAddress;  ///< look-up in the directory
};

constexpr stDef_Row g_arRows[] = {
    // Nothing, or too late
    {"silence", Result_TimedOut, false, Result_TimedOut, false},
    {"slow", Result_TimedOut, false, Result_TimedOut, false},
    {"slow:60", Result_TimedOut, false, Result_TimedOut, false},
    {"delay:5000", Result_TimedOut, false, Result_TimedOut, false},
    {"delay:100", Bytes, true, Bytes, true},
    // Refused
    {"401", Result_Unauthorised, false, Result_Unauthorised, false},
    {"changing-challenge", Result_Unauthorised, false, Result_Unauthorised, false},
    {"stale-nonce", Bytes, true, Bytes, true},
    {"redirect", Result_ErrorStatus, false, Result_ErrorStatus, false},
    {"redirect:307", Result_ErrorStatus, false, Result_ErrorStatus, false},
    {"status", Result_ErrorStatus, false, Result_ErrorStatus, false},
    {"status:404", Result_ErrorStatus, false, Result_ErrorStatus, false},
    {"status:204", Empty, false, Result_Broken, false},
    // Ended early, or no HTTP
    {"refuse", Result_Broken, false, Result_Broken, false},
    {"close-after-login", Result_Broken, false, Result_Broken, true},
    {"garbage", Result_Broken, false, Result_Broken, false},
    {"bad-chunks", Result_Broken, false, Result_Broken, false},
    {"cut-head:3", Result_Broken, false, Result_Broken, false},
    {"cut-head", Result_Broken, false, Result_Broken, false},
    {"cut-body", Result_Broken, false, Result_Broken, false},
    {"cut-body:10", Result_Broken, false, Result_Broken, false},
    // Lengths
    {"long-length", Result_Broken, false, Bytes, false},
    {"negative-length", Result_Broken, false, Bytes, false},
    {"huge-length", Result_TooLarge, false, Bytes, false},
    {"short-length", Bytes, false, Bytes, false},
    {"chunked", Bytes, true, Bytes, true},
    {"chunked:1", Bytes, true, Bytes, true},
    {"empty", Empty, false, Result_Broken, false},
    // Beyond every bound
    {"endless-headers", Result_TooLarge, false, Result_TooLarge, false},
    {"endless-chunks", Result_TooLarge, false, Result_TimedOut, false},
    {"huge:20", Result_TooLarge, false, Result_Broken, false},
    // Whole replies that are not what was asked for
    {"deep", Bytes, false, Bytes, false},
    {"entity-bomb", Bytes, true, Bytes, false},
    {"dips-no-colon", Bytes, false, Bytes, false},
    {"dips-no-http", Bytes, false, Bytes, false},
    {"no-root-end", Bytes, false, Bytes, true},
    {"cut-utf8", Bytes, false, Bytes, true},
    {"wrong-encoding", Bytes, false, Bytes, false},
};

class RequestFaults : public HostFixture
{
protected:
    /// An operation, and the same once more with its content checked; true if that is right.
    struct stDef_Operation
    {
        const char* pName;
        const char* pUrlPart;
        CVirtualNvr& objNvr;
        std::function<int(int nTimeoutMs)> run;
        std::function<int(const stDef_Row&)> expected;
        std::function<bool()> works;
    };

    void SetUp() override
    {
        HostFixture::SetUp();
        stDef_VirtualNvrConfig stConfig;
        stConfig.bStreams = false;
        StartRecorder(stConfig);
        stConfig.bPC = true;
        std::string sError;
        ASSERT_TRUE(vm_nvrPC.m_F_b_Start(stConfig, sError)) << sError;
        stDef_NvrInit stInit = Init();
        ASSERT_EQ(vm_embedded->m_F_n_Init(stInit), 1);
        stInit.nHttpPort = vm_nvrPC.m_F_n_HttpPort();
        ASSERT_EQ(vm_pc->m_F_n_Init(stInit), 1);
        vm_embedded->m_S_InitHTTP();
        for (const CNvrHolder* pNvr : {&vm_embedded, &vm_pc})
            (*pNvr)->vm_objHttp.m_S_SetBodyLimit(BodyLimit);
        ASSERT_TRUE(vm_embedded->m_F_b_GetRequest(Camera, &vm_xmlPosted, LongMs));
        vm_sCameras = vm_xmlPosted.m_F_s_GetXML();
        ASSERT_TRUE(vm_pc->m_F_b_GetRequestData(CameraOfPC, &vm_mem, LongMs));
        vm_sBytesOfPC = vm_mem.m_F_p_GetStrCHAR();
    }

    int GetDirect(const char* pUrl, int nTimeoutMs)
    {
        const int nBytes = vm_embedded->vm_objHttp.m_F_n_HTTPGetDataDirect(
            "127.0.0.1", User, Password, vm_nvr.m_F_n_HttpPort(), pUrl, &vm_mem, nTimeoutMs);
        EXPECT_EQ(vm_mem.m_F_n_GetMemSize(), quint64(std::max(nBytes, 0))) << "a failure leaves nothing";
        EXPECT_EQ(vm_mem.m_F_p_GetStrCHAR()[vm_mem.m_F_n_GetMemSize()], 0);
        return nBytes;
    }
    int PostDirect(int nTimeoutMs)
    {
        const QByteArray sBody = vm_sCameras.toUtf8();
        return vm_embedded->vm_objHttp.m_F_n_HTTPPostDataDirect("127.0.0.1", User, Password, vm_nvr.m_F_n_HttpPort(),
                                                                UpdateCamera, sBody, int(sBody.size()), {}, 0,
                                                                nTimeoutMs);
    }
    int GetDocument(const CNvrHolder& nvr, const char* pUrl, int nTimeoutMs)
    {
        return nvr->m_F_b_GetRequest(pUrl, &vm_xmlRead, nTimeoutMs);
    }
    int GetPart(const char* pUrl, int nTimeoutMs)
    {
        vm_mem.m_F_p_MemAlloc(1024);
        return vm_embedded->m_F_n_MultiPartStreamGet(pUrl, &vm_mem, nTimeoutMs);
    }
    int LookUp(int nTimeoutMs)
    {
        CWndNvrBase::s_F_o_DipsTarget() = {"127.0.0.1", vm_nvr.m_F_n_HttpPort(), nTimeoutMs};
        vm_sAddress = "before";
        vm_nPort = 4;
        return vm_embedded->m_F_b_DipsToIpPort(DipsId, vm_sAddress, vm_nPort);
    }
    bool ReadsBack()
    {
        return GetDocument(vm_embedded, Camera, LongMs) && vm_xmlRead.m_F_s_GetXML() == vm_xmlPosted.m_F_s_GetXML();
    }
    /// A document that nobody posted before comes back.
    bool PostWorks()
    {
        vm_xmlPosted.m_F_b_SetValue("/root/Mark", "Text", QString::number(++vm_nMark));
        return vm_embedded->m_F_b_PostRequest(UpdateCamera, &vm_xmlPosted, LongMs) && ReadsBack();
    }

    std::vector<stDef_Operation> Operations();
    void Play(const stDef_Operation& operation, const stDef_Row& row);

    CVirtualNvr vm_nvrPC;
    CNvrHolder vm_embedded{CWndNvrBase::s_F_p_CreateNvrObject(1, nullptr, &vm_env)};
    CNvrHolder vm_pc{CWndNvrBase::s_F_p_CreateNvrObject(0, nullptr, &vm_env)};
    CXmlObj vm_xmlPosted, vm_xmlRead;
    CMemManage vm_mem{0};
    QString vm_sCameras;
    QByteArray vm_sBytesOfPC, vm_sAddress;
    int vm_nPort = 0, vm_nMark = 0;
};

std::vector<RequestFaults::stDef_Operation> RequestFaults::Operations()
{
    const auto reply = [](const stDef_Row& row) { return row.nReply; };
    const auto success = [](const stDef_Row& row) { return row.nReply >= 0; };
    const auto posted = [](const stDef_Row& row) { // any whole reply will do
        return row.nReply == Result_Unauthorised || row.nReply == Result_ErrorStatus ? Empty : row.nReply;
    };
    const auto document = [](const stDef_Row& row) { return row.bDocument; };
    CHTTP& http = vm_embedded->vm_objHttp;
    return {
        {"HTTPGetDataDirect", Camera, vm_nvr, [this](int nMs) { return GetDirect(Camera, nMs); }, reply,
         [this] { return GetDirect(Camera, LongMs) > 0 && QByteArray(vm_mem.m_F_p_GetStrCHAR()).contains("</root>"); }},
        {"HTTPPostDataDirect", UpdateCamera, vm_nvr, [this](int nMs) { return PostDirect(nMs); }, posted,
         [this] { return PostDirect(LongMs) > 0; }},
        {"HTTPGetData", Camera, vm_nvr, [&http](int nMs) { return int(http.m_F_n_HTTPGetData(Camera, nMs)); },
         [](const stDef_Row& row) { return std::max(row.nReply, 0); },
         [&http] { return http.m_F_n_HTTPGetData(Camera, LongMs) > 0; }},
        {"GetRequest", Camera, vm_nvr, [this](int nMs) { return GetDocument(vm_embedded, Camera, nMs); }, document,
         [this] { return ReadsBack(); }},
        {"GetRequest of a PC", CameraOfPC, vm_nvrPC, [this](int nMs) { return GetDocument(vm_pc, CameraOfPC, nMs); },
         document,
         [this] {
             return GetDocument(vm_pc, CameraOfPC, LongMs) && vm_xmlRead.m_F_s_GetXML().startsWith("<root") &&
                    vm_xmlRead.m_F_s_GetXML().contains("Camera");
         }},
        {"PostRequest", UpdateCamera, vm_nvr,
         [this](int nMs) { return vm_embedded->m_F_b_PostRequest(UpdateCamera, &vm_xmlPosted, nMs); },
         [posted](const stDef_Row& row) { return posted(row) >= 0; }, [this] { return PostWorks(); }},
        {"GetRequestData", Camera, vm_nvr,
         [this](int nMs) { return vm_embedded->m_F_b_GetRequestData(Camera, &vm_mem, nMs); }, success,
         [this] {
             return vm_embedded->m_F_b_GetRequestData(Camera, &vm_mem, LongMs) && vm_mem.m_F_n_GetMemSize() > 0;
         }},
        {"GetRequestData of a PC", CameraOfPC, vm_nvrPC,
         [this](int nMs) { return vm_pc->m_F_b_GetRequestData(CameraOfPC, &vm_mem, nMs); }, success,
         [this] {
             return vm_pc->m_F_b_GetRequestData(CameraOfPC, &vm_mem, LongMs) &&
                    vm_mem.m_F_p_GetStrCHAR() == vm_sBytesOfPC;
         }},
        // A stream that timed out stays open, so that the next good one is another.
        {"MultiPartStreamGet", Motion, vm_nvr, [this](int nMs) { return GetPart(Motion, nMs); },
         [](const stDef_Row& row) { return row.nPart; },
         [this] { return GetPart(OtherMotion, LongMs) > 0 && vm_mem.m_F_p_GetStrCHAR()[0] == 'g'; }},
        {"DipsToIpPort", "dips/", vm_nvr, [this](int nMs) { return LookUp(nMs); },
         [](const stDef_Row& row) { return row.bAddress; },
         [this] { return LookUp(LongMs) && vm_sAddress == "127.0.0.1" && vm_nPort == vm_nvr.m_F_n_HttpPort(); }},
    };
}

void RequestFaults::Play(const stDef_Operation& operation, const stDef_Row& row)
{
    SCOPED_TRACE(std::string(row.pFault) + " on " + operation.pName);
    CFaultTable& objFaults = operation.objNvr.m_F_o_Faults();
    ASSERT_TRUE(objFaults.m_F_b_Parse(operation.pUrlPart + std::string("=") + row.pFault));
    Process::ForgetPeak();
    const long nBeforeKiB = Process::Status("VmRSS");
    QElapsedTimer clock;
    clock.start();
    const int nResult = operation.run(TimeoutMs);
    EXPECT_LE(clock.elapsed(), TimeoutMs + SlackMs);
    EXPECT_LE(Process::Status("VmHWM") - nBeforeKiB, PeakKiB);
    EXPECT_EQ(std::min(nResult, Bytes), operation.expected(row));
    EXPECT_LE(vm_mem.m_F_n_GetMemSize(), BodyLimit);
    objFaults.m_S_Clear();
    EXPECT_TRUE(operation.works()) << "the next one";
}

TEST_F(RequestFaults, EachOperationEndsInTimeAndWorksOn)
{
    for (const stDef_Operation& operation : Operations()) {
        ASSERT_TRUE(operation.works()) << operation.pName;
        for (const stDef_Row& row : g_arRows)
            Play(operation, row);
    }
}

TEST_F(RequestFaults, EachFaultHasItsRow)
{
    std::set<std::string> arNames;
    for (const stDef_Row& row : g_arRows)
        arNames.insert(std::string(row.pFault).substr(0, std::string(row.pFault).find(':')));
    for (const std::string_view sName : CFaultTable::s_F_ar_Names())
        EXPECT_EQ(arNames.count(std::string(sName)), 1U) << sName;
}

} // namespace
