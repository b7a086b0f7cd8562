#include "setup/CDlgSetupPageSystemSetting.h"

#include <array>

#include "core/CWndNvrEmbedded.h"
#include "setup/camera/CDlgSetupPageSystemSetting_Camera.h"
#include "setup/mail/CDlgSetupPageSystemSetting_AddrBook.h"
#include "setup/mail/CDlgSetupPageSystemSetting_Nofity.h"
#include "setup/motion/CDlgSetupPageSystemSetting_Motion.h"
#include "setup/network/CDlgSetupPageSystemSetting_Network.h"
#include "setup/schedule/CDlgSetupPageSystemSetting_Schedule.h"
#include "setup/system/CDlgSetupPageSystemSetting_System.h"
#include "setup/user/CDlgSetupPageSystemSetting_User.h"

namespace {

constexpr Text TitleText{"SystemSetting", "System Setting"};

// A page that keeps something for each camera gets the sheet as the table of them.
template <class Page>
CPropertyPage* Make(CWndNvrEmbedded* pNvr, CCameraTable* pCameras)
{
    auto* const pPage = new Page(pNvr);
    if constexpr (requires { pPage->m_S_SetCameraTable(pCameras); })
        pPage->m_S_SetCameraTable(pCameras);
    return pPage;
}

struct stDef_TabRow
{
    Text stLabel;
    CPropertyPage* (*fnMake)(CWndNvrEmbedded*, CCameraTable*);
};

const std::array<stDef_TabRow, 8> g_arTabs = {{
    {Text{"Camera", "Camera"}, Make<CDlgSetupPageSystemSetting_Camera>},
    {Text{"Schedule", "Schedule"}, Make<CDlgSetupPageSystemSetting_Schedule>},
    {Text{"Network", "Network"}, Make<CDlgSetupPageSystemSetting_Network>},
    {Text{"System", "System"}, Make<CDlgSetupPageSystemSetting_System>},
    {Text{"User", "User"}, Make<CDlgSetupPageSystemSetting_User>},
    {Text{"MotionDetection", "Motion Detection"}, Make<CDlgSetupPageSystemSetting_Motion>},
    {Text{"AddressBook", "Address Book"}, Make<CDlgSetupPageSystemSetting_AddrBook>},
    {Text{"Notification", "Notification"}, Make<CDlgSetupPageSystemSetting_Nofity>},
}};

} // namespace

CDlgSetupPageSystemSetting::CDlgSetupPageSystemSetting(CWndNvrEmbedded* pNvr, const QString& sCaption,
                                                       unsigned int nSelectPage)
    : CSettingSheet(pNvr, sCaption, TitleText, pNvr, nSelectPage),
      CCameraTable(pNvr),
      vm_objUse(pNvr),
      vm_pNvr(pNvr),
      vm_pEnv(pNvr->vm_pEnv)
{
    m_S_AddPages();
}

// The pages go before the cameras that they know.
CDlgSetupPageSystemSetting::~CDlgSetupPageSystemSetting()
{
    for (CPropertyPage* const pPage : m_F_ar_Pages())
        delete pPage;
    m_S_ReleaseAll();   // while the connection is there for sure:
    setParent(nullptr); // it may go with this use of it
}

void CDlgSetupPageSystemSetting::m_S_AddPages()
{
    for (const stDef_TabRow& stRow : g_arTabs)
        m_S_AddTab(stRow.stLabel, stRow.fnMake(vm_pNvr, this));
    for (CPropertyPage* const pPage : m_F_ar_Pages()) {
        if (auto* const pSchedule = qobject_cast<CDlgSetupPageSystemSetting_Schedule*>(pPage))
            vm_pSchedule = pSchedule;
        if (auto* const pMotion = qobject_cast<CDlgSetupPageSystemSetting_Motion*>(pPage))
            connect(this, &CDlgSetupPageSystemSetting::S_RefreshCameras, pMotion,
                    &CDlgSetupPageSystemSetting_Motion::m_S_RefreshCameras);
    }
}

void CDlgSetupPageSystemSetting::m_S_TellMotion(int nIndex)
{
    Q_EMIT S_RefreshCameras(nIndex);
}

void CDlgSetupPageSystemSetting::m_S_AddCamera(int nIndex)
{
    vm_pSchedule->m_S_CameraAdded(nIndex);
    m_S_TellMotion(nIndex);
}

void CDlgSetupPageSystemSetting::m_S_RemoveCamera(int nIndex, int nCount)
{
    vm_pSchedule->m_S_CameraRemoved(nIndex, nCount);
    m_S_TellMotion(nIndex);
}

void CDlgSetupPageSystemSetting::m_S_UpdateCamera(int nIndex, bool bSame)
{
    vm_pSchedule->m_S_CameraUpdated(nIndex);
    m_S_TellMotion(bSame ? nIndex + 1 : nIndex);
}

void CDlgSetupPageSystemSetting::m_S_CopyCamera(int nFrom, int nTo)
{
    vm_pSchedule->m_S_CameraCopied(nFrom, nTo);
    m_S_TellMotion(nTo);
}

void CDlgSetupPageSystemSetting::m_S_SwitchCamera(int nFirst, int nSecond)
{
    vm_pSchedule->m_S_CameraSwitched(nFirst, nSecond);
    m_S_TellMotion(nSecond + 1);
}
