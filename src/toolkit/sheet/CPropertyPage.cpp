#include "toolkit/sheet/CPropertyPage.h"

#include "toolkit/form/CMnemonics.h"
#include "toolkit/user/CWaitCursor.h"

void CPropertyPage::m_S_Initialise()
{
    if (vm_bInitialised)
        return;
    vm_bInitialised = true;
    const CWaitCursor objWait;
    OnInitDialog();
    CMnemonics::s_S_Assign(this);
}
