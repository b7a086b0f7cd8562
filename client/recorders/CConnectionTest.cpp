#include "recorders/CConnectionTest.h"

#include <algorithm>
#include <vector>

#include "recorders/CRecorderStore.h"
#include "window/HostTexts.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int StepMs = 5000;
constexpr std::uint32_t MaxDocument = 256 * 1024;

using enum stDef_TestResult::emDef_Verdict;
using emDef_Outcome = CTcpProbe::emDef_Outcome;

struct stDef_VerdictRow
{
    stDef_TestResult::emDef_Verdict nVerdict;
    stDef_Text stText;
    int stDef_RecorderForm::*pPort; // that the text names; null if it names none
};

constexpr stDef_VerdictRow g_astVerdicts[] = {
    {Fine, {"TestFine", "Everything works: the recorder answers and accepts the account."}, nullptr},
    {NoHost,
     {"TestNoHost",
      "No host of that name was found. Check the spelling of the address, and the network's name server (DNS)."},
     nullptr},
    {Unreachable,
     {"TestUnreachable",
      "Nothing answers at that address. Check the address, the cable and whether the recorder is switched on."},
     nullptr},
    {Closed,
     {"TestClosed", "The device is there, but nothing listens on port %1. Check the HTTP port."},
     &stDef_RecorderForm::nHttpPort},
    {Silent,
     {"TestSilent",
      "Port %1 accepts the connection but does not answer. Check the HTTP port, or restart the recorder."},
     &stDef_RecorderForm::nHttpPort},
    {Account, {"TestAccount", "The recorder refused the account. Check account and password."}, nullptr},
    {NoRecorder,
     {"TestNoRecorder", "Something answers, but it is not a recorder. Check address and HTTP port."},
     nullptr},
    {NoStream,
     {"TestNoStream",
      "The recorder answers and accepts the account, but there are no streams on port %1. Check the RTSP port."},
     &stDef_RecorderForm::nRtspPort},
};

} // namespace

QString stDef_TestResult::m_F_s_Text(const stDef_RecorderForm& stForm) const
{
    if (nVerdict == Fine && !sModel.isEmpty())
        return Tr(nsHost::TestFineModel).arg(sModel);
    const stDef_VerdictRow& stRow = g_astVerdicts[std::size_t(nVerdict)];
    return stRow.pPort ? Tr(stRow.stText).arg(stForm.*stRow.pPort) : Tr(stRow.stText);
}

CConnectionTest::CConnectionTest(QObject* pParent) : QObject(pParent)
{
    connect(&vm_objProbe, &CTcpProbe::S_Done, this, &CConnectionTest::m_S_Probed);
}

CConnectionTest::~CConnectionTest()
{
    m_S_Stop();
}

void CConnectionTest::m_S_Start(const stDef_RecorderForm& stForm)
{
    m_S_Stop();
    vm_stForm = stForm;
    vm_stForm.sAddress = stForm.sAddress.trimmed();
    vm_stResult = {};
    vm_bRunning = true;
    vm_bStreamStep = false;
    vm_objProbe.m_S_Start(vm_stForm.sAddress, vm_stForm.nHttpPort, {}, {}, StepMs);
}

void CConnectionTest::m_S_Stop()
{
    ++vm_nSerial;
    vm_bRunning = false;
    vm_objProbe.m_S_Stop();
    vm_objHttp.m_S_Release();
    if (vm_objWorker.joinable())
        vm_objWorker.join();
    vm_stForm.sPassword.clear();
}

void CConnectionTest::m_S_Probed(emDef_Outcome nOutcome)
{
    if (vm_bStreamStep)
        m_S_Finish(nOutcome == emDef_Outcome::Answered ? Fine : NoStream);
    else if (nOutcome == emDef_Outcome::Answered)
        m_S_AskDocument();
    else if (nOutcome == emDef_Outcome::NoHost)
        m_S_Finish(NoHost);
    else
        m_S_Finish(nOutcome == emDef_Outcome::Refused ? Closed : Unreachable);
}

// By the form that can be stopped from outside, so that a dialog closes without waiting.
void CConnectionTest::m_S_AskDocument()
{
    if (!vm_objHttp.m_S_Init(CSFunc::s_F_s_UnicodeToAnsi(vm_stForm.sAddress),
                             CSFunc::s_F_s_UnicodeToAnsi(vm_stForm.sUser),
                             CSFunc::s_F_s_UnicodeToAnsi(vm_stForm.sPassword), vm_stForm.nHttpPort)) {
        m_S_Finish(NoHost);
        return;
    }
    vm_objWorker = std::thread([this, nSerial = vm_nSerial] {
        QByteArray sReply(MaxDocument, Qt::Uninitialized);
        const int nLength =
            vm_objHttp.m_F_n_MultiPartStreamGet(nsDocuments::SystemInfo.pszFetch, sReply.data(), MaxDocument, StepMs);
        sReply.truncate(std::max(nLength, 0));
        QMetaObject::invokeMethod(
            this, [this, nSerial, nLength, sReply] { m_S_TakeReply(nSerial, nLength, sReply); }, Qt::QueuedConnection);
    });
}

void CConnectionTest::m_S_TakeReply(int nSerial, int nLength, const QByteArray& sReply)
{
    if (nSerial != vm_nSerial)
        return;
    if (nLength == CHTTP::Result_Unauthorised)
        m_S_Finish(Account);
    else if (nLength == CHTTP::Result_TimedOut)
        m_S_Finish(Silent);
    else if (nLength == CHTTP::Result_Unreachable)
        m_S_Finish(Unreachable);
    else if (nLength <= 0 || !m_F_b_ReadDocument(sReply))
        m_S_Finish(NoRecorder);
    else
        m_S_AskStream();
}

bool CConnectionTest::m_F_b_ReadDocument(const QByteArray& sReply)
{
    CXmlObj objXml;
    if (!objXml.m_F_b_LoadXML(CSFunc::s_F_s_Utf8ToUnicode(sReply)))
        return false;
    for (const QString& sLocal : {u"/XML/root/Local"_s, u"/root/Local"_s}) {
        CXmlNodeList objList = objXml.m_S_SelectNodesByKey(sLocal);
        if (objList.m_F_o_NextNode().m_F_b_IsNull())
            continue;
        vm_stResult.sModel = objXml.m_F_s_Value(sLocal, u"Model"_s).left(64);
        const int nChannels = objXml.m_F_n_GetValueInt(sLocal, u"MaxCam"_s, 0);
        vm_stResult.nChannels = std::clamp(nChannels, 0, CRecorderStore::MaxChannels);
        return true;
    }
    return false;
}

void CConnectionTest::m_S_AskStream()
{
    if (vm_stForm.nStreamType == 0) { // all goes through the HTTP port
        m_S_Finish(Fine);
        return;
    }
    vm_bStreamStep = true;
    vm_objProbe.m_S_Start(vm_stForm.sAddress, vm_stForm.nRtspPort,
                          "OPTIONS rtsp://" + vm_stForm.sAddress.toLatin1() + ':' +
                              QByteArray::number(vm_stForm.nRtspPort) + "/ RTSP/1.0\r\nCSeq: 1\r\n\r\n",
                          "RTSP/", StepMs);
}

void CConnectionTest::m_S_Finish(stDef_TestResult::emDef_Verdict nVerdict)
{
    m_S_Stop();
    vm_stResult.nVerdict = nVerdict;
    Q_EMIT S_Done(vm_stResult);
}
