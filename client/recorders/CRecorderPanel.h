#pragma once

#include <QWidget>

class CCameraNames;
class CEnvObj;
class CLoginPanel;
class CRecorderFilter;
class CRecorderStore;
class CRecorderTree;
class CRecorderWatch;
class QLabel;
struct stDef_Recorder;

/// The window's left side: the recorder tree below its filter, and what the account of the picked one may see.
class CRecorderPanel : public QWidget
{
    Q_OBJECT

public:
    /// All are borrowed.
    CRecorderPanel(CEnvObj* pEnv, const CRecorderStore* pStore, CCameraNames* pNames, const CRecorderWatch* pWatch,
                   QWidget* pParent = nullptr);

    CRecorderTree* m_F_p_Tree() const { return vm_pTree; }
    void m_S_SetRecorders(const QList<stDef_Recorder>& arRecorders);
    /// Picks the recorder, which a filter doesn't hide any more.
    void m_S_Select(int nNvrID);

protected:
    void changeEvent(QEvent* pEvent) override;

private:
    CRecorderTree* vm_pTree;
    CRecorderFilter* vm_pFilter;
    CLoginPanel* vm_pLogin;
    QLabel* vm_pTitle;
};
