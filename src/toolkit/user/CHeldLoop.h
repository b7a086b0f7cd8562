#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>

/// Handles events while something is waited for, under the wait cursor: windows are painted, timers tick, but input is
/// held back from all windows but one, and never comes later. Loops may nest; then each ends when its own wait and
/// those within it have ended. GUI thread only.
class CHeldLoop
{
public:
    /// `fnDone` tells when the wait is over. It is asked after each event: what makes it true has to wake the event
    /// dispatcher. `fnQuit` is called when the application is to end.
    CHeldLoop(std::function<bool()> fnDone, std::function<void()> fnQuit);
    CHeldLoop(const CHeldLoop&) = delete;
    CHeldLoop& operator=(const CHeldLoop&) = delete;

    void m_S_Run();
    /// Input of this window passes; null for none. Borrowed, and may go.
    void m_S_LetPass(const QWidget* pBox) { vm_pBox = pBox; }

private:
    class CFilter;

    bool m_F_b_Holds() const;
    bool m_F_b_Passes(const QObject* pTarget) const;
    void m_S_Drain();

    std::function<bool()> vm_fnDone;
    std::function<void()> vm_fnQuit;
    QPointer<const QWidget> vm_pBox;
    int vm_nLevel = 0; ///< of event loops, when it began
    const QWidget* vm_pModalAtEnd = nullptr;
    bool vm_bDrains = false;
};
