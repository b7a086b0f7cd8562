#include "setup/CDlgSetupPageSystemSetting_Camera_Template.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QVBoxLayout>

#include "core/CWndNvrEmbedded.h"
#include "toolkit/CDialogButtons.h"
#include "toolkit/CForm.h"
#include "toolkit/CMnemonics.h"
#include "toolkit/CPasswordEdit.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int BestQuality = 100;
constexpr int CbrRow = 0;
constexpr int EvbrRow = 1;

} // namespace

CDlgSetupPageSystemSetting_Camera_Template::CDlgSetupPageSystemSetting_Camera_Template(CWndNvrEmbedded* pNvr,
                                                                                       QWidget* pParent)
    : QDialog(pParent), vm_pNvr(pNvr)
{
    CForm objForm(this, &vm_objTexts);
    m_S_Make(objForm);
    m_S_Fill(stDef_CameraTemplate::s_F_o_Read(vm_pNvr->vm_xmlSystem));
    vm_objTexts.m_S_Apply(*vm_pNvr);
    CMnemonics::s_S_Assign(this);
    objForm.m_S_Align();
}

void CDlgSetupPageSystemSetting_Camera_Template::m_S_Make(CForm& objForm)
{
    auto* const pLayout = new QVBoxLayout(this);
    vm_objTexts.m_S_Add(Text{"TemplateSetting", "Template Setting"}, [this](const QString& s) { setWindowTitle(s); });
    pLayout->addWidget(
        objForm.m_F_p_Group(Text{"TemplateSetting", "Template Setting"}, "TemplateSetting", emDef_TextForm::Colon));
    vm_pResolution = objForm.m_F_p_List(Text{"Resolution", "Resolution"}, "Resolution");
    vm_pFps = objForm.m_F_p_List(Text{"FPS", "FPS"}, "FPS");
    vm_pRateControl = objForm.m_F_p_List(Text{"RateControl", "Rate Control"}, "RateCtrl");
    vm_pQuality = objForm.m_F_p_List(Text{"Quality", "Quality"}, "Quality");
    vm_pAccount = objForm.m_F_p_Edit(Text{"Account", "Account"}, "Account");
    vm_pPassword = objForm.m_F_p_ShownPassword(Text{"Password", "Password"}, "Password");
    pLayout->addWidget(new CDialogButtons(this, vm_objTexts));
    connect(vm_pRateControl, &QComboBox::activated, this,
            [this](int nRow) { vm_pQuality->setEnabled(nRow != CbrRow); });
}

void CDlgSetupPageSystemSetting_Camera_Template::m_S_Fill(const stDef_CameraTemplate& stTemplate)
{
    stDef_CameraTemplate::s_S_FillResolutions(vm_pResolution);
    stDef_CameraTemplate::s_S_FillRates(vm_pFps);
    stTemplate.m_S_Select(vm_pResolution, vm_pFps);
    vm_pRateControl->addItems({u"CBR"_s, u"EVBR"_s});
    vm_pRateControl->setCurrentIndex(stTemplate.nRateCtrl == 0 ? EvbrRow : stTemplate.nRateCtrl - 1);
    for (int nQuality = BestQuality; nQuality >= 1; --nQuality)
        vm_pQuality->addItem(QString::number(nQuality));
    vm_pQuality->setCurrentIndex(BestQuality - stTemplate.nQuality);
    vm_pQuality->setEnabled(stTemplate.nRateCtrl != CbrRow + 1);
    vm_pAccount->setText(stTemplate.sAccount);
    vm_pPassword->setText(stTemplate.sPassword);
}

// A stored quality outside 1..100 chooses no entry; if it stays so, 101 is written.
void CDlgSetupPageSystemSetting_Camera_Template::accept()
{
    stDef_CameraTemplate st = stDef_CameraTemplate::s_F_o_Read(vm_pNvr->vm_xmlSystem);
    if (vm_pResolution->currentIndex() >= 0)
        st.nResolution = vm_pResolution->currentIndex();
    if (vm_pFps->currentIndex() >= 0)
        st.nFPS = vm_pFps->currentData().toInt();
    st.nRateCtrl = vm_pRateControl->currentIndex() + 1;
    st.nQuality = BestQuality - vm_pQuality->currentIndex();
    st.sAccount = vm_pAccount->text();
    st.sPassword = vm_pPassword->text();
    st.m_S_Write(vm_pNvr->vm_xmlSystem);
    QDialog::accept();
}
