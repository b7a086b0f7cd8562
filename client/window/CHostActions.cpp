#include "window/CHostActions.h"

#include <QAction>
#include <QActionGroup>
#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>

#include "window/CMainWindow.h"
#include "window/HostTexts.h"

using namespace Qt::StringLiterals;

namespace {

bool IsChoice(emDef_ActionKind nKind)
{
    return nKind == emDef_ActionKind::Shape || nKind == emDef_ActionKind::Language;
}

void ShowTip(QAction& objAction, const stDef_Text& stTip)
{
    const QString sTip = Tr(stTip);
    const QString sKey = objAction.shortcut().toString(QKeySequence::NativeText);
    objAction.setStatusTip(sTip);
    objAction.setToolTip(sKey.isEmpty() ? sTip : u"%1 (%2)"_s.arg(sTip, sKey));
}

} // namespace

CHostActions::CHostActions(CMainWindow* pWindow, std::span<const stDef_ActionRow> arRows)
    : vm_pWindow(pWindow), vm_arRows(arRows)
{
    for (const stDef_ActionRow& stRow : arRows) {
        QAction* const pAction = m_F_p_Make(stRow);
        pAction->setObjectName(QString::fromLatin1(stRow.pszName));
        if (*stRow.pszKeys)
            pAction->setShortcuts(QKeySequence::listFromString(QString::fromLatin1(stRow.pszKeys)));
        pAction->setIcon(CHostIcon::s_F_o_Get(stRow.nIcon));
        pWindow->addAction(pAction); // the shortcut holds in full screen too, where the menu is hidden
        vm_mapActions[stRow.pszName] = pAction;
    }
}

QAction* CHostActions::m_F_p_Make(const stDef_ActionRow& stRow)
{
    if (stRow.nKind == emDef_ActionKind::Dock)
        return vm_pWindow->findChild<QDockWidget*>(QString::fromLatin1(stRow.pszName))->toggleViewAction();
    auto* const pAction = new QAction(vm_pWindow);
    const bool bToggle = stRow.nKind == emDef_ActionKind::Toggle;
    pAction->setCheckable(bToggle || IsChoice(stRow.nKind));
    if (IsChoice(stRow.nKind)) {
        QActionGroup*& pGroup = vm_mapGroups[stRow.nKind];
        pGroup = pGroup ? pGroup : new QActionGroup(vm_pWindow);
        pGroup->addAction(pAction);
    }
    QObject::connect(pAction, &QAction::triggered, vm_pWindow, [pWindow = vm_pWindow, &stRow, bToggle](bool bOn) {
        stRow.fnDo(*pWindow, bToggle ? int(bOn) : stRow.nValue);
    });
    return pAction;
}

QAction* CHostActions::m_F_p_Get(const char* pszName) const
{
    return vm_mapActions.value(pszName);
}

void CHostActions::m_S_AddTo(QWidget& objBar, std::span<const char* const> arNames) const
{
    for (const char* const pszName : arNames) {
        auto* const pAction = pszName ? m_F_p_Get(pszName) : new QAction(&objBar);
        if (!pszName)
            pAction->setSeparator(true);
        objBar.addAction(pAction);
    }
}

void CHostActions::m_S_MakeMenus(QMenuBar& objBar, std::span<const stDef_MenuRow> arMenus)
{
    vm_pMenuBar = &objBar;
    vm_arMenus = arMenus;
    for (const stDef_MenuRow& stRow : arMenus) {
        QMenu* const pMenu = objBar.addMenu(QString());
        pMenu->setObjectName(QString::fromLatin1(stRow.pszName));
        m_S_AddTo(*pMenu, stRow.arActions);
    }
}

void CHostActions::m_S_Retranslate()
{
    for (const stDef_ActionRow& stRow : vm_arRows) {
        QAction& objAction = *m_F_p_Get(stRow.pszName);
        const QString sPlain = PlainText(Tr(stRow.stText));
        if (stRow.nKind == emDef_ActionKind::Dock) // before the action, which takes the title over
            vm_pWindow->findChild<QDockWidget*>(objAction.objectName())->setWindowTitle(sPlain);
        objAction.setText(Tr(stRow.stText));
        objAction.setIconText(sPlain);
        ShowTip(objAction, stRow.stTip);
    }
    for (const stDef_MenuRow& stRow : vm_arMenus)
        vm_pMenuBar->findChild<QMenu*>(QString::fromLatin1(stRow.pszName))->setTitle(Tr(stRow.stTitle));
}

void CHostActions::m_S_SetTip(const char* pszName, const stDef_Text& stTip) const
{
    ShowTip(*m_F_p_Get(pszName), stTip);
}

void CHostActions::m_S_SetEnabled(emDef_ActionKind nKind, bool bEnabled) const
{
    for (const stDef_ActionRow& stRow : vm_arRows) {
        if (stRow.nKind == nKind)
            m_F_p_Get(stRow.pszName)->setEnabled(bEnabled);
    }
}

void CHostActions::m_S_Choose(emDef_ActionKind nKind, int nValue) const
{
    for (const stDef_ActionRow& stRow : vm_arRows) {
        if (stRow.nKind == nKind && stRow.nValue == nValue)
            m_F_p_Get(stRow.pszName)->setChecked(true);
    }
}
