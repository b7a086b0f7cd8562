#pragma once

#include <QList>
#include <QMainWindow>

#include "CDocumentRunner.h"
#include "CRecorderStore.h"

class CDocumentPanel;
class CLiveGrid;
class CRecorderList;
class QAction;
class QLabel;
class QToolBar;
enum class emDef_HostIcon;
enum class emDef_Text;

/// The host's window: recorders at the left, live cells at the right, the document table below on demand.
class CMainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// Both pointers are borrowed. The first recorder is picked and connected.
    CMainWindow(CEnvObj* pEnv, const CRecorderStore* pStore);
    ~CMainWindow() override; ///< ends all streams

    /// Shows the first channels of a recorder and connects them.
    void m_S_ShowRecorder(int nNvrID);
    /// Runs the exchange with the picked recorder. Blocks under a wait cursor.
    void m_S_Exchange();

    CLiveGrid* m_F_p_Grid() const { return vm_pGrid; }
    CRecorderList* m_F_p_List() const { return vm_pList; }
    /// Rows of the last exchange; empty if there was none.
    const QList<stDef_DocumentResult>& m_F_ar_Documents() const { return vm_arDocuments; }

private:
    void m_S_MakeActions();
    QAction* m_F_p_AddAction(const char* pszName, emDef_Text nText, emDef_Text nTip, const QKeySequence& objKey);
    void m_S_MakeLayout();
    void m_S_MakeStatus();
    void m_S_SetFullScreen(bool bOn);
    void m_S_About();
    void m_S_UpdateStates();

    CEnvObj* vm_pEnv;
    const CRecorderStore* vm_pStore;
    QList<stDef_Recorder> vm_arRecorders;
    QList<stDef_DocumentResult> vm_arDocuments;
    CRecorderList* vm_pList = nullptr;
    CLiveGrid* vm_pGrid = nullptr;
    CDocumentPanel* vm_pDocuments = nullptr;
    QWidget* vm_pSide = nullptr;
    QToolBar* vm_pToolBar = nullptr;
    QAction* vm_pFullScreen = nullptr;
    QLabel* vm_pTotals = nullptr;
    int vm_nShown = -1;
};
