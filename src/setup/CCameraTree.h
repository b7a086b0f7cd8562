#pragma once

#include <QTreeWidget>

/// The cameras of the recorder in the order of their indices, with a check box each where a page wants them. What the
/// user does is told; what the program does is not. The selected camera is the one that the user is at: neither a click
/// beside the items nor Ctrl or the first focus ever part the two.
class CCameraTree : public QTreeWidget
{
    Q_OBJECT

public:
    explicit CCameraTree(QWidget* pParent = nullptr);

    void m_S_Append(const QString& sName);
    /// With its check box.
    void m_S_Append(const QString& sName, bool bEnabled);
    void m_S_Remove(int nIndex);
    void m_S_Clear();
    void m_S_SetName(int nIndex, const QString& sName);
    void m_S_SetEnabled(int nIndex, bool bEnabled);

    int m_F_n_Count() const { return topLevelItemCount(); }
    int m_F_n_Selected() const; ///< -1: none
    /// Brings it into view; -1 leaves nothing selected.
    void m_S_Select(int nIndex);

Q_SIGNALS:
    void S_Chosen(int nIndex); ///< clicked, with either button, or reached by a key; told once a click
    void S_EnableChanged(int nIndex, bool bEnabled);
    void S_MenuWanted(const QPoint& ptGlobal); ///< for the selected camera

protected:
    void mousePressEvent(QMouseEvent* pEvent) override;
    void contextMenuEvent(QContextMenuEvent* pEvent) override;
    void focusInEvent(QFocusEvent* pEvent) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& objIndex,
                                                         const QEvent* pEvent = nullptr) const override;

private:
    bool vm_bToldByPress = false; ///< the click that goes on
};
