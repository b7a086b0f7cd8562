#include <QAbstractItemView>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <algorithm>
#include <random>

#include "At.h"
#include "CycleFixture.h"
#include "core/CWndNvrEmbedded.h"
#include "drivers/CCamObj_Base.h"
#include "setup/CCameraTree.h"
#include "support/Table.h"
#include "toolkit/controls/CItemList.h"
#include "toolkit/form/CForm.h"
#include "toolkit/sheet/CPropertyPage.h"
#include "toolkit/user/CWaitBox.h"

namespace {

class CameraPage : public CycleFixture
{
protected:
    CameraPage() { vm_nChannels = 20; }

    /// Runs the cycle with work done at the page; cancels unless `work` ends it.
    void Work(const std::function<void(At)>& work)
    {
        ASSERT_TRUE(RunCycle([&](CPropertySheet& sheet) {
            vm_pSheet = static_cast<CDlgSetupPageSystemSetting*>(&sheet);
            Listen();
            CPropertyPage* const pPage = OpenTab(sheet, 0);
            vm_pTree = pPage->findChild<CCameraTree*>();
            vm_pFound = pPage->findChild<CItemList*>("Found");
            work(At(pPage));
            EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
        }));
    }
    /// Writes down what the Motion page is told.
    void Listen()
    {
        vm_arCalls.clear();
        QObject::connect(vm_pSheet, &CDlgSetupPageSystemSetting::S_RefreshCameras, [this](int n) { vm_arCalls << n; });
    }
    QRect ItemRect(int nIndex)
    {
        vm_pTree->scrollToItem(vm_pTree->topLevelItem(nIndex));
        return vm_pTree->visualItemRect(vm_pTree->topLevelItem(nIndex));
    }
    void ClickCamera(int nIndex)
    {
        QTest::mouseClick(vm_pTree->viewport(), Qt::LeftButton, {}, ItemRect(nIndex).center());
    }
    void ClickFound(const QString& sName)
    {
        const auto arItems = vm_pFound->findItems(sName, Qt::MatchExactly);
        ASSERT_EQ(arItems.size(), 1) << sName.toStdString();
        vm_pFound->scrollToItem(arItems[0]);
        QTest::mouseClick(vm_pFound->viewport(), Qt::LeftButton, {}, vm_pFound->visualItemRect(arItems[0]).center());
    }
    /// Opens the quick setup menu of the selected camera and chooses an entry, by way of a submenu if there is one.
    void Choose(At at, const QString& sMenu, int nEntry)
    {
        QTimer::singleShot(0, [=] {
            auto* pMenu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_TRUE(pMenu);
            QMenu* pEntries = pMenu;
            for (QAction* const pAction : pMenu->actions())
                pEntries = pAction->menu() && pAction->text() == sMenu ? pAction->menu() : pEntries;
            QAction* const pAction =
                pEntries->actions().value(nEntry < 0 ? pEntries->actions().size() + nEntry : nEntry);
            ASSERT_TRUE(pAction);
            EXPECT_TRUE(pAction->isEnabled());
            pMenu->close();
            pAction->trigger();
        });
        at.Click("QuickSetup");
    }
    const CXmlObj& Document() { return Nvr().vm_xmlCamera; }
    QString Value(int nIndex, const char* pszKey)
    {
        return Document().m_F_s_Value(QString::asprintf("/root/Camera/Cam%03d", nIndex), pszKey, "missing");
    }
    int Count() { return Document().m_F_n_GetValueInt("/root/Camera", "count", -1); }
    QStringList Names()
    {
        QStringList arNames;
        for (int i = 0; i < Count(); ++i)
            arNames << Value(i, "Name");
        EXPECT_EQ(Value(Count(), "Name"), "missing") << "a node beyond the count";
        return arNames;
    }
    QStringList TreeNames()
    {
        QStringList arNames;
        for (int i = 0; i < vm_pTree->m_F_n_Count(); ++i)
            arNames << vm_pTree->topLevelItem(i)->text(0);
        return arNames;
    }
    QString Note()
    {
        const auto* const pNote = vm_pTree->window()->findChild<QLabel*>("Note");
        EXPECT_EQ(pNote->isVisible(), !pNote->text().isEmpty());
        return pNote->text();
    }
    QList<int> Calls() { return std::exchange(vm_arCalls, {}); }
    /// When a camera records: of each day the number of its records, and their values.
    static QString Week(const CXmlObj& xml, int nCamera)
    {
        QStringList arValues;
        const auto Add = [&](const QString& sPath, const char* pszKey) {
            arValues << xml.m_F_s_Value(sPath, pszKey, "-");
        };
        for (const char* pszDay : {"SUN", "MON", "TUE", "WED", "THU", "FRI", "SAT"}) {
            const QString sDay = QString::asprintf("/root/Main/SCH/C%03d/%s", nCamera, pszDay);
            Add(sDay, "SetCount");
            for (const char* pszKey : {"SHour", "SMin", "EHour", "EMin", "Pre", "Post", "EventForceRecord", "Mode",
                                       "DIID", "DICam", "DIMode"})
                Add(sDay + "/Set000", pszKey);
        }
        return arValues.join(' ');
    }
    /// As Store has it, and as a new camera gets it.
    static QString WeekOf(int nMark)
    {
        return QStringList(7, QString("1 %1 0 23 59 %1 3 1 2 0 %1 1").arg(nMark)).join(' ');
    }
    static QString WholeWeek(int nCamera)
    {
        return QStringList(7, QString("1 0 0 23 59 3 3 1 1 0 %1 1").arg(nCamera)).join(' ');
    }
    /// What was asked of cameras since the last call.
    std::vector<std::string> Asked() { return TakeAnswered(vm_nvr.m_F_o_Log(), "param.cgi?"); }
    /// Gives the recorder so many cameras, "A", "B" ... of all brands in turn, and those of `sMore`.
    void Store(int nCameras, const QString& sMore = {})
    {
        static constexpr int s_arVendors[] = {2, 4, 6, 8, 0, 7, 9, 10};
        QString sXml = QString("<root><Camera count='%1'>").arg(nCameras + sMore.count("<Cam"));
        for (int i = 0; i < nCameras; ++i)
            sXml += QString::asprintf("<Cam%03d VendorID='%d' Model='M' Name='%c' IP='10.0.0.%d' HttpPort='80'"
                                      " RtspPort='554' UserName='u' Password='p' Enable='%dx'/>",
                                      i, s_arVendors[i % 8], 'A' + i, i + 1, i % 2);
        sXml += sMore + "</Camera></root>";
        std::string sError;
        ASSERT_TRUE(vm_nvr.m_F_o_Documents().m_F_b_Put(emDef_Document::Camera, sXml.toStdString(), sError)) << sError;
        sXml = "<root><Main><SCH>";
        for (int i = 0; i < nCameras; ++i) {
            sXml += QString::asprintf("<C%03d>", i);
            for (const char* pszDay : {"SUN", "MON", "TUE", "WED", "THU", "FRI", "SAT"})
                sXml += QString("<%1 SetCount='1'><Set000 SHour='%2' SMin='0' EHour='23' EMin='59' Pre='%2' Post='3' "
                                "EventForceRecord='1' Mode='2' DIID='0' DICam='%2' DIMode='1'/></%1>")
                            .arg(pszDay)
                            .arg(i);
            sXml += QString::asprintf("</C%03d>", i);
        }
        sXml += "</SCH></Main></root>";
        ASSERT_TRUE(vm_nvr.m_F_o_Documents().m_F_b_Put(emDef_Document::Schedule, sXml.toStdString(), sError)) << sError;
    }
    /// Nodes, items, objects and slots agree.
    void ExpectInStep(const QStringList& arNames)
    {
        EXPECT_EQ(Names(), arNames);
        EXPECT_EQ(TreeNames(), arNames);
        for (int i = 0; i < vm_pSheet->m_F_n_Slots(); ++i) {
            const CCamObj_Base* const pCamera = vm_pSheet->m_arrCamObj[static_cast<std::size_t>(i)];
            ASSERT_EQ(pCamera != nullptr, i < arNames.size()) << i;
            if (!pCamera)
                continue;
            EXPECT_EQ(pCamera->m_nCamIndex, i);
            if (Value(i, "Enable") == "") // one that was never detected is shown as enabled, and has nothing yet
                continue;
            EXPECT_EQ(vm_pTree->topLevelItem(i)->checkState(0) == Qt::Checked, Value(i, "Enable")[0] == '1') << i;
            EXPECT_EQ(QString::number(pCamera->m_stConnect.nVendorID), Value(i, "VendorID")) << i;
        }
    }

    QList<int> vm_arCalls;
    CDlgSetupPageSystemSetting* vm_pSheet = nullptr;
    CCameraTree* vm_pTree = nullptr;
    CItemList* vm_pFound = nullptr;
};

const QStringList g_arForShown = {"Delete", "Update", "Parameter"};

TEST_F(CameraPage, ShowsWhatIsStoredAndWhereTheUserIs)
{
    Work([&](At at) {
        EXPECT_EQ(TreeNames(), QStringList({"Entrance", "Parking – Süd", "Loading bay", "倉庫 4 \"cold\""}));
        ExpectInStep(TreeNames());
        auto* const pAuth = static_cast<QComboBox*>(at.Find("OnvifAuth"));
        EXPECT_EQ(pAuth->currentText(), "WSSE");
        ClickCamera(1);
        EXPECT_TRUE(pAuth->isVisible());
        EXPECT_FALSE(at.Find("RtspPort")->isVisible());
        EXPECT_EQ(at.Shown("Password"), "0nv1f");
        EXPECT_EQ(static_cast<QLineEdit*>(at.Find("Password"))->echoMode(), QLineEdit::Password);
        QTest::keyClick(vm_pTree, Qt::Key_Down);
        EXPECT_EQ(at.Shown("Name"), "Loading bay");
        EXPECT_TRUE(at.Find("RtspPort")->isVisible());
        QTest::keyClick(vm_pTree, Qt::Key_Space);
        EXPECT_EQ(Value(2, "Enable"), "0");
        QTest::keyClick(vm_pTree, Qt::Key_Space);
        EXPECT_EQ(Value(2, "Enable"), "1");
        at.Click("Clear");
        EXPECT_EQ(QStringList({at.Shown("Model"), at.Shown("Name"), at.Shown("IP"), at.Shown("HttpPort"),
                               at.Shown("RtspPort"), at.Shown("UserName"), at.Shown("Password")}),
                  QStringList({"Any", "", "0.0.0.0", "80", "554", "admin", ""}));
        // "ONVIF" is the last vendor; it begins without authentication.
        QTest::keyClick(at.Find("Vendor"), Qt::Key_End);
        EXPECT_EQ(pAuth->currentText(), "None");
        EXPECT_TRUE(pAuth->isVisible());
        for (const int nCamera : {1, 2}) { // what is chosen already changes nothing
            ClickCamera(nCamera);
            at.Type("RtspPort", "5540");
            static_cast<QComboBox*>(at.Find("Vendor"))->showPopup();
            QTest::keyClick(static_cast<QComboBox*>(at.Find("Vendor"))->view(), Qt::Key_Return);
            EXPECT_EQ(at.Shown("RtspPort") + pAuth->currentText(), "5540WSSE");
        }
    });
}

TEST_F(CameraPage, WhatIsSelectedIsShown)
{
    constexpr int Beside = -1, ByTab = -2;
    const auto Act = [&](At at, int nAt, Qt::MouseButton nButton, Qt::KeyboardModifiers nKeys) {
        QApplication::setActiveWindow(vm_pSheet);
        at.Find("AutoSettingButton")->setFocus();
        if (nAt == ByTab) {
            QTest::keyClick(at.Find("AutoSettingButton"), Qt::Key_Backtab);
            return;
        }
        QTimer::singleShot(0, [] {
            if (QWidget* const pMenu = QApplication::activePopupWidget())
                pMenu->close();
        });
        const QRect rcTarget = nAt == Beside ? vm_pTree->viewport()->rect() : ItemRect(nAt);
        QTest::mouseClick(vm_pSheet->windowHandle(), nButton, nKeys,
                          vm_pTree->viewport()->mapTo(vm_pSheet, rcTarget.center()));
    };
    Work([&](At at) {
        for (int nStep = 0; const int nAt : {ByTab, Beside, 1, 1, 2, 2, 1, Beside, ByTab, 0, Beside, ByTab}) {
            for (const auto& [nButton, nKeys] : {std::pair{Qt::LeftButton, Qt::ControlModifier},
                                                 {Qt::RightButton, Qt::NoModifier},
                                                 {Qt::LeftButton, Qt::NoModifier}}) {
                const int nBefore = vm_pTree->m_F_n_Selected(), nAfter = nAt < 0 ? nBefore : nAt;
                const bool bAlone = nStep++ % 2 == 0 || nBefore < 0;
                SCOPED_TRACE(testing::PrintToString(std::array{nStep, nAt, int(nButton), int(nKeys)}));
                bAlone ? at.Click("Clear") : ClickCamera(nBefore);
                at.Type("Name", "typed");
                Act(at, nAt, nButton, nKeys);
                EXPECT_EQ(vm_pSheet->focusWidget(), vm_pTree);
                EXPECT_EQ(vm_pTree->m_F_n_Selected(), nAfter);
                EXPECT_EQ(vm_pTree->currentIndex().row(), nAfter);
                EXPECT_EQ(at.Shown("Name"), nAt < 0 ? "typed" : Value(nAt, "Name"));
                EXPECT_EQ(at.NotEnabled(g_arForShown, nAt >= 0 || !bAlone), QStringList());
            }
        }
    });
}

TEST_F(CameraPage, OpensOnAnyDocument)
{
    for (const stDef_TableRow& row : ReadTable("camera_lists.txt", 5)) {
        SCOPED_TRACE(row.sWhere);
        const QString sXml =
            QString("<root><Camera count=\"%1\">%2</Camera></root>").arg(row[0].c_str(), row[1].c_str());
        ASSERT_TRUE(Nvr().vm_xmlCamera.m_F_b_LoadXML(sXml));
        ASSERT_TRUE(
            Nvr().vm_xmlSystemInfo.m_F_b_LoadXML(QString("<root><Local MaxCam='%1'/></root>").arg(row[2].c_str())));
        CDlgSetupPageSystemSetting sheet(&Nvr(), "sheet", 0);
        sheet.OnInitDialog();
        sheet.show();
        vm_pTree = sheet.findChild<CCameraTree*>();
        EXPECT_EQ(vm_pTree->m_F_n_Count(), row.Number(3));
        EXPECT_EQ(Document().m_F_s_GetXML(), sXml);
        EXPECT_EQ(At(&sheet).Find("Add")->isEnabled(), row.Number(3) < row.Number(2));
        if (row[4] == "-")
            continue;
        if (vm_pTree->topLevelItem(0)->text(0).startsWith("<b>"))
            EXPECT_TRUE(vm_pTree->topLevelItem(0)->toolTip(0).contains("&lt;b&gt;")); // no mark-up
        ClickCamera(0);
        At(&sheet).Click("Delete");
        EXPECT_EQ(TreeNames().join(',').toStdString(), row[4]);
    }
}

TEST_F(CameraPage, KeepsACameraWithoutADriver)
{
    Store(2, "<Cam002 VendorID='3' Name='C' IP='10.0.0.3' HttpPort='80' RtspPort='554' UserName='u' Zone='7'/>");
    Work([&](At at) {
        ClickCamera(2);
        EXPECT_EQ(at.NotEnabled({"Delete", "Update"}, true), QStringList());
        EXPECT_FALSE(at.Find("Parameter")->isEnabled());
        at.Type("Name", "renamed");
        at.Click("Update");
        EXPECT_EQ(TreeNames(), QStringList({"A", "B", "renamed"}));
        Choose(at, "Switch To", 0);
        EXPECT_EQ(TreeNames(), QStringList({"renamed", "B", "A"}));
        EXPECT_EQ(Value(0, "Zone"), "7");
        ClickCamera(1);
        Choose(at, "Copy To", 2); // behind "Apply All" and the line, the first camera
        EXPECT_EQ(Names(), QStringList({"B", "B", "A"}));
        EXPECT_EQ(Value(0, "Zone"), "missing");
    });
}

TEST_F(CameraPage, AddsWhatWasFound)
{
    Store(0);
    Work([&](At at) {
        at.Click("Search");
        QStringList arNames;
        Asked();
        for (int n = 0; const stDef_TableRow& row : ReadTable("cameras_found.txt", 3)) {
            SCOPED_TRACE(row[0]);
            const QString sModel = row[2].c_str();
            ClickFound(row[0].c_str());
            EXPECT_EQ(at.NotEnabled(g_arForShown, false), QStringList());
            const bool bLinkLocal = at.Shown("IP").startsWith("ID@");
            EXPECT_EQ(CForm::s_F_p_LabelOf(at.Find("IP"))->text().remove('&'),
                      bLinkLocal ? "IP Address* : " : "IP Address : ");
            at.Click("Add");
            const std::string sTarget = "&" + row[1];
            EXPECT_EQ(Asked(), std::vector({"param.cgi?action=detect&camid=0" + sTarget,
                                            "param.cgi?action=camerasupport" + sTarget}));
            arNames << QString("%1 %2").arg(row[0].c_str(), at.Shown("IP"));
            ExpectInStep(arNames);
            EXPECT_EQ(Value(n, "Model"), sModel);
            EXPECT_EQ(at.Shown("Model"), sModel);
            EXPECT_EQ(Value(n, "RtspPort"), "554");
            EXPECT_EQ(vm_pSheet->m_arrCamObj[static_cast<std::size_t>(n)]->m_stConnect.strModel, sModel);
            EXPECT_EQ(Calls(), QList<int>({n}));
            ++n;
        }
    });
}

TEST_F(CameraPage, SaysWhatIsWrongAndChangesNothing)
{
    Work([&](At at) {
        const QString sBefore = Document().m_F_s_GetXML();
        at.Click("Search");
        for (const stDef_TableRow& row : ReadTable("camera_refusals.txt", 6)) {
            SCOPED_TRACE(row.sWhere);
            ClickCamera(0);
            if (row[0] != "Update")
                ClickFound("Stairs 1");
            if (!row[1].empty())
                at.Type(row[1].c_str(), row[2].c_str());
            if (!row[3].empty())
                vm_objPrompts.Expect(row[3].c_str(), row[4].c_str(), "");
            at.Click(row[0].c_str());
            EXPECT_EQ(Note().toStdString(), row[5]);
            EXPECT_EQ(Document().m_F_s_GetXML(), sBefore);
            EXPECT_EQ(Calls(), QList<int>());
        }
        EXPECT_EQ(at.Shown("Model"), "QA-410");
        ClickFound("Stairs 1");
        at.Type("Name", "");
        vm_objPrompts.Expect("Camera Name Is Empty, Do You Want To Use Default Name?", "Error");
        at.Click("Add");
        EXPECT_EQ(Names().last(), "Stairs 1 192.168.1.24");
        EXPECT_EQ(Calls().size(), 1);
    });
    Store(20);
    Work([&](At at) {
        EXPECT_FALSE(at.Find("Add")->isEnabled());
        at.Find("Add")->setEnabled(true);
        vm_nvr.m_F_o_Log().m_S_Clear();
        vm_objPrompts.Expect("NVR Camera List Is Full!", "Error");
        at.Click("Add");
        EXPECT_EQ(at.NotEnabled({"Add", "AutoSettingButton"}, false), QStringList());
        EXPECT_TRUE(Asked().empty());
        Choose(at, "", -1);
        ExpectInStep({});
        EXPECT_EQ(Calls(), QList<int>({-1}));
        EXPECT_EQ(at.NotEnabled({"Add", "AutoSettingButton"}, true), QStringList());
        vm_objPrompts.Expect("No Camera.", "Error");
        at.Click("QuickSetup");
    });
}

TEST_F(CameraPage, UpdatesInPlaceOrByAnotherVendor)
{
    Store(3);
    Work([&](At at) {
        ClickCamera(1); // an ONVIF camera
        QTest::keyClick(at.Find("OnvifAuth"), Qt::Key_Up);
        at.Type("Name", "Buero");
        at.Type("HttpPort", "8000");
        Asked();
        at.Click("Update");
        EXPECT_TRUE(Asked().empty());
        EXPECT_EQ(Value(1, "HttpPort"), "8000");
        EXPECT_EQ(Value(1, "OnvifAuth"), "missing");
        EXPECT_EQ(vm_pSheet->m_F_p_Camera(1)->m_stConnect.nOnvifAuth, 0);
        ExpectInStep({"A", "Buero", "C"});
        EXPECT_EQ(Calls(), QList<int>({2}));
        QTest::keyClick(at.Find("Vendor"), Qt::Key_Home);
        at.Type("IP", "192.168.1.26");
        at.Type("HttpPort", "80");
        at.Type("UserName", "admin");
        at.Type("Password", "cam&Era#1");
        at.Click("Update");
        EXPECT_EQ(Asked().size(), 2);
        EXPECT_EQ(Value(1, "VendorID"), "8");
        EXPECT_EQ(Value(1, "Model"), "RW-7301XT");
        EXPECT_EQ(at.Shown("Model"), "RW-7301XT");
        ExpectInStep({"A", "Buero", "C"});
        EXPECT_EQ(Calls(), QList<int>({1}));
    });
}

// Sequences of actions beside a model that is a list of names and weeks, up to what the recorder has after OK; the
// Schedule page was shown in every second one.
TEST_F(CameraPage, KeepsEverythingInStep)
{
    struct stDef_Model
    {
        QString sName, sWeek;
    };
    std::mt19937 objRandom(20);
    const auto Any = [&](qsizetype nBelow) { return static_cast<int>(objRandom() % static_cast<unsigned>(nBelow)); };
    for (int nSequence = 0; nSequence < 160 && !HasFailure(); ++nSequence) {
        const int nCameras = nSequence % 20 + 1;
        Store(nCameras);
        QList<stDef_Model> arModel;
        for (int i = 0; i < nCameras; ++i)
            arModel.append({QChar('A' + i), WeekOf(i)});
        const auto Names = [&] {
            QStringList ar;
            for (const stDef_Model& st : arModel)
                ar << st.sName;
            return ar;
        };
        const auto ExpectWeeks = [&](const CXmlObj& xml) {
            for (int i = 0; i < arModel.size(); ++i)
                ASSERT_EQ(Week(xml, i), arModel[i].sWeek) << i;
            EXPECT_EQ(xml.m_F_s_GetNods("/root/Main/SCH").count("<C"), arModel.size());
        };
        Work([&](At at) {
            auto* const pWeekTree = nSequence % 2 ? OpenTab(*vm_pSheet, 1)->findChild<QTreeWidget*>() : nullptr;
            OpenTab(*vm_pSheet, 0);
            at.Click("Search");
            for (int nStep = 0; nStep < 12 && !HasFailure(); ++nStep) {
                Calls();
                const int nAction = Any(20), nFrom = arModel.isEmpty() ? 0 : Any(arModel.size());
                const int nTo = arModel.isEmpty() ? 0 : Any(arModel.size());
                SCOPED_TRACE(testing::PrintToString(std::array{nSequence, nStep, nAction, nFrom, nTo}));
                QList<int> arCalls;
                if (arModel.isEmpty() || (nAction < 5 && arModel.size() < 20)) {
                    ClickFound("Roof");
                    at.Type("Name", QString("new %1").arg(nStep));
                    arCalls << static_cast<int>(arModel.size());
                    arModel.append({at.Shown("Name"), WholeWeek(arCalls[0])});
                    at.Click("Add");
                } else if (ClickCamera(nFrom); nAction < 8) {
                    at.Click("Delete");
                    arModel.removeAt(nFrom);
                    arCalls << nFrom;
                    EXPECT_EQ(vm_pTree->m_F_n_Selected(), -1);
                } else if (nAction < 10) {
                    at.Type("Name", arModel[nFrom].sName = QString("named %1").arg(nStep));
                    at.Click("Update");
                    arCalls << nFrom + 1;
                } else if (nAction < 14 && nFrom != nTo) {
                    Choose(at, "Switch To", nTo);
                    if (nTo <= 16) {
                        arModel.swapItemsAt(nFrom, nTo);
                        arCalls << nTo + 1;
                    }
                    EXPECT_EQ(at.Shown("Name"), arModel[nFrom].sName);
                } else if (nAction < 18 && nFrom != nTo) {
                    Choose(at, "Copy To", nTo + 2);
                    if (nTo <= 15) {
                        arModel[nTo] = arModel[nFrom];
                        arCalls << nTo;
                    }
                } else if (nAction == 18 && arModel.size() > 1) {
                    Choose(at, "Copy To", 0);
                    for (int n = 0; n < arModel.size(); ++n) {
                        if (n != nFrom)
                            arCalls << n;
                    }
                    arModel.fill(arModel[nFrom]);
                } else if (nAction == 19 && nStep % 4 == 0) {
                    Choose(at, "", -1);
                    arModel.clear();
                    arCalls << -1;
                }
                EXPECT_EQ(Calls(), arCalls);
                ExpectInStep(Names());
                ExpectWeeks(Nvr().vm_xmlSchedule);
                for (int i = 0; pWeekTree && i < std::max<qsizetype>(arModel.size(), pWeekTree->topLevelItemCount());
                     ++i)
                    ASSERT_EQ(pWeekTree->topLevelItem(i)->text(0), arModel[i].sName);
            }
            ExpectWaiting();
            Press(*vm_pSheet, "OK");
        });
        ExpectWeeks(Stored(emDef_Document::Schedule));
        CXmlObj xmlCamera = Stored(emDef_Document::Camera);
        EXPECT_EQ(xmlCamera.m_F_n_GetValueInt("/root/Camera", "count", -1), arModel.size());
        for (int i = 0; i < arModel.size(); ++i) {
            EXPECT_EQ(xmlCamera.m_F_s_Value(QString::asprintf("/root/Camera/Cam%03d", i), "Name"), arModel[i].sName);
        }
    }
}

TEST_F(CameraPage, FiltersAndSortsWhatIsFound)
{
    Store(20); // there is room for none, so that nothing is added
    Work([&](At at) {
        const auto Found = [&](int nColumn) {
            QStringList arTexts;
            for (int nRow = 0; nRow < vm_pFound->rowCount(); ++nRow)
                arTexts << vm_pFound->m_F_ar_Texts(nRow)[nColumn];
            return arTexts;
        };
        for (const stDef_TableRow& row : ReadTable("found_filters.txt", 5)) {
            at.Find("AutoSettingButton")->setEnabled(true);
            vm_objPrompts.ExpectDialog([&](QDialog& dialog) {
                for (std::size_t n = 0; const char* const pszEdit : {"Model", "IP", "MAC"})
                    if (const std::string& sText = row[n++]; !sText.empty())
                        At(&dialog).Type(pszEdit, sText.c_str());
                At(&dialog).Click(row[3].c_str());
            });
            at.Click("AutoSettingButton");
            EXPECT_EQ(Found(1).join(", ").toStdString(), row[4]);
            const bool bFull = !row[4].empty() && row[3] == "OK";
            EXPECT_EQ(Note().endsWith("The camera list is full, so no more were added."), bFull);
            ExpectInStep(TreeNames());
        }
        ClickFound("Roof");
        EXPECT_EQ(at.Shown("Name"), "Roof 192.168.1.28");
        ClickCamera(2);
        EXPECT_EQ(at.NotEnabled(g_arForShown, true), QStringList());
        QTest::mouseClick(vm_pFound->viewport(), Qt::LeftButton, {}, vm_pFound->viewport()->rect().center());
        EXPECT_EQ(at.NotEnabled(g_arForShown, false), QStringList()); // there is no row under the pointer
        at.Click("Search");
        const auto Head = [&](int nColumn) {
            QHeaderView* const pHead = vm_pFound->horizontalHeader();
            QTest::mouseClick(pHead->viewport(), Qt::LeftButton, {},
                              QPoint(pHead->sectionViewportPosition(nColumn) + 20, pHead->height() / 2));
        };
        ClickFound("Roof");
        for (const int nTimes : {1, 2}) {
            Head(4);
            EXPECT_EQ(Found(4).mid(9).join(','), "80,8080,8081") << nTimes;
            EXPECT_EQ(vm_pFound->m_F_ar_Texts(vm_pFound->m_F_n_Selected())[1], "Roof");
        }
        Head(0); // by the vendor's number, not its name
        EXPECT_EQ(Found(1).first(), "Car park east");
        EXPECT_EQ(Found(1).last(), "Roof");
    });
}

TEST_F(CameraPage, AutoSettingAddsUntilItIsStoppedOrOneFails)
{
    for (const int nStopAt : {0, 3, 99}) {
        SCOPED_TRACE(nStopAt);
        Store(2);
        Work([&](At at) {
            QStringList arSteps;
            QTimer timer;
            timer.callOnTimeout([&] {
                auto* const pBox = qobject_cast<CWaitBox*>(QApplication::activeModalWidget());
                if (!pBox)
                    return;
                EXPECT_EQ(pBox->findChild<QLabel*>()->textFormat(), Qt::PlainText);
                arSteps << pBox->findChild<QLabel*>("WaitText")->text();
                arSteps.removeDuplicates();
                if (pBox->findChild<QProgressBar*>()->value() >= nStopAt)
                    At(pBox).Click("Stop");
            });
            vm_objPrompts.ExpectDialog([&](QDialog& dialog) {
                At(&dialog).Click("OK");
                timer.start(0);
            });
            at.Click("AutoSettingButton");
            timer.stop();
            // Eleven answer, the twelfth doesn't.
            const int nAdded = std::min(nStopAt, 11);
            EXPECT_EQ(Count(), 2 + nAdded);
            EXPECT_EQ(Names().value(2), nAdded ? "AM5-1310 192.168.1.21" : QString());
            ExpectInStep(Names());
            EXPECT_EQ(Calls().size(), nAdded);
            EXPECT_EQ(vm_pTree->m_F_n_Selected(), nAdded ? 1 + nAdded : -1);
            EXPECT_EQ(Note(), QString("Cameras added: %1").arg(nAdded) +
                                  (nAdded < 11 ? ""
                                               : "\nAdded, but refused the account: Archive 192.168.1.29"
                                                 "\nAdded without being reached: Bicycle shed 192.168.1.31"));
            EXPECT_EQ(arSteps.value(0), "Camera 1 of 12: Car park east 192.168.1.21");
            at.Click("Clear");
            EXPECT_EQ(Note(), "");
        });
    }
}

TEST_F(CameraPage, TheTemplateIsWrittenAtOnceAndByItsDialog)
{
    Work([&](At at) {
        const auto Template = [&](const char* pszKey) {
            return Nvr().vm_xmlSystem.m_F_n_GetValueInt("/root/system/camera/template", pszKey, -1);
        };
        QTest::keyClick(at.Find("Resolution"), Qt::Key_Down);
        QTest::keyClick(at.Find("FPS"), Qt::Key_Up);
        EXPECT_EQ(Template("Resolution"), 4);
        EXPECT_EQ(Template("FPS"), 10);
        for (const bool bOk : {false, true}) {
            Nvr().vm_xmlSystem.m_F_b_SetValue("/root/system/camera/template", "Quality", bOk ? 0 : 60);
            vm_objPrompts.ExpectDialog([&](QDialog& shown) {
                At dialog(&shown);
                EXPECT_FALSE(dialog.Find("Quality")->isEnabled()); // CBR
                QTest::keyClick(dialog.Find("RateCtrl"), Qt::Key_Down);
                EXPECT_TRUE(dialog.Find("Quality")->isEnabled());
                QTest::keyClick(dialog.Find("FPS"), Qt::Key_End);
                dialog.Type("Account", "root");
                dialog.Click(bOk ? "OK" : "Cancel");
            });
            at.Click("Advanced");
            EXPECT_EQ(Template("FPS"), bOk ? 30 : 10);
            EXPECT_EQ(Template("RateCtrl"), bOk ? 2 : 1);
        }
        EXPECT_EQ(Template("Quality"), 101); // none was chosen
        EXPECT_EQ(static_cast<QComboBox*>(at.Find("FPS"))->currentText(), "30");
    });
}

} // namespace
