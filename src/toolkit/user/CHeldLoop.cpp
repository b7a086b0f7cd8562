#include "toolkit/user/CHeldLoop.h"

#include <QApplication>
#include <QEventLoop>
#include <QKeyEvent>
#include <QList>
#include <QThread>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "toolkit/user/CWaitCursor.h"

namespace {

QList<CHeldLoop*>& Loops()
{
    static QList<CHeldLoop*> s_arLoops;
    return s_arLoops;
}

// Closing is not among it: what a program closes looks the same as what a user does. A user reaches no window any more
// once the box stands, which is modal; a dialog that is closed before that ends the wait.
bool IsInput(QEvent::Type nType)
{
    switch (nType) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::HoverMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::InputMethod:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::NativeGesture:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::NonClientAreaMouseButtonPress:
        return true;
    default:
        return false;
    }
}

// The key that began the wait may still be down: it must not press the box's button.
bool IsRepeat(const QEvent* pEvent)
{
    const QEvent::Type nType = pEvent->type();
    const bool bKey = nType == QEvent::KeyPress || nType == QEvent::KeyRelease || nType == QEvent::ShortcutOverride;
    return bKey && static_cast<const QKeyEvent*>(pEvent)->isAutoRepeat();
}

} // namespace

/// Stands before all objects of the application while there is a loop.
class CHeldLoop::CFilter : public QObject
{
public:
    bool eventFilter(QObject* pTarget, QEvent* pEvent) override
    {
        if (pEvent->type() == QEvent::Quit) {
            for (const CHeldLoop* const pLoop : Loops())
                pLoop->vm_fnQuit();
            return false;
        }
        const auto& arLoops = Loops();
        if (!IsInput(pEvent->type()) ||
            std::none_of(arLoops.begin(), arLoops.end(), [](const auto* p) { return p->m_F_b_Holds(); }))
            return false;
        const bool bPasses =
            std::any_of(arLoops.begin(), arLoops.end(), [&](const auto* p) { return p->m_F_b_Passes(pTarget); });
        if (bPasses && !IsRepeat(pEvent))
            return false;
        pEvent->ignore();
        return true;
    }
};

CHeldLoop::CHeldLoop(std::function<bool()> fnDone, std::function<void()> fnQuit)
    : vm_fnDone(std::move(fnDone)), vm_fnQuit(std::move(fnQuit))
{}

void CHeldLoop::m_S_Run()
{
    static CFilter s_objFilter;
    const CWaitCursor objWait;
    if (Loops().isEmpty())
        QCoreApplication::instance()->installEventFilter(&s_objFilter);
    Loops().append(this);
    vm_nLevel = QThread::currentThread()->loopLevel();
    QEventLoop objLoop;
    while (!vm_fnDone())
        objLoop.processEvents(QEventLoop::WaitForMoreEvents);
    m_S_Drain();
    Loops().removeOne(this);
    if (Loops().isEmpty())
        QCoreApplication::instance()->removeEventFilter(&s_objFilter);
}

// What was clicked and typed last still stands in a queue. A window that something else opens just now may be used: it
// would have to be closed before this returns.
void CHeldLoop::m_S_Drain()
{
    vm_pModalAtEnd = QApplication::activeModalWidget();
    vm_bDrains = true;
    QCoreApplication::processEvents();
    vm_bDrains = false;
}

// A wait that is over holds nothing back where it can't return yet: a dialog that a timer opened within it has to be
// closed first. One that is about to return still holds, or a click that comes just then would begin an action within
// the one that waits.
bool CHeldLoop::m_F_b_Holds() const
{
    if (vm_bDrains)
        return QApplication::activeModalWidget() == vm_pModalAtEnd;
    return !vm_fnDone() || QThread::currentThread()->loopLevel() <= vm_nLevel;
}

bool CHeldLoop::m_F_b_Passes(const QObject* pTarget) const
{
    if (!vm_pBox || !pTarget)
        return false;
    if (pTarget->isWindowType())
        return pTarget == vm_pBox->windowHandle();
    const auto* const pWidget = qobject_cast<const QWidget*>(pTarget);
    return pWidget ? pWidget->window() == vm_pBox : m_F_b_Passes(pTarget->parent());
}
