#pragma once

#include "core/CNvrPage.h"

/// Tab Notification: the servers through which the recorder sends its notifications. The recorder sends them itself; OK
/// writes the values into the System document as they stand, without a check.
class CDlgSetupPageSystemSetting_Nofity : public CNvrPage
{
    Q_OBJECT

public:
    using CNvrPage::CNvrPage;
    bool OnApply() override { return m_F_b_Store(); }

private:
    void m_S_Make(CForm& objForm) override;
};
