#pragma once

#include <QWidget>

#include "host/Export.h"

/// One tab of a `CPropertySheet`. It is made with the sheet, but fills itself only when its tab is first shown: until
/// then it has no controls, and it hears neither of OK nor of Cancel.
class FLEETLINK_EXPORT CPropertyPage : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// Makes the controls and fills them; called once. Returns 1.
    virtual int OnInitDialog() { return 1; }
    /// OK was chosen: copies what is pending into its document. False keeps the sheet open and shows this page.
    virtual bool OnApply() { return true; }
    /// Cancel was chosen.
    virtual void OnCancel() {}

    /// True from the moment the page was first shown.
    bool m_F_b_Initialised() const { return vm_bInitialised; }

private:
    friend class CPropertySheet;
    void m_S_Initialise();

    bool vm_bInitialised = false;
};
