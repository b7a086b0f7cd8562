#include <QComboBox>
#include <QLabel>
#include <QTimeEdit>
#include <QTreeWidget>
#include <random>

#include "At.h"
#include "CycleFixture.h"
#include "core/CWndNvrEmbedded.h"
#include "toolkit/controls/CItemList.h"
#include "toolkit/sheet/CPropertyPage.h"
#include "widgets/CTimeListCtrl.h"
#include "widgets/CTimeStateWnd.h"

namespace {

constexpr int ScheduleTab = 1;
const QStringList g_arDays = {"SUN", "MON", "TUE", "WED", "THU", "FRI", "SAT"};
const QStringList g_arKeys = {"SHour", "SMin", "EHour", "EMin",  "Pre", "Post", "EventForceRecord",
                              "Mode",  "DIID", "DICam", "DIMode"};

// "8:15-12:0/2 14:0-15:0/3", with the mode behind the times: a day of the document, there and back. Each record has a
// mark of its own, which must never leave it.
QString Day(const QString& sName, const QString& sRecords)
{
    const QStringList arRecords = sRecords.split(' ', Qt::SkipEmptyParts);
    QString sXml = QString("<%1 SetCount='%2'>").arg(sName).arg(arRecords.size());
    for (int i = 0; i < arRecords.size(); ++i) {
        static const QRegularExpression s_objRecord(R"((-?\d+):(-?\d+)-(-?\d+):(-?\d+)/(\d+))");
        const QStringList ar = s_objRecord.match(arRecords[i]).capturedTexts();
        sXml += QString("<Set%1 SHour='%2' SMin='%3' EHour='%4' EMin='%5' Mode='%6' Mark='%7'/>")
                    .arg(i, 3, 10, QChar('0'))
                    .arg(ar[1], ar[2], ar[3], ar[4], ar[5])
                    .arg(i);
    }
    return sXml + QString("</%1>").arg(sName);
}

class SchedulePage : public CycleFixture
{
protected:
    void Load(const QString& sWeeks)
    {
        std::string sError;
        const QString sXml =
            QString("<root>\n<Main><SCH>%1</SCH></Main><Other a='1'/></root>").arg(sWeeks).replace('\'', '"');
        ASSERT_TRUE(vm_nvr.m_F_o_Documents().m_F_b_Put(emDef_Document::Schedule, sXml.toStdString(), sError)) << sError;
    }
    /// Works at the page; cancels unless `work` ends the sheet.
    void Work(const std::function<void(At)>& work)
    {
        ASSERT_TRUE(RunCycle([&](CPropertySheet& sheet) {
            vm_pSheet = &sheet;
            sheet.resize(1100, 700);
            QApplication::setActiveWindow(&sheet);
            CPropertyPage* const pPage = OpenTab(sheet, ScheduleTab);
            QApplication::processEvents();
            vm_pGrid = pPage->findChild<CTimeListCtrl*>();
            vm_pRecords = pPage->findChild<CItemList*>("Records");
            vm_pTree = pPage->findChild<QTreeWidget*>();
            work(At(pPage));
        }));
    }
    void Ok()
    {
        ExpectWaiting();
        Press(*vm_pSheet, "OK");
    }
    const CXmlObj& Document() { return Nvr().vm_xmlSchedule; }
    QString Value(const QString& sPath, const char* pszKey)
    {
        return Document().m_F_s_Value("/root/Main/SCH/" + sPath, pszKey, "-");
    }
    /// "480-720/2 840-900/3#1": minutes, mode and mark, which new records and copies lack.
    QString Records(int nDay, int nCamera = 0)
    {
        QStringList ar;
        const QString sDay = QString("C%1/%2").arg(nCamera, 3, 10, QChar('0')).arg(g_arDays[nDay]);
        const int nCount = Value(sDay, "SetCount").toInt();
        for (int i = 0; i <= nCount; ++i) {
            const QString s = sDay + QString("/Set%1").arg(i, 3, 10, QChar('0'));
            const auto N = [&](const char* pszKey) { return Value(s, pszKey).toInt(); };
            if (i == nCount)
                EXPECT_EQ(Value(s, "SHour"), "-") << "a node beyond the count";
            else
                ar << QString("%1-%2/%3")
                              .arg(N("SHour") * 60 + N("SMin"))
                              .arg(N("EHour") * 60 + N("EMin"))
                              .arg(Value(s, "Mode")) +
                          (Value(s, "Mark") == "-" ? "" : "#" + Value(s, "Mark"));
        }
        return ar.join(' ');
    }
    CTimeStateBar& Bar(int nDay) { return *vm_pGrid->vm_arBar[nDay]; }
    QString Blocks(int nDay)
    {
        QStringList ar;
        for (const TIME_STATE& st : Bar(nDay).vm_arState)
            ar << QString("%1-%2").arg(st.nStart / TimeLine::Minute).arg(st.nEnd / TimeLine::Minute);
        return ar.join(' ');
    }
    int X(int nMinute) { return nMinute * Bar(0).width() / 1440; }
    /// Between two minutes of a day.
    void Drag(int nDay, int nFrom, int nTo) { DragPixels(nDay, X(nFrom), X(nTo)); }
    void DragPixels(int nDay, int nFrom, int nTo)
    {
        QWindow* const pWindow = vm_pSheet->windowHandle();
        const auto Point = [&](int nX) { return Bar(nDay).mapTo(vm_pSheet, QPoint(nX, Bar(nDay).height() / 2)); };
        QTest::mouseMove(pWindow, Point(nFrom));
        QTest::mousePress(pWindow, Qt::LeftButton, {}, Point(nFrom));
        QTest::mouseMove(pWindow, Point((nFrom + nTo) / 2));
        QTest::mouseRelease(pWindow, Qt::LeftButton, {}, Point(nTo));
    }
    void ClickRecord(int nRecord)
    {
        QTest::mouseClick(vm_pRecords->viewport(), Qt::LeftButton, {},
                          vm_pRecords->visualItemRect(vm_pRecords->item(nRecord, 1)).center());
    }
    void ClickDay(int nDay)
    {
        QTest::mouseClick(vm_pGrid->viewport(), Qt::LeftButton, {}, QPoint(5, Bar(nDay).y() + 5));
    }
    void Key(QWidget* pWidget, const char* pszKey)
    {
        QApplication::setActiveWindow(vm_pSheet); // a dialog may have been
        pWidget->setFocus();
        const QKeyCombination key = QKeySequence::fromString(pszKey)[0];
        QTest::keyClick(pWidget, key.key(), key.keyboardModifiers());
    }
    /// Announces the dialog, and what is typed in it: "StartTime=08:15", "Mode3". Each refusal is a message.
    void ExpectSetting(const QStringList& arSteps, const QString& sShown = {}, const QStringList& arRefusals = {},
                       const char* pszLeave = "OK")
    {
        vm_objPrompts.ExpectDialog([=, this](QDialog& dialog) {
            const At at(&dialog);
            EXPECT_EQ(dialog.windowTitle(), "Setting");
            if (!sShown.isEmpty())
                EXPECT_EQ(at.Shown("StartTime") + "-" + at.Shown("EndTime"), sShown);
            for (const QString& s : arSteps) {
                const QStringList ar = s.split('=');
                if (auto* const pList = qobject_cast<QComboBox*>(at.Find(ar[0])))
                    pList->setCurrentIndex(pList->findText(ar[1]));
                else if (auto* const pTime = qobject_cast<QTimeEdit*>(at.Find(ar[0])))
                    pTime->setTime(QTime::fromString(ar[1], ar[1].size() > 2 ? "HH:mm" : "ss"));
                else
                    at.Click(ar[0]);
            }
            at.Click(pszLeave);
        });
        for (const QString& s : arRefusals)
            vm_objPrompts.Expect(s, "Error");
    }
    QString Note()
    {
        const auto* const pNote = vm_pSheet->m_F_ar_Pages()[ScheduleTab]->findChild<QLabel*>("Note");
        return pNote->isVisible() ? pNote->text() : QString();
    }

    CPropertySheet* vm_pSheet = nullptr;
    CTimeListCtrl* vm_pGrid = nullptr;
    CItemList* vm_pRecords = nullptr;
    QTreeWidget* vm_pTree = nullptr;
};

const char* const g_pszOrder = "Start Time More Then End Time!";
const char* const g_pszTaken = "Time Range Is Incorrect!";
const char* const g_pszOverlaps = "This record overlaps another one, so that no block stands for it.";
const QStringList g_arForDay = {"Add", "Copy"}, g_arForRecord = {"Delete", "Setting"};

TEST_F(SchedulePage, ShowsTheWeekOfACamera)
{
    Work([&](At at) {
        EXPECT_EQ(vm_pTree->topLevelItemCount(), 4);
        EXPECT_EQ(Blocks(0), Records(0).remove(QRegularExpression("/\\d")));
        EXPECT_EQ(at.NotEnabled(g_arForDay + g_arForRecord, true), QStringList());
        QTest::mouseClick(vm_pTree->viewport(), Qt::LeftButton, {},
                          vm_pTree->visualItemRect(vm_pTree->topLevelItem(2)).center());
        EXPECT_EQ(vm_pRecords->rowCount(), 0); // nothing on Sundays
        EXPECT_EQ(at.NotEnabled(g_arForRecord, false), QStringList());
        ClickDay(1);
        EXPECT_EQ(vm_pRecords->m_F_ar_Texts(1), QStringList({"12:00", "12:30", "DI Detection Local False"}));
        EXPECT_EQ(CTimeStateBar::s_pFocusWnd, Bar(1).vm_arState[0].pWnd);
        Key(vm_pGrid, "Right");
        EXPECT_EQ(vm_pRecords->m_F_n_Selected(), 1);
        EXPECT_EQ(Bar(1).vm_arState[1].pWnd->accessibleName(), "Monday, 12:00 to 12:30, DI Detection");
        EXPECT_EQ(Bar(1).vm_arState[1].nColor, 0xD97DAFU);
        ClickRecord(2);
        EXPECT_EQ(CTimeStateBar::s_pFocusWnd, Bar(1).vm_arState[2].pWnd);
        vm_pGrid->clearSelection();
        EXPECT_EQ(at.NotEnabled(g_arForDay + g_arForRecord, false), QStringList());
        EXPECT_EQ(vm_pRecords->m_F_n_Selected(), -1);
        EXPECT_FALSE(CTimeStateBar::s_pFocusWnd);
        EXPECT_EQ(Stored(emDef_Document::Schedule).m_F_s_GetXML(), Document().m_F_s_GetXML());

        Key(vm_pGrid, "Home");
        Key(vm_pGrid, "Shift+Left");
        EXPECT_EQ(at.NotEnabled({"Undo"}, true), QStringList());
        CPropertyPage* const pCameras = OpenTab(*vm_pSheet, 0);
        Key(pCameras->findChild<QTreeWidget*>(), "Down");
        At(pCameras).Click("Delete");
        EXPECT_EQ(at.NotEnabled({"Undo"}, false), QStringList()); // a step goes by the index of its camera
        EXPECT_EQ(vm_pTree->topLevelItemCount(), 3);
        EXPECT_EQ(Blocks(1), Records(1).remove(QRegularExpression("/\\d")));
    });
}

// What is done on Tuesday, and what Tuesday is then; taken back, the document is what it was.
TEST_F(SchedulePage, ActionsWriteTheirRecordsAndCanBeTakenBack)
{
    const struct
    {
        const char* pszName;
        const char* pszBefore;
        std::function<void(At)> fnAct;
        const char* pszAfter;
        int nSelected; ///< record
    } arRows[] = {
        {"a block is dragged against its neighbour", "8:0-10:0/1 12:0-13:0/2", [&](At) { Drag(2, 540, 900); },
         "599-719/1#0 720-780/2#1", 0},
        {"an edge is dragged", "8:0-10:0/1", [&](At) { Drag(2, 600 - 3, 720); }, "480-720/1#0", 0},
        {"keys move and resize", "8:0-10:0/1 12:0-13:0/2",
         [&](At) {
             ClickDay(2);
             Key(vm_pGrid, "Right");
             for (const char* pszKey : {"Ctrl+Up", "Shift+Left", "Alt+Right"})
                 Key(vm_pGrid, pszKey);
         },
         "480-600/1#0 736-794/2#1", 1},
        {"the first of two is deleted", "8:0-10:0/1 12:0-13:0/2",
         [&](At) {
             ClickDay(2);
             Key(vm_pGrid, "Del");
         },
         "720-780/2#1", -1},
        {"the last one is deleted", "8:0-10:0/1",
         [&](At at) {
             ClickDay(2);
             at.Click("Delete");
         },
         "", -1},
        {"a drawn span is added, before the others", "8:0-10:0/1",
         [&](At) {
             ExpectSetting({"Mode4", "Pre=7"}, "01:00-03:00");
             Drag(2, 60, 180);
             QApplication::processEvents();
         },
         "60-180/4 480-600/1#0", 0},
        {"a whole day is added, refused twice", "8:0-10:0/1",
         [&](At) {
             ClickDay(2);
             ExpectSetting({"StartTime=10:00"}, "00:00-23:59", {g_pszTaken}, "OK"); // it touches
             Key(vm_pRecords, "Ins");
             ExpectSetting({"EndTime=00:00"}, {}, {g_pszOrder});
             Key(vm_pRecords, "Ins");
         },
         "480-600/1#0", 0},
        {"one within another is added, and has no block", "8:0-10:0/1 12:0-13:0/2",
         [&](At) {
             ClickDay(2);
             ExpectSetting({"StartTime=09:00", "EndTime=09:30"});
             Key(vm_pGrid, "Ins");
             EXPECT_EQ(Blocks(2).toStdString(), "480-600 720-780");
             EXPECT_EQ(Note().toStdString(), g_pszOverlaps);
             Drag(2, 750, 810); // lands in its own record
         },
         "480-600/1#0 540-570/1 780-840/2#1", 2},
        {"one without a block is deleted", "8:0-10:0/1 9:0-9:30/2 12:0-13:0/2",
         [&](At) {
             ClickDay(2);
             ClickRecord(1);
             EXPECT_EQ(Note().toStdString(), g_pszOverlaps);
             Key(vm_pRecords, "Del");
             EXPECT_EQ(Note().toStdString(), "");
         },
         "480-600/1#0 720-780/2#2", 0},
        {"a record moves behind another, and gets a type", "8:0-10:0/1 12:0-13:0/2",
         [&](At) {
             ClickDay(2);
             ExpectSetting({"StartTime=13:01", "EndTime=13:02", "Mode3", "DIMode0"}, "08:00-10:00");
             Key(vm_pRecords, "Return");
         },
         "720-780/2#1 781-782/3#0", 1},
        {"Cancel", "8:0-10:0/1",
         [&](At at) {
             ClickDay(2);
             ExpectSetting({"StartTime=09:00"}, "08:00-10:00", {}, "Cancel");
             at.Click("Setting");
         },
         "480-600/1#0", 0},
        {"a double click", "8:0-10:0/1",
         [&](At) {
             ExpectSetting({"EndTime=11:00"}, "08:00-10:00");
             QTest::mouseDClick(Bar(2).vm_arState[0].pWnd, Qt::LeftButton);
             QApplication::processEvents();
         },
         "480-660/1#0", 0},
        {"unsorted, overlapping, from nowhere", "20:0-21:0/9 8:0-10:0/0 9:0-9:30/2 -1:0-0:30/1 25:70-99:99/3",
         [&](At) {
             ClickDay(2);
             EXPECT_EQ(vm_pRecords->m_F_ar_Texts(0), QStringList({"20:00", "21:00", ""}));
             Drag(2, 540, 600);
             Drag(2, 1230, 1200);
         },
         "1170-1230/9#0 540-660/0#1 540-570/2#2 -60-30/1#3 1570-6039/3#4", 0},
        {"a week like one day", "8:0-10:0/1",
         [&](At) {
             ClickDay(2);
             vm_objPrompts.ExpectToDestroy("All Week Schedule Will The Same With Selected.", "Warning");
             Key(vm_pGrid, "Ctrl+C");
             for (const int nDay : {0, 1, 3, 4, 5, 6})
                 EXPECT_EQ(Records(nDay).toStdString(), "480-600/1");
         },
         "480-600/1#0", 0},
    };
    for (const auto& stRow : arRows) {
        SCOPED_TRACE(stRow.pszName);
        Load("<C000>" + Day("MON", "1:0-2:0/1") + Day("TUE", stRow.pszBefore) + "</C000>");
        Work([&](At at) {
            const QString sBefore = Document().m_F_s_GetXML();
            stRow.fnAct(at);
            EXPECT_EQ(Records(2).toStdString(), stRow.pszAfter);
            EXPECT_EQ(vm_pRecords->m_F_n_Selected(), stRow.nSelected);
            EXPECT_EQ(at.NotEnabled(g_arForRecord, stRow.nSelected >= 0), QStringList());
            EXPECT_EQ(vm_pGrid->currentRow(), 2);
            const auto arWindows = Bar(2).findChildren<CTimeStateWnd*>();
            EXPECT_EQ(std::count_if(arWindows.begin(), arWindows.end(),
                                    [](const auto* pWnd) { return pWnd->isVisible() && pWnd->vm_nIndex >= 0; }),
                      Bar(2).vm_arState.size());
            const QString sAfter = Document().m_F_s_GetXML();
            for (int n = 0; n < 9 && at.Find("Undo")->isEnabled(); ++n)
                Key(vm_pGrid, "Ctrl+Z");
            EXPECT_EQ(Document().m_F_s_GetXML().toStdString(), sBefore.toStdString());
            for (int n = 0; n < 9 && at.Find("Redo")->isEnabled(); ++n)
                Key(vm_pRecords, "Ctrl+Y");
            EXPECT_EQ(Document().m_F_s_GetXML().toStdString(), sAfter.toStdString());
            EXPECT_EQ(CTimeStateBar::s_nSelectBar, -1);
            Ok();
        });
        EXPECT_EQ(Stored(emDef_Document::Schedule).m_F_s_GetXML(), Document().m_F_s_GetXML());
    }
}

TEST_F(SchedulePage, NothingIsTakenBackWhileTheMouseHoldsABlock)
{
    Load("<C000>" + Day("TUE", "8:0-9:0/2") + "</C000>");
    Work([&](At) {
        const QString sStored = Records(2);
        Drag(2, 510, 600);
        const QString sMoved = Records(2);
        ASSERT_NE(sMoved, sStored);
        const auto HeldAt = [&](int nMinute, const char* pszKey) {
            const QPoint pt = Bar(2).mapTo(vm_pSheet, QPoint(X(nMinute), Bar(2).height() / 2));
            QTest::mousePress(vm_pSheet->windowHandle(), Qt::LeftButton, {}, pt);
            EXPECT_TRUE(CTimeStateBar::s_F_b_Dragging());
            Key(vm_pGrid, pszKey);
            const QString sHeld = Records(2);
            QTest::mouseRelease(vm_pSheet->windowHandle(), Qt::LeftButton, {}, pt);
            Key(vm_pGrid, pszKey);
            return sHeld;
        };
        EXPECT_EQ(HeldAt(600, "Ctrl+Z"), sMoved);
        EXPECT_EQ(Records(2), sStored);
        EXPECT_EQ(HeldAt(510, "Ctrl+Y"), sStored);
        EXPECT_EQ(Records(2), sMoved);
    });
}

TEST_F(SchedulePage, OpensAnyDocumentAndLeavesItAsItIs)
{
    const QString arWeeks[] = {"",
                               "<C000/>",
                               "<C000><SUN SetCount='3'><Set001 SHour='4'/></SUN></C000>",
                               "<C000><MON SetCount='-2'/></C000>",
                               "<C000><TUE SetCount='all'><Set000/></TUE></C000>",
                               "<C000>" + Day("SUN", "10:0-9:0/1 99999999:0-1:0/2 -5:0--6:0/0 0:0-24:0/9") + "</C000>",
                               "<C000><SUN SetCount='2000000000'/></C000>"};
    for (const QString& sWeek : arWeeks) {
        SCOPED_TRACE(sWeek.toStdString());
        Load(sWeek);
        Work([&](At at) {
            const QString sBefore = Document().m_F_s_GetXML();
            for (int nDay = 6; nDay >= 0; --nDay) {
                ClickDay(nDay);
                for (const char* pszKey : {"Right", "Right", "Left", "End"})
                    Key(vm_pGrid, pszKey);
            }
            for (int n = 0; n < std::min(vm_pRecords->rowCount(), 4); ++n)
                ClickRecord(n);
            EXPECT_EQ(Document().m_F_s_GetXML().toStdString(), sBefore.toStdString());
            EXPECT_FALSE(at.Find("Undo")->isEnabled());
        });
    }
    Work([&](At at) { // a closed one
        Nvr().vm_xmlSchedule.m_F_b_Close();
        for (const char* pszButton : {"Add", "Copy", "Delete", "Setting"})
            at.Click(pszButton);
        Drag(1, 100, 200);
        QApplication::processEvents();
        EXPECT_FALSE(Document().m_F_b_IsOpen());
    });
}

// Records that are neither sorted nor free of each other; what each block is dragged to is in its own record alone, and
// one drag is one step back.
TEST_F(SchedulePage, RandomDragsAreWhatTheDocumentHas)
{
    constexpr int Steps = 300;
    const char* const pszDay = "20:0-21:0/1 8:0-10:0/2 9:0-9:30/3 1:0-2:0/4 12:0-14:0/1";
    const QList<int> arRecordOf = {3, 1, 4, 0}; // by block; record 2 has none
    std::mt19937 objRandom(20240229);
    const auto Below = [&](int n) { return static_cast<int>(objRandom() % static_cast<unsigned>(n)); };
    QString sWeek;
    for (const QString& sDay : g_arDays)
        sWeek += Day(sDay, pszDay);
    Load("<C000>" + sWeek + "</C000>");
    Work([&](At at) {
        const QString sBefore = Document().m_F_s_GetXML();
        int nChanges = 0;
        for (int i = 0; i < Steps; ++i) {
            const int nDay = Below(7), nBlock = Below(4);
            const QWidget& objBlock = *Bar(nDay).vm_arState[nBlock].pWnd;
            const QString sOfDay = Records(nDay);
            DragPixels(nDay, objBlock.x() + Below(objBlock.width()), Below(Bar(0).width()));
            nChanges += Records(nDay) != sOfDay;
            const QStringList arRecords = Records(nDay).split(' ');
            const QStringList arBlocks = Blocks(nDay).split(' ');
            ASSERT_EQ(arRecords[2], "540-570/3#2");
            for (int n = 0; n < 4; ++n) {
                ASSERT_EQ(arRecords[arRecordOf[n]].section('/', 0, 0), arBlocks[n]) << i;
                ASSERT_TRUE(arRecords[arRecordOf[n]].endsWith("#" + QString::number(arRecordOf[n])));
            }
        }
        EXPECT_GT(nChanges, Steps / 3);
        for (; at.Find("Undo")->isEnabled(); --nChanges)
            at.Click("Undo");
        EXPECT_EQ(nChanges, 0);
        EXPECT_EQ(Document().m_F_s_GetXML().toStdString(), sBefore.toStdString());
    });
}

TEST_F(SchedulePage, TheDialogKeepsWhatItCannotShow)
{
    Load("<C000>" + Day("SUN", "8:0-10:0/9 12:0-13:0/3") + "</C000>");
    const auto Inputs = [](QWidget* pWidget) {
        QStringList ar;
        auto* const pList = static_cast<QComboBox*>(pWidget);
        for (int i = 0; i < pList->count(); ++i)
            ar << pList->itemText(i) + "=" + pList->itemData(i).toString();
        return ar.join(' ');
    };
    const auto All = [&](int nRecord) {
        QStringList ar;
        for (const QString& sKey : g_arKeys)
            ar << Value(QString("C000/SUN/Set%1").arg(nRecord, 3, 10, QChar('0')), sKey.toLatin1());
        return ar.join(' ');
    };
    Work([&](At at) {
        Nvr().vm_xmlSystemInfo.m_F_b_SetValue("/root/Local", "DINum", 2);
        Nvr().vm_xmlSchedule.m_F_b_SetValue("/root/Main/SCH/C000/SUN/Set000", "Post", 75);
        Nvr().vm_xmlSchedule.m_F_b_SetValue("/root/Main/SCH/C000/SUN/Set001", "DICam", 3); // another's second input
        Nvr().vm_xmlSchedule.m_F_b_SetValue("/root/Main/SCH/C000/SUN/Set001", "DIID", 1);
        vm_objPrompts.ExpectDialog([&](QDialog& dialog) {
            const At set(&dialog);
            EXPECT_EQ(Inputs(set.Find("DI")).toStdString(), "DI_0=0 DI_1=1 Local DI_0=16000 Local DI_1=16001");
            EXPECT_EQ(set.Shown("Pre") + " " + set.Shown("Post"), "03 59");
            EXPECT_EQ(set.NotEnabled({"EventForceRecord"}, true), QStringList());
            set.Click("Mode4");
            EXPECT_EQ(set.NotEnabled({"EventForceRecord", "DI", "DIMode0"}, false), QStringList());
            QApplication::setActiveWindow(&dialog);
            set.Find("Mode4")->setFocus();
            QTest::keyClick(set.Find("Mode4"), Qt::Key_Up); // DI, and the box stays checked
            EXPECT_EQ(set.NotEnabled({"EventForceRecord", "DI", "DIMode1"}, true), QStringList());
            QTest::keyClick(set.Find("DI"), Qt::Key_End);
            set.Type("Pre", "09");
            QTest::keyClick(set.Find("EndTime"), Qt::Key_Home);
            QTest::keyClick(set.Find("EndTime"), Qt::Key_Up); // the hour
            set.Click("OK");
        });
        at.Click("Setting");
        EXPECT_EQ(All(0).toStdString(), "8 0 11 0 9 59 1 3 1 -1 1");
        ClickRecord(1);
        ExpectSetting({});
        at.Click("Setting");
        EXPECT_EQ(All(1).toStdString(), "12 0 13 0 3 3 0 3 1 0 1"); // of this camera now
        Nvr().vm_xmlSchedule.m_F_b_SetValue("/root/Main/SCH/C000/SUN/Set000", "Mode", 9);
        ClickRecord(0);
        ExpectSetting({"StartTime=09:00"});
        at.Click("Setting");
        EXPECT_EQ(All(0).toStdString(), "9 0 11 0 9 59 1 9 1 -1 1");
        EXPECT_EQ(vm_pRecords->m_F_ar_Texts(0)[2], "");
    });
}

} // namespace
