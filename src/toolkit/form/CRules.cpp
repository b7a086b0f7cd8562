#include "toolkit/form/CRules.h"

#include <QAbstractButton>
#include <QHash>
#include <algorithm>

void CRules::m_S_Enable(const QList<QWidget*>& arWidgets, const QList<stDef_While>& arWhile)
{
    vm_arRules.push_back({arWidgets, arWhile});
    for (const stDef_While& st : arWhile)
        m_S_Listen(st.pButton);
}

void CRules::m_S_Listen(QAbstractButton* pButton)
{
    if (vm_arHeard.contains(pButton))
        return;
    vm_arHeard.append(pButton);
    connect(pButton, &QAbstractButton::toggled, this, &CRules::m_S_Run);
}

// A run may toggle further buttons: what they enable is seen to at the end of the same run.
void CRules::m_S_Run()
{
    if (vm_bRunning)
        return;
    vm_bRunning = true;
    for (const auto& fnRun : vm_arAlso)
        fnRun();
    m_S_Evaluate();
    vm_bRunning = false;
}

void CRules::m_S_Evaluate() const
{
    QHash<QWidget*, bool> mapEnabled;
    for (const stDef_Rule& stRule : vm_arRules) {
        const bool bHolds = std::all_of(stRule.arWhile.begin(), stRule.arWhile.end(),
                                        [](const stDef_While& st) { return st.pButton->isChecked() == st.bChecked; });
        for (QWidget* const pWidget : stRule.arWidgets)
            mapEnabled[pWidget] = bHolds && mapEnabled.value(pWidget, true);
    }
    for (auto it = mapEnabled.cbegin(); it != mapEnabled.cend(); ++it)
        it.key()->setEnabled(it.value());
}
