#include "At.h"
#include "CycleFixture.h"
#include "core/CWndNvrEmbedded.h"
#include "support/TextWalk.h"
#include "toolkit/sheet/CPropertyPage.h"

namespace {

constexpr const char* g_apszFiles[] = {"lang_ENVR_cht.xml", "lang_ENVR_eng.xml"}; // by the language

class SetupTexts : public CycleFixture, public testing::WithParamInterface<int>
{};

TEST_P(SetupTexts, AllPagesDialogsAndMenusAreWhole)
{
    std::string sError;
    ASSERT_TRUE(vm_nvr.m_F_o_Documents().m_F_b_Put(
        emDef_Document::Camera, "<root><Camera count='2'><Cam000 Name='A'/><Cam001 Name='B'/></Camera></root>",
        sError));
    vm_env.vm_nLanguage = GetParam();
    MakeNvr();
    TextWalk walk(g_apszFiles[GetParam()]);
    ASSERT_TRUE(RunCycle([&](CPropertySheet& sheet) {
        const auto nTabs = static_cast<int>(sheet.m_F_ar_Pages().size());
        for (int nTab = 0; nTab < nTabs; ++nTab)
            walk.Window(&sheet, OpenTab(sheet, nTab));
        const At camera(OpenTab(sheet, 0));
        walk.NextMenu();
        camera.Click("QuickSetup");
        for (const char* pszButton : {"Advanced", "AutoSettingButton"}) {
            vm_objPrompts.ExpectDialog([&](QDialog& dialog) { walk.Window(&dialog, &dialog); });
            camera.Click(pszButton);
        }
        const At schedule(OpenTab(sheet, 1));
        vm_objPrompts.ExpectDialog([&](QDialog& dialog) { walk.Window(&dialog, &dialog); });
        schedule.Click("Setting");
    }));
    walk.NextMenu();
    Nvr().m_S_ShowMenu();
    EXPECT_GT(walk.vm_nTexts, 150);
}

INSTANTIATE_TEST_SUITE_P(BothLanguages, SetupTexts, testing::Values(0, 1));

TEST(LanguageFiles, HaveTheSameKeysAndNoneThatNobodyAsksFor)
{
    CheckLanguageFiles(g_apszFiles[0], g_apszFiles[1], {LIBRARY_FILE});
}

} // namespace
