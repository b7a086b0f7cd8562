#include <QAction>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "At.h"
#include "CycleFixture.h"
#include "core/CPageRequests.h"
#include "support/Process.h"
#include "support/Waiting.h"
#include "toolkit/form/CommonTexts.h"

namespace {

constexpr const char* CameraUrl = "cgi-bin/SyncSetting.cgi?action=CameraXML";
constexpr const char* SystemUrl = "cgi-bin/SyncSetting.cgi?action=SystemXML";
constexpr int LongMs = 60000;

CWaitBox* Box()
{
    return qobject_cast<CWaitBox*>(QApplication::activeModalWidget());
}

/// A page in a dialog, with what a user may touch while a request runs.
struct st_Page
{
    st_Page()
    {
        auto* const pLayout = new QVBoxLayout(&dialog);
        for (QWidget* const pWidget : std::initializer_list<QWidget*>{pButton, pEdit})
            pLayout->addWidget(pWidget);
        QObject::connect(pButton, &QPushButton::clicked, [this] { ++nDone; });
        auto* const pAction = new QAction(&dialog);
        pAction->setShortcut(Qt::CTRL | Qt::Key_T);
        dialog.addAction(pAction);
        QObject::connect(pAction, &QAction::triggered, [this] { ++nDone; });
        dialog.show();
    }
    void Touch()
    {
        QTest::mouseClick(pButton, Qt::LeftButton);
        QTest::keyClicks(pEdit, "x");
        QTest::keyClick(&dialog, Qt::Key_T, Qt::ControlModifier);
        QTest::mouseClick(dialog.windowHandle(), Qt::LeftButton, {}, pButton->geometry().center());
    }

    QDialog dialog;
    QPushButton* pButton = new QPushButton("Detect");
    QLineEdit* pEdit = new QLineEdit;
    int nDone = 0;
};

class PageRequests : public CycleFixture
{
protected:
    void Fault(const char* pszUrl, const stDef_Fault& stFault)
    {
        ASSERT_TRUE(vm_nvr.m_F_o_Faults().m_F_b_Set(pszUrl, stFault));
        vm_nvr.m_F_o_Log().m_S_Clear();
    }
    bool Asked(const char* pszUrl)
    {
        const auto arEntries = vm_nvr.m_F_o_Log().m_F_ar_Entries();
        return std::any_of(arEntries.begin(), arEntries.end(),
                           [&](const auto& st) { return st.sTarget.find(pszUrl) != std::string::npos; });
    }
    bool Get(QWidget* pPage, const char* pszUrl = CameraUrl)
    {
        CXmlObj xml;
        return CPageRequests(&Nvr(), pPage, nsTexts::AskingCamera).m_F_b_Get(pszUrl, &xml, LongMs);
    }
    bool PlainGet(const char* pszUrl)
    {
        CXmlObj xml;
        return Nvr().m_F_b_GetRequest(pszUrl, &xml, 5000);
    }
    /// Calls once the condition holds, from the event loop of whatever runs.
    template <typename Condition>
    void When(Condition condition, const std::function<void()>& act)
    {
        vm_objTimer.disconnect();
        vm_objTimer.callOnTimeout([=, this] {
            if (!condition())
                return;
            vm_objTimer.stop();
            act();
        });
        vm_objTimer.start(5);
    }

    QTimer vm_objTimer;
};

TEST_F(PageRequests, WindowsLiveOnAndInputIsHeldBackForGood)
{
    st_Page page;
    Fault("CameraXML", {"delay", 3000});
    QStringList arSeconds;
    int nTicks = 0;
    vm_objTimer.callOnTimeout([&] {
        ++nTicks;
        page.Touch();
        QCoreApplication::postEvent(page.pButton, new QKeyEvent(QEvent::KeyPress, Qt::Key_Space, {}));
        QCoreApplication::postEvent(page.pButton, new QKeyEvent(QEvent::KeyRelease, Qt::Key_Space, {}));
        EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
        if (!Box())
            return;
        EXPECT_EQ(Box()->findChild<QLabel*>("WaitText")->text(), "The recorder asks the camera.");
        arSeconds << Box()->findChild<QLabel*>("WaitSeconds")->text();
        arSeconds.removeDuplicates();
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, {}, {}, true); // the key that began it
        QCoreApplication::sendEvent(Box(), &held);
    });
    vm_objTimer.start(10);
    EXPECT_TRUE(Get(&page.dialog));
    vm_objTimer.stop();
    EXPECT_GT(nTicks, 50);
    EXPECT_EQ(arSeconds.mid(0, 2), QStringList({"1 s", "2 s"}));
    QCoreApplication::processEvents();
    EXPECT_EQ(page.nDone, 0);
    EXPECT_EQ(page.pEdit->text(), "");
    EXPECT_TRUE(page.dialog.isVisible());
    EXPECT_FALSE(Box());
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    page.dialog.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&page.dialog));
    page.Touch();
    EXPECT_EQ(page.nDone, 3);
    EXPECT_EQ(page.pEdit->text(), "x");
}

// Also at the moment when the answer is there and the call has not returned yet.
TEST_F(PageRequests, InputIsHeldBackUpToTheirEnd)
{
    st_Page page;
    vm_objTimer.callOnTimeout([&] { page.Touch(); });
    vm_objTimer.start(0);
    for (int i = 0; i < 100; ++i)
        EXPECT_TRUE(Get(&page.dialog, SystemUrl));
    EXPECT_EQ(page.nDone, 0);
}

TEST_F(PageRequests, AreOverAtOnceWhenTheyAreStopped)
{
    std::unique_ptr<st_Page> pPage;
    const auto Press = [](Qt::Key nKey) { return [=] { QTest::keyClick(Box(), nKey); }; };
    const struct
    {
        const char* pszWay;
        bool bBox; ///< the box stands by then
        std::function<void()> fnEnd;
    } arRows[] = {{"button", true, [] { At(Box()).Click("Stop"); }},
                  {"Esc", true, Press(Qt::Key_Escape)},
                  {"Enter", true, Press(Qt::Key_Return)},
                  {"dialog closed", false, [&] { pPage->dialog.reject(); }},
                  {"dialog closed under the box", true, [&] { pPage->dialog.close(); }},
                  {"page gone", true, [&] { pPage.reset(); }}};
    for (const auto& row : arRows) {
        SCOPED_TRACE(row.pszWay);
        pPage = std::make_unique<st_Page>();
        Fault("CameraXML", {"silence"});
        QElapsedTimer clock;
        When([&] { return Asked("CameraXML") && (!row.bBox || Box()); },
             [&] {
                 clock.start();
                 row.fnEnd();
             });
        EXPECT_FALSE(Get(&pPage->dialog));
        EXPECT_LT(clock.elapsed(), 200 * Process::Slowness);
        EXPECT_FALSE(Box());
        vm_nvr.m_F_o_Faults().m_S_Clear();
        EXPECT_TRUE(PlainGet(CameraUrl)) << "the object is sound";
        EXPECT_TRUE(Get(nullptr));
    }
}

// No window is there that would be closed.
TEST_F(PageRequests, TheEndOfTheApplicationIsTheirs)
{
    Fault("CameraXML", {"silence"});
    bool bGot = true;
    QElapsedTimer clock;
    When([&] { return Asked("CameraXML"); },
         [&] {
             clock.start();
             QApplication::quit();
         });
    QTimer::singleShot(0, [&] { bGot = Get(nullptr); });
    QApplication::exec();
    EXPECT_LT(clock.elapsed(), 200 * Process::Slowness);
    EXPECT_FALSE(bGot);
}

TEST_F(PageRequests, OthersOfTheObjectGoTheirOwnWayAndCommandsDoNothing)
{
    Fault("CameraXML", {"silence"});
    When([&] { return Asked("CameraXML"); },
         [&] {
             EXPECT_TRUE(PlainGet(SystemUrl));
             EXPECT_TRUE(Get(nullptr, SystemUrl));
             Nvr().m_S_ShowMenu();
             Nvr().OnMenuSystemSetting();
             EXPECT_FALSE(Asked("systeminfo"));
             When(Box, [] { At(Box()).Click("Stop"); });
         });
    CPageRequests objSeries(&Nvr(), nullptr, nsTexts::AskingCamera);
    CXmlObj xml;
    EXPECT_FALSE(objSeries.m_F_b_Get(CameraUrl, &xml, LongMs));
    vm_nvr.m_F_o_Log().m_S_Clear();
    EXPECT_FALSE(objSeries.m_F_b_Get(SystemUrl, &xml, LongMs));
    EXPECT_FALSE(Asked("SystemXML")) << "the stop holds for the whole series";
}

TEST_F(PageRequests, AWindowThatOpensMeanwhileCanBeClosedWhenTheyAreOver)
{
    Fault("CameraXML", {"delay", 300});
    When([&] { return Asked("CameraXML"); },
         [&] {
             st_Page page;
             QTimer timer;
             timer.callOnTimeout([&] {
                 page.Touch();
                 if (page.nDone > 0)
                     page.dialog.accept();
             });
             timer.start(5);
             EXPECT_EQ(page.dialog.exec(), QDialog::Accepted);
         });
    EXPECT_TRUE(Get(nullptr));
}

// Each row: where a release finds the object that its sheet is open of.
TEST_F(PageRequests, AReleaseMeanwhileClosesTheSheetAndIsFinishedAtTheEnd)
{
    auto* const pHost = new QWidget;
    pHost->show();
    const struct
    {
        const char* pszFault;   ///< of the request that never comes back; null: none runs
        const char* pszPressed; ///< at the Camera page
        bool bHostGoes;         ///< before the release
    } arRows[] = {{"systeminfo", "", false},
                  {"detect", "Detect", false},
                  {nullptr, "Advanced", false},
                  {nullptr, "", false},
                  {"detect", "Detect", true}};
    for (const auto& row : arRows) {
        SCOPED_TRACE(std::string(row.pszFault ? row.pszFault : "none") + ' ' + row.pszPressed);
        const bool bSheet = !row.pszFault || std::string(row.pszFault) != "systeminfo";
        if (bSheet && !Process::CanPaintMuch)
            continue;
        CWndNvrBase* pReleased = CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(NvrID, pHost, &vm_env);
        ASSERT_EQ(pReleased->m_F_n_Init(Init()), 1);
        const QPointer<CWndNvrBase> pNvr(pReleased);
        const auto Release = [&] {
            if (row.bHostGoes)
                delete pHost;
            CWndNvrBase::s_S_ReleaseNvrObject(&pReleased);
            EXPECT_EQ(pReleased, nullptr);
            EXPECT_TRUE(pNvr) << "its call is still under way";
        };
        if (row.pszFault)
            Fault(row.pszFault, {"silence"});
        if (bSheet)
            vm_objPrompts.ExpectDialog([&](QDialog& sheet) {
                auto& xmlSystem = static_cast<CWndNvrEmbedded*>(pReleased)->vm_xmlSystem;
                xmlSystem.m_F_b_SetValue("/root/system", "DeviceTitle", "changed"); // nobody is asked about it
                if (*row.pszPressed)
                    At(&sheet).Click(row.pszPressed);
                else
                    Release();
                EXPECT_FALSE(sheet.isVisible());
            });
        if (std::string(row.pszPressed) == "Advanced")
            vm_objPrompts.ExpectDialog([&](QDialog&) { Release(); });
        if (row.pszFault)
            When([&] { return Asked(row.pszFault); }, Release);
        static_cast<CWndNvrEmbedded*>(pReleased)->OnMenuSystemSetting();
        EXPECT_FALSE(pNvr);
        EXPECT_EQ(vm_objPrompts.Left(), 0u);
        vm_nvr.m_F_o_Faults().m_S_Clear();
    }
}

} // namespace
