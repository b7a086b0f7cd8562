#pragma once

#include <QDateEdit>

#include "toolkit/controls/CSectionEdit.h"

/// A date, by digits, arrows, wheel, or in a calendar that opens below it.
class CDatePicker : public CSectionEdit<QDateEdit>
{
    Q_OBJECT

public:
    explicit CDatePicker(QWidget* pParent = nullptr);
};
