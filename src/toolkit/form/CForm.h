#pragma once

#include <QList>
#include <QString>

#include "toolkit/form/CRules.h"
#include "toolkit/form/CTextTable.h"
#include "toolkit/form/CValueRows.h"

class QBoxLayout;
class QGridLayout;
class QLabel;
class QPushButton;
class QWidget;

/// What a window of values is made of: its texts, its values and its rules, filled by the groups that are made in it
/// (`CFormGroup`), one line a value. It belongs to the window.
class CForm
{
public:
    /// The window is borrowed and outlives the form.
    explicit CForm(QWidget* pWindow);

    /// The groups that follow stand below each other in a column of their own, beside those that are there; none is
    /// needed where the window lays its groups out itself.
    void m_S_BeginColumn();
    /// A button that stands in no row; the window lays it out.
    QPushButton* m_F_p_Button(const stDef_Text& stText, const QString& sName);

    /// Enter in a field is to press the first of these that is enabled, as Modify while an entry is chosen, else Add.
    void m_S_SetEnterButtons(const QList<QPushButton*>& arButtons) { vm_arEnter = arButtons; }
    QPushButton* m_F_p_EnterButton() const; ///< the one that counts now; null for none

    CTextTable& m_F_o_Texts() { return vm_objTexts; }
    CValueRows& m_F_o_Values() { return vm_objValues; }
    const CValueRows& m_F_o_Values() const { return vm_objValues; }
    CRules& m_F_o_Rules() { return vm_objRules; }

    /// Enables a button, or disables it: if it has the focus, that goes to `pHeir` then, and not on to the window's OK,
    /// which a second Enter would press.
    static void s_S_EnableButton(QPushButton* pButton, bool bEnabled, QWidget* pHeir);

    /// Ends the making, in the one order that is right: the rules after the values stand, the widths of the labels
    /// after their texts do.
    void m_S_Finish(const CTextSource& objTexts);

    /// The label before a control; null for one without.
    static QLabel* s_F_p_LabelOf(const QWidget* pControl);
    /// Shows or hides a row with its label; a hidden one takes no room.
    static void s_S_ShowRow(QWidget* pControl, bool bShown);

private:
    friend class CFormGroup;
    void m_S_Align();

    QWidget* vm_pWindow;
    CTextTable vm_objTexts;
    CValueRows vm_objValues;
    CRules vm_objRules;
    QBoxLayout* vm_pColumns = nullptr;
    QBoxLayout* vm_pColumn = nullptr;
    QList<QGridLayout*> vm_arGrids; ///< of the groups that have labels
    QList<QLabel*> vm_arLabels;
    QList<QPushButton*> vm_arEnter;
};
