#pragma once

class CFormGroup;
class QComboBox;
struct stDef_CameraTemplate;

/// The two lists of the camera template that stand on the Camera page as well as in the template's own dialog.
struct stDef_TemplateLists
{
    QComboBox* pResolution = nullptr;
    QComboBox* pFps = nullptr; ///< item data is the frame rate

    /// Two rows of a group.
    static stDef_TemplateLists s_F_o_Make(CFormGroup& grp);
    /// A stored rate between two entries counts as the lower one.
    void m_S_Show(const stDef_CameraTemplate& stTemplate) const;
};
