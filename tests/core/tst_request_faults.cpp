#include <QElapsedTimer>
#include <functional>
#include <map>
#include <set>

#include "support/HostFixture.h"
#include "support/Process.h"
#include "support/Table.h"

namespace {

constexpr int TimeoutMs = 400;
constexpr int SlackMs = 400 * Process::Slowness; // other tests run beside it
constexpr int LongMs = 10000;
constexpr std::uint64_t BodyLimit = 8u << 20;
constexpr long PeakKiB = 3 * (BodyLimit >> 10) * Process::Weight; // a buffer that grows holds its old bytes, too
constexpr const char* Camera = "cgi-bin/SyncSetting.cgi?action=CameraXML";
constexpr const char* UpdateCamera = "cgi-bin/SyncSetting.cgi?action=UpdateCamera";
constexpr const char* Motion = "cgi-bin/motiondata.cgi?camera=0";
constexpr const char* OtherMotion = "cgi-bin/motiondata.cgi?camera=2";
constexpr const char* DipsId = "FL-000001";

using enum CHTTP::emDef_Result;
constexpr int Bytes = 1; ///< a reply with a body
constexpr int Empty = 0; ///< a reply without one

/// A row of request_faults.txt, which tells what comes of each kind of operation under a fault.
struct stDef_Row
{
    std::string sFault;
    int nReply;
    bool bDocument;
    int nPart;
    bool bAddress;
};

std::vector<stDef_Row> Rows()
{
    const std::map<std::string, int> mapResults = {{"Bytes", Bytes},
                                                   {"Empty", Empty},
                                                   {"TimedOut", Result_TimedOut},
                                                   {"Unauthorised", Result_Unauthorised},
                                                   {"ErrorStatus", Result_ErrorStatus},
                                                   {"Broken", Result_Broken},
                                                   {"TooLarge", Result_TooLarge}};
    std::vector<stDef_Row> arRows;
    for (const stDef_TableRow& row : ReadTable("request_faults.txt", 5))
        arRows.push_back({row[0], mapResults.at(row[1]), row.Is(2), mapResults.at(row[3]), row.Is(4)});
    return arRows;
}

class RequestFaults : public HostFixture
{
protected:
    /// An operation, and the same once more with its content checked; true if that is right.
    struct stDef_Operation
    {
        const char* pName;
        const char* pUrlPart;
        std::function<int(int nTimeoutMs)> run;
        std::function<int(const stDef_Row&)> expected;
        std::function<bool()> works;
    };

    void SetUp() override
    {
        HostFixture::SetUp();
        StartRecorder({.bStreams = false});
        ASSERT_EQ(vm_pNvr->m_F_n_Init(Init()), 1);
        vm_pNvr->m_S_InitHTTP();
        vm_pNvr->vm_objHttp.m_S_SetBodyLimit(BodyLimit);
        ASSERT_TRUE(vm_pNvr->m_F_b_GetRequest(Camera, &vm_xmlPosted, LongMs));
        vm_sCameras = vm_xmlPosted.m_F_s_GetXML();
    }

    int GetDirect(const char* pUrl, int nTimeoutMs)
    {
        const int nBytes = vm_pNvr->vm_objHttp.m_F_n_HTTPGetDataDirect(
            "127.0.0.1", User, Password, vm_nvr.m_F_n_HttpPort(), pUrl, &vm_mem, nTimeoutMs);
        EXPECT_EQ(vm_mem.m_F_n_GetMemSize(), quint64(std::max(nBytes, 0))) << "a failure leaves nothing";
        EXPECT_EQ(vm_mem.m_F_p_GetStrCHAR()[vm_mem.m_F_n_GetMemSize()], 0);
        return nBytes;
    }
    int PostDirect(int nTimeoutMs)
    {
        const QByteArray sBody = vm_sCameras.toUtf8();
        return vm_pNvr->vm_objHttp.m_F_n_HTTPPostDataDirect("127.0.0.1", User, Password, vm_nvr.m_F_n_HttpPort(),
                                                            UpdateCamera, sBody, int(sBody.size()), {}, 0, nTimeoutMs);
    }
    int GetPart(const char* pUrl, int nTimeoutMs)
    {
        vm_mem.m_F_p_MemAlloc(1024);
        return vm_pNvr->m_F_n_MultiPartStreamGet(pUrl, &vm_mem, nTimeoutMs);
    }
    int LookUp(int nTimeoutMs)
    {
        CWndNvrBase::s_F_o_DipsTarget() = {"127.0.0.1", vm_nvr.m_F_n_HttpPort(), nTimeoutMs};
        vm_sAddress = "before";
        vm_nPort = 4;
        return vm_pNvr->m_F_b_DipsToIpPort(DipsId, vm_sAddress, vm_nPort);
    }
    bool ReadsBack()
    {
        return vm_pNvr->m_F_b_GetRequest(Camera, &vm_xmlRead, LongMs) &&
               vm_xmlRead.m_F_s_GetXML() == vm_xmlPosted.m_F_s_GetXML();
    }
    /// A document that nobody posted before comes back.
    bool PostWorks()
    {
        vm_xmlPosted.m_F_b_SetValue("/root/Mark", "Text", QString::number(++vm_nMark));
        return vm_pNvr->m_F_b_PostRequest(UpdateCamera, &vm_xmlPosted, LongMs) && ReadsBack();
    }

    std::vector<stDef_Operation> Operations();
    void Play(const stDef_Operation& operation, const stDef_Row& row);

    CNvrHolder vm_pNvr{CWndNvrBase::s_F_p_CreateNvrObject(1, nullptr, &vm_env)};
    CXmlObj vm_xmlPosted, vm_xmlRead;
    CMemManage vm_mem{0};
    QString vm_sCameras;
    QByteArray vm_sAddress;
    int vm_nPort = 0, vm_nMark = 0;
};

std::vector<RequestFaults::stDef_Operation> RequestFaults::Operations()
{
    const auto posted = [](const stDef_Row& row) { // any whole reply will do
        return row.nReply == Result_Unauthorised || row.nReply == Result_ErrorStatus ? Empty : row.nReply;
    };
    CHTTP& http = vm_pNvr->vm_objHttp;
    return {
        {"HTTPGetDataDirect", Camera, [this](int nMs) { return GetDirect(Camera, nMs); },
         [](const stDef_Row& row) { return row.nReply; },
         [this] { return GetDirect(Camera, LongMs) > 0 && QByteArray(vm_mem.m_F_p_GetStrCHAR()).contains("</root>"); }},
        {"HTTPPostDataDirect", UpdateCamera, [this](int nMs) { return PostDirect(nMs); }, posted,
         [this] { return PostDirect(LongMs) > 0; }},
        {"HTTPGetData", Camera, [&http](int nMs) { return int(http.m_F_n_HTTPGetData(Camera, nMs)); },
         [](const stDef_Row& row) { return std::max(row.nReply, 0); },
         [&http] { return http.m_F_n_HTTPGetData(Camera, LongMs) > 0; }},
        {"GetRequest", Camera, [this](int nMs) { return vm_pNvr->m_F_b_GetRequest(Camera, &vm_xmlRead, nMs); },
         [](const stDef_Row& row) { return row.bDocument; }, [this] { return ReadsBack(); }},
        {"PostRequest", UpdateCamera,
         [this](int nMs) { return vm_pNvr->m_F_b_PostRequest(UpdateCamera, &vm_xmlPosted, nMs); },
         [posted](const stDef_Row& row) { return posted(row) >= 0; }, [this] { return PostWorks(); }},
        {"GetRequestData", Camera, [this](int nMs) { return vm_pNvr->m_F_b_GetRequestData(Camera, &vm_mem, nMs); },
         [](const stDef_Row& row) { return row.nReply >= 0; },
         [this] { return vm_pNvr->m_F_b_GetRequestData(Camera, &vm_mem, LongMs) && vm_mem.m_F_n_GetMemSize() > 0; }},
        // A stream that timed out stays open, so that the next good one is another.
        {"MultiPartStreamGet", Motion, [this](int nMs) { return GetPart(Motion, nMs); },
         [](const stDef_Row& row) { return row.nPart; },
         [this] { return GetPart(OtherMotion, LongMs) > 0 && vm_mem.m_F_p_GetStrCHAR()[0] == 'g'; }},
        {"DipsToIpPort", "dips/", [this](int nMs) { return LookUp(nMs); },
         [](const stDef_Row& row) { return row.bAddress; },
         [this] { return LookUp(LongMs) && vm_sAddress == "127.0.0.1" && vm_nPort == vm_nvr.m_F_n_HttpPort(); }},
    };
}

void RequestFaults::Play(const stDef_Operation& operation, const stDef_Row& row)
{
    SCOPED_TRACE(row.sFault + " on " + operation.pName);
    CFaultTable& objFaults = vm_nvr.m_F_o_Faults();
    ASSERT_TRUE(objFaults.m_F_b_Parse(std::string(operation.pUrlPart) + "=" + row.sFault));
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
        for (const stDef_Row& row : Rows())
            Play(operation, row);
    }
}

TEST_F(RequestFaults, EachFaultHasItsRow)
{
    std::set<std::string> arNames;
    for (const stDef_Row& row : Rows())
        arNames.insert(row.sFault.substr(0, row.sFault.find(':')));
    for (const std::string_view sName : CFaultTable::s_F_ar_Names())
        EXPECT_EQ(arNames.count(std::string(sName)), 1U) << sName;
}

} // namespace
