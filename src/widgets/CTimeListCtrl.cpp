#include "widgets/CTimeListCtrl.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <algorithm>

#include "widgets/CTimeRuler.h"

namespace {

constexpr int LabelColumn = 0;
constexpr int BarColumn = 1;
constexpr int BarMargin = 4; // pixels of a row above and below its blocks, at least

} // namespace

CTimeListCtrl::CTimeListCtrl(QWidget* pParent) : QTableWidget(0, 2, pParent)
{
    setHorizontalHeader(new CTimeRuler(this));
    setHorizontalHeaderLabels({QString(), QString()});
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false);
    setShowGrid(false); // a line would take a pixel of the bars' width
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(
        std::max(fontMetrics().height() * 3 / 2, TimeLine::BlockHeight + 2 * BarMargin));
    connect(model(), &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex&, int nFirst, int nLast) { m_S_MakeBars(nFirst, nLast); });
    connect(model(), &QAbstractItemModel::rowsAboutToBeRemoved, this,
            [this](const QModelIndex&, int nFirst, int nLast) { m_S_DropBars(nFirst, nLast); });
    connect(model(), &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex& objFirst, const QModelIndex&, const QList<int>& arRoles) {
                if (objFirst.column() == LabelColumn)
                    m_S_OnItem(objFirst.row(), arRoles);
            });
}

CTimeListCtrl::~CTimeListCtrl()
{
    while (!vm_arBar.isEmpty())
        delete vm_arBar.takeLast();
}

void CTimeListCtrl::m_S_SetTeller(const CTimeStateBar::Teller& fnTeller)
{
    vm_fnTeller = fnTeller;
    for (CTimeStateBar* const pBar : vm_arBar)
        pBar->m_S_SetTeller(fnTeller);
}

void CTimeListCtrl::m_S_SetWidths(int nLabels, int nLeastBars)
{
    vm_nLeastBars = nLeastBars;
    setColumnWidth(LabelColumn, nLabels);
    m_S_FitBars();
}

void CTimeListCtrl::m_S_FitBars()
{
    const int nRoom = viewport()->width() - columnWidth(LabelColumn);
    if (vm_nLeastBars > 0)
        setColumnWidth(BarColumn, std::max(nRoom / TimeLine::CellCount * TimeLine::CellCount, vm_nLeastBars));
}

void CTimeListCtrl::resizeEvent(QResizeEvent* pEvent)
{
    QTableWidget::resizeEvent(pEvent);
    m_S_FitBars();
}

void CTimeListCtrl::m_S_MakeBars(int nFirst, int nLast)
{
    for (int nRow = nFirst; nRow <= nLast; ++nRow) {
        vm_arBar.insert(nRow, m_F_p_MakeBar());
        setCellWidget(nRow, BarColumn, vm_arBar[nRow]);
    }
    m_S_Renumber();
}

CTimeStateBar* CTimeListCtrl::m_F_p_MakeBar()
{
    auto* const pBar = new CTimeStateBar(vm_bViewOnly);
    pBar->m_F_b_Create({}, viewport(), static_cast<int>(vm_arBar.size()));
    pBar->m_S_SetTeller(vm_fnTeller);
    connect(pBar, &CTimeStateBar::S_Changed, this, [this](int nIndex, int nBarID) {
        vm_nRow = nBarID;
        Q_EMIT S_Changed(nIndex, nBarID);
    });
    connect(pBar, &CTimeStateBar::S_ViewSpan, this, &CTimeListCtrl::m_S_OnViewSpan);
    connect(pBar, &CTimeStateBar::S_Selected, this, &CTimeListCtrl::S_Selected, Qt::QueuedConnection);
    connect(pBar, &CTimeStateBar::S_DoubleClicked, this, &CTimeListCtrl::S_DoubleClicked, Qt::QueuedConnection);
    return pBar;
}

void CTimeListCtrl::m_S_DropBars(int nFirst, int nLast)
{
    for (int nRow = nLast; nRow >= nFirst; --nRow) {
        CTimeStateBar* const pBar = vm_arBar.takeAt(nRow);
        pBar->m_S_StepOut();
        pBar->hide();
        removeCellWidget(nRow, BarColumn); // deletes it, but not while one of its own events runs
    }
    m_S_Renumber();
}

void CTimeListCtrl::m_S_Renumber()
{
    for (int nRow = 0; nRow < vm_arBar.size(); ++nRow)
        vm_arBar[nRow]->vm_nBarID = nRow;
}

void CTimeListCtrl::m_S_OnItem(int nRow, const QList<int>& arRoles)
{
    const QTableWidgetItem* const pItem = item(nRow, LabelColumn);
    if (!pItem)
        return;
    if (arRoles.isEmpty() || arRoles.contains(Qt::DisplayRole))
        vm_arBar[nRow]->setAccessibleName(pItem->text());
    if (vm_bChecking || !arRoles.contains(Qt::CheckStateRole))
        return;
    {
        const QScopedValueRollback<bool> objFollowing(vm_bChecking, true);
        for (const QModelIndex& objIndex : selectionModel()->selectedRows(LabelColumn)) {
            if (QTableWidgetItem* const pOther = item(objIndex.row(), LabelColumn))
                pOther->setCheckState(pItem->checkState());
        }
    }
    if (vm_bViewOnly)
        Q_EMIT S_Checked();
}

void CTimeListCtrl::m_S_OnViewSpan()
{
    for (CTimeStateBar* const pBar : vm_arBar)
        pBar->update();
    Q_EMIT S_Changed(-1, 0);
}

void CTimeListCtrl::mousePressEvent(QMouseEvent* pEvent)
{
    QTableWidget::mousePressEvent(pEvent);
    const QPoint pt = pEvent->position().toPoint();
    const int nRow = indexAt(pt).row();
    if (pEvent->button() != Qt::LeftButton || nRow < 0)
        return;
    vm_nRow = nRow;
    vm_nHitX = std::max(pt.x() + horizontalScrollBar()->value(), horizontalHeader()->sectionPosition(BarColumn));
    Q_EMIT S_Changed(0, nRow);
}

void CTimeListCtrl::keyPressEvent(QKeyEvent* pEvent)
{
    const int nBefore = currentRow();
    CTimeStateBar* const pBar = vm_arBar.value(nBefore);
    if (pBar && pBar->m_F_b_Key(*pEvent))
        return;
    QTableWidget::keyPressEvent(pEvent);
    if (currentRow() != nBefore && currentRow() >= 0)
        Q_EMIT S_Changed(0, currentRow());
}
