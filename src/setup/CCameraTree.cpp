#include "setup/CCameraTree.h"

#include <QContextMenuEvent>
#include <QSignalBlocker>

#include "toolkit/controls/PlainTip.h"

namespace {

Qt::CheckState CheckOf(bool bEnabled)
{
    return bEnabled ? Qt::Checked : Qt::Unchecked;
}

} // namespace

CCameraTree::CCameraTree(QWidget* pParent) : QTreeWidget(pParent)
{
    setHeaderHidden(true);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    connect(this, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* pItem) {
        if (!vm_bToldByPress) // a click on the selected camera, too, is one
            Q_EMIT S_Chosen(indexOfTopLevelItem(pItem));
    });
    connect(this, &QTreeWidget::itemSelectionChanged, this, [this] {
        vm_bToldByPress = true;
        Q_EMIT S_Chosen(m_F_n_Selected());
    });
    connect(this, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* pItem) {
        Q_EMIT S_EnableChanged(indexOfTopLevelItem(pItem), pItem->checkState(0) == Qt::Checked);
    });
}

void CCameraTree::m_S_Append(const QString& sName)
{
    const QSignalBlocker objQuiet(this);
    auto* const pItem = new QTreeWidgetItem({sName});
    pItem->setToolTip(0, PlainTip(sName));
    pItem->setSizeHint(0, QSize(0, fontMetrics().height() * 3 / 2)); // room around the check boxes
    addTopLevelItem(pItem);
}

void CCameraTree::m_S_Append(const QString& sName, bool bEnabled)
{
    m_S_Append(sName);
    m_S_SetEnabled(m_F_n_Count() - 1, bEnabled);
}

void CCameraTree::m_S_Remove(int nIndex)
{
    const QSignalBlocker objQuiet(this);
    m_S_Select(-1); // or Qt chooses a neighbour
    delete topLevelItem(nIndex);
}

void CCameraTree::m_S_Clear()
{
    const QSignalBlocker objQuiet(this);
    clear();
}

void CCameraTree::m_S_SetName(int nIndex, const QString& sName)
{
    const QSignalBlocker objQuiet(this);
    topLevelItem(nIndex)->setText(0, sName);
    topLevelItem(nIndex)->setToolTip(0, PlainTip(sName));
}

void CCameraTree::m_S_SetEnabled(int nIndex, bool bEnabled)
{
    const QSignalBlocker objQuiet(this);
    topLevelItem(nIndex)->setCheckState(0, CheckOf(bEnabled));
}

int CCameraTree::m_F_n_Selected() const
{
    QTreeWidgetItem* const pItem = selectedItems().value(0);
    return pItem ? indexOfTopLevelItem(pItem) : -1;
}

void CCameraTree::m_S_Select(int nIndex)
{
    const QSignalBlocker objQuiet(this);
    setCurrentItem(topLevelItem(nIndex));
    if (currentItem())
        scrollToItem(currentItem());
}

void CCameraTree::mousePressEvent(QMouseEvent* pEvent)
{
    vm_bToldByPress = false;
    QTreeWidget::mousePressEvent(pEvent);
}

void CCameraTree::contextMenuEvent(QContextMenuEvent* pEvent)
{
    const bool bKeyboard = pEvent->reason() == QContextMenuEvent::Keyboard;
    QTreeWidgetItem* const pItem = bKeyboard ? currentItem() : itemAt(viewport()->mapFromGlobal(pEvent->globalPos()));
    if (!pItem)
        return;
    setCurrentItem(pItem);
    Q_EMIT S_Chosen(indexOfTopLevelItem(pItem)); // also if it was selected, for the form may stand alone
    Q_EMIT S_MenuWanted(bKeyboard ? viewport()->mapToGlobal(visualItemRect(pItem).center()) : pEvent->globalPos());
}

// The base class makes the first item the current one then, without selecting it.
void CCameraTree::focusInEvent(QFocusEvent* pEvent)
{
    QTreeWidget::focusInEvent(pEvent);
    if (m_F_n_Selected() < 0)
        setCurrentItem(nullptr);
}

QItemSelectionModel::SelectionFlags CCameraTree::selectionCommand(const QModelIndex& objIndex,
                                                                  const QEvent* pEvent) const
{
    if (objIndex.isValid())
        return QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows;
    return pEvent ? QItemSelectionModel::NoUpdate : QItemSelectionModel::Clear; // the program may select none
}
