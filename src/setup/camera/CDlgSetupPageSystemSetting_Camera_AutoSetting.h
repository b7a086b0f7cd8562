#pragma once

#include "setup/camera/stDef_SearchIPC.h"
#include "toolkit/form/CMemberForm.h"
#include "toolkit/sheet/CFormDialog.h"

class CWndNvrEmbedded;

/// Asks which of the cameras that a search finds are to be added.
class CDlgSetupPageSystemSetting_Camera_AutoSetting : public CFormDialog
{
    Q_OBJECT

public:
    CDlgSetupPageSystemSetting_Camera_AutoSetting(CWndNvrEmbedded* pNvr, QWidget* pParent);

    /// After OK: whether the camera has all three texts in its model, address and MAC, in either case. What is empty,
    /// and the address 0.0.0.0, fit every camera.
    bool m_F_b_Passes(const stDef_SearchIPC& stRow) const;

protected:
    void accept() override;

private:
    CMemberForm<stDef_SearchIPC> vm_objTexts;
    stDef_SearchIPC vm_stWanted;
};
