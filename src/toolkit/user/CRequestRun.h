#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <functional>

#include "toolkit/user/CWaitBox.h"

/// Runs blocking work, one piece after the other, on a worker thread, while the windows live on and input is held back
/// as `CHeldLoop` does. A second after its begin a box comes up that tells what is waited for and has a button that
/// stops the work. The caller sees one blocking call. GUI thread only, but for the work itself.
class CRequestRun
{
public:
    /// The parent is a page, or null; it is borrowed and may go meanwhile. If it goes, or the dialog it is in is
    /// closed, the work is stopped.
    CRequestRun(QWidget* pParent, stDef_WaitTexts stTexts);
    ~CRequestRun();
    CRequestRun(const CRequestRun&) = delete;
    CRequestRun& operator=(const CRequestRun&) = delete;

    /// Runs the work and returns when it has returned. `fnStop` is called on the GUI thread when the work is to end
    /// early, at most once. After a stop further work isn't begun: false.
    bool m_F_b_Run(const std::function<void()>& fnWork, const std::function<void()>& fnStop);
    /// Stops the work, as the button does.
    void m_S_Stop();
    bool m_F_b_Stopped() const { return vm_bStopped; }

    /// Tells how far a series of requests has come, in the box, which from now on stands at once.
    void m_S_ShowProgress(const QString& sText, int nDone, int nAll);

private:
    void m_S_Tick();
    bool m_F_b_WindowGone() const;
    CWaitBox& m_F_o_Box();

    QPointer<QWidget> vm_pParent;
    QPointer<QDialog> vm_pDialog; ///< that the parent is in
    bool vm_bHasParent, vm_bHasDialog;
    stDef_WaitTexts vm_stTexts;
    QPointer<CWaitBox> vm_pBox; ///< a child of the parent; null until it is shown
    QElapsedTimer vm_objClock;
    std::function<void()> vm_fnStop; ///< empty while nothing runs
    bool vm_bStopped = false;
};
