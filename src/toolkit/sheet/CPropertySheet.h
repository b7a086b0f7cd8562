#pragma once

#include <QDialog>
#include <QList>

#include "host/Export.h"

class CPropertyPage;
class QDialogButtonBox;
class QPushButton;
class QTabWidget;

/// A modal window of tabs with OK and Cancel. Pages fill themselves when they are first shown; OK and Cancel reach only
/// those that were, in the order of their tabs. Enter in a field belongs to its page, Ctrl and Enter are OK. GUI thread
/// only.
class FLEETLINK_EXPORT CPropertySheet : public QDialog
{
    Q_OBJECT

public:
    /// `nSelectPage` is the tab that is shown first.
    CPropertySheet(const QString& sCaption, QWidget* pParent, unsigned int nSelectPage = 0);

    /// Adds a tab behind the others; the page belongs to the sheet from now on. Null is passed over.
    void m_S_AddPage(CPropertyPage* pPage, const QString& sLabel);
    const QList<CPropertyPage*>& m_F_ar_Pages() const { return vm_arPages; }

    /// Runs the sheet. Returns `QDialog::Accepted` after OK, `QDialog::Rejected` after Cancel and if it was never
    /// shown.
    int DoModal();

    /// Sets the sheet up, before it is shown. Returns 1, or 0 if it is not to be shown any more.
    virtual int OnInitDialog();

    QSize sizeHint() const override;

protected:
    void m_S_SetTabText(int nTab, const QString& sText);
    QPushButton* m_F_p_OkButton() const { return vm_pOk; }
    QPushButton* m_F_p_CancelButton() const { return vm_pCancel; }

    /// Whether Esc or the window's close may close the sheet: the place to ask. The Cancel button, and a program that
    /// closes the sheet, don't come here.
    virtual bool m_F_b_MayDrop() { return true; }

    void accept() override;
    void reject() override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void closeEvent(QCloseEvent* pEvent) override;
    void showEvent(QShowEvent* pEvent) override;

private:
    void m_S_OnEnter();
    void m_S_ShowPage(int nTab);
    void m_S_EndTabOrder();

    QList<CPropertyPage*> vm_arPages;
    QTabWidget* vm_pTabs;
    QDialogButtonBox* vm_pButtons;
    QPushButton* vm_pOk;
    QPushButton* vm_pCancel;
    unsigned int vm_nSelectPage;
};
