#include <QApplication>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <array>
#include <memory>

#include "BenchTable.h"
#include "Benches.h"
#include "CPlainCurl.h"
#include "CVirtualNvr.h"
#include "cgi/CDocumentStore.h"
#include "core/CPageRequests.h"
#include "fleetlink/fleetlink.h"
#include "http/CFaultTable.h"
#include "setup/CDlgSetupPageSystemSetting.h"
#include "toolkit/sheet/CPropertyPage.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int Cameras = 64;
constexpr int NvrID = 7;

constexpr const char* DocumentUrls[] = {
    "cgi-bin/param.cgi?action=systeminfo",        "cgi-bin/SyncSetting.cgi?action=SystemXML",
    "cgi-bin/SyncSetting.cgi?action=ScheduleXML", "cgi-bin/SyncSetting.cgi?action=CameraXML",
    "cgi-bin/SyncSetting.cgi?action=EMailXML",
};

/// Every list of nodes `Stem%03d`, made as long as there are cameras by copies of its first node.
QString Lengthened(const QString& sText, const QString& sStem)
{
    const QRegularExpression objNode(uR"(\s*<%1(\d{3})\b(?:[^>]*/>|[^>]*>.*?</%1\1>))"_s.arg(sStem),
                                     QRegularExpression::DotMatchesEverythingOption);
    QString sResult;
    qsizetype nDone = 0;
    for (auto it = objNode.globalMatch(sText); it.hasNext();) {
        const QRegularExpressionMatch objMatch = it.next();
        sResult += sText.mid(nDone, objMatch.capturedStart() - nDone);
        nDone = objMatch.capturedEnd();
        for (int i = 0; i < Cameras && objMatch.captured(1).toInt() == 0; ++i)
            sResult += objMatch.captured().replace(sStem + u"000"_s, sStem + QString::asprintf("%03d", i));
    }
    return sResult + sText.mid(nDone);
}

bool Lengthen(CDocumentStore& objStore, emDef_Document nDocument, const QString& sStem)
{
    QString sText = Lengthened(QString::fromStdString(objStore.m_F_s_Get(nDocument)), sStem);
    static const QRegularExpression s_objCount(u"(<Camera count=)\"\\d+\""_s);
    sText.replace(s_objCount, u"\\1\"%1\""_s.arg(Cameras));
    std::string sError;
    return objStore.m_F_b_Put(nDocument, sText.toStdString(), sError);
}

/// Sees the sheet's first painting, and cancels the sheet once it is done.
class CFirstPaint : public QObject
{
public:
    CFirstPaint() { qApp->installEventFilter(this); }

    long long vm_nAtNs = 0;

private:
    bool eventFilter(QObject* pObject, QEvent* pEvent) override
    {
        auto* const pSheet = qobject_cast<CPropertySheet*>(pObject);
        if (pSheet && pEvent->type() == QEvent::Paint && vm_nAtNs == 0) {
            vm_nAtNs = 1;
            QTimer::singleShot(0, pSheet, [this, pSheet] { // behind all that is painted with it
                vm_nAtNs = NowNs();
                pSheet->done(QDialog::Rejected);
            });
        }
        return false;
    }
};

/// A virtual recorder with many cameras, and a connection object for it.
class CManyCameras
{
public:
    bool m_F_b_Start()
    {
        vm_stConfig.bStreams = false;
        vm_stConfig.nChannels = Cameras;
        std::string sError;
        if (!vm_objNvr.m_F_b_Start(vm_stConfig, sError) || !vm_objEnv.m_F_b_Init(vm_dirConfig.path()) ||
            !Lengthen(vm_objNvr.m_F_o_Documents(), emDef_Document::Camera, u"Cam"_s) ||
            !Lengthen(vm_objNvr.m_F_o_Documents(), emDef_Document::Schedule, u"C"_s))
            return false;
        vm_objEnv.m_F_b_SetLangFolder(QStringLiteral(LANG_FOLDER));
        vm_objEnv.m_F_p_GetMemSysXML()->m_F_b_SetValue(u"/root/NVR/N007"_s, u"Type"_s, 1);
        stDef_NvrInit stInit;
        stInit.nNvrID = NvrID;
        stInit.sIP = "127.0.0.1";
        stInit.sUID = QByteArray::fromStdString(vm_stConfig.arAccounts.front().sUser);
        stInit.sPWD = QByteArray::fromStdString(vm_stConfig.arAccounts.front().sPassword);
        stInit.nHttpPort = vm_objNvr.m_F_n_HttpPort();
        vm_pHolder.reset(CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(NvrID, nullptr, &vm_objEnv));
        return vm_pHolder && vm_pHolder->m_F_n_Init(stInit) == 1;
    }

    CWndNvrEmbedded& m_F_o_Nvr() { return *static_cast<CWndNvrEmbedded*>(vm_pHolder.get()); }

    CVirtualNvr vm_objNvr;
    stDef_VirtualNvrConfig vm_stConfig;

private:
    QTemporaryDir vm_dirConfig;
    CEnvObj vm_objEnv;
    CNvrHolder vm_pHolder;
};

struct stDef_Cycle
{
    double dOurs, dDownloads, dBaseline; ///< ms
    std::size_t nBytes;                  ///< of the five documents
};

stDef_Cycle MeasureCycle(CManyCameras& objRecorder, int nRounds)
{
    CPlainCurl objCurl(objRecorder.vm_objNvr.m_F_n_HttpPort(), objRecorder.vm_stConfig.arAccounts.front());
    CWndNvrEmbedded& objNvr = objRecorder.m_F_o_Nvr();
    const auto Timed = [](const auto& fnDo) {
        const long long nBegin = NowNs();
        fnDo();
        return static_cast<double>(NowNs() - nBegin) / 1e6;
    };
    std::vector<double> arOurs, arDownloads, arBaseline;
    std::size_t nBytes = 0;
    for (int i = 0; i <= nRounds; ++i) {
        CFirstPaint objPaint;
        const long long nBegin = NowNs();
        objNvr.OnMenuSystemSetting();
        const double dOurs = static_cast<double>(objPaint.vm_nAtNs - nBegin) / 1e6;
        const double dDownloads = Timed([&] {
            CXmlObj xmlDocument;
            for (const char* const pUrl : DocumentUrls)
                objNvr.m_F_b_GetRequest(QString::fromLatin1(pUrl), &xmlDocument, 5000);
        });
        const double dBaseline = Timed([&] {
            nBytes = 0;
            for (const char* const pUrl : DocumentUrls) {
                objCurl.Get(pUrl);
                nBytes += objCurl.vm_sBody.size();
            }
        });
        if (i == 0) // logs in, and loads fonts
            continue;
        arOurs.push_back(dOurs);
        arDownloads.push_back(dDownloads);
        arBaseline.push_back(dBaseline);
    }
    return {Median(arOurs), Median(arDownloads), Median(arBaseline), nBytes};
}

/// From the choice of a tab to its painted page, for each tab of a sheet that is shown at its last one.
void TimeTabs(CPropertySheet& objSheet, std::vector<std::vector<double>>& arTimes)
{
    objSheet.OnInitDialog();
    objSheet.show();
    QApplication::processEvents();
    auto* const pTabs = objSheet.findChild<QTabWidget*>(u"Tabs"_s);
    arTimes.resize(static_cast<std::size_t>(pTabs->count()));
    for (int nTab = 0; nTab < pTabs->count(); ++nTab) {
        if (objSheet.m_F_ar_Pages()[nTab]->m_F_b_Initialised())
            continue;
        const long long nBegin = NowNs();
        pTabs->setCurrentIndex(nTab);
        QApplication::processEvents();
        arTimes[static_cast<std::size_t>(nTab)].push_back(static_cast<double>(NowNs() - nBegin) / 1e6);
    }
    objSheet.done(QDialog::Rejected);
}

void BenchPages(CWndNvrEmbedded& objNvr)
{
    constexpr int Rounds = 15;
    constexpr std::array apszNames = {"Camera", "Schedule",         "Network",      "System",
                                      "User",   "Motion Detection", "Address Book", "Notification"};
    std::vector<std::vector<double>> arTimes, arEmpty;
    for (int i = 0; i < 2 * Rounds; ++i) {
        // The tab that the sheet opens with isn't timed, so that each round leaves out another one.
        CDlgSetupPageSystemSetting objSheet(&objNvr, u"System Setting"_s, i % 2 == 0 ? 7 : 0);
        TimeTabs(objSheet, arTimes);
        CPropertySheet objPlain(u"Empty"_s, &objNvr, 1);
        objPlain.m_S_AddPage(new CPropertyPage, u"Empty"_s);
        objPlain.m_S_AddPage(new CPropertyPage, u"Shown"_s);
        TimeTabs(objPlain, arEmpty);
    }
    const double dEmpty = Median(arEmpty[0]);
    for (std::size_t nTab = 0; nTab < apszNames.size(); ++nTab)
        PrintRow({std::string("first showing of ") + apszNames[nTab], Median(arTimes[nTab]), dEmpty, "ms", 50,
                  "an empty page", true});
}

// What a page's request costs beside the plain one of the same connection: the thread, the held loop and its end.
void BenchDetour(CManyCameras& objRecorder)
{
    constexpr int Rounds = 300;
    constexpr int TimeoutMs = 5000;
    const QString sUrl = u"cgi-bin/param.cgi?action=systeminfo"_s;
    objRecorder.vm_objNvr.m_F_o_Faults().m_F_b_Set("systeminfo", {"delay", 1});
    CWndNvrEmbedded& objNvr = objRecorder.m_F_o_Nvr();
    CXmlObj xmlReply;
    const stDef_Pair stPair = MeasurePair(
        Rounds,
        [&] {
            CPageRequests(&objNvr, nullptr, {"", ""}).m_F_b_Get(sUrl, &xmlReply, TimeoutMs);
        },
        [&] { objNvr.m_F_b_GetRequest(sUrl, &xmlReply, TimeoutMs); });
    objRecorder.vm_objNvr.m_F_o_Faults().m_S_Clear();
    PrintRow(
        {"a page's request, reply after 1 ms", stPair.dOurs / 1e6, stPair.dBaseline / 1e6, "ms", 0, "plain request"});
    PrintRow({"its detour", (stPair.dOurs - stPair.dBaseline) / 1e6, 0, "ms", 0.2, ""});
}

} // namespace

void BenchSettings()
{
    constexpr int LateMs = 100;
    CManyCameras objRecorder;
    if (!objRecorder.m_F_b_Start()) {
        std::fprintf(stderr, "settings: the recorder doesn't start\n");
        return;
    }
    const stDef_Cycle stAtOnce = MeasureCycle(objRecorder, 30);
    PrintRow({"five documents of 64 cameras, " + std::to_string(stAtOnce.nBytes) + " bytes", stAtOnce.dDownloads,
              stAtOnce.dBaseline, "ms", 0, "plain libcurl"});
    PrintRow({"menu to visible sheet", stAtOnce.dOurs, stAtOnce.dBaseline, "ms", 1.3, "plain libcurl, no sheet"});
    for (const char* const pAction : {"param.cgi", "SyncSetting.cgi"})
        objRecorder.vm_objNvr.m_F_o_Faults().m_F_b_Set(pAction, {"delay", LateMs});
    const stDef_Cycle stLate = MeasureCycle(objRecorder, 5);
    PrintRow(
        {"same, a recorder that takes 100 ms a reply", stLate.dOurs, stLate.dBaseline, "ms", 1.3, "plain libcurl"});
    objRecorder.vm_objNvr.m_F_o_Faults().m_S_Clear();
    BenchDetour(objRecorder);
    BenchPages(objRecorder.m_F_o_Nvr());
}
