#include "setup/CDlgSetupPageSystemSetting_Network.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/CWndNvrEmbedded.h"
#include "toolkit/CPrompts.h"
#include "toolkit/CWaitCursor.h"
#include "toolkit/controls/CIPAddressEdit.h"
#include "toolkit/controls/CPasswordEdit.h"
#include "toolkit/form/CommonTexts.h"

using namespace Qt::StringLiterals;
using enum emDef_FieldForm;

namespace {

const QString g_sNetwork = u"/root/system/network/network"_s;
const QString g_sPppoe = u"/root/system/network/pppoe"_s;
const QString g_sUpnp = u"/root/system/network/UPnP"_s;
const QString g_sTraversal = u"/root/system/network/UPnP_Traversal"_s;
const QString g_sServer = u"/root/system/network/server"_s;
const QString g_sDdns = u"/root/system/network/DDNS"_s;
const QString g_sLocal = u"/root/Local"_s;
const QString g_sUnknown = u"Unknow"_s;

constexpr Text EnableText{"Enable", "Enable"};
constexpr Text MaskText{"SubnetMask", "Subnet Mask"};
constexpr Text GatewayText{"Gateway", "Gateway"};
constexpr Text TestText{"Test", "Test"};
constexpr Text CharactersText{"Characters", "Characters"};

const QStringList g_arDdnsServers = {u"dyndns.org"_s, u"no-ip.com"_s};
constexpr int DdnsTimeoutMs = 5000;

// The part between the first and the second "=", without its blanks.
QString AddressOf(const QString& sMessage)
{
    return sMessage.section(u'=', 1, 1).remove(u' ');
}

} // namespace

CDlgSetupPageSystemSetting_Network::CDlgSetupPageSystemSetting_Network(CWndNvrEmbedded* pNvr)
    : vm_pNvr(pNvr), vm_pEnv(pNvr->vm_pEnv)
{}

int CDlgSetupPageSystemSetting_Network::OnInitDialog()
{
    CForm objForm(this, &vm_objTexts);
    auto* const pColumns = new QHBoxLayout(this);
    auto* const pLeft = new QVBoxLayout;
    auto* const pRight = new QVBoxLayout;
    pColumns->addLayout(pLeft, 1);
    pColumns->addLayout(pRight, 1);
    m_S_MakeAddress(objForm, pLeft);
    m_S_MakePppoe(objForm, pLeft);
    m_S_MakeUpnp(objForm, pRight);
    m_S_MakeTraversal(objForm, pRight);
    m_S_MakeServer(objForm, pRight);
    m_S_MakeDdns(objForm, pRight);
    pLeft->addStretch();
    pRight->addStretch();
    m_S_Load();
    vm_objRules.m_S_Run();
    vm_objTexts.m_S_Apply(*vm_pNvr);
    objForm.m_S_Align();
    return CPropertyPage::OnInitDialog();
}

void CDlgSetupPageSystemSetting_Network::m_S_MakeAddress(CForm& objForm, QBoxLayout* pColumn)
{
    pColumn->addWidget(objForm.m_F_p_Group(Text{"Network", "Network"}, "NetworkGroup"));
    QCheckBox* const pDhcp =
        objForm.m_F_p_Check(Text{"ObtainIPAddressautomatically", "Obtain IP Address automatically (DHCP)"}, "DHCPType");
    QLineEdit* const pMac = objForm.m_F_p_ReadOnly(Text{"MAC", "MAC Address"}, "MAC");
    QLineEdit* const pAddress = objForm.m_F_p_Address(nsTexts::Address, "IPAddress");
    QLineEdit* const pMask = objForm.m_F_p_Address(MaskText, "SubMask");
    QLineEdit* const pGateway = objForm.m_F_p_Address(GatewayText, "GateWay");
    QCheckBox* const pDhcpDns = objForm.m_F_p_Check(Text{"ObtainDNSfromDHCP", "Obtain DNS from DHCP"}, "DHCPgetDNS");
    QLineEdit* const pPrimary = objForm.m_F_p_Address(Text{"PrimaryDNS", "Primary DNS"}, "PrimaryDNS");
    QLineEdit* const pSecond = objForm.m_F_p_Address(Text{"SecondaryDNS", "Secondary DNS"}, "SecondDNS");
    QPushButton* const pTest = objForm.m_F_p_Button(TestText, "NetworkTest");
    connect(pTest, &QPushButton::clicked, this, &CDlgSetupPageSystemSetting_Network::m_S_TestAddress);

    vm_objStatus.m_S_Add({g_sLocal, u"MAC"_s, pMac, Shown});
    vm_objFields.m_S_Add({g_sNetwork, u"DHCPType"_s, pDhcp, Check});
    vm_objFields.m_S_Add({g_sNetwork, u"IPAddress"_s, pAddress});
    vm_objFields.m_S_Add({g_sNetwork, u"SubMask"_s, pMask});
    vm_objFields.m_S_Add({g_sNetwork, u"GateWay"_s, pGateway});
    vm_objFields.m_S_Add({g_sNetwork, u"DHCPgetDNS"_s, pDhcpDns, Check});
    vm_objFields.m_S_Add({g_sNetwork, u"PrimaryDNS"_s, pPrimary});
    vm_objFields.m_S_Add({g_sNetwork, u"SecondDNS"_s, pSecond});

    const auto RunDns = [pDhcpDns, pPrimary, pSecond] {
        pPrimary->setDisabled(pDhcpDns->isChecked());
        pSecond->setDisabled(pDhcpDns->isChecked());
    };
    connect(pDhcpDns, &QCheckBox::clicked, this, RunDns);
    vm_objRules.m_S_Add(pDhcp, {pDhcpDns}, {pMac, pAddress, pMask, pGateway, pTest}, [pDhcpDns, RunDns](bool bDhcp) {
        if (!bDhcp)
            pDhcpDns->setChecked(false);
        RunDns();
    });
}

void CDlgSetupPageSystemSetting_Network::m_S_MakePppoe(CForm& objForm, QBoxLayout* pColumn)
{
    pColumn->addWidget(objForm.m_F_p_Group(Text{"PPPoE", "PPPoE"}, "PPPoEGroup"));
    QCheckBox* const pEnable = objForm.m_F_p_Check(EnableText, "isPPPOE");
    QLineEdit* const pAccount = objForm.m_F_p_Edit(nsTexts::Account, "PPPOEUser");
    objForm.m_S_Hint("(64 %1)", CharactersText);
    CPasswordEdit* const pPassword = objForm.m_F_p_Password(nsTexts::Password, "PPPOEPassword");
    objForm.m_S_Hint("(64 %1)", CharactersText);
    vm_objFields.m_S_Add({g_sPppoe, u"isPPPOE"_s, pEnable, Check});
    vm_objFields.m_S_Add({g_sPppoe, u"PPPOEUser"_s, pAccount});
    vm_objFields.m_S_Add({g_sPppoe, u"PPPOEPassword"_s, pPassword});
    QList<QWidget*> arEnabled = {pAccount, pPassword};
    constexpr std::pair<Text, const char*> arStatus[] = {{nsTexts::Address, "PPPoE_IP"},
                                                         {MaskText, "PPPoE_SubMask"},
                                                         {GatewayText, "PPPoE_Gateway"},
                                                         {Text{"Status", "Status"}, "PPPoE_Status"}};
    for (const auto& [stLabel, pszKey] : arStatus) {
        QLineEdit* const pStatus = objForm.m_F_p_ReadOnly(stLabel, pszKey);
        vm_objStatus.m_S_Add({g_sLocal, QString::fromLatin1(pszKey), pStatus, Shown});
        arEnabled.append(pStatus);
    }
    vm_objRules.m_S_Add(pEnable, arEnabled);
}

void CDlgSetupPageSystemSetting_Network::m_S_MakeUpnp(CForm& objForm, QBoxLayout* pColumn)
{
    pColumn->addWidget(objForm.m_F_p_Group(Text{"UPnP", "UPnP"}, "UPnPGroup"));
    QCheckBox* const pEnable = objForm.m_F_p_Check(EnableText, "UPnP.Enable");
    QLineEdit* const pFriendly = objForm.m_F_p_ReadOnly(Text{"Friendly", "Friendly"}, "FriendlyName");
    vm_objFields.m_S_Add({g_sUpnp, u"Enable"_s, pEnable, Check});
    vm_objStatus.m_S_Add({g_sLocal, u"FriendlyName"_s, pFriendly, Shown});
    vm_objRules.m_S_Add(pEnable, {pFriendly}, {}, [this, pFriendly](bool bEnabled) {
        QString sName;
        if (bEnabled)
            vm_pNvr->vm_xmlSystemInfo.m_F_n_GetValue(g_sLocal, u"FriendlyName"_s, sName, {});
        pFriendly->setText(sName);
    });
}

void CDlgSetupPageSystemSetting_Network::m_S_MakeTraversal(CForm& objForm, QBoxLayout* pColumn)
{
    pColumn->addWidget(objForm.m_F_p_Group(Text{"UPnPTraversal", "UPnP Traversal"}, "UPnP_TraversalGroup"));
    QCheckBox* const pEnable = objForm.m_F_p_Check(EnableText, "UPnP_Traversal.Enable");
    const QList<QLineEdit*> arPorts = objForm.m_F_ar_Pair(Text{"PortRange", "Port Range"}, "MinPort", "~", "MaxPort");
    objForm.m_S_Hint("(1 ~ 65535)");
    vm_pExternal = objForm.m_F_p_ReadOnly(Text{"ExternalIPAddress", "External IP Address"}, "ExternalPort");
    vm_objFields.m_S_Add({g_sTraversal, u"Enable"_s, pEnable, Check});
    vm_objFields.m_S_Add({g_sTraversal, u"MinPort"_s, arPorts[0]});
    vm_objFields.m_S_Add({g_sTraversal, u"MaxPort"_s, arPorts[1]});
    vm_objRules.m_S_Add(pEnable, {arPorts[0], arPorts[1], vm_pExternal});
}

void CDlgSetupPageSystemSetting_Network::m_S_MakeServer(CForm& objForm, QBoxLayout* pColumn)
{
    pColumn->addWidget(objForm.m_F_p_Group(Text{"Server", "Server"}, "ServerGroup"));
    QCheckBox* const pEnable = objForm.m_F_p_Check(EnableText, "ServerRun");
    QLineEdit* const pHttp = objForm.m_F_p_Edit(nsTexts::HttpPort, "HTTPPort");
    QLineEdit* const pRtsp = objForm.m_F_p_Edit(nsTexts::RtspPort, "RTSPPort");
    QCheckBox* const pTunnel = objForm.m_F_p_Check(Text{"RTSPOverHTTP", "RTSP Over HTTP"}, "RTSPOverHTTP");
    vm_objFields.m_S_Add({g_sServer, u"ServerRun"_s, pEnable, Check});
    vm_objFields.m_S_Add({g_sServer, u"HTTPPort"_s, pHttp});
    vm_objFields.m_S_Add({g_sServer, u"RTSPPort"_s, pRtsp});
    vm_objFields.m_S_Add({g_sServer, u"RTSPOverHTTP"_s, pTunnel, Check});
    vm_objRules.m_S_Add(pEnable, {pHttp, pRtsp, pTunnel});
}

void CDlgSetupPageSystemSetting_Network::m_S_MakeDdns(CForm& objForm, QBoxLayout* pColumn)
{
    pColumn->addWidget(objForm.m_F_p_Group(Text{"DDNS", "DDNS"}, "DDNSGroup"));
    QCheckBox* const pEnable = objForm.m_F_p_Check(EnableText, "DDNS.Enable");
    vm_pServer = objForm.m_F_p_List(Text{"ServerName", "Server Name"}, "DDNS.Server");
    vm_pServer->addItems(g_arDdnsServers);
    vm_pServer->setCurrentIndex(-1);
    vm_pHost = objForm.m_F_p_Edit(Text{"HostName", "Host Name"}, "DDNS.Host");
    objForm.m_S_Hint("(1 ~ 30 %1)", CharactersText);
    vm_pAccount = objForm.m_F_p_Edit(nsTexts::Account, "DDNS.UID");
    objForm.m_S_Hint("(22 %1)", CharactersText);
    vm_pPassword = objForm.m_F_p_Password(nsTexts::Password, "DDNS.PWD");
    objForm.m_S_Hint("(22 %1)", CharactersText);
    vm_pCurrentIp = objForm.m_F_p_ReadOnly(Text{"CurrentIP", "Current IP"}, "CurrentIP");
    QPushButton* const pTest = objForm.m_F_p_Button(TestText, "DDNSTest");
    connect(pTest, &QPushButton::clicked, this, &CDlgSetupPageSystemSetting_Network::m_S_TestDdns);

    vm_objFields.m_S_Add({g_sDdns, u"Enable"_s, pEnable, Check});
    vm_objFields.m_S_Add({g_sDdns, u"Server"_s, vm_pServer, PickText});
    vm_objFields.m_S_Add({g_sDdns, u"Host"_s, vm_pHost});
    vm_objFields.m_S_Add({g_sDdns, u"UID"_s, vm_pAccount});
    vm_objFields.m_S_Add({g_sDdns, u"PWD"_s, vm_pPassword});
    vm_objRules.m_S_Add(pEnable, {vm_pServer, vm_pHost, vm_pAccount, vm_pPassword, vm_pCurrentIp, pTest});
}

void CDlgSetupPageSystemSetting_Network::m_S_Load()
{
    if (!vm_pNvr->vm_xmlSystem.m_F_b_IsOpen() || !vm_pNvr->vm_xmlSystemInfo.m_F_b_IsOpen())
        return;
    vm_objFields.m_S_Load(vm_pNvr->vm_xmlSystem);
    vm_objStatus.m_S_Load(vm_pNvr->vm_xmlSystemInfo);
    QString sPort;
    vm_pNvr->vm_xmlSystemInfo.m_F_n_GetValue(g_sLocal, u"ExternalPort"_s, sPort, {});
    vm_pExternal->setText(u"http://:"_s + sPort);
    vm_pCurrentIp->setText(g_sUnknown);
}

bool CDlgSetupPageSystemSetting_Network::OnApply()
{
    if (!vm_pNvr->vm_xmlSystem.m_F_b_IsOpen())
        return false;
    vm_objFields.m_S_Store(vm_pNvr->vm_xmlSystem);
    return true;
}

void CDlgSetupPageSystemSetting_Network::m_S_TestAddress()
{
    CPrompts::s_S_Message(this, u"No CGI"_s, u"Error"_s); // not translated
}

void CDlgSetupPageSystemSetting_Network::m_S_TestDdns()
{
    const CWaitCursor objWait;
    // Without "cgi-bin/" in front, unlike the other requests, and with the values as they stand.
    const QString sUrl = u"param.cgi?action=ddns&server="_s + vm_pServer->currentText() + u"&host="_s +
                         vm_pHost->text() + u"&uid="_s + vm_pAccount->text() + u"&pwd="_s + vm_pPassword->text();
    CXmlObj xmlReply;
    QString sResult = g_sUnknown;
    if (vm_pNvr->m_F_b_GetRequest(sUrl, &xmlReply, DdnsTimeoutMs)) {
        QString sMessage;
        xmlReply.m_F_n_GetText(u"Msg"_s, sMessage, {});
        sResult = AddressOf(sMessage);
    }
    vm_pCurrentIp->setText(sResult);
}
