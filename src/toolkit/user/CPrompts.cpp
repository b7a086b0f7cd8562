#include "toolkit/user/CPrompts.h"

#include "toolkit/user/CUserSide.h"

using enum stDef_Prompt::emDef_Kind;

void CPrompts::s_S_Message(QWidget* pParent, const QString& sText, const QString& sCaption)
{
    CUserSide::s_F_o_Get().m_F_b_Prompt(pParent, {Message, sText, sCaption});
}

void CPrompts::s_S_Notice(QWidget* pParent, const QString& sText, const QString& sCaption)
{
    CUserSide::s_F_o_Get().m_F_b_Prompt(pParent, {Notice, sText, sCaption});
}

bool CPrompts::s_F_b_Ask(QWidget* pParent, const QString& sText, const QString& sCaption)
{
    return CUserSide::s_F_o_Get().m_F_b_Prompt(pParent, {Question, sText, sCaption});
}

bool CPrompts::s_F_b_AskToDestroy(QWidget* pParent, const QString& sText, const QString& sCaption)
{
    return CUserSide::s_F_o_Get().m_F_b_Prompt(pParent, {DestroyingChoice, sText, sCaption});
}
