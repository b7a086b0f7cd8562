#pragma once

#include <QDialog>

class QTreeWidget;
class QTreeWidgetItem;

/// All keys of a window, in groups: those of its actions, and those that belong to no action.
class CShortcutDialog : public QDialog
{
    Q_OBJECT

public:
    /// Reads the actions of the window, which is its parent too.
    explicit CShortcutDialog(QWidget* pWindow);

protected:
    void changeEvent(QEvent* pEvent) override;

private:
    void m_S_Fill();
    void m_S_FillActions(QTreeWidgetItem* pGroup);

    QTreeWidget* vm_pTable = nullptr;
};
