#include "setup/camera/CCameraAutoSetting.h"

#include <QCoreApplication>
#include <QLabel>
#include <QProgressDialog>
#include <algorithm>

#include "core/CWndNvrEmbedded.h"
#include "drivers/stDef_CameraTemplate.h"
#include "setup/camera/CCameraList.h"

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

QString CCameraAutoSetting::m_F_s_Word(const stDef_Text& stText) const
{
    return vm_pNvr->m_F_s_Text(stText, QString::fromUtf8(stText.pszDefault));
}

std::unique_ptr<QProgressDialog> CCameraAutoSetting::m_F_p_Progress(int nSteps) const
{
    auto pProgress = std::make_unique<QProgressDialog>(QString(), m_F_s_Word(StopText), 0, nSteps, vm_pParent);
    auto* const pLabel = new QLabel;
    pLabel->setTextFormat(Qt::PlainText); // cameras choose their names
    pLabel->setAlignment(Qt::AlignCenter);
    pProgress->setLabel(pLabel);
    pProgress->setWindowTitle(m_F_s_Word(TitleText));
    pProgress->setWindowModality(Qt::WindowModal);
    pProgress->setAutoReset(false);
    pProgress->setMinimumWidth(ProgressWidth * pProgress->fontMetrics().averageCharWidth());
    pProgress->show(); // the first camera may take two minutes
    return pProgress;
}

stDef_AutoSettingResult CCameraAutoSetting::m_F_o_Run(const CCameraSearchList::Rows& arFound)
{
    const auto stTemplate = stDef_CameraTemplate::s_F_o_Read(vm_pNvr->vm_xmlSystem);
    const CCameraProbe objProbe(vm_pNvr);
    const int nAll = std::min(static_cast<int>(arFound.size()), vm_pCameras->m_F_n_Room());
    stDef_AutoSettingResult stResult;
    std::unique_ptr<QProgressDialog> pProgress;
    for (int nStep = 0; nStep < static_cast<int>(arFound.size()); ++nStep) {
        stResult.bFull = !vm_pCameras->m_F_b_HasRoom();
        if (stResult.bFull)
            break;
        if (!pProgress)
            pProgress = m_F_p_Progress(nAll);
        const stDef_SearchIPC& stFound = *arFound[static_cast<std::size_t>(nStep)];
        const QString sWho = stFound.DeviceName + u' ' + stFound.m_F_s_Address();
        pProgress->setLabelText(m_F_s_Word(StepText).arg(QString::number(nStep + 1), QString::number(nAll), sWho));
        pProgress->setValue(nStep);
        QCoreApplication::processEvents(); // lets the user press the button
        if (pProgress->wasCanceled())
            break;
        stDef_CameraReplies stReplies;
        const stDef_CameraValues stCamera = Described(stFound, stTemplate);
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
