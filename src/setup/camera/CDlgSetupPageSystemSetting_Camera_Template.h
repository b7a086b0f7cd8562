#pragma once

#include "drivers/stDef_CameraTemplate.h"
#include "setup/camera/stDef_TemplateLists.h"
#include "toolkit/sheet/CFormDialog.h"

class CPasswordEdit;
class CWndNvrEmbedded;
class QComboBox;
class QLineEdit;

/// Edits how newly added cameras are set up. OK writes it into the System document.
class CDlgSetupPageSystemSetting_Camera_Template : public CFormDialog
{
    Q_OBJECT

public:
    CDlgSetupPageSystemSetting_Camera_Template(CWndNvrEmbedded* pNvr, QWidget* pParent);

protected:
    void accept() override;

private:
    void m_S_Make(CFormGroup& grp);
    void m_S_Fill(const stDef_CameraTemplate& stTemplate);

    CWndNvrEmbedded* vm_pNvr;
    stDef_TemplateLists vm_stLists;
    QComboBox* vm_pRateControl = nullptr;
    QComboBox* vm_pQuality = nullptr;
    QLineEdit* vm_pAccount = nullptr;
    CPasswordEdit* vm_pPassword = nullptr;
};
