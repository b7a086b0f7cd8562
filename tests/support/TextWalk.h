#pragma once

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QRegularExpression>
#include <QSet>
#include <QTabBar>
#include <QTimer>

#include "LanguageFile.h"

/// Walks over what a window shows, in the language of a file: what takes the focus has a name and can be read out, the
/// texts are those of the file, none is cut off, and all stand whole within their page.
class TextWalk
{
public:
    explicit TextWalk(const char* pszFile)
    {
        for (const QString& sWord : ReadLanguageFile(pszFile)) {
            if (sWord.contains("%1"))
                vm_arComposed.append(
                    QRegularExpression(Pattern(sWord), QRegularExpression::DotMatchesEverythingOption));
            vm_setWords.insert(Bare(sWord));
        }
    }

    /// All that stands in the window now. The page is a part of it, or the window itself.
    void Window(QWidget* pWindow, const QWidget* pPage)
    {
        QApplication::processEvents(); // lays out what has changed
        CheckText(pWindow->windowTitle(), "the title");
        QSet<QString> setNames;
        for (QWidget* const pWidget : pWindow->findChildren<QWidget*>()) {
            if (!pWidget->isVisible() || pWidget->window() != pWindow)
                continue;
            if (pWidget->focusPolicy() & Qt::TabFocus)
                CheckFocus(pWidget, setNames);
            const QString sName = Describe(pWidget);
            for (const QString& sText : Texts(pWidget))
                CheckText(sText, sName);
            CheckPlace(pWidget, pPage->isAncestorOf(pWidget) ? pPage : pWindow, sName);
            CheckAlone(pWidget, sName);
        }
    }
    /// The menu that opens next, which is closed again.
    void NextMenu()
    {
        QTimer::singleShot(0, [this] {
            auto* const pMenu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_TRUE(pMenu);
            Menu(*pMenu);
            pMenu->close();
        });
    }
    void Menu(const QMenu& menu)
    {
        EXPECT_FALSE(menu.actions().isEmpty());
        for (const QAction* const pAction : menu.actions()) {
            CheckText(pAction->text(), menu.objectName());
            if (pAction->menu())
                Menu(*pAction->menu());
        }
    }

    int vm_nTexts = 0; ///< that were looked at, of two letters and more

private:
    /// A text without its mnemonic, and what stands around it, as a colon or the brackets of a hint.
    static QString Bare(QString sText)
    {
        static const QRegularExpression s_objMnemonic(R"(\(&.\)|&)"), s_objEdge(R"(^[^\pL%]+|[^\pL\d%]+$)"),
            s_objHint(R"(^\(?\d+ ~ )");
        return sText.remove(s_objMnemonic).remove(s_objHint).remove(s_objEdge);
    }
    static QString Pattern(const QString& sWord)
    {
        static const QRegularExpression s_objPlace(R"(%\\?\d)");
        return QRegularExpression::anchoredPattern(
            QRegularExpression::escape(Bare(sWord)).replace("\\%", "%").replace(s_objPlace, ".*"));
    }
    static QString Describe(const QWidget* pWidget)
    {
        return QString("%1 \"%2\"").arg(pWidget->metaObject()->className(), pWidget->objectName());
    }
    static QStringList Texts(const QWidget* pWidget)
    {
        QStringList arTexts;
        if (auto* const pBar = qobject_cast<const QTabBar*>(pWidget)) {
            for (int i = 0; i < pBar->count(); ++i)
                arTexts << pBar->tabText(i);
        } else if (auto* const pHeader = qobject_cast<const QHeaderView*>(pWidget)) {
            for (int i = 0; i < pHeader->count(); ++i)
                arTexts << pHeader->model()->headerData(i, pHeader->orientation()).toString();
        } else if (qobject_cast<const QLabel*>(pWidget) || qobject_cast<const QAbstractButton*>(pWidget)) {
            arTexts << pWidget->property("text").toString();
        } else if (auto* const pBox = qobject_cast<const QGroupBox*>(pWidget)) {
            arTexts << pBox->title();
        }
        return arTexts;
    }
    /// The parts of a control, such as the numbers of an address, go by its name.
    static QString Path(const QWidget* pWidget)
    {
        QString sPath = pWidget->metaObject()->className() + QString(" ") + pWidget->objectName();
        for (const QWidget* p = pWidget->parentWidget(); p; p = p->parentWidget())
            sPath += p->isAncestorOf(p->focusProxy()) ? "/" + p->objectName() : QString();
        return sPath;
    }

    static void CheckFocus(QWidget* pWidget, QSet<QString>& setNames)
    {
        const QString sName = Path(pWidget);
        EXPECT_FALSE(pWidget->objectName().isEmpty()) << sName.toStdString();
        EXPECT_FALSE(setNames.contains(sName)) << "twice: " << sName.toStdString();
        setNames.insert(sName);
        QAccessibleInterface* const pRead = QAccessible::queryAccessibleInterface(pWidget);
        EXPECT_TRUE(pRead && !pRead->text(QAccessible::Name).isEmpty()) << "can't be read out: " << sName.toStdString();
    }
    void CheckText(const QString& sText, const QString& sWhere)
    {
        static const QRegularExpression s_objWord(R"(\pL\pL)");
        const QString sBare = Bare(sText);
        if (!sBare.contains(s_objWord))
            return;
        ++vm_nTexts;
        const bool bKnown = vm_setWords.contains(sBare) ||
                            std::any_of(vm_arComposed.begin(), vm_arComposed.end(),
                                        [&](const QRegularExpression& obj) { return obj.match(sBare).hasMatch(); });
        EXPECT_TRUE(bKnown) << "no text of this language: " << sText.toStdString() << " at " << sWhere.toStdString();
    }
    /// What is left out of its layout stands over its neighbours.
    static void CheckAlone(const QWidget* pWidget, const QString& sName)
    {
        for (const QObject* const pObject : pWidget->parent()->children()) {
            const auto* const pOther = qobject_cast<const QWidget*>(pObject);
            if (pOther && pOther != pWidget && pOther->isVisible() && !pOther->isWindow() &&
                pOther->geometry().intersects(pWidget->geometry()))
                ADD_FAILURE() << sName.toStdString() << " stands over " << Describe(pOther).toStdString();
        }
    }
    static void CheckPlace(const QWidget* pWidget, const QWidget* pPage, const QString& sName)
    {
        const QRect rc(pWidget->mapTo(pPage, QPoint()), pWidget->size());
        EXPECT_TRUE(pPage->rect().contains(rc)) << "not whole within its page: " << sName.toStdString();
        auto* const pLabel = qobject_cast<const QLabel*>(pWidget);
        if (pLabel && pLabel->wordWrap()) {
            EXPECT_LE(pLabel->heightForWidth(pLabel->width()), pLabel->height()) << "cut off: " << sName.toStdString();
        } else if (pLabel || qobject_cast<const QAbstractButton*>(pWidget)) {
            const QSize sz = pWidget->sizeHint();
            EXPECT_TRUE(sz.boundedTo(pWidget->size()) == sz)
                << "cut off: " << sName.toStdString() << " " << pWidget->property("text").toString().toStdString();
        }
    }

    QSet<QString> vm_setWords;
    QList<QRegularExpression> vm_arComposed;
};
