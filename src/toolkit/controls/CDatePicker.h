#pragma once

#include <QDateEdit>

/// A date, by digits, arrows, wheel, or in a calendar that opens below it.
class CDatePicker : public QDateEdit
{
    Q_OBJECT

public:
    explicit CDatePicker(QWidget* pParent = nullptr);
};
