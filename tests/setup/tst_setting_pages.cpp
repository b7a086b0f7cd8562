#include <QCheckBox>
#include <QComboBox>

#include "At.h"
#include "DeferredPage.h"
#include "core/CWndNvrEmbedded.h"
#include "support/Table.h"
#include "toolkit/controls/CItemList.h"
#include "toolkit/sheet/CPropertyPage.h"

namespace {

constexpr int NetworkTab = 2;
constexpr int AddressTab = 6;
constexpr int NotificationTab = 7;

using NetworkPage = DeferredPage;
using NotificationPage = DeferredPage;

TEST_F(NetworkPage, WritesWhatWasEditedAndNothingElse)
{
    Check(NetworkTab, "network", [](At at) {
        EXPECT_EQ(at.Shown("Local.MAC"), "00:00:5E:00:53:01");
        EXPECT_EQ(at.Shown("DDNS.CurrentIP"), "Unknow");
        EXPECT_TRUE(at.Shown("Local.ExternalPort").startsWith("http://:"));
        at.Type("network.IPAddress", "10.20.30.40");
        at.Type("pppoe.PPPOEUser", "new & <account>");
        at.Click("pppoe.isPPPOE");
        at.Type("pppoe.PPPOEPassword", "p\"ss");
        at.Click("UPnP_Traversal.Enable");
        at.Type("UPnP_Traversal.MinPort", "none");
        at.Type("server.HTTPPort", "8080");
        at.Click("server.RTSPOverHTTP");
        at.Click("DDNS.Enable");
        QTest::keyClick(at.Find("DDNS.Server"), Qt::Key_Down);
        at.Type("DDNS.Host", QString(40, 'h'));
    });
}

TEST_F(NetworkPage, BoxesEnableWhatBelongsToThem)
{
    EXPECT_TRUE(RunCycle([&](CPropertySheet& sheet) {
        const At at(OpenTab(sheet, NetworkTab));
        for (const stDef_TableRow& row : ReadTable("network_rules.txt", 4)) {
            const QString sBox = QString::fromStdString(row[0]);
            const auto Names = [](const std::string& s) {
                return QString::fromStdString(s).split(' ', Qt::SkipEmptyParts);
            };
            for (const bool bChecked : {row.Is(1), !row.Is(1), row.Is(1)}) {
                EXPECT_EQ(static_cast<QCheckBox*>(at.Find(sBox))->isChecked(), bChecked) << row[0];
                EXPECT_EQ(at.NotEnabled(Names(row[2]), bChecked), QStringList()) << row[0];
                EXPECT_EQ(at.NotEnabled(Names(row[3]), !bChecked), QStringList()) << row[0];
                at.Click(sBox);
            }
            at.Click(sBox);
        }
        // The name servers follow a box of their own, which goes with DHCP.
        const QStringList arServers = {"network.PrimaryDNS", "network.SecondDNS"};
        at.Click("network.DHCPType");
        EXPECT_EQ(at.NotEnabled(arServers, true), QStringList());
        at.Click("network.DHCPgetDNS");
        EXPECT_EQ(at.NotEnabled(arServers, false), QStringList());
        at.Click("network.DHCPType");
        EXPECT_FALSE(static_cast<QCheckBox*>(at.Find("network.DHCPgetDNS"))->isChecked());
        EXPECT_EQ(at.NotEnabled(arServers, true), QStringList());
        // The friendly name goes and comes with its box.
        for (const char* pName : {"Recorder at the gate (VN-16E)", "", "Recorder at the gate (VN-16E)"}) {
            EXPECT_EQ(at.Shown("Local.FriendlyName").toStdString(), pName);
            at.Click("UPnP.Enable");
        }
    }));
}

TEST_F(NotificationPage, SaysThatThereIsNoTest)
{
    EXPECT_TRUE(RunCycle([&](CPropertySheet& sheet) {
        vm_objPrompts.Expect("No CGI", "Error");
        At(OpenTab(sheet, NotificationTab)).Click("SendTest");
    }));
}

TEST_F(NetworkPage, TestsAskTheRecorder)
{
    const struct
    {
        const char* pHost; ///< the recorder answers "host = 203.0.113.24", or without a "=" where there is no host
        const char* pShown;
    } arReplies[] = {{"gate", "203.0.113.24"}, {"a=b c=d", "bc"}, {"", ""}};
    EXPECT_TRUE(RunCycle([&](CPropertySheet& sheet) {
        const At at(OpenTab(sheet, NetworkTab));
        vm_objPrompts.Expect("No CGI", "Error");
        at.Click("NetworkTest");
        at.Click("DDNS.Enable");
        static_cast<QComboBox*>(at.Find("DDNS.Server"))->setCurrentIndex(1);
        vm_nvr.m_F_o_Log().m_S_Clear();
        at.Click("DDNSTest");
        EXPECT_EQ(at.Shown("DDNS.CurrentIP"), "203.0.113.24");
        const auto arEntries = vm_nvr.m_F_o_Log().m_F_ar_Entries();
        ASSERT_FALSE(arEntries.empty());
        // As they stand; only what can't stand in a request line is escaped.
        EXPECT_EQ(arEntries.back().sTarget,
                  "/param.cgi?action=ddns&server=no-ip.com&host=gate3.example.org&uid=gate3&pwd=ddns%20pass");
        for (const auto& reply : arReplies) {
            at.Type("DDNS.Host", reply.pHost);
            at.Click("DDNSTest");
            EXPECT_EQ(at.Shown("DDNS.CurrentIP"), reply.pShown) << reply.pHost;
        }
        ASSERT_TRUE(vm_nvr.m_F_o_Faults().m_F_b_Set("action=ddns", {"status", 500}));
        at.Click("DDNSTest");
        EXPECT_EQ(at.Shown("DDNS.CurrentIP"), "Unknow");
        EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    }));
}

class AddressBook : public CycleFixture
{
protected:
    using Row = QStringList;

    static QStringList Edits(At at)
    {
        return {at.Shown("Name"), at.Shown("Phone"), at.Shown("Mail"), at.Shown("Remark")};
    }
    static void Fill(At at, const Row& arValues)
    {
        int n = 0;
        for (const char* pName : {"Name", "Phone", "Mail", "Remark"})
            at.Type(pName, arValues[n++]);
    }
    static CItemList& List(At at) { return *static_cast<CItemList*>(at.Find("Entries")); }

    /// The book as the connection object's document has it, checked for gaps.
    std::vector<Row> Book()
    {
        std::vector<Row> arBook;
        const CXmlObj& xml = Nvr().vm_xmlEMail;
        const int nCount = xml.m_F_n_GetValueInt("/root/EMail", "count", -1);
        for (int i = 0; i < nCount; ++i) {
            Row arRow;
            for (const char* pKey : {"Name", "Phone", "Mail", "Remark"})
                arRow.append(xml.m_F_s_Value(QString::asprintf("/root/EMail/Mail%03d", i), pKey, "missing"));
            arBook.push_back(arRow);
        }
        EXPECT_TRUE(xml.m_S_SelectNodesByKey(QString::asprintf("/root/EMail/Mail%03d", nCount))
                        .m_F_o_NextNode()
                        .m_F_b_IsNull());
        return arBook;
    }
    /// The list on the screen has the same rows, each with its number.
    static void ExpectListed(At at, const std::vector<Row>& arBook)
    {
        ASSERT_EQ(List(at).rowCount(), int(arBook.size()));
        for (int i = 0; i < int(arBook.size()); ++i) {
            EXPECT_EQ(List(at).m_F_ar_Texts(i), arBook[std::size_t(i)]);
            EXPECT_EQ(List(at).m_F_n_Data(i), i);
        }
    }
};

TEST_F(AddressBook, EntriesAreAddedModifiedAndDeletedAtOnce)
{
    EXPECT_TRUE(RunCycle([&](CPropertySheet& sheet) {
        const At at(OpenTab(sheet, AddressTab));
        std::vector<Row> arBook = Book();
        ASSERT_EQ(arBook.size(), 5u);
        ExpectListed(at, arBook);
        EXPECT_EQ(Edits(at), arBook[0]) << "the first row is shown";

        const Row arNew = {arBook[1][0], "", "New@example.com", ""}; // the same name, and empty fields, are fine
        Fill(at, arNew);
        at.Click("Add");
        arBook.push_back(arNew);
        EXPECT_EQ(Book(), arBook);
        ExpectListed(at, arBook);
        EXPECT_EQ(List(at).m_F_n_Selected(), 5);

        QTest::keyClick(&List(at), Qt::Key_Up);
        EXPECT_EQ(Edits(at), arBook[4]) << "the selected row is shown";
        at.Type("Remark", "changed");
        at.Click("Modify"); // its own e-mail is no duplicate
        arBook[4][3] = "changed";
        EXPECT_EQ(Book(), arBook);
        ExpectListed(at, arBook);
        EXPECT_EQ(Nvr().vm_xmlEMail.m_F_s_Value("/root/EMail/Mail004", "Language"), "en")
            << "what the page doesn't know stays";

        List(at).m_S_Select(1);
        for (const int nSelected : {0, 0, 0, 0, 0, -1}) { // the row above, and the first one after the first
            const int nRow = List(at).m_F_n_Selected();
            at.Click("Delete");
            arBook.erase(arBook.begin() + nRow);
            EXPECT_EQ(Book(), arBook);
            ExpectListed(at, arBook);
            EXPECT_EQ(List(at).m_F_n_Selected(), nSelected);
        }
        EXPECT_EQ(at.NotEnabled({"Delete", "Modify"}, false), QStringList());
        EXPECT_EQ(at.NotEnabled({"Add"}, true), QStringList());
        EXPECT_EQ(Edits(at), Row({"", "", "", ""}));
        Fill(at, arNew);
        at.Click("Add");
        EXPECT_EQ(Book(), std::vector<Row>{arNew});
        EXPECT_EQ(at.NotEnabled({"Delete", "Modify"}, true), QStringList());
    }));
}

TEST_F(AddressBook, AClickShowsTheRowAlsoTheSelectedOneAndBesideTheRowsNone)
{
    EXPECT_TRUE(RunCycle([&](CPropertySheet& sheet) {
        const At at(OpenTab(sheet, AddressTab));
        CItemList& list = List(at);
        for (const int nRow : {0, 2, 2, -1, 1}) {
            at.Type("Name", "typed");
            const QPoint ptBeside(5, list.viewport()->height() - 5);
            QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                              nRow < 0 ? ptBeside : list.visualItemRect(list.item(nRow, 1)).center());
            EXPECT_EQ(Edits(at), nRow < 0 ? Row({"", "", "", ""}) : Book()[std::size_t(nRow)]) << nRow;
            EXPECT_EQ(at.NotEnabled({"Delete", "Modify"}, nRow >= 0), QStringList());
        }
    }));
}

TEST_F(AddressBook, WhatCannotBeTakenIsToldAndChangesNothing)
{
    // A language file has one text for both duplicates, so the defaults are seen without one.
    vm_env.vm_nLanguage = 1;
    ASSERT_TRUE(vm_env.m_F_b_SetLangFolder(FIXTURE_FOLDER));
    MakeNvr();
    EXPECT_TRUE(RunCycle([&](CPropertySheet& sheet) {
        const At at(OpenTab(sheet, AddressTab));
        for (const stDef_TableRow& row : ReadTable("address_refusals.txt", 6)) {
            List(at).m_S_Select(0);
            const std::vector<Row> arBefore = Book();
            const Row arValues = {row[1].c_str(), row[2].c_str(), row[3].c_str(), row[4].c_str()};
            Fill(at, arValues);
            if (!row[5].empty())
                vm_objPrompts.Expect(row[5].c_str(), "Error");
            at.Click(row[0].c_str());
            EXPECT_EQ(Book() == arBefore, !row[5].empty());
            EXPECT_EQ(List(at).m_F_n_Selected(), 0);
            EXPECT_EQ(Edits(at), arValues) << "what was typed isn't lost";
        }
        // With the document gone nothing happens, and nothing is said.
        Nvr().vm_xmlEMail.m_F_b_Close();
        for (const char* pButton : {"Add", "Modify", "Delete"})
            at.Click(pButton);
    }));
}

TEST_F(NotificationPage, WritesWhatStandsInItsControls)
{
    const QStringList arShown = {"smtp.example.com", "587", "/snapshots/gate3", "/alarm?src=gate3&level=2", "9100"};
    // A box shows its value inverted, and no value is checked.
    Check(NotificationTab, "Notification", [&](At at) {
        QStringList arFound;
        for (const char* pName : {"SMTP.IP", "SMTP.Port", "FTP.Path", "HTTP.CGI", "TCP.Port"})
            arFound.append(at.Shown(pName));
        EXPECT_EQ(arFound, arShown);
        EXPECT_FALSE(static_cast<QCheckBox*>(at.Find("SMTP.Attach"))->isChecked());
        EXPECT_EQ(static_cast<QComboBox*>(at.Find("SMTP.Interval"))->currentText(), "30");
        at.Type("SMTP.Port", "none");
        at.Click("SMTP.Attach");
        at.Click("SMTP.SSL");
        QTest::keyClick(at.Find("SMTP.Retry"), Qt::Key_Down);
        at.Click("ShowFTP.PWD");
        EXPECT_EQ(at.Shown("FTP.PWD"), "ftp:secret");
        at.Type("TCP.IP", "a&b");
    });
}

} // namespace
