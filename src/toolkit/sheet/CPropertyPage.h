#pragma once

#include <QWidget>
#include <functional>

class CXmlObj;

/// One tab of a `CPropertySheet`. It is made with the sheet, but fills itself only when its tab is first shown: until
/// then it has no controls, and it hears neither of OK nor of Cancel.
class CPropertyPage : public QWidget
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
    /// Enter was pressed in a field of the page: it means what the page makes of it, and never the sheet's OK.
    virtual void OnEnter() {}
    /// Writes what `OnApply` would write, but into the document that the function gives for each, and does nothing
    /// else. Not for pages that write at each action.
    virtual void m_S_StoreInto(const std::function<CXmlObj*(CXmlObj*)>& /*fnSubstitute*/) const {}

    /// True from the moment the page was first shown.
    bool m_F_b_Initialised() const { return vm_bInitialised; }

private:
    friend class CPropertySheet;
    void m_S_Initialise();

    bool vm_bInitialised = false;
};
