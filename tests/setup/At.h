#pragma once

#include <QLineEdit>
#include <QtTest/QTest>
#include <gtest/gtest.h>

/// What a user does at a page, by the names of its controls.
class At
{
public:
    explicit At(QWidget* pPage) : vm_pPage(pPage) {}

    QWidget* Find(const QString& sName) const
    {
        auto* const pWidget = vm_pPage->findChild<QWidget*>(sName);
        EXPECT_TRUE(pWidget) << sName.toStdString();
        return pWidget;
    }
    void Type(const QString& sName, const QString& sText) const
    {
        QWidget* const pControl = Find(sName);
        const auto Target = [pControl] { // a key may lead to another part; what is disabled takes none
            QWidget* const pFocus = pControl->window()->focusWidget();
            return pControl->isAncestorOf(pFocus) ? pFocus : pControl;
        };
        pControl->setFocus();
        QTest::keyClick(Target(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(Target(), Qt::Key_Delete);
        for (const QChar c : sText)
            QTest::keyClicks(Target(), QString(c));
    }
    void Click(const QString& sName) const
    {
        QWidget* const pWidget = Find(sName);
        QTest::mouseClick(pWidget, Qt::LeftButton, {}, QPoint(8, pWidget->height() / 2));
    }
    QString Shown(const QString& sName) const { return Find(sName)->property("text").toString(); }
    /// Names of those that don't have this state.
    QStringList NotEnabled(const QStringList& arNames, bool bEnabled) const
    {
        QStringList arWrong;
        for (const QString& sName : arNames) {
            if (Find(sName)->isEnabled() != bEnabled)
                arWrong.append(sName);
        }
        return arWrong;
    }

private:
    QWidget* vm_pPage;
};
