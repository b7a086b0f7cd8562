#pragma once

#include <QList>
#include <QObject>
#include <functional>
#include <vector>

class QAbstractButton;
class QWidget;

/// What buttons enable. Every rule is evaluated when a window opens and after every toggle of a button that stands in
/// one, so that the order of the rules doesn't matter.
class CRules : public QObject
{
public:
    struct stDef_While
    {
        QAbstractButton* pButton; ///< check box, radio button
        bool bChecked = true;
    };

    using QObject::QObject;

    /// The widgets are enabled while all of the buttons are in the given states. A widget of several rules needs all of
    /// them.
    void m_S_Enable(const QList<QWidget*>& arWidgets, const QList<stDef_While>& arWhile);
    /// Runs before the rules are evaluated each time: for what a toggle does beyond enabling.
    void m_S_Also(std::function<void()> fnRun) { vm_arAlso.push_back(std::move(fnRun)); }
    void m_S_Run();

private:
    struct stDef_Rule
    {
        QList<QWidget*> arWidgets;
        QList<stDef_While> arWhile;
    };

    void m_S_Listen(QAbstractButton* pButton);
    void m_S_Evaluate() const;

    std::vector<stDef_Rule> vm_arRules;
    std::vector<std::function<void()>> vm_arAlso;
    QList<QAbstractButton*> vm_arHeard;
    bool vm_bRunning = false;
};
