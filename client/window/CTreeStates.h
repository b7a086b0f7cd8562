#pragma once

#include <vector>

#include "live/stDef_ChannelKey.h"

class CLiveGrid;
class CRecorderTree;
class CRecorderWatch;

/// Carries the states of the live cells, and how the recorders are reached, into the rows of the recorder tree.
class CTreeStates
{
public:
    /// All are borrowed.
    CTreeStates(CRecorderTree* pTree, const CLiveGrid* pGrid, const CRecorderWatch* pWatch);

    void m_S_Update();
    /// How this recorder is reached has changed.
    void m_S_UpdateReach(int nNvrID);

private:
    void m_S_ShowRecorders(const std::vector<stDef_ChannelKey>& arShown);

    CRecorderTree* vm_pTree;
    const CLiveGrid* vm_pGrid;
    const CRecorderWatch* vm_pWatch;
    std::vector<stDef_ChannelKey> vm_arShown; ///< channels whose state stands in the tree
};
