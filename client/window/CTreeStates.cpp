#include "window/CTreeStates.h"

#include <algorithm>
#include <map>

#include "live/CLiveGrid.h"
#include "recorders/CRecorderTree.h"
#include "recorders/CRecorderWatch.h"
#include "window/HostTexts.h"

CTreeStates::CTreeStates(CRecorderTree* pTree, const CLiveGrid* pGrid, const CRecorderWatch* pWatch)
    : vm_pTree(pTree), vm_pGrid(pGrid), vm_pWatch(pWatch)
{}

// Rows that left the page are quiet again.
void CTreeStates::m_S_Update()
{
    std::vector<stDef_ChannelKey> arShown;
    for (const CLiveCell* const pCell : vm_pGrid->m_F_ar_Cells()) {
        if (pCell->m_F_o_Key().nNvrID < 0)
            continue;
        arShown.push_back(pCell->m_F_o_Key());
        vm_pTree->m_S_SetChannelState(arShown.back(), pCell->m_F_n_State());
    }
    for (const stDef_ChannelKey& stKey : vm_arShown) {
        if (std::find(arShown.begin(), arShown.end(), stKey) == arShown.end())
            vm_pTree->m_S_SetChannelState(stKey, emDef_LiveState::Idle);
    }
    m_S_ShowRecorders(arShown);
    vm_arShown = arShown;
}

void CTreeStates::m_S_ShowRecorders(const std::vector<stDef_ChannelKey>& arShown)
{
    struct stDef_Count
    {
        int nLive = 0;
        int nAll = 0;
    };
    std::map<int, stDef_Count> mapCounts;
    for (const stDef_ChannelKey& stKey : vm_arShown)
        mapCounts[stKey.nNvrID] = {}; // one that has left the page loses its figures
    for (const stDef_ChannelKey& stKey : arShown) {
        ++mapCounts[stKey.nNvrID].nAll;
        mapCounts[stKey.nNvrID].nLive += vm_pGrid->m_F_n_State(stKey) == emDef_LiveState::Live ? 1 : 0;
    }
    for (const auto& [nNvrID, stCount] : mapCounts) {
        const QString sText =
            stCount.nLive > 0 ? Tr(nsHost::RecorderLive).arg(stCount.nLive).arg(stCount.nAll) : QString();
        vm_pTree->m_S_SetRecorderState(nNvrID, vm_pWatch->m_F_n_Reach(nNvrID), sText);
    }
}

void CTreeStates::m_S_UpdateReach(int nNvrID)
{
    vm_pTree->m_S_SetRecorderState(nNvrID, vm_pWatch->m_F_n_Reach(nNvrID), {});
    m_S_Update();
}
