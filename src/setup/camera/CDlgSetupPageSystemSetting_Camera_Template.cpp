#include "setup/camera/CDlgSetupPageSystemSetting_Camera_Template.h"

#include <QComboBox>

#include "core/CWndNvrEmbedded.h"
#include "setup/camera/stDef_TemplateLists.h"
#include "toolkit/form/CommonTexts.h"

using namespace Qt::StringLiterals;

namespace {

using Template = stDef_CameraTemplate;

constexpr int BestQuality = 100;
constexpr int CbrRow = 0;
constexpr int EvbrRow = 1;

struct AsRateControl
{
    static void s_S_Show(QComboBox& objList, const QString& sValue)
    {
        objList.setCurrentIndex(sValue.toInt() == 0 ? EvbrRow : sValue.toInt() - 1);
    }
    static QString s_F_s_Stored(const QComboBox& objList) { return QString::number(objList.currentIndex() + 1); }
};

// A stored quality outside 1..100 chooses no entry; if it stays so, 101 is written.
struct AsQuality
{
    static void s_S_Show(QComboBox& objList, const QString& sValue)
    {
        objList.setCurrentIndex(BestQuality - sValue.toInt());
    }
    static QString s_F_s_Stored(const QComboBox& objList)
    {
        return QString::number(BestQuality - objList.currentIndex());
    }
};

} // namespace

CDlgSetupPageSystemSetting_Camera_Template::CDlgSetupPageSystemSetting_Camera_Template(CWndNvrEmbedded* pNvr,
                                                                                       QWidget* pParent)
    : CFormDialog(Text{"TemplateSetting", "Template Setting"}, {}, pParent), vm_pNvr(pNvr)
{
    m_S_Make(m_F_o_Group());
    m_S_Finish(*pNvr);
}

void CDlgSetupPageSystemSetting_Camera_Template::m_S_Make(CFormGroup& grp)
{
    QStringList arQualities;
    for (int nQuality = BestQuality; nQuality >= 1; --nQuality)
        arQualities.append(QString::number(nQuality));
    CMemberForm<Template>& obj = vm_objTemplate;
    stDef_TemplateLists::s_F_o_Make(grp, obj);
    QComboBox* const pRateControl = obj.m_F_p_Bind<AsRateControl>(
        &Template::nRateCtrl, grp.m_F_p_List(Text{"RateControl", "Rate Control"}, "RateCtrl", {u"CBR"_s, u"EVBR"_s}));
    QComboBox* const pQuality = obj.m_F_p_Bind<AsQuality>(
        &Template::nQuality, grp.m_F_p_List(Text{"Quality", "Quality"}, "Quality", arQualities));
    obj.m_F_p_Bind<nsForms::AsText>(&Template::sAccount, grp.m_F_p_Edit(nsTexts::Account, "Account"));
    obj.m_F_p_Bind<nsForms::AsText>(&Template::sPassword, grp.m_F_p_ShownPassword(nsTexts::Password, "Password"));

    obj.m_S_Show(Template::s_F_o_Read(vm_pNvr->vm_xmlSystem));
    pQuality->setEnabled(pRateControl->currentIndex() != CbrRow);
    connect(pRateControl, &QComboBox::activated, pQuality,
            [pQuality](int nRow) { pQuality->setEnabled(nRow != CbrRow); });
}

void CDlgSetupPageSystemSetting_Camera_Template::accept()
{
    const Template stStored = Template::s_F_o_Read(vm_pNvr->vm_xmlSystem);
    Template st = vm_objTemplate.m_F_o_Taken();
    for (int Template::*const pChoice : {&Template::nResolution, &Template::nFPS}) {
        if (st.*pChoice < 0) // no entry of its list
            st.*pChoice = stStored.*pChoice;
    }
    st.m_S_Write(vm_pNvr->vm_xmlSystem);
    CFormDialog::accept();
}
