#pragma once

#include "core/CNvrPage.h"

class QComboBox;
class QLineEdit;

/// Tab Network: address, PPPoE, UPnP, the recorder's servers, DDNS. The controls are the working copy, and OK writes
/// them into the System document, as they stand: the recorder decides what to make of them.
class CDlgSetupPageSystemSetting_Network : public CNvrPage
{
    Q_OBJECT

public:
    using CNvrPage::CNvrPage;
    bool OnApply() override { return m_F_b_Store(); }

private:
    void m_S_Make(CForm& objForm) override;
    void m_S_Loaded() override;
    void m_S_MakeAddress(CForm& objForm);
    void m_S_MakeUpnp(CForm& objForm);
    void m_S_MakeServers(CForm& objForm);
    void m_S_TestDdns();

    QLineEdit* vm_pExternal = nullptr;
    QComboBox* vm_pServer = nullptr;
    QList<QLineEdit*> vm_arDdns; ///< host name, account, password
    QLineEdit* vm_pCurrentIp = nullptr;
};
