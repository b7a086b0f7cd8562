#include "toolkit/form/CFieldTable.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>

#include "host/Lib_Bedrock.h"

namespace {

void Show(const stDef_FieldRow& stRow, const QString& sValue)
{
    switch (stRow.nForm) {
    case emDef_FieldForm::Edit:
    case emDef_FieldForm::Shown:
        static_cast<QLineEdit*>(stRow.pControl)->setText(sValue);
        static_cast<QLineEdit*>(stRow.pControl)->home(false); // of a long text its beginning shows
        break;
    case emDef_FieldForm::Check:
        static_cast<QCheckBox*>(stRow.pControl)->setChecked(sValue.toInt() != 0);
        break;
    case emDef_FieldForm::PickText: {
        auto* const pList = static_cast<QComboBox*>(stRow.pControl);
        pList->setCurrentIndex(pList->findText(sValue, Qt::MatchExactly | Qt::MatchCaseSensitive));
        break;
    }
    case emDef_FieldForm::PickData: {
        auto* const pList = static_cast<QComboBox*>(stRow.pControl);
        pList->setCurrentIndex(pList->findData(sValue.toInt()));
        break;
    }
    }
}

QString Value(const stDef_FieldRow& stRow)
{
    switch (stRow.nForm) {
    case emDef_FieldForm::Check:
        return QString::number(static_cast<QCheckBox*>(stRow.pControl)->isChecked() ? 1 : 0);
    case emDef_FieldForm::PickText:
        return static_cast<QComboBox*>(stRow.pControl)->currentText();
    case emDef_FieldForm::PickData: {
        const QVariant objData = static_cast<QComboBox*>(stRow.pControl)->currentData();
        return QString::number(objData.isValid() ? objData.toInt() : -1);
    }
    case emDef_FieldForm::Edit:
    case emDef_FieldForm::Shown:
        break;
    }
    return static_cast<QLineEdit*>(stRow.pControl)->text();
}

} // namespace

void CFieldTable::m_S_Load(const CXmlObj& xmlDocument) const
{
    for (const stDef_FieldRow& stRow : vm_arRows) {
        QString sValue;
        xmlDocument.m_F_n_GetValue(stRow.sPath, stRow.sKey, sValue, stRow.sDefault);
        Show(stRow, sValue);
    }
}

void CFieldTable::m_S_Store(CXmlObj& xmlDocument) const
{
    for (const stDef_FieldRow& stRow : vm_arRows) {
        if (stRow.nForm != emDef_FieldForm::Shown)
            xmlDocument.m_F_b_SetValue(stRow.sPath, stRow.sKey, Value(stRow));
    }
}
