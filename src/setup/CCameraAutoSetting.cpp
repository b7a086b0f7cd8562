#include "setup/CCameraAutoSetting.h"

#include <QCoreApplication>
#include <QProgressDialog>
#include <algorithm>

#include "core/CWndNvrEmbedded.h"
#include "setup/CCameraList.h"
#include "setup/stDef_CameraTemplate.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int ProgressWidth = 50; ///< letters

constexpr Text TitleText{"AutoSetting", "Auto Setting"};
constexpr Text StepText{"AutoSettingStep", "Camera %1 of %2: %3"};
constexpr Text StopText{"Stop", "Stop"};

stDef_CameraValues Described(const stDef_SearchIPC& stFound, const stDef_CameraTemplate& stTemplate)
{
    stDef_CameraValues st;
    st.nVendorID = stFound.Vendor;
    st.sIP = stFound.IP;
    st.sHttpPort = QString::number(stFound.HttpPort);
    st.nOnvifAuth = stFound.OnvifAuth;
    st.sUser = stTemplate.sAccount;
    st.sPassword = stTemplate.sPassword;
    return st;
}

} // namespace

CCameraAutoSetting::CCameraAutoSetting(CWndNvrEmbedded* pNvr, CCameraList* pCameras, QWidget* pParent)
    : vm_pNvr(pNvr), vm_pCameras(pCameras), vm_pParent(pParent)
{}

int CCameraAutoSetting::m_F_n_Run(const CCameraSearchList::Rows& arFound)
{
    const auto Word = [this](const Text& st) { return vm_pNvr->m_F_s_Text(st, QString::fromUtf8(st.pszDefault)); };
    const auto stTemplate = stDef_CameraTemplate::s_F_o_Read(vm_pNvr->vm_xmlSystem);
    const CCameraProbe objProbe(vm_pNvr);
    const int nAll = std::min(static_cast<int>(arFound.size()), vm_pCameras->m_F_n_Room());
    QProgressDialog objProgress({}, Word(StopText), 0, nAll, vm_pParent);
    objProgress.setWindowTitle(Word(TitleText));
    objProgress.setWindowModality(Qt::WindowModal);
    objProgress.setAutoReset(false);
    objProgress.setMinimumWidth(ProgressWidth * objProgress.fontMetrics().averageCharWidth());
    objProgress.show(); // the first camera may take two minutes
    int nAdded = 0;
    for (int nStep = 0; nStep < static_cast<int>(arFound.size()) && vm_pCameras->m_F_b_HasRoom(); ++nStep) {
        const stDef_SearchIPC& stFound = *arFound[static_cast<std::size_t>(nStep)];
        const QString sWho = stFound.DeviceName + u' ' + stFound.m_F_s_Address();
        objProgress.setLabelText(Word(StepText).arg(QString::number(nStep + 1), QString::number(nAll), sWho));
        objProgress.setValue(nStep);
        QCoreApplication::processEvents(); // lets the user press the button
        if (objProgress.wasCanceled())
            break;
        stDef_CameraReplies stReplies;
        const stDef_CameraValues stCamera = Described(stFound, stTemplate);
        if (!objProbe.m_F_b_DetectAndSupport(stCamera, stReplies))
            break;
        nAdded += vm_pCameras->m_F_b_AddFound(stCamera, stReplies);
    }
    return nAdded;
}
