#include "toolkit/controls/CPasswordEdit.h"

#include <QCheckBox>

using namespace Qt::StringLiterals;

CPasswordEdit::CPasswordEdit(QWidget* pParent) : QLineEdit(pParent)
{
    // The mask is a matter of the style, most of which take a dot; 42 is "*".
    setStyleSheet(u"lineedit-password-character: 42"_s);
    setEchoMode(QLineEdit::Password);
}

void CPasswordEdit::m_S_SetShown(bool bShown)
{
    if (bShown == m_F_b_Shown())
        return;
    setEchoMode(bShown ? QLineEdit::Normal : QLineEdit::Password);
    Q_EMIT S_Shown(bShown);
}

void CPasswordEdit::m_S_Attach(QCheckBox* pBox)
{
    pBox->setChecked(m_F_b_Shown());
    connect(pBox, &QCheckBox::toggled, this, &CPasswordEdit::m_S_SetShown);
    connect(this, &CPasswordEdit::S_Shown, pBox, &QCheckBox::setChecked);
}
