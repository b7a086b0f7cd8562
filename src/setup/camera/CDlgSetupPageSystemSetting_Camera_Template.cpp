#include "setup/camera/CDlgSetupPageSystemSetting_Camera_Template.h"

#include <QComboBox>
#include <QLineEdit>

#include "core/CWndNvrEmbedded.h"
#include "toolkit/controls/CPasswordEdit.h"
#include "toolkit/form/CommonTexts.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int BestQuality = 100;
constexpr int CbrRow = 0;
constexpr int EvbrRow = 1;

} // namespace

CDlgSetupPageSystemSetting_Camera_Template::CDlgSetupPageSystemSetting_Camera_Template(CWndNvrEmbedded* pNvr,
                                                                                       QWidget* pParent)
    : CFormDialog(Text{"TemplateSetting", "Template Setting"}, {}, pParent), vm_pNvr(pNvr)
{
    m_S_Make(m_F_o_Group());
    m_S_Fill(stDef_CameraTemplate::s_F_o_Read(vm_pNvr->vm_xmlSystem));
    m_S_Finish(*pNvr);
}

void CDlgSetupPageSystemSetting_Camera_Template::m_S_Make(CFormGroup& grp)
{
    vm_stLists = stDef_TemplateLists::s_F_o_Make(grp);
    vm_pRateControl = grp.m_F_p_List(Text{"RateControl", "Rate Control"}, "RateCtrl", {u"CBR"_s, u"EVBR"_s});
    vm_pQuality = grp.m_F_p_List(Text{"Quality", "Quality"}, "Quality", QStringList());
    vm_pAccount = grp.m_F_p_Edit(nsTexts::Account, "Account");
    vm_pPassword = grp.m_F_p_ShownPassword(nsTexts::Password, "Password");
    connect(vm_pRateControl, &QComboBox::activated, this,
            [this](int nRow) { vm_pQuality->setEnabled(nRow != CbrRow); });
}

void CDlgSetupPageSystemSetting_Camera_Template::m_S_Fill(const stDef_CameraTemplate& stTemplate)
{
    vm_stLists.m_S_Show(stTemplate);
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
    if (vm_stLists.pResolution->currentIndex() >= 0)
        st.nResolution = vm_stLists.pResolution->currentIndex();
    if (vm_stLists.pFps->currentIndex() >= 0)
        st.nFPS = vm_stLists.pFps->currentData().toInt();
    st.nRateCtrl = vm_pRateControl->currentIndex() + 1;
    st.nQuality = BestQuality - vm_pQuality->currentIndex();
    st.sAccount = vm_pAccount->text();
    st.sPassword = vm_pPassword->text();
    st.m_S_Write(vm_pNvr->vm_xmlSystem);
    CFormDialog::accept();
}
