#include "toolkit/form/CFormGroup.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include "toolkit/form/CommonTexts.h"
#include "toolkit/form/FormColumns.h"

using namespace Qt::StringLiterals;
using namespace nsFormColumns;

CFormGroup::CFormGroup(CForm& objForm, const stDef_Text& stTitle, const stDef_Node& stNode, emDef_TextForm nForm)
    : vm_pForm(&objForm),
      vm_pRows(&objForm.vm_objValues),
      vm_stNode(stNode),
      vm_pBox(new QGroupBox(objForm.vm_pWindow)),
      vm_pGrid(new QGridLayout(vm_pBox))
{
    vm_pBox->setObjectName(QString::fromUtf8(stTitle.pszKey) + u"Group"_s);
    objForm.vm_objTexts.m_S_Add(
        stTitle, [pBox = vm_pBox](const QString& sText) { pBox->setTitle(sText); }, nForm);
    vm_pGrid->setColumnStretch(Controls, 1);
    if (objForm.vm_pColumn)
        objForm.vm_pColumn->insertWidget(objForm.vm_pColumn->count() - 1, vm_pBox);
}

stDef_Value CFormGroup::m_F_o_Placed(const stDef_Value& stValue) const
{
    stDef_Value st = stValue;
    if (!st.stNode.pDocument)
        st.stNode = vm_stNode;
    return st;
}

QString CFormGroup::m_F_s_NameOf(const stDef_Value& stValue) const
{
    const QString sNode = m_F_o_Placed(stValue).stNode.sPath.section(u'/', -1);
    const QString sKey = QString::fromLatin1(stValue.pszKey);
    return sNode.isEmpty() ? sKey : sNode + u'.' + sKey;
}

bool CFormGroup::m_F_b_HasLabels() const
{
    return vm_pForm->vm_arGrids.contains(vm_pGrid);
}

QLabel* CFormGroup::m_F_p_Label(const stDef_Text& stText, QWidget* pControl)
{
    if (!m_F_b_HasLabels())
        vm_pForm->vm_arGrids.append(vm_pGrid);
    auto* const pLabel = new QLabel(vm_pBox);
    pLabel->setBuddy(pControl);
    // Read out without the colon.
    vm_pForm->vm_objTexts.m_S_Add(stText, [pControl](const QString& sText) { pControl->setAccessibleName(sText); });
    vm_pForm->vm_objTexts.m_S_AddText(pLabel, stText, emDef_TextForm::Colon);
    vm_pForm->vm_arLabels.append(pLabel);
    return pLabel;
}

void CFormGroup::m_S_Place(const stDef_Text& stLabel, const stDef_Value& stValue, QWidget* pControl)
{
    pControl->setParent(vm_pBox);
    pControl->setObjectName(m_F_s_NameOf(stValue));
    vm_pGrid->addWidget(m_F_p_Label(stLabel, pControl), vm_nRow, Labels);
    vm_pGrid->addWidget(pControl, vm_nRow++, Controls);
}

QLineEdit* CFormGroup::m_F_p_Edit(const stDef_Text& stLabel, const stDef_Value& stValue, const char* pszHint)
{
    auto* const pEdit = m_F_p_Row<nsForms::AsText>(stLabel, stValue, new QLineEdit);
    m_S_Hint(pszHint);
    return pEdit;
}

CIPAddressEdit* CFormGroup::m_F_p_Address(const stDef_Text& stLabel, const stDef_Value& stValue)
{
    return m_F_p_Row<nsForms::AsText>(stLabel, stValue, new CIPAddressEdit);
}

CPasswordEdit* CFormGroup::m_F_p_Password(const stDef_Text& stLabel, const stDef_Value& stValue, const char* pszHint)
{
    auto* const pEdit = m_F_p_Row<nsForms::AsText>(stLabel, stValue, new CPasswordEdit);
    m_S_Hint(pszHint);
    return pEdit;
}

CPasswordEdit* CFormGroup::m_F_p_ShownPassword(const stDef_Text& stLabel, const stDef_Value& stValue)
{
    CPasswordEdit* const pEdit = m_F_p_Password(stLabel, stValue);
    auto* const pBox = new QCheckBox(vm_pBox);
    pBox->setObjectName(u"Show"_s + pEdit->objectName());
    vm_pForm->vm_objTexts.m_S_AddText(pBox, Text{"ShowPassword", "Show Password"});
    pEdit->m_S_Attach(pBox);
    vm_pGrid->addWidget(pBox, vm_nRow++, Controls);
    return pEdit;
}

QLineEdit* CFormGroup::m_F_p_ReadOnly(const stDef_Text& stLabel, const stDef_Value& stValue)
{
    auto* const pEdit = m_F_p_Row<nsForms::Shown>(stLabel, stValue, new QLineEdit);
    pEdit->setReadOnly(true);
    QPalette objFlat; // on the ground of the page, so that it doesn't look like something to type into
    objFlat.setBrush(QPalette::Base, pEdit->palette().window());
    pEdit->setPalette(objFlat);
    return pEdit;
}

QComboBox* CFormGroup::m_F_p_List(const stDef_Text& stLabel, const stDef_Value& stValue, const QStringList& arTexts)
{
    auto* const pList = new QComboBox;
    pList->addItems(arTexts);
    pList->setCurrentIndex(-1);
    return m_F_p_Row<nsForms::ByText>(stLabel, stValue, pList);
}

QComboBox* CFormGroup::m_F_p_List(const stDef_Text& stLabel, const stDef_Value& stValue, const QList<int>& arNumbers)
{
    return m_F_p_Row<nsForms::ByData>(stLabel, stValue, s_F_p_Filled(arNumbers));
}

QComboBox* CFormGroup::s_F_p_Filled(const QList<int>& arNumbers)
{
    auto* const pList = new QComboBox;
    for (const int nNumber : arNumbers)
        pList->addItem(QString::number(nNumber), nNumber);
    pList->setCurrentIndex(-1);
    return pList;
}

QComboBox* CFormGroup::m_F_p_List(const stDef_Text& stLabel, const stDef_Value& stValue,
                                  const QList<stDef_ListItem>& arItems)
{
    auto* const pList = new QComboBox;
    for (const stDef_ListItem& st : arItems)
        pList->addItem(st.sText, st.nData);
    pList->setCurrentIndex(-1);
    return m_F_p_Row<nsForms::ByData>(stLabel, stValue, pList);
}

QList<QLineEdit*> CFormGroup::m_F_ar_Pair(const stDef_Text& stLabel, const stDef_Value& stFirst, const char* pszBetween,
                                          const stDef_Value& stSecond, const char* pszHint)
{
    QList<QLineEdit*> arEdits = {new QLineEdit(vm_pBox), new QLineEdit(vm_pBox)};
    auto* const pLine = new QHBoxLayout;
    pLine->addWidget(arEdits[0]);
    pLine->addWidget(new QLabel(QString::fromUtf8(pszBetween), vm_pBox));
    pLine->addWidget(arEdits[1]);
    arEdits[0]->setObjectName(m_F_s_NameOf(stFirst));
    arEdits[1]->setObjectName(m_F_s_NameOf(stSecond));
    m_S_Bind<nsForms::AsText>(stFirst, arEdits[0]);
    m_S_Bind<nsForms::AsText>(stSecond, arEdits[1]);
    vm_pForm->vm_objTexts.m_S_Add(stLabel, [pEdit = arEdits[1]](const QString& s) { pEdit->setAccessibleName(s); });
    vm_pGrid->addWidget(m_F_p_Label(stLabel, arEdits[0]), vm_nRow, Labels);
    vm_pGrid->addLayout(pLine, vm_nRow++, Controls);
    m_S_Hint(pszHint);
    return arEdits;
}

QCheckBox* CFormGroup::m_F_p_MakeCheck(const stDef_Text& stText, const stDef_Value& stValue)
{
    auto* const pBox = new QCheckBox(vm_pBox);
    pBox->setObjectName(m_F_s_NameOf(stValue));
    vm_pForm->vm_objTexts.m_S_AddText(pBox, stText);
    vm_pGrid->addWidget(pBox, vm_nRow++, Labels, 1, Hints);
    return pBox;
}

QButtonGroup* CFormGroup::m_F_p_Choices(const stDef_Value& stValue, std::span<const stDef_Choice> arChoices,
                                        bool bInRow)
{
    auto* const pButtons = new QButtonGroup(vm_pBox);
    auto* const pLine = new QHBoxLayout;
    for (const stDef_Choice& st : arChoices) {
        QRadioButton* const pButton = m_F_p_Choice(stValue, st);
        pButtons->addButton(pButton, st.nValue);
        if (bInRow)
            pLine->addWidget(pButton);
        else
            vm_pGrid->addWidget(pButton, vm_nRow++, Labels, 1, Hints);
    }
    pLine->addStretch();
    vm_pGrid->addLayout(pLine, vm_nRow++, Labels, 1, Hints);
    m_S_Bind<nsForms::ByButton>(stValue, pButtons);
    return pButtons;
}

QRadioButton* CFormGroup::m_F_p_Choice(const stDef_Value& stValue, const stDef_Choice& stChoice)
{
    auto* const pButton = new QRadioButton(vm_pBox);
    pButton->setObjectName(m_F_s_NameOf(stValue) + QString::number(stChoice.nValue));
    pButton->setProperty("id", stChoice.nValue);
    vm_pForm->vm_objTexts.m_S_AddText(pButton, stChoice.stText);
    return pButton;
}

QButtonGroup* CFormGroup::m_F_p_Choices(const stDef_Text& stLabel, const stDef_Value& stValue,
                                        std::span<const stDef_Choice> arChoices)
{
    auto* const pButtons = new QButtonGroup(vm_pBox);
    auto* const pLine = new QHBoxLayout;
    for (const stDef_Choice& st : arChoices) {
        QRadioButton* const pButton = m_F_p_Choice(stValue, st);
        pButtons->addButton(pButton, st.nValue);
        pLine->addWidget(pButton);
    }
    pLine->addStretch();
    if (!m_F_b_HasLabels())
        vm_pForm->vm_arGrids.append(vm_pGrid);
    auto* const pLabel = new QLabel(vm_pBox); // of all of them, so that it leads to none
    vm_pForm->vm_objTexts.m_S_AddText(pLabel, stLabel, emDef_TextForm::Colon);
    vm_pForm->vm_arLabels.append(pLabel);
    vm_pGrid->addWidget(pLabel, vm_nRow, Labels);
    vm_pGrid->addLayout(pLine, vm_nRow++, Controls);
    m_S_Bind<nsForms::ByButton>(stValue, pButtons);
    return pButtons;
}

CTimePicker* CFormGroup::m_F_p_Seconds(const stDef_Text& stLabel, const stDef_Value& stValue, const stDef_Text& stUnit)
{
    auto* const pPicker = m_F_p_Row<nsForms::AsSeconds>(stLabel, stValue, new CTimePicker("ss"));
    m_S_AddUnit(stUnit);
    return pPicker;
}

void CFormGroup::m_S_AddUnit(const stDef_Text& stUnit)
{
    auto* const pUnit = new QLabel(vm_pBox);
    vm_pForm->vm_objTexts.m_S_AddText(pUnit, stUnit);
    vm_pGrid->addWidget(pUnit, vm_nRow - 1, Hints);
}

void CFormGroup::m_S_AddPair(const stDef_Text& stLabel, const stDef_Value& stValue, QWidget* pFirst, QWidget* pSecond)
{
    auto* const pLine = new QHBoxLayout;
    for (QWidget* const pControl : {pFirst, pSecond}) {
        pControl->setParent(vm_pBox);
        pControl->setObjectName(m_F_s_NameOf(stValue));
        pLine->addWidget(pControl, 1);
    }
    pSecond->setObjectName(pSecond->objectName() + u"Time"_s);
    vm_pForm->vm_objTexts.m_S_Add(stLabel, [pSecond](const QString& s) { pSecond->setAccessibleName(s); });
    vm_pGrid->addWidget(m_F_p_Label(stLabel, pFirst), vm_nRow, Labels);
    vm_pGrid->addLayout(pLine, vm_nRow++, Controls);
}

CTimePicker* CFormGroup::m_F_p_Time(const stDef_Text& stLabel, const char* pszName)
{
    auto* const pPicker = new CTimePicker("HH:mm");
    m_S_Place(stLabel, pszName, pPicker);
    return pPicker;
}

QPushButton* CFormGroup::m_F_p_Button(const stDef_Text& stText, const char* pszName)
{
    return m_F_ar_Buttons({{stText, pszName}}).first();
}

QPushButton* CFormGroup::m_F_p_ButtonBeside(const stDef_Text& stText, const char* pszName)
{
    QPushButton* const pButton = vm_pForm->m_F_p_Button(stText, QString::fromLatin1(pszName));
    pButton->setParent(vm_pBox);
    vm_pGrid->addWidget(pButton, vm_nRow - 1, Hints);
    return pButton;
}

QList<QPushButton*> CFormGroup::m_F_ar_Buttons(const QList<std::pair<stDef_Text, const char*>>& arButtons)
{
    QList<QPushButton*> arMade;
    auto* const pLine = new QHBoxLayout;
    for (const auto& [stText, pszName] : arButtons) {
        arMade.append(vm_pForm->m_F_p_Button(stText, QString::fromLatin1(pszName)));
        pLine->addWidget(arMade.last());
    }
    pLine->addStretch();
    // Below the controls; in a group that has no column of labels, at its edge.
    const int nColumn = m_F_b_HasLabels() ? Controls : Labels;
    vm_pGrid->addLayout(pLine, vm_nRow++, nColumn, 1, Hints - nColumn);
    return arMade;
}

void CFormGroup::m_S_AddWide(QWidget* pControl, const char* pszName)
{
    pControl->setObjectName(QString::fromLatin1(pszName));
    vm_pGrid->setRowStretch(vm_nRow, 1);
    if (vm_pForm->vm_pColumn)
        vm_pForm->vm_pColumn->setStretchFactor(vm_pBox, 1);
    vm_pGrid->addWidget(pControl, vm_nRow++, Labels, 1, Hints);
}

void CFormGroup::m_S_Hint(const char* pszHint)
{
    if (!pszHint)
        return;
    auto* const pHint = new QLabel(QString::fromUtf8(pszHint), vm_pBox);
    vm_pGrid->addWidget(pHint, vm_nRow - 1, Hints);
    if (pHint->text().contains(u"%1"_s))
        vm_pForm->vm_objTexts.m_S_AddComposed(pHint, pszHint, nsTexts::Characters);
}
