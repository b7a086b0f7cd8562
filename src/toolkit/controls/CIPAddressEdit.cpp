#include "toolkit/controls/CIPAddressEdit.h"

#include <QRegularExpressionValidator>

using namespace Qt::StringLiterals;

CIPAddressEdit::CIPAddressEdit(QWidget* pParent) : QLineEdit(pParent)
{
    static const QString s_sNumber = u"(25[0-5]|2[0-4][0-9]|1[0-9][0-9]|0{0,2}[0-9]|0?[1-9][0-9])"_s;
    static const QRegularExpression s_objAddress(u"(%1\\.){3}%1"_s.arg(s_sNumber));
    setValidator(new QRegularExpressionValidator(s_objAddress, this));
    setPlaceholderText(u"0.0.0.0"_s);
    connect(this, &QLineEdit::textEdited, this, &CIPAddressEdit::m_S_OnEdited);
}

void CIPAddressEdit::m_S_OnEdited(const QString& sText)
{
    const bool bGrew = sText.size() > vm_nLength;
    const bool bAtEnd = cursorPosition() == sText.size();
    const QString sLast = sText.section(u'.', -1);
    if (bGrew && bAtEnd && sLast.size() == 3 && sText.count(u'.') < 3)
        setText(sText + u'.');
    vm_nLength = text().size();
}
