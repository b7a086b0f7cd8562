#include "window/CDialogButtons.h"

#include <QEvent>
#include <QPushButton>

#include "window/HostTexts.h"

namespace {

struct stDef_ButtonRow
{
    QDialogButtonBox::StandardButton nButton;
    stDef_Text stText; // its key is the object name, too
};

constexpr stDef_ButtonRow g_astButtons[] = {
    {QDialogButtonBox::Ok, {"OK", "OK"}},
    {QDialogButtonBox::Cancel, {"Cancel", "Cancel"}},
    {QDialogButtonBox::Close, {"Close", "Close"}},
};

} // namespace

CDialogButtons::CDialogButtons(StandardButtons nButtons, QWidget* pParent) : QDialogButtonBox(nButtons, pParent)
{
    m_S_Retranslate();
}

void CDialogButtons::changeEvent(QEvent* pEvent)
{
    QDialogButtonBox::changeEvent(pEvent); // gives the buttons Qt's words
    if (pEvent->type() == QEvent::LanguageChange)
        m_S_Retranslate();
}

void CDialogButtons::m_S_Retranslate()
{
    for (const stDef_ButtonRow& stRow : g_astButtons) {
        if (QPushButton* const pButton = button(stRow.nButton)) {
            pButton->setObjectName(QString::fromLatin1(stRow.stText.pszKey));
            pButton->setText(Tr(stRow.stText));
        }
    }
}
