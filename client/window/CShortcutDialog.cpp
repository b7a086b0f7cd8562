#include "window/CShortcutDialog.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QEvent>
#include <QHeaderView>
#include <QRegularExpression>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "ptz/CPtzAction.h"
#include "window/CHostText.h"

using namespace Qt::StringLiterals;

namespace {

struct stDef_KeyRow
{
    emDef_Text nGroup;
    const char* pszKeys;
    emDef_Text nText;
};

constexpr stDef_KeyRow g_astKeys[] = {
    {emDef_Text::ShortcutGroupWindow, "Tab", emDef_Text::KeyTab},
    {emDef_Text::ShortcutGroupTree, "Enter", emDef_Text::KeyTreePlace},
    {emDef_Text::ShortcutGroupTree, "F2", emDef_Text::KeyTreeEdit},
    {emDef_Text::ShortcutGroupTree, "Del", emDef_Text::KeyTreeRemove},
    {emDef_Text::ShortcutGroupTree, "Left, Right", emDef_Text::KeyTreeExpand},
    {emDef_Text::ShortcutGroupTree, "Menu", emDef_Text::KeyTreeMenu},
    {emDef_Text::ShortcutGroupTree, "Ctrl+F", emDef_Text::KeyTreeFilter},
    {emDef_Text::ShortcutGroupGrid, "Left, Right, Up, Down", emDef_Text::KeyGridMove},
    {emDef_Text::ShortcutGroupGrid, "Enter", emDef_Text::KeyGridEnlarge},
    {emDef_Text::ShortcutGroupGrid, "Del", emDef_Text::KeyGridEmpty},
};

QString NativeKeys(const QString& sKeys)
{
    return QKeySequence::listToString(QKeySequence::listFromString(sKeys), QKeySequence::NativeText);
}

// Without the mnemonic, which stands in brackets of its own in Chinese.
QString PlainText(QString sText)
{
    static const QRegularExpression objBrackets(u"\\(&.\\)"_s);
    return sText.remove(objBrackets).remove(u'&');
}

QTreeWidgetItem* MakeGroup(QTreeWidget& objTable, emDef_Text nGroup)
{
    auto* const pGroup = new QTreeWidgetItem(&objTable, {Tr(nGroup)});
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
    auto* const pButtons = new QDialogButtonBox(QDialogButtonBox::Close);
    pLayout->addWidget(pButtons);
    connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    m_S_Fill();
    resize(560, 600);
}

void CShortcutDialog::m_S_Fill()
{
    setWindowTitle(Tr(emDef_Text::Shortcuts));
    vm_pTable->setAccessibleName(Tr(emDef_Text::Shortcuts));
    vm_pTable->clear();
    vm_pTable->setHeaderLabels({Tr(emDef_Text::ShortcutWhat), Tr(emDef_Text::ShortcutKey)});
    QHash<emDef_Text, QTreeWidgetItem*> mapGroups;
    for (const emDef_Text nGroup : {emDef_Text::ShortcutGroupWindow, emDef_Text::ShortcutGroupTree,
                                    emDef_Text::ShortcutGroupGrid, emDef_Text::ShortcutGroupPtz})
        mapGroups[nGroup] = MakeGroup(*vm_pTable, nGroup);
    for (const QAction* const pAction : parentWidget()->actions()) {
        if (pAction->shortcuts().isEmpty() || pAction->text().isEmpty())
            continue;
        new QTreeWidgetItem(
            mapGroups[emDef_Text::ShortcutGroupWindow],
            {PlainText(pAction->text()), QKeySequence::listToString(pAction->shortcuts(), QKeySequence::NativeText)});
    }
    for (const stDef_KeyRow& stRow : g_astKeys)
        new QTreeWidgetItem(mapGroups[stRow.nGroup], {Tr(stRow.nText), NativeKeys(QString::fromLatin1(stRow.pszKeys))});
    for (const stDef_PtzAction& stAction : CPtzAction::s_F_ar_All())
        new QTreeWidgetItem(mapGroups[emDef_Text::ShortcutGroupPtz],
                            {Tr(stAction.nText), CPtzAction::s_F_s_Key(stAction)});
    vm_pTable->expandAll();
    vm_pTable->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    vm_pTable->header()->setStretchLastSection(false);
    vm_pTable->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
}

void CShortcutDialog::changeEvent(QEvent* pEvent)
{
    QDialog::changeEvent(pEvent);
    if (pEvent->type() == QEvent::LanguageChange)
        m_S_Fill();
}
