#include "toolkit/CPrompts.h"

#include <QMessageBox>
#include <utility>

namespace {

CPrompts::Answerer& CurrentAnswerer()
{
    static CPrompts::Answerer s_fnAnswer;
    return s_fnAnswer;
}

QString ShowBox(QWidget* pParent, const stDef_Prompt& stPrompt)
{
    using enum stDef_Prompt::emDef_Kind;
    const bool bQuestion = stPrompt.nKind == Question;
    const QMessageBox::Icon nIcon = bQuestion                  ? QMessageBox::Question
                                    : stPrompt.nKind == Notice ? QMessageBox::Information
                                                               : QMessageBox::Warning;
    QMessageBox objBox(nIcon, stPrompt.sCaption, stPrompt.sText,
                       bQuestion ? QMessageBox::Yes | QMessageBox::No : QMessageBox::Ok, pParent);
    objBox.setTextFormat(Qt::PlainText); // what a recorder says is no mark-up
    return objBox.exec() == QMessageBox::No ? QString() : QStringLiteral("yes");
}

QString Answer(QWidget* pParent, const stDef_Prompt& stPrompt)
{
    return CurrentAnswerer() ? CurrentAnswerer()(stPrompt) : ShowBox(pParent, stPrompt);
}

} // namespace

void CPrompts::s_S_Message(QWidget* pParent, const QString& sText, const QString& sCaption)
{
    Answer(pParent, {stDef_Prompt::emDef_Kind::Message, sText, sCaption});
}

void CPrompts::s_S_Notice(QWidget* pParent, const QString& sText, const QString& sCaption)
{
    Answer(pParent, {stDef_Prompt::emDef_Kind::Notice, sText, sCaption});
}

bool CPrompts::s_F_b_Ask(QWidget* pParent, const QString& sText, const QString& sCaption)
{
    return !Answer(pParent, {stDef_Prompt::emDef_Kind::Question, sText, sCaption}).isEmpty();
}

void CPrompts::s_S_SetAnswerer(Answerer fnAnswer)
{
    CurrentAnswerer() = std::move(fnAnswer);
}
