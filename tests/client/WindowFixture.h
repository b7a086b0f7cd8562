#pragma once

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest/QTest>
#include <gtest/gtest.h>
#include <memory>

#include "CVirtualNvr.h"
#include "RecorderCard.h"
#include "live/CLiveGrid.h"
#include "support/Waiting.h"
#include "window/CMainWindow.h"

/// The host's window over a folder of its own, and a virtual recorder that its list can have.
class WindowFixture : public testing::Test
{
protected:
    static constexpr int LiveMs = 15000;

    void SetUp() override
    {
        ASSERT_TRUE(vm_env.m_F_b_Init(vm_dir.path()));
        CWinAES_CMS::s_S_SetKeyFolder(vm_dir.path());
    }

    void Import(const QString& sName, int nHttpPort, int nRtspPort, int nChannels,
                const char* pszPassword = "Fl33t!ink")
    {
        const QString sCard = vm_dir.filePath("card.xml");
        WriteCard(sCard, sName, nHttpPort, nRtspPort, nChannels, pszPassword);
        ASSERT_EQ(vm_store.m_F_o_Import(sCard).sError, QString());
    }

    void ImportRecorder(const char* pszName, int nChannels, const char* pszPassword = "Fl33t!ink")
    {
        Import(pszName, vm_nvr.m_F_n_HttpPort(), vm_nvr.m_F_n_RtspPort(), nChannels, pszPassword);
    }

    void StartRecorder(int nChannels = 4, const char* pszPassword = "Fl33t!ink")
    {
        std::string sError;
        ASSERT_TRUE(vm_nvr.m_F_b_Start(WithChannels(nChannels), sError)) << sError;
        ImportRecorder("Lab", nChannels, pszPassword);
    }

    void OpenWindow()
    {
        vm_pWindow = std::make_unique<CMainWindow>(&vm_env, &vm_store);
        vm_pWindow->m_S_SetPictureFolder(vm_dir.filePath("pictures"));
        vm_pWindow->resize(1280, 800);
        vm_pWindow->show();
        QApplication::setActiveWindow(vm_pWindow.get());
    }

    CLiveGrid& Grid() const { return *vm_pWindow->m_F_p_Grid(); }
    CLiveCell& Cell(int i) const { return *Grid().m_F_ar_Cells()[i]; }
    template <class TWidget>
    TWidget& Find(const char* pszName) const
    {
        return *vm_pWindow->findChild<TWidget*>(pszName);
    }

    void Key(Qt::Key nKey, Qt::KeyboardModifiers nModifiers = {})
    {
        QTest::keyClick(vm_pWindow.get(), nKey, nModifiers);
    }

    bool Comes(int nCell, emDef_LiveState nState) const
    {
        return WaitUntil([&] { return Cell(nCell).m_F_n_State() == nState; }, LiveMs);
    }

    QTemporaryDir vm_dir;
    CEnvObj& vm_env = CAppEnv::s_objEnv; // where texts come from
    CRecorderStore vm_store{&vm_env};
    mutable CVirtualNvr vm_nvr;
    std::unique_ptr<CMainWindow> vm_pWindow;
};
