#include <QCoreApplication>
#include <QMouseEvent>
#include <QTabWidget>
#include <QTreeWidget>
#include <memory>

#include "BenchTable.h"
#include "Benches.h"
#include "fleetlink/fleetlink.h"
#include "setup/CDlgSetupPageSystemSetting.h"
#include "widgets/CTimeListCtrl.h"
#include "widgets/CTimeStateWnd.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int ManyRecords = 48; // of each day, one in each half hour
constexpr int Rounds = 200;
constexpr int Length = 4;     // minutes of a record: there is room to drag it
constexpr int DragPixels = 6; // some 15 minutes
constexpr int ScheduleTab = 1;
constexpr int Cameras = 4; // the first two have many records, the others one

QString Week(int nCamera, int nRecords)
{
    QString sXml = u"<C%1>"_s.arg(nCamera, 3, 10, QChar(u'0'));
    for (const char* const pszDay : {"SUN", "MON", "TUE", "WED", "THU", "FRI", "SAT"}) {
        sXml += u"<%1 SetCount=\"%2\">"_s.arg(QLatin1StringView(pszDay)).arg(nRecords);
        for (int i = 0; i < nRecords; ++i)
            sXml +=
                u"<Set%1 SHour=\"%2\" SMin=\"%3\" EHour=\"%2\" EMin=\"%4\" Pre=\"3\" Post=\"3\" "
                "EventForceRecord=\"0\" Mode=\"%5\" DIID=\"0\" DICam=\"0\" DIMode=\"1\"/>"_s.arg(i, 3, 10, QChar(u'0'))
                    .arg(i / 2)
                    .arg(i % 2 * 30 + nCamera) // no camera has the blocks of another
                    .arg(i % 2 * 30 + nCamera + Length)
                    .arg((i + nCamera) % 4 + 1);
        sXml += u"</%1>"_s.arg(QLatin1StringView(pszDay));
    }
    return sXml + u"</C%1>"_s.arg(nCamera, 3, 10, QChar(u'0'));
}

/// The sheet at its Schedule page.
class CScheduleSheet
{
public:
    CScheduleSheet()
        : vm_pBase(CWndNvrBase::s_F_p_CreateNvrObject(1, nullptr, nullptr)),
          vm_pNvr(static_cast<CWndNvrEmbedded*>(vm_pBase))
    {
        QString sCameras = u"<root><Camera count=\"%1\">"_s.arg(Cameras), sWeeks = u"<root><Main><SCH>"_s;
        for (int i = 0; i < Cameras; ++i) {
            sCameras += u"<Cam%1 VendorID=\"2\" Name=\"Camera %1\"/>"_s.arg(i, 3, 10, QChar(u'0'));
            sWeeks += Week(i, i < Cameras / 2 ? ManyRecords : 1);
        }
        vm_pNvr->vm_xmlCamera.m_F_b_LoadXML(sCameras + u"</Camera></root>"_s);
        vm_pNvr->vm_xmlSchedule.m_F_b_LoadXML(sWeeks + u"</SCH></Main></root>"_s);
        vm_pNvr->vm_xmlSystemInfo.m_F_b_LoadXML(u"<root><Local MaxCam=\"16\"/></root>"_s);
        vm_pSheet = std::make_unique<CDlgSetupPageSystemSetting>(vm_pNvr, u"Sheet"_s, ScheduleTab);
        vm_pSheet->OnInitDialog();
        vm_pSheet->show();
        QCoreApplication::processEvents();
        const QWidget* const pPage = vm_pSheet->findChild<QTabWidget*>(u"Tabs"_s)->currentWidget();
        vm_pTree = pPage->findChild<QTreeWidget*>();
        vm_pGrid = pPage->findChild<CTimeListCtrl*>();
    }
    ~CScheduleSheet()
    {
        vm_pSheet.reset();
        CWndNvrBase::s_S_ReleaseNvrObject(&vm_pBase);
    }
    CScheduleSheet(const CScheduleSheet&) = delete;
    CScheduleSheet& operator=(const CScheduleSheet&) = delete;

    /// To the painted grid.
    double m_F_d_ChooseMs(int nCamera)
    {
        const long long nBegin = NowNs();
        vm_pTree->setCurrentItem(vm_pTree->topLevelItem(nCamera));
        QCoreApplication::processEvents();
        return static_cast<double>(NowNs() - nBegin) / 1e6;
    }
    double m_F_d_MouseMs(QEvent::Type nType, int nX)
    {
        QWidget* const pBlock = vm_pGrid->vm_arBar[0]->vm_arState[ManyRecords / 2].pWnd;
        const bool bMove = nType == QEvent::MouseMove;
        QMouseEvent objEvent(nType, QPointF(1, 5), pBlock->mapToGlobal(QPointF(1, 5)) + QPointF(nX, 0),
                             bMove ? Qt::NoButton : Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        const long long nBegin = NowNs();
        QCoreApplication::sendEvent(pBlock, &objEvent);
        QCoreApplication::processEvents();
        return static_cast<double>(NowNs() - nBegin) / 1e6;
    }

private:
    CWndNvrBase* vm_pBase;
    CWndNvrEmbedded* vm_pNvr;
    std::unique_ptr<CDlgSetupPageSystemSetting> vm_pSheet;
    QTreeWidget* vm_pTree = nullptr;
    CTimeListCtrl* vm_pGrid = nullptr;
};

} // namespace

void BenchSchedule()
{
    constexpr double Frame = 16;   // ms
    constexpr double DragGoal = 4; // ms
    CScheduleSheet objSheet;
    std::vector<double> arMany, arOne, arDrag;
    for (int nRound = 0; nRound < Rounds; ++nRound) {
        objSheet.m_F_d_ChooseMs(0);
        arMany.push_back(objSheet.m_F_d_ChooseMs(1));
        objSheet.m_F_d_ChooseMs(2);
        arOne.push_back(objSheet.m_F_d_ChooseMs(3));
    }
    PrintRow({"camera chosen: 48 records a day : 1", Median(arMany), Median(arOne), "ms", 3,
              "to the painted grid; the bars before had as many"});
    PrintRow({"the same in ms", Median(arMany), 0, "ms", Frame, "48 records a day"});

    objSheet.m_F_d_ChooseMs(0);
    quint64 nNowMs = 0;
    CTimeStateBar::s_S_SetClock([&nNowMs] { return nNowMs += 1000; });
    objSheet.m_F_d_MouseMs(QEvent::MouseButtonPress, 0);
    for (int nRound = 0; nRound < Rounds; ++nRound) // the block follows, so that each step is as long
        arDrag.push_back(objSheet.m_F_d_MouseMs(QEvent::MouseMove, nRound % 2 == 0 ? DragPixels : -DragPixels));
    objSheet.m_F_d_MouseMs(QEvent::MouseButtonRelease, 0);
    CTimeStateBar::s_S_SetClock(nullptr);
    PrintRow({"a drag step on such a day", Median(arDrag), 0, "ms", DragGoal, "to the painted grid"});
}
