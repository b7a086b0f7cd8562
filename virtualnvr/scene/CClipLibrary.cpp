#include "scene/CClipLibrary.h"

CClipLibrary& CClipLibrary::s_F_o_Shared()
{
    static CClipLibrary s_objLibrary;
    return s_objLibrary;
}

std::shared_ptr<const stDef_EncodedClip> CClipLibrary::m_F_p_Get(int nChannel, bool bSecond)
{
    stDef_Slot* pSlot = nullptr;
    {
        const std::lock_guard objGuard(vm_objLock);
        pSlot = &vm_mapSlots[{nChannel, bSecond}];
    }
    const std::lock_guard objGuard(pSlot->objLock);
    if (!pSlot->pClip)
        pSlot->pClip = stDef_EncodedClip::s_F_p_Encode(nChannel, bSecond);
    return pSlot->pClip;
}

bool CClipLibrary::m_F_b_Has(int nChannel, bool bSecond)
{
    const std::lock_guard objGuard(vm_objLock);
    return vm_mapSlots.contains({nChannel, bSecond});
}
