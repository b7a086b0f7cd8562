#include "setup/camera/CCameraList.h"

#include <algorithm>

#include "core/CWndNvrEmbedded.h"
#include "drivers/CCamObj_Base.h"
#include "host/Lib_Bedrock.h"
#include "setup/CCameraTable.h"
#include "setup/CCameraTree.h"

using namespace Qt::StringLiterals;

CCameraList::CCameraList(CWndNvrEmbedded* pNvr, CCameraTable* pTable, CCameraTree* pTree)
    : vm_pNvr(pNvr), vm_pTable(pTable), vm_pTree(pTree), vm_objNodes(&pNvr->vm_xmlCamera, u"/root/Camera"_s, u"Cam"_s)
{}

void CCameraList::m_S_ListStored()
{
    const int nEnd = std::min(m_F_n_Count(), vm_pTable->m_F_n_Slots());
    for (int nIndex = vm_pTree->m_F_n_Count(); nIndex < nEnd; ++nIndex) {
        const stDef_CamConnect stConnect =
            stDef_CameraValues::s_F_o_ReadConnect(vm_pNvr->vm_xmlCamera, vm_objNodes.m_F_s_Path(nIndex));
        CCamObj_Base* const pCamera = m_F_p_Make(stConnect.nVendorID, nIndex);
        if (pCamera)
            pCamera->m_F_b_SetConnect(stConnect);
        vm_pTree->m_S_Append(CSFunc::s_F_s_Utf8ToUnicode(stConnect.strName), m_F_n_Value(nIndex, u"Enable"_s, 0) != 0);
        vm_pTable->m_F_b_Place(nIndex, pCamera);
    }
}

int CCameraList::m_F_n_Room() const
{
    return std::max(std::min(vm_pTable->m_F_n_MaxCam(), vm_pTable->m_F_n_Slots()) - vm_pTree->m_F_n_Count(), 0);
}

bool CCameraList::m_F_b_HasRoom() const
{
    return m_F_n_Room() > 0;
}

QString CCameraList::m_F_s_Value(int nIndex, const QString& sKey) const
{
    return vm_pNvr->vm_xmlCamera.m_F_s_Value(vm_objNodes.m_F_s_Path(nIndex), sKey);
}

int CCameraList::m_F_n_Value(int nIndex, const QString& sKey, int nDefault) const
{
    return vm_pNvr->vm_xmlCamera.m_F_n_GetValueInt(vm_objNodes.m_F_s_Path(nIndex), sKey, nDefault);
}

void CCameraList::m_S_SetValue(int nIndex, const QString& sKey, const QString& sValue)
{
    vm_pNvr->vm_xmlCamera.m_F_b_SetValue(vm_objNodes.m_F_s_Path(nIndex), sKey, sValue);
}

QString CCameraList::m_F_s_Name(int nIndex) const
{
    return m_F_s_Value(nIndex, u"Name"_s);
}

int CCameraList::m_F_n_Vendor(int nIndex) const
{
    return m_F_n_Value(nIndex, u"VendorID"_s, 0);
}

stDef_CameraValues CCameraList::m_F_o_Shown(int nIndex) const
{
    return stDef_CameraValues::s_F_o_Read(vm_pNvr->vm_xmlCamera, vm_objNodes.m_F_s_Path(nIndex));
}

void CCameraList::m_S_SetEnabled(int nIndex, bool bEnabled)
{
    m_S_SetValue(nIndex, u"Enable"_s, bEnabled ? u"1"_s : u"0"_s);
}

CCamObj_Base* CCameraList::m_F_p_Make(int nVendorID, int nIndex) const
{
    CCamObj_Base* const pCamera = CCamObj_Base::s_F_p_CreateCamObj(nVendorID, vm_pNvr);
    if (pCamera)
        pCamera->m_nCamIndex = nIndex;
    return pCamera;
}

CCamObj_Base* CCameraList::m_F_p_Map(int nVendorID, int nIndex, stDef_CameraReplies& stReplies) const
{
    CCamObj_Base* const pCamera = m_F_p_Make(nVendorID, nIndex);
    if (pCamera) {
        pCamera->m_F_b_ApplyDetect(&stReplies.xmlDetect);
        pCamera->m_F_b_ApplyTemplate(&stReplies.xmlDetect, &stReplies.xmlSupport);
    }
    return pCamera;
}

// Brings the form's values and those of the replies together in the node.
void CCameraList::m_S_Complete(int nIndex, stDef_CameraValues& stCamera)
{
    stCamera.sModel = m_F_s_Value(nIndex, u"Model"_s);
    m_S_SetValue(nIndex, u"Name"_s, stCamera.sName);
    const int nRtspPort = CXmlObj::s_F_n_ToInt(stCamera.sRtspPort);
    if (nRtspPort < 1)
        stCamera.sRtspPort = QString::number(m_F_n_Value(nIndex, u"RtspPort"_s, 0));
    else
        m_S_SetValue(nIndex, u"RtspPort"_s, QString::number(nRtspPort));
}

void CCameraList::m_S_Append(const QString& sName, CCamObj_Base* pCamera)
{
    const int nIndex = vm_pTree->m_F_n_Count();
    vm_pTree->m_S_Append(sName, true);
    vm_pTable->m_F_b_Place(nIndex, pCamera);
    vm_objNodes.m_F_n_Append();
    vm_pTree->m_S_Select(nIndex);
    vm_pTable->m_S_AddCamera(nIndex);
}

bool CCameraList::m_F_b_AddDescribed(stDef_CameraValues& stCamera, stDef_CameraReplies& stReplies)
{
    const int nIndex = vm_pTree->m_F_n_Count();
    CCamObj_Base* const pCamera = m_F_b_HasRoom() ? m_F_p_Map(stCamera.nVendorID, nIndex, stReplies) : nullptr;
    if (!pCamera)
        return false;
    m_S_Complete(nIndex, stCamera);
    pCamera->m_F_b_SetConnect(stCamera.m_F_o_Connect());
    m_S_Append(stCamera.sName, pCamera);
    return true;
}

bool CCameraList::m_F_b_AddFound(stDef_CameraValues stCamera, stDef_CameraReplies& stReplies)
{
    const int nIndex = vm_pTree->m_F_n_Count();
    CCamObj_Base* const pCamera = m_F_b_HasRoom() ? m_F_p_Map(stCamera.nVendorID, nIndex, stReplies) : nullptr;
    if (!pCamera)
        return false;
    stCamera.sModel = m_F_s_Value(nIndex, u"Model"_s);
    stCamera.sName = m_F_s_Name(nIndex);
    stCamera.sRtspPort = QString::number(m_F_n_Value(nIndex, u"RtspPort"_s, 554));
    stCamera.nOnvifAuth = stReplies.xmlDetect.m_F_n_GetValueInt(u"/root/Camera/Cam000"_s, u"OnvifAuth"_s, 1);
    pCamera->m_F_b_SetConnect(stCamera.m_F_o_Connect());
    m_S_Append(stCamera.sName, pCamera);
    return true;
}

void CCameraList::m_S_Update(int nIndex, const stDef_CameraValues& stCamera)
{
    stCamera.m_S_WriteUpdate(vm_pNvr->vm_xmlCamera, vm_objNodes.m_F_s_Path(nIndex));
    if (CCamObj_Base* const pCamera = vm_pTable->m_F_p_Camera(nIndex))
        pCamera->m_F_b_SetConnect(stCamera.m_F_o_Connect());
    vm_pTree->m_S_SetName(nIndex, stCamera.sName);
    vm_pTable->m_S_UpdateCamera(nIndex, true);
}

bool CCameraList::m_F_b_Replace(int nIndex, stDef_CameraValues& stCamera, stDef_CameraReplies& stReplies)
{
    CCamObj_Base* const pCamera = m_F_p_Map(stCamera.nVendorID, nIndex, stReplies);
    if (!pCamera)
        return false;
    m_S_Complete(nIndex, stCamera);
    pCamera->m_F_b_SetConnect(stCamera.m_F_o_Connect());
    vm_pTable->m_F_b_Place(nIndex, pCamera); // the item keeps its old text until the sheet is opened again
    vm_pTree->m_S_Select(nIndex);
    vm_pTable->m_S_UpdateCamera(nIndex, false);
    return true;
}

// What the tree shows of a node.
void CCameraList::m_S_ShowItem(int nIndex)
{
    vm_pTree->m_S_SetName(nIndex, m_F_s_Name(nIndex));
    vm_pTree->m_S_SetEnabled(nIndex, m_F_n_Value(nIndex, u"Enable"_s, 0) != 0);
}

void CCameraList::m_S_Delete(int nIndex)
{
    if (!vm_pNvr->vm_xmlCamera.m_F_b_IsOpen() || !vm_pNvr->vm_xmlSystemInfo.m_F_b_IsOpen())
        return;
    vm_pTable->m_S_TakeOut(nIndex);
    vm_pTree->m_S_Remove(nIndex);
    vm_objNodes.m_S_Remove(nIndex);
    vm_pTable->m_S_RemoveCamera(nIndex, m_F_n_Count());
    m_S_ListStored(); // one that had no slot so far
}

void CCameraList::m_S_DeleteAll()
{
    const int nCount = m_F_n_Count();
    vm_objNodes.m_S_RemoveAll();
    vm_pTree->m_S_Clear();
    vm_pTable->m_S_ReleaseAll();
    vm_pTable->m_S_RemoveCamera(-1, nCount);
}

void CCameraList::m_S_Copy(int nFrom, int nTo)
{
    CCamObj_Base* const pSource = vm_pTable->m_F_p_Camera(nFrom);
    if (!pSource || nFrom == nTo || nTo >= vm_pTree->m_F_n_Count())
        return;
    pSource->m_F_b_CopyToIndex(nTo);
    CCamObj_Base* const pCopy = m_F_p_Make(m_F_n_Value(nFrom, u"VendorID"_s, -1), nTo);
    if (pCopy)
        pCopy->m_stConnect = pSource->m_stConnect;
    vm_pTable->m_F_b_Place(nTo, pCopy);
    m_S_ShowItem(nTo);
    vm_pTable->m_S_CopyCamera(nFrom, nTo);
}

void CCameraList::m_S_CopyToAll(int nFrom)
{
    for (int nTo = 0; nTo < vm_pTree->m_F_n_Count(); ++nTo)
        m_S_Copy(nFrom, nTo);
}

void CCameraList::m_S_Switch(int nFirst, int nSecond)
{
    if (nFirst == nSecond || nSecond >= vm_pTree->m_F_n_Count())
        return;
    vm_objNodes.m_S_Swap(nFirst, nSecond);
    vm_pTable->m_S_Swap(nFirst, nSecond); // a motion window takes its camera from there
    m_S_ShowItem(nFirst);
    m_S_ShowItem(nSecond);
    vm_pTable->m_S_SwitchCamera(nFirst, nSecond);
}
