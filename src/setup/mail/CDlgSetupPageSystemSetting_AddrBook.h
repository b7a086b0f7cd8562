#pragma once

#include "core/CNvrPage.h"

/// Tab Address Book: the recipients of the recorder's e-mails. Each action writes into the EMail document at once.
class CDlgSetupPageSystemSetting_AddrBook : public CNvrPage
{
    Q_OBJECT

public:
    using CNvrPage::CNvrPage;

private:
    void m_S_Make(CForm& objForm) override;
};
