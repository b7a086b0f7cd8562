#pragma once

#include <vector>

#include "host/Export.h"

class CCamObj_Base;
class CWndNvrEmbedded;

/// The cameras of a setting sheet, one slot a camera index. The sheet is one, and hands itself as such to the pages
/// that keep something for each camera. GUI thread only.
class FLEETLINK_EXPORT CCameraTable
{
public:
    /// As many slots as the recorder takes cameras. The connection is borrowed.
    explicit CCameraTable(CWndNvrEmbedded* pNvr);
    /// Releases the objects.
    virtual ~CCameraTable();
    CCameraTable(const CCameraTable&) = delete;
    CCameraTable& operator=(const CCameraTable&) = delete;

    /// Number of cameras that the recorder takes, read anew from its system information; 0 where that doesn't tell.
    int m_F_n_MaxCam() const;
    int m_F_n_Slots() const { return static_cast<int>(m_arrCamObj.size()); }
    /// Null where there is no camera, or one of a vendor without a driver.
    CCamObj_Base* m_F_p_Camera(int nIndex) const;

    // Each keeps the objects' indices in step with their slots; an index that has no slot does nothing.
    /// Takes the object over, or null, in place of the one that had the slot. False, and the object stays the caller's,
    /// without such a slot.
    bool m_F_b_Place(int nIndex, CCamObj_Base* pCamera);
    /// Releases the object; those behind it move down by one.
    void m_S_TakeOut(int nIndex);
    void m_S_Swap(int nFirst, int nSecond);
    void m_S_ReleaseAll();

    // Who changed the camera list tells it by these, with the documents and the slots changed already.
    virtual void m_S_AddCamera(int nIndex) = 0;
    /// `nIndex` -1: every camera. `nCount` is the number of cameras after the change (before it for -1).
    virtual void m_S_RemoveCamera(int nIndex, int nCount) = 0;
    /// `bSame`: the camera has the same vendor still.
    virtual void m_S_UpdateCamera(int nIndex, bool bSame) = 0;
    virtual void m_S_CopyCamera(int nFrom, int nTo) = 0;
    virtual void m_S_SwitchCamera(int nFirst, int nSecond) = 0;

    /// One slot a camera index, owned; null while no camera has it. `MaxCam` of them as long as the sheet lives.
    std::vector<CCamObj_Base*> m_arrCamObj;

private:
    bool m_F_b_HasSlot(int nIndex) const { return nIndex >= 0 && nIndex < m_F_n_Slots(); }
    CCamObj_Base*& m_F_p_Slot(int nIndex) { return m_arrCamObj[static_cast<std::size_t>(nIndex)]; }

    CWndNvrEmbedded* vm_pNvr;
};
