#include "setup/camera/CDlgSetupPageSystemSetting_Camera_AutoSetting.h"

#include <QLabel>
#include <QLineEdit>

#include "core/CWndNvrEmbedded.h"
#include "toolkit/controls/CIPAddressEdit.h"

using namespace Qt::StringLiterals;

namespace {

using Row = stDef_SearchIPC;

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
    : CFormDialog(Text{"AutoSetting", "Auto Setting"}, {}, pParent)
{
    CFormGroup& grp = m_F_o_Group();
    auto* const pHint = new QLabel;
    pHint->setWordWrap(true);
    m_F_o_Form().m_F_o_Texts().m_S_AddText(
        pHint, Text{"AutoSettingText", "Please Input Search Parameter Or Empty To Search Camera"});
    grp.m_S_AddWide(pHint, "AutoSettingText");
    QLineEdit* const pModel =
        vm_objTexts.m_F_p_Bind<nsForms::AsText>(&Row::DeviceModel, grp.m_F_p_Edit(Text{"ModelName", "Model"}, "Model"));
    vm_objTexts.m_F_p_Bind<nsForms::AsText>(&Row::IP, grp.m_F_p_Address(Text{"IP", "IP"}, "IP"));
    vm_objTexts.m_F_p_Bind<nsForms::AsText>(&Row::MAC, grp.m_F_p_Edit(Text{"MAC", "MAC"}, "MAC"));
    m_S_Finish(*pNvr);
    setMinimumWidth(MinimumWidth * fontMetrics().averageCharWidth());
    pModel->setFocus();
}

void CDlgSetupPageSystemSetting_Camera_AutoSetting::accept()
{
    vm_objTexts.m_S_Take(vm_stWanted);
    vm_stWanted.IP = Trimmed(vm_stWanted.IP);
    CFormDialog::accept();
}

bool CDlgSetupPageSystemSetting_Camera_AutoSetting::m_F_b_Passes(const stDef_SearchIPC& stRow) const
{
    const auto Fits = [](const QString& sValue, const QString& sWanted) {
        return sValue.contains(sWanted, Qt::CaseInsensitive);
    };
    const bool bAddress =
        vm_stWanted.IP == QString::fromUtf16(NoAddress) || Fits(CIPAddressEdit::s_F_s_Plain(stRow.IP), vm_stWanted.IP);
    return bAddress && Fits(stRow.DeviceModel, vm_stWanted.DeviceModel) && Fits(stRow.MAC, vm_stWanted.MAC);
}
