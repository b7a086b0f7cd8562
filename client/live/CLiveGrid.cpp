#include "live/CLiveGrid.h"

#include <QEvent>
#include <algorithm>
#include <cmath>
#include <utility>

#include "recorders/CCameraNames.h"
#include "recorders/CRecorderStore.h"
#include "window/HostTexts.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int Margin = 8;
constexpr int MostDefaultSlots = 64;

int Side(int nShape)
{
    return static_cast<int>(std::lround(std::sqrt(nShape)));
}

bool IsEmpty(const stDef_ChannelKey& stKey)
{
    return stKey.nNvrID < 0;
}

} // namespace

CLiveGrid::CLiveGrid(CEnvObj* pEnv, const CRecorderStore* pStore, CCameraNames* pNames, QWidget* pParent)
    : QWidget(pParent),
      vm_pEnv(pEnv),
      vm_pStore(pStore),
      vm_pNames(pNames),
      vm_arRecorders(pStore->m_F_ar_Recorders()),
      vm_pResolver(new CDipsResolver(pEnv, this))
{
    for (int i = 0; i < MaxShape; ++i)
        vm_arCells.append(m_F_p_MakeCell(i));
    setAccessibleName(Tr(nsHost::LiveGrid));
    setMinimumSize(320, 200);
    connect(vm_pResolver, &CDipsResolver::S_Resolved, this, &CLiveGrid::m_S_OnResolved);
    connect(pNames, &CCameraNames::S_Changed, this, [this](int nNvrID) { m_S_Retitle(m_F_ar_CellsOf(nNvrID)); });
    connect(&vm_objTimer, &QTimer::timeout, this, &CLiveGrid::m_S_PollAll);
    vm_objTimer.start(PollMs);
    m_S_LayOut();
}

CLiveCell* CLiveGrid::m_F_p_MakeCell(int nNumber)
{
    auto* const pCell = new CLiveCell(this);
    pCell->setObjectName(u"Cell%1"_s.arg(nNumber));
    connect(pCell, &CLiveCell::S_StateChanged, this, &CLiveGrid::S_Changed);
    connect(pCell, &CLiveCell::S_Focused, this,
            [this, pCell] { m_S_SetCurrent(static_cast<int>(vm_arCells.indexOf(pCell))); });
    connect(pCell, &CLiveCell::S_Enlarge, this, &CLiveGrid::m_S_ToggleEnlarged);
    connect(pCell, &CLiveCell::S_Move, this, &CLiveGrid::m_S_Move);
    connect(pCell, &CLiveCell::S_Empty, this, [this] {
        m_S_SetSlot(vm_nPage * vm_nShape + vm_nCurrent, {});
        m_S_Arrange();
    });
    connect(pCell, &CLiveCell::S_Dropped, this,
            [this, pCell](const QList<stDef_ChannelKey>& arKeys) { m_S_Drop(pCell, arKeys); });
    connect(pCell, &CLiveCell::S_Snapshot, this,
            [this, pCell](const QImage& objImage) { Q_EMIT S_Snapshot(objImage, pCell->m_F_s_Title()); });
    connect(pCell, &CLiveCell::S_Lost, this, &CLiveGrid::m_S_OnLost);
    return pCell;
}

CLiveGrid::~CLiveGrid()
{
    for (CLiveCell* const pCell : vm_arCells) {
        disconnect(pCell, nullptr, this, nullptr);
        pCell->m_S_RequestStop();
    }
    for (CLiveCell* const pCell : vm_arCells)
        pCell->m_S_Clear(); // before the window goes that the connection objects are children of
}

const stDef_Recorder* CLiveGrid::m_F_p_Recorder(int nNvrID) const
{
    const auto pFound = std::find_if(vm_arRecorders.begin(), vm_arRecorders.end(),
                                     [nNvrID](const stDef_Recorder& st) { return st.nNvrID == nNvrID; });
    return pFound == vm_arRecorders.end() ? nullptr : &*pFound;
}

// --- slots

std::vector<stDef_ChannelKey> CLiveGrid::m_F_ar_DefaultSlots() const
{
    std::vector<stDef_ChannelKey> arSlots;
    for (const stDef_Recorder& stRecorder : vm_arRecorders) {
        for (int nChannel = 0; nChannel < stRecorder.nChannels && arSlots.size() < MostDefaultSlots; ++nChannel)
            arSlots.push_back({stRecorder.nNvrID, nChannel});
    }
    return arSlots;
}

void CLiveGrid::m_S_SetLayout(const stDef_Layout& stLayout)
{
    vm_nShape = stLayout.nShape;
    vm_arSlots.clear();
    for (const stDef_ChannelKey& stKey : stLayout.arSlots)
        vm_arSlots.push_back(m_F_n_FindSlot(stKey) < 0 ? stKey : stDef_ChannelKey());
    m_S_EmptySlots([this](const stDef_ChannelKey& stKey) {
        const stDef_Recorder* const pRecorder = m_F_p_Recorder(stKey.nNvrID);
        return !pRecorder || stKey.nChannel >= pRecorder->nChannels;
    });
    vm_nPage = std::clamp(stLayout.nPage, 0, m_F_n_Pages() - 1);
    m_S_Arrange();
}

void CLiveGrid::m_S_GetLayout(stDef_Layout& stLayout) const
{
    stLayout.nShape = vm_nShape;
    stLayout.nPage = vm_nPage;
    stLayout.arSlots = vm_arSlots;
}

stDef_ChannelKey CLiveGrid::m_F_o_Slot(int nSlot) const
{
    return nSlot < static_cast<int>(vm_arSlots.size()) ? vm_arSlots[static_cast<std::size_t>(nSlot)]
                                                       : stDef_ChannelKey();
}

void CLiveGrid::m_S_SetSlot(int nSlot, const stDef_ChannelKey& stKey)
{
    if (nSlot >= CLayoutStore::MaxSlots)
        return;
    if (nSlot >= static_cast<int>(vm_arSlots.size()))
        vm_arSlots.resize(static_cast<std::size_t>(nSlot) + 1);
    vm_arSlots[static_cast<std::size_t>(nSlot)] = stKey;
    // The last slot is a filled one, so that the number of pages follows.
    while (!vm_arSlots.empty() && IsEmpty(vm_arSlots.back()))
        vm_arSlots.pop_back();
}

int CLiveGrid::m_F_n_FindSlot(const stDef_ChannelKey& stKey) const
{
    const auto pFound = std::find(vm_arSlots.begin(), vm_arSlots.end(), stKey);
    return IsEmpty(stKey) || pFound == vm_arSlots.end() ? -1 : static_cast<int>(pFound - vm_arSlots.begin());
}

// What stands in the slot takes the place that the channel had before, if it had one.
void CLiveGrid::m_S_PlaceAt(int nSlot, const stDef_ChannelKey& stKey)
{
    if (nSlot >= CLayoutStore::MaxSlots)
        return;
    const int nBefore = m_F_n_FindSlot(stKey);
    if (nBefore >= 0)
        m_S_SetSlot(nBefore, m_F_o_Slot(nSlot));
    m_S_SetSlot(nSlot, stKey);
}

void CLiveGrid::m_S_EmptySlots(const std::function<bool(const stDef_ChannelKey&)>& fnGone)
{
    for (stDef_ChannelKey& stKey : vm_arSlots) {
        if (!IsEmpty(stKey) && fnGone(stKey))
            stKey = {};
    }
    while (!vm_arSlots.empty() && IsEmpty(vm_arSlots.back()))
        vm_arSlots.pop_back();
}

void CLiveGrid::m_S_Place(const stDef_ChannelKey& stKey)
{
    m_S_PlaceAt(vm_nPage * vm_nShape + vm_nCurrent, stKey);
    m_S_Arrange();
    if (!vm_bEnlarged)
        m_S_SetCurrent((vm_nCurrent + 1) % vm_nShape);
}

void CLiveGrid::m_S_Drop(CLiveCell* pCell, const QList<stDef_ChannelKey>& arKeys)
{
    const int nCell = static_cast<int>(vm_arCells.indexOf(pCell)); // the widget itself may move on
    int nSlot = vm_nPage * vm_nShape + nCell;
    for (const stDef_ChannelKey& stKey : arKeys) {
        const stDef_Recorder* const pRecorder = m_F_p_Recorder(stKey.nNvrID);
        if (pRecorder && stKey.nChannel < pRecorder->nChannels)
            m_S_PlaceAt(nSlot++, stKey);
    }
    m_S_Arrange();
    m_S_SetCurrent(nCell);
}

void CLiveGrid::m_S_ShowRecorder(int nNvrID)
{
    const stDef_Recorder* const pRecorder = m_F_p_Recorder(nNvrID);
    if (!pRecorder)
        return;
    int nSlot = m_F_n_FindSlot({nNvrID, 0});
    if (nSlot < 0) {
        const int nFilled = static_cast<int>(vm_arSlots.size());
        nSlot = (nFilled + vm_nShape - 1) / vm_nShape * vm_nShape;
        for (int nChannel = 0; nChannel < pRecorder->nChannels; ++nChannel)
            m_S_PlaceAt(nSlot + nChannel, {nNvrID, nChannel});
    }
    vm_nPage = nSlot / vm_nShape;
    m_S_Arrange();
}

// --- shape and pages

void CLiveGrid::m_S_SetShape(int nCells)
{
    if (nCells == vm_nShape)
        return;
    const int nSlot = vm_nPage * vm_nShape + vm_nCurrent; // what is current stays in view
    vm_nShape = nCells;
    vm_bEnlarged = false;
    vm_nPage = nSlot / vm_nShape;
    m_S_Arrange();
    m_S_SetCurrent(nSlot % vm_nShape);
}

int CLiveGrid::m_F_n_Pages() const
{
    const int nFilled = (static_cast<int>(vm_arSlots.size()) + vm_nShape - 1) / vm_nShape;
    return std::max({nFilled, vm_nPage + 1, 1});
}

void CLiveGrid::m_S_SetPage(int nPage)
{
    nPage = std::clamp(nPage, 0, m_F_n_Pages() - 1);
    if (nPage == vm_nPage)
        return;
    vm_nPage = nPage;
    m_S_Arrange();
}

void CLiveGrid::m_S_ToggleEnlarged()
{
    vm_bEnlarged = !vm_bEnlarged && vm_nShape > 1;
    m_S_LayOut();
    m_F_p_Current()->setFocus();
}

void CLiveGrid::m_S_SetCurrent(int nCell)
{
    if (nCell < 0 || nCell >= vm_nShape)
        return;
    vm_nCurrent = nCell;
    for (int i = 0; i < vm_arCells.size(); ++i)
        vm_arCells[i]->m_S_SetCurrent(i == nCell);
    Q_EMIT S_Changed();
}

void CLiveGrid::m_S_Move(int nColumns, int nRows)
{
    const int nSide = Side(vm_nShape);
    const int nColumn = std::clamp(vm_nCurrent % nSide + nColumns, 0, nSide - 1);
    const int nRow = std::clamp(vm_nCurrent / nSide + nRows, 0, nSide - 1);
    m_S_SetCurrent(nRow * nSide + nColumn);
    if (vm_bEnlarged)
        m_S_LayOut();
    m_F_p_Current()->setFocus();
}

// --- cells

// A channel that stays on the page takes its cell along to its new place, and plays on.
void CLiveGrid::m_S_Arrange()
{
    const int nBase = vm_nPage * vm_nShape;
    const auto Wanted = [this, nBase](int nCell) {
        return nCell < vm_nShape ? m_F_o_Slot(nBase + nCell) : stDef_ChannelKey();
    };
    for (int i = 0; i < vm_nShape; ++i) {
        const stDef_ChannelKey stKey = Wanted(i);
        for (int j = 0; j < vm_arCells.size() && !IsEmpty(stKey); ++j) {
            if (j != i && vm_arCells[j]->m_F_o_Key() == stKey)
                vm_arCells.swapItemsAt(i, j);
        }
    }
    QList<CLiveCell*> arChanged;
    for (int i = 0; i < vm_arCells.size() && vm_bShown; ++i) {
        if (vm_arCells[i]->m_F_o_Key() != Wanted(i))
            arChanged.append(vm_arCells[i]);
    }
    vm_nCurrent = std::min(vm_nCurrent, vm_nShape - 1);
    m_S_LayOut();
    // Filling a cell waits for the end of its stream: all are told first, so that they end side by side.
    for (CLiveCell* const pCell : arChanged)
        pCell->m_S_RequestStop();
    for (CLiveCell* const pCell : arChanged)
        m_S_Fill(pCell, Wanted(static_cast<int>(vm_arCells.indexOf(pCell))));
    m_S_SetCurrent(vm_nCurrent);
    Q_EMIT S_LayoutChanged();
}

QString CLiveGrid::m_F_s_Title(const stDef_ChannelKey& stKey) const
{
    const stDef_Recorder* const pRecorder = m_F_p_Recorder(stKey.nNvrID);
    return Tr(nsHost::CellTitle).arg(vm_pNames->m_F_s_Label(stKey), pRecorder ? pRecorder->sName : QString());
}

void CLiveGrid::m_S_Retitle(const QList<CLiveCell*>& arCells)
{
    for (CLiveCell* const pCell : arCells) {
        if (!IsEmpty(pCell->m_F_o_Key()))
            pCell->m_S_SetTitle(m_F_s_Title(pCell->m_F_o_Key()));
    }
}

void CLiveGrid::m_S_Fill(CLiveCell* pCell, const stDef_ChannelKey& stKey)
{
    const stDef_Recorder* const pRecorder = m_F_p_Recorder(stKey.nNvrID);
    if (!pRecorder) {
        pCell->m_S_Clear();
        return;
    }
    const QString sTitle = m_F_s_Title(stKey);
    // Until the directory service has answered nothing logs in: the listed address may be somebody else's by now.
    if (pRecorder->nDstType == 1 && !vm_setResolved.contains(stKey.nNvrID)) {
        pCell->m_S_Announce(stKey, sTitle);
        vm_pResolver->m_S_Resolve(stKey.nNvrID, vm_pStore->m_F_o_InitRecord(stKey.nNvrID).sDips);
        return;
    }
    if (pCell->m_F_b_Assign(vm_pEnv, vm_pStore, stKey, sTitle) && vm_bConnect)
        pCell->m_S_Connect();
}

void CLiveGrid::m_S_FillCells(const QList<CLiveCell*>& arCells)
{
    for (CLiveCell* const pCell : arCells)
        pCell->m_S_RequestStop();
    for (CLiveCell* const pCell : arCells)
        m_S_Fill(pCell, stDef_ChannelKey(pCell->m_F_o_Key())); // a copy: filling the cell clears its own
}

void CLiveGrid::m_S_LayOut()
{
    const int nSide = vm_bEnlarged ? 1 : Side(vm_nShape);
    const int nWidth = (width() - Margin * (nSide + 1)) / nSide;
    const int nHeight = (height() - Margin * (nSide + 1)) / nSide;
    for (int i = 0; i < vm_arCells.size(); ++i) {
        const int nPlace = vm_bEnlarged ? 0 : i;
        const bool bShown = vm_bEnlarged ? i == vm_nCurrent : i < vm_nShape;
        if (bShown)
            vm_arCells[i]->setGeometry(Margin + nPlace % nSide * (nWidth + Margin),
                                       Margin + nPlace / nSide * (nHeight + Margin), nWidth, nHeight);
        vm_arCells[i]->setVisible(bShown);
        if (i > 0) // cells change places, and Tab goes by places
            setTabOrder(vm_arCells[i - 1], vm_arCells[i]);
    }
}

void CLiveGrid::resizeEvent(QResizeEvent* pEvent)
{
    QWidget::resizeEvent(pEvent);
    m_S_LayOut();
}

// Which stream fits a cell is known once the cells have their sizes.
void CLiveGrid::showEvent(QShowEvent* pEvent)
{
    QWidget::showEvent(pEvent);
    if (!std::exchange(vm_bShown, true))
        m_S_Arrange();
}

void CLiveGrid::changeEvent(QEvent* pEvent)
{
    QWidget::changeEvent(pEvent);
    if (pEvent->type() != QEvent::LanguageChange)
        return;
    setAccessibleName(Tr(nsHost::LiveGrid));
    m_S_Retitle(vm_arCells);
}

// --- recorders

QList<CLiveCell*> CLiveGrid::m_F_ar_CellsOf(int nNvrID) const
{
    QList<CLiveCell*> arCells;
    std::copy_if(vm_arCells.begin(), vm_arCells.end(), std::back_inserter(arCells),
                 [nNvrID](const CLiveCell* pCell) { return pCell->m_F_o_Key().nNvrID == nNvrID; });
    return arCells;
}

void CLiveGrid::m_S_RecorderChanged(int nNvrID)
{
    vm_arRecorders = vm_pStore->m_F_ar_Recorders();
    // Whatever was edited, its streams begin anew: account, ports and transport are read when one is made.
    vm_setResolved.remove(nNvrID);
    const stDef_Recorder* const pRecorder = m_F_p_Recorder(nNvrID);
    m_S_EmptySlots([nNvrID, pRecorder](const stDef_ChannelKey& stKey) {
        return stKey.nNvrID == nNvrID && (!pRecorder || stKey.nChannel >= pRecorder->nChannels);
    });
    m_S_Arrange();
    m_S_FillCells(m_F_ar_CellsOf(nNvrID));
}

void CLiveGrid::m_S_RecorderRemoved(int nNvrID)
{
    m_S_RecorderChanged(nNvrID);
}

void CLiveGrid::m_S_RetryNow(int nNvrID)
{
    for (CLiveCell* const pCell : m_F_ar_CellsOf(nNvrID))
        pCell->m_S_RetryNow();
}

// A recorder whose address comes from the directory service may have moved.
void CLiveGrid::m_S_OnLost(int nNvrID)
{
    const stDef_Recorder* const pRecorder = m_F_p_Recorder(nNvrID);
    if (pRecorder && pRecorder->nDstType == 1)
        vm_pResolver->m_S_Resolve(nNvrID, vm_pStore->m_F_o_InitRecord(nNvrID).sDips);
    Q_EMIT S_Lost(nNvrID);
}

// Where the service knows nothing, the listed address stays in force.
void CLiveGrid::m_S_OnResolved(int nNvrID, const QByteArray& sDips, const QString& sAddress, int nHttpPort)
{
    const stDef_Recorder* const pRecorder = m_F_p_Recorder(nNvrID);
    const bool bAsked = pRecorder && pRecorder->nDstType == 1;
    const QByteArray sPresent = bAsked ? vm_pStore->m_F_o_InitRecord(nNvrID).sDips : QByteArray();
    if (!bAsked || sPresent != sDips) { // it was edited or replaced meanwhile: nobody else's account goes there
        if (bAsked)
            vm_pResolver->m_S_Resolve(nNvrID, sPresent);
        return;
    }
    vm_setResolved.insert(nNvrID);
    const QString sPath = QString::asprintf("/root/NVR/N%03d", nNvrID);
    CXmlObj& xmlList = *vm_pEnv->m_F_p_GetMemSysXML();
    const bool bMoved = !sAddress.isEmpty() && (xmlList.m_F_s_Value(sPath, u"IP"_s) != sAddress ||
                                                xmlList.m_F_n_GetValueInt(sPath, u"HttpPort"_s, 80) != nHttpPort);
    if (bMoved) {
        xmlList.m_F_b_SetValue(sPath, u"IP"_s, sAddress);
        xmlList.m_F_b_SetValue(sPath, u"HttpPort"_s, nHttpPort);
        Q_EMIT S_AddressFound(nNvrID, sAddress, nHttpPort);
    }
    QList<CLiveCell*> arCells = m_F_ar_CellsOf(nNvrID);
    if (!bMoved)
        arCells.removeIf([](const CLiveCell* pCell) { return pCell->m_F_p_Channel() != nullptr; });
    m_S_FillCells(arCells);
}

// --- commands and figures

// Holds for what comes into a cell later, too; a stream that was ended from here doesn't come back by itself.
void CLiveGrid::m_S_ConnectAll()
{
    vm_bConnect = true;
    for (CLiveCell* const pCell : vm_arCells)
        pCell->m_S_Connect();
}

void CLiveGrid::m_S_DisconnectAll()
{
    vm_bConnect = false;
    for (CLiveCell* const pCell : vm_arCells)
        pCell->m_S_RequestStop();
    for (CLiveCell* const pCell : vm_arCells)
        pCell->m_S_Disconnect();
}

void CLiveGrid::m_S_Snapshot()
{
    m_F_p_Current()->m_S_Snapshot();
}

void CLiveGrid::m_S_PollAll()
{
    for (CLiveCell* const pCell : vm_arCells)
        pCell->m_S_Poll();
    Q_EMIT S_Changed();
}

emDef_LiveState CLiveGrid::m_F_n_State(const stDef_ChannelKey& stKey) const
{
    const auto pFound = std::find_if(vm_arCells.begin(), vm_arCells.end(),
                                     [&stKey](const CLiveCell* pCell) { return pCell->m_F_o_Key() == stKey; });
    return pFound == vm_arCells.end() ? emDef_LiveState::Idle : (*pFound)->m_F_n_State();
}

stDef_GridTotals CLiveGrid::m_F_o_Totals() const
{
    stDef_GridTotals stTotals;
    for (const CLiveCell* const pCell : vm_arCells) {
        if (!pCell->m_F_p_Channel())
            continue;
        ++stTotals.nChannels;
        if (pCell->m_F_n_State() == emDef_LiveState::Live) {
            ++stTotals.nLive;
            stTotals.nRate += pCell->m_F_p_Channel()->m_F_n_Rate();
        }
    }
    return stTotals;
}
