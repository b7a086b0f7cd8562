#include "toolkit/sheet/CSettingPage.h"

#include <QPushButton>

#include "toolkit/user/CPrompts.h"

CSettingPage::CSettingPage(const CTextSource* pTexts) : vm_pTexts(pTexts), vm_objForm(this) {}

int CSettingPage::OnInitDialog()
{
    m_S_Make(vm_objForm);
    vm_bFilled = vm_objForm.m_F_o_Values().m_F_b_CanLoad();
    if (vm_bFilled) {
        vm_objForm.m_F_o_Values().m_S_Load();
        m_S_Loaded();
    }
    vm_objForm.m_S_Finish(*vm_pTexts);
    m_S_Opened();
    return CPropertyPage::OnInitDialog();
}

void CSettingPage::OnEnter()
{
    if (QPushButton* const pButton = vm_objForm.m_F_p_EnterButton())
        pButton->click();
}

void CSettingPage::m_S_StoreInto(const CValueRows::Substitute& fnSubstitute) const
{
    if (vm_bFilled)
        vm_objForm.m_F_o_Values().m_F_b_Store({}, fnSubstitute);
}

bool CSettingPage::m_F_b_Store() const
{
    const CValueRows& objValues = vm_objForm.m_F_o_Values();
    return vm_bFilled ? objValues.m_F_b_Store() : objValues.m_F_b_CanStore();
}

void CSettingPage::m_S_Message(const stDef_Text& stText, const stDef_Text& stCaption)
{
    CPrompts::s_S_Message(this, m_F_s_Text(stText), m_F_s_Text(stCaption));
}

void CSettingPage::m_S_TellNoCgi()
{
    CPrompts::s_S_Message(this, QStringLiteral("No CGI"), QStringLiteral("Error"));
}
