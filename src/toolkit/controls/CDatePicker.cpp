#include "toolkit/controls/CDatePicker.h"

CDatePicker::CDatePicker(QWidget* pParent) : CSectionEdit(pParent)
{
    setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    setCalendarPopup(true);
}
