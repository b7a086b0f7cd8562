#include <QDialog>

#include "core/CPageRequests.h"
#include "core/CWndNvrEmbedded.h"
#include "setup/CDlgSetupPageSystemSetting.h"
#include "toolkit/form/CommonTexts.h"
#include "toolkit/user/CPrompts.h"
#include "toolkit/user/CUserSide.h"

using namespace Qt::StringLiterals;

namespace {

constexpr Text TitleText{"SystemSetting", "System Setting"};
constexpr Text InformationText{"Information", "Information"};
constexpr Text TryAgainText{"TryAgain", "Get Setting File Faild, Please Try Again."};
constexpr Text WaitingText{"Waiting", "Upload Setting Now. Please Waiting About 60 Seconds."};
constexpr Text NotTakenText{"NotTaken", "Not taken by the recorder: %1"};
constexpr Text DownloadText{"DownloadSettings", "Fetching the settings from the recorder."};
constexpr Text UploadText{"UploadSettings", "Sending the settings to the recorder."};

constexpr int SystemInfoTimeoutMs = 50000;
constexpr int DownloadTimeoutMs = 5000;
constexpr int UploadTimeoutMs = 50000;
constexpr int TakeOverMs = 60000; ///< in which the recorder restarts its services and answers nothing

struct stDef_DocumentRow
{
    CXmlObj CWndNvrShared::*pMember;
    const char16_t* pszDownload;
    const char16_t* pszUpload; ///< null for a document that isn't posted
    stDef_Text stName;
};

// In the order of the downloads; the uploads run the other way.
constexpr stDef_DocumentRow g_astDocuments[] = {
    {&CWndNvrShared::vm_xmlSystemInfo, u"cgi-bin/param.cgi?action=systeminfo", nullptr, {}},
    {&CWndNvrShared::vm_xmlSystem, u"cgi-bin/SyncSetting.cgi?action=SystemXML",
     u"cgi-bin/SyncSetting.cgi?action=UpdateSystem", Text{"System", "System"}},
    {&CWndNvrShared::vm_xmlSchedule, u"cgi-bin/SyncSetting.cgi?action=ScheduleXML",
     u"cgi-bin/SyncSetting.cgi?action=UpdateSchedule", Text{"Schedule", "Schedule"}},
    {&CWndNvrShared::vm_xmlCamera, u"cgi-bin/SyncSetting.cgi?action=CameraXML",
     u"cgi-bin/SyncSetting.cgi?action=UpdateCamera", Text{"Camera", "Camera"}},
    {&CWndNvrShared::vm_xmlEMail, u"cgi-bin/SyncSetting.cgi?action=EMailXML",
     u"cgi-bin/SyncSetting.cgi?action=UpdateEMail", Text{"EMail", "E-Mail"}},
};

bool RunSheet(CWndNvrEmbedded* pNvr)
{
    CDlgSetupPageSystemSetting objSheet(pNvr, pNvr->m_F_s_Text(TitleText), 0);
    QList<CXmlObj*> arPosted;
    for (const stDef_DocumentRow& stRow : g_astDocuments) {
        if (stRow.pszUpload)
            arPosted.append(&(pNvr->*stRow.pMember));
    }
    objSheet.m_S_Watch(arPosted);
    return objSheet.DoModal() == QDialog::Accepted;
}

} // namespace

void CWndNvrEmbedded::OnMenuSystemSetting()
{
    if (m_F_b_InUse())
        return;
    const CNvrUse objUse(this);
    if (!m_F_b_DownloadSettings()) {
        if (!m_F_b_Released())
            CPrompts::s_S_Message(this, m_F_s_Text(TryAgainText), m_F_s_Text(nsTexts::Error));
        return;
    }
    if (m_F_b_Released() || !RunSheet(this))
        return;
    CPrompts::s_S_Notice(this, m_F_s_Text(WaitingText), m_F_s_Text(InformationText));
    m_S_UploadSettings();
}

bool CWndNvrEmbedded::m_F_b_DownloadSettings()
{
    CPageRequests objRequests(this, this, DownloadText);
    bool bAll = true;
    for (const stDef_DocumentRow& stRow : g_astDocuments) {
        if (stRow.pszUpload) // a load replaces the system information by itself
            (this->*stRow.pMember).m_F_b_Close();
    }
    for (const stDef_DocumentRow& stRow : g_astDocuments) {
        const int nTimeoutMs = stRow.pszUpload ? DownloadTimeoutMs : SystemInfoTimeoutMs;
        bAll &= objRequests.m_F_b_Get(QString::fromUtf16(stRow.pszDownload), &(this->*stRow.pMember), nTimeoutMs);
    }
    return bAll;
}

// Each document is a wait of its own: a stop gives up that one, and the others are posted all the same. A reply alone
// doesn't tell that the document was taken.
void CWndNvrEmbedded::m_S_UploadSettings()
{
    QStringList arNotTaken;
    for (auto pRow = std::rbegin(g_astDocuments); pRow != std::rend(g_astDocuments); ++pRow) {
        if (!pRow->pszUpload)
            continue;
        CPageRequests objRequests(this, this, UploadText);
        objRequests.m_F_b_Post(QString::fromUtf16(pRow->pszUpload), &(this->*pRow->pMember), UploadTimeoutMs);
        if (!objRequests.m_F_b_LastTaken())
            arNotTaken.append(m_F_s_Text(pRow->stName, QString::fromUtf8(pRow->stName.pszDefault)));
    }
    if (m_F_b_Released())
        return;
    QString sText = m_F_s_Text(WaitingText);
    if (!arNotTaken.isEmpty()) {
        const QString sNotTaken = m_F_s_Text(NotTakenText, u"%1"_s).arg(arNotTaken.join(u" / "_s));
        sText += u'\n' + sNotTaken;
        Q_EMIT S_NotTaken(sNotTaken);
    }
    CUserSide::s_F_o_Get().m_S_Wait(this, sText, TakeOverMs);
}
