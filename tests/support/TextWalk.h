#pragma once

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QDockWidget>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QRegularExpression>
#include <QSet>
#include <QShortcut>
#include <QTabBar>
#include <QTimer>

#include "LanguageFile.h"

/// Walks over what a window shows, in the language of a file: what takes the focus has a name and can be read out, the
/// texts are those of the file, none is cut off, and all stand whole within their page.
class TextWalk
{
public:
    template <class... Files>
    explicit TextWalk(Files... apszFiles)
    {
        for (const char* const pszFile : {apszFiles...}) {
            for (const QString& sWord : ReadLanguageFile(pszFile)) {
                if (sWord.contains("%1") && Bare(sWord).contains(Words()))
                    vm_arComposed.append(
                        QRegularExpression(Pattern(sWord), QRegularExpression::DotMatchesEverythingOption));
                vm_setWords.insert(Bare(sWord));
            }
        }
    }

    /// Words that are no texts, such as the names of recorders.
    void Know(const QStringList& arWords) { vm_setWords += QSet<QString>(arWords.begin(), arWords.end()); }

    /// All that stands in the window now. The page is a part of it, or the window itself.
    void Window(QWidget* pWindow, const QWidget* pPage)
    {
        for (int nLevel = 0; nLevel < 4; ++nLevel)
            QApplication::processEvents(); // lays out what has changed, from part to whole
        CheckText(pWindow->windowTitle(), "the title");
        QSet<QString> setNames;
        QStringList arMnemonics;
        for (QWidget* const pWidget : pWindow->findChildren<QWidget*>()) {
            if (!pWidget->isVisible() || pWidget->window() != pWindow || pWidget->objectName().startsWith("qt_"))
                continue; // the last are parts of Qt's own controls
            if (pWidget->focusPolicy() & Qt::TabFocus)
                CheckFocus(pWidget, setNames);
            const QString sName = Describe(pWidget);
            for (const QString& sText : Texts(pWidget)) {
                CheckText(sText, sName);
                arMnemonics << sText;
            }
            for (const QString& sTip : pWidget->toolTip().split('\n'))
                CheckText(sTip, "the tip of " + sName);
            CheckPlace(pWidget, pPage->isAncestorOf(pWidget) ? pPage : pWindow, sName);
            CheckAlone(pWidget, sName);
        }
        CheckMnemonics(arMnemonics, pWindow->objectName());
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
    /// A menu or the bar of the menus, with all below it.
    void Menu(const QWidget& menu)
    {
        EXPECT_FALSE(menu.actions().isEmpty());
        QStringList arTexts;
        for (const QAction* const pAction : menu.actions()) {
            EXPECT_TRUE(pAction->isSeparator() || !pAction->text().isEmpty()) << menu.objectName().toStdString();
            arTexts << pAction->text();
            CheckText(pAction->text(), menu.objectName());
            CheckText(pAction->statusTip(), "the tip of " + pAction->objectName());
            if (pAction->menu())
                Menu(*pAction->menu());
        }
        CheckMnemonics(arTexts, menu.objectName());
    }
    /// A key does one thing in a window.
    static void Keys(const QWidget& window)
    {
        QSet<QKeySequence> setKeys;
        const auto Check = [&setKeys](const QObject* pOwner, const QList<QKeySequence>& arKeys) {
            for (const QKeySequence& objKey : arKeys) {
                EXPECT_FALSE(setKeys.contains(objKey))
                    << objKey.toString().toStdString() << " twice, at " << pOwner->objectName().toStdString();
                setKeys.insert(objKey);
            }
        };
        for (const QAction* const pAction : window.findChildren<QAction*>())
            Check(pAction, pAction->shortcuts());
        for (const QShortcut* const pShortcut : window.findChildren<QShortcut*>())
            Check(pShortcut, pShortcut->keys());
        EXPECT_FALSE(setKeys.isEmpty());
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
    static const QRegularExpression& Words()
    {
        static const QRegularExpression s_objWords(R"(\pL\pL)");
        return s_objWords;
    }
    static const QRegularExpression& RangeOfBitrate()
    {
        static const QRegularExpression s_objRange(R"( \(\d+ ~ \d+ Kbps\))");
        return s_objRange;
    }
    static const QRegularExpression& KeyAtEnd()
    {
        static const QRegularExpression s_objKey(R"(^Ctrl\+\w+$| \([^ ()]+\)$)");
        return s_objKey;
    }
    static void CheckMnemonics(const QStringList& arTexts, const QString& sWhere)
    {
        static const QRegularExpression s_objMnemonic("&([^& ])");
        QMap<QString, QString> mapTexts;
        for (const QString& sText : arTexts) {
            const QString sKey = s_objMnemonic.match(sText).captured(1).toUpper();
            EXPECT_FALSE(!sKey.isEmpty() && mapTexts.contains(sKey))
                << "one mnemonic in " << sWhere.toStdString() << ": " << sText.toStdString() << " and "
                << mapTexts[sKey].toStdString();
            mapTexts[sKey] = sText;
        }
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
        } else if (auto* const pEdit = qobject_cast<const QLineEdit*>(pWidget)) {
            arTexts << pEdit->placeholderText();
        } else if (qobject_cast<const QDockWidget*>(pWidget)) {
            arTexts << pWidget->windowTitle();
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
    bool Knows(const QString& sText) const
    {
        const QString sBare = Bare(sText);
        return !sBare.contains(Words()) || vm_setWords.contains(sBare) ||
               std::any_of(vm_arComposed.begin(), vm_arComposed.end(), [&](const QRegularExpression& obj) {
                   return obj.match(sBare).hasMatch() || obj.match(sText).hasMatch();
               });
    }
    void CheckText(const QString& sText, const QString& sWhere)
    {
        const QString sBare = Bare(sText);
        if (!sBare.contains(Words()))
            return;
        ++vm_nTexts;
        static const QRegularExpression s_objComma(", |\u3001");
        const QStringList arParts = sText.split(s_objComma);
        const bool bList = std::all_of(arParts.begin(), arParts.end(), [&](const QString& s) { return Knows(s); });
        EXPECT_TRUE(bList || Knows(sText) || Knows(QString(sText).remove(KeyAtEnd())) ||
                    Knows(QString(sText).remove('&').remove(RangeOfBitrate())))
            << "no text of this language: " << sText.toStdString() << " at " << sWhere.toStdString();
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
        } else if (pLabel ? !pLabel->text().isEmpty() : qobject_cast<const QAbstractButton*>(pWidget) != nullptr) {
            const QSize sz = pWidget->sizeHint();
            EXPECT_TRUE(sz.boundedTo(pWidget->size()) == sz)
                << "cut off: " << sName.toStdString() << " " << pWidget->property("text").toString().toStdString();
        }
    }

    QSet<QString> vm_setWords;
    QList<QRegularExpression> vm_arComposed;
};
