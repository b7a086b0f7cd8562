#include "ptz/CPtzKeys.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

#include "ptz/CPtzAction.h"

namespace {

constexpr int KeySources = 1000; ///< sources below are buttons

int SourceOf(const QKeyEvent& objEvent)
{
    return KeySources + objEvent.key() % (1 << 20) + (objEvent.modifiers() & Qt::KeypadModifier ? 1 << 20 : 0);
}

const stDef_PtzAction* ActionOnPad(int nKey)
{
    switch (nKey) {
    case Qt::Key_Left:
        return CPtzAction::s_F_p_OfDirection(-1, 0);
    case Qt::Key_Right:
        return CPtzAction::s_F_p_OfDirection(1, 0);
    case Qt::Key_Up:
        return CPtzAction::s_F_p_OfDirection(0, 1);
    case Qt::Key_Down:
        return CPtzAction::s_F_p_OfDirection(0, -1);
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return CPtzAction::s_F_p_OfDirection(0, 0);
    default:
        return nullptr;
    }
}

} // namespace

CPtzKeys::CPtzKeys(const QWidget* pPad, std::function<bool(const QWidget*)> fnActs)
    : vm_pPad(pPad), vm_fnActs(std::move(fnActs))
{
    qApp->installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this,
            [this](const QWidget*, const QWidget* pNow) { m_S_OnFocus(pNow); });
}

void CPtzKeys::m_S_OnFocus(const QWidget* pNow)
{
    if (!pNow || !vm_fnActs(pNow))
        Q_EMIT S_Lost();
}

bool CPtzKeys::eventFilter(QObject* pObject, QEvent* pEvent)
{
    if (!vm_bEnabled || !pObject->isWidgetType())
        return false;
    const auto* const pWidget = static_cast<const QWidget*>(pObject);
    switch (pEvent->type()) {
    case QEvent::KeyPress:
        return m_F_b_Press(pWidget, static_cast<QKeyEvent*>(pEvent));
    case QEvent::KeyRelease:
        return m_F_b_Release(static_cast<QKeyEvent*>(pEvent));
    case QEvent::FocusOut: // to a popup, which takes the keys without taking the focus
        if (static_cast<QFocusEvent*>(pEvent)->reason() == Qt::PopupFocusReason)
            Q_EMIT S_Lost();
        return false;
    case QEvent::WindowDeactivate:
        if (pWidget == vm_pPad)
            Q_EMIT S_Lost();
        return false;
    default:
        return false;
    }
}

const stDef_PtzAction* CPtzKeys::m_F_p_Action(const QWidget* pWidget, const QKeyEvent* pEvent) const
{
    const bool bNumberPad = pEvent->modifiers() & Qt::KeypadModifier;
    if (pEvent->modifiers() & ~Qt::KeypadModifier)
        return nullptr;
    if (const stDef_PtzAction* const pAction = pWidget == vm_pPad ? ActionOnPad(pEvent->key()) : nullptr)
        return pAction;
    return CPtzAction::s_F_p_OfKey(pEvent->key(), bNumberPad);
}

bool CPtzKeys::m_F_b_Press(const QWidget* pWidget, QKeyEvent* pEvent)
{
    const stDef_PtzAction* const pAction = vm_fnActs(pWidget) ? m_F_p_Action(pWidget, pEvent) : nullptr;
    if (!pAction)
        return false;
    const int nSource = SourceOf(*pEvent);
    if (pEvent->isAutoRepeat() || vm_setDown.contains(nSource))
        return true;
    vm_setDown.insert(nSource);
    const bool bDigit = pAction->nKind == emDef_PtzKind::PresetKey;
    Q_EMIT S_Pressed(nSource, pAction, bDigit ? pEvent->key() - Qt::Key_0 : 0);
    return true;
}

// Wherever it goes, and with whatever modifiers: they may have changed since the press.
bool CPtzKeys::m_F_b_Release(const QKeyEvent* pEvent)
{
    const int nSource = SourceOf(*pEvent);
    if (!vm_setDown.contains(nSource))
        return false;
    if (!pEvent->isAutoRepeat()) {
        vm_setDown.remove(nSource);
        Q_EMIT S_Released(nSource);
    }
    return true;
}
