#include <QDialog>
#include <iterator>

#include "core/CPageRequests.h"
#include "core/CWndNvrEmbedded.h"
#include "core/DocumentTable.h"
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

constexpr int TakeOverMs = 60000; ///< in which the recorder restarts its services and answers nothing

bool IsEdited(const stDef_Document& stDocument)
{
    return stDocument.pszPost && stDocument.pMember;
}

bool RunSheet(CWndNvrEmbedded* pNvr)
{
    CDlgSetupPageSystemSetting objSheet(pNvr, pNvr->m_F_s_Text(TitleText), 0);
    QList<CXmlObj*> arPosted;
    for (const stDef_Document& stDocument : nsDocuments::All) {
        if (IsEdited(stDocument))
            arPosted.append(&(pNvr->*stDocument.pMember));
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
    for (const stDef_Document& stDocument : nsDocuments::All) {
        if (IsEdited(stDocument)) // a load replaces the system information by itself
            (this->*stDocument.pMember).m_F_b_Close();
    }
    for (const stDef_Document& stDocument : nsDocuments::All) {
        if (stDocument.pMember)
            bAll &= objRequests.m_F_b_Get(QString::fromLatin1(stDocument.pszFetch), &(this->*stDocument.pMember),
                                          stDocument.nFetchTimeoutMs);
    }
    return bAll;
}

// Each document is a wait of its own: a stop gives up that one, and the others are posted all the same. A reply alone
// doesn't tell that the document was taken.
void CWndNvrEmbedded::m_S_UploadSettings()
{
    QStringList arNotTaken;
    for (auto pDocument = std::rbegin(nsDocuments::All); pDocument != std::rend(nsDocuments::All); ++pDocument) {
        const stDef_Document& stDocument = *pDocument;
        if (!IsEdited(stDocument))
            continue;
        CPageRequests objRequests(this, this, UploadText);
        objRequests.m_F_b_Post(QString::fromLatin1(stDocument.pszPost), &(this->*stDocument.pMember),
                               stDocument.nPostTimeoutMs);
        if (!objRequests.m_F_b_LastTaken())
            arNotTaken.append(m_F_s_Text(stDocument.stName, QString::fromUtf8(stDocument.stName.pszDefault)));
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
