#include "toolkit/form/CForm.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <algorithm>

#include "toolkit/controls/CIPAddressEdit.h"
#include "toolkit/controls/CPasswordEdit.h"

using namespace Qt::StringLiterals;

namespace {

enum Column
{
    Labels,
    Controls,
    Hints ///< empty in most groups, and then without width: nothing reaches into it
};

void SetName(QWidget* pControl, const char* pszName)
{
    pControl->setObjectName(QString::fromLatin1(pszName));
}

/// Where hints take room, a control that has none gets that room too.
void Widen(QGridLayout& objGrid)
{
    if (objGrid.columnCount() <= Hints)
        return;
    for (int nRow = 0; nRow < objGrid.rowCount(); ++nRow) {
        QLayoutItem* const pControl = objGrid.itemAtPosition(nRow, Controls);
        if (!pControl || pControl == objGrid.itemAtPosition(nRow, Labels) || objGrid.itemAtPosition(nRow, Hints))
            continue;
        objGrid.removeItem(pControl);
        objGrid.addItem(pControl, nRow, Controls, 1, Hints - Controls + 1);
    }
}

} // namespace

CForm::CForm(QWidget* pPage, CTextTable* pTexts) : vm_pPage(pPage), vm_pTexts(pTexts) {}

QGroupBox* CForm::m_F_p_Group(const stDef_Text& stTitle, const char* pszName, emDef_TextForm nForm)
{
    vm_pGroup = new QGroupBox(vm_pPage);
    SetName(vm_pGroup, pszName);
    vm_pTexts->m_S_Add(
        stTitle, [pGroup = vm_pGroup](const QString& sText) { pGroup->setTitle(sText); }, nForm);
    vm_pGrid = new QGridLayout(vm_pGroup);
    vm_pGrid->setColumnStretch(Controls, 1);
    vm_nRow = 0;
    return vm_pGroup;
}

QLabel* CForm::m_F_p_Label(const stDef_Text& stText, QWidget* pControl)
{
    if (!m_F_b_HasLabels())
        vm_arGrids.append(vm_pGrid);
    auto* const pLabel = new QLabel(vm_pGroup);
    pLabel->setBuddy(pControl);
    // Read out without the colon.
    vm_pTexts->m_S_Add(stText, [pControl](const QString& sText) { pControl->setAccessibleName(sText); });
    vm_pTexts->m_S_AddText(pLabel, stText, emDef_TextForm::Colon);
    vm_arLabels.append(pLabel);
    return pLabel;
}

bool CForm::m_F_b_HasLabels() const
{
    return !vm_arGrids.isEmpty() && vm_arGrids.last() == vm_pGrid;
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

void CForm::m_S_Align()
{
    int nWidth = 0;
    for (const QLabel* const pLabel : vm_arLabels)
        nWidth = std::max(nWidth, pLabel->sizeHint().width());
    for (QGridLayout* const pGrid : vm_arGrids) {
        pGrid->setColumnMinimumWidth(Labels, nWidth);
        Widen(*pGrid);
    }
}

template <class Widget>
Widget* CForm::m_F_p_Row(const stDef_Text& stLabel, Widget* pControl, const char* pszName)
{
    SetName(pControl, pszName);
    vm_pGrid->addWidget(m_F_p_Label(stLabel, pControl), vm_nRow, Labels);
    vm_pGrid->addWidget(pControl, vm_nRow++, Controls);
    return pControl;
}

QLineEdit* CForm::m_F_p_Edit(const stDef_Text& stLabel, const char* pszName)
{
    return m_F_p_Row(stLabel, new QLineEdit(vm_pGroup), pszName);
}

CPasswordEdit* CForm::m_F_p_Password(const stDef_Text& stLabel, const char* pszName)
{
    return m_F_p_Row(stLabel, new CPasswordEdit(vm_pGroup), pszName);
}

CPasswordEdit* CForm::m_F_p_ShownPassword(const stDef_Text& stLabel, const char* pszName)
{
    CPasswordEdit* const pEdit = m_F_p_Password(stLabel, pszName);
    auto* const pBox = new QCheckBox(vm_pGroup);
    pBox->setObjectName(u"Show"_s + pEdit->objectName());
    vm_pTexts->m_S_AddText(pBox, Text{"ShowPassword", "Show Password"});
    pEdit->m_S_Attach(pBox);
    vm_pGrid->addWidget(pBox, vm_nRow++, Controls);
    return pEdit;
}

QLineEdit* CForm::m_F_p_ReadOnly(const stDef_Text& stLabel, const char* pszName)
{
    QLineEdit* const pEdit = m_F_p_Edit(stLabel, pszName);
    pEdit->setReadOnly(true);
    QPalette objFlat; // on the ground of the page, so that it doesn't look like something to type into
    objFlat.setBrush(QPalette::Base, pEdit->palette().window());
    pEdit->setPalette(objFlat);
    return pEdit;
}

CIPAddressEdit* CForm::m_F_p_Address(const stDef_Text& stLabel, const char* pszName)
{
    return m_F_p_Row(stLabel, new CIPAddressEdit(vm_pGroup), pszName);
}

QComboBox* CForm::m_F_p_List(const stDef_Text& stLabel, const char* pszName)
{
    return m_F_p_Row(stLabel, new QComboBox(vm_pGroup), pszName);
}

QList<QLineEdit*> CForm::m_F_ar_Pair(const stDef_Text& stLabel, const char* pszFirst, const char* pszBetween,
                                     const char* pszSecond)
{
    const QList<QLineEdit*> arEdits = {new QLineEdit(vm_pGroup), new QLineEdit(vm_pGroup)};
    SetName(arEdits[0], pszFirst);
    SetName(arEdits[1], pszSecond);
    vm_pGrid->addWidget(m_F_p_Label(stLabel, arEdits[0]), vm_nRow, Labels);
    vm_pTexts->m_S_Add(stLabel, [pEdit = arEdits[1]](const QString& sText) { pEdit->setAccessibleName(sText); });
    auto* const pLine = new QHBoxLayout;
    pLine->addWidget(arEdits[0]);
    pLine->addWidget(new QLabel(QString::fromUtf8(pszBetween), vm_pGroup));
    pLine->addWidget(arEdits[1]);
    vm_pGrid->addLayout(pLine, vm_nRow++, Controls);
    return arEdits;
}

QCheckBox* CForm::m_F_p_Check(const stDef_Text& stText, const char* pszName)
{
    auto* const pBox = new QCheckBox(vm_pGroup);
    SetName(pBox, pszName);
    vm_pTexts->m_S_AddText(pBox, stText);
    vm_pGrid->addWidget(pBox, vm_nRow++, Labels, 1, Hints);
    return pBox;
}

QPushButton* CForm::m_F_p_Loose(const stDef_Text& stText, const char* pszName)
{
    auto* const pButton = new QPushButton(vm_pPage);
    pButton->setAutoDefault(false); // Enter in an edit belongs to the sheet's OK
    SetName(pButton, pszName);
    vm_pTexts->m_S_AddText(pButton, stText);
    return pButton;
}

QPushButton* CForm::m_F_p_Button(const stDef_Text& stText, const char* pszName)
{
    return m_F_ar_Buttons({{stText, pszName}}).first();
}

QList<QPushButton*> CForm::m_F_ar_Buttons(const QList<std::pair<stDef_Text, const char*>>& arButtons)
{
    QList<QPushButton*> arMade;
    auto* const pLine = new QHBoxLayout;
    for (const auto& [stText, pszName] : arButtons) {
        arMade.append(m_F_p_Loose(stText, pszName));
        pLine->addWidget(arMade.last());
    }
    pLine->addStretch();
    // Below the controls; in a group that has no column of labels, at its edge.
    const int nColumn = m_F_b_HasLabels() ? Controls : Labels;
    vm_pGrid->addLayout(pLine, vm_nRow++, nColumn, 1, Hints - nColumn);
    return arMade;
}

void CForm::m_S_Wide(QWidget* pControl, const char* pszName)
{
    SetName(pControl, pszName);
    vm_pGrid->setRowStretch(vm_nRow, 1);
    vm_pGrid->addWidget(pControl, vm_nRow++, Labels, 1, Hints);
}

QLabel* CForm::m_F_p_HintLabel()
{
    auto* const pHint = new QLabel(vm_pGroup);
    vm_pGrid->addWidget(pHint, vm_nRow - 1, Hints);
    return pHint;
}

void CForm::m_S_Hint(const char* pszFormat, const stDef_Text& stWord)
{
    vm_pTexts->m_S_AddComposed(m_F_p_HintLabel(), pszFormat, stWord);
}

void CForm::m_S_Hint(const char* pszText)
{
    m_F_p_HintLabel()->setText(QString::fromUtf8(pszText));
}
