#include "toolkit/form/CMnemonics.h"

#include <QAbstractButton>
#include <QLabel>
#include <QSet>

namespace {

bool IsKey(QChar c)
{
    return c.isLetter() && c.unicode() < 0x80;
}

/// Where the letter of a text is to be; -1 if there is none left.
qsizetype Choose(const QString& sText, const QSet<QChar>& setTaken)
{
    const auto IsFree = [&](qsizetype n) { return IsKey(sText[n]) && !setTaken.contains(sText[n].toUpper()); };
    for (const bool bAnywhere : {false, true}) {
        for (qsizetype n = 0; n < sText.size(); ++n) {
            if (IsFree(n) && (bAnywhere || n == 0 || sText[n - 1] == u' '))
                return n;
        }
    }
    return -1;
}

template <class Widget>
void Assign(Widget* pWidget, QSet<QChar>& setTaken)
{
    QString sText = pWidget->text();
    if (sText.contains(u'&'))
        return;
    const qsizetype nLetter = Choose(sText, setTaken);
    if (nLetter < 0)
        return;
    setTaken.insert(sText[nLetter].toUpper());
    pWidget->setText(sText.insert(nLetter, u'&'));
}

} // namespace

void CMnemonics::s_S_Assign(QWidget* pWindow)
{
    QSet<QChar> setTaken;
    for (QWidget* const pWidget : pWindow->findChildren<QWidget*>()) {
        if (auto* const pButton = qobject_cast<QAbstractButton*>(pWidget))
            Assign(pButton, setTaken);
        else if (auto* const pLabel = qobject_cast<QLabel*>(pWidget); pLabel && pLabel->buddy())
            Assign(pLabel, setTaken);
    }
}
