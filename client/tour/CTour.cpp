#include "tour/CTour.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLabel>
#include <QMouseEvent>
#include <QPalette>
#include <QPixmap>
#include <QPushButton>
#include <QSaveFile>
#include <QSet>
#include <QTextStream>
#include <QTimer>
#include <algorithm>
#include <iterator>

#include "fleetlink/fleetlink.h"
#include "live/CLiveGrid.h"
#include "ptz/CPtzPad.h"
#include "ptz/CPtzPanel.h"
#include "recorders/CRecorderDialog.h"
#include "recorders/CRecorderStore.h"
#include "tour/CTourSettings.h"
#include "window/CDocumentPanel.h"
#include "window/CMainWindow.h"
#include "window/CShortcutDialog.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int MovingPictures = 3; // different ones, until a cell counts as moving

// A cell without a channel, or whose stream has failed, will not come to life within the tour's patience.
bool IsHopeless(const CLiveCell& objCell)
{
    using enum emDef_LiveState;
    constexpr emDef_LiveState anFailed[] = {Lost, NoAnswer, NoRing, Refused, Unusable, Disconnected};
    return !objCell.m_F_p_Channel() || std::ranges::find(anFailed, objCell.m_F_n_State()) != std::end(anFailed);
}

struct stDef_PictureRow
{
    emDef_LiveState nState;
    const char* pszName;
};

// The states that a cell is photographed in, once each.
constexpr stDef_PictureRow g_astPictures[] = {
    {emDef_LiveState::Connecting, "state-connecting"}, {emDef_LiveState::Live, "state-live"},
    {emDef_LiveState::Stalled, "state-stalled"},       {emDef_LiveState::Lost, "state-lost"},
    {emDef_LiveState::NoAnswer, "state-no-answer"},    {emDef_LiveState::Refused, "state-refused"},
};

QPalette DarkPalette()
{
    QPalette objDark(QColor(0x2b, 0x2f, 0x36), QColor(0x23, 0x27, 0x2d));
    objDark.setColor(QPalette::Base, QColor(0x1b, 0x1e, 0x23));
    objDark.setColor(QPalette::AlternateBase, QColor(0x23, 0x27, 0x2d));
    objDark.setColor(QPalette::Highlight, QColor(0x3d, 0x7e, 0xc8));
    objDark.setColor(QPalette::HighlightedText, Qt::white);
    return objDark;
}

QString Describe(const std::vector<stDef_StateChange>& arHistory)
{
    QStringList arTexts;
    for (const stDef_StateChange& stChange : arHistory)
        arTexts.append(u"%1 %2 ms"_s.arg(CLiveState::s_F_s_Text(stChange.nState)).arg(stChange.nAtMs));
    return arTexts.join(u", "_s);
}

size_t Fingerprint(const stDef_Picture& stPicture)
{
    return qHashBits(stPicture.arPixels.data(), stPicture.arPixels.size() * sizeof(stPicture.arPixels[0]));
}

void SendMouse(QWidget& objWidget, QEvent::Type nType, const QPointF& pt)
{
    const Qt::MouseButton nHeld = nType == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent objEvent(nType, pt, objWidget.mapToGlobal(pt), Qt::LeftButton, nHeld, Qt::NoModifier);
    QApplication::sendEvent(&objWidget, &objEvent);
}

QString Bytes(bool bThere, std::int64_t nBytes)
{
    return bThere ? QString::number(nBytes) : u"-"_s;
}

} // namespace

CTour::CTour(CMainWindow* pWindow, CRecorderStore* pStore, const QString& sFolder)
    : CTour(pWindow, pStore, sFolder, stDef_Limits())
{}

CTour::CTour(CMainWindow* pWindow, CRecorderStore* pStore, const QString& sFolder, const stDef_Limits& stLimits)
    : vm_pWindow(pWindow), vm_pStore(pStore), vm_sFolder(sFolder), vm_stLimits(stLimits)
{
    const QList<stDef_Recorder> arRecorders = pStore->m_F_ar_Recorders();
    vm_nFirstNvr = arRecorders.isEmpty() ? -1 : arRecorders.first().nNvrID;
}

QStringList CTour::m_F_ar_Run()
{
    vm_arFailures.clear();
    if (!QDir().mkpath(vm_sFolder)) {
        m_S_Fail(u"the folder %1 can't be made"_s.arg(vm_sFolder));
        return vm_arFailures;
    }
    if (vm_nFirstNvr < 0) {
        m_S_Fail(u"there is no recorder in the list"_s);
        return vm_arFailures;
    }
    vm_pWindow->resize(1280, 800);
    vm_pWindow->show();
    m_S_Live();
    m_S_Shapes();
    m_S_States();
    m_S_Ptz();
    m_S_Looks();
    m_S_Exchange();
    m_S_Settings();
    m_S_Disconnect();
    m_S_Reconnect();
    m_S_WriteReport();
    return vm_arFailures;
}

bool CTour::m_F_b_Wait(const std::function<bool()>& fnDone, int nLimitMs)
{
    QElapsedTimer objClock;
    objClock.start();
    while (!fnDone()) {
        if (objClock.elapsed() >= nLimitMs)
            return false;
        QEventLoop objLoop;
        QTimer::singleShot(20, &objLoop, &QEventLoop::quit);
        objLoop.exec();
        m_S_GrabStates();
    }
    return true;
}

void CTour::m_S_Trigger(const char* pszAction)
{
    if (auto* const pAction = vm_pWindow->findChild<QAction*>(QString::fromLatin1(pszAction)))
        pAction->trigger();
    else
        m_S_Fail(u"there is no command %1"_s.arg(QString::fromLatin1(pszAction)));
}

// Until what was asked for is laid out and painted.
void CTour::m_S_Settle()
{
    m_F_b_Wait([] { return false; }, 300);
}

void CTour::m_S_Grab(const QString& sName, QWidget* pWidget)
{
    const QString sFile = QDir(vm_sFolder).filePath(sName + u".png"_s);
    if (!(pWidget ? pWidget : vm_pWindow)->grab().save(sFile, "PNG"))
        m_S_Fail(u"%1 can't be written"_s.arg(sFile));
}

void CTour::m_S_GrabStates()
{
    for (CLiveCell* const pCell : vm_pWindow->m_F_p_Grid()->m_F_ar_Cells()) {
        const emDef_LiveState nState = pCell->m_F_n_State();
        const auto* const pRow = std::find_if(std::begin(g_astPictures), std::end(g_astPictures),
                                              [nState](const stDef_PictureRow& st) { return st.nState == nState; });
        if (pCell->m_F_o_Key().nNvrID < 0 || pRow == std::end(g_astPictures) || vm_setSeen.contains(nState))
            continue;
        vm_setSeen.insert(nState);
        m_S_Grab(QString::fromLatin1(pRow->pszName), pCell);
    }
}

void CTour::m_S_Fail(const QString& sWhat)
{
    vm_arFailures.append(sWhat);
}

bool CTour::m_F_b_WaitLive()
{
    QList<CLiveCell*> arCells = vm_pWindow->m_F_p_Grid()->m_F_ar_Cells();
    arCells.removeIf([this](const CLiveCell* pCell) { return pCell->m_F_o_Key().nNvrID != vm_nFirstNvr; });
    QList<QSet<size_t>> arSeen(arCells.size());
    const auto Moves = [&](qsizetype i) {
        const CLiveCell& objCell = *arCells[i];
        if (objCell.m_F_n_State() == emDef_LiveState::Live && objCell.m_F_o_Picture().nSerial != 0 &&
            arSeen[i].size() < MovingPictures)
            arSeen[i].insert(Fingerprint(objCell.m_F_o_Picture()));
        return arSeen[i].size() >= MovingPictures;
    };
    const auto Settled = [&] {
        bool bSettled = true;
        for (qsizetype i = 0; i < arCells.size(); ++i)
            bSettled = (Moves(i) || IsHopeless(*arCells[i])) && bSettled;
        return bSettled;
    };
    bool bLive = m_F_b_Wait(Settled, vm_stLimits.nLiveMs) && !arCells.isEmpty();
    for (qsizetype i = 0; i < arCells.size(); ++i) {
        const CLiveChannel* const pChannel = arCells[i]->m_F_p_Channel();
        if (Moves(i))
            continue;
        bLive = false;
        m_S_Fail(u"cell %1 shows no moving picture: %2"_s.arg(i + 1).arg(pChannel ? Describe(pChannel->m_F_ar_History())
                                                                                  : u"no such channel"_s));
    }
    return bLive;
}

void CTour::m_S_AddRow(const CLiveChannel& objChannel, double nRate)
{
    vm_arRows.append({objChannel.m_F_o_Source().sTitle, objChannel.m_F_n_FirstPictureMs(), nRate,
                      Describe(objChannel.m_F_ar_History())});
}

void CTour::m_S_Measure()
{
    const QList<CLiveCell*> arCells = vm_pWindow->m_F_p_Grid()->m_F_ar_Cells();
    QList<std::uint64_t> arBefore;
    for (const CLiveCell* const pCell : arCells)
        arBefore.append(pCell->m_F_p_Channel() ? pCell->m_F_p_Channel()->m_F_n_Pictures() : 0);
    QElapsedTimer objClock;
    objClock.start();
    m_F_b_Wait([] { return false; }, vm_stLimits.nMeasureMs);
    const double nSeconds = static_cast<double>(objClock.nsecsElapsed()) / 1e9;
    vm_arRows.clear();
    for (qsizetype i = 0; i < arCells.size(); ++i) {
        const CLiveChannel* const pChannel = arCells[i]->m_F_p_Channel();
        if (!pChannel)
            continue;
        const auto nPictures = static_cast<double>(pChannel->m_F_n_Pictures() - arBefore[i]);
        m_S_AddRow(*pChannel, nPictures / nSeconds);
        if (nPictures == 0 && pChannel->m_F_n_FirstPictureMs() >= 0)
            m_S_Fail(u"cell %1 stands still"_s.arg(i + 1));
    }
}

void CTour::m_S_Live()
{
    m_F_b_WaitLive();
    m_S_Measure();
    m_S_Grab(u"1-live"_s);
}

void CTour::m_S_Shapes()
{
    for (const auto& [pszAction, pszName] :
         {std::pair{"Shape1", "2-one-cell"}, {"Shape16", "3-sixteen-cells"}, {"Shape9", "4-nine-cells"}}) {
        m_S_Trigger(pszAction);
        m_F_b_WaitLive();
        m_S_Settle();
        m_S_Grab(QString::fromLatin1(pszName));
    }
    vm_pWindow->m_F_p_Grid()->m_S_ToggleEnlarged();
    m_S_Settle();
    m_S_Grab(u"5-enlarged"_s);
    vm_pWindow->m_F_p_Grid()->m_S_ToggleEnlarged();
}

// The further recorders of the list come to their states; each is photographed by the wait when it is first seen.
void CTour::m_S_States()
{
    if (vm_pStore->m_F_ar_Recorders().size() > 1) {
        const auto AllSeen = [this] {
            return std::all_of(std::begin(g_astPictures), std::end(g_astPictures),
                               [this](const stDef_PictureRow& st) { return vm_setSeen.contains(st.nState); });
        };
        m_F_b_Wait(AllSeen, vm_stLimits.nStatesMs);
        m_S_Settle();
        m_S_Grab(u"6-states"_s);
        for (const CLiveCell* const pCell : vm_pWindow->m_F_p_Grid()->m_F_ar_Cells()) {
            if (pCell->m_F_p_Channel() && pCell->m_F_o_Key().nNvrID != vm_nFirstNvr)
                m_S_AddRow(*pCell->m_F_p_Channel(), pCell->m_F_p_Channel()->m_F_n_Rate());
        }
    }
    m_S_Trigger("Shape4");
    vm_pWindow->m_F_p_Grid()->m_S_SetPage(0);
}

void CTour::m_S_TestConnection(int nNvrID, const QString& sName)
{
    CRecorderDialog objDialog(vm_pStore, nNvrID, vm_pWindow);
    objDialog.show();
    const auto* const pVerdict = objDialog.findChild<QLabel*>(u"Verdict"_s);
    auto* const pTest = objDialog.findChild<QPushButton*>(u"Test"_s);
    if (!pVerdict || !pTest)
        return m_S_Fail(u"the recorder dialog has no test"_s);
    pTest->click();
    const QString sRunning = pVerdict->text();
    if (!m_F_b_Wait([&] { return !pVerdict->text().isEmpty() && pVerdict->text() != sRunning; }, vm_stLimits.nLiveMs))
        m_S_Fail(u"the connection test doesn't end"_s);
    m_S_Settle();
    m_S_Grab(sName, &objDialog);
}

void CTour::m_S_Dialogs(const QString& sSuffix)
{
    const QList<stDef_Recorder> arRecorders = vm_pStore->m_F_ar_Recorders();
    m_S_TestConnection(vm_nFirstNvr, u"8-test-good"_s + sSuffix);
    if (arRecorders.size() > 2)
        m_S_TestConnection(arRecorders[2].nNvrID, u"8-test-bad"_s + sSuffix);
    CRecorderDialog objAdd(vm_pStore, -1, vm_pWindow);
    objAdd.show();
    m_S_Settle();
    m_S_Grab(u"8-add"_s + sSuffix, &objAdd);
    CShortcutDialog objKeys(vm_pWindow);
    objKeys.show();
    m_S_Settle();
    m_S_Grab(u"9-shortcuts"_s + sSuffix, &objKeys);
}

// The panel moves the first camera: zoomed in, then to the right as long as the pad is held.
void CTour::m_S_Ptz()
{
    const auto* const pPresets = vm_pWindow->findChild<QComboBox*>(u"PtzPresets"_s);
    auto* const pZoom = vm_pWindow->findChild<QAbstractButton*>(u"PtzZoomIn"_s);
    auto* const pPad = vm_pWindow->findChild<CPtzPad*>(u"PtzPad"_s);
    auto* const pPanel = vm_pWindow->findChild<CPtzPanel*>();
    if (!pPresets || !pZoom || !pPad || !pPanel)
        return m_S_Fail(u"the PTZ panel is not whole"_s);
    const int nLanguage = CAppEnv::s_objEnv.vm_nLanguage;
    const QPalette objLight = QApplication::palette();
    pPanel->show();
    vm_pWindow->m_F_p_Grid()->m_F_p_Current()->setFocus();
    if (!m_F_b_Wait([=] { return pPad->isEnabled() && pPresets->count() > 0; }, vm_stLimits.nLiveMs))
        m_S_Fail(u"the PTZ panel has no camera with presets"_s);
    const QPointF ptRight(pPad->width() * 0.85, pPad->height() * 0.5);
    SendMouse(*pZoom, QEvent::MouseButtonPress, pZoom->rect().center());
    m_F_b_Wait([] { return false; }, vm_stLimits.nMeasureMs);
    SendMouse(*pZoom, QEvent::MouseButtonRelease, pZoom->rect().center());
    SendMouse(*pPad, QEvent::MouseButtonPress, ptRight);
    m_S_Settle();
    m_S_Grab(u"13-ptz"_s);
    vm_pWindow->m_S_SetLanguage(0);
    m_S_Settle();
    m_S_Grab(u"13-ptz-chinese"_s);
    vm_pWindow->m_S_SetLanguage(nLanguage);
    SendMouse(*pPad, QEvent::MouseButtonRelease, ptRight);
    QApplication::setPalette(DarkPalette());
    m_S_Settle();
    m_S_Grab(u"13-ptz-dark"_s);
    QApplication::setPalette(objLight);
    SendMouse(*pPad, QEvent::MouseButtonPress, pPad->rect().center());
    SendMouse(*pPad, QEvent::MouseButtonRelease, pPad->rect().center());
    pPanel->hide();
    m_F_b_WaitLive();
}

void CTour::m_S_Looks()
{
    const QPalette objLight = QApplication::palette();
    const int nLanguage = CAppEnv::s_objEnv.vm_nLanguage;
    m_S_Dialogs({});
    vm_pWindow->m_S_SetLanguage(0);
    m_S_Settle();
    m_S_Grab(u"7-chinese"_s);
    m_S_Dialogs(u"-chinese"_s);
    vm_pWindow->m_S_SetLanguage(nLanguage);
    QApplication::setPalette(DarkPalette());
    m_S_Settle();
    m_S_Grab(u"7-dark"_s);
    m_S_Dialogs(u"-dark"_s);
    QApplication::setPalette(objLight);
    m_S_Trigger("FullScreen");
    m_S_Settle();
    m_S_Grab(u"7-full-screen"_s);
    m_S_Trigger("FullScreen");
    vm_pWindow->resize(1280, 800);
    m_F_b_WaitLive();
}

void CTour::m_S_Exchange()
{
    vm_pWindow->m_S_Exchange();
    m_S_Settle(); // the cells lay themselves out anew beside the table
    m_S_Grab(u"10-documents"_s);
    if (vm_pWindow->m_F_ar_Documents().isEmpty())
        m_S_Fail(u"no document was exchanged"_s);
    for (const stDef_DocumentResult& stResult : vm_pWindow->m_F_ar_Documents()) {
        if (!stResult.m_F_b_Ok())
            m_S_Fail(u"document %1: %2"_s.arg(stResult.sDocument, CDocumentPanel::s_F_s_Result(stResult)));
    }
}

// Once to its end, and once left by Cancel.
void CTour::m_S_Settings()
{
    constexpr int Chinese = 0, English = 1;
    const int nLanguage = CAppEnv::s_objEnv.vm_nLanguage;
    auto* const pAction = vm_pWindow->findChild<QAction*>(u"NvrMenu"_s);
    const auto Photograph = [this](const QString& sName, QWidget* pWidget) { m_S_Grab(sName, pWidget); };
    for (const int nShown : {English, Chinese}) {
        vm_pWindow->m_S_SetLanguage(nShown);
        CTourSettings objSettings(Photograph, nShown == Chinese ? u"-chinese"_s : QString(), nShown == English);
        for (const QString& sFailure : objSettings.m_F_ar_Run(pAction))
            m_S_Fail(u"settings: %1"_s.arg(sFailure));
    }
    vm_pWindow->m_S_SetLanguage(nLanguage);
}

void CTour::m_S_Disconnect()
{
    m_S_Trigger("DisconnectAll");
    const QList<CLiveCell*> arCells = vm_pWindow->m_F_p_Grid()->m_F_ar_Cells();
    const bool bEnded = m_F_b_Wait(
        [&] {
            return std::all_of(arCells.begin(), arCells.end(), [](const CLiveCell* pCell) {
                return !pCell->m_F_p_Channel() || pCell->m_F_n_State() == emDef_LiveState::Disconnected;
            });
        },
        vm_stLimits.nEndMs);
    if (!bEnded)
        m_S_Fail(u"the streams don't end"_s);
    m_S_Grab(u"11-disconnected"_s);
}

void CTour::m_S_Reconnect()
{
    m_S_Trigger("ConnectAll");
    m_F_b_WaitLive();
    m_S_Settle();
    m_S_Grab(u"12-connected-again"_s);
}

QString CTour::m_F_s_Report() const
{
    QString sReport;
    QTextStream objOut(&sReport);
    const auto Cell = [](const QString& sText, int nWidth) {
        return nWidth < 0 ? sText.rightJustified(-nWidth) : sText.leftJustified(nWidth);
    };
    objOut << Cell(u"Channel"_s, 32) << Cell(u"First picture"_s, -14) << Cell(u"Frames/s"_s, -10) << "  States\n";
    for (const stDef_ChannelRow& stRow : vm_arRows)
        objOut << Cell(stRow.sTitle, 32)
               << Cell(stRow.nFirstPictureMs < 0 ? u"-"_s : u"%1 ms"_s.arg(stRow.nFirstPictureMs), -14)
               << Cell(QString::number(stRow.nRate, 'f', 1), -10) << "  " << stRow.sStates << '\n';
    objOut << '\n'
           << Cell(u"Document"_s, 14) << Cell(u"Download B"_s, -12) << Cell(u"ms"_s, -7) << Cell(u"Upload B"_s, -12)
           << Cell(u"ms"_s, -7) << "  Result\n";
    for (const stDef_DocumentResult& stResult : vm_pWindow->m_F_ar_Documents())
        objOut << Cell(stResult.sDocument, 14) << Cell(Bytes(stResult.bFetched, stResult.nFetchedBytes), -12)
               << Cell(QString::number(stResult.nFetchMs), -7)
               << Cell(Bytes(stResult.bPosted, stResult.nPostedBytes), -12)
               << Cell(Bytes(stResult.bPosted, stResult.nPostMs), -7) << "  " << CDocumentPanel::s_F_s_Result(stResult)
               << '\n';
    for (const QString& sFailure : vm_arFailures)
        objOut << "failed: " << sFailure << '\n';
    return sReport;
}

void CTour::m_S_WriteReport()
{
    QSaveFile objFile(QDir(vm_sFolder).filePath(u"tour.txt"_s));
    const QByteArray sReport = m_F_s_Report().toUtf8();
    if (!objFile.open(QIODevice::WriteOnly) || objFile.write(sReport) != sReport.size() || !objFile.commit())
        m_S_Fail(u"%1 can't be written"_s.arg(objFile.fileName()));
}
