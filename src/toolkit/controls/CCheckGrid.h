#pragma once

#include <QList>
#include <QMap>
#include <QWidget>

class QCheckBox;
class QGridLayout;

/// Check boxes in columns, row by row, each of which stands for one position of a text of "0" and "1". What the text
/// has at positions without a box is no matter of the grid.
class CCheckGrid : public QWidget
{
public:
    /// Whether a position is on.
    using Marks = QMap<int, bool>;

    explicit CCheckGrid(int nColumns, QWidget* pParent = nullptr);

    /// Puts a box behind the others; its "id" is the position.
    QCheckBox* m_F_p_Add(int nPosition);

    /// Shows a text; boxes of positions beyond its end are off.
    void m_S_Show(const QString& sText);
    void m_S_Clear() { m_S_Show({}); }
    /// Checks the boxes of all positions below this, and leaves the others.
    void m_S_CheckBelow(int nLength);
    /// Enables the boxes of all positions below this, and disables the others.
    void m_S_EnableBelow(int nLength);
    Marks m_F_o_Marks() const;

private:
    QGridLayout* vm_pGrid;
    int vm_nColumns;
    QList<QCheckBox*> vm_arBoxes;
};
