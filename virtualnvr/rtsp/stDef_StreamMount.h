#pragma once

#include "scene/CPtzBoard.h"

#include <atomic>
#include <memory>
#include <string>

/// One mount and the faults that are set for it. The faults may be set and read by any thread.
struct stDef_StreamMount
{
    std::string sPath; ///< "/stream/CH0"
    int nChannel = 0;
    bool bSecond = false;
    std::shared_ptr<const CPtzBoard> pPtz; ///< null: the camera can't move

    std::atomic<bool> bSilent{false};
    std::atomic<bool> bGarbage{false};
    std::atomic<bool> bMissing{false};
    std::atomic<bool> bPaused{false};
    std::atomic<bool> bOtherClip{false};
    std::atomic<bool> bNoKey{false};
    std::atomic<bool> bNoSets{false};
    std::atomic<long> nJumpMs{0}; ///< sum of all jumps
};
