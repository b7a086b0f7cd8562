#include "toolkit/form/CValueForms.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>

#include "host/Lib_Bedrock.h"
#include "toolkit/controls/CIPAddressEdit.h"
#include "toolkit/controls/CTimePicker.h"

namespace {

constexpr int NoEntry = -1; ///< the number of an entry that isn't there
constexpr char ShownProperty[] = "shown";

QString Flag(bool bSet)
{
    return QString::number(bSet ? 1 : 0);
}

} // namespace

namespace nsForms {

void AsText::s_S_Show(QLineEdit& objEdit, const QString& sValue)
{
    objEdit.setText(sValue);
    objEdit.home(false); // of a long text its beginning shows
}

QString AsText::s_F_s_Stored(const QLineEdit& objEdit)
{
    return objEdit.text();
}

void AsText::s_S_Show(CIPAddressEdit& objEdit, const QString& sValue)
{
    objEdit.setText(sValue);
}

QString AsText::s_F_s_Stored(const CIPAddressEdit& objEdit)
{
    return objEdit.text();
}

void AsCheck::s_S_Show(QCheckBox& objBox, const QString& sValue)
{
    objBox.setChecked(CXmlObj::s_F_n_ToInt(sValue) != 0);
}

QString AsCheck::s_F_s_Stored(const QCheckBox& objBox)
{
    return Flag(objBox.isChecked());
}

void AsUncheck::s_S_Show(QCheckBox& objBox, const QString& sValue)
{
    objBox.setChecked(CXmlObj::s_F_n_ToInt(sValue) == 0);
}

QString AsUncheck::s_F_s_Stored(const QCheckBox& objBox)
{
    return Flag(!objBox.isChecked());
}

void ByText::s_S_Show(QComboBox& objList, const QString& sValue)
{
    objList.setCurrentIndex(objList.findText(sValue, Qt::MatchExactly | Qt::MatchCaseSensitive));
}

bool ByText::s_F_b_Knows(const QComboBox& objList, const QString& sValue)
{
    return objList.findText(sValue, Qt::MatchExactly | Qt::MatchCaseSensitive) >= 0;
}

QString ByText::s_F_s_Stored(const QComboBox& objList)
{
    return objList.currentText();
}

void ByData::s_S_Show(QComboBox& objList, const QString& sValue)
{
    objList.setCurrentIndex(objList.findData(CXmlObj::s_F_n_ToInt(sValue)));
}

bool ByData::s_F_b_Knows(const QComboBox& objList, const QString& sValue)
{
    return objList.findData(CXmlObj::s_F_n_ToInt(sValue)) >= 0;
}

void ByDataOrFirst::s_S_Show(QComboBox& objList, const QString& sValue)
{
    ByData::s_S_Show(objList, sValue);
    if (objList.currentIndex() < 0)
        objList.setCurrentIndex(0);
}

QString ByData::s_F_s_Stored(const QComboBox& objList)
{
    const QVariant objData = objList.currentData();
    return QString::number(objData.isValid() ? objData.toInt() : NoEntry);
}

void ByButton::s_S_Show(QButtonGroup& objButtons, const QString& sValue)
{
    objButtons.setProperty(ShownProperty, sValue);
    if (QAbstractButton* const pButton = objButtons.button(CXmlObj::s_F_n_ToInt(sValue)))
        pButton->setChecked(true);
}

QString ByButton::s_F_s_Stored(const QButtonGroup& objButtons)
{
    return objButtons.checkedButton() ? QString::number(objButtons.checkedId())
                                      : objButtons.property(ShownProperty).toString();
}

void AsSeconds::s_S_Show(CTimePicker& objPicker, const QString& sValue)
{
    objPicker.m_S_SetSeconds(CXmlObj::s_F_n_ToInt(sValue));
}

QString AsSeconds::s_F_s_Stored(const CTimePicker& objPicker)
{
    return QString::number(objPicker.m_F_n_Seconds());
}

void Shown::s_S_Show(QLineEdit& objEdit, const QString& sValue)
{
    AsText::s_S_Show(objEdit, sValue);
}

} // namespace nsForms
