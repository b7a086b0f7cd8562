#include "CMainWindow.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QSplitter>
#include <QStatusBar>
#include <QToolBar>
#include <QVBoxLayout>
#include <algorithm>

#include "CDocumentPanel.h"
#include "CHostIcon.h"
#include "CHostText.h"
#include "CLiveGrid.h"
#include "CRecorderList.h"

using namespace Qt::StringLiterals;

namespace {

const QString g_sTotalsGap = u"     "_s;

// Gives a connection object back at the end of a scope.
class CNvrHolder
{
public:
    explicit CNvrHolder(CWndNvrBase* pNvr) : vm_pNvr(pNvr) {}
    ~CNvrHolder() { CWndNvrBase::s_S_ReleaseNvrObject(&vm_pNvr); }
    CNvrHolder(const CNvrHolder&) = delete;
    CNvrHolder& operator=(const CNvrHolder&) = delete;
    CWndNvrBase* m_F_p_Get() const { return vm_pNvr; }

private:
    CWndNvrBase* vm_pNvr;
};

// The state of a recorder is that of its best cell.
emDef_LiveState BestState(const CLiveGrid& objGrid)
{
    constexpr emDef_LiveState anRank[] = {
        emDef_LiveState::Live,          emDef_LiveState::Waiting,  emDef_LiveState::Connecting,
        emDef_LiveState::Disconnecting, emDef_LiveState::Refused,  emDef_LiveState::Lost,
        emDef_LiveState::NoAnswer,      emDef_LiveState::Unusable, emDef_LiveState::Disconnected,
    };
    for (const emDef_LiveState nState : anRank) {
        for (const CLiveCell* const pCell : objGrid.m_F_ar_Cells()) {
            if (pCell->m_F_p_Channel() && pCell->m_F_p_Channel()->m_F_n_State() == nState)
                return nState;
        }
    }
    return emDef_LiveState::Idle;
}

} // namespace

CMainWindow::CMainWindow(CEnvObj* pEnv, const CRecorderStore* pStore) : vm_pEnv(pEnv), vm_pStore(pStore)
{
    setWindowTitle(Tr(emDef_Text::AppTitle));
    m_S_MakeLayout();
    m_S_MakeActions();
    m_S_MakeStatus();
    resize(1200, 760);
    vm_arRecorders = pStore->m_F_ar_Recorders();
    connect(vm_pGrid, &CLiveGrid::S_Changed, this, &CMainWindow::m_S_UpdateStates);
    connect(vm_pList, &CRecorderList::S_Picked, this, &CMainWindow::m_S_ShowRecorder);
    vm_pList->m_S_SetRecorders(vm_arRecorders);
    m_S_UpdateStates();
}

CMainWindow::~CMainWindow()
{
    disconnect(vm_pGrid, nullptr, this, nullptr);
    delete vm_pGrid; // while the window is whole, of which the connection objects are children
}

void CMainWindow::m_S_MakeLayout()
{
    vm_pList = new CRecorderList;
    vm_pGrid = new CLiveGrid;
    vm_pSide = new QWidget;
    auto* const pTitle = new QLabel(Tr(emDef_Text::Recorders));
    QFont objBold = pTitle->font();
    objBold.setBold(true);
    pTitle->setFont(objBold);
    pTitle->setContentsMargins(12, 10, 12, 6);
    pTitle->setBuddy(vm_pList);
    auto* const pSideLayout = new QVBoxLayout(vm_pSide);
    pSideLayout->setContentsMargins(0, 0, 0, 0);
    pSideLayout->setSpacing(0);
    pSideLayout->addWidget(pTitle);
    pSideLayout->addWidget(vm_pList);

    auto* const pSplitter = new QSplitter(Qt::Horizontal);
    pSplitter->addWidget(vm_pSide);
    pSplitter->addWidget(vm_pGrid);
    pSplitter->setStretchFactor(1, 1);
    pSplitter->setChildrenCollapsible(false);
    pSplitter->setSizes({280, 920});
    setCentralWidget(pSplitter);

    vm_pDocuments = new CDocumentPanel(this);
    addDockWidget(Qt::BottomDockWidgetArea, vm_pDocuments);
    vm_pDocuments->hide();
}

QAction* CMainWindow::m_F_p_AddAction(const char* pszName, emDef_Text nText, emDef_Text nTip,
                                      const QKeySequence& objKey)
{
    auto* const pAction = new QAction(Tr(nText), this);
    const QString sKey = objKey.toString(QKeySequence::NativeText);
    pAction->setObjectName(QString::fromLatin1(pszName));
    pAction->setShortcut(objKey);
    pAction->setStatusTip(Tr(nTip));
    pAction->setToolTip(sKey.isEmpty() ? Tr(nTip) : u"%1 (%2)"_s.arg(Tr(nTip), sKey));
    addAction(pAction); // the shortcut holds in full screen too, where the menu is hidden
    return pAction;
}

void CMainWindow::m_S_MakeActions()
{
    using enum emDef_Text;
    QAction* const pQuit = m_F_p_AddAction("Quit", Quit, QuitTip, QKeySequence(u"Ctrl+Q"_s));
    vm_pFullScreen = m_F_p_AddAction("FullScreen", FullScreen, FullScreenTip, QKeySequence(u"F11"_s));
    vm_pFullScreen->setCheckable(true);
    QAction* const pConnect = m_F_p_AddAction("ConnectAll", ConnectAll, ConnectAllTip, QKeySequence(u"Ctrl+L"_s));
    QAction* const pDisconnect =
        m_F_p_AddAction("DisconnectAll", DisconnectAll, DisconnectAllTip, QKeySequence(u"Ctrl+D"_s));
    QAction* const pExchange = m_F_p_AddAction("Exchange", Exchange, ExchangeTip, QKeySequence(u"Ctrl+E"_s));
    QAction* const pAbout = m_F_p_AddAction("About", About, AboutTip, QKeySequence(u"F1"_s));
    auto* const pLeave = new QAction(this);
    pLeave->setShortcut(QKeySequence(u"Esc"_s));
    addAction(pLeave);

    connect(pQuit, &QAction::triggered, this, &QWidget::close);
    connect(vm_pFullScreen, &QAction::toggled, this, &CMainWindow::m_S_SetFullScreen);
    connect(pLeave, &QAction::triggered, vm_pFullScreen, [this] { vm_pFullScreen->setChecked(false); });
    connect(pConnect, &QAction::triggered, vm_pGrid, &CLiveGrid::m_S_ConnectAll);
    connect(pDisconnect, &QAction::triggered, vm_pGrid, &CLiveGrid::m_S_DisconnectAll);
    connect(pExchange, &QAction::triggered, this, &CMainWindow::m_S_Exchange);
    connect(pAbout, &QAction::triggered, this, &CMainWindow::m_S_About);

    pConnect->setIcon(CHostIcon::s_F_o_Get(emDef_HostIcon::Connect));
    pDisconnect->setIcon(CHostIcon::s_F_o_Get(emDef_HostIcon::Disconnect));
    pExchange->setIcon(CHostIcon::s_F_o_Get(emDef_HostIcon::Exchange));
    vm_pFullScreen->setIcon(CHostIcon::s_F_o_Get(emDef_HostIcon::FullScreen));

    menuBar()->addMenu(Tr(MenuFile))->addAction(pQuit);
    QMenu* const pView = menuBar()->addMenu(Tr(MenuView));
    pView->addActions({vm_pFullScreen, vm_pDocuments->toggleViewAction()});
    menuBar()->addMenu(Tr(MenuRecorder))->addActions({pConnect, pDisconnect, pExchange});
    menuBar()->addMenu(Tr(MenuHelp))->addAction(pAbout);

    vm_pToolBar = addToolBar(Tr(Toolbar));
    vm_pToolBar->setObjectName(u"Toolbar"_s);
    vm_pToolBar->setMovable(false);
    vm_pToolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    vm_pToolBar->addActions({pConnect, pDisconnect});
    vm_pToolBar->addSeparator();
    vm_pToolBar->addAction(pExchange);
    vm_pToolBar->addSeparator();
    vm_pToolBar->addAction(vm_pFullScreen);
}

void CMainWindow::m_S_MakeStatus()
{
    vm_pTotals = new QLabel;
    vm_pTotals->setObjectName(u"Totals"_s);
    vm_pTotals->setContentsMargins(4, 0, 8, 0);
    statusBar()->addPermanentWidget(vm_pTotals);
}

void CMainWindow::m_S_ShowRecorder(int nNvrID)
{
    const auto pRecorder = std::find_if(vm_arRecorders.begin(), vm_arRecorders.end(),
                                        [nNvrID](const stDef_Recorder& st) { return st.nNvrID == nNvrID; });
    if (pRecorder == vm_arRecorders.end())
        return;
    QList<stDef_LiveSource> arSources;
    const auto nCells = static_cast<int>(vm_pGrid->m_F_ar_Cells().size());
    for (int nChannel = 0; nChannel < std::min(pRecorder->nChannels, nCells); ++nChannel)
        arSources.append({nNvrID, nChannel, 0, Tr(emDef_Text::Channel).arg(pRecorder->sName).arg(nChannel + 1)});
    if (vm_nShown >= 0 && vm_nShown != nNvrID)
        vm_pList->m_S_SetState(vm_nShown, emDef_LiveState::Idle, CLiveState::s_F_s_Text(emDef_LiveState::Idle));
    vm_nShown = nNvrID;
    vm_pGrid->m_S_Assign(vm_pEnv, arSources, vm_pStore->m_F_o_InitRecord(nNvrID));
    vm_pGrid->m_S_ConnectAll();
}

void CMainWindow::m_S_Exchange()
{
    vm_pDocuments->show();
    vm_arDocuments.clear();
    if (vm_nShown < 0) {
        vm_pDocuments->m_S_ShowSummary(Tr(emDef_Text::ExchangeNoRecorder));
        return;
    }
    const QString sName = vm_pList->currentItem()->text();
    const CNvrHolder objNvr(CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(vm_nShown, this, vm_pEnv));
    if (!objNvr.m_F_p_Get() || objNvr.m_F_p_Get()->m_F_n_Init(vm_pStore->m_F_o_InitRecord(vm_nShown)) != 1) {
        vm_pDocuments->m_S_ShowSummary(u"%1: %2"_s.arg(sName, Tr(emDef_Text::HintUnusable)));
        return;
    }
    QElapsedTimer objClock;
    objClock.start();
    vm_arDocuments = CDocumentRunner::s_F_ar_Run(
        *objNvr.m_F_p_Get(), [this](const auto& arResults) { vm_pDocuments->m_S_ShowResults(arResults); });
    const auto nFailed = std::count_if(vm_arDocuments.begin(), vm_arDocuments.end(),
                                       [](const stDef_DocumentResult& stResult) { return !stResult.m_F_b_Ok(); });
    vm_pDocuments->m_S_ShowSummary(
        nFailed == 0 ? Tr(emDef_Text::ExchangeDone).arg(sName).arg(objClock.elapsed())
                     : Tr(emDef_Text::ExchangeFailed).arg(sName).arg(nFailed).arg(vm_arDocuments.size()));
}

void CMainWindow::m_S_SetFullScreen(bool bOn)
{
    for (QWidget* const pWidget : {static_cast<QWidget*>(menuBar()), static_cast<QWidget*>(vm_pToolBar), vm_pSide,
                                   static_cast<QWidget*>(statusBar())})
        pWidget->setVisible(!bOn);
    setWindowState(bOn ? windowState() | Qt::WindowFullScreen : windowState() & ~Qt::WindowFullScreen);
}

void CMainWindow::m_S_About()
{
    QMessageBox::about(this, Tr(emDef_Text::AppTitle),
                       u"<b>%1</b><p>%2</p>"_s.arg(Tr(emDef_Text::AppTitle), Tr(emDef_Text::AboutBody)));
}

void CMainWindow::m_S_UpdateStates()
{
    const stDef_GridTotals stTotals = vm_pGrid->m_F_o_Totals();
    if (vm_nShown >= 0) {
        const emDef_LiveState nState = BestState(*vm_pGrid);
        const QString sText = stTotals.nLive > 0
                                  ? Tr(emDef_Text::RecorderLive).arg(stTotals.nLive).arg(stTotals.nChannels)
                                  : CLiveState::s_F_s_Text(nState);
        vm_pList->m_S_SetState(vm_nShown, nState, sText);
    }
    const QStringList arParts = {
        Tr(emDef_Text::TotalRecorders).arg(vm_arRecorders.size()),
        Tr(emDef_Text::TotalLive).arg(stTotals.nLive).arg(stTotals.nChannels),
        Tr(emDef_Text::TotalFrames).arg(stTotals.nRate, 0, 'f', 1),
    };
    vm_pTotals->setText(arParts.join(g_sTotalsGap));
}
