#include "recorders/CConnectionTest.h"

#include <algorithm>
#include <vector>

#include "recorders/CRecorderStore.h"
#include "window/CHostText.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int StepMs = 5000;
constexpr std::uint32_t MaxDocument = 256 * 1024;

using enum stDef_TestResult::emDef_Verdict;
using emDef_Outcome = CTcpProbe::emDef_Outcome;

struct stDef_VerdictRow
{
    stDef_TestResult::emDef_Verdict nVerdict;
    emDef_Text nText;
    int stDef_RecorderForm::*pPort; // that the text names; null if it names none
};

constexpr stDef_VerdictRow g_astVerdicts[] = {
    {Fine, emDef_Text::TestFine, nullptr},
    {NoHost, emDef_Text::TestNoHost, nullptr},
    {Unreachable, emDef_Text::TestUnreachable, nullptr},
    {Closed, emDef_Text::TestClosed, &stDef_RecorderForm::nHttpPort},
    {Silent, emDef_Text::TestSilent, &stDef_RecorderForm::nHttpPort},
    {Account, emDef_Text::TestAccount, nullptr},
    {NoRecorder, emDef_Text::TestNoRecorder, nullptr},
    {NoStream, emDef_Text::TestNoStream, &stDef_RecorderForm::nRtspPort},
};

} // namespace

QString stDef_TestResult::m_F_s_Text(const stDef_RecorderForm& stForm) const
{
    if (nVerdict == Fine && !sModel.isEmpty())
        return Tr(emDef_Text::TestFineModel).arg(sModel);
    const stDef_VerdictRow& stRow = g_astVerdicts[std::size_t(nVerdict)];
    return stRow.pPort ? Tr(stRow.nText).arg(stForm.*stRow.pPort) : Tr(stRow.nText);
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
        const int nLength = vm_objHttp.m_F_n_MultiPartStreamGet("cgi-bin/param.cgi?action=systeminfo", sReply.data(),
                                                                MaxDocument, StepMs);
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
