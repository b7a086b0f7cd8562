#include "window/CMainWindow.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include "fleetlink/fleetlink.h"
#include "live/CLiveGrid.h"
#include "live/CSnapshot.h"
#include "ptz/CPtzPanel.h"
#include "recorders/CRecorderDialog.h"
#include "recorders/CRecorderPanel.h"
#include "recorders/CRecorderTree.h"
#include "window/CDocumentPanel.h"
#include "window/CHostStatus.h"
#include "window/CRecorderCommands.h"
#include "window/CShortcutDialog.h"
#include "window/CTreeStates.h"
#include "window/HostTexts.h"

using namespace Qt::StringLiterals;

using enum emDef_ActionKind;
using Icon = emDef_HostIcon;

namespace {

constexpr int SaveDelayMs = 1000;
constexpr int UntilTheNextMs = 0;
constexpr QSize FirstSize(1200, 760);

constexpr Text ShapeTip{"ShapeTip", "Number of cells on a page"};

const stDef_MenuRow g_astMenus[] = {
    {"MenuFile", {"MenuFile", "&File"}, {"Snapshot", nullptr, "Quit"}},
    {"MenuView",
     {"MenuView", "&View"},
     {"Shape1", "Shape4", "Shape9", "Shape16", nullptr, "PreviousPage", "NextPage", nullptr, "FullScreen", "PtzPanel",
      "Documents"}},
    {"MenuRecorder",
     {"MenuRecorder", "&Recorder"},
     {"AddRecorder", "EditRecorder", "RemoveRecorder", nullptr, "ShowRecorder", "ConnectAll", "DisconnectAll", nullptr,
      "Settings", "NvrMenu", "Exchange"}},
    {"MenuLanguage", {"Language", "&Language"}, {"English", "Chinese"}},
    {"MenuHelp", {"MenuHelp", "&Help"}, {"Shortcuts", "About"}},
};

constexpr const char* g_apszToolBar[] = {
    "ConnectAll", "DisconnectAll", "Snapshot", "Settings",     "PtzPanel", nullptr, "Shape1",     "Shape4",
    "Shape9",     "Shape16",       nullptr,    "PreviousPage", "NextPage", nullptr, "FullScreen",
};

constexpr const char* g_apszHostsOfRecorder[] = {"ShowRecorder", "AddRecorder", "EditRecorder", "RemoveRecorder",
                                                 "Exchange"};

} // namespace

// clang-format off
// In the order that the list of shortcuts has.
const stDef_ActionRow CMainWindow::s_astActions[] = {
    {"AddRecorder", {"AddRecorder", "&Add recorder\u2026"}, {"AddRecorderTip", "Add a recorder to the list"},
     "Ctrl+N; Ins", Icon::Plus, Plain, [](CMainWindow& o, int) { o.m_S_AddRecorder(); }, 0},
    {"EditRecorder", {"EditRecorder", "&Edit recorder\u2026"}, {"EditRecorderTip", "Edit the selected recorder"},
     "", Icon::None, OfPicked, [](CMainWindow& o, int) { o.m_S_EditRecorder(o.m_F_n_Picked()); }, 0},
    {"RemoveRecorder", {"RemoveRecorder", "&Remove recorder\u2026"}, {"RemoveRecorderTip", "Remove the selected recorder from the list"},
     "", Icon::None, OfPicked, [](CMainWindow& o, int) { o.m_S_RemoveRecorder(o.m_F_n_Picked()); }, 0},
    {"ShowRecorder", {"ShowRecorder", "Sho&w channels"}, {"ShowRecorderTip", "Show the channels of the selected recorder"},
     "", Icon::None, OfPicked, [](CMainWindow& o, int) { o.vm_pGrid->m_S_ShowRecorder(o.m_F_n_Picked()); }, 0},
    {"Quit", {"Quit", "&Quit"}, {"QuitTip", "Stop all streams and close the program"},
     "Ctrl+Q", Icon::None, Plain, [](CMainWindow& o, int) { o.close(); }, 0},
    {"Shape1", {"Shape1", "&1 cell"}, ShapeTip,
     "Ctrl+1", Icon::None, Shape, [](CMainWindow& o, int n) { o.vm_pGrid->m_S_SetShape(n); }, 1},
    {"Shape4", {"Shape4", "&4 cells"}, ShapeTip,
     "Ctrl+2", Icon::None, Shape, [](CMainWindow& o, int n) { o.vm_pGrid->m_S_SetShape(n); }, 4},
    {"Shape9", {"Shape9", "&9 cells"}, ShapeTip,
     "Ctrl+3", Icon::None, Shape, [](CMainWindow& o, int n) { o.vm_pGrid->m_S_SetShape(n); }, 9},
    {"Shape16", {"Shape16", "1&6 cells"}, ShapeTip,
     "Ctrl+4", Icon::None, Shape, [](CMainWindow& o, int n) { o.vm_pGrid->m_S_SetShape(n); }, 16},
    {"PreviousPage", {"PreviousPage", "&Previous page"}, {"PreviousPageTip", "Show the previous page"},
     "PgUp", Icon::Previous, Plain, [](CMainWindow& o, int) { o.vm_pGrid->m_S_SetPage(o.vm_pGrid->m_F_n_Page() - 1); }, 0},
    {"NextPage", {"NextPage", "&Next page"}, {"NextPageTip", "Show the next page"},
     "PgDown", Icon::Next, Plain, [](CMainWindow& o, int) { o.vm_pGrid->m_S_SetPage(o.vm_pGrid->m_F_n_Page() + 1); }, 0},
    {"FullScreen", {"FullScreen", "&Full screen"}, {"FullScreenTip", "Show only the live pictures"},
     "F11", Icon::FullScreen, Toggle, [](CMainWindow& o, int n) { o.m_S_SetFullScreen(n != 0); }, 0},
    {"Leave", {"Leave", "Back from an enlarged cell or the full screen"}, {"LeaveTip", "Go one step back"},
     "Esc", Icon::None, Plain, [](CMainWindow& o, int) { o.m_S_Leave(); }, 0},
    {"PtzPanel", {"PtzPanel", "P&TZ panel"}, {"PtzPanelTip", "Move the camera of the selected cell"},
     "Ctrl+T", Icon::Ptz, Dock, nullptr, 0},
    {"Documents", {"DocumentPanel", "&Documents"}, {"DocumentPanelTip", "Show what the last exchange of documents brought"},
     "", Icon::None, Dock, nullptr, 0},
    {"ConnectAll", {"ConnectAll", "&Connect all"}, {"ConnectAllTip", "Connect all channels in the view"},
     "Ctrl+L", Icon::Connect, OfRecorders, [](CMainWindow& o, int) { o.vm_pGrid->m_S_ConnectAll(); }, 0},
    {"DisconnectAll", {"DisconnectAll", "&Disconnect all"}, {"DisconnectAllTip", "Disconnect all channels in the view"},
     "Ctrl+D", Icon::Disconnect, OfRecorders, [](CMainWindow& o, int) { o.vm_pGrid->m_S_DisconnectAll(); }, 0},
    {"Snapshot", {"Snapshot", "&Save picture"}, {"SnapshotTip", "Save the picture of the selected cell as a PNG file"},
     "Ctrl+S", Icon::Snapshot, OfRecorders, [](CMainWindow& o, int) { o.vm_pGrid->m_S_Snapshot(); }, 0},
    {"Settings", {"Settings", "&Settings\u2026"}, nsHost::SettingsTip,
     "", Icon::Settings, Plain, [](CMainWindow& o, int) { o.vm_pCommands->m_S_Run(o.m_F_n_Picked(), nsCMS::MenuCommand_SystemSetting); }, 0},
    {"NvrMenu", {"NvrMenu", "Recorder &menu"}, {"NvrMenuTip", "Show the menu of the selected recorder"},
     "Ctrl+M", Icon::None, OfPicked, [](CMainWindow& o, int) { o.m_S_ShowTreeMenu(o.m_F_n_Picked(), o.m_F_p_Tree()->m_F_o_MenuPoint()); }, 0},
    {"Exchange", {"Exchange", "E&xchange documents\u2026"}, {"ExchangeTip", "Download the recorder's documents and upload its settings again, unchanged"},
     "Ctrl+E", Icon::Exchange, OfPicked, [](CMainWindow& o, int) { o.m_S_AskAndExchange(); }, 0},
    {"Shortcuts", nsHost::Shortcuts, nsHost::Shortcuts,
     "F1", Icon::None, Plain, [](CMainWindow& o, int) { o.m_S_ShowShortcuts(); }, 0},
    {"About", {"About", "&About"}, {"AboutTip", "About this program"},
     "", Icon::None, Plain, [](CMainWindow& o, int) { o.m_S_About(); }, 0},
    {"English", nsHost::LanguageEnglish, nsHost::LanguageEnglish,
     "", Icon::None, Language, [](CMainWindow& o, int n) { o.m_S_SetLanguage(n); }, 1},
    {"Chinese", nsHost::LanguageChinese, nsHost::LanguageChinese,
     "", Icon::None, Language, [](CMainWindow& o, int n) { o.m_S_SetLanguage(n); }, 0},
};
// clang-format on

CMainWindow::CMainWindow(CEnvObj* pEnv, CRecorderStore* pStore)
    : vm_pEnv(pEnv),
      vm_pStore(pStore),
      vm_objLayouts(pEnv->m_F_s_GetConfigFolder()),
      vm_objLanguage(pEnv),
      vm_objNames(pEnv, pStore, &vm_objWatch),
      vm_sPictureFolder(CSnapshot::s_F_s_Folder())
{
    m_S_MakeLayout();
    vm_pActions = std::make_unique<CHostActions>(this, s_astActions);
    vm_pActions->m_S_MakeMenus(*menuBar(), g_astMenus);
    m_S_MakeToolBar();
    m_S_ConnectParts();
    m_S_Restore();
    m_S_Retranslate();
    vm_pStatus->showMessage(m_F_s_StartFaults(), UntilTheNextMs);
}

CMainWindow::~CMainWindow()
{
    m_S_SaveLayout();
    disconnect(vm_pGrid, nullptr, this, nullptr);
    delete vm_pPtz;  // its camera is stopped
    delete vm_pGrid; // while the window is whole, of which the connection objects are children
}

// --- parts

void CMainWindow::m_S_MakeLayout()
{
    vm_pSide = new CRecorderPanel(vm_pEnv, vm_pStore, &vm_objNames, &vm_objWatch);
    vm_pGrid = new CLiveGrid(vm_pEnv, vm_pStore, &vm_objNames);
    vm_pView = new QStackedWidget;
    vm_pView->addWidget(vm_pGrid);
    vm_pView->addWidget(m_F_p_MakeFirstSteps());
    auto* const pSplitter = new QSplitter(Qt::Horizontal);
    pSplitter->addWidget(vm_pSide);
    pSplitter->addWidget(vm_pView);
    pSplitter->setStretchFactor(1, 1);
    pSplitter->setChildrenCollapsible(false);
    pSplitter->setSizes({280, 920});
    setCentralWidget(pSplitter);

    vm_pDocuments = new CDocumentPanel(this);
    addDockWidget(Qt::BottomDockWidgetArea, vm_pDocuments);
    vm_pDocuments->hide();
    vm_pPtz = new CPtzPanel(vm_pEnv, vm_pStore, vm_pGrid, &vm_objWatch, this);
    addDockWidget(Qt::RightDockWidgetArea, vm_pPtz);
    vm_pPtz->hide();
    vm_pStatus = new CHostStatus;
    setStatusBar(vm_pStatus);
    vm_pStates = std::make_unique<CTreeStates>(m_F_p_Tree(), vm_pGrid, &vm_objWatch);
    vm_pCommands = std::make_unique<CRecorderCommands>(vm_pEnv, vm_pStore, this, vm_pStatus);
}

QWidget* CMainWindow::m_F_p_MakeFirstSteps()
{
    auto* const pPage = new QWidget;
    vm_pFirstSteps = new QLabel;
    vm_pFirstSteps->setAlignment(Qt::AlignCenter);
    vm_pFirstSteps->setWordWrap(true);
    vm_pFirstButton = new QToolButton;
    vm_pFirstButton->setObjectName(u"FirstRecorder"_s);
    vm_pFirstButton->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    vm_pFirstButton->setFocusPolicy(Qt::StrongFocus);
    auto* const pLayout = new QVBoxLayout(pPage);
    pLayout->setSpacing(12);
    pLayout->addStretch();
    pLayout->addWidget(vm_pFirstSteps);
    pLayout->addWidget(vm_pFirstButton, 0, Qt::AlignHCenter);
    pLayout->addStretch();
    return pPage;
}

void CMainWindow::m_S_MakeToolBar()
{
    vm_pFirstButton->setDefaultAction(m_F_p_Action("AddRecorder"));
    vm_pToolBar = addToolBar(QString());
    vm_pToolBar->setObjectName(u"Toolbar"_s);
    vm_pToolBar->setMovable(false);
    vm_pToolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    vm_pActions->m_S_AddTo(*vm_pToolBar, g_apszToolBar);
    vm_pPages = new QLabel;
    vm_pPages->setObjectName(u"Pages"_s);
    vm_pPages->setContentsMargins(6, 0, 6, 0);
    vm_pToolBar->insertWidget(m_F_p_Action("NextPage"), vm_pPages);
    for (const char* const pszName : {"PreviousPage", "NextPage"})
        qobject_cast<QToolButton*>(vm_pToolBar->widgetForAction(m_F_p_Action(pszName)))
            ->setToolButtonStyle(Qt::ToolButtonIconOnly);
}

QAction* CMainWindow::m_F_p_Action(const char* pszName) const
{
    return vm_pActions->m_F_p_Get(pszName);
}

CRecorderTree* CMainWindow::m_F_p_Tree() const
{
    return vm_pSide->m_F_p_Tree();
}

void CMainWindow::m_S_ConnectParts()
{
    CRecorderTree* const pTree = m_F_p_Tree();
    connect(pTree, &CRecorderTree::S_PlaceChannel, vm_pGrid, &CLiveGrid::m_S_Place);
    connect(pTree, &CRecorderTree::S_ShowRecorder, vm_pGrid, &CLiveGrid::m_S_ShowRecorder);
    connect(pTree, &CRecorderTree::S_Edit, this, &CMainWindow::m_S_EditRecorder);
    connect(pTree, &CRecorderTree::S_Remove, this, &CMainWindow::m_S_RemoveRecorder);
    connect(pTree, &CRecorderTree::S_MenuRequested, this, &CMainWindow::m_S_ShowTreeMenu);
    connect(pTree, &CRecorderTree::S_CurrentChanged, this, &CMainWindow::m_S_UpdateActions);
    connect(vm_pGrid, &CLiveGrid::S_Changed, this, &CMainWindow::m_S_UpdateStates);
    connect(vm_pGrid, &CLiveGrid::S_LayoutChanged, this, &CMainWindow::m_S_UpdatePages);
    connect(vm_pGrid, &CLiveGrid::S_Snapshot, this, &CMainWindow::m_S_SaveSnapshot);
    connect(vm_pGrid, &CLiveGrid::S_Lost, &vm_objWatch, &CRecorderWatch::m_S_ProbeNow);
    connect(vm_pGrid, &CLiveGrid::S_AddressFound, &vm_objWatch, &CRecorderWatch::m_S_SetAddress);
    connect(&vm_objWatch, &CRecorderWatch::S_Back, vm_pGrid, &CLiveGrid::m_S_RetryNow);
    connect(&vm_objWatch, &CRecorderWatch::S_Changed, this,
            [this](int nNvrID) { vm_pStates->m_S_UpdateReach(nNvrID); });
    connect(vm_pCommands.get(), &CRecorderCommands::S_Closed, &vm_objNames, &CCameraNames::m_S_AskAgain);
    connect(vm_pPtz, &CPtzPanel::S_SettingChanged, this, &CMainWindow::m_S_SaveSoon);
    vm_objSaveTimer.setSingleShot(true);
    connect(&vm_objSaveTimer, &QTimer::timeout, this, &CMainWindow::m_S_SaveLayout);
}

void CMainWindow::m_S_Retranslate()
{
    setWindowTitle(Tr(nsHost::AppTitle));
    vm_pFirstSteps->setText(Tr(nsHost::FirstSteps));
    vm_pToolBar->setWindowTitle(Tr(nsHost::Toolbar));
    vm_pActions->m_S_Retranslate();
    m_S_UpdatePages();
    m_S_UpdateStates();
    m_S_UpdateActions();
}

void CMainWindow::changeEvent(QEvent* pEvent)
{
    QMainWindow::changeEvent(pEvent);
    if (pEvent->type() == QEvent::LanguageChange && vm_bRestored)
        m_S_Retranslate();
}

void CMainWindow::resizeEvent(QResizeEvent* pEvent)
{
    QMainWindow::resizeEvent(pEvent);
    m_S_SaveSoon();
}

// --- layout

// Nothing is saved before all is restored, and the language comes first: what is made from here on speaks it.
void CMainWindow::m_S_Restore()
{
    stDef_Layout stLayout;
    const bool bStored = vm_objLayouts.m_F_b_Load(stLayout);
    if (!bStored)
        stLayout.arSlots = vm_pGrid->m_F_ar_DefaultSlots();
    vm_objLanguage.m_F_b_Set(stLayout.nLanguage);
    if (!restoreGeometry(stLayout.sGeometry))
        resize(FirstSize.boundedTo(screen()->availableGeometry().size() * 9 / 10)); // with room for the frame
    m_S_UpdateRecorders();
    vm_nRecorders > 0 ? m_F_p_Tree()->setFocus() : vm_pFirstButton->setFocus();
    if (stLayout.bFullScreen)
        m_F_p_Action("FullScreen")->trigger();
    vm_pGrid->m_S_SetLayout(stLayout);
    vm_pPtz->m_S_SetSpeed(stLayout.nPtzSpeed);
    vm_pPtz->setVisible(stLayout.bPtzPanel);
    vm_bRestored = true;
}

// A window that is drawn larger tells of each step.
void CMainWindow::m_S_SaveSoon()
{
    if (vm_bRestored)
        vm_objSaveTimer.start(SaveDelayMs);
}

void CMainWindow::m_S_SaveLayout()
{
    stDef_Layout stLayout;
    vm_pGrid->m_S_GetLayout(stLayout);
    stLayout.sGeometry = saveGeometry();
    stLayout.bFullScreen = m_F_p_Action("FullScreen")->isChecked();
    stLayout.nLanguage = vm_objLanguage.m_F_n_Language();
    stLayout.bPtzPanel = !vm_pPtz->isHidden();
    stLayout.nPtzSpeed = vm_pPtz->m_F_n_Speed();
    if (!vm_objLayouts.m_F_b_Save(stLayout))
        vm_pStatus->m_S_Tell(Tr(nsHost::LayoutLost).arg(vm_pEnv->m_F_s_GetConfigFolder()));
}

void CMainWindow::m_S_SetLanguage(int nLanguage)
{
    if (!vm_objLanguage.m_F_b_Set(nLanguage))
        vm_pStatus->m_S_Tell(Tr(nsHost::LanguageMissing));
    m_S_UpdatePages();
}

void CMainWindow::m_S_UpdatePages()
{
    vm_pActions->m_S_Choose(Shape, vm_pGrid->m_F_n_Shape());
    vm_pActions->m_S_Choose(Language, vm_objLanguage.m_F_n_Language());
    vm_pPages->setText(Tr(nsHost::PageOf).arg(vm_pGrid->m_F_n_Page() + 1).arg(vm_pGrid->m_F_n_Pages()));
    m_F_p_Action("PreviousPage")->setEnabled(vm_pGrid->m_F_n_Page() > 0);
    m_F_p_Action("NextPage")->setEnabled(vm_pGrid->m_F_n_Page() + 1 < vm_pGrid->m_F_n_Pages());
    m_S_SaveSoon();
}

// What would do nothing can't be chosen, and says why.
void CMainWindow::m_S_UpdateActions()
{
    const int nNvrID = m_F_n_Picked();
    vm_pActions->m_S_SetEnabled(OfPicked, nNvrID >= 0);
    vm_pActions->m_S_SetEnabled(OfRecorders, vm_nRecorders > 0);
    const bool bSettings = vm_pCommands->m_F_b_Works(nNvrID, nsCMS::MenuCommand_SystemSetting);
    m_F_p_Action("Settings")->setEnabled(bSettings);
    vm_pActions->m_S_SetTip("Settings", bSettings || nNvrID < 0 ? nsHost::SettingsTip : nsHost::SettingsNone);
}

QString CMainWindow::m_F_s_StartFaults() const
{
    QStringList arFaults;
    const QStringList arFiles = CHostLanguage::s_F_ar_Faulty(vm_pEnv->m_F_s_GetLangFolder());
    if (!arFiles.isEmpty())
        arFaults.append(Tr(nsHost::LanguageFault).arg(arFiles.join(u", "_s)));
    const QString sDamaged = vm_pEnv->m_F_s_DamagedSysXML();
    if (!sDamaged.isEmpty())
        arFaults.append(Tr(nsHost::DamagedList).arg(sDamaged));
    return arFaults.join(u"   "_s);
}

void CMainWindow::m_S_SetFullScreen(bool bOn)
{
    // The focus of a part that hides would go to the first cell, and the mark with it.
    if (bOn && vm_pSide->isAncestorOf(focusWidget()))
        vm_pGrid->m_F_p_Current()->setFocus();
    for (QWidget* const pWidget :
         {static_cast<QWidget*>(menuBar()), static_cast<QWidget*>(vm_pToolBar), static_cast<QWidget*>(vm_pSide)})
        pWidget->setVisible(!bOn);
    vm_pStatus->m_S_SetFullScreen(bOn);
    setWindowState(bOn ? windowState() | Qt::WindowFullScreen : windowState() & ~Qt::WindowFullScreen);
}

// Esc: one step back.
void CMainWindow::m_S_Leave()
{
    if (vm_pGrid->m_F_b_Enlarged())
        vm_pGrid->m_S_ToggleEnlarged();
    else if (m_F_p_Action("FullScreen")->isChecked())
        m_F_p_Action("FullScreen")->trigger();
}

// --- recorders

// Of the tree, and where nothing is picked there that of the marked cell.
int CMainWindow::m_F_n_Picked() const
{
    const int nTree = m_F_p_Tree()->m_F_n_CurrentRecorder();
    return nTree >= 0 ? nTree : vm_pGrid->m_F_p_Current()->m_F_o_Key().nNvrID;
}

void CMainWindow::m_S_UpdateRecorders()
{
    const QList<stDef_Recorder> arRecorders = vm_pStore->m_F_ar_Recorders();
    vm_nRecorders = static_cast<int>(arRecorders.size());
    vm_objNames.m_S_SetRecorders(arRecorders);
    vm_objWatch.m_S_SetRecorders(arRecorders);
    vm_pSide->m_S_SetRecorders(arRecorders);
    vm_pView->setCurrentIndex(arRecorders.isEmpty() ? 1 : 0);
    m_S_UpdateActions();
}

void CMainWindow::m_S_AddRecorder()
{
    CRecorderDialog objDialog(vm_pStore, -1, this);
    if (CUserSide::s_F_o_Get().m_F_n_RunModal(objDialog) != QDialog::Accepted)
        return;
    m_S_UpdateRecorders();
    vm_pGrid->m_S_RecorderChanged(objDialog.m_F_n_NvrID());
    vm_pGrid->m_S_ShowRecorder(objDialog.m_F_n_NvrID());
    vm_pSide->m_S_Select(objDialog.m_F_n_NvrID());
}

void CMainWindow::m_S_EditRecorder(int nNvrID)
{
    if (nNvrID < 0)
        return;
    CRecorderDialog objDialog(vm_pStore, nNvrID, this);
    if (CUserSide::s_F_o_Get().m_F_n_RunModal(objDialog) != QDialog::Accepted)
        return;
    m_S_UpdateRecorders();
    vm_pGrid->m_S_RecorderChanged(nNvrID);
}

void CMainWindow::m_S_ShowImported(const stDef_ImportResult& stResult)
{
    m_S_UpdateRecorders();
    for (const int nNvrID : stResult.arUpdated + stResult.arAdded)
        vm_pGrid->m_S_RecorderChanged(nNvrID);
    for (const int nNvrID : stResult.arAdded)
        vm_pGrid->m_S_ShowRecorder(nNvrID);
    vm_pStatus->m_S_Tell(stResult.m_F_s_Text());
}

void CMainWindow::m_S_RemoveRecorder(int nNvrID)
{
    const QString sQuestion = Tr(nsHost::RemoveQuestion).arg(vm_pStore->m_F_o_Form(nNvrID).sName);
    if (nNvrID < 0 || !CPrompts::s_F_b_AskToDestroy(this, sQuestion, Tr(nsHost::AppTitle)))
        return;
    const QString sError = vm_pStore->m_F_s_Remove(nNvrID);
    if (!sError.isEmpty()) {
        CPrompts::s_S_Message(this, sError, Tr(nsHost::AppTitle));
        return;
    }
    vm_pGrid->m_S_RecorderRemoved(nNvrID);
    m_S_UpdateRecorders();
}

// The recorder's own commands, then the host's.
void CMainWindow::m_S_ShowTreeMenu(int nNvrID, const QPoint& ptGlobal)
{
    QMenu objMenu(this);
    objMenu.setObjectName(u"RecorderMenu"_s);
    vm_pCommands->m_S_AddTo(objMenu, nNvrID);
    objMenu.addSeparator();
    if (nNvrID >= 0)
        vm_pActions->m_S_AddTo(objMenu, g_apszHostsOfRecorder);
    else
        objMenu.addAction(m_F_p_Action("AddRecorder"));
    const QAction* const pChosen = objMenu.exec(ptGlobal);
    if (pChosen && pChosen->data().isValid()) // a number is what the recorder's own have
        vm_pCommands->m_S_Run(nNvrID, pChosen->data().toInt());
}

// --- commands

void CMainWindow::m_S_AskAndExchange()
{
    const QString sQuestion = Tr(nsHost::ExchangeQuestion).arg(vm_pStore->m_F_o_Form(m_F_n_Picked()).sName);
    if (CPrompts::s_F_b_AskToDestroy(this, sQuestion, Tr(nsHost::AppTitle)))
        m_S_Exchange();
}

void CMainWindow::m_S_Exchange()
{
    const int nNvrID = m_F_n_Picked();
    if (nNvrID >= 0)
        vm_arDocuments = vm_pCommands->m_F_ar_Exchange(nNvrID, *vm_pDocuments);
}

void CMainWindow::m_S_SaveSnapshot(const QImage& objImage, const QString& sTitle)
{
    if (objImage.isNull()) {
        vm_pStatus->m_S_Tell(Tr(nsHost::SnapshotNone));
        return;
    }
    const QString sFile =
        CSnapshot::s_F_s_Save(objImage, vm_sPictureFolder, sTitle, CUserSide::s_F_o_Get().m_F_o_Now());
    vm_pStatus->m_S_Tell(sFile.isEmpty() ? Tr(nsHost::SnapshotFailed).arg(vm_sPictureFolder)
                                         : Tr(nsHost::SnapshotSaved).arg(sFile));
}

void CMainWindow::m_S_ShowShortcuts()
{
    CShortcutDialog objDialog(this);
    CUserSide::s_F_o_Get().m_F_n_RunModal(objDialog);
}

void CMainWindow::m_S_About()
{
    CPrompts::s_S_Notice(this, Tr(nsHost::AboutBody).arg(QStringLiteral(FLEETLINK_VERSION)), Tr(nsHost::AppTitle));
}

void CMainWindow::m_S_UpdateStates()
{
    vm_pStates->m_S_Update();
    vm_pStatus->m_S_ShowTotals(vm_nRecorders, vm_pGrid->m_F_o_Totals());
}
