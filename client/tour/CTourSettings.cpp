#include "tour/CTourSettings.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QMenu>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QTabWidget>
#include <algorithm>
#include <array>

#include "fleetlink/fleetlink.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int StepMs = 100; ///< between two steps: a page is laid out and painted by then

// The tabs of the sheet, in their order.
constexpr std::array g_apszTabs = {"settings-1-camera",       "settings-2-schedule",    "settings-3-network",
                                   "settings-4-system",       "settings-5-user",        "settings-6-motion",
                                   "settings-7-address-book", "settings-8-notification"};
constexpr int CameraTab = 0, ScheduleTab = 1;
constexpr char RecordName[] = "settings-2-schedule-record";
constexpr char MenuName[] = "settings-menu";
constexpr char MessageName[] = "settings-message";
constexpr char ProgressName[] = "settings-progress";

/// The minute that a recorder gets for its restart, cut short: nobody uses the recorder of a tour meanwhile.
class CShortWaits : public CUserSide
{
public:
    CShortWaits() { s_S_Replace(this); }
    ~CShortWaits() override { s_S_Replace(nullptr); }
    CShortWaits(const CShortWaits&) = delete;
    CShortWaits& operator=(const CShortWaits&) = delete;

    void m_S_Wait(QWidget* pParent, const QString& sText, int nMs) override
    {
        constexpr int LongestMs = 2000;
        CUserSide::m_S_Wait(pParent, sText, std::min(nMs, LongestMs));
    }
};

bool ShowsSomething(const QWidget* pTab)
{
    const auto* const pScroll = qobject_cast<const QScrollArea*>(pTab);
    const QWidget* const pPage = pScroll ? pScroll->widget() : pTab;
    const auto arControls = pPage->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    return std::any_of(arControls.begin(), arControls.end(),
                       [](const QWidget* pControl) { return pControl->isVisible() && !pControl->size().isEmpty(); });
}

} // namespace

CTourSettings::CTourSettings(Grab fnGrab, const QString& sSuffix, bool bOk)
    : vm_fnGrab(std::move(fnGrab)), vm_sSuffix(sSuffix), vm_bOk(bOk), vm_objParameters(!bOk)
{
    vm_objSteps.setInterval(StepMs);
    connect(&vm_objSteps, &QTimer::timeout, this, &CTourSettings::m_S_Step);
}

QStringList CTourSettings::m_F_ar_Run(QAction* pShowMenu)
{
    const CShortWaits objWaits;
    vm_objSteps.start();
    pShowMenu->trigger();
    vm_objSteps.stop();
    QStringList arWanted = {QString::fromLatin1(MenuName), QString::fromLatin1(RecordName)};
    for (const char* const pszTab : g_apszTabs)
        arWanted.append(QString::fromLatin1(pszTab));
    arWanted.append(vm_objParameters.m_F_ar_Pictures());
    if (vm_bOk)
        arWanted.append({QString::fromLatin1(MessageName), QString::fromLatin1(ProgressName)});
    for (const QString& sName : arWanted) {
        if (!vm_setGrabbed.contains(sName))
            vm_arFailures.append(u"%1%2 did not come up"_s.arg(sName, vm_sSuffix));
    }
    return vm_arFailures;
}

void CTourSettings::m_S_Step()
{
    if (QWidget* const pMenu = QApplication::activePopupWidget())
        return m_S_LeaveMenu(pMenu);
    auto* const pDialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (!pDialog)
        return;
    if (auto* const pMessage = qobject_cast<QMessageBox*>(pDialog))
        m_S_LeaveMessage(pMessage);
    else if (CTourParameters::s_F_b_Is(pDialog))
        m_S_LeaveParameters(pDialog);
    else if (auto* const pTabs = pDialog->findChild<QTabWidget*>(u"Tabs"_s))
        m_S_AtSheet(pDialog, pTabs);
    else
        m_S_AtOther(pDialog);
}

void CTourSettings::m_S_LeaveMenu(QWidget* pMenu)
{
    m_S_GrabOnce(MenuName, pMenu);
    for (const int nKey : {Qt::Key_Home, Qt::Key_Return}) {
        QKeyEvent objPress(QEvent::KeyPress, nKey, Qt::NoModifier);
        QApplication::sendEvent(pMenu, &objPress);
    }
}

// One tab a step: what is chosen in one is on the screen in the next.
void CTourSettings::m_S_AtSheet(QDialog* pSheet, QTabWidget* pTabs)
{
    const int nTabs = static_cast<int>(g_apszTabs.size());
    if (pTabs->count() != nTabs) {
        vm_arFailures.append(u"the sheet has %1 tabs"_s.arg(pTabs->count()));
        return pSheet->reject();
    }
    if (vm_nTab >= 0 && vm_nTab < nTabs) {
        const char* const pszTab = g_apszTabs[static_cast<std::size_t>(vm_nTab)];
        m_S_GrabOnce(pszTab, pSheet);
        if (!ShowsSomething(pTabs->currentWidget()))
            vm_arFailures.append(u"%1%2 is empty"_s.arg(QString::fromLatin1(pszTab), vm_sSuffix));
        if (vm_nTab == CameraTab && vm_objParameters.m_F_b_Step(pTabs->currentWidget()))
            return;
        auto* const pSetting = pTabs->currentWidget()->findChild<QPushButton*>(u"Setting"_s);
        if (vm_nTab == ScheduleTab && !vm_setGrabbed.contains(QString::fromLatin1(RecordName)) && pSetting &&
            pSetting->isEnabled())
            return QTimer::singleShot(0, pSetting, &QPushButton::click); // its dialog is met by the next step
    }
    if (++vm_nTab < nTabs)
        pTabs->setCurrentIndex(vm_nTab);
    else
        m_S_LeaveSheet(pSheet);
}

void CTourSettings::m_S_LeaveSheet(QDialog* pSheet)
{
    auto* const pButton = pSheet->findChild<QPushButton*>(vm_bOk ? u"OK"_s : u"Cancel"_s);
    if (vm_nTab == static_cast<int>(g_apszTabs.size()) && pButton)
        return pButton->click();
    vm_arFailures.append(u"the sheet could not be left"_s);
    pSheet->reject();
}

void CTourSettings::m_S_LeaveParameters(QDialog* pSheet)
{
    m_S_GrabOnce(vm_objParameters.m_F_s_Picture().toLatin1().constData(), pSheet);
    pSheet->reject();
}

void CTourSettings::m_S_LeaveMessage(QMessageBox* pMessage)
{
    if (vm_nTab < 0) // it stands in the place of the sheet
        vm_arFailures.append(pMessage->text());
    m_S_GrabOnce(MessageName, pMessage);
    pMessage->accept();
}

void CTourSettings::m_S_AtOther(QDialog* pDialog)
{
    const auto* const pBar = pDialog->findChild<QProgressBar*>();
    if (!pBar && vm_nTab == ScheduleTab) {
        m_S_GrabOnce(RecordName, pDialog);
        pDialog->reject();
    } else if (!pBar) {
        vm_arFailures.append(u"an unexpected window: %1"_s.arg(pDialog->windowTitle()));
        pDialog->reject();
    } else if (pBar->value() > pBar->maximum() / 4)
        m_S_GrabOnce(ProgressName, pDialog);
}

void CTourSettings::m_S_GrabOnce(const char* pszName, QWidget* pWidget)
{
    const QString sName = QString::fromLatin1(pszName);
    if (vm_setGrabbed.contains(sName))
        return;
    vm_setGrabbed.insert(sName);
    vm_fnGrab(sName + vm_sSuffix, pWidget);
}
