#include <QDialog>

#include "core/CWndNvrEmbedded.h"
#include "setup/CDlgSetupPageSystemSetting.h"
#include "toolkit/form/CommonTexts.h"
#include "toolkit/user/CPrompts.h"
#include "toolkit/user/CUserSide.h"
#include "toolkit/user/CWaitCursor.h"

using namespace Qt::StringLiterals;

namespace {

constexpr Text TitleText{"SystemSetting", "System Setting"};
constexpr Text InformationText{"Information", "Information"};
constexpr Text TryAgainText{"TryAgain", "Get Setting File Faild, Please Try Again."};
constexpr Text WaitingText{"Waiting", "Upload Setting Now. Please Waiting About 60 Seconds."};

constexpr int SystemInfoTimeoutMs = 50000;
constexpr int DownloadTimeoutMs = 5000;
constexpr int UploadTimeoutMs = 50000;
constexpr int TakeOverMs = 60000; ///< in which the recorder restarts its services and answers nothing

struct stDef_DocumentRow
{
    CXmlObj CWndNvrShared::*pMember;
    const char16_t* pszDownload;
    const char16_t* pszUpload; ///< null for a document that isn't posted
};

// In the order of the downloads; the uploads run the other way.
constexpr stDef_DocumentRow g_astDocuments[] = {
    {&CWndNvrShared::vm_xmlSystemInfo, u"cgi-bin/param.cgi?action=systeminfo", nullptr},
    {&CWndNvrShared::vm_xmlSystem, u"cgi-bin/SyncSetting.cgi?action=SystemXML",
     u"cgi-bin/SyncSetting.cgi?action=UpdateSystem"},
    {&CWndNvrShared::vm_xmlSchedule, u"cgi-bin/SyncSetting.cgi?action=ScheduleXML",
     u"cgi-bin/SyncSetting.cgi?action=UpdateSchedule"},
    {&CWndNvrShared::vm_xmlCamera, u"cgi-bin/SyncSetting.cgi?action=CameraXML",
     u"cgi-bin/SyncSetting.cgi?action=UpdateCamera"},
    {&CWndNvrShared::vm_xmlEMail, u"cgi-bin/SyncSetting.cgi?action=EMailXML",
     u"cgi-bin/SyncSetting.cgi?action=UpdateEMail"},
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
    if (!m_F_b_DownloadSettings()) {
        CPrompts::s_S_Message(vm_pParent, m_F_s_Text(TryAgainText), m_F_s_Text(nsTexts::Error));
        return;
    }
    if (!RunSheet(this))
        return;
    CPrompts::s_S_Notice(vm_pParent, m_F_s_Text(WaitingText), m_F_s_Text(InformationText));
    m_S_UploadSettings();
}

bool CWndNvrEmbedded::m_F_b_DownloadSettings()
{
    const CWaitCursor objWait;
    bool bAll = true;
    for (const stDef_DocumentRow& stRow : g_astDocuments) {
        if (stRow.pszUpload) // a load replaces the system information by itself
            (this->*stRow.pMember).m_F_b_Close();
    }
    for (const stDef_DocumentRow& stRow : g_astDocuments) {
        const int nTimeoutMs = stRow.pszUpload ? DownloadTimeoutMs : SystemInfoTimeoutMs;
        bAll &= m_F_b_GetRequest(QString::fromUtf16(stRow.pszDownload), &(this->*stRow.pMember), nTimeoutMs);
    }
    return bAll;
}

void CWndNvrEmbedded::m_S_UploadSettings()
{
    const CWaitCursor objWait;
    for (auto pRow = std::rbegin(g_astDocuments); pRow != std::rend(g_astDocuments); ++pRow) {
        if (pRow->pszUpload)
            m_F_b_PostRequest(QString::fromUtf16(pRow->pszUpload), &(this->*pRow->pMember), UploadTimeoutMs);
    }
    CUserSide::s_F_o_Get().m_S_Wait(vm_pParent, m_F_s_Text(WaitingText), TakeOverMs);
}
