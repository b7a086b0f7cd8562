#pragma once

#include <QList>
#include <QString>

#include "toolkit/form/CTextTable.h"

class CIPAddressEdit;
class CPasswordEdit;
class QCheckBox;
class QComboBox;
class QGridLayout;
class QGroupBox;
class QLabel;
class QLayout;
class QLineEdit;
class QPushButton;
class QWidget;

/// Builds the controls of a page, one line a control: groups of rows with a column of labels, one of controls and one
/// of hints. Every text goes into the page's text table, and every control gets the name by which it is found.
class FLEETLINK_EXPORT CForm
{
public:
    /// Both are borrowed.
    CForm(QWidget* pPage, CTextTable* pTexts);

    /// Begins a group box; the rows that follow stand in it.
    QGroupBox* m_F_p_Group(const stDef_Text& stTitle, const char* pszName,
                           emDef_TextForm nForm = emDef_TextForm::Plain);

    // Rows: the label's text gets " : " behind it, and its mnemonic leads to the control.
    QLineEdit* m_F_p_Edit(const stDef_Text& stLabel, const char* pszName);
    CPasswordEdit* m_F_p_Password(const stDef_Text& stLabel, const char* pszName);
    /// With a box "Show Password" below it, whose name is "Show" and the edit's.
    CPasswordEdit* m_F_p_ShownPassword(const stDef_Text& stLabel, const char* pszName);
    QLineEdit* m_F_p_ReadOnly(const stDef_Text& stLabel, const char* pszName);
    CIPAddressEdit* m_F_p_Address(const stDef_Text& stLabel, const char* pszName);
    QComboBox* m_F_p_List(const stDef_Text& stLabel, const char* pszName);
    /// Two edits in one row, with a text between them.
    QList<QLineEdit*> m_F_ar_Pair(const stDef_Text& stLabel, const char* pszFirst, const char* pszBetween,
                                  const char* pszSecond);
    /// A check box over the width of the group.
    QCheckBox* m_F_p_Check(const stDef_Text& stText, const char* pszName);
    /// A button in the column of controls, as wide as its text.
    QPushButton* m_F_p_Button(const stDef_Text& stText, const char* pszName);
    /// A button that stands in no row; the page lays it out.
    QPushButton* m_F_p_Loose(const stDef_Text& stText, const char* pszName);
    /// A row of buttons.
    QList<QPushButton*> m_F_ar_Buttons(const QList<std::pair<stDef_Text, const char*>>& arButtons);
    /// Any control over the width of the group, which takes the room that is left.
    void m_S_Wide(QWidget* pControl, const char* pszName);

    /// Beside the last row; with a word of the table in the format's "%1".
    void m_S_Hint(const char* pszFormat, const stDef_Text& stWord);
    void m_S_Hint(const char* pszText);

    /// The label before a control; null for one without.
    static QLabel* s_F_p_LabelOf(const QWidget* pControl);
    /// Shows or hides a row with its label; a hidden one takes no room.
    static void s_S_ShowRow(QWidget* pControl, bool bShown);

    /// Gives the labels of all groups one width; call it when their texts stand.
    void m_S_Align();

private:
    QLabel* m_F_p_Label(const stDef_Text& stText, QWidget* pControl);
    QLabel* m_F_p_HintLabel();
    bool m_F_b_HasLabels() const; ///< the group
    template <class Widget>
    Widget* m_F_p_Row(const stDef_Text& stLabel, Widget* pControl, const char* pszName);

    QWidget* vm_pPage;
    CTextTable* vm_pTexts;
    QGroupBox* vm_pGroup = nullptr;
    QGridLayout* vm_pGrid = nullptr;
    QList<QGridLayout*> vm_arGrids; ///< of the groups that have labels
    QList<QLabel*> vm_arLabels;
    int vm_nRow = 0;
};
