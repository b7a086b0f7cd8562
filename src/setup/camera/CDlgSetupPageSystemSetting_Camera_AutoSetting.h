#pragma once

#include "toolkit/sheet/CFormDialog.h"

class CIPAddressEdit;
class CWndNvrEmbedded;
class QLineEdit;
struct stDef_SearchIPC;

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
    QLineEdit* vm_pModel;
    CIPAddressEdit* vm_pIP;
    QLineEdit* vm_pMAC;
    QString vm_sModel;
    QString vm_sIP;
    QString vm_sMAC;
};
