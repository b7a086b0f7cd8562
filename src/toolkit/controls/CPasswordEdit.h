#pragma once

#include <QLineEdit>

class QCheckBox;

/// An edit for a password: a "*" for each letter, until it is told to show them. Showing and hiding leave the text, the
/// cursor and what is selected as they are.
class CPasswordEdit : public QLineEdit
{
    Q_OBJECT

public:
    explicit CPasswordEdit(QWidget* pParent = nullptr);

    bool m_F_b_Shown() const { return echoMode() == QLineEdit::Normal; }
    void m_S_SetShown(bool bShown);

    /// The box shows and hides the text from now on, and follows `m_S_SetShown`.
    void m_S_Attach(QCheckBox* pBox);

Q_SIGNALS:
    void S_Shown(bool bShown);
};
