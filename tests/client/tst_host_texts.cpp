#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QMenuBar>
#include <QTreeWidget>

#include "WindowFixture.h"
#include "recorders/CRecorderTree.h"
#include "support/TextWalk.h"
#include "toolkit/user/CUserSide.h"
#include "window/CHostLanguage.h"

namespace {

constexpr const char* g_apszFiles[] = {"lang_HOST_cht.xml", "lang_HOST_eng.xml"}; // by the language
constexpr const char* g_apszLibraryFiles[] = {"lang_ENVR_cht.xml", "lang_ENVR_eng.xml"};

/// A user who looks at each dialog and message box, and then leaves it as by Esc.
class LookingUser : public CUserSide
{
public:
    explicit LookingUser(TextWalk& walk) : vm_walk(walk) { s_S_Replace(this); }
    ~LookingUser() override { s_S_Replace(nullptr); }
    LookingUser(const LookingUser&) = delete;
    LookingUser& operator=(const LookingUser&) = delete;

    int m_F_n_RunModal(QDialog& dialog) override
    {
        QTimer::singleShot(0, &dialog, [&] {
            for (QLineEdit* const pEdit : dialog.findChildren<QLineEdit*>("IP"))
                pEdit->setText("no address"); // brings the fault below it
            vm_walk.Window(&dialog, &dialog);
            vm_arSeen.append(dialog.objectName());
            dialog.reject();
        });
        return dialog.exec();
    }

    QStringList vm_arSeen;

private:
    TextWalk& vm_walk;
};

class HostTexts : public WindowFixture, public testing::WithParamInterface<int>
{
protected:
    void SetUp() override
    {
        WindowFixture::SetUp();
        ASSERT_TRUE(vm_env.m_F_b_SetLangFolder(LANG_FOLDER));
        vm_walk.Know({"admin", "Entrance (1) \u2013 Lab", "Entrance\uff081\uff09 \u2013 Lab"});
    }
    /// In the other language first: what is open follows.
    void OpenInLanguage()
    {
        OpenWindow();
        vm_pWindow->m_S_SetLanguage(1 - GetParam());
        QApplication::processEvents();
        vm_pWindow->m_S_SetLanguage(GetParam());
    }
    void Walk() { vm_walk.Window(vm_pWindow.get(), vm_pWindow.get()); }

    TextWalk vm_walk{g_apszFiles[GetParam()], g_apszLibraryFiles[GetParam()]};
};

TEST_P(HostTexts, AnEmptyWindowIsWhole)
{
    OpenInLanguage();
    Walk();
}

TEST_P(HostTexts, WindowDocksDialogsAndMenusAreWhole)
{
    StartRecorder(2);
    OpenInLanguage();
    ASSERT_TRUE(Comes(0, emDef_LiveState::Live));
    for (const char* const pszDock : {"PtzPanel", "Documents"})
        vm_pWindow->findChild<QWidget*>(pszDock)->show();
    vm_pWindow->m_F_p_Tree()->expandAll();
    vm_pWindow->m_S_Exchange();
    ASSERT_TRUE(WaitUntil([&] { return Find<QComboBox>("PtzPresets").count() > 0; }));
    Walk();
    vm_walk.Keys(*vm_pWindow);
    vm_walk.Menu(*vm_pWindow->menuBar());
    vm_walk.NextMenu();
    Find<QAction>("NvrMenu").trigger();
    LookingUser user(vm_walk);
    for (const char* const pszAction :
         {"AddRecorder", "EditRecorder", "RemoveRecorder", "Exchange", "Shortcuts", "About"})
        Find<QAction>(pszAction).trigger();
    EXPECT_EQ(user.vm_arSeen,
              (QStringList{"RecorderDialog", "RecorderDialog", "Prompt", "Prompt", "ShortcutDialog", "Prompt"}));
    EXPECT_GT(vm_walk.vm_nTexts, 150);
}

INSTANTIATE_TEST_SUITE_P(BothLanguages, HostTexts, testing::Values(0, 1));

TEST(HostLanguageFiles, HaveTheSameKeysAndNoneThatNobodyAsksFor)
{
    CheckLanguageFiles(g_apszFiles[0], g_apszFiles[1], {HOST_PROGRAM, LIBRARY_FILE});
    EXPECT_EQ(CHostLanguage::s_F_ar_Faulty(LANG_FOLDER), QStringList());
    EXPECT_FALSE(CHostLanguage(&CAppEnv::s_objEnv).m_F_b_Set(7));
}

} // namespace
