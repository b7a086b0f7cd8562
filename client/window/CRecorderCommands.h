#pragma once

#include <QObject>

#include "window/CDocumentRunner.h"

class CDocumentPanel;
class CEnvObj;
class CHostStatus;
class CRecorderStore;
class CWndNvrBase;
class QMenu;
class QWidget;
struct stDef_MenuItem;

/// What the host does with a recorder beside its streams: the commands of the recorder's own menu, and the exchange of
/// its documents. Each has a connection object of its own, for as long as it takes.
class CRecorderCommands : public QObject
{
    Q_OBJECT

public:
    /// All are borrowed. The window is the parent of what opens.
    CRecorderCommands(CEnvObj* pEnv, const CRecorderStore* pStore, QWidget* pWindow, CHostStatus* pStatus);

    /// True if the recorder's menu has the command, and it does something.
    bool m_F_b_Works(int nNvrID, int nCommand) const;
    /// Adds the recorder's own menu. The number of a command is the data of its item.
    void m_S_AddTo(QMenu& objMenu, int nNvrID) const;
    /// Leads to setting windows; returns when they are closed.
    void m_S_Run(int nNvrID, int nCommand);
    /// Blocks under a wait cursor, and shows the documents as they come and go.
    QList<stDef_DocumentResult> m_F_ar_Exchange(int nNvrID, CDocumentPanel& objPanel);

Q_SIGNALS:
    void S_Closed(int nNvrID); ///< its setting windows; it may have been given other names

private:
    QList<stDef_MenuItem> m_F_ar_Items(int nNvrID) const;

    CEnvObj* vm_pEnv;
    const CRecorderStore* vm_pStore;
    QWidget* vm_pWindow;
    CHostStatus* vm_pStatus;
};
