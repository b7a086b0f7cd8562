#include "ptz/CPtzPanel.h"

#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QToolButton>
#include <QVBoxLayout>
#include <array>
#include <utility>

#include "live/CLiveGrid.h"
#include "ptz/CPtzPad.h"
#include "recorders/CNvrQuery.h"
#include "recorders/CRecorderStore.h"
#include "recorders/CRecorderWatch.h"
#include "window/CHostIcon.h"
#include "window/HostTexts.h"

using namespace Qt::StringLiterals;

namespace {

// Whatever can hold a movement has a number: one that is let go doesn't end what another holds. Keys have theirs.
constexpr int PadSource = 1;
constexpr int ButtonSources = 2; // the first of them
constexpr int AskDelayMs = 200;  // a mark that moves on by key asks only where it comes to rest

struct stDef_ResultRow
{
    int nResult;
    stDef_Text stText;
};

constexpr stDef_ResultRow g_astResults[] = {
    {CHTTP::Result_TimedOut, {"PtzSilent", "The recorder did not answer the last command."}},
    {CHTTP::Result_Unreachable, nsHost::PtzAway},
    {CHTTP::Result_Unauthorised, {"PtzAccount", "The recorder refused the account."}},
    {CHTTP::Result_ErrorStatus, {"PtzRefused", "The recorder refused the last command."}},
    {CHTTP::Result_BadArgument, nsHost::HintUnusable},
};

struct stDef_Face
{
    const char* pszAction;
    emDef_HostIcon nIcon;
};

// Buttons that have a sign; the others have a word.
constexpr stDef_Face g_astFaces[] = {
    {"ZoomOut", emDef_HostIcon::Minus},      {"ZoomIn", emDef_HostIcon::Plus},
    {"FocusDown", emDef_HostIcon::Minus},    {"FocusUp", emDef_HostIcon::Plus},
    {"IrisDown", emDef_HostIcon::Minus},     {"IrisUp", emDef_HostIcon::Plus},
    {"AutoPanOn", emDef_HostIcon::Connect},  {"AutoPanOff", emDef_HostIcon::Disconnect},
    {"PresetGo", emDef_HostIcon::Connect},   {"TourOn", emDef_HostIcon::Connect},
    {"TourOff", emDef_HostIcon::Disconnect},
};

bool IsPlaying(const CLiveCell& objCell)
{
    const emDef_LiveState nState = objCell.m_F_n_State();
    return objCell.m_F_b_KeepsPicture() || nState == emDef_LiveState::Live || nState == emDef_LiveState::Waiting ||
           nState == emDef_LiveState::Stalled;
}

void FillPlaces(QComboBox& objPlaces, const QStringList& arNames, stDef_Text stUnnamed)
{
    const int nPicked = objPlaces.currentIndex();
    objPlaces.clear();
    for (qsizetype i = 0; i < arNames.size(); ++i) {
        const QString sName = arNames[i].trimmed();
        objPlaces.addItem(u"%1  %2"_s.arg(i + 1).arg(sName.isEmpty() ? Tr(stUnnamed).arg(i + 1) : sName));
    }
    if (nPicked > 0 && nPicked < arNames.size())
        objPlaces.setCurrentIndex(nPicked);
}

} // namespace

CPtzPanel::CPtzPanel(CEnvObj* pEnv, const CRecorderStore* pStore, CLiveGrid* pGrid, const CRecorderWatch* pWatch,
                     QWidget* pParent)
    : QDockWidget(pParent),
      vm_pEnv(pEnv),
      vm_pStore(pStore),
      vm_pGrid(pGrid),
      vm_pWatch(pWatch),
      vm_objDriver(pEnv, pStore)
{
    setObjectName(u"PtzPanel"_s);
    setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea);
    m_S_Build();
    m_S_Connect();
    m_S_Retranslate();
    m_S_SetSpeed(vm_objDriver.m_F_n_Speed());
    m_S_SetReady(false);
}

CPtzPanel::~CPtzPanel()
{
    vm_objDriver.disconnect(this);
    vm_pKeys.reset(); // the focus leaves the parts as they go
}

// --- parts

void CPtzPanel::m_S_Build()
{
    auto* const pBody = new QWidget;
    auto* const pLayout = new QVBoxLayout(pBody);
    vm_pCamera = new QLabel;
    vm_pCamera->setObjectName(u"PtzCamera"_s);
    vm_pCamera->setWordWrap(true);
    vm_pCamera->setTextFormat(Qt::PlainText);
    QFont objBold = vm_pCamera->font();
    objBold.setBold(true);
    vm_pCamera->setFont(objBold);
    vm_pControls = m_F_p_Controls();
    vm_pLine = new QLabel;
    vm_pLine->setObjectName(u"PtzLine"_s);
    vm_pLine->setWordWrap(true);
    vm_pLine->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    vm_pLine->setMinimumHeight(3 * fontMetrics().lineSpacing()); // nothing above it moves with what it says
    pLayout->addWidget(vm_pCamera);
    pLayout->addWidget(vm_pControls);
    pLayout->addWidget(vm_pLine);
    pLayout->addStretch(1);
    vm_pScroll = new QScrollArea; // a low window doesn't grow for the panel
    vm_pScroll->setFrameShape(QFrame::NoFrame);
    vm_pScroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    vm_pScroll->setWidgetResizable(true);
    vm_pScroll->setFocusPolicy(Qt::NoFocus);
    vm_pScroll->setWidget(pBody);
    setWidget(vm_pScroll);
}

QWidget* CPtzPanel::m_F_p_Controls()
{
    auto* const pPart = new QWidget;
    auto* const pControls = new QVBoxLayout(pPart);
    pControls->setContentsMargins(0, 0, 0, 0);
    vm_pPad = new CPtzPad;
    pControls->addWidget(vm_pPad);
    pControls->addWidget(m_F_p_SpeedRow());
    auto* const pGrid = new QGridLayout;
    pGrid->setColumnStretch(0, 1);
    m_S_AddRow(*pGrid, nsHost::PtzZoom, {"ZoomOut", "ZoomIn"});
    m_S_AddRow(*pGrid, nsHost::PtzFocus, {"FocusDown", "FocusUp", "AutoFocus"});
    m_S_AddRow(*pGrid, nsHost::PtzIris, {"IrisDown", "IrisUp", "AutoIris"});
    m_S_AddRow(*pGrid, nsHost::PtzAutoPan, {"AutoPanOn", "AutoPanOff"});
    pControls->addLayout(pGrid);
    vm_pPresets = new QComboBox;
    vm_pPresets->setObjectName(u"PtzPresets"_s);
    m_S_AddPlaces(*pControls, vm_pPresets, nsHost::PtzPresets, {"PresetGo"});
    vm_pTours = new QComboBox;
    vm_pTours->setObjectName(u"PtzTours"_s);
    m_S_AddPlaces(*pControls, vm_pTours, nsHost::PtzTours, {"TourOn", "TourOff"});
    return pPart;
}

QLabel* CPtzPanel::m_F_p_Label(stDef_Text stText)
{
    auto* const pLabel = new QLabel;
    vm_arLabels.append({pLabel, stText});
    return pLabel;
}

QWidget* CPtzPanel::m_F_p_SpeedRow()
{
    auto* const pRow = new QWidget;
    auto* const pLayout = new QHBoxLayout(pRow);
    pLayout->setContentsMargins(0, 0, 0, 0);
    vm_pSpeed = new QSlider(Qt::Horizontal);
    vm_pSpeed->setObjectName(u"PtzSpeed"_s);
    vm_pSpeed->setRange(1, CPtzDriver::MaxSpeed);
    vm_pSpeed->setPageStep(2);
    vm_pSpeedValue = new QLabel;
    vm_pSpeedValue->setMinimumWidth(fontMetrics().horizontalAdvance(u"00"_s));
    vm_pSpeedValue->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    pLayout->addWidget(m_F_p_Label(nsHost::PtzSpeed));
    pLayout->addWidget(vm_pSpeed, 1);
    pLayout->addWidget(vm_pSpeedValue);
    return pRow;
}

QAbstractButton* CPtzPanel::m_F_p_Button(const char* pszAction)
{
    auto* const pButton = new QToolButton;
    pButton->setObjectName(u"Ptz"_s + QString::fromLatin1(pszAction));
    for (const stDef_Face& stFace : g_astFaces) {
        if (QByteArray(stFace.pszAction) == pszAction)
            pButton->setIcon(CHostIcon::s_F_o_Get(stFace.nIcon));
    }
    pButton->setMinimumSize(34, 28);
    pButton->setSizePolicy(QSizePolicy::MinimumExpanding, QSizePolicy::Fixed);
    vm_arButtons.append({pButton, CPtzAction::s_F_p_Named(pszAction)});
    return pButton;
}

void CPtzPanel::m_S_AddRow(QGridLayout& objGrid, stDef_Text stText, std::initializer_list<const char*> arActions)
{
    const int nRow = objGrid.rowCount();
    objGrid.addWidget(m_F_p_Label(stText), nRow, 0);
    for (int nColumn = 1; const char* const pszAction : arActions)
        objGrid.addWidget(m_F_p_Button(pszAction), nRow, nColumn++);
}

void CPtzPanel::m_S_AddPlaces(QBoxLayout& objLayout, QComboBox* pPlaces, stDef_Text stText,
                              std::initializer_list<const char*> arActions)
{
    QLabel* const pLabel = m_F_p_Label(stText);
    pLabel->setBuddy(pPlaces);
    objLayout.addWidget(pLabel);
    auto* const pLine = new QHBoxLayout;
    pPlaces->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    pPlaces->setMinimumContentsLength(8);
    pLine->addWidget(pPlaces, 1);
    for (const char* const pszAction : arActions) {
        QAbstractButton* const pButton = m_F_p_Button(pszAction);
        pButton->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
        pLine->addWidget(pButton);
    }
    objLayout.addLayout(pLine);
}

void CPtzPanel::m_S_Connect()
{
    connect(vm_pPad, &CPtzPad::S_Direction, this, [this](int nPan, int nTilt) {
        if (nPan == 0 && nTilt == 0)
            vm_objDriver.m_S_Let(PadSource);
        else
            vm_objDriver.m_S_Hold(PadSource, *CPtzAction::s_F_p_OfDirection(nPan, nTilt));
    });
    connect(vm_pPad, &CPtzPad::S_Home, this, [this] { m_S_Do(*CPtzAction::s_F_p_OfDirection(0, 0), 0); });
    for (int nButton = 0; nButton < vm_arButtons.size(); ++nButton)
        m_S_ConnectButton(nButton);
    connect(vm_pSpeed, &QSlider::valueChanged, this, &CPtzPanel::m_S_SetSpeed);
    m_S_ConnectKeys();
    connect(&vm_objDriver, &CPtzDriver::S_Moved, this,
            [this] { vm_pPad->m_S_SetLit(vm_objDriver.m_F_n_Pan(), vm_objDriver.m_F_n_Tilt()); });
    connect(&vm_objDriver, &CPtzDriver::S_Result, this, [this](int nResult) {
        vm_nResult = nResult;
        m_S_UpdateLine();
    });
    vm_objAskSoon.setSingleShot(true);
    vm_objAskSoon.setInterval(AskDelayMs);
    connect(&vm_objAskSoon, &QTimer::timeout, this, &CPtzPanel::m_S_AskPlaces);
    connect(vm_pGrid, &CLiveGrid::S_Changed, this, &CPtzPanel::m_S_Follow);
    connect(vm_pGrid, &CLiveGrid::S_LayoutChanged, this, [this] {
        vm_objDriver.m_S_Renew(); // perhaps the recorder was edited
        m_S_Follow();
    });
    connect(vm_pGrid, &CLiveGrid::S_AddressFound, &vm_objDriver, &CPtzDriver::m_S_Renew);
    connect(vm_pWatch, &CRecorderWatch::S_Changed, this, &CPtzPanel::m_S_Follow);
}

// A movement lasts as long as its button is down; the rest is done at its release, as buttons do.
void CPtzPanel::m_S_ConnectButton(int nButton)
{
    const auto [pButton, pAction] = vm_arButtons[nButton];
    const int nSource = ButtonSources + nButton;
    if (pAction->nKind == emDef_PtzKind::Hold) {
        connect(pButton, &QAbstractButton::pressed, this,
                [this, nSource, pAction = pAction] { vm_objDriver.m_S_Hold(nSource, *pAction); });
        connect(pButton, &QAbstractButton::released, this, [this, nSource] { vm_objDriver.m_S_Let(nSource); });
    } else {
        connect(pButton, &QAbstractButton::clicked, this, [this, pAction = pAction] { m_S_Do(*pAction, 0); });
    }
}

void CPtzPanel::m_S_ConnectKeys()
{
    vm_pKeys = std::make_unique<CPtzKeys>(vm_pPad, [this](const QWidget* pWidget) { return m_F_b_Acts(pWidget); });
    connect(vm_pKeys.get(), &CPtzKeys::S_Pressed, this,
            [this](int nSource, const stDef_PtzAction* pAction, int nDigit) {
                if (pAction->nKind == emDef_PtzKind::Hold)
                    vm_objDriver.m_S_Hold(nSource, *pAction);
                else
                    m_S_Do(*pAction, nDigit);
            });
    connect(vm_pKeys.get(), &CPtzKeys::S_Released, &vm_objDriver, &CPtzDriver::m_S_Let);
    connect(vm_pKeys.get(), &CPtzKeys::S_Lost, this, &CPtzPanel::m_S_StopAll);
}

void CPtzPanel::m_S_Retranslate()
{
    for (const auto& [pLabel, stText] : vm_arLabels)
        pLabel->setText(Tr(stText));
    for (const auto& [pButton, pAction] : vm_arButtons) {
        pButton->setToolTip(CPtzAction::s_F_s_Tip(*pAction));
        pButton->setAccessibleName(Tr(pAction->stText));
        if (pButton->icon().isNull())
            pButton->setText(Tr(nsHost::PtzAuto));
    }
    vm_pPad->setAccessibleName(Tr(nsHost::PtzPad));
    vm_pPad->setAccessibleDescription(Tr(nsHost::PtzHint));
    vm_pSpeed->setAccessibleName(Tr(nsHost::PtzSpeed));
    vm_pSpeed->setToolTip(CPtzAction::s_F_s_Tip(*CPtzAction::s_F_p_Named("Slower")) + u'\n' +
                          CPtzAction::s_F_s_Tip(*CPtzAction::s_F_p_Named("Faster")));
    vm_pPresets->setAccessibleName(Tr(nsHost::PtzPresets));
    vm_pPresets->setToolTip(CPtzAction::s_F_s_Tip(*CPtzAction::s_F_p_Named("PresetKeys")));
    vm_pTours->setAccessibleName(Tr(nsHost::PtzTours));
    m_S_ShowPlaces();
    m_S_UpdateLine();
    vm_pScroll->setMinimumWidth(vm_pScroll->widget()->minimumSizeHint().width() +
                                vm_pScroll->verticalScrollBar()->sizeHint().width());
}

void CPtzPanel::changeEvent(QEvent* pEvent)
{
    QDockWidget::changeEvent(pEvent);
    if (pEvent->type() == QEvent::LanguageChange)
        m_S_Retranslate();
}

// --- the camera that is driven

void CPtzPanel::hideEvent(QHideEvent* pEvent)
{
    QDockWidget::hideEvent(pEvent);
    m_S_Follow();
    Q_EMIT S_SettingChanged();
}

void CPtzPanel::showEvent(QShowEvent* pEvent)
{
    QDockWidget::showEvent(pEvent);
    m_S_Follow();
    Q_EMIT S_SettingChanged();
}

// Comes with every move of the mark, of a state, of a page and of a recorder's reach. The camera that was driven is
// stopped before the driver turns to another: afterwards nobody would send its stop.
void CPtzPanel::m_S_Follow()
{
    const CLiveCell& objCell = *vm_pGrid->m_F_p_Current();
    const stDef_ChannelKey stKey = isVisible() ? objCell.m_F_o_Key() : stDef_ChannelKey();
    if (stKey != vm_objDriver.m_F_o_Channel()) {
        m_S_StopAll();
        vm_objDriver.m_S_SetChannel(stKey);
        m_S_SetReady(false);
        vm_nResult = 0;
    }
    const bool bAway = vm_pWatch->m_F_n_Reach(stKey.nNvrID) == emDef_Reach::Away;
    m_S_SetReady(stKey.nNvrID >= 0 && !bAway && IsPlaying(objCell));
    vm_pCamera->setText(stKey.nNvrID >= 0 ? objCell.m_F_s_Title() : u"\u2013"_s);
    m_S_UpdateLine();
}

// Presets and tours are asked for once a picture plays: a recorder that only seems to be there would keep the answer
// waiting, and the lists with it.
void CPtzPanel::m_S_SetReady(bool bReady)
{
    if (!bReady && std::exchange(vm_bReady, false)) {
        m_S_StopAll();
        vm_objDriver.m_S_Renew(); // when it is back, nothing waits for what hangs now
        vm_pQuery.reset();
        vm_objAskSoon.stop();
        m_S_TakePlaces({}, {});
        vm_bPlaces = false;
    } else if (bReady && !std::exchange(vm_bReady, true)) {
        vm_objAskSoon.start();
    }
    vm_pControls->setEnabled(vm_bReady);
    vm_pKeys->m_S_SetEnabled(vm_bReady);
}

void CPtzPanel::m_S_AskPlaces()
{
    const stDef_ChannelKey stKey = vm_objDriver.m_F_o_Channel();
    if (stKey.nNvrID < 0)
        return;
    // The query fills lists of its own: the panel may follow another camera, or be gone, before the answer comes.
    const auto pLists = std::make_shared<std::array<QStringList, 2>>();
    const auto Ask = [pLists, nCamera = stKey.nChannel](CWndNvrBase& objNvr) {
        objNvr.m_S_GetPTZData(nsCMS::PtzList_Presets, nCamera, &(*pLists)[0]);
        objNvr.m_S_GetPTZData(nsCMS::PtzList_Tours, nCamera, &(*pLists)[1]);
    };
    vm_pQuery = std::make_unique<CNvrQuery>(vm_pEnv, vm_pStore->m_F_o_InitRecord(stKey.nNvrID), Ask);
    connect(vm_pQuery.get(), &CNvrQuery::S_Done, this, [this, pLists] { m_S_TakePlaces((*pLists)[0], (*pLists)[1]); });
}

void CPtzPanel::m_S_TakePlaces(const QStringList& arPresets, const QStringList& arTours)
{
    vm_arPresets = arPresets;
    vm_arTours = arTours;
    vm_bPlaces = true;
    vm_pPresets->setCurrentIndex(-1); // what was picked was another camera's
    vm_pTours->setCurrentIndex(-1);
    m_S_ShowPlaces();
    m_S_UpdateLine();
}

void CPtzPanel::m_S_ShowPlaces()
{
    FillPlaces(*vm_pPresets, vm_arPresets, nsHost::PtzPresetNumber);
    FillPlaces(*vm_pTours, vm_arTours, nsHost::PtzTourNumber);
    vm_pPresets->setEnabled(!vm_arPresets.isEmpty());
    vm_pTours->setEnabled(!vm_arTours.isEmpty());
    for (const auto& [pButton, pAction] : vm_arButtons) {
        if (pAction->nKind == emDef_PtzKind::Preset)
            pButton->setEnabled(!vm_arPresets.isEmpty());
        else if (pAction->nKind == emDef_PtzKind::Tour)
            pButton->setEnabled(!vm_arTours.isEmpty());
    }
}

// --- commands

void CPtzPanel::m_S_SetSpeed(int nSpeed)
{
    vm_objDriver.m_S_SetSpeed(nSpeed);
    vm_pSpeed->setValue(vm_objDriver.m_F_n_Speed());
    vm_pSpeedValue->setText(QString::number(vm_objDriver.m_F_n_Speed()));
    Q_EMIT S_SettingChanged();
}

void CPtzPanel::m_S_Do(const stDef_PtzAction& stAction, int nDigit)
{
    switch (stAction.nKind) {
    case emDef_PtzKind::Hold:
        return;
    case emDef_PtzKind::Once:
        return vm_objDriver.m_S_Once(stAction.nCmd);
    case emDef_PtzKind::Speed:
        return m_S_SetSpeed(vm_objDriver.m_F_n_Speed() + stAction.nPan);
    case emDef_PtzKind::PresetKey:
        if (nDigit > vm_arPresets.size())
            return;
        vm_pPresets->setCurrentIndex(nDigit - 1);
        [[fallthrough]];
    case emDef_PtzKind::Preset:
        if (vm_pPresets->currentIndex() >= 0)
            vm_objDriver.m_S_Once(stAction.nCmd, vm_pPresets->currentIndex());
        return;
    case emDef_PtzKind::Tour:
        if (vm_pTours->currentIndex() >= 0)
            vm_objDriver.m_S_Once(stAction.nCmd, vm_pTours->currentIndex());
        return;
    }
}

// Keys and pad forget what they hold, so that a late release or a repeated key says nothing any more.
void CPtzPanel::m_S_StopAll()
{
    vm_objDriver.m_S_StopAll();
    vm_pPad->m_S_Reset();
    vm_pKeys->m_S_Forget();
}

bool CPtzPanel::m_F_b_Acts(const QWidget* pWidget) const
{
    return isAncestorOf(pWidget) || vm_pGrid->isAncestorOf(pWidget);
}

// --- what it says

void CPtzPanel::m_S_UpdateLine()
{
    const QString sLine = m_F_s_Line();
    if (vm_pLine->text() != sLine)
        vm_pLine->setText(sLine);
}

// From the outside in: no camera, no recorder, no picture, then what became of the last command.
QString CPtzPanel::m_F_s_Line() const
{
    const stDef_ChannelKey stKey = vm_objDriver.m_F_o_Channel();
    if (stKey.nNvrID < 0)
        return Tr(nsHost::PtzNoChannel);
    if (vm_pWatch->m_F_n_Reach(stKey.nNvrID) == emDef_Reach::Away)
        return Tr(nsHost::PtzAway);
    if (!vm_bReady)
        return Tr(nsHost::PtzNotLive).arg(CLiveState::s_F_s_Text(vm_pGrid->m_F_p_Current()->m_F_n_State()));
    if (vm_nResult < 0) {
        for (const stDef_ResultRow& stRow : g_astResults) {
            if (stRow.nResult == vm_nResult)
                return Tr(stRow.stText);
        }
        return Tr(nsHost::PtzFailed);
    }
    if (!vm_bPlaces)
        return Tr(nsHost::PtzAsking);
    return Tr(vm_arPresets.isEmpty() && vm_arTours.isEmpty() ? nsHost::PtzNoPlaces : nsHost::PtzHint);
}
