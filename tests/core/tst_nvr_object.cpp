#include <QElapsedTimer>
#include <QPointer>
#include <memory>

#include "support/Files.h"
#include "support/HostFixture.h"
#include "support/Waiting.h"

namespace {

class NvrObject : public HostFixture
{
protected:
    void WriteLanguage(const char* pFile, const char* pText)
    {
        WriteFile(vm_dirConfig.filePath(pFile),
                  QByteArray("<root><Text Key=\"SystemSetting\" Value=\"") + pText + "\"/></root>");
    }
};

TEST_F(NvrObject, FactoryKnowsTwoKinds)
{
    struct Row
    {
        int nType;
        const char* pClass;
    };
    for (const Row& row : {Row{-1, nullptr}, Row{0, "CWndNvrPC"}, Row{1, "CWndNvrEmbedded"}, Row{2, nullptr}}) {
        CNvrHolder byType(CWndNvrBase::s_F_p_CreateNvrObject(row.nType, nullptr, &vm_env));
        SetNode("Type", QString::number(row.nType));
        CNvrHolder byId(CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(NvrID, nullptr, &vm_env));
        EXPECT_STREQ(byType.get() ? byType->metaObject()->className() : nullptr, row.pClass) << row.nType;
        EXPECT_STREQ(byId.get() ? byId->metaObject()->className() : nullptr, row.pClass) << row.nType;
    }
}

TEST_F(NvrObject, UnknownRecordersGiveNull)
{
    EXPECT_EQ(CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(NvrID, nullptr, nullptr), nullptr);
    EXPECT_EQ(CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(NvrID, nullptr, &vm_env), nullptr);
    SetNode("IP", "127.0.0.1"); // a node without Type
    EXPECT_EQ(CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(NvrID, nullptr, &vm_env), nullptr);
    vm_env.m_F_p_GetMemSysXML()->m_F_b_SetValue("/root/NVR/N1000", "Type", 0); // a number of four digits
    EXPECT_NE(CNvrHolder(CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(1000, nullptr, &vm_env)).get(), nullptr);
}

TEST_F(NvrObject, ReleaseClearsThePointer)
{
    CWndNvrBase* pNvr = CWndNvrBase::s_F_p_CreateNvrObject(1, nullptr, &vm_env);
    const QPointer<CWndNvrBase> watch(pNvr);
    CWndNvrBase::s_S_ReleaseNvrObject(&pNvr);
    EXPECT_EQ(pNvr, nullptr);
    EXPECT_TRUE(watch.isNull());
    CWndNvrBase::s_S_ReleaseNvrObject(&pNvr);
    CWndNvrBase::s_S_ReleaseNvrObject(nullptr);
}

TEST_F(NvrObject, OutlivesItsHostWindow)
{
    auto pWindow = std::make_unique<QWidget>();
    CNvrHolder nvr(CWndNvrBase::s_F_p_CreateNvrObject(1, pWindow.get(), &vm_env));
    EXPECT_EQ(nvr->parentWidget(), nullptr) << "the constructor makes no window";
    ASSERT_EQ(nvr->m_F_n_Init(Init()), 1);
    EXPECT_EQ(nvr->parentWidget(), pWindow.get());
    pWindow->show();
    EXPECT_FALSE(nvr->isVisible());
    nvr->setProperty("id", 5);
    ASSERT_EQ(nvr->m_F_n_Init(Init()), 1);
    EXPECT_EQ(nvr->property("id"), 5) << "its window is made once";
    const QPointer<CWndNvrBase> watch(nvr.get());
    pWindow.reset();
    ASSERT_FALSE(watch.isNull()) << "the host releases the object, not its window";
    EXPECT_EQ(nvr->m_F_n_Init(Init()), 1);
}

TEST_F(NvrObject, InitChecksTheRecord)
{
    struct Row
    {
        const char* pWhat;
        void (*change)(stDef_NvrInit&);
        int nResult;
    };
    const Row arRows[] = {
        {"as it is", [](stDef_NvrInit&) {}, 1},
        {"highest number", [](stDef_NvrInit& st) { st.nNvrID = 1000; }, 1},
        {"number too high", [](stDef_NvrInit& st) { st.nNvrID = 1001; }, 0},
        {"no number", [](stDef_NvrInit& st) { st.nNvrID = -1; }, 1},
        {"no address", [](stDef_NvrInit& st) { st.sIP.clear(); }, 0},
        {"port 0", [](stDef_NvrInit& st) { st.nHttpPort = 0; }, 1},
        {"negative port", [](stDef_NvrInit& st) { st.nHttpPort = -1; }, 0},
        {"no account", [](stDef_NvrInit& st) { st.sUID.clear(); }, 0},
        {"no password", [](stDef_NvrInit& st) { st.sPWD.clear(); }, 1},
    };
    for (const Row& row : arRows) {
        CNvrHolder nvr(CWndNvrBase::s_F_p_CreateNvrObject(0, nullptr, &vm_env));
        stDef_NvrInit stInit = Init();
        stInit.nDataPort = 4711;
        row.change(stInit);
        EXPECT_EQ(nvr->m_F_n_Init(stInit), row.nResult) << row.pWhat;
        EXPECT_EQ(nvr->vm_stInit.nDataPort, row.nResult ? 4711 : 8866) << row.pWhat << ": taken over only if it passes";
    }
}

TEST_F(NvrObject, LanguageFollowsTheHost)
{
    WriteLanguage("lang_ENVR_cht.xml", "\xe7\xb3\xbb\xe7\xb5\xb1\xe8\xa8\xad\xe5\xae\x9a");
    WriteLanguage("lang_ENVR_eng.xml", "Settings of the System");
    ASSERT_TRUE(vm_env.m_F_b_SetLangFolder(vm_dirConfig.path()));

    struct Row
    {
        int nType, nLanguage, nUser;
        int nResult;
        QString sText;
    };
    // Types: 1 embedded, 0 PC. The file is loaded also when the checks of the record fail (nUser 0).
    const Row arRows[] = {
        {1, 0, 1, 1, QString::fromUtf8("\xe7\xb3\xbb\xe7\xb5\xb1\xe8\xa8\xad\xe5\xae\x9a")},
        {1, 1, 1, 1, "Settings of the System"},
        {1, 1, 0, 1, "Settings of the System"},
        {1, 2, 1, -1, "untouched"},
        {1, 8, 1, -1, "untouched"},
        {1, -1, 1, -1, "untouched"},
        {0, 1, 1, -1, "untouched"},
    };
    for (const Row& row : arRows) {
        vm_env.vm_nLanguage = row.nLanguage;
        CNvrHolder nvr(CWndNvrBase::s_F_p_CreateNvrObject(row.nType, nullptr, &vm_env));
        stDef_NvrInit stInit = Init();
        if (!row.nUser)
            stInit.sUID.clear();
        EXPECT_EQ(nvr->m_F_n_Init(stInit), row.nUser);
        QString sText = "untouched";
        EXPECT_EQ(nvr->m_F_n_LoadString("SystemSetting", sText, "System Setting"), row.nResult) << row.nLanguage;
        EXPECT_EQ(sText, row.sText) << row.nLanguage;
        if (row.nResult < 0)
            continue;
        nvr->m_F_n_LoadString("NoSuchKey", sText, "default");
        EXPECT_EQ(sText, "default");
    }
}

} // namespace
