#pragma once

#include "toolkit/sheet/CSettingPage.h"

class CEnvObj;
class CWndNvrEmbedded;

/// A page of values of one recorder. The connection is borrowed; its documents are what the page edits.
class CNvrPage : public CSettingPage
{
    Q_OBJECT

public:
    explicit CNvrPage(CWndNvrEmbedded* pNvr);

protected:
    CEnvObj* vm_pEnv; ///< not owned
    CWndNvrEmbedded* vm_pNvr;
};
