#pragma once

#include "drivers/stDef_CameraTemplate.h"
#include "toolkit/form/CMemberForm.h"

class CFormGroup;
class QComboBox;

/// The two lists of the camera template that stand on the Camera page as well as in the template's own dialog.
struct stDef_TemplateLists
{
    QComboBox* pResolution;
    QComboBox* pFps; ///< a stored rate between two entries counts as the lower one

    /// Two rows of a group, bound to their members. A list that has no entry for its value shows none, and then it is
    /// -1.
    static stDef_TemplateLists s_F_o_Make(CFormGroup& grp, CMemberForm<stDef_CameraTemplate>& objForm);
};
