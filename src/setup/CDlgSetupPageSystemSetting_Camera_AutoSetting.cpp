#include "setup/CDlgSetupPageSystemSetting_Camera_AutoSetting.h"

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "core/CWndNvrEmbedded.h"
#include "setup/stDef_SearchIPC.h"
#include "toolkit/CDialogButtons.h"
#include "toolkit/CForm.h"
#include "toolkit/CIPAddressEdit.h"
#include "toolkit/CMnemonics.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int MinimumWidth = 50; ///< letters
constexpr char16_t NoAddress[] = u"0.0.0.0";

// An address without the zeroes at its end fits a whole network: 192.168.0.0 becomes 192.168.
QString Trimmed(const QString& sAddress)
{
    QStringList arParts = sAddress.split(u'.');
    while (!arParts.isEmpty() && arParts.last().toInt() == 0)
        arParts.removeLast();
    return arParts.isEmpty() ? QString::fromUtf16(NoAddress) : arParts.join(u'.');
}

} // namespace

CDlgSetupPageSystemSetting_Camera_AutoSetting::CDlgSetupPageSystemSetting_Camera_AutoSetting(CWndNvrEmbedded* pNvr,
                                                                                             QWidget* pParent)
    : QDialog(pParent), vm_pNvr(pNvr)
{
    CForm objForm(this, &vm_objTexts);
    auto* const pLayout = new QVBoxLayout(this);
    vm_objTexts.m_S_Add(Text{"AutoSetting", "Auto Setting"}, [this](const QString& s) { setWindowTitle(s); });
    pLayout->addWidget(objForm.m_F_p_Group(Text{"AutoSetting", "Auto Setting"}, "AutoSetting", emDef_TextForm::Colon));
    auto* const pHint = new QLabel;
    pHint->setWordWrap(true);
    vm_objTexts.m_S_AddText(pHint, Text{"AutoSettingText", "Please Input Search Parameter Or Empty To Search Camera"});
    objForm.m_S_Wide(pHint, "AutoSettingText");
    vm_pModel = objForm.m_F_p_Edit(Text{"ModelName", "Model"}, "Model");
    vm_pIP = objForm.m_F_p_Address(Text{"IP", "IP"}, "IP");
    vm_pMAC = objForm.m_F_p_Edit(Text{"MAC", "MAC"}, "MAC");
    pLayout->addWidget(new CDialogButtons(this, vm_objTexts));
    vm_objTexts.m_S_Apply(*vm_pNvr);
    CMnemonics::s_S_Assign(this);
    objForm.m_S_Align();
    setMinimumWidth(MinimumWidth * fontMetrics().averageCharWidth());
    vm_pModel->setFocus();
}

void CDlgSetupPageSystemSetting_Camera_AutoSetting::accept()
{
    vm_sModel = vm_pModel->text().toLower();
    vm_sIP = Trimmed(vm_pIP->text()).toLower();
    vm_sMAC = vm_pMAC->text().toLower();
    QDialog::accept();
}

bool CDlgSetupPageSystemSetting_Camera_AutoSetting::m_F_b_Passes(const stDef_SearchIPC& stRow) const
{
    const bool bAddress = vm_sIP == QString::fromUtf16(NoAddress) || stRow.IP.toLower().contains(vm_sIP);
    return bAddress && stRow.DeviceModel.toLower().contains(vm_sModel) && stRow.MAC.toLower().contains(vm_sMAC);
}
