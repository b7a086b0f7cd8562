#pragma once

#include <QDialog>
#include <optional>

#include "toolkit/form/CFormGroup.h"

/// A dialog of rows in groups over OK and Cancel, which follow the language and are named after their keys.
class CFormDialog : public QDialog
{
    Q_OBJECT

protected:
    /// The groups are made by the dialog itself, in columns of the form.
    CFormDialog(const stDef_Text& stTitle, QWidget* pParent);
    /// A dialog of one group. The title stands over that, too. The values lie at `stNode`.
    CFormDialog(const stDef_Text& stTitle, const stDef_Node& stNode, QWidget* pParent);

    CForm& m_F_o_Form() { return vm_objForm; }
    /// Takes the rows of a dialog of one group.
    CFormGroup& m_F_o_Group() { return *vm_objGroup; }
    /// Ends the making, when all rows are there and filled.
    void m_S_Finish(const CTextSource& objTexts);

private:
    void m_S_AddButtons();

    CForm vm_objForm;
    std::optional<CFormGroup> vm_objGroup;
};
