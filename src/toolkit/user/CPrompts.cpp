#include "toolkit/user/CPrompts.h"

#include <QDialog>

#include "toolkit/user/CUserSide.h"

using enum stDef_Prompt::emDef_Kind;

namespace {

// A dialog can be closed while a request that it began still runs: what comes of it interests nobody then.
bool WasClosed(const QWidget* pParent)
{
    const auto* const pDialog = pParent ? qobject_cast<const QDialog*>(pParent->window()) : nullptr;
    return pDialog && pDialog->isHidden() && pDialog->testAttribute(Qt::WA_WState_ExplicitShowHide);
}

bool Prompt(QWidget* pParent, const stDef_Prompt& stPrompt)
{
    return !WasClosed(pParent) && CUserSide::s_F_o_Get().m_F_b_Prompt(pParent, stPrompt);
}

} // namespace

void CPrompts::s_S_Message(QWidget* pParent, const QString& sText, const QString& sCaption)
{
    Prompt(pParent, {Message, sText, sCaption});
}

void CPrompts::s_S_Notice(QWidget* pParent, const QString& sText, const QString& sCaption)
{
    Prompt(pParent, {Notice, sText, sCaption});
}

bool CPrompts::s_F_b_Ask(QWidget* pParent, const QString& sText, const QString& sCaption)
{
    return Prompt(pParent, {Question, sText, sCaption});
}

bool CPrompts::s_F_b_AskToDestroy(QWidget* pParent, const QString& sText, const QString& sCaption)
{
    return Prompt(pParent, {DestroyingChoice, sText, sCaption});
}
