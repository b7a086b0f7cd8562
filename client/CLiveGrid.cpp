#include "CLiveGrid.h"

#include <QGridLayout>

#include "CHostText.h"

using namespace Qt::StringLiterals;

CLiveGrid::CLiveGrid(QWidget* pParent) : QWidget(pParent)
{
    auto* const pLayout = new QGridLayout(this);
    pLayout->setContentsMargins(8, 8, 8, 8);
    pLayout->setSpacing(8);
    for (int i = 0; i < Columns * Rows; ++i) {
        auto* const pCell = new CLiveCell(this);
        pCell->setObjectName(u"Cell%1"_s.arg(i));
        connect(pCell, &CLiveCell::S_StateChanged, this, &CLiveGrid::S_Changed);
        pLayout->addWidget(pCell, i / Columns, i % Columns);
        vm_arCells.append(pCell);
    }
    setAccessibleName(Tr(emDef_Text::LiveGrid));
    connect(&vm_objTimer, &QTimer::timeout, this, &CLiveGrid::m_S_PollAll);
    vm_objTimer.start(PollMs);
}

CLiveGrid::~CLiveGrid()
{
    m_S_RequestStopAll();
    for (CLiveCell* const pCell : vm_arCells) {
        disconnect(pCell, nullptr, this, nullptr);
        pCell->m_S_Clear(); // before the window goes that the connection objects are children of
    }
}

void CLiveGrid::m_S_Assign(CEnvObj* pEnv, const QList<stDef_LiveSource>& arSources, const stDef_NvrInit& stInit)
{
    m_S_RequestStopAll();
    for (qsizetype i = 0; i < vm_arCells.size(); ++i) {
        if (i < arSources.size())
            vm_arCells[i]->m_F_b_Assign(pEnv, arSources[i], stInit);
        else
            vm_arCells[i]->m_S_Clear();
    }
}

void CLiveGrid::m_S_ConnectAll()
{
    for (CLiveCell* const pCell : vm_arCells)
        pCell->m_S_Connect();
}

void CLiveGrid::m_S_DisconnectAll()
{
    m_S_RequestStopAll();
    for (CLiveCell* const pCell : vm_arCells)
        pCell->m_S_Disconnect();
}

void CLiveGrid::m_S_RequestStopAll()
{
    for (CLiveCell* const pCell : vm_arCells)
        pCell->m_S_RequestStop();
}

void CLiveGrid::m_S_PollAll()
{
    for (CLiveCell* const pCell : vm_arCells)
        pCell->m_S_Poll();
    Q_EMIT S_Changed();
}

stDef_GridTotals CLiveGrid::m_F_o_Totals() const
{
    stDef_GridTotals stTotals;
    for (const CLiveCell* const pCell : vm_arCells) {
        const CLiveChannel* const pChannel = pCell->m_F_p_Channel();
        if (!pChannel)
            continue;
        ++stTotals.nChannels;
        if (pChannel->m_F_n_State() == emDef_LiveState::Live) {
            ++stTotals.nLive;
            stTotals.nRate += pChannel->m_F_n_Rate();
        }
    }
    return stTotals;
}
