#include "toolkit/sheet/CSettingSheet.h"

#include <QPushButton>

#include "toolkit/form/CDocumentWatch.h"
#include "toolkit/form/CommonTexts.h"
#include "toolkit/sheet/CPropertyPage.h"
#include "toolkit/user/CPrompts.h"
#include "toolkit/user/CWaitCursor.h"

namespace {

constexpr Text DropText{"DropChanges", "Close without saving the changes?"};

} // namespace

CSettingSheet::CSettingSheet(const CTextSource* pTexts, const QString& sCaption, const stDef_Text& stTitle,
                             QWidget* pParent, unsigned int nSelectPage)
    : CPropertySheet(sCaption, pParent, nSelectPage),
      vm_pTexts(pTexts),
      vm_stTitle(stTitle),
      vm_pWatch(std::make_unique<CDocumentWatch>())
{}

CSettingSheet::~CSettingSheet() = default;

void CSettingSheet::m_S_Watch(const QList<CXmlObj*>& arDocuments)
{
    vm_pWatch->m_S_Begin(arDocuments);
}

void CSettingSheet::m_S_AddTab(const stDef_Text& stLabel, CPropertyPage* pPage)
{
    m_S_AddPage(pPage, QString::fromUtf8(stLabel.pszDefault));
    vm_arLabels.push_back(stLabel);
}

int CSettingSheet::OnInitDialog()
{
    const CWaitCursor objWait;
    CPropertySheet::OnInitDialog();
    setWindowTitle(vm_pTexts->m_F_s_Text(vm_stTitle, windowTitle()));
    for (const auto& [pButton, stText] :
         {std::pair(m_F_p_OkButton(), nsTexts::Ok), {m_F_p_CancelButton(), nsTexts::Cancel}})
        pButton->setText(vm_pTexts->m_F_s_Text(stText, pButton->text()));
    for (int nTab = 0; const stDef_Text& stLabel : vm_arLabels)
        m_S_SetTabText(nTab++, vm_pTexts->m_F_s_Text(stLabel, QString::fromUtf8(stLabel.pszDefault)));
    return 1;
}

bool CSettingSheet::m_F_b_Changed() const
{
    return vm_pWatch->m_F_b_Changed([this](const CValueRows::Substitute& fnSubstitute) {
        for (const CPropertyPage* const pPage : m_F_ar_Pages()) {
            if (pPage->m_F_b_Initialised())
                pPage->m_S_StoreInto(fnSubstitute);
        }
    });
}

bool CSettingSheet::m_F_b_MayDrop()
{
    return !m_F_b_Changed() ||
           CPrompts::s_F_b_AskToDestroy(this, vm_pTexts->m_F_s_Text(DropText, QString::fromUtf8(DropText.pszDefault)),
                                        windowTitle());
}
