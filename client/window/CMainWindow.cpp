#include "window/CMainWindow.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <map>

#include "core/CWndNvrShared.h"
#include "live/CLiveGrid.h"
#include "live/CSnapshot.h"
#include "ptz/CPtzPanel.h"
#include "recorders/CLoginPanel.h"
#include "recorders/CRecorderDialog.h"
#include "recorders/CRecorderFilter.h"
#include "recorders/CRecorderTree.h"
#include "toolkit/user/CPrompts.h"
#include "toolkit/user/CUserSide.h"
#include "window/CDocumentPanel.h"
#include "window/CHostIcon.h"
#include "window/CShortcutDialog.h"
#include "window/HostTexts.h"

using namespace Qt::StringLiterals;

namespace {

const QString g_sTotalsGap = u"     "_s;
constexpr int SaveDelayMs = 1000;
constexpr int MessageMs = 10000;
constexpr int UntilTheNextMs = 0;
constexpr QSize FirstSize(1200, 760);
constexpr int NoIcon = -1;

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

} // namespace

struct CMainWindow::stDef_ActionRow
{
    const char* pszName;
    stDef_Text stText;
    stDef_Text stTip;
    const char* pszKeys; ///< divided by "; "
    int nIcon;           ///< an emDef_HostIcon, or none
};

// clang-format off
const CMainWindow::stDef_ActionRow CMainWindow::s_astActions[] = {
    {"AddRecorder", {"AddRecorder", "&Add recorder\u2026"}, {"AddRecorderTip", "Add a recorder to the list"}, "Ctrl+N; Ins", int(emDef_HostIcon::Plus)},
    {"EditRecorder", {"EditRecorder", "&Edit recorder\u2026"}, {"EditRecorderTip", "Edit the selected recorder"}, "", NoIcon},
    {"RemoveRecorder", {"RemoveRecorder", "&Remove recorder\u2026"}, {"RemoveRecorderTip", "Remove the selected recorder from the list"}, "", NoIcon},
    {"Quit", {"Quit", "&Quit"}, {"QuitTip", "Stop all streams and close the program"}, "Ctrl+Q", NoIcon},
    {"Shape1", {"Shape1", "&1 cell"}, nsHost::ShapeTip, "Ctrl+1", NoIcon},
    {"Shape4", {"Shape4", "&4 cells"}, nsHost::ShapeTip, "Ctrl+2", NoIcon},
    {"Shape9", {"Shape9", "&9 cells"}, nsHost::ShapeTip, "Ctrl+3", NoIcon},
    {"Shape16", {"Shape16", "1&6 cells"}, nsHost::ShapeTip, "Ctrl+4", NoIcon},
    {"PreviousPage", {"PreviousPage", "&Previous page"}, {"PreviousPageTip", "Show the previous page"}, "PgUp", int(emDef_HostIcon::Previous)},
    {"NextPage", {"NextPage", "&Next page"}, {"NextPageTip", "Show the next page"}, "PgDown", int(emDef_HostIcon::Next)},
    {"FullScreen", {"FullScreen", "&Full screen"}, {"FullScreenTip", "Show only the live pictures"}, "F11", int(emDef_HostIcon::FullScreen)},
    {"ConnectAll", {"ConnectAll", "&Connect all"}, {"ConnectAllTip", "Connect all channels in the view"}, "Ctrl+L", int(emDef_HostIcon::Connect)},
    {"DisconnectAll", {"DisconnectAll", "&Disconnect all"}, {"DisconnectAllTip", "Disconnect all channels in the view"}, "Ctrl+D", int(emDef_HostIcon::Disconnect)},
    {"Snapshot", {"Snapshot", "&Save picture"}, {"SnapshotTip", "Save the picture of the selected cell as a PNG file"}, "Ctrl+S", int(emDef_HostIcon::Snapshot)},
    {"Settings", {"Settings", "&Settings\u2026"}, nsHost::SettingsTip, "", int(emDef_HostIcon::Settings)},
    {"NvrMenu", {"NvrMenu", "Recorder &menu"}, {"NvrMenuTip", "Show the menu of the selected recorder"}, "Ctrl+M", NoIcon},
    {"Exchange", {"Exchange", "E&xchange documents\u2026"}, {"ExchangeTip", "Download the recorder's documents and upload its settings again, unchanged"}, "Ctrl+E", int(emDef_HostIcon::Exchange)},
    {"Shortcuts", nsHost::Shortcuts, nsHost::Shortcuts, "F1", NoIcon},
    {"About", {"About", "&About"}, {"AboutTip", "About this program"}, "", NoIcon},
    {"English", nsHost::LanguageEnglish, nsHost::LanguageEnglish, "", NoIcon},
    {"Chinese", nsHost::LanguageChinese, nsHost::LanguageChinese, "", NoIcon},
};

struct CMainWindow::stDef_MenuRow
{
    const char* pszName;
    stDef_Text stText;
    std::vector<const char*> arActions; ///< null is a line
};

const CMainWindow::stDef_MenuRow CMainWindow::s_astMenus[] = {
    {"MenuFile", {"MenuFile", "&File"}, {"Snapshot", nullptr, "Quit"}},
    {"MenuView", {"MenuView", "&View"}, {"Shape1", "Shape4", "Shape9", "Shape16", nullptr, "PreviousPage", "NextPage", nullptr, "FullScreen"}},
    {"MenuRecorder", {"MenuRecorder", "&Recorder"}, {"AddRecorder", "EditRecorder", "RemoveRecorder", nullptr, "ConnectAll", "DisconnectAll", nullptr, "Settings", "NvrMenu", "Exchange"}},
    {"MenuLanguage", {"Language", "&Language"}, {"English", "Chinese"}},
    {"MenuHelp", {"MenuHelp", "&Help"}, {"Shortcuts", "About"}},
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
    m_S_MakeActions();
    m_S_MakeMenus();
    m_S_MakeToolBar();
    m_S_ConnectActions();
    m_S_ConnectParts();
    m_S_Restore();
    m_S_Retranslate();
    statusBar()->showMessage(m_F_s_StartFaults(), UntilTheNextMs);
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
    m_S_MakeSide();
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
    addAction(vm_pPtz->toggleViewAction());
    const auto MakeLabel = [this](const char* pszName) {
        auto* const pLabel = new QLabel;
        pLabel->setObjectName(QString::fromLatin1(pszName));
        pLabel->setTextFormat(Qt::PlainText);
        pLabel->setContentsMargins(4, 0, 8, 0);
        statusBar()->addPermanentWidget(pLabel);
        return pLabel;
    };
    vm_pSheetOf = MakeLabel("SheetOf");
    vm_pTotals = MakeLabel("Totals");
    vm_pNotTaken = MakeLabel("NotTaken"); // a message would be gone with the next tip of a menu
}

void CMainWindow::m_S_MakeSide()
{
    vm_pTree = new CRecorderTree(&vm_objNames);
    vm_pFilter = new CRecorderFilter(vm_pTree);
    vm_pSide = new QWidget;
    vm_pTitle = new QLabel;
    QFont objBold = vm_pTitle->font();
    objBold.setBold(true);
    vm_pTitle->setFont(objBold);
    vm_pTitle->setContentsMargins(12, 10, 12, 6);
    vm_pTitle->setBuddy(vm_pTree);
    auto* const pFilterLine = new QHBoxLayout;
    pFilterLine->setContentsMargins(8, 0, 8, 8);
    pFilterLine->addWidget(vm_pFilter);
    auto* const pSideLayout = new QVBoxLayout(vm_pSide);
    pSideLayout->setContentsMargins(0, 0, 0, 0);
    pSideLayout->setSpacing(0);
    pSideLayout->addWidget(vm_pTitle);
    pSideLayout->addLayout(pFilterLine);
    pSideLayout->addWidget(vm_pTree, 1);
    vm_pLogin = new CLoginPanel(vm_pEnv, vm_pStore, vm_pTree, &vm_objWatch);
    pSideLayout->addWidget(vm_pLogin);
}

QWidget* CMainWindow::m_F_p_MakeFirstSteps()
{
    auto* const pPage = new QWidget;
    vm_pFirstSteps = new QLabel;
    vm_pFirstSteps->setAlignment(Qt::AlignCenter);
    vm_pFirstSteps->setWordWrap(true);
    auto* const pButton = new QToolButton;
    pButton->setObjectName(u"FirstRecorder"_s);
    pButton->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    pButton->setFocusPolicy(Qt::StrongFocus);
    auto* const pLayout = new QVBoxLayout(pPage);
    pLayout->setSpacing(12);
    pLayout->addStretch();
    pLayout->addWidget(vm_pFirstSteps);
    pLayout->addWidget(pButton, 0, Qt::AlignHCenter);
    pLayout->addStretch();
    return pPage;
}

void CMainWindow::m_S_MakeActions()
{
    for (const stDef_ActionRow& stRow : s_astActions) {
        auto* const pAction = new QAction(this);
        pAction->setObjectName(QString::fromLatin1(stRow.pszName));
        if (*stRow.pszKeys)
            pAction->setShortcuts(QKeySequence::listFromString(QString::fromLatin1(stRow.pszKeys)));
        if (stRow.nIcon != NoIcon)
            pAction->setIcon(CHostIcon::s_F_o_Get(static_cast<emDef_HostIcon>(stRow.nIcon)));
        addAction(pAction); // the shortcut holds in full screen too, where the menu is hidden
    }
    const auto MakeGroup = [this](std::initializer_list<std::pair<const char*, int>> arMembers) {
        auto* const pGroup = new QActionGroup(this);
        for (const auto& [pszName, nValue] : arMembers) {
            QAction* const pAction = m_F_p_Action(pszName);
            pAction->setCheckable(true);
            pAction->setData(nValue);
            pGroup->addAction(pAction);
        }
        return pGroup;
    };
    vm_pShapes = MakeGroup({{"Shape1", 1}, {"Shape4", 4}, {"Shape9", 9}, {"Shape16", 16}});
    vm_pLanguages = MakeGroup({{"Chinese", 0}, {"English", 1}});
    m_F_p_Action("FullScreen")->setCheckable(true);
    vm_pView->findChild<QToolButton*>(u"FirstRecorder"_s)->setDefaultAction(m_F_p_Action("AddRecorder"));
    auto* const pLeave = new QAction(this);
    pLeave->setShortcut(QKeySequence(u"Esc"_s));
    addAction(pLeave);
    connect(pLeave, &QAction::triggered, this, &CMainWindow::m_S_Leave);
}

QAction* CMainWindow::m_F_p_Action(const char* pszName) const
{
    return findChild<QAction*>(QString::fromLatin1(pszName), Qt::FindDirectChildrenOnly);
}

void CMainWindow::m_S_MakeMenus()
{
    for (const stDef_MenuRow& stRow : s_astMenus) {
        QMenu* const pMenu = menuBar()->addMenu(QString());
        pMenu->setObjectName(QString::fromLatin1(stRow.pszName));
        for (const char* const pszAction : stRow.arActions) {
            if (pszAction)
                pMenu->addAction(m_F_p_Action(pszAction));
            else
                pMenu->addSeparator();
        }
    }
    menuBar()
        ->findChild<QMenu*>(u"MenuView"_s)
        ->addActions({vm_pPtz->toggleViewAction(), vm_pDocuments->toggleViewAction()});
}

void CMainWindow::m_S_MakeToolBar()
{
    vm_pToolBar = addToolBar(QString());
    vm_pToolBar->setObjectName(u"Toolbar"_s);
    vm_pToolBar->setMovable(false);
    vm_pToolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    for (const char* const pszName : {"ConnectAll", "DisconnectAll", "Snapshot", "Settings"})
        vm_pToolBar->addAction(m_F_p_Action(pszName));
    vm_pToolBar->addAction(vm_pPtz->toggleViewAction());
    vm_pToolBar->addSeparator();
    vm_pToolBar->addActions(vm_pShapes->actions());
    vm_pToolBar->addSeparator();
    vm_pPages = new QLabel;
    vm_pPages->setObjectName(u"Pages"_s);
    vm_pPages->setContentsMargins(6, 0, 6, 0);
    vm_pToolBar->addAction(m_F_p_Action("PreviousPage"));
    vm_pToolBar->addWidget(vm_pPages);
    vm_pToolBar->addAction(m_F_p_Action("NextPage"));
    for (const char* const pszName : {"PreviousPage", "NextPage"})
        qobject_cast<QToolButton*>(vm_pToolBar->widgetForAction(m_F_p_Action(pszName)))
            ->setToolButtonStyle(Qt::ToolButtonIconOnly);
    vm_pToolBar->addSeparator();
    vm_pToolBar->addAction(m_F_p_Action("FullScreen"));
}

void CMainWindow::m_S_ConnectActions()
{
    const auto On = [this](const char* pszName, auto fnDo) {
        connect(m_F_p_Action(pszName), &QAction::triggered, this, fnDo);
    };
    On("Quit", [this] { close(); });
    On("FullScreen", [this](bool bOn) { m_S_SetFullScreen(bOn); });
    On("PreviousPage", [this] { vm_pGrid->m_S_SetPage(vm_pGrid->m_F_n_Page() - 1); });
    On("NextPage", [this] { vm_pGrid->m_S_SetPage(vm_pGrid->m_F_n_Page() + 1); });
    On("ConnectAll", [this] { vm_pGrid->m_S_ConnectAll(); });
    On("DisconnectAll", [this] { vm_pGrid->m_S_DisconnectAll(); });
    On("Snapshot", [this] { vm_pGrid->m_S_Snapshot(); });
    On("Exchange", [this] { m_S_AskAndExchange(); });
    On("Settings", [this] { m_S_RunCommand(m_F_n_Picked(), CWndNvrShared::Command_SystemSetting); });
    On("NvrMenu", [this] { m_S_ShowTreeMenu(m_F_n_Picked(), vm_pTree->m_F_o_MenuPoint()); });
    On("Shortcuts", [this] { m_S_ShowShortcuts(); });
    On("About", [this] { m_S_About(); });
    On("AddRecorder", [this] { m_S_AddRecorder(); });
    On("EditRecorder", [this] { m_S_EditRecorder(vm_pTree->m_F_n_CurrentRecorder()); });
    On("RemoveRecorder", [this] { m_S_RemoveRecorder(vm_pTree->m_F_n_CurrentRecorder()); });
    connect(vm_pShapes, &QActionGroup::triggered, this,
            [this](const QAction* pAction) { vm_pGrid->m_S_SetShape(pAction->data().toInt()); });
    connect(vm_pLanguages, &QActionGroup::triggered, this,
            [this](const QAction* pAction) { m_S_SetLanguage(pAction->data().toInt()); });
}

void CMainWindow::m_S_ConnectParts()
{
    connect(vm_pTree, &CRecorderTree::S_PlaceChannel, vm_pGrid, &CLiveGrid::m_S_Place);
    connect(vm_pTree, &CRecorderTree::S_ShowRecorder, vm_pGrid, &CLiveGrid::m_S_ShowRecorder);
    connect(vm_pTree, &CRecorderTree::S_Edit, this, &CMainWindow::m_S_EditRecorder);
    connect(vm_pTree, &CRecorderTree::S_Remove, this, &CMainWindow::m_S_RemoveRecorder);
    connect(vm_pTree, &CRecorderTree::S_MenuRequested, this, &CMainWindow::m_S_ShowTreeMenu);
    connect(vm_pTree, &CRecorderTree::S_CurrentChanged, this, &CMainWindow::m_S_UpdateActions);
    connect(vm_pGrid, &CLiveGrid::S_Changed, this, &CMainWindow::m_S_UpdateStates);
    connect(vm_pGrid, &CLiveGrid::S_LayoutChanged, this, &CMainWindow::m_S_UpdatePages);
    connect(vm_pGrid, &CLiveGrid::S_Snapshot, this, &CMainWindow::m_S_SaveSnapshot);
    connect(vm_pGrid, &CLiveGrid::S_Lost, &vm_objWatch, &CRecorderWatch::m_S_ProbeNow);
    connect(vm_pGrid, &CLiveGrid::S_AddressFound, &vm_objWatch, &CRecorderWatch::m_S_SetAddress);
    connect(&vm_objWatch, &CRecorderWatch::S_Back, vm_pGrid, &CLiveGrid::m_S_RetryNow);
    connect(&vm_objWatch, &CRecorderWatch::S_Changed, this, [this](int nNvrID) {
        vm_pTree->m_S_SetRecorderState(nNvrID, vm_objWatch.m_F_n_Reach(nNvrID), {});
        m_S_UpdateStates();
    });
    connect(statusBar(), &QStatusBar::messageChanged, this, [this](const QString& sText) {
        if (sText.isEmpty() && m_F_p_Action("FullScreen")->isChecked())
            statusBar()->hide();
    });
    connect(vm_pPtz, &CPtzPanel::S_SettingChanged, this, &CMainWindow::m_S_SaveSoon);
    vm_objSaveTimer.setSingleShot(true);
    connect(&vm_objSaveTimer, &QTimer::timeout, this, &CMainWindow::m_S_SaveLayout);
}

void CMainWindow::m_S_Retranslate()
{
    setWindowTitle(Tr(nsHost::AppTitle));
    vm_pTitle->setText(Tr(nsHost::Recorders));
    vm_pFirstSteps->setText(Tr(nsHost::FirstSteps));
    vm_pToolBar->setWindowTitle(Tr(nsHost::Toolbar));
    for (const stDef_ActionRow& stRow : s_astActions) {
        QAction* const pAction = m_F_p_Action(stRow.pszName);
        const QString sKey = pAction->shortcut().toString(QKeySequence::NativeText);
        pAction->setText(Tr(stRow.stText));
        pAction->setIconText(PlainText(Tr(stRow.stText)));
        pAction->setStatusTip(Tr(stRow.stTip));
        pAction->setToolTip(sKey.isEmpty() ? Tr(stRow.stTip) : u"%1 (%2)"_s.arg(Tr(stRow.stTip), sKey));
    }
    for (const stDef_MenuRow& stRow : s_astMenus)
        menuBar()->findChild<QMenu*>(QString::fromLatin1(stRow.pszName))->setTitle(Tr(stRow.stText));
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
    vm_nRecorders > 0 ? vm_pTree->setFocus() : vm_pView->currentWidget()->findChild<QToolButton*>()->setFocus();
    if (stLayout.bFullScreen)
        m_F_p_Action("FullScreen")->trigger();
    vm_pGrid->m_S_SetLayout(stLayout);
    vm_pPtz->m_S_SetSpeed(stLayout.nPtzSpeed);
    vm_pPtz->setVisible(stLayout.bPtzPanel);
    vm_bRestored = true;
}

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
        m_S_Tell(Tr(nsHost::LayoutLost).arg(vm_pEnv->m_F_s_GetConfigFolder()));
}

void CMainWindow::m_S_SetLanguage(int nLanguage)
{
    if (!vm_objLanguage.m_F_b_Set(nLanguage))
        m_S_Tell(Tr(nsHost::LanguageMissing));
    m_S_UpdatePages();
}

void CMainWindow::m_S_UpdatePages()
{
    const auto Check = [](const QActionGroup* pGroup, int nValue) {
        for (QAction* const pAction : pGroup->actions())
            pAction->setChecked(pAction->data().toInt() == nValue);
    };
    Check(vm_pShapes, vm_pGrid->m_F_n_Shape());
    Check(vm_pLanguages, vm_objLanguage.m_F_n_Language());
    vm_pPages->setText(Tr(nsHost::PageOf).arg(vm_pGrid->m_F_n_Page() + 1).arg(vm_pGrid->m_F_n_Pages()));
    m_F_p_Action("PreviousPage")->setEnabled(vm_pGrid->m_F_n_Page() > 0);
    m_F_p_Action("NextPage")->setEnabled(vm_pGrid->m_F_n_Page() + 1 < vm_pGrid->m_F_n_Pages());
    m_S_SaveSoon();
}

// What would do nothing can't be chosen, and says why.
void CMainWindow::m_S_UpdateActions()
{
    const int nNvrID = m_F_n_Picked();
    for (const char* const pszName : {"EditRecorder", "RemoveRecorder", "NvrMenu", "Exchange"})
        m_F_p_Action(pszName)->setEnabled(nNvrID >= 0);
    for (const char* const pszName : {"ConnectAll", "DisconnectAll", "Snapshot"})
        m_F_p_Action(pszName)->setEnabled(vm_nRecorders > 0);
    const QList<stDef_MenuItem> arCommands = m_F_ar_Commands(nNvrID);
    const bool bSettings = std::any_of(arCommands.begin(), arCommands.end(), [](const stDef_MenuItem& stItem) {
        return stItem.nId == CWndNvrShared::Command_SystemSetting && stItem.bWorks;
    });
    QAction* const pSettings = m_F_p_Action("Settings");
    pSettings->setEnabled(bSettings);
    const QString sTip = Tr(bSettings || nNvrID < 0 ? nsHost::SettingsTip : nsHost::SettingsNone);
    pSettings->setToolTip(sTip);
    pSettings->setStatusTip(sTip);
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
    for (QWidget* const pWidget : {static_cast<QWidget*>(menuBar()), static_cast<QWidget*>(vm_pToolBar), vm_pSide,
                                   static_cast<QWidget*>(statusBar())})
        pWidget->setVisible(!bOn);
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

int CMainWindow::m_F_n_Picked() const
{
    const int nTree = vm_pTree->m_F_n_CurrentRecorder();
    return nTree >= 0 ? nTree : vm_pGrid->m_F_p_Current()->m_F_o_Key().nNvrID;
}

void CMainWindow::m_S_UpdateRecorders()
{
    const QList<stDef_Recorder> arRecorders = vm_pStore->m_F_ar_Recorders();
    vm_nRecorders = static_cast<int>(arRecorders.size());
    vm_objNames.m_S_SetRecorders(arRecorders);
    vm_pTree->m_S_SetRecorders(arRecorders);
    vm_objWatch.m_S_SetRecorders(arRecorders);
    vm_pLogin->m_S_Refresh();
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
    vm_pFilter->clear(); // it might hide the new one
    vm_pTree->m_S_Select(objDialog.m_F_n_NvrID());
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
    m_S_Tell(stResult.m_F_s_Text());
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

// Those of the recorder's own menu, in its language; also where its entry is not usable.
QList<stDef_MenuItem> CMainWindow::m_F_ar_Commands(int nNvrID) const
{
    const CNvrHolder objNvr(CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(nNvrID, nullptr, vm_pEnv));
    if (!objNvr.m_F_p_Get())
        return {};
    stDef_NvrInit stInit = vm_pStore->m_F_o_InitRecord(nNvrID);
    stInit.bDips = false; // no look-up for a list of words
    objNvr.m_F_p_Get()->m_F_n_Init(stInit);
    return objNvr.m_F_p_Get()->m_F_ar_MenuItems();
}

// A command leads to setting windows; the object lives until those are closed. Their titles don't tell whose they are.
void CMainWindow::m_S_RunCommand(int nNvrID, int nCommand)
{
    const CNvrHolder objNvr(CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(nNvrID, this, vm_pEnv));
    if (!objNvr.m_F_p_Get() || objNvr.m_F_p_Get()->m_F_n_Init(vm_pStore->m_F_o_InitRecord(nNvrID)) != 1) {
        m_S_Tell(Tr(nsHost::HintUnusable));
        return;
    }
    statusBar()->show();
    vm_pSheetOf->setText(Tr(nsHost::SettingsOpen).arg(vm_pStore->m_F_o_Form(nNvrID).sName));
    vm_pNotTaken->clear();
    connect(objNvr.m_F_p_Get(), &CWndNvrBase::S_NotTaken, this, [this, nNvrID](const QString& sText) {
        vm_pNotTaken->setText(vm_pStore->m_F_o_Form(nNvrID).sName + u": "_s + sText);
    });
    objNvr.m_F_p_Get()->m_S_OnCommand(nCommand);
    vm_pSheetOf->clear();
    vm_objNames.m_S_AskAgain(nNvrID);
    statusBar()->setVisible(!m_F_p_Action("FullScreen")->isChecked());
}

// The recorder's own commands, then the host's.
void CMainWindow::m_S_ShowTreeMenu(int nNvrID, const QPoint& ptGlobal)
{
    QMenu objMenu(this);
    objMenu.setObjectName(u"RecorderMenu"_s);
    for (const stDef_MenuItem& stItem : m_F_ar_Commands(nNvrID)) {
        QAction* const pItem =
            objMenu.addAction(stItem.bWorks ? stItem.sText : Tr(nsHost::CommandMissing).arg(stItem.sText));
        pItem->setEnabled(stItem.bWorks);
        pItem->setData(stItem.nId);
    }
    objMenu.addSeparator();
    if (nNvrID >= 0)
        connect(objMenu.addAction(Tr(nsHost::ShowRecorder)), &QAction::triggered, vm_pGrid,
                [this, nNvrID] { vm_pGrid->m_S_ShowRecorder(nNvrID); });
    objMenu.addAction(m_F_p_Action("AddRecorder"));
    if (nNvrID >= 0)
        objMenu.addActions({m_F_p_Action("EditRecorder"), m_F_p_Action("RemoveRecorder"), m_F_p_Action("Exchange")});
    const QAction* const pChosen = objMenu.exec(ptGlobal);
    if (pChosen && pChosen->data().isValid()) // a number is what the recorder's own have
        m_S_RunCommand(nNvrID, pChosen->data().toInt());
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
    if (nNvrID < 0)
        return;
    vm_pDocuments->show();
    vm_arDocuments.clear();
    const QString sName = vm_pStore->m_F_o_Form(nNvrID).sName;
    const CNvrHolder objNvr(CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(nNvrID, this, vm_pEnv));
    if (!objNvr.m_F_p_Get() || objNvr.m_F_p_Get()->m_F_n_Init(vm_pStore->m_F_o_InitRecord(nNvrID)) != 1) {
        vm_pDocuments->m_S_ShowSummary(u"%1: %2"_s.arg(sName, Tr(nsHost::HintUnusable)));
        return;
    }
    QElapsedTimer objClock;
    objClock.start();
    vm_arDocuments = CDocumentRunner::s_F_ar_Run(
        *objNvr.m_F_p_Get(), [this](const auto& arResults) { vm_pDocuments->m_S_ShowResults(arResults); });
    const auto nFailed = std::count_if(vm_arDocuments.begin(), vm_arDocuments.end(),
                                       [](const stDef_DocumentResult& stResult) { return !stResult.m_F_b_Ok(); });
    vm_pDocuments->m_S_ShowSummary(nFailed == 0
                                       ? Tr(nsHost::ExchangeDone).arg(sName).arg(objClock.elapsed())
                                       : Tr(nsHost::ExchangeFailed).arg(sName).arg(nFailed).arg(vm_arDocuments.size()));
}

// In full screen the bar comes for as long as it has something to say.
void CMainWindow::m_S_Tell(const QString& sText)
{
    statusBar()->show();
    statusBar()->showMessage(sText, MessageMs);
}

void CMainWindow::m_S_SaveSnapshot(const QImage& objImage, const QString& sTitle)
{
    if (objImage.isNull()) {
        m_S_Tell(Tr(nsHost::SnapshotNone));
        return;
    }
    const QString sFile =
        CSnapshot::s_F_s_Save(objImage, vm_sPictureFolder, sTitle, CUserSide::s_F_o_Get().m_F_o_Now());
    m_S_Tell(sFile.isEmpty() ? Tr(nsHost::SnapshotFailed).arg(vm_sPictureFolder)
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

// The states of what is on the page go into the tree; rows that left the page are quiet again.
void CMainWindow::m_S_UpdateStates()
{
    struct stDef_Count
    {
        int nLive = 0;
        int nAll = 0;
    };
    std::map<int, stDef_Count> mapCounts;
    for (const stDef_ChannelKey& stKey : vm_arShown)
        mapCounts[stKey.nNvrID] = {};
    std::vector<stDef_ChannelKey> arShown;
    for (const CLiveCell* const pCell : vm_pGrid->m_F_ar_Cells()) {
        const stDef_ChannelKey& stKey = pCell->m_F_o_Key();
        if (stKey.nNvrID < 0)
            continue;
        arShown.push_back(stKey);
        ++mapCounts[stKey.nNvrID].nAll;
        mapCounts[stKey.nNvrID].nLive += pCell->m_F_n_State() == emDef_LiveState::Live ? 1 : 0;
        vm_pTree->m_S_SetChannelState(stKey, pCell->m_F_n_State());
    }
    for (const stDef_ChannelKey& stKey : vm_arShown) {
        if (std::find(arShown.begin(), arShown.end(), stKey) == arShown.end())
            vm_pTree->m_S_SetChannelState(stKey, emDef_LiveState::Idle);
    }
    for (const auto& [nNvrID, stCount] : mapCounts) {
        const QString sText =
            stCount.nLive > 0 ? Tr(nsHost::RecorderLive).arg(stCount.nLive).arg(stCount.nAll) : QString();
        vm_pTree->m_S_SetRecorderState(nNvrID, vm_objWatch.m_F_n_Reach(nNvrID), sText);
    }
    vm_arShown = arShown;
    const stDef_GridTotals stTotals = vm_pGrid->m_F_o_Totals();
    const QStringList arParts = {
        Tr(nsHost::TotalRecorders).arg(vm_nRecorders),
        Tr(nsHost::TotalLive).arg(stTotals.nLive).arg(stTotals.nChannels),
        Tr(nsHost::TotalFrames).arg(stTotals.nRate, 0, 'f', 1),
    };
    vm_pTotals->setText(arParts.join(g_sTotalsGap));
}
