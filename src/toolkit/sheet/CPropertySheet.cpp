#include "toolkit/sheet/CPropertySheet.h"

#include <QAbstractSpinBox>
#include <QCloseEvent>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QTabWidget>
#include <QVBoxLayout>

#include "toolkit/sheet/CPropertyPage.h"
#include "toolkit/user/CUserSide.h"

CPropertySheet::CPropertySheet(const QString& sCaption, QWidget* pParent, unsigned int nSelectPage)
    : QDialog(pParent),
      vm_pTabs(new QTabWidget),
      vm_pButtons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel)),
      vm_nSelectPage(nSelectPage)
{
    connect(this, &QWidget::windowTitleChanged, vm_pTabs, &QWidget::setAccessibleName);
    setWindowTitle(sCaption);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    vm_pOk = vm_pButtons->button(QDialogButtonBox::Ok);
    vm_pCancel = vm_pButtons->button(QDialogButtonBox::Cancel);
    vm_pOk->setObjectName(QStringLiteral("OK"));
    vm_pCancel->setObjectName(QStringLiteral("Cancel"));
    vm_pOk->setToolTip(QStringLiteral("Ctrl+Enter"));
    for (QPushButton* const pButton : {vm_pOk, vm_pCancel})
        pButton->setAutoDefault(false);
    vm_pTabs->setObjectName(QStringLiteral("Tabs"));
    vm_pTabs->setUsesScrollButtons(true);
    auto* const pLayout = new QVBoxLayout(this);
    pLayout->addWidget(vm_pTabs);
    pLayout->addWidget(vm_pButtons);
    connect(vm_pButtons, &QDialogButtonBox::accepted, this, &CPropertySheet::accept);
    connect(vm_pButtons, &QDialogButtonBox::rejected, this, &CPropertySheet::reject);
}

void CPropertySheet::m_S_AddPage(CPropertyPage* pPage, const QString& sLabel)
{
    if (!pPage)
        return;
    // On a small screen a page scrolls rather than lose what doesn't fit.
    auto* const pScroll = new QScrollArea;
    pScroll->setWidgetResizable(true);
    pScroll->setFrameShape(QFrame::NoFrame);
    pScroll->setFocusPolicy(Qt::NoFocus); // it follows the focus of its controls
    pScroll->setWidget(pPage);
    vm_arPages.append(pPage);
    vm_pTabs->addTab(pScroll, sLabel);
}

QSize CPropertySheet::sizeHint() const
{
    // Measured in letters, so that it grows with the font; never beyond what the screen has room for.
    const QSize szWanted(175 * fontMetrics().averageCharWidth(), 50 * fontMetrics().height());
    const QSize szRoom = screen() ? screen()->availableSize() * 0.95 : szWanted;
    return szWanted.boundedTo(szRoom);
}

int CPropertySheet::OnInitDialog()
{
    connect(vm_pTabs, &QTabWidget::currentChanged, this, &CPropertySheet::m_S_ShowPage);
    const int nFirst = static_cast<int>(vm_nSelectPage);
    if (nFirst < vm_arPages.size() && nFirst != vm_pTabs->currentIndex())
        vm_pTabs->setCurrentIndex(nFirst);
    else
        m_S_ShowPage(vm_pTabs->currentIndex());
    resize(sizeHint());
    return 1;
}

int CPropertySheet::DoModal()
{
    return OnInitDialog() ? CUserSide::s_F_o_Get().m_F_n_RunModal(*this) : static_cast<int>(QDialog::Rejected);
}

void CPropertySheet::m_S_SetTabText(int nTab, const QString& sText)
{
    vm_pTabs->setTabText(nTab, sText);
}

void CPropertySheet::m_S_ShowPage(int nTab)
{
    if (nTab < 0 || nTab >= vm_arPages.size())
        return;
    vm_arPages[nTab]->m_S_Initialise();
    m_S_EndTabOrder();
}

// The controls of a page come into being behind the buttons, which the Tab key is to reach last. The box stays
// where it was made, before the pages: it must not lead the key on to its first button from there.
void CPropertySheet::m_S_EndTabOrder()
{
    QWidget* pLast = previousInFocusChain();
    while (pLast != this && (pLast->focusPolicy() == Qt::NoFocus || vm_pButtons->isAncestorOf(pLast)))
        pLast = pLast->previousInFocusChain();
    vm_pButtons->setFocusProxy(nullptr);
    setTabOrder(pLast, vm_pOk);
    setTabOrder(vm_pOk, vm_pCancel);
}

void CPropertySheet::accept()
{
    for (int nTab = 0; nTab < vm_arPages.size(); ++nTab) {
        if (vm_arPages[nTab]->m_F_b_Initialised() && !vm_arPages[nTab]->OnApply()) {
            vm_pTabs->setCurrentIndex(nTab);
            return;
        }
    }
    QDialog::accept();
}

void CPropertySheet::reject()
{
    for (CPropertyPage* const pPage : vm_arPages) {
        if (pPage->m_F_b_Initialised())
            pPage->OnCancel();
    }
    QDialog::reject();
}

void CPropertySheet::keyPressEvent(QKeyEvent* pEvent)
{
    const bool bEnter = pEvent->key() == Qt::Key_Return || pEvent->key() == Qt::Key_Enter;
    const Qt::KeyboardModifiers nModifiers = pEvent->modifiers() & ~Qt::KeypadModifier;
    if (pEvent->matches(QKeySequence::Cancel)) {
        if (m_F_b_MayDrop() && isVisible()) // it may have been closed while the question stood
            reject();
    } else if (bEnter && nModifiers == Qt::ControlModifier) {
        vm_pOk->click();
    } else if (bEnter && nModifiers == Qt::NoModifier) {
        m_S_OnEnter();
    } else {
        QDialog::keyPressEvent(pEvent);
    }
}

void CPropertySheet::m_S_OnEnter()
{
    QWidget* const pFocus = focusWidget();
    const int nTab = vm_pTabs->currentIndex();
    if (auto* const pButton = qobject_cast<QPushButton*>(pFocus))
        pButton->click();
    else if ((qobject_cast<QLineEdit*>(pFocus) || qobject_cast<QAbstractSpinBox*>(pFocus)) && nTab >= 0)
        vm_arPages[nTab]->OnEnter();
}

void CPropertySheet::closeEvent(QCloseEvent* pEvent)
{
    if (pEvent->spontaneous() && !m_F_b_MayDrop())
        pEvent->ignore();
    else
        QDialog::closeEvent(pEvent);
}

// The box makes its first button the default when it is shown, but Enter presses none.
void CPropertySheet::showEvent(QShowEvent* pEvent)
{
    QDialog::showEvent(pEvent);
    vm_pOk->setDefault(false);
}
