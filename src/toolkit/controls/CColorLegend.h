#pragma once

#include <QWidget>

class QLabel;

/// What colours stand for: patches of them in a row, a text beside each.
class CColorLegend : public QWidget
{
    Q_OBJECT

public:
    explicit CColorLegend(QWidget* pParent = nullptr);

    /// The label behind the new patch, for its text.
    QLabel* m_F_p_Add(const QColor& objColor);
};
