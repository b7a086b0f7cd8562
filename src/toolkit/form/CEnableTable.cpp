#include "toolkit/form/CEnableTable.h"

#include <QCheckBox>

void CEnableTable::m_S_Add(QCheckBox* pBox, const QList<QWidget*>& arOn, const QList<QWidget*>& arOff, Extra fnExtra)
{
    const std::size_t nRule = vm_arRules.size();
    vm_arRules.push_back({pBox, arOn, arOff, std::move(fnExtra)});
    connect(pBox, &QCheckBox::clicked, this, [this, nRule] { s_S_Run(vm_arRules[nRule]); });
}

void CEnableTable::m_S_Run() const
{
    for (const stDef_Rule& stRule : vm_arRules)
        s_S_Run(stRule);
}

void CEnableTable::s_S_Run(const stDef_Rule& stRule)
{
    const bool bChecked = stRule.pBox->isChecked();
    for (QWidget* const pWidget : stRule.arOn)
        pWidget->setEnabled(bChecked);
    for (QWidget* const pWidget : stRule.arOff)
        pWidget->setEnabled(!bChecked);
    if (stRule.fnExtra)
        stRule.fnExtra(bChecked);
}
