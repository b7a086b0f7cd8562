#pragma once

#include <QPushButton>
#include <QTabWidget>
#include <QtTest/QTest>
#include <string>
#include <vector>

#include "cgi/CDocumentStore.h"
#include "setup/CDlgSetupPageSystemSetting.h"
#include "support/HostFixture.h"
#include "support/LogReading.h"
#include "support/PromptQueue.h"

/// A connected recorder, whose setting cycle runs with a test at the sheet in the user's place.
class CycleFixture : public HostFixture
{
protected:
    using AtSheet = std::function<void(CPropertySheet&)>;

    void SetUp() override
    {
        HostFixture::SetUp();
        ASSERT_TRUE(vm_env.m_F_b_SetLangFolder(LANG_FOLDER));
        SwitchOn();
    }

    /// Starts the recorder, also anew with what it had.
    void SwitchOn()
    {
        vm_nvr.m_S_Stop();
        StartRecorder({.nChannels = vm_nChannels,
                       .sStateFolder = vm_dirConfig.filePath("recorder").toStdString(),
                       .bStreams = false});
        MakeNvr();
    }

    void MakeNvr()
    {
        vm_pNvr.reset();
        vm_pNvr.reset(CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(NvrID, nullptr, &vm_env));
        ASSERT_EQ(vm_pNvr->m_F_n_Init(Init()), 1);
    }

    CWndNvrEmbedded& Nvr() { return *static_cast<CWndNvrEmbedded*>(vm_pNvr.get()); }

    /// Runs the cycle. `atSheet` is called once the sheet stands, and ends it; a sheet that it leaves open is
    /// cancelled. False if no sheet came.
    bool RunCycle(const AtSheet& atSheet)
    {
        bool bCame = false;
        vm_objPrompts.ExpectDialog([&](QDialog& dialog) {
            bCame = true;
            atSheet(dynamic_cast<CPropertySheet&>(dialog));
        });
        Nvr().OnMenuSystemSetting();
        return bCame;
    }

    static void Press(CPropertySheet& sheet, const char* pszButton)
    {
        auto* const pButton = sheet.findChild<QPushButton*>(pszButton);
        ASSERT_TRUE(pButton) << pszButton;
        QTest::mouseClick(pButton, Qt::LeftButton);
    }

    /// Shows a tab and gives its page.
    static CPropertyPage* OpenTab(CPropertySheet& sheet, int nTab)
    {
        sheet.findChild<QTabWidget*>("Tabs")->setCurrentIndex(nTab);
        return sheet.m_F_ar_Pages()[nTab];
    }

    /// What the recorder has, without the envelope, as a document.
    CXmlObj Stored(emDef_Document nDocument) { return Parsed(vm_nvr.m_F_o_Documents().m_F_s_Get(nDocument)); }

    static CXmlObj Parsed(const std::string& sText)
    {
        CXmlObj xml;
        const QString sAll = QString::fromStdString(sText);
        const auto nBegin = sAll.indexOf("<root");
        EXPECT_TRUE(xml.m_F_b_LoadXML(sAll.mid(nBegin, sAll.indexOf("</root>") + 7 - nBegin)));
        return xml;
    }

    /// The documents that were posted since the last call, in their order.
    std::vector<std::string> Posts() { return TakeAnswered(vm_nvr.m_F_o_Log(), "Update"); }

    /// Announces the message that comes when the sheet is left by OK.
    void ExpectWaiting()
    {
        vm_objPrompts.Expect("Upload Setting Now. Please Waiting About 60 Seconds.", "Information");
    }

    int vm_nChannels = 4;
    PromptQueue vm_objPrompts;
    CNvrHolder vm_pNvr;
};
