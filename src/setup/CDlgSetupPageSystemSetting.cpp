#include "setup/CDlgSetupPageSystemSetting.h"

#include <algorithm>
#include <array>

#include "core/CWndNvrEmbedded.h"
#include "drivers/CCamObj_Base.h"
#include "setup/CPageToCome.h"
#include "setup/CameraFollowers.h"
#include "setup/camera/CDlgSetupPageSystemSetting_Camera.h"
#include "setup/mail/CDlgSetupPageSystemSetting_AddrBook.h"
#include "setup/mail/CDlgSetupPageSystemSetting_Nofity.h"
#include "setup/network/CDlgSetupPageSystemSetting_Network.h"

using namespace Qt::StringLiterals;

namespace {

constexpr Text TitleText{"SystemSetting", "System Setting"};

// More slots than any recorder has channels: a number beyond this is not believed.
constexpr int MostSlots = 4096;

template <class Page>
CPropertyPage* Make(CWndNvrEmbedded* pNvr)
{
    return new Page(pNvr);
}

struct stDef_TabRow
{
    Text stLabel;
    CPropertyPage* (*fnMake)(CWndNvrEmbedded*);
};

const std::array<stDef_TabRow, 8> g_arTabs = {{
    {Text{"Camera", "Camera"}, Make<CDlgSetupPageSystemSetting_Camera>},
    {Text{"Schedule", "Schedule"}, Make<CPageToCome>},
    {Text{"Network", "Network"}, Make<CDlgSetupPageSystemSetting_Network>},
    {Text{"System", "System"}, Make<CPageToCome>},
    {Text{"User", "User"}, Make<CPageToCome>},
    {Text{"MotionDetection", "Motion Detection"}, Make<CPageToCome>},
    {Text{"AddressBook", "Address Book"}, Make<CDlgSetupPageSystemSetting_AddrBook>},
    {Text{"Notification", "Notification"}, Make<CDlgSetupPageSystemSetting_Nofity>},
}};

} // namespace

CDlgSetupPageSystemSetting::CDlgSetupPageSystemSetting(CWndNvrEmbedded* pNvr, const QString& sCaption,
                                                       unsigned int nSelectPage)
    : CSettingSheet(pNvr, sCaption, TitleText, pNvr, nSelectPage), vm_pNvr(pNvr), vm_pEnv(pNvr->vm_pEnv)
{
    m_S_AddPages();
    m_arrCamObj.resize(static_cast<std::size_t>(std::clamp(m_F_n_MaxCam(), 0, MostSlots)));
}

CDlgSetupPageSystemSetting::~CDlgSetupPageSystemSetting()
{
    for (CPropertyPage* const pPage : m_F_ar_Pages())
        delete pPage;
    for (CCamObj_Base*& pCamera : m_arrCamObj) {
        if (pCamera)
            pCamera->m_S_Release(&pCamera);
    }
}

void CDlgSetupPageSystemSetting::m_S_AddPages()
{
    for (const stDef_TabRow& stRow : g_arTabs)
        m_S_AddTab(stRow.stLabel, stRow.fnMake(vm_pNvr));
}

int CDlgSetupPageSystemSetting::m_F_n_MaxCam() const
{
    return vm_pNvr->vm_xmlSystemInfo.m_F_n_GetValueInt(u"/root/Local"_s, u"MaxCam"_s, 0);
}

void CDlgSetupPageSystemSetting::m_S_SetFollowers(CScheduleFollower* pSchedule, CMotionFollower* pMotion)
{
    vm_pSchedule = pSchedule;
    vm_pMotion = pMotion;
}

void CDlgSetupPageSystemSetting::m_S_RefreshMotion(int nIndex)
{
    if (vm_pMotion)
        vm_pMotion->m_S_RefreshCameras(nIndex);
}

void CDlgSetupPageSystemSetting::m_S_AddCamera(int nIndex)
{
    if (vm_pSchedule)
        vm_pSchedule->m_S_CameraAdded(nIndex);
    m_S_RefreshMotion(nIndex);
}

void CDlgSetupPageSystemSetting::m_S_RemoveCamera(int nIndex, int nCount)
{
    if (vm_pSchedule)
        vm_pSchedule->m_S_CameraRemoved(nIndex, nCount);
    m_S_RefreshMotion(nIndex);
}

void CDlgSetupPageSystemSetting::m_S_UpdateCamera(int nIndex, bool bSame)
{
    if (vm_pSchedule)
        vm_pSchedule->m_S_CameraUpdated(nIndex);
    m_S_RefreshMotion(bSame ? nIndex + 1 : nIndex);
}

void CDlgSetupPageSystemSetting::m_S_CopyCamera(int nFrom, int nTo)
{
    if (vm_pSchedule)
        vm_pSchedule->m_S_CameraCopied(nFrom, nTo);
    m_S_RefreshMotion(nTo);
}

void CDlgSetupPageSystemSetting::m_S_SwitchCamera(int nFirst, int nSecond)
{
    if (vm_pSchedule)
        vm_pSchedule->m_S_CameraSwitched(nFirst, nSecond);
    m_S_RefreshMotion(nSecond + 1);
}
