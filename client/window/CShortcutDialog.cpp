#include "window/CShortcutDialog.h"

#include <QAction>
#include <QEvent>
#include <QHeaderView>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <vector>

#include "ptz/CPtzAction.h"
#include "window/CDialogButtons.h"
#include "window/HostTexts.h"

using namespace Qt::StringLiterals;

namespace {

struct stDef_KeyRow
{
    const char* pszKeys;
    stDef_Text stText;
};

struct stDef_KeyGroup
{
    stDef_Text stTitle;
    std::vector<stDef_KeyRow> arKeys;
};

// Keys that belong to no action; those of the window's actions come first of all.
const stDef_KeyGroup g_astGroups[] = {
    {{"ShortcutGroupWindow", "Window"}, {{"Tab", {"KeyTab", "Go to the next part of the window"}}}},
    {{"ShortcutGroupTree", "Recorder list"},
     {
         {"Enter", {"KeyTreePlace", "Show the channel, or the recorder's channels"}},
         {"F2", {"KeyTreeEdit", "Edit the recorder"}},
         {"Del", {"KeyTreeRemove", "Remove the recorder"}},
         {"Left, Right", {"KeyTreeExpand", "Expand or collapse a recorder's channels"}},
         {"Menu", {"KeyTreeMenu", "Menu of the recorder"}},
         {"Ctrl+F", {"KeyTreeFilter", "Filter the list"}},
     }},
    {{"ShortcutGroupGrid", "Live pictures"},
     {
         {"Left, Right, Up, Down", {"KeyGridMove", "Select another cell"}},
         {"Enter", {"KeyGridEnlarge", "Enlarge the selected cell, and back"}},
         {"Del", {"KeyGridEmpty", "Empty the selected cell"}},
     }},
};

QString NativeKeys(const QList<QKeySequence>& arKeys)
{
    return QKeySequence::listToString(arKeys, QKeySequence::NativeText);
}

QTreeWidgetItem* MakeGroup(QTreeWidget& objTable, const stDef_Text& stTitle)
{
    auto* const pGroup = new QTreeWidgetItem(&objTable, {Tr(stTitle)});
    QFont objBold = objTable.font();
    objBold.setBold(true);
    pGroup->setFont(0, objBold);
    pGroup->setFirstColumnSpanned(true);
    pGroup->setFlags(Qt::ItemIsEnabled);
    return pGroup;
}

} // namespace

CShortcutDialog::CShortcutDialog(QWidget* pWindow) : QDialog(pWindow)
{
    setObjectName(u"ShortcutDialog"_s);
    auto* const pLayout = new QVBoxLayout(this);
    vm_pTable = new QTreeWidget;
    vm_pTable->setObjectName(u"Shortcuts"_s);
    vm_pTable->setColumnCount(2);
    vm_pTable->setRootIsDecorated(false);
    vm_pTable->setItemsExpandable(false);
    vm_pTable->setAlternatingRowColors(true);
    pLayout->addWidget(vm_pTable);
    auto* const pButtons = new CDialogButtons(QDialogButtonBox::Close);
    pLayout->addWidget(pButtons);
    connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    m_S_Fill();
    resize(560, 600);
}

void CShortcutDialog::m_S_Fill()
{
    setWindowTitle(Tr(nsHost::Shortcuts));
    vm_pTable->setAccessibleName(Tr(nsHost::Shortcuts));
    vm_pTable->clear();
    vm_pTable->setHeaderLabels({Tr(nsHost::ShortcutWhat), Tr(nsHost::ShortcutKey)});
    for (const stDef_KeyGroup& stGroup : g_astGroups) {
        QTreeWidgetItem* const pGroup = MakeGroup(*vm_pTable, stGroup.stTitle);
        if (&stGroup == &g_astGroups[0])
            m_S_FillActions(pGroup);
        for (const stDef_KeyRow& stRow : stGroup.arKeys)
            new QTreeWidgetItem(pGroup, {Tr(stRow.stText),
                                         NativeKeys(QKeySequence::listFromString(QString::fromLatin1(stRow.pszKeys)))});
    }
    QTreeWidgetItem* const pPtz =
        MakeGroup(*vm_pTable, {"ShortcutGroupPtz", "PTZ panel, there and in the live pictures"});
    for (const stDef_PtzAction& stAction : CPtzAction::s_F_ar_All())
        new QTreeWidgetItem(pPtz, {Tr(stAction.stText), CPtzAction::s_F_s_Key(stAction)});
    vm_pTable->expandAll();
    vm_pTable->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    vm_pTable->header()->setStretchLastSection(false);
    vm_pTable->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
}

void CShortcutDialog::m_S_FillActions(QTreeWidgetItem* pGroup)
{
    for (const QAction* const pAction : parentWidget()->actions()) {
        if (!pAction->shortcuts().isEmpty() && !pAction->text().isEmpty())
            new QTreeWidgetItem(pGroup, {PlainText(pAction->text()), NativeKeys(pAction->shortcuts())});
    }
}

void CShortcutDialog::changeEvent(QEvent* pEvent)
{
    QDialog::changeEvent(pEvent);
    if (pEvent->type() == QEvent::LanguageChange)
        m_S_Fill();
}
