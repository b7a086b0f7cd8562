#pragma once

#include <QObject>
#include <QSet>
#include <functional>

class QKeyEvent;
class QWidget;
struct stDef_PtzAction;

/// The keys of the PTZ panel. They act while the focus is where they shall, come once for each press however long it
/// lasts, and are lost together when their releases may not arrive any more.
class CPtzKeys : public QObject
{
    Q_OBJECT

public:
    /// `fnActs` tells whether keys that go to a widget are meant for the camera. On the pad the arrow keys are too, and
    /// Enter and the space bar, which are "home".
    CPtzKeys(const QWidget* pPad, std::function<bool(const QWidget*)> fnActs);

    void m_S_SetEnabled(bool bEnabled) { vm_bEnabled = bEnabled; }
    /// Keys that are down count no more.
    void m_S_Forget() { vm_setDown.clear(); }

Q_SIGNALS:
    /// `nDigit` is 1 to 9 for a key of a digit, else 0.
    void S_Pressed(int nSource, const stDef_PtzAction* pAction, int nDigit);
    void S_Released(int nSource);
    void S_Lost(); ///< the focus went elsewhere, or the window lost it

protected:
    bool eventFilter(QObject* pObject, QEvent* pEvent) override;

private:
    bool m_F_b_Press(const QWidget* pWidget, QKeyEvent* pEvent);
    bool m_F_b_Release(const QKeyEvent* pEvent);
    const stDef_PtzAction* m_F_p_Action(const QWidget* pWidget, const QKeyEvent* pEvent) const;
    void m_S_OnFocus(const QWidget* pNow);

    const QWidget* vm_pPad;
    const std::function<bool(const QWidget*)> vm_fnActs;
    QSet<int> vm_setDown;
    bool vm_bEnabled = false;
};
