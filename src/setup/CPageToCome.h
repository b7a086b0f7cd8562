#pragma once

#include "toolkit/sheet/CPropertyPage.h"

class CWndNvrEmbedded;

/// Stands where a page has not been written yet: it says so, and touches no document.
class CPageToCome : public CPropertyPage
{
    Q_OBJECT

public:
    explicit CPageToCome(CWndNvrEmbedded* pNvr);
    int OnInitDialog() override;

private:
    CWndNvrEmbedded* vm_pNvr;
};
