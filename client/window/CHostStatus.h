#pragma once

#include <QStatusBar>

class QLabel;
struct stDef_GridTotals;

/// The window's status bar: messages at the left, what holds at the right. In full screen it comes for as long as it
/// has something to say.
class CHostStatus : public QStatusBar
{
    Q_OBJECT

public:
    explicit CHostStatus(QWidget* pParent = nullptr);

    /// For ten seconds.
    void m_S_Tell(const QString& sText);
    void m_S_ShowTotals(int nRecorders, const stDef_GridTotals& stTotals);
    /// Whose setting windows are open: their titles don't tell. Empty when they are closed.
    void m_S_ShowSheetOf(const QString& sRecorder);
    /// What a recorder did not take; empty when it is used again.
    void m_S_ShowNotTaken(const QString& sText);
    void m_S_SetFullScreen(bool bOn);

private:
    QLabel* m_F_p_MakeLabel(const char* pszName);
    void m_S_Settle();

    bool vm_bFullScreen = false;
    QLabel* vm_pSheetOf;
    QLabel* vm_pTotals;
    QLabel* vm_pNotTaken; ///< a message would be gone with the next tip of a menu
};
