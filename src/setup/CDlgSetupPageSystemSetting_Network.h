#pragma once

#include "toolkit/form/CEnableTable.h"
#include "toolkit/form/CFieldTable.h"
#include "toolkit/form/CForm.h"
#include "toolkit/form/CTextTable.h"
#include "toolkit/sheet/CPropertyPage.h"

class CEnvObj;
class CWndNvrEmbedded;
class QBoxLayout;

/// Tab Network: address, PPPoE, UPnP, the recorder's servers, DDNS. The controls are the working copy, and OK writes
/// them into the System document, as they stand: the recorder decides what to make of them.
class CDlgSetupPageSystemSetting_Network : public CPropertyPage
{
    Q_OBJECT

public:
    explicit CDlgSetupPageSystemSetting_Network(CWndNvrEmbedded* pNvr);

    int OnInitDialog() override;
    bool OnApply() override;

private:
    void m_S_MakeAddress(CForm& objForm, QBoxLayout* pColumn);
    void m_S_MakePppoe(CForm& objForm, QBoxLayout* pColumn);
    void m_S_MakeUpnp(CForm& objForm, QBoxLayout* pColumn);
    void m_S_MakeTraversal(CForm& objForm, QBoxLayout* pColumn);
    void m_S_MakeServer(CForm& objForm, QBoxLayout* pColumn);
    void m_S_MakeDdns(CForm& objForm, QBoxLayout* pColumn);
    void m_S_Load();
    void m_S_TestAddress();
    void m_S_TestDdns();

    CWndNvrEmbedded* vm_pNvr;
    CEnvObj* vm_pEnv;
    CTextTable vm_objTexts;
    CFieldTable vm_objFields; ///< of the System document
    CFieldTable vm_objStatus; ///< of the system information, shown only
    CEnableTable vm_objRules;
    QLineEdit* vm_pExternal = nullptr;
    QComboBox* vm_pServer = nullptr;
    QLineEdit* vm_pHost = nullptr;
    QLineEdit* vm_pAccount = nullptr;
    QLineEdit* vm_pPassword = nullptr;
    QLineEdit* vm_pCurrentIp = nullptr;
};
