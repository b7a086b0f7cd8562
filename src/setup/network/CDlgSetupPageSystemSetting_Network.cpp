#include "setup/network/CDlgSetupPageSystemSetting_Network.h"

#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>

#include "core/CPageRequests.h"
#include "core/CWndNvrEmbedded.h"
#include "toolkit/form/CFormGroup.h"
#include "toolkit/form/CommonTexts.h"

using namespace Qt::StringLiterals;

namespace {

const QString g_sNetwork = u"/root/system/network/"_s;
const QString g_sUnknown = u"Unknow"_s;
const QStringList g_arDdnsServers = {u"dyndns.org"_s, u"no-ip.com"_s};
constexpr Text AskingText{"AskingDDNS", "The recorder asks for its address."};
constexpr int DdnsTimeoutMs = 5000;

constexpr Text MaskText{"SubnetMask", "Subnet Mask"};
constexpr Text GatewayText{"Gateway", "Gateway"};

} // namespace

void CDlgSetupPageSystemSetting_Network::m_S_Make(CForm& objForm)
{
    objForm.m_S_BeginColumn();
    m_S_MakeAddress(objForm);
    objForm.m_S_BeginColumn();
    m_S_MakeUpnp(objForm);
    m_S_MakeServers(objForm);
}

void CDlgSetupPageSystemSetting_Network::m_S_MakeAddress(CForm& objForm)
{
    CRules& objRules = objForm.m_F_o_Rules();
    const stDef_Node stLocal{&vm_pNvr->vm_xmlSystemInfo, u"/root/Local"_s};
    CFormGroup grp(objForm, Text{"Network", "Network"}, {&vm_pNvr->vm_xmlSystem, g_sNetwork + u"network"_s});
    QCheckBox* const pDhcp =
        grp.m_F_p_Check(Text{"ObtainIPAddressautomatically", "Obtain IP Address automatically (DHCP)"}, "DHCPType");
    QList<QWidget*> arByHand = {grp.m_F_p_ReadOnly(Text{"MAC", "MAC Address"}, {stLocal, "MAC"}),
                                grp.m_F_p_Address(nsTexts::Address, "IPAddress"),
                                grp.m_F_p_Address(MaskText, "SubMask"), grp.m_F_p_Address(GatewayText, "GateWay")};
    QCheckBox* const pDns = grp.m_F_p_Check(Text{"ObtainDNSfromDHCP", "Obtain DNS from DHCP"}, "DHCPgetDNS");
    objRules.m_S_Enable({grp.m_F_p_Address(Text{"PrimaryDNS", "Primary DNS"}, "PrimaryDNS"),
                         grp.m_F_p_Address(Text{"SecondaryDNS", "Secondary DNS"}, "SecondDNS")},
                        {{pDns, false}});
    arByHand.append(grp.m_F_p_Button(nsTexts::Test, "NetworkTest"));
    connect(static_cast<QPushButton*>(arByHand.last()), &QPushButton::clicked, this, [this] { m_S_TellNoCgi(); });
    objRules.m_S_Enable(arByHand, {{pDhcp, false}});
    objRules.m_S_Enable({pDns}, {{pDhcp}});
    objRules.m_S_Also([pDhcp, pDns] { pDns->setChecked(pDns->isChecked() && pDhcp->isChecked()); });

    CFormGroup grpPppoe(objForm, Text{"PPPoE", "PPPoE"}, {&vm_pNvr->vm_xmlSystem, g_sNetwork + u"pppoe"_s});
    QCheckBox* const pEnable = grpPppoe.m_F_p_Check(nsTexts::Enable, "isPPPOE");
    QLineEdit* const pAccount = grpPppoe.m_F_p_Edit(nsTexts::Account, "PPPOEUser", "(64 %1)");
    QLineEdit* const pPassword = grpPppoe.m_F_p_Password(nsTexts::Password, "PPPOEPassword", "(64 %1)");
    objRules.m_S_Enable({pAccount, pPassword, grpPppoe.m_F_p_ReadOnly(nsTexts::Address, {stLocal, "PPPoE_IP"}),
                         grpPppoe.m_F_p_ReadOnly(MaskText, {stLocal, "PPPoE_SubMask"}),
                         grpPppoe.m_F_p_ReadOnly(GatewayText, {stLocal, "PPPoE_Gateway"}),
                         grpPppoe.m_F_p_ReadOnly(Text{"Status", "Status"}, {stLocal, "PPPoE_Status"})},
                        {{pEnable}});
}

void CDlgSetupPageSystemSetting_Network::m_S_MakeUpnp(CForm& objForm)
{
    const stDef_Node stLocal{&vm_pNvr->vm_xmlSystemInfo, u"/root/Local"_s};
    CFormGroup grp(objForm, Text{"UPnP", "UPnP"}, {&vm_pNvr->vm_xmlSystem, g_sNetwork + u"UPnP"_s});
    QCheckBox* const pEnable = grp.m_F_p_Check(nsTexts::Enable, "Enable");
    QLineEdit* const pFriendly = grp.m_F_p_ReadOnly(Text{"Friendly", "Friendly"}, {stLocal, "FriendlyName"});
    objForm.m_F_o_Rules().m_S_Enable({pFriendly}, {{pEnable}});
    objForm.m_F_o_Rules().m_S_Also([pEnable, pFriendly, stLocal] { // the name goes and comes with the box
        pFriendly->setText(pEnable->isChecked() ? stLocal.pDocument->m_F_s_Value(stLocal.sPath, u"FriendlyName"_s)
                                                : QString());
    });

    CFormGroup grpTraversal(objForm, Text{"UPnPTraversal", "UPnP Traversal"},
                            {&vm_pNvr->vm_xmlSystem, g_sNetwork + u"UPnP_Traversal"_s});
    QCheckBox* const pTraversal = grpTraversal.m_F_p_Check(nsTexts::Enable, "Enable");
    const QList<QLineEdit*> arPorts =
        grpTraversal.m_F_ar_Pair(Text{"PortRange", "Port Range"}, "MinPort", "~", "MaxPort", "(1 ~ 65535)");
    vm_pExternal =
        grpTraversal.m_F_p_ReadOnly(Text{"ExternalIPAddress", "External IP Address"}, {stLocal, "ExternalPort"});
    objForm.m_F_o_Rules().m_S_Enable({arPorts[0], arPorts[1], vm_pExternal}, {{pTraversal}});
}

void CDlgSetupPageSystemSetting_Network::m_S_MakeServers(CForm& objForm)
{
    CFormGroup grp(objForm, Text{"Server", "Server"}, {&vm_pNvr->vm_xmlSystem, g_sNetwork + u"server"_s});
    QCheckBox* const pEnable = grp.m_F_p_Check(nsTexts::Enable, "ServerRun");
    objForm.m_F_o_Rules().m_S_Enable({grp.m_F_p_Edit(nsTexts::HttpPort, "HTTPPort"),
                                      grp.m_F_p_Edit(nsTexts::RtspPort, "RTSPPort"),
                                      grp.m_F_p_Check(Text{"RTSPOverHTTP", "RTSP Over HTTP"}, "RTSPOverHTTP")},
                                     {{pEnable}});

    CFormGroup grpDdns(objForm, Text{"DDNS", "DDNS"}, {&vm_pNvr->vm_xmlSystem, g_sNetwork + u"DDNS"_s});
    QCheckBox* const pDdns = grpDdns.m_F_p_Check(nsTexts::Enable, "Enable");
    vm_pServer = grpDdns.m_F_p_List(Text{"ServerName", "Server Name"}, "Server", g_arDdnsServers);
    vm_arDdns.append(grpDdns.m_F_p_Edit(Text{"HostName", "Host Name"}, "Host", "(1 ~ 30 %1)"));
    vm_arDdns.append(grpDdns.m_F_p_Edit(nsTexts::Account, "UID", "(22 %1)"));
    vm_arDdns.append(grpDdns.m_F_p_Password(nsTexts::Password, "PWD", "(22 %1)"));
    vm_pCurrentIp = grpDdns.m_F_p_ReadOnly(Text{"CurrentIP", "Current IP"}, "CurrentIP");
    QPushButton* const pTest = grpDdns.m_F_p_Button(nsTexts::Test, "DDNSTest");
    connect(pTest, &QPushButton::clicked, this, &CDlgSetupPageSystemSetting_Network::m_S_TestDdns);
    objForm.m_F_o_Rules().m_S_Enable({vm_pServer, vm_arDdns[0], vm_arDdns[1], vm_arDdns[2], vm_pCurrentIp, pTest},
                                     {{pDdns}});
}

void CDlgSetupPageSystemSetting_Network::m_S_Loaded()
{
    vm_pExternal->setText(u"http://:"_s + vm_pExternal->text());
    vm_pCurrentIp->setText(g_sUnknown); // of no document: it shows what the test brings
}

void CDlgSetupPageSystemSetting_Network::m_S_TestDdns()
{
    // Without "cgi-bin/" in front, unlike the other requests, and with the values as they stand.
    const QString sUrl = u"param.cgi?action=ddns&server=%1&host=%2&uid=%3&pwd=%4"_s.arg(
        vm_pServer->currentText(), vm_arDdns[0]->text(), vm_arDdns[1]->text(), vm_arDdns[2]->text());
    CXmlObj xmlReply;
    QString sMessage;
    const bool bReply = CPageRequests(vm_pNvr, this, AskingText).m_F_b_Get(sUrl, &xmlReply, DdnsTimeoutMs);
    xmlReply.m_F_n_GetText(u"Msg"_s, sMessage, {});
    vm_pCurrentIp->setText(bReply ? sMessage.section(u'=', 1, 1).remove(u' ') : g_sUnknown);
}
