#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <span>

#include "toolkit/controls/CIPAddressEdit.h"
#include "toolkit/controls/CPasswordEdit.h"
#include "toolkit/controls/CTimePicker.h"
#include "toolkit/form/CForm.h"

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QLineEdit;
class QRadioButton;

/// A list's entry: what stands in it, and the number behind it.
struct stDef_ListItem
{
    QString sText;
    int nData;
};

/// A radio button, and the value that it stands for.
struct stDef_Choice
{
    stDef_Text stText;
    int nValue;
};

/// A group box of a form, with a column of labels, one of controls and one of hints. One line makes a value whole:
/// control, label with " : " behind it, object name, accessible name, texts, loading and storing. A value's control is
/// named after its node's last name and its key, as "SMTP.IP"; one without a node after its key alone.
///
/// A handle: it may go when the group is made.
class CFormGroup
{
public:
    /// The values of the group lie at `stNode` unless they tell otherwise. The group box is named after its text's key
    /// with "Group" behind it.
    CFormGroup(CForm& objForm, const stDef_Text& stTitle, const stDef_Node& stNode = {},
               emDef_TextForm nForm = emDef_TextForm::Plain);
    /// The values go into rows of their own instead of the form's.
    void m_S_SetRows(CValueRows* pRows) { vm_pRows = pRows; }

    // A hint stands beside the control; "%1" in it becomes the word "Characters".
    QLineEdit* m_F_p_Edit(const stDef_Text& stLabel, const stDef_Value& stValue, const char* pszHint = nullptr);
    CIPAddressEdit* m_F_p_Address(const stDef_Text& stLabel, const stDef_Value& stValue);
    CPasswordEdit* m_F_p_Password(const stDef_Text& stLabel, const stDef_Value& stValue, const char* pszHint = nullptr);
    /// With a box "Show Password" below it, whose name is "Show" and the edit's.
    CPasswordEdit* m_F_p_ShownPassword(const stDef_Text& stLabel, const stDef_Value& stValue);
    /// An edit that only shows its value, which is never written back.
    QLineEdit* m_F_p_ReadOnly(const stDef_Text& stLabel, const stDef_Value& stValue);
    /// A list whose entry is the value.
    QComboBox* m_F_p_List(const stDef_Text& stLabel, const stDef_Value& stValue, const QStringList& arTexts);
    /// Lists whose entry has the value behind it.
    QComboBox* m_F_p_List(const stDef_Text& stLabel, const stDef_Value& stValue, const QList<int>& arNumbers);
    QComboBox* m_F_p_List(const stDef_Text& stLabel, const stDef_Value& stValue, const QList<stDef_ListItem>& arItems);
    /// A list with these entries, for a row in a form of its own.
    static QComboBox* s_F_p_Filled(const QList<int>& arNumbers);
    /// Two controls in one row, the second of which is read out as the first; a value's name is that of the first, and
    /// the second has "Time" behind it.
    void m_S_AddPair(const stDef_Text& stLabel, const stDef_Value& stValue, QWidget* pFirst, QWidget* pSecond);
    /// A value in an odd form, of controls that stand in rows.
    void m_S_AddValue(const stDef_Value& stValue, CValueRows::Show fnShow, CValueRows::Stored fnStored)
    {
        vm_pRows->m_S_Add(m_F_o_Placed(stValue), std::move(fnShow), std::move(fnStored));
    }
    /// Two edits in one row, with a text between them.
    QList<QLineEdit*> m_F_ar_Pair(const stDef_Text& stLabel, const stDef_Value& stFirst, const char* pszBetween,
                                  const stDef_Value& stSecond, const char* pszHint = nullptr);
    /// A check box over the width of the group.
    template <class Form = nsForms::AsCheck>
    QCheckBox* m_F_p_Check(const stDef_Text& stText, const stDef_Value& stValue)
    {
        QCheckBox* const pBox = m_F_p_MakeCheck(stText, stValue);
        m_S_Bind<Form>(stValue, pBox);
        return pBox;
    }
    /// Radio buttons below each other, or in one row, each named after its value: "Mode3", with 3 as its "id".
    QButtonGroup* m_F_p_Choices(const stDef_Value& stValue, std::span<const stDef_Choice> arChoices,
                                bool bInRow = false);
    /// The same in one row behind a label.
    QButtonGroup* m_F_p_Choices(const stDef_Text& stLabel, const stDef_Value& stValue,
                                std::span<const stDef_Choice> arChoices);
    /// Seconds, 0 to 59.
    CTimePicker* m_F_p_Seconds(const stDef_Text& stLabel, const stDef_Value& stValue, const stDef_Text& stUnit);
    /// A time of the day. It stands in more than one value of a document: who makes it shows and takes it.
    CTimePicker* m_F_p_Time(const stDef_Text& stLabel, const char* pszName);
    /// A control of any kind, with a form that fits it.
    template <class Form, class Control>
    Control* m_F_p_Row(const stDef_Text& stLabel, const stDef_Value& stValue, Control* pControl)
    {
        m_S_Place(stLabel, stValue, pControl);
        if constexpr (!std::is_same_v<Form, nsForms::Unbound>)
            m_S_Bind<Form>(stValue, pControl);
        return pControl;
    }

    /// A button in the column of controls, as wide as its text.
    QPushButton* m_F_p_Button(const stDef_Text& stText, const char* pszName);
    /// A button beside the control of the last row.
    QPushButton* m_F_p_ButtonBeside(const stDef_Text& stText, const char* pszName);
    /// What the values of the last row are counted in, beside it.
    void m_S_AddUnit(const stDef_Text& stUnit);
    /// A row of buttons.
    QList<QPushButton*> m_F_ar_Buttons(const QList<std::pair<stDef_Text, const char*>>& arButtons);
    /// Any control over the width of the group, which takes the room that is left.
    void m_S_AddWide(QWidget* pControl, const char* pszName);

    QGroupBox* m_F_p_Box() const { return vm_pBox; }
    CForm& m_F_o_Form() const { return *vm_pForm; }

private:
    stDef_Value m_F_o_Placed(const stDef_Value& stValue) const;
    QString m_F_s_NameOf(const stDef_Value& stValue) const;
    QLabel* m_F_p_Label(const stDef_Text& stText, QWidget* pControl);
    QRadioButton* m_F_p_Choice(const stDef_Value& stValue, const stDef_Choice& stChoice);
    void m_S_Hint(const char* pszHint); ///< beside the last row
    bool m_F_b_HasLabels() const;
    void m_S_Place(const stDef_Text& stLabel, const stDef_Value& stValue, QWidget* pControl);
    QCheckBox* m_F_p_MakeCheck(const stDef_Text& stText, const stDef_Value& stValue);
    template <class Form, class Control>
    void m_S_Bind(const stDef_Value& stValue, Control* pControl)
    {
        vm_pRows->m_S_Add<Form>(m_F_o_Placed(stValue), pControl);
    }

    CForm* vm_pForm;
    CValueRows* vm_pRows;
    stDef_Node vm_stNode;
    QGroupBox* vm_pBox;
    QGridLayout* vm_pGrid;
    int vm_nRow = 0;
};
