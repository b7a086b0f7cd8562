#include "toolkit/controls/CDatePicker.h"

#include <QLineEdit>

CDatePicker::CDatePicker(QWidget* pParent) : QDateEdit(pParent)
{
    setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    setCalendarPopup(true);
    lineEdit()->setFocusPolicy(Qt::NoFocus); // the picker itself has the focus, and its name
}
