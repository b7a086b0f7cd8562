#pragma once

#include "setup/camera/CCameraProbe.h"
#include "setup/camera/stDef_CameraValues.h"
#include "toolkit/form/CNumberedNodes.h"

class CCamObj_Base;
class CCameraTable;
class CCameraTree;
class CWndNvrEmbedded;

/// The camera list of the sheet: nodes of the Camera document, slots of the table, items of the tree and what other
/// pages keep for each camera, in step through every change. A camera's index is its place in all of them.
class CCameraList
{
public:
    /// All are borrowed.
    CCameraList(CWndNvrEmbedded* pNvr, CCameraTable* pTable, CCameraTree* pTree);

    /// Makes objects and items for the stored cameras that have none yet, as far as there are slots.
    void m_S_ListStored();

    /// Whether the recorder takes one more.
    bool m_F_b_HasRoom() const;
    int m_F_n_Room() const; ///< how many more it takes
    int m_F_n_Count() const { return vm_objNodes.m_F_n_Count(); }
    QString m_F_s_Name(int nIndex) const;
    int m_F_n_Vendor(int nIndex) const; ///< as it is stored; 0 where none is
    /// As the form shows it.
    stDef_CameraValues m_F_o_Shown(int nIndex) const;
    void m_S_SetEnabled(int nIndex, bool bEnabled);

    /// Appends the camera that the form describes; its model, and a port below 1, come from the replies. The result is
    /// the camera as it stands then. False if its vendor has no driver.
    bool m_F_b_AddDescribed(stDef_CameraValues& stCamera, stDef_CameraReplies& stReplies);
    /// Appends a camera that was found, with what the recorder tells of it. False if its vendor has no driver.
    bool m_F_b_AddFound(stDef_CameraValues stCamera, stDef_CameraReplies& stReplies);
    /// Writes the form's values; the vendor is still the same.
    void m_S_Update(int nIndex, const stDef_CameraValues& stCamera);
    /// Puts a camera of another vendor in the place of one; the result is that camera as it stands then. False if the
    /// vendor has no driver.
    bool m_F_b_Replace(int nIndex, stDef_CameraValues& stCamera, stDef_CameraReplies& stReplies);
    void m_S_Delete(int nIndex);
    void m_S_DeleteAll();
    /// A camera without a driver can't be copied.
    void m_S_Copy(int nFrom, int nTo);
    void m_S_CopyToAll(int nFrom);
    void m_S_Switch(int nFirst, int nSecond);

private:
    CCamObj_Base* m_F_p_Make(int nVendorID, int nIndex) const;
    CCamObj_Base* m_F_p_Map(int nVendorID, int nIndex, stDef_CameraReplies& stReplies) const;
    void m_S_Complete(int nIndex, stDef_CameraValues& stCamera);
    void m_S_Append(const QString& sName, CCamObj_Base* pCamera);
    void m_S_ShowItem(int nIndex);
    QString m_F_s_Value(int nIndex, const QString& sKey) const;
    int m_F_n_Value(int nIndex, const QString& sKey, int nDefault) const;
    void m_S_SetValue(int nIndex, const QString& sKey, const QString& sValue);

    CWndNvrEmbedded* vm_pNvr;
    CCameraTable* vm_pTable;
    CCameraTree* vm_pTree;
    CNumberedNodes vm_objNodes;
};
