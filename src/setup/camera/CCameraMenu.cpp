#include "setup/camera/CCameraMenu.h"

#include <QMenu>

#include "toolkit/form/CTextSource.h"

using namespace Qt::StringLiterals;

namespace {

// Every camera is listed, but only these numbers of cameras are acted on; the others do nothing. The numbers of the
// two lists would overlap beyond that, so an entry is told by its list and not by its number.
constexpr int SwitchTargets = 17; // commands 1950..1966
constexpr int CopyTargets = 16;   // commands 2001..2016

QString Word(const CTextSource& objTexts, const stDef_Text& stText)
{
    return objTexts.m_F_s_Text(stText, QString::fromUtf8(stText.pszDefault));
}

// A camera's name isn't to be read as mnemonics.
QString Literal(const QString& sName)
{
    return QString(sName).replace(u"&"_s, u"&&"_s);
}

void AddCameras(QMenu* pMenu, const QStringList& arNames, int nSelected, int nTargets,
                const std::function<void(int)>& fnChosen)
{
    for (int nIndex = 0; nIndex < arNames.size(); ++nIndex) {
        QAction* const pAction = pMenu->addAction(Literal(arNames[nIndex]));
        pAction->setEnabled(nIndex != nSelected);
        if (nIndex < nTargets)
            QObject::connect(pAction, &QAction::triggered, pMenu, [fnChosen, nIndex] { fnChosen(nIndex); });
    }
}

} // namespace

void CCameraMenu::s_S_Run(QWidget* pParent, const CTextSource& objTexts, const QPoint& ptGlobal,
                          const QStringList& arNames, int nSelected, bool bCopyable, const stDef_Actions& stActions)
{
    QMenu menu(pParent);
    if (arNames.size() > 1) {
        QMenu* const pSwitch = menu.addMenu(Word(objTexts, Text{"SwitchTo", "Switch To"}));
        AddCameras(pSwitch, arNames, nSelected, SwitchTargets, stActions.fnSwitchTo);
        QMenu* const pCopy = menu.addMenu(Word(objTexts, Text{"CopyTo", "Copy To"}));
        pCopy->setEnabled(bCopyable);
        QObject::connect(pCopy->addAction(Word(objTexts, Text{"ApplyAll", "Apply All"})), &QAction::triggered, pCopy,
                         stActions.fnCopyToAll);
        pCopy->addSeparator();
        AddCameras(pCopy, arNames, nSelected, CopyTargets, stActions.fnCopyTo);
    }
    QAction* const pRemoveAll = menu.addAction(Word(objTexts, Text{"RemoveAll", "Remove All"}));
    pRemoveAll->setEnabled(!arNames.isEmpty());
    QObject::connect(pRemoveAll, &QAction::triggered, &menu, stActions.fnRemoveAll);
    menu.exec(ptGlobal);
}
