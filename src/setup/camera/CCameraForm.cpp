#include "setup/camera/CCameraForm.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <algorithm>

#include "drivers/BrandCatalogue.h"
#include "host/Lib_Bedrock.h"
#include "toolkit/form/CFormGroup.h"
#include "toolkit/form/CommonTexts.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int WsseRow = 1;

const stDef_CameraValues g_stNew = {
    -1, u"Any"_s, {}, u"0.0.0.0"_s, u"80"_s, u"554"_s, 0, u"admin"_s, {},
};

} // namespace

QGroupBox* CCameraForm::m_F_p_Make(CForm& objForm)
{
    CFormGroup grp(objForm, Text{"Setting", "Setting"});
    using namespace nsForms;
    using Values = stDef_CameraValues;
    CMemberForm<Values>& obj = vm_objValues;
    vm_pVendor =
        obj.m_F_p_Bind<ByData>(&Values::nVendorID, grp.m_F_p_List(Text{"Vendor", "Vendor"}, "Vendor", QStringList()));
    vm_pModel = obj.m_F_p_Bind<AsText>(&Values::sModel, grp.m_F_p_ReadOnly(Text{"ModelName", "Model Name"}, "Model"));
    vm_pName = obj.m_F_p_Bind<AsText>(&Values::sName, grp.m_F_p_Edit(Text{"CameraName", "Camera Name"}, "Name"));
    vm_pIP = obj.m_F_p_Bind<AsText>(&Values::sIP, grp.m_F_p_Address(nsTexts::Address, "IP"));
    vm_pHttpPort = obj.m_F_p_Bind<AsText>(&Values::sHttpPort, grp.m_F_p_Edit(nsTexts::HttpPort, "HttpPort"));
    vm_pRtspPort = obj.m_F_p_Bind<AsText>(&Values::sRtspPort, grp.m_F_p_Edit(nsTexts::RtspPort, "RtspPort"));
    vm_pOnvifAuth = obj.m_F_p_Bind<ByData>(
        &Values::nOnvifAuth, grp.m_F_p_List(Text{"Authentication", "Authentication"}, "OnvifAuth", QStringList()));
    vm_pUser = obj.m_F_p_Bind<AsText>(&Values::sUser, grp.m_F_p_Edit(nsTexts::Account, "UserName"));
    vm_pPassword = obj.m_F_p_Bind<AsText>(&Values::sPassword, grp.m_F_p_ShownPassword(nsTexts::Password, "Password"));
    m_S_Reset();
    m_S_FillLists();
    connect(vm_pVendor, &QComboBox::currentIndexChanged, this, &CCameraForm::m_S_OnVendorChanged);
    return grp.m_F_p_Box();
}

void CCameraForm::m_S_FillLists()
{
    for (const stDef_BrandRow& stRow : g_astBrandCatalogue) {
        if (stRow.bListed)
            vm_pVendor->addItem(QString::fromUtf8(stRow.strName), stRow.nVendorID);
    }
    vm_pVendor->setCurrentIndex(0);
    vm_pOnvifAuth->addItem(u"None"_s, 0);
    vm_pOnvifAuth->addItem(u"WSSE"_s, 1);
    vm_pOnvifAuth->setCurrentIndex(WsseRow); // of a form that opens; one that is cleared has "None"
}

void CCameraForm::m_S_Reset()
{
    m_S_Show(g_stNew);
    const QSignalBlocker objQuiet(vm_pVendor);
    vm_pVendor->setCurrentIndex(0);
    vm_pOnvifAuth->setCurrentIndex(0);
    vm_pPassword->m_S_SetShown(false);
}

void CCameraForm::m_S_Show(stDef_CameraValues stValues)
{
    const bool bOnvif = stValues.nVendorID == g_nOnvifVendor;
    const stDef_CameraValues stNow = vm_objValues.m_F_o_Taken();
    if (bOnvif) // what the vendor hides stays as it was
        stValues.sRtspPort = stNow.sRtspPort;
    else
        stValues.nOnvifAuth = stNow.nOnvifAuth;
    const QSignalBlocker objQuiet(vm_pVendor); // it is no choice of the user's, which would reset what hangs on it
    vm_objValues.m_S_Show(stValues);
    m_S_ShowOnvif(bOnvif);
}

void CCameraForm::m_S_ShowOnvif(bool bOnvif)
{
    CForm::s_S_ShowRow(vm_pRtspPort, !bOnvif);
    CForm::s_S_ShowRow(vm_pOnvifAuth, bOnvif);
}

void CCameraForm::m_S_OnVendorChanged()
{
    const bool bOnvif = vm_pVendor->currentData() == g_nOnvifVendor;
    m_S_ShowOnvif(bOnvif);
    if (bOnvif)
        vm_pOnvifAuth->setCurrentIndex(0);
    else
        vm_pRtspPort->setText(u"554"_s);
}

void CCameraForm::m_S_MarkAddress(bool bLinkLocal)
{
    QLabel* const pLabel = CForm::s_F_p_LabelOf(vm_pIP);
    const QString sPlain = u" : "_s, sMarked = u"* : "_s;
    QString sText = pLabel->text();
    sText.chop(sText.endsWith(sMarked) ? sMarked.size() : sPlain.size());
    pLabel->setText(sText + (bLinkLocal ? sMarked : sPlain));
}

stDef_CameraValues CCameraForm::m_F_o_Values() const
{
    stDef_CameraValues st = vm_objValues.m_F_o_Taken();
    // An authentication that the list doesn't have counts as none.
    st.nOnvifAuth = st.nVendorID == g_nOnvifVendor ? std::max(st.nOnvifAuth, 0) : 1;
    return st;
}

bool CCameraForm::m_F_b_HasVendor() const
{
    return vm_pVendor->currentIndex() >= 0;
}

int CCameraForm::m_F_n_VendorRow(int nVendorID) const
{
    return vm_pVendor->findData(nVendorID);
}

QString CCameraForm::m_F_s_VendorName(int nRow) const
{
    return vm_pVendor->itemText(nRow);
}

void CCameraForm::m_S_SetModel(const QString& sModel)
{
    vm_pModel->setText(sModel);
}

void CCameraForm::m_S_SetName(const QString& sName)
{
    vm_pName->setText(sName);
}

void CCameraForm::m_S_SetRtspPort(const QString& sPort)
{
    vm_pRtspPort->setText(sPort);
}

// The RTSP port counts also while it is hidden.
QWidget* CCameraForm::m_F_p_Problem() const
{
    if (vm_pIP->m_F_b_IsNone())
        return vm_pIP;
    for (QLineEdit* const pPort : {vm_pHttpPort, vm_pRtspPort}) {
        if (CXmlObj::s_F_n_ToInt(pPort->text()) <= 0)
            return pPort;
    }
    return vm_pUser->text().isEmpty() ? vm_pUser : nullptr;
}

void CCameraForm::m_S_FocusProblem()
{
    if (QWidget* const pEdit = m_F_p_Problem()) {
        pEdit->setFocus();
        QMetaObject::invokeMethod(pEdit, "selectAll"); // which edits and the address have
    }
}
