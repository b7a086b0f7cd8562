#pragma once

#include <QHash>
#include <QTreeWidget>

#include "live/CLiveState.h"
#include "live/stDef_ChannelKey.h"
#include "recorders/CRecorderStore.h"
#include "recorders/emDef_Reach.h"

class CCameraNames;

/// The recorders with their channels, each row with its state as mark and word. The rows of the channels are made when
/// their recorder is opened, so that a thousand recorders of 64 channels stay quick.
class CRecorderTree : public QTreeWidget
{
    Q_OBJECT

public:
    /// The names are borrowed.
    explicit CRecorderTree(CCameraNames* pNames, QWidget* pParent = nullptr);

    /// Fills the tree; what was open and picked stays so as far as it is still there.
    void m_S_SetRecorders(const QList<stDef_Recorder>& arRecorders);
    /// Tells how a recorder is reached; `sText` stands in the row in place of the state's own word if it isn't empty.
    void m_S_SetRecorderState(int nNvrID, emDef_Reach nReach, const QString& sText);
    void m_S_SetChannelState(const stDef_ChannelKey& stKey, emDef_LiveState nState);
    /// Shows only recorders with this text in name or address; all if it is empty.
    void m_S_SetFilter(const QString& sFilter);
    /// Number of the recorder that is picked itself or by one of its channels; -1 if there is none.
    int m_F_n_CurrentRecorder() const;
    void m_S_Select(int nNvrID);
    /// Where a menu that no pointer asked for comes up: at the row that is picked. On the screen.
    QPoint m_F_o_MenuPoint() const;

    QSize sizeHint() const override;

Q_SIGNALS:
    void S_PlaceChannel(stDef_ChannelKey stKey);
    void S_ShowRecorder(int nNvrID);
    void S_Edit(int nNvrID);
    void S_Remove(int nNvrID);
    void S_MenuRequested(int nNvrID, QPoint ptGlobal); ///< -1: beside all recorders
    void S_CurrentChanged(int nNvrID);

protected:
    bool event(QEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    void changeEvent(QEvent* pEvent) override;
    void contextMenuEvent(QContextMenuEvent* pEvent) override;
    void startDrag(Qt::DropActions nActions) override;
    QMimeData* mimeData(const QList<QTreeWidgetItem*>& arItems) const override;
    QStringList mimeTypes() const override;

private:
    QTreeWidgetItem* m_F_p_MakeRow(const stDef_Recorder& stRecorder);
    void m_S_FillChannels(QTreeWidgetItem* pRow);
    void m_S_Dress(QTreeWidgetItem& objItem);
    void m_S_DressAll(QTreeWidgetItem* pRow);
    void m_S_Activate(const QTreeWidgetItem* pItem);
    void m_S_Retranslate();

    CCameraNames* vm_pNames;
    QHash<int, QTreeWidgetItem*> vm_mapRows; ///< by number of the recorder
    QHash<quint64, emDef_LiveState> vm_mapStates;
    QString vm_sFilter;
};
