#pragma once

#include "scene/stDef_EncodedClip.h"

#include <map>
#include <mutex>
#include <utility>

/// The clips of all streams, each encoded when it is first asked for and kept as long as the process lives: recorders
/// that come and go in one process share them. From any thread.
class CClipLibrary
{
public:
    static CClipLibrary& s_F_o_Shared();

    /// Null if it can't be encoded. Takes some tenths of a second the first time.
    std::shared_ptr<const stDef_EncodedClip> m_F_p_Get(int nChannel, bool bSecond);

    /// True if the clip was asked for before.
    bool m_F_b_Has(int nChannel, bool bSecond);

private:
    struct stDef_Slot
    {
        std::mutex objLock; ///< held while the clip is encoded, so that others can be encoded meanwhile
        std::shared_ptr<const stDef_EncodedClip> pClip;
    };

    std::mutex vm_objLock;
    std::map<std::pair<int, bool>, stDef_Slot> vm_mapSlots; ///< slots never move
};
