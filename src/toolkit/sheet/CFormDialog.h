#pragma once

#include <QDialog>

#include "toolkit/form/CForm.h"

/// A dialog of one group of rows over OK and Cancel, which follow the language and are named after their keys.
class FLEETLINK_EXPORT CFormDialog : public QDialog
{
    Q_OBJECT

protected:
    /// The title stands over the group, too, which is named after its key.
    CFormDialog(const stDef_Text& stTitle, QWidget* pParent);

    /// Takes the rows.
    CForm& m_F_o_Form() { return vm_objForm; }
    CTextTable& m_F_o_Texts() { return vm_objTexts; }
    /// Ends the making, when all rows are there.
    void m_S_Finish(const CTextSource& objSource);

private:
    void m_S_AddButtons();

    CTextTable vm_objTexts;
    CForm vm_objForm;
};
