#pragma once

#include "core/CNvrPage.h"
#include "toolkit/form/CFormGroup.h"

/// Tab System: the recorder's name, clock, display, directory service, auto login, and how long it keeps its logs. The
/// controls are the working copy, and OK writes them into the System document. Only the clock goes out at once, by a
/// dialog that closes the sheet.
class CDlgSetupPageSystemSetting_System : public CNvrPage
{
    Q_OBJECT

public:
    using CNvrPage::CNvrPage;
    /// True whether or not there was a document to write to.
    bool OnApply() override;

private:
    void m_S_Make(CForm& objForm) override;
    void m_S_MakeDevice(CForm& objForm);
    void m_S_MakeClock(CForm& objForm);
    void m_S_MakeDisplay(CForm& objForm);
    void m_S_MakeServices(CForm& objForm);
    void m_S_MakeLogs(CForm& objForm);
    QComboBox* m_F_p_Languages() const;
    stDef_Node m_F_o_System(const char* pszName = "") const;
    stDef_Node m_F_o_Local() const;

    void m_S_SetClock();
    void m_S_TestDips();
};
