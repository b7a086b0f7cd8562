#include "toolkit/form/CForm.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "toolkit/form/FormColumns.h"

namespace {

/// Where hints take room, a control that has none gets that room too.
void Widen(QGridLayout& objGrid)
{
    using namespace nsFormColumns;
    if (objGrid.columnCount() <= Hints)
        return;
    for (int nRow = 0; nRow < objGrid.rowCount(); ++nRow) {
        QLayoutItem* const pControl = objGrid.itemAtPosition(nRow, Controls);
        if (!pControl || pControl == objGrid.itemAtPosition(nRow, Labels) || objGrid.itemAtPosition(nRow, Hints))
            continue;
        objGrid.removeItem(pControl);
        if (QLayout* const pLine = pControl->layout()) // a line of its own loses its parent, and its spacing, with that
            objGrid.addLayout(pLine, nRow, Controls, 1, Hints - Controls + 1);
        else
            objGrid.addItem(pControl, nRow, Controls, 1, Hints - Controls + 1);
    }
}

} // namespace

CForm::CForm(QWidget* pWindow) : vm_pWindow(pWindow) {}

void CForm::m_S_BeginColumn()
{
    if (!vm_pColumns) {
        vm_pColumns = new QHBoxLayout;
        (new QVBoxLayout(vm_pWindow))->addLayout(vm_pColumns, 1); // a note may stand below them
    }
    vm_pColumn = new QVBoxLayout;
    vm_pColumn->addStretch(); // what is left stays below the groups
    vm_pColumns->addLayout(vm_pColumn, 1);
}

QPushButton* CForm::m_F_p_Button(const stDef_Text& stText, const QString& sName)
{
    auto* const pButton = new QPushButton(vm_pWindow);
    pButton->setAutoDefault(false); // Enter belongs to no button of a page by itself
    pButton->setObjectName(sName);
    vm_objTexts.m_S_AddText(pButton, stText);
    return pButton;
}

QPushButton* CForm::m_F_p_EnterButton() const
{
    const auto it = std::find_if(vm_arEnter.begin(), vm_arEnter.end(),
                                 [](const QPushButton* pButton) { return pButton->isEnabled(); });
    return it == vm_arEnter.end() ? nullptr : *it;
}

void CForm::s_S_EnableButton(QPushButton* pButton, bool bEnabled, QWidget* pHeir)
{
    if (!bEnabled && pButton->window()->focusWidget() == pButton)
        pHeir->setFocus();
    pButton->setEnabled(bEnabled);
}

void CForm::m_S_Finish(const CTextSource& objTexts)
{
    vm_objRules.m_S_Run();
    vm_objTexts.m_S_Apply(objTexts);
    m_S_Align();
}

/// Gives the labels of all groups one width.
void CForm::m_S_Align()
{
    int nWidth = 0;
    for (const QLabel* const pLabel : vm_arLabels)
        nWidth = std::max(nWidth, pLabel->sizeHint().width());
    for (QGridLayout* const pGrid : vm_arGrids) {
        pGrid->setColumnMinimumWidth(nsFormColumns::Labels, nWidth);
        Widen(*pGrid);
    }
}

QLabel* CForm::s_F_p_LabelOf(const QWidget* pControl)
{
    const auto arLabels = pControl->parentWidget()->findChildren<QLabel*>(Qt::FindDirectChildrenOnly);
    const auto it = std::find_if(arLabels.begin(), arLabels.end(),
                                 [pControl](const QLabel* pLabel) { return pLabel->buddy() == pControl; });
    return it == arLabels.end() ? nullptr : *it;
}

void CForm::s_S_ShowRow(QWidget* pControl, bool bShown)
{
    pControl->setVisible(bShown);
    if (QLabel* const pLabel = s_F_p_LabelOf(pControl))
        pLabel->setVisible(bShown);
}
