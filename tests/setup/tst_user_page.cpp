#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <random>

#include "At.h"
#include "CycleFixture.h"
#include "core/CWndNvrEmbedded.h"
#include "support/Table.h"
#include "toolkit/controls/CItemList.h"
#include "toolkit/sheet/CPropertyPage.h"

namespace {

constexpr int UserTab = 4;
constexpr const char* FieldKeys[] = {"UserName", "Password", "Description"};

class UserPage : public CycleFixture
{
protected:
    using Account = QMap<QString, QString>; ///< by the key

    static CItemList& List(At at) { return *static_cast<CItemList*>(at.Find("Accounts")); }
    static bool IsOn(At at, const QString& sBox) { return static_cast<QCheckBox*>(at.Find(sBox))->isChecked(); }
    static void ClickRow(At at, int nRow)
    {
        CItemList& list = List(at);
        list.scrollToItem(list.item(nRow, 0));
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(list.item(nRow, 0)).center());
    }
    /// Commands of user_actions.txt.
    static void Do(At at, const QStringList& arCommands)
    {
        for (const QString& sCommand : arCommands) {
            bool bRow = false;
            const int nRow = sCommand.toInt(&bRow);
            if (bRow)
                ClickRow(at, nRow);
            else if (sCommand.contains('='))
                at.Type(sCommand.section('=', 0, 0), sCommand.section('=', 1));
            else if (sCommand.endsWith('+'))
                QTest::keyClick(at.Find(sCommand.chopped(1)), Qt::Key_Down);
            else
                at.Click(sCommand);
        }
    }
    QString AccountNode() { return Nvr().vm_xmlSystem.m_F_s_GetNods("/root/account"); }
    /// "2 <USER000/><USER001/>" as a node; the count is left out where it is "-".
    static QString NodeOf(const std::string& sText)
    {
        const QString s = QString::fromStdString(sText), sCount = s.section(' ', 0, 0), sNodes = s.section(' ', 1);
        const QString sHead = sCount == "-" ? "<account" : "<account count=\"" + sCount + '"';
        return sNodes.isEmpty() ? sHead + "/>" : sHead + '>' + sNodes + "</account>";
    }
    static QString Squeezed(const QString& s) { return s.simplified().replace("> <", "><").replace(" />", "/>"); }

    /// The accounts as the document has them, and as the list shows them.
    std::vector<Account> Accounts(At at)
    {
        std::vector<Account> arAccounts;
        const CXmlObj& xml = Nvr().vm_xmlSystem;
        const int nCount = xml.m_F_n_GetValueInt("/root/account", "count", -1);
        EXPECT_EQ(List(at).rowCount(), nCount + 1);
        for (int i = 0; i < nCount; ++i) {
            Account stAccount;
            for (const char* pKey : {"UserName", "Password", "Description", "Group", "PreviewCam", "PlaybackCam",
                                     "Capability", "LastLogin"})
                stAccount[pKey] = xml.m_F_s_Value(QString::asprintf("/root/account/USER%03d", i), pKey);
            EXPECT_EQ(List(at).m_F_ar_Texts(i),
                      QStringList({stAccount["UserName"], stAccount["Group"] == "0" ? "Admin" : "User",
                                   stAccount["Description"]}));
            EXPECT_EQ(List(at).m_F_n_Data(i), i);
            arAccounts.push_back(stAccount);
        }
        EXPECT_EQ(List(at).m_F_n_Data(nCount), nCount);
        return arAccounts;
    }
};

TEST_F(UserPage, EnablesWhatTheChosenRowAllows)
{
    EXPECT_TRUE(RunCycle([&](CPropertySheet& sheet) {
        const At at(OpenTab(sheet, UserTab));
        sheet.show();
        QApplication::processEvents();
        EXPECT_EQ(List(at).m_F_n_Selected(), 0);
        for (const stDef_TableRow& row : ReadTable("user_states.txt", 4)) {
            SCOPED_TRACE(row.sWhere);
            if (row[0] == "beside")
                QTest::mouseClick(List(at).viewport(), Qt::LeftButton, {}, {5, List(at).viewport()->height() - 5});
            else if (row[0] == "closed") {
                Nvr().vm_xmlSystem.m_F_b_Close();
                at.Click("Modify"); // says nothing, and chooses the row again
            } else
                ClickRow(at, row.Number(0));
            const auto Names = [&](std::size_t n) {
                return QString::fromStdString(row[n]).split(' ', Qt::SkipEmptyParts);
            };
            EXPECT_EQ(at.NotEnabled(Names(1), true), QStringList());
            EXPECT_EQ(at.NotEnabled(Names(2), false), QStringList());
            for (const QCheckBox* pBox : sheet.m_F_ar_Pages()[UserTab]->findChildren<QCheckBox*>())
                EXPECT_EQ(pBox->isChecked(), Names(3).contains(pBox->objectName())) << pBox->objectName().toStdString();
            if (Names(3).isEmpty())
                EXPECT_EQ(at.Shown("UserName") + at.Shown("Password") + at.Shown("ConfirmPassword"), "");
        }
    }));
}

TEST_F(UserPage, ActionsWriteTheAccountNodeAsToldOrNotAtAll)
{
    for (const stDef_TableRow& row : ReadTable("user_actions.txt", 4)) {
        SCOPED_TRACE(row.sWhere);
        std::string sError;
        ASSERT_TRUE(vm_nvr.m_F_o_Documents().m_F_b_Put(emDef_Document::System,
                                                       "<root>" + NodeOf(row[0]).toStdString() + "</root>", sError));
        EXPECT_TRUE(RunCycle([&](CPropertySheet& sheet) {
            const At at(OpenTab(sheet, UserTab));
            sheet.show(); // a hidden one has no focus to tell of
            QStringList arCommands = QString::fromStdString(row[1]).split(';');
            const QString sLast = arCommands.takeLast();
            Do(at, arCommands);
            const int nRow = List(at).m_F_n_Selected();
            const QString sName = at.Shown("UserName");
            if (!row[2].empty())
                vm_objPrompts.Expect(row[2].c_str(), "Error");
            Do(at, {sLast});
            EXPECT_EQ(Squeezed(AccountNode()), NodeOf(row[3].empty() ? row[0] : row[3]));
            if (!row[2].empty()) {
                EXPECT_EQ(List(at).m_F_n_Selected(), nRow);
                EXPECT_EQ(at.Shown("UserName"), sName) << "what was typed isn't lost";
                const QWidget* const pField =
                    at.Find(row[2].starts_with("Please Check") ? "ConfirmPassword" : "UserName");
                EXPECT_TRUE(sheet.focusWidget() == pField || !pField->isEnabled());
            }
        }));
    }
}

TEST_F(UserPage, RandomActionsKeepDocumentAndListWithTheModel)
{
    std::mt19937 random(20270314);
    const auto Pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    EXPECT_TRUE(RunCycle([&](CPropertySheet& sheet) {
        const At at(OpenTab(sheet, UserTab));
        std::vector<Account> arModel = Accounts(at);
        for (int nStep = 0; nStep < 120; ++nStep) {
            const int nCount = static_cast<int>(arModel.size()), nAction = Pick(3);
            const int nRow = 1 + Pick(nCount + (nAction == 0 ? 0 : -1) > 0 ? nCount + (nAction == 0 ? 0 : -1) : 1);
            ClickRow(at, nRow);
            const bool bNew = nRow == nCount;
            if (nAction == 2 && !bNew) {
                at.Click("Delete");
                arModel.erase(arModel.begin() + nRow);
                EXPECT_EQ(List(at).m_F_n_Selected(), nRow - 1);
            } else {
                const bool bAdds = bNew || nAction == 0;
                Account stForm = bNew ? Account{{"Group", "0"}} : arModel[std::size_t(nRow)];
                const Account stModel = arModel[std::size_t(bAdds ? nCount - 1 : nRow)];
                for (const char* pKey : {"PreviewCam", "PlaybackCam"})
                    if (bNew)
                        stForm[pKey] = "0000";
                for (const char* pKey : FieldKeys)
                    at.Type(pKey, stForm[pKey] = QString("%1<%2>").arg(pKey).arg(nStep));
                at.Type("ConfirmPassword", stForm["Password"]);
                const int nCamera = Pick(4);
                at.Click(QString("PreviewCam%1").arg(nCamera));
                stForm["PreviewCam"][nCamera] = stForm["PreviewCam"][nCamera] == '1' ? '0' : '1';
                QString sCapability = stModel["Capability"];
                for (const int n : {3, 6, 9, 10})
                    sCapability[n] = bNew ? '0' : stForm["Capability"][n];
                stForm["Capability"] = sCapability;
                stForm["LastLogin"] = bAdds ? QString() : stForm["LastLogin"];
                at.Click(bAdds ? "Add" : "Modify");
                if (bAdds)
                    arModel.push_back(stForm);
                else
                    arModel[std::size_t(nRow)] = stForm;
                EXPECT_EQ(List(at).m_F_n_Selected(), bAdds ? nCount : nRow);
            }
            ASSERT_EQ(Accounts(at), arModel) << "step " << nStep;
        }
        ExpectWaiting();
        Press(sheet, "OK");
    }));
    EXPECT_EQ(Stored(emDef_Document::System).m_F_s_GetNods("/root/account"), AccountNode());
}

TEST_F(UserPage, AnAccountMadeByKeysLogsInAtOnce)
{
    EXPECT_TRUE(RunCycle([&](CPropertySheet& sheet) {
        const At at(OpenTab(sheet, UserTab));
        sheet.show();
        QApplication::processEvents();
        List(at).setFocus();
        for (int n = 0; n < 4; ++n)
            QTest::keyClick(&List(at), Qt::Key_Down);
        EXPECT_EQ(List(at).m_F_n_Selected(), 4);
        for (const char* pszTyped : {"", "visitor", "V1sit & \"go\"", "V1sit & \"go\"", "by day"}) {
            QTest::keyClick(sheet.focusWidget(), Qt::Key_Tab);
            QTest::keyClicks(sheet.focusWidget(), pszTyped);
        }
        EXPECT_EQ(at.Find("PreviewCam2")->accessibleName(), "Live View 03");
        EXPECT_EQ(at.Find("ConfirmPassword")->property("displayText"), QString(12, u'*'));
        QTest::keyClick(at.Find("PreviewCam2"), Qt::Key_Space);
        at.Find("UserName")->setFocus();
        QTest::keyClick(at.Find("UserName"), Qt::Key_Return);
        ExpectWaiting();
        QTest::keyClick(&sheet, Qt::Key_Return, Qt::ControlModifier);
    }));
    stDef_NvrInit stInit = Init();
    stInit.sUID = "visitor";
    stInit.sPWD = "V1sit & \"go\"";
    vm_pNvr.reset();
    vm_pNvr.reset(CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(NvrID, nullptr, &vm_env));
    ASSERT_EQ(vm_pNvr->m_F_n_Init(stInit), 1);
    CXmlObj xmlLogin;
    ASSERT_TRUE(vm_pNvr->m_F_b_GetRequest("logininfo.cgi", &xmlLogin, 5000));
    QString sMask;
    xmlLogin.m_F_n_GetText("/root/Preview_Privilege", sMask, {});
    EXPECT_EQ(sMask, "0010");
}

} // namespace
