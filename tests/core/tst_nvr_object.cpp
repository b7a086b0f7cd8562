#include <QElapsedTimer>
#include <QPointer>
#include <memory>

#include "support/Files.h"
#include "support/HostFixture.h"
#include "support/Table.h"

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
    const char* const arClasses[] = {nullptr, "CWndNvrPC", "CWndNvrEmbedded", nullptr};
    for (int nType = -1; nType <= 2; ++nType) {
        const char* const pszClass = arClasses[nType + 1];
        CNvrHolder byType(CWndNvrBase::s_F_p_CreateNvrObject(nType, nullptr, &vm_env));
        SetNode("Type", QString::number(nType));
        CNvrHolder byId(CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(NvrID, nullptr, &vm_env));
        EXPECT_STREQ(byType.get() ? byType->metaObject()->className() : nullptr, pszClass) << nType;
        EXPECT_STREQ(byId.get() ? byId->metaObject()->className() : nullptr, pszClass) << nType;
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

    for (const stDef_TableRow& row : ReadTable("languages.txt", 4)) {
        SCOPED_TRACE(row.sWhere);
        const bool bText = !row[3].empty();
        vm_env.vm_nLanguage = row.Number(1);
        CNvrHolder nvr(CWndNvrBase::s_F_p_CreateNvrObject(row.Number(0), nullptr, &vm_env));
        stDef_NvrInit stInit = Init();
        if (!row.Is(2))
            stInit.sUID.clear();
        EXPECT_EQ(nvr->m_F_n_Init(stInit), row.Is(2));
        QString sText = "untouched";
        EXPECT_EQ(nvr->m_F_n_LoadString("SystemSetting", sText, "System Setting"), bText ? 1 : -1);
        EXPECT_EQ(sText.toStdString(), bText ? row[3] : "untouched");
        nvr->m_F_n_LoadString("NoSuchKey", sText = "untouched", "default");
        EXPECT_EQ(sText, bText ? "default" : "untouched");
    }
}

} // namespace
