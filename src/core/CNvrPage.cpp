#include "core/CNvrPage.h"

#include "core/CWndNvrEmbedded.h"

CNvrPage::CNvrPage(CWndNvrEmbedded* pNvr) : CSettingPage(pNvr), vm_pEnv(pNvr->vm_pEnv), vm_pNvr(pNvr) {}
