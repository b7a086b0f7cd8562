#pragma once

#include <QHash>
#include <span>
#include <vector>

#include "fleetlink/fleetlink.h"
#include "window/CHostIcon.h"

class CMainWindow;
class QAction;
class QActionGroup;
class QMenuBar;
class QWidget;

/// What an action depends on, and how it shows itself.
enum class emDef_ActionKind
{
    Plain,
    OfPicked,    ///< needs a recorder that is picked
    OfRecorders, ///< needs any recorder
    Toggle,      ///< goes on and off
    Shape,       ///< one of its kind is on
    Language,    ///< the same
    Dock         ///< shows and hides the dock of its name, which is titled like it
};

/// One action of the host. Menus, toolbar, tips and the list of shortcuts walk the same rows.
struct stDef_ActionRow
{
    const char* pszName; ///< object name
    stDef_Text stText;
    stDef_Text stTip;
    const char* pszKeys; ///< divided by "; "
    emDef_HostIcon nIcon;
    emDef_ActionKind nKind;
    void (*fnDo)(CMainWindow& objWindow, int nValue); ///< null for docks
    int nValue;                                       ///< of a choice; a toggle gives whether it is on
};

struct stDef_MenuRow
{
    const char* pszName;
    stDef_Text stTitle;
    std::vector<const char*> arActions; ///< null is a line
};

/// The actions of the host's window, made of their rows.
class CHostActions
{
public:
    /// Adds an action a row to the window, whose docks have to be there. Rows and window outlive this.
    CHostActions(CMainWindow* pWindow, std::span<const stDef_ActionRow> arRows);

    /// Of that object name; there is one.
    QAction* m_F_p_Get(const char* pszName) const;
    /// Adds actions to a menu or a toolbar; null is a line.
    void m_S_AddTo(QWidget& objBar, std::span<const char* const> arNames) const;
    void m_S_MakeMenus(QMenuBar& objBar, std::span<const stDef_MenuRow> arMenus);

    /// Texts, tips and titles in the present language.
    void m_S_Retranslate();
    /// Another tip than that of its row, until the next language.
    void m_S_SetTip(const char* pszName, const stDef_Text& stTip) const;
    void m_S_SetEnabled(emDef_ActionKind nKind, bool bEnabled) const;
    /// Marks the one of a choice that has the value.
    void m_S_Choose(emDef_ActionKind nKind, int nValue) const;

private:
    QAction* m_F_p_Make(const stDef_ActionRow& stRow);

    CMainWindow* vm_pWindow;
    std::span<const stDef_ActionRow> vm_arRows;
    std::span<const stDef_MenuRow> vm_arMenus;
    QMenuBar* vm_pMenuBar = nullptr;
    QHash<QByteArray, QAction*> vm_mapActions;
    QHash<emDef_ActionKind, QActionGroup*> vm_mapGroups;
};
