#pragma once

#include <QStringList>
#include <QTableWidget>

/// A list of rows with columns, grid lines and a number of its own behind each row. One row or none is selected.
class CItemList : public QTableWidget
{
    Q_OBJECT

public:
    explicit CItemList(QWidget* pParent = nullptr);

    /// Columns of these widths, in pixels at 96 dpi.
    void m_S_SetColumns(const QList<int>& arWidths);
    void m_S_SetColumnText(int nColumn, const QString& sText);

    /// Puts a row in; its item data is `nData`.
    void m_S_Insert(int nRow, const QStringList& arTexts, int nData);
    void m_S_SetTexts(int nRow, const QStringList& arTexts);
    QStringList m_F_ar_Texts(int nRow) const;
    int m_F_n_Data(int nRow) const; ///< -1 for a row that isn't there
    void m_S_Clear();

    /// Selects a row and brings it into view; one that isn't there leaves nothing selected.
    void m_S_Select(int nRow);
    int m_F_n_Selected() const; ///< -1 if there is none

Q_SIGNALS:
    /// By the user, also by a click on the row that was selected already, or by `m_S_Select`; -1 for none.
    void S_Selected(int nRow);

protected:
    void mousePressEvent(QMouseEvent* pEvent) override;
};
