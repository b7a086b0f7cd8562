#include <QLabel>
#include <QPointer>
#include <QTreeWidget>

#include "At.h"
#include "CycleFixture.h"
#include "drivers/brands/Drivers.h"
#include "motion/CSetMotionObj.h"
#include "motion/CWndCameraMotion.h"
#include "setup/motion/CDlgSetupPageSystemSetting_Motion.h"
#include "support/Waiting.h"
#include "toolkit/controls/CItemList.h"

namespace {

constexpr int MotionTab = 5;
constexpr const char* ListUrl = "action=list&group=motion";

/// The Motion page of a recorder with four cameras: AMTK V6, ONVIF, ZAVIO and FITI.
class MotionPage : public CycleFixture
{
protected:
    using AtPage = std::function<void(const At&)>;

    void Run(const AtPage& fnAct)
    {
        vm_pPage = nullptr;
        EXPECT_TRUE(RunCycle([&](CPropertySheet& sheet) {
            vm_pSheet = &sheet;
            vm_pPage = OpenTab(sheet, MotionTab);
            fnAct(At(vm_pPage));
        }));
    }
    void ChooseCamera(int nCamera)
    {
        auto* const pTree = vm_pPage->findChild<QTreeWidget*>();
        QTest::mouseClick(pTree->viewport(), Qt::LeftButton, {},
                          pTree->visualItemRect(pTree->topLevelItem(nCamera)).center());
    }
    CItemList& List() { return *vm_pPage->findChild<CItemList*>("Windows"); }
    CSetMotionObj& Canvas() { return *vm_pPage->findChild<CSetMotionObj*>("Canvas"); }
    CWndCameraMotion* Window() { return vm_pPage->findChild<CWndCameraMotion*>(); }
    void ChooseRow(int nRow)
    {
        QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, List().visualItemRect(List().item(nRow, 1)).center());
    }
    void Check(int nRow)
    {
        const QRect rc = List().visualItemRect(List().item(nRow, 0));
        QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, QPoint(rc.left() + 10, rc.center().y()));
    }
    QString Setting(int nCamera)
    {
        return Nvr().vm_xmlCamera.m_F_s_Value(QString::asprintf("/root/Camera/Cam%03d", nCamera), "MotionSetting");
    }
    /// Targets of the requests since the last call that have this in them.
    QStringList Asked(const char* pszWhat)
    {
        QStringList arTargets;
        for (const auto& st : vm_nvr.m_F_o_Log().m_F_ar_Entries()) {
            if (st.sTarget.find(pszWhat) != std::string::npos)
                arTargets << QString::fromStdString(st.sTarget).section('?', 1);
        }
        vm_nvr.m_F_o_Log().m_S_Clear();
        return arTargets;
    }

    CPropertySheet* vm_pSheet = nullptr;
    CPropertyPage* vm_pPage = nullptr;
};

TEST_F(MotionPage, EachBrandIsItsRow)
{
    const struct
    {
        int nVendorID;
        bool bTypes, bNameEditable;
        const char* pszFirst;
    } arRows[] = {{0, true, true, "ObjectSize"},   {2, true, true, "ObjectSize"},   {6, false, true, "Threshold"},
                  {7, false, true, "Percentage"},  {8, false, false, "Percentage"}, {9, false, false, "Trigger"},
                  {10, false, false, "Threshold"}, {4, false, false, nullptr}};
    ASSERT_EQ(std::size(arRows), DriverList().size());
    for (const auto& row : arRows) {
        SCOPED_TRACE(row.nVendorID);
        CXmlObj xml = Stored(emDef_Document::Camera);
        xml.m_F_b_SetValue("/root/Camera/Cam000", "VendorID", row.nVendorID);
        ASSERT_TRUE(Nvr().m_F_b_PostRequest("cgi-bin/SyncSetting.cgi?action=UpdateCamera", &xml, 5000));
        vm_nvr.m_F_o_Log().m_S_Clear();
        Run([&](const At& at) {
            if (!row.pszFirst) {
                EXPECT_FALSE(Window());
                EXPECT_TRUE(vm_pPage->findChild<QWidget*>("Motion"));
                EXPECT_TRUE(Asked(ListUrl).isEmpty());
                return;
            }
            EXPECT_EQ(vm_pPage->findChild<QWidget*>("Included") != nullptr, row.bTypes);
            EXPECT_FALSE(at.Shown("Name").isEmpty());
            EXPECT_EQ(at.Find("Name")->property("readOnly").toBool(), !row.bNameEditable);
            const QString sLabel = CForm::s_F_p_LabelOf(at.Find("ObjectSize"))->text().remove('&');
            EXPECT_TRUE(sLabel.startsWith(QString(row.pszFirst) + " (")) << sLabel.toStdString();
        });
    }
}

TEST_F(MotionPage, WindowsAreAddedMovedUpdatedAndDeleted)
{
    Run([&](const At& at) {
        const int nFirst = List().rowCount();
        ASSERT_GT(nFirst, 1);
        const int nIndex = List().m_F_n_Data(1);
        ASSERT_NE(nIndex, 1) << "position and Index differ";
        QTest::mouseClick(Canvas().m_F_p_Wnd(1), Qt::LeftButton, {}, QPoint(20, 10));
        EXPECT_EQ(List().m_F_n_Selected(), 1) << "a press selects the row of the same position";
        Canvas().m_F_p_Wnd(1)->setFocus();
        QTest::keyClick(Canvas().m_F_p_Wnd(1), Qt::Key_Left, Qt::ControlModifier);
        EXPECT_FALSE(at.Shown("MotionNote").isEmpty());
        const stDef_Rect st = Canvas().m_F_p_Wnd(1)->m_F_o_Rect();
        at.Type("Name", "a b");
        at.Click("Excluded");
        EXPECT_FALSE(at.Find("ObjectSize")->isEnabled());
        Asked("");
        at.Click("Update");
        const QString sM = QString("Motion.M%1.").arg(nIndex);
        const QString sWant = QString("action=update&%1Left=%2&%1Top=%3&%1Right=%4&%1Bottom=%5&%1Name=a%20b&")
                                  .arg(sM, QString::number(st.left), QString::number(st.top), QString::number(st.right),
                                       QString::number(st.bottom));
        const QStringList arUpdates = Asked("action=");
        ASSERT_EQ(arUpdates.size(), 2);
        EXPECT_TRUE(arUpdates[0].startsWith(sWant)) << arUpdates[0].toStdString();
        EXPECT_TRUE(arUpdates[0].endsWith(sM + "WindowType=exclude&camera=0"));
        EXPECT_EQ(List().m_F_n_Selected(), 1);
        EXPECT_EQ(at.Shown("Name"), "a b");
        EXPECT_EQ(Canvas().m_F_p_Wnd(1)->m_F_o_Rect(), st) << "what was told comes back";
        EXPECT_TRUE(at.Shown("MotionNote").isEmpty());

        while (at.Find("Add")->isEnabled())
            at.Click("Add");
        EXPECT_EQ(List().rowCount(), 10) << "what the recorder allows";
        ChooseRow(1);
        at.Click("Delete");
        EXPECT_TRUE(Asked("action=remove")[0].contains(QString("Motion.M%1&").arg(nIndex)));
        EXPECT_TRUE(at.Find("Add")->isEnabled());
        while (List().rowCount() > 0)
            at.Click("Delete");
        EXPECT_EQ(at.NotEnabled({"Delete", "Update"}, false), QStringList());
        EXPECT_TRUE(Canvas().isVisible());
    });
}

TEST_F(MotionPage, WhatIsCheckedIsKeptByOkAlone)
{
    const auto ClickAll = [this] {
        for (int i = 0; i < List().rowCount(); ++i)
            Check(i);
    };
    QString sAll;
    Run([&](const At&) {
        EXPECT_EQ(Setting(0), "0:2");
        for (int i = 0; i < List().rowCount(); ++i)
            EXPECT_EQ(List().item(i, 0)->checkState() == Qt::Checked,
                      List().m_F_n_Data(i) == 0 || List().m_F_n_Data(i) == 2);
        Check(1);
        EXPECT_EQ(List().m_F_n_Selected(), 1) << "a click on a box selects its row";
        ChooseCamera(0); // reopened
        EXPECT_EQ(List().item(1, 0)->checkState() == Qt::Checked, List().m_F_n_Data(1) == 2);
        ClickAll();
        Press(*vm_pSheet, "Cancel");
    });
    EXPECT_EQ(Setting(0), "0:2");
    Run([&](const At&) {
        ExpectWaiting();
        ClickAll();
        QStringList arLeft;
        for (int i = 0; i < List().rowCount(); ++i) {
            if (List().item(i, 0)->checkState() == Qt::Checked)
                arLeft << QString::number(List().m_F_n_Data(i));
        }
        sAll = arLeft.join(':');
        Press(*vm_pSheet, "OK");
        EXPECT_FALSE(Window()) << "after OK no window is open";
    });
    EXPECT_EQ(Stored(emDef_Document::Camera).m_F_s_Value("/root/Camera/Cam000", "MotionSetting"), sAll);
}

TEST_F(MotionPage, AListThatDoesNotComeIsNotSaved)
{
    ASSERT_TRUE(vm_nvr.m_F_o_Faults().m_F_b_Set("group=motion", {"status", 500}));
    Run([&](const At& at) {
        ExpectWaiting();
        EXPECT_EQ(List().rowCount(), 0);
        EXPECT_FALSE(Canvas().isVisible());
        EXPECT_EQ(at.NotEnabled({"Add", "Delete", "Update"}, false), QStringList());
        EXPECT_EQ(at.Shown("MotionNote"), "The recorder did not answer.");
        Press(*vm_pSheet, "OK");
    });
    EXPECT_EQ(Stored(emDef_Document::Camera).m_F_s_Value("/root/Camera/Cam000", "MotionSetting"), "0:2");
}

TEST_F(MotionPage, OneWindowIsOpenAndTheStreamLightsIt)
{
    Nvr().m_S_InitHTTP();
    Run([&](const At&) {
        const QPointer<CWndCameraMotion> pFirst(Window());
        EXPECT_TRUE(WaitUntil([&] { return !Asked("motiondata").isEmpty(); }));
        ChooseCamera(1);
        EXPECT_FALSE(pFirst);
        EXPECT_FALSE(Window()) << "an ONVIF camera has an empty one";
        ChooseCamera(2);
        Asked("");
        ChooseCamera(2);
        EXPECT_EQ(Asked(ListUrl).size(), 1) << "opened anew by a click, once";
        EXPECT_EQ(vm_pPage->findChildren<CWndCameraMotion*>().size(), 1);
    });
    EXPECT_TRUE(Nvr().m_F_b_HasTarget()) << "as it was before";
    Asked("");
    Nvr().m_S_ExecPTZCmd(1, 0, 0, 0);
    EXPECT_FALSE(Asked("").isEmpty()) << "a command reaches the recorder";
    Nvr().m_S_ReleaseHTTP();
    Run([&](const At&) { EXPECT_TRUE(Window()); });
    EXPECT_FALSE(Nvr().m_F_b_HasTarget());
}

TEST_F(MotionPage, FollowsTheCameraListAndOutlivesAClosedSheet)
{
    Run([&](const At&) {
        vm_pPage = OpenTab(*vm_pSheet, 0);
        ChooseCamera(0);
        vm_objPrompts.Expect("Motion Detection CGI Error", "Error");
        At(vm_pPage).Click("Delete");
        EXPECT_EQ(vm_objPrompts.Left(), 0u);
        vm_pPage = OpenTab(*vm_pSheet, MotionTab);
        EXPECT_EQ(vm_pPage->findChild<QTreeWidget*>("Cameras")->topLevelItemCount(), 3);
        EXPECT_FALSE(Window()) << "the first one is an ONVIF camera now";
        ChooseCamera(1);
        ASSERT_TRUE(Window());
        ASSERT_TRUE(vm_nvr.m_F_o_Faults().m_F_b_Set("group=motion", {"silence"}));
        QTimer timer;
        timer.callOnTimeout([&] {
            if (!Asked(ListUrl).isEmpty())
                static_cast<QDialog*>(vm_pSheet)->reject(); // as a host closes it: keys are held back
        });
        timer.start(5);
        ChooseCamera(1);
        EXPECT_FALSE(vm_pSheet->isVisible());
    });
}

} // namespace
