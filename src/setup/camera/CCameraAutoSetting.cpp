#include "setup/camera/CCameraAutoSetting.h"

#include <algorithm>

#include "core/CPageRequests.h"
#include "core/CWndNvrEmbedded.h"
#include "drivers/stDef_CameraTemplate.h"
#include "setup/camera/CCameraList.h"
#include "toolkit/form/CommonTexts.h"

using namespace Qt::StringLiterals;

namespace {

constexpr Text StepText{"AutoSettingStep", "Camera %1 of %2: %3"};

} // namespace

CCameraAutoSetting::CCameraAutoSetting(CWndNvrEmbedded* pNvr, CCameraList* pCameras, QWidget* pParent)
    : vm_pNvr(pNvr), vm_pCameras(pCameras), vm_pParent(pParent)
{}

stDef_AutoSettingResult CCameraAutoSetting::m_F_o_Run(const CCameraSearchList::Rows& arFound)
{
    const auto stTemplate = stDef_CameraTemplate::s_F_o_Read(vm_pNvr->vm_xmlSystem);
    CPageRequests objRequests(vm_pNvr, vm_pParent, nsTexts::AskingCamera);
    const CCameraProbe objProbe(objRequests);
    const QString sStep = vm_pNvr->m_F_s_Text(StepText, QString::fromUtf8(StepText.pszDefault));
    const int nAll = std::min(static_cast<int>(arFound.size()), vm_pCameras->m_F_n_Room());
    stDef_AutoSettingResult stResult;
    for (int nStep = 0; nStep < static_cast<int>(arFound.size()); ++nStep) {
        stResult.bFull = !vm_pCameras->m_F_b_HasRoom();
        if (stResult.bFull)
            break;
        const stDef_SearchIPC& stFound = *arFound[static_cast<std::size_t>(nStep)];
        const QString sWho = stFound.DeviceName + u' ' + stFound.m_F_s_Address();
        objRequests.m_S_ShowProgress(sStep.arg(QString::number(nStep + 1), QString::number(nAll), sWho), nStep, nAll);
        stDef_CameraReplies stReplies;
        stDef_CameraValues stCamera = stFound.m_F_o_Camera(stTemplate);
        stCamera.sIP = stFound.IP; // also of one that is shown by its link-local address
        if (!objProbe.m_F_b_DetectAndSupport(stCamera, stReplies))
            break;
        if (!vm_pCameras->m_F_b_AddFound(stCamera, stReplies))
            continue;
        ++stResult.nAdded;
        if (!stReplies.xmlDetect.m_F_b_IsOpen())
            stResult.arUnreached << sWho;
        else if (!stDef_CameraReplies::s_F_b_Recognized(stReplies.xmlDetect))
            stResult.arRefused << sWho;
    }
    return stResult;
}
