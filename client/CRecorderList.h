#pragma once

#include <QListWidget>

#include "CLiveState.h"
#include "CRecorderStore.h"

/// The recorders, one row each: name, address, and the state as mark and text.
class CRecorderList : public QListWidget
{
    Q_OBJECT

public:
    explicit CRecorderList(QWidget* pParent = nullptr);

    /// Fills the list afresh; the first recorder is picked.
    void m_S_SetRecorders(const QList<stDef_Recorder>& arRecorders);
    /// Tells the state of one recorder.
    void m_S_SetState(int nNvrID, emDef_LiveState nState, const QString& sText);
    /// Number of the picked recorder; -1 if there is none.
    int m_F_n_Current() const;

    QSize sizeHint() const override;

Q_SIGNALS:
    void S_Picked(int nNvrID);

protected:
    void paintEvent(QPaintEvent* pEvent) override;
};
