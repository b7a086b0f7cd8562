#pragma once

#include <QList>
#include <QMainWindow>
#include <QTimer>
#include <memory>

#include "live/CLayoutStore.h"
#include "recorders/CCameraNames.h"
#include "recorders/CRecorderStore.h"
#include "recorders/CRecorderWatch.h"
#include "window/CDocumentRunner.h"
#include "window/CHostActions.h"
#include "window/CHostLanguage.h"

class CDocumentPanel;
class CHostStatus;
class CLiveGrid;
class CPtzPanel;
class CRecorderCommands;
class CRecorderPanel;
class CRecorderTree;
class CTreeStates;
class QLabel;
class QStackedWidget;
class QToolBar;
class QToolButton;

/// The host's window: recorders at the left, live cells at the right, the document table below on demand. It comes back
/// with the layout that it was closed with.
class CMainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// Both pointers are borrowed.
    CMainWindow(CEnvObj* pEnv, CRecorderStore* pStore);
    ~CMainWindow() override; ///< ends all streams and saves the layout

    /// Runs the exchange with the selected recorder, unasked. Blocks under a wait cursor.
    void m_S_Exchange();
    /// Shows what an import from elsewhere brought, or why it failed.
    void m_S_ShowImported(const stDef_ImportResult& stResult);
    /// 0 Traditional Chinese, 1 English.
    void m_S_SetLanguage(int nLanguage);
    /// Saves the next pictures there.
    void m_S_SetPictureFolder(const QString& sFolder) { vm_sPictureFolder = sFolder; }

    CLiveGrid* m_F_p_Grid() const { return vm_pGrid; }
    CRecorderTree* m_F_p_Tree() const;
    const CRecorderWatch& m_F_o_Watch() const { return vm_objWatch; }
    /// Rows of the last exchange; empty if there was none.
    const QList<stDef_DocumentResult>& m_F_ar_Documents() const { return vm_arDocuments; }

protected:
    void changeEvent(QEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;

private:
    static const stDef_ActionRow s_astActions[];

    void m_S_MakeLayout();
    QWidget* m_F_p_MakeFirstSteps();
    void m_S_MakeToolBar();
    void m_S_ConnectParts();
    void m_S_Retranslate();
    QAction* m_F_p_Action(const char* pszName) const;
    void m_S_Restore();
    void m_S_SaveLayout();

    void m_S_SetFullScreen(bool bOn);
    void m_S_Leave();
    void m_S_About();
    void m_S_ShowShortcuts();
    void m_S_AddRecorder();
    void m_S_EditRecorder(int nNvrID);
    void m_S_RemoveRecorder(int nNvrID);
    void m_S_AskAndExchange();
    void m_S_ShowTreeMenu(int nNvrID, const QPoint& ptGlobal);
    void m_S_SaveSoon();
    void m_S_SaveSnapshot(const QImage& objImage, const QString& sTitle);
    void m_S_UpdateRecorders();
    void m_S_UpdateStates();
    void m_S_UpdatePages();
    void m_S_UpdateActions();
    QString m_F_s_StartFaults() const;
    int m_F_n_Picked() const;

    CEnvObj* vm_pEnv;
    CRecorderStore* vm_pStore;
    CLayoutStore vm_objLayouts;
    CHostLanguage vm_objLanguage;
    CRecorderWatch vm_objWatch;
    CCameraNames vm_objNames;
    QTimer vm_objSaveTimer;
    QString vm_sPictureFolder;
    QList<stDef_DocumentResult> vm_arDocuments;
    int vm_nRecorders = 0;
    bool vm_bRestored = false;
    QStackedWidget* vm_pView = nullptr; ///< the grid, or the first steps while there is no recorder
    QLabel* vm_pFirstSteps = nullptr;
    QToolButton* vm_pFirstButton = nullptr;
    CLiveGrid* vm_pGrid = nullptr;
    CDocumentPanel* vm_pDocuments = nullptr;
    CPtzPanel* vm_pPtz = nullptr;
    CRecorderPanel* vm_pSide = nullptr;
    QToolBar* vm_pToolBar = nullptr;
    QLabel* vm_pPages = nullptr;
    CHostStatus* vm_pStatus = nullptr;
    std::unique_ptr<CHostActions> vm_pActions;
    std::unique_ptr<CRecorderCommands> vm_pCommands;
    std::unique_ptr<CTreeStates> vm_pStates;
};
