#include <QCoreApplication>
#include <QGridLayout>
#include <QTableWidget>
#include <QTemporaryDir>
#include <cstdio>
#include <memory>

#include "BenchTable.h"
#include "Benches.h"
#include "CPlainCurl.h"
#include "CVirtualNvr.h"
#include "cgi/CDocumentStore.h"
#include "drivers/CCamObj_Base.h"
#include "fleetlink/fleetlink.h"
#include "http/CFaultTable.h"
#include "motion/CSetMotionObj.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int Windows = 16;
constexpr int Passes = 200;
constexpr int Openings = 30;
constexpr int ReplyMs = 20;
constexpr int VendorV6 = 2;

template <class Do>
double TimedMs(const Do& fnDo)
{
    const long long nBegin = NowNs();
    fnDo();
    return static_cast<double>(NowNs() - nBegin) / 1e6;
}

/// Of a full canvas, from the beginning of the pass until it is on the screen; the clock of the passes stands still.
double MeasurePassMs()
{
    CSetMotionObj objCanvas;
    objCanvas.setFixedSize(480, 360);
    objCanvas.m_S_ResetWnds(0, Windows);
    for (int i = 0; i < Windows; ++i) {
        const int nLeft = i % 4 * 110, nTop = i / 4 * 80; // each over its neighbours
        objCanvas.m_F_b_Open(i, {nLeft, nTop, nLeft + 140, nTop + 110});
        objCanvas.m_F_p_Lights()->m_S_Set(i, i % 2 == 0);
    }
    objCanvas.show();
    QCoreApplication::processEvents();
    std::vector<double> arMs;
    for (int i = 0; i < Passes; ++i) {
        arMs.push_back(TimedMs([&] {
            objCanvas.m_S_Redraw();
            objCanvas.repaint();
        }));
    }
    return Median(arMs);
}

void BenchOpening()
{
    stDef_VirtualNvrConfig stConfig;
    stConfig.bStreams = false;
    CVirtualNvr objNvr;
    CEnvObj objEnv;
    const QTemporaryDir dirConfig;
    std::string sError;
    if (!objNvr.m_F_b_Start(stConfig, sError) || !objEnv.m_F_b_Init(dirConfig.path())) {
        std::fprintf(stderr, "motion: the recorder doesn't start\n");
        return;
    }
    objEnv.m_F_b_SetLangFolder(QStringLiteral(LANG_FOLDER));
    objEnv.m_F_p_GetMemSysXML()->m_F_b_SetValue(u"/root/NVR/N007"_s, u"Type"_s, 1);
    const CNvrHolder pHolder(CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(7, nullptr, &objEnv));
    auto* const pNvr = static_cast<CWndNvrEmbedded*>(pHolder.get());
    stDef_NvrInit stInit;
    stInit.nNvrID = 7;
    stInit.sIP = "127.0.0.1";
    stInit.sUID = QByteArray::fromStdString(stConfig.arAccounts.front().sUser);
    stInit.sPWD = QByteArray::fromStdString(stConfig.arAccounts.front().sPassword);
    stInit.nHttpPort = objNvr.m_F_n_HttpPort();
    pNvr->m_F_n_Init(stInit);
    pNvr->vm_xmlCamera.m_F_b_LoadXML(
        QString::fromStdString(objNvr.m_F_o_Documents().m_F_s_Get(emDef_Document::Camera)));
    objNvr.m_F_o_Faults().m_F_b_Set("group=motion", {"delay", ReplyMs});

    CPlainCurl objCurl(objNvr.m_F_n_HttpPort(), stConfig.arAccounts.front());
    const std::unique_ptr<CCamObj_Base> pCamera(CCamObj_Base::s_F_p_CreateCamObj(VendorV6, pNvr));
    pCamera->m_nCamIndex = 0;
    QWidget objPlace;
    QGridLayout objLayout(&objPlace);
    objPlace.resize(740, 560);
    objPlace.show();
    const auto Open = [&] {
        pCamera->m_S_ShowMotion(&objPlace);
        QCoreApplication::processEvents(); // painted
    };
    std::vector<double> arOurs, arBaseline;
    for (int i = 0; i <= Openings; ++i) {
        const double dOurs = TimedMs(Open);
        const auto* const pList = objPlace.findChild<QTableWidget*>();
        if (!pList || pList->rowCount() == 0) {
            std::fprintf(stderr, "motion: the window has no list\n");
            return;
        }
        pCamera->m_S_CloseMotion(false);
        const double dBaseline = TimedMs([&] { objCurl.Get("cgi-bin/config.cgi?action=list&group=motion&camera=0"); });
        if (i == 0) // logs in, and loads fonts
            continue;
        arOurs.push_back(dOurs);
        arBaseline.push_back(dBaseline);
    }
    PrintRow({"motion window opened, a recorder that takes 20 ms", Median(arOurs), Median(arBaseline), "ms", 1.5,
              "to the painted window; its list with plain libcurl"});
}

} // namespace

void BenchMotion()
{
    constexpr double PassGoal = 5; // ms
    PrintRow({"a pass over 16 motion windows", MeasurePassMs(), 0, "ms", PassGoal, "480 x 360 pixels, to the screen"});
    BenchOpening();
}
