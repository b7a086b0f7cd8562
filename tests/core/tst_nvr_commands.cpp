#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QMenu>
#include <QTimer>
#include <QtTest/QTest>

#include "support/HostFixture.h"
#include "support/LogReading.h"
#include "support/PromptQueue.h"
#include "support/Table.h"

namespace {

class NvrCommands : public HostFixture
{
protected:
    /// Also anew, as another kind.
    void Start(bool bPC)
    {
        vm_pNvr.reset();
        vm_nvr.m_S_Stop();
        StartRecorder({.bPC = bPC, .bStreams = false});
        vm_nvr.m_F_o_Log().m_S_Clear();
        vm_pNvr.reset(CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(NvrID, nullptr, &vm_env));
        ASSERT_EQ(Nvr().m_F_n_Init(Init()), 1);
        Nvr().m_S_InitHTTP();
    }

    CWndNvrBase& Nvr() { return *vm_pNvr; }

    std::vector<std::string> Requests() { return TakeAnswered(vm_nvr.m_F_o_Log()); }

    CNvrHolder vm_pNvr;
};

using Targets = std::vector<std::string>;

TEST_F(NvrCommands, GoOutToTheCharacter)
{
    Start(false);
    for (const stDef_TableRow& row : ReadTable("ptz_requests.txt", 5)) {
        Nvr().m_S_ExecPTZCmd(row.Number(0), row.Number(1), row.Number(2), row.Number(3));
        EXPECT_EQ(Requests(), row[4].empty() ? Targets() : Targets{row[4]}) << row.sWhere;
    }
    Nvr().m_S_RemoteUICtrl(1, -4, 2, "0,1;2:x y");
    EXPECT_EQ(Requests(),
              Targets{"/cgi-bin/uictrl.cgi?action=urlctrl&fullscreen=1&quad=-4&style=2&camarray=0,1;2:x%20y"});
    Nvr().m_S_ReleaseHTTP();
    Nvr().m_S_ExecPTZCmd(1, 0, 1, 1);
    EXPECT_EQ(Requests(), Targets()) << "without a target nothing is sent";
}

TEST_F(NvrCommands, QueriesOfBothKinds)
{
    for (const bool bPC : {false, true}) {
        SCOPED_TRACE(bPC ? "PC" : "embedded");
        Start(bPC);
        QStringList arList = {"old"};
        Nvr().m_S_GetPTZData(9, 1, &arList);
        EXPECT_EQ(arList, QStringList({"Night round", "Perimeter"}));
        Nvr().m_S_GetPTZData(22, 1, &arList);
        EXPECT_EQ(arList, QStringList({"Gate", "Car park", "Loading dock & ramp", "Dock door 3", "Containers"}));
        EXPECT_EQ(Requests(), Targets({"/cgi-bin/param.cgi?action=list&camera=1&group=tourset",
                                       "/cgi-bin/param.cgi?action=list&camera=1&group=preset"}));
        for (const auto& [nKind, nCamera] : {std::pair{10, 1}, {22, 99}, {9, -1}}) {
            arList = {"old"};
            Nvr().m_S_GetPTZData(nKind, nCamera, &arList);
            EXPECT_EQ(arList, QStringList()) << nKind;
        }
        Nvr().m_S_GetLoginInfo(&arList);
        ASSERT_EQ(arList.size(), 2);
        EXPECT_EQ(arList[0].size(), 4) << "a character a channel";
        EXPECT_GT(arList[1].split(',').size(), 13);
        ASSERT_TRUE(vm_nvr.m_F_o_Faults().m_F_b_Set("*", {"status", 500}));
        Nvr().m_S_GetLoginInfo(&arList);
        EXPECT_EQ(arList, QStringList({"", ""}));
        vm_nvr.m_F_o_Faults().m_S_Clear();
        vm_nvr.m_S_Stop();
        arList = {"old"};
        Nvr().m_S_GetLoginInfo(&arList);
        EXPECT_EQ(arList, QStringList({"", ""})) << "nobody answers";
        Nvr().m_S_GetPTZData(22, 1, &arList);
        EXPECT_EQ(arList, QStringList());
    }
}

TEST_F(NvrCommands, WaitTwoSecondsForAnAnswerAndNoLonger)
{
    Start(false);
    ASSERT_TRUE(vm_nvr.m_F_o_Faults().m_F_b_Set("ptz.cgi", {"silence"}));
    QElapsedTimer timer;
    timer.start();
    Nvr().m_S_ExecPTZCmd(1, 2, 1, 0);
    EXPECT_GE(timer.elapsed(), 1990);
    EXPECT_LT(timer.elapsed(), 4000);
    EXPECT_EQ(Nvr().m_F_n_LastCommand(), CHTTP::Result_TimedOut);
    vm_nvr.m_F_o_Faults().m_S_Clear();
    Nvr().m_S_ExecPTZCmd(nsCMS::PtzCommand_Up, 2, 1, 0);
    EXPECT_GE(Nvr().m_F_n_LastCommand(), 0);
}

TEST_F(NvrCommands, CameraSynchronizationStopsAtTheFirstFailure)
{
    const struct
    {
        bool bPC;
        Targets arRequests;
        std::array<bool, 3> arOpen; ///< of system information, login information, cameras
    } arRows[] = {
        {false,
         {"/cgi-bin/param.cgi?action=systeminfo", "/logininfo.cgi", "/cgi-bin/SyncSetting.cgi?action=CameraXML"},
         {true, true, true}},
        {true, {"/cgi-bin/SystemStatus.cgi", "/cgi-bin/CMS.cgi?action=CamXml"}, {true, false, true}},
    };
    for (const auto& row : arRows) {
        Start(row.bPC);
        for (std::size_t nFails = 0; nFails <= row.arRequests.size(); ++nFails) {
            vm_nvr.m_F_o_Faults().m_S_Clear();
            if (nFails < row.arRequests.size())
                ASSERT_TRUE(vm_nvr.m_F_o_Faults().m_F_b_Set(row.arRequests[nFails], {"status", 500}));
            Requests();
            CXmlObj axml[3];
            const bool bAll = nFails == row.arRequests.size();
            EXPECT_EQ(Nvr().m_F_n_CameraSynchronization(&axml[0], &axml[1], &axml[2], 5000), bAll);
            const auto nSent = std::min(nFails + 1, row.arRequests.size());
            EXPECT_EQ(Requests(), Targets(row.arRequests.begin(), row.arRequests.begin() + long(nSent)));
            for (std::size_t i = 0; i < 3 && bAll; ++i)
                EXPECT_EQ(axml[i].m_F_b_IsOpen(), row.arOpen[i]) << i;
        }
        vm_nvr.m_F_o_Faults().m_S_Clear();
    }
}

TEST_F(NvrCommands, CachesAreKeptByKindAndNumber)
{
    for (const bool bPC : {false, true}) {
        Start(bPC);
        const QString sFolder = vm_dirConfig.path() + (bPC ? "/PC/N007" : "/Embedded/N007");
        CXmlObj xml;
        Nvr().m_S_GetXmlNVR(&xml);
        EXPECT_FALSE(xml.m_F_b_IsOpen());
        CXmlObj xmlNvr, xmlCamera;
        ASSERT_TRUE(xmlNvr.m_F_b_LoadXML("<root a='nvr'/>") && xmlCamera.m_F_b_LoadXML("<root a='camera'/>"));
        Nvr().m_S_SaveXmlNVR(&xmlNvr);
        Nvr().m_S_SaveXmlCamera(&xmlCamera);
        EXPECT_TRUE(QFile::exists(sFolder + "/NVR.xml") && QFile::exists(sFolder + "/Camera.xml"));
        Nvr().m_S_GetXmlNVR(&xml);
        EXPECT_EQ(xml.m_F_s_GetXML(), xmlNvr.m_F_s_GetXML());
        Nvr().m_S_GetXmlCamera(&xml);
        EXPECT_EQ(xml.m_F_s_GetXML(), xmlCamera.m_F_s_GetXML());
    }
}

TEST_F(NvrCommands, TheMenuHasThreeItemsInTheirLanguage)
{
    const auto Show = [&] {
        QStringList arTexts;
        QTimer::singleShot(20, [&] {
            auto* const pMenu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_TRUE(pMenu);
            for (const QAction* const pAction : pMenu->actions())
                arTexts.append(QString("%1 %2").arg(pAction->data().toInt()).arg(pAction->text()));
            QTest::keyClick(pMenu, Qt::Key_Escape);
        });
        Nvr().m_S_ShowMenu();
        return arTexts;
    };
    const QStringList arEnglish = {"2000 System Setting", "2001 System Management", "2002 Event Setting"};
    for (const bool bPC : {false, true}) {
        ASSERT_TRUE(vm_env.m_F_b_SetLangFolder(LANG_FOLDER));
        vm_env.vm_nLanguage = 0;
        Start(bPC);
        EXPECT_EQ(Show().first(), bPC ? arEnglish.first() : QString::fromUtf8("2000 系統設定"));
        vm_env.vm_nLanguage = 6; // none
        ASSERT_EQ(Nvr().m_F_n_Init(Init()), 1);
        EXPECT_EQ(Show(), arEnglish);
        Nvr().m_F_b_InitLanguageXml(QString(LANG_FOLDER "/lang_ENVR_cht.xml"));
        EXPECT_EQ(Show().last(), QString::fromUtf8("2002 事件設定"));
    }
}

TEST_F(NvrCommands, AMenuItemLeadsToItsHandler)
{
    for (const bool bPC : {false, true}) {
        ASSERT_TRUE(vm_env.m_F_b_SetLangFolder(LANG_FOLDER));
        vm_env.vm_nLanguage = 1;
        Start(bPC);
        ASSERT_TRUE(vm_nvr.m_F_o_Faults().m_F_b_Set("*", {"status", 500}));
        for (int nItem = 0; nItem < 3; ++nItem) {
            SCOPED_TRACE(nItem);
            // Settings are fetched first, in vain; the other items lead to nothing that shows.
            PromptQueue objPrompts;
            const bool bFetches = !bPC && nItem == 0;
            if (bFetches)
                objPrompts.Expect("Get Setting File Faild, Please Try Again.", "Error");
            QTimer::singleShot(20, [nItem] {
                QWidget* const pMenu = QApplication::activePopupWidget();
                ASSERT_TRUE(pMenu);
                for (int n = 0; n <= nItem; ++n)
                    QTest::keyClick(pMenu, Qt::Key_Down);
                QTest::keyClick(pMenu, Qt::Key_Return);
            });
            Nvr().m_S_ShowMenu();
            EXPECT_EQ(Requests().size(), bFetches ? 5u : 0u);
            EXPECT_EQ(Nvr().m_F_ar_MenuItems()[nItem].bWorks, bFetches);
        }
        vm_nvr.m_F_o_Faults().m_S_Clear();
    }
}

} // namespace
