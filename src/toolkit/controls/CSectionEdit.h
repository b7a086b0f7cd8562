#pragma once

#include <QDateTimeEdit>
#include <QKeyEvent>
#include <QLineEdit>

/// A date or time of several parts, of which the last digit of one leads on to the next. Somebody who types the
/// character between them as well means the same, and not the part behind that.
template <class Base>
class CSectionEdit : public Base
{
public:
    explicit CSectionEdit(QWidget* pParent) : Base(pParent)
    {
        this->lineEdit()->setFocusPolicy(Qt::NoFocus); // the edit itself has the focus, and its name
    }

protected:
    void keyPressEvent(QKeyEvent* pEvent) override
    {
        const QString sText = pEvent->text();
        const bool bDigit = !sText.isEmpty() && sText[0].isDigit();
        if (vm_bLedOn && !sText.isEmpty() && sText[0].isPunct()) {
            vm_bLedOn = false;
            return;
        }
        const int nBefore = this->currentSectionIndex();
        Base::keyPressEvent(pEvent);
        vm_bLedOn = bDigit && this->currentSectionIndex() != nBefore;
    }

private:
    bool vm_bLedOn = false;
};
