#include "setup/mail/CDlgSetupPageSystemSetting_Nofity.h"

#include <QPushButton>

#include "core/CWndNvrEmbedded.h"
#include "toolkit/form/CFormGroup.h"
#include "toolkit/form/CommonTexts.h"

namespace {

constexpr Text ServerText{"Server", "Server"};
constexpr Text PortText{"Port", "Port"};
constexpr Text RetryText{"Retry", "Retry"};
const QList<int> g_arRetries = {1, 2, 3, 4, 5};
const QList<int> g_arIntervals = {10, 20, 30, 40, 50, 60}; // s

} // namespace

void CDlgSetupPageSystemSetting_Nofity::m_S_Make(CForm& objForm)
{
    const auto NodeOf = [this](const char* pszName) {
        return stDef_Node{&vm_pNvr->vm_xmlSystem,
                          QStringLiteral("/root/system/Notification/") + QString::fromLatin1(pszName)};
    };
    objForm.m_S_BeginColumn();
    CFormGroup grpSmtp(objForm, Text{"SMTPSetting", "SMTP Setting"}, NodeOf("SMTP"));
    grpSmtp.m_F_p_Edit(ServerText, "IP");
    grpSmtp.m_F_p_Edit(PortText, "Port");
    grpSmtp.m_F_p_Edit(nsTexts::Account, "UID");
    grpSmtp.m_F_p_ShownPassword(nsTexts::Password, "PWD");
    grpSmtp.m_F_p_Edit(Text{"From", "From"}, "Sender");
    grpSmtp.m_F_p_Edit(Text{"Subject", "Subject"}, "Title");
    grpSmtp.m_F_p_Edit(Text{"Body", "Body"}, "Body");
    grpSmtp.m_F_p_List(RetryText, {"Retry", "1"}, g_arRetries);
    grpSmtp.m_F_p_List(Text{"SendInterval", "Send Interval"}, {"Interval", "10"}, g_arIntervals);
    grpSmtp.m_F_p_Check<nsForms::AsUncheck>(Text{"SendMailWithoutPicture", "Send Mail Without Picture"}, "Attach");
    grpSmtp.m_F_p_Check(Text{"ServerRequireAuthentication", "Server Require Authentication"}, "Auth");
    grpSmtp.m_F_p_Check(Text{"ServerRequireSecureConnection", "Server Require Secure Connection(SSL)"}, "SSL");
    QPushButton* const pTest = grpSmtp.m_F_p_Button(Text{"SendTest", "Send Test"}, "SendTest");
    connect(pTest, &QPushButton::clicked, this, [this] { m_S_TellNoCgi(); });

    objForm.m_S_BeginColumn();
    CFormGroup grpHttp(objForm, Text{"HTTPSetting", "HTTP Setting"}, NodeOf("HTTP"));
    grpHttp.m_F_p_Edit(Text{"IP", "IP"}, "IP");
    grpHttp.m_F_p_Edit(nsTexts::HttpPort, "Port");
    grpHttp.m_F_p_Edit(nsTexts::Account, "UID");
    grpHttp.m_F_p_ShownPassword(nsTexts::Password, "PWD");
    grpHttp.m_F_p_Edit(Text{"CGI", "CGI"}, "CGI");

    CFormGroup grpFtp(objForm, Text{"FTPSetting", "FTP Setting"}, NodeOf("FTP"));
    grpFtp.m_F_p_Edit(Text{"Server1", "Server"}, "IP");
    grpFtp.m_F_p_Edit(PortText, "Port");
    grpFtp.m_F_p_Edit(nsTexts::Account, "UID");
    grpFtp.m_F_p_ShownPassword(nsTexts::Password, "PWD");
    grpFtp.m_F_p_Edit(Text{"Path", "Path"}, "Path");
    grpFtp.m_F_p_Edit(Text{"RecycleDays", "Recycle Days"}, "RecycleDays");
    grpFtp.m_F_p_List(RetryText, {"Retry", "1"}, g_arRetries);

    CFormGroup grpTcp(objForm, Text{"TCPSetting", "TCP Setting"}, NodeOf("TCP"));
    grpTcp.m_F_p_Edit(ServerText, "IP");
    grpTcp.m_F_p_Edit(PortText, "Port");
}
