#pragma once

#include "drivers/stDef_CameraTemplate.h"
#include "toolkit/form/CMemberForm.h"
#include "toolkit/sheet/CFormDialog.h"

class CWndNvrEmbedded;

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

    CWndNvrEmbedded* vm_pNvr;
    CMemberForm<stDef_CameraTemplate> vm_objTemplate;
};
