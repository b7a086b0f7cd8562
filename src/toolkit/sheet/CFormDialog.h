#pragma once

#include <QDialog>

#include "toolkit/form/CFormGroup.h"

/// A dialog of one group of rows over OK and Cancel, which follow the language and are named after their keys.
class CFormDialog : public QDialog
{
    Q_OBJECT

protected:
    /// The title stands over the group, too. The values lie at `stNode`.
    CFormDialog(const stDef_Text& stTitle, const stDef_Node& stNode, QWidget* pParent);

    CForm& m_F_o_Form() { return vm_objForm; }
    /// Takes the rows.
    CFormGroup& m_F_o_Group() { return vm_objGroup; }
    /// Ends the making, when all rows are there and filled.
    void m_S_Finish(const CTextSource& objTexts);

private:
    void m_S_AddButtons();

    CForm vm_objForm;
    CFormGroup vm_objGroup;
};
