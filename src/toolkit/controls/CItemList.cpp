#include "toolkit/controls/CItemList.h"

#include <QHeaderView>
#include <QMouseEvent>

#include "toolkit/controls/PlainTip.h"

CItemList::CItemList(QWidget* pParent) : QTableWidget(pParent)
{
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false); // Tab leads on to the next control
    setWordWrap(false);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    connect(this, &QTableWidget::itemSelectionChanged, this, [this] { Q_EMIT S_Selected(m_F_n_Selected()); });
}

void CItemList::m_S_SetColumns(const QList<int>& arWidths)
{
    setColumnCount(static_cast<int>(arWidths.size()));
    for (int nColumn = 0; nColumn < columnCount(); ++nColumn)
        setColumnWidth(nColumn, arWidths[nColumn] * logicalDpiX() / 96);
}

void CItemList::m_S_SetColumnText(int nColumn, const QString& sText)
{
    setHorizontalHeaderItem(nColumn, new QTableWidgetItem(sText));
}

void CItemList::m_S_Insert(int nRow, const QStringList& arTexts, int nData)
{
    insertRow(nRow);
    for (int nColumn = 0; nColumn < columnCount(); ++nColumn)
        setItem(nRow, nColumn, new QTableWidgetItem);
    item(nRow, 0)->setData(Qt::UserRole, nData);
    m_S_SetTexts(nRow, arTexts);
}

void CItemList::m_S_SetTexts(int nRow, const QStringList& arTexts)
{
    for (int nColumn = 0; nColumn < columnCount(); ++nColumn) {
        item(nRow, nColumn)->setText(arTexts.value(nColumn));
        item(nRow, nColumn)->setToolTip(PlainTip(arTexts.value(nColumn)));
    }
}

QStringList CItemList::m_F_ar_Texts(int nRow) const
{
    QStringList arTexts;
    for (int nColumn = 0; nColumn < columnCount(); ++nColumn)
        arTexts.append(item(nRow, nColumn)->text());
    return arTexts;
}

int CItemList::m_F_n_Data(int nRow) const
{
    const QTableWidgetItem* const pItem = item(nRow, 0);
    return pItem ? pItem->data(Qt::UserRole).toInt() : -1;
}

void CItemList::m_S_Clear()
{
    const QSignalBlocker objQuiet(this);
    setRowCount(0);
}

void CItemList::m_S_Select(int nRow)
{
    {
        const QSignalBlocker objQuiet(this); // told once, also if the row was the selected one
        clearSelection();
        if (nRow >= 0 && nRow < rowCount()) {
            setCurrentCell(nRow, 0);
            scrollToItem(item(nRow, 0));
        }
    }
    Q_EMIT S_Selected(m_F_n_Selected());
}

int CItemList::m_F_n_Selected() const
{
    const QModelIndexList arRows = selectionModel()->selectedRows();
    return arRows.isEmpty() ? -1 : arRows.first().row();
}

// The view tells of changes of the selection alone, but a click on the selected row shows it anew, too.
void CItemList::mousePressEvent(QMouseEvent* pEvent)
{
    const int nBefore = m_F_n_Selected();
    QTableWidget::mousePressEvent(pEvent);
    const int nRow = rowAt(pEvent->position().toPoint().y());
    if (pEvent->button() == Qt::LeftButton && nRow >= 0 && nRow == nBefore && nRow == m_F_n_Selected())
        Q_EMIT S_Selected(nRow);
}
