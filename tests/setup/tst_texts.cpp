#include "At.h"
#include "CycleFixture.h"
#include "core/CWndNvrEmbedded.h"
#include "drivers/brands/Drivers.h"
#include "support/TextWalk.h"
#include "toolkit/sheet/CPropertyPage.h"

namespace {

constexpr const char* g_apszFiles[] = {"lang_ENVR_cht.xml", "lang_ENVR_eng.xml"}; // by the language

class SetupTexts : public CycleFixture, public testing::WithParamInterface<int>
{
protected:
    /// The parameter sheet of each brand: of the first camera of its vendor that the recorder knows.
    void WalkParameters(TextWalk& walk)
    {
        for (const stDef_Driver& stDriver : DriverList()) {
            SCOPED_TRACE(stDriver.nVendorID);
            std::unique_ptr<CCamObj_Base> pCamera(CCamObj_Base::s_F_p_CreateCamObj(stDriver.nVendorID, vm_pNvr.get()));
            stDef_CamConnect stConnect;
            stConnect.nVendorID = stDriver.nVendorID;
            stConnect.strPassword = "cam&Era#1";
            stConnect.strIP = g_mapAddresses.at(stDriver.nVendorID);
            stConnect.nHttpPort = stDriver.nVendorID == 4 ? 8080 : stDriver.nVendorID == 9 ? 8081 : 80;
            ASSERT_TRUE(pCamera->m_F_b_SetConnect(stConnect));
            pCamera->m_nCamIndex = 0;
            vm_objPrompts.ExpectDialog([&](QDialog& dialog) {
                CPropertyPage* const pPage = dynamic_cast<CPropertySheet&>(dialog).m_F_ar_Pages()[0];
                EXPECT_TRUE(pPage->isEnabled()) << "the recorder told what the camera can do";
                walk.Window(&dialog, pPage);
            });
            pCamera->m_S_ShowParameter(nullptr);
        }
    }

    /// Of "Cameras.xml", by the vendor.
    static inline const std::map<int, const char*> g_mapAddresses = {
        {0, "192.168.1.21"}, {2, "192.168.1.22"}, {4, "192.168.1.23"},  {6, "192.168.1.24"},
        {7, "169.254.12.7"}, {8, "192.168.1.26"}, {9, "169.254.80.41"}, {10, "192.168.1.28"}};
};

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
        const At system(OpenTab(sheet, 3));
        system.Click("DateTime.Adjust0");
        vm_objPrompts.ExpectDialog([&](QDialog& dialog) { walk.Window(&dialog, &dialog); });
        system.Click("Setting");
    }));
    WalkParameters(walk);
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
