#pragma once

#include <QTableWidget>

#include "widgets/CTimeStateBar.h"

/// A list whose rows stand for days: a label in its first column, a `CTimeStateBar` in the second under a ruler of 24
/// hours. Who uses it inserts and deletes rows; their bars come and go with them. The list takes the keys: Up and Down
/// choose a row as a click on it does, the others are told at `CTimeStateBar`. GUI thread only, one list at a time.
class CTimeListCtrl : public QTableWidget
{
    Q_OBJECT

public:
    explicit CTimeListCtrl(QWidget* pParent = nullptr);
    ~CTimeListCtrl() override;

    /// For all bars, also those to come.
    void m_S_SetTeller(const CTimeStateBar::Teller& fnTeller);

    /// Pixels for the labels, and for the bars at least: they take what room there is beyond it, by whole pixels a
    /// cell.
    void m_S_SetWidths(int nLabels, int nLeastBars);

    bool vm_bViewOnly = false;      ///< handed to each bar that is made from now on
    qint32 vm_nRow = -1;            ///< the last row that was hit
    qint32 vm_nHitX = 0;            ///< where, at least the left edge of the bars
    QList<CTimeStateBar*> vm_arBar; ///< in the order of the rows, owned

Q_SIGNALS:
    /// Message 1126: block `nItem` of a row was changed or clicked; -1: a selection began there; 0: the row was
    /// clicked. With -1 and 0 also: the span of view-only bars changed. No row may be deleted meanwhile.
    void S_Changed(int nItem, int nRow);
    void S_Checked();       ///< message 1125, view-only: the check box of a row changed
    void S_Selected();      ///< command 1170, posted: a selection was finished, see `CTimeStateBar::s_stSelect`
    void S_DoubleClicked(); ///< command 1172, posted: a block was double-clicked

protected:
    void mousePressEvent(QMouseEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;

private:
    void m_S_FitBars();
    void m_S_MakeBars(int nFirst, int nLast);
    void m_S_DropBars(int nFirst, int nLast);
    CTimeStateBar* m_F_p_MakeBar();
    void m_S_Renumber();
    void m_S_OnItem(int nRow, const QList<int>& arRoles);
    void m_S_OnViewSpan();

    CTimeStateBar::Teller vm_fnTeller;
    int vm_nLeastBars = 0;     ///< pixels; 0: the bars stay as wide as they are
    bool vm_bChecking = false; ///< check boxes follow another one
};
