#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDialogButtonBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QGroupBox>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QVBoxLayout>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "host/Lib_Bedrock.h"
#include "support/Files.h"
#include "support/Table.h"
#include "support/Waiting.h"
#include "toolkit/controls/CIPAddressEdit.h"
#include "toolkit/controls/CPasswordEdit.h"
#include "toolkit/form/CFormGroup.h"
#include "toolkit/form/CMnemonics.h"
#include "toolkit/sheet/CPropertyPage.h"
#include "toolkit/sheet/CPropertySheet.h"
#include "toolkit/user/CUserSide.h"
#include "toolkit/user/CWaitBox.h"

namespace {

// A form that doesn't fit its control doesn't compile.
template <class Form, class Control>
concept IsRow = requires(CValueRows rows, Control* pControl)
{
    rows.m_S_Add<Form>({"v"}, pControl);
};
static_assert(IsRow<nsForms::AsText, QLineEdit> && IsRow<nsForms::AsText, CIPAddressEdit>);
static_assert(!IsRow<nsForms::AsText, QCheckBox> && !IsRow<nsForms::AsCheck, QLineEdit>);
static_assert(!IsRow<nsForms::ByData, QLineEdit> && !IsRow<nsForms::Shown, QComboBox>);

/// What an attribute is after it was loaded into a control and stored again.
template <class Form, class Control>
QString Stored(Control* pControl, const char* pszValue)
{
    CXmlObj xml;
    EXPECT_TRUE(xml.m_F_b_LoadXML(QString("<root><A v='%1'/></root>").arg(pszValue)));
    CValueRows rows;
    rows.m_S_Add<Form>({{&xml, "/root/A"}, "v"}, pControl);
    rows.m_S_Load();
    EXPECT_TRUE(rows.m_F_b_Store());
    const QString sAfter = xml.m_F_s_Value("/root/A", "v");
    EXPECT_TRUE(xml.m_F_b_Close());
    EXPECT_FALSE(rows.m_F_b_Store());
    return sAfter;
}

TEST(ValueRows, AListThatShowsNothingStoresWhatSaysSo)
{
    QComboBox list;
    for (const int nData : {10, 20})
        list.addItem(QString::number(nData), nData);
    for (const auto& [pszBefore, pszAfter] : {std::pair{"20x", "20"}, {"15", "-1"}, {"10", "10"}})
        EXPECT_EQ(Stored<nsForms::ByData>(&list, pszBefore), pszAfter);
    for (const auto& [pszBefore, pszAfter] : {std::pair{"20", "20"}, {"15", ""}})
        EXPECT_EQ(Stored<nsForms::ByText>(&list, pszBefore), pszAfter);
}

TEST(Rules, HoldWhateverTheirOrder)
{
    QCheckBox boxA, boxB;
    QLineEdit edit;
    CRules rules;
    rules.m_S_Enable({&edit}, {{&boxA}, {&boxB, false}});
    rules.m_S_Also([&] { boxB.setChecked(boxB.isChecked() && boxA.isChecked()); });
    rules.m_S_Enable({&boxB}, {{&boxA}});
    rules.m_S_Run();
    const struct
    {
        QCheckBox* pClicked;
        bool bEdit, bBoxB, bCheckedB;
    } arSteps[] = {{&boxA, true, true, false}, {&boxB, false, true, true}, {&boxA, false, false, false}};
    EXPECT_FALSE(edit.isEnabled());
    for (const auto& step : arSteps) {
        step.pClicked->click();
        EXPECT_EQ(edit.isEnabled(), step.bEdit);
        EXPECT_EQ(boxB.isEnabled(), step.bBoxB);
        EXPECT_EQ(boxB.isChecked(), step.bCheckedB);
    }
}

/// Types at what has the focus.
void TypeKeys(QWidget& window, const char* pszKeys)
{
    static const QHash<char, QKeyCombination> s_mapKeys = {{'<', Qt::Key_Left},
                                                           {'>', Qt::Key_Right},
                                                           {'~', Qt::Key_Backspace},
                                                           {'D', Qt::Key_Delete},
                                                           {'V', Qt::ControlModifier | Qt::Key_V}};
    for (const char c : QByteArray(pszKeys)) {
        const auto objKey = s_mapKeys.value(c);
        if (s_mapKeys.contains(c))
            QTest::keyClick(window.focusWidget(), objKey.key(), objKey.keyboardModifiers());
        else
            QTest::keyClick(window.focusWidget(), c);
    }
}

TEST(IPAddressEdit, HasFourPartsAndKeepsWhatNoEditTouched)
{
    for (const stDef_TableRow& row : ReadTable("ip_edits.txt", 4)) {
        SCOPED_TRACE(row.sWhere);
        QWidget window;
        auto* const pEdit = new CIPAddressEdit(&window);
        EXPECT_EQ(Stored<nsForms::AsText>(pEdit, row[0].c_str()).toStdString(), row[0]);
        QGuiApplication::clipboard()->setText(QString::fromStdString(row[3]));
        window.show();
        pEdit->setFocus();
        pEdit->selectAll();
        TypeKeys(window, row[1].c_str());
        EXPECT_EQ(pEdit->text().toStdString(), row[2]);
        const QString sPlain = CIPAddressEdit::s_F_s_Plain(QString::fromStdString(row[2]));
        EXPECT_EQ(pEdit->m_F_b_IsNone(), sPlain == "0.0.0.0" || sPlain.isEmpty());
    }
}

TEST(IPAddressEdit, IsOneControlForTheTabKeyAndReadsOutItsParts)
{
    QWidget window;
    QList<QWidget*> arEdits = {new QLineEdit, new CIPAddressEdit, new QLineEdit};
    auto* const pLayout = new QVBoxLayout(&window);
    for (QWidget* const pEdit : arEdits)
        pLayout->addWidget(pEdit);
    arEdits[1]->setAccessibleName("Gateway");
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const auto arParts = arEdits[1]->findChildren<QLineEdit*>(QRegularExpression("^Part"));
    for (int nPart = 0; nPart < 4; ++nPart) {
        EXPECT_EQ(arParts[nPart]->accessibleName(), QString("Gateway %1").arg(nPart + 1));
        for (const auto& [nKey, pTo] : {std::pair{Qt::Key_Tab, arEdits[2]}, {Qt::Key_Backtab, arEdits[0]}}) {
            QTest::mouseClick(arParts[nPart], Qt::LeftButton);
            EXPECT_TRUE(arParts[nPart]->hasFocus());
            QTest::keyClick(arParts[nPart], nKey);
            EXPECT_TRUE(pTo->hasFocus()) << nPart;
        }
    }
}

TEST(IPAddressEdit, TakesAWholeAddressFromItsMenu)
{
    CIPAddressEdit edit;
    edit.show();
    QGuiApplication::clipboard()->setText("10.20.30.40");
    QTimer::singleShot(0, [] {
        QWidget* const pMenu = QApplication::activePopupWidget();
        ASSERT_TRUE(pMenu);
        for (QAction* const pAction : pMenu->actions()) {
            if (pAction->text().startsWith("&Paste"))
                pAction->trigger();
        }
        pMenu->close();
    });
    auto* const pPart = edit.findChild<QLineEdit*>("Part2");
    QContextMenuEvent event(QContextMenuEvent::Mouse, {}, pPart->mapToGlobal(QPoint()));
    QApplication::sendEvent(pPart, &event);
    EXPECT_EQ(edit.text(), "10.20.30.40");
}

TEST(PasswordEdit, ShowsWithoutTouchingTextOrCursor)
{
    QWidget page;
    CForm form(&page);
    form.m_S_BeginColumn();
    CPasswordEdit* const pEdit =
        CFormGroup(form, {"G", "Group"}).m_F_p_ShownPassword({"Password", "Password"}, "Mail.PWD");
    auto* const pBox = page.findChild<QCheckBox*>("ShowMail.PWD");
    ASSERT_TRUE(pBox);
    EXPECT_EQ(pBox->text(), "Show Password");
    page.show();
    QTest::keyClicks(pEdit, "s3cret");
    pEdit->setSelection(1, 3);
    for (const char* pShown : {"******", "s3cret", "******"}) {
        EXPECT_EQ(pEdit->displayText(), pShown);
        EXPECT_EQ(pEdit->text(), "s3cret");
        EXPECT_EQ(pEdit->selectedText(), "3cr");
        EXPECT_EQ(pEdit->cursorPosition(), 4);
        QTest::mouseClick(pBox, Qt::LeftButton, {}, QPoint(8, pBox->height() / 2));
    }
    EXPECT_TRUE(pEdit->m_F_b_Shown());
    pEdit->m_S_SetShown(false);
    EXPECT_FALSE(pBox->isChecked()) << "the box follows";
}

TEST(Mnemonics, LeadToTheirControlsAndToNoOther)
{
    QWidget page;
    CForm form(&page);
    form.m_S_BeginColumn();
    CFormGroup grp(form, {"G", "Group"});
    const QList<QWidget*> arControls = {grp.m_F_p_Edit({"a", "Name"}, "a"),        grp.m_F_p_Edit({"b", "Number"}, "b"),
                                        grp.m_F_p_Check({"c", "Name Again"}, "c"), grp.m_F_p_Edit({"d", "an"}, "d"),
                                        grp.m_F_p_Edit({"e", "名稱"}, "e"),        grp.m_F_p_Edit({"f", "S&et"}, "f")};
    CMnemonics::s_S_Assign(&page);
    QStringList arTexts = {static_cast<QCheckBox*>(arControls[2])->text()};
    for (const int n : {0, 1, 3, 4, 5})
        arTexts << CForm::s_F_p_LabelOf(arControls[n])->text();
    EXPECT_EQ(arTexts.join('|').toStdString(), "Name &Again|&Name : |N&umber : |an : |名稱 : |S&et : ");
    page.show();
    page.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&page));
    for (const auto& [nKey, nControl] : {std::pair{Qt::Key_U, 1}, {Qt::Key_N, 0}, {Qt::Key_A, 2}, {Qt::Key_E, 5}}) {
        QTest::keyClick(&page, nKey, Qt::AltModifier);
        EXPECT_TRUE(arControls[nControl]->hasFocus()) << nControl;
    }
}

/// A page with one edit, which bears the page's name.
class OneEdit : public CPropertyPage
{
public:
    explicit OneEdit(const QString& sName) { setObjectName(sName); }
    int OnInitDialog() override
    {
        auto* const pEdit = new QLineEdit;
        pEdit->setObjectName("Edit" + objectName());
        (new QVBoxLayout(this))->addWidget(pEdit);
        return 1;
    }
};

TEST(PropertySheet, TheTabKeyReachesThePageBeforeTheButtons)
{
    CPropertySheet sheet("Sheet", nullptr);
    for (const char* pName : {"A", "B"})
        sheet.m_S_AddPage(new OneEdit(pName), pName);
    sheet.OnInitDialog();
    sheet.show();
    auto* const pTabs = sheet.findChild<QTabWidget*>("Tabs");
    for (const int nTab : {0, 1, 0}) {
        pTabs->setCurrentIndex(nTab);
        QApplication::processEvents(); // shows what the page has made
        sheet.findChild<QWidget*>(nTab == 0 ? "EditA" : "EditB")->setFocus();
        QStringList arReached;
        for (int i = 0; i < 4; ++i) {
            QTest::keyClick(sheet.focusWidget(), Qt::Key_Tab);
            arReached.append(sheet.focusWidget()->objectName());
        }
        EXPECT_EQ(arReached, QStringList({"OK", "Cancel", "qt_tabwidget_tabbar", nTab == 0 ? "EditA" : "EditB"}));
    }
}

TEST(UserSide, AFileIsAskedForAndAChosenOneComesBack)
{
    using enum stDef_FileQuestion::emDef_Kind;
    QTemporaryDir dir;
    WriteFile(dir.filePath("old.xml"), "old");
    const struct
    {
        stDef_FileQuestion::emDef_Kind nKind;
        const char* pszTyped; ///< null: Cancel
        const char* pszFile;  ///< null: none
        bool bOverwrites = false;
    } arRows[] = {{Open, "old.xml", "old.xml"},   {Open, nullptr, nullptr},   {Save, "new", "new.xml"},
                  {Save, "old", "old.xml", true}, {Save, "", "proposed.xml"}, {Folder, "", ""},
                  {Folder, nullptr, nullptr}};
    for (const auto& row : arRows) {
        SCOPED_TRACE(std::string(row.pszTyped ? row.pszTyped : "Cancel") + std::to_string(int(row.nKind)));
        bool bAsked = false, bTyped = false;
        int nTicks = 0;
        QTimer timer;
        timer.callOnTimeout([&] {
            QWidget* const pModal = QApplication::activeModalWidget();
            if (qobject_cast<QMessageBox*>(pModal)) {
                bAsked = true;
                QTest::keyClick(pModal, Qt::Key_Y, Qt::AltModifier);
            } else if (auto* const pDialog = qobject_cast<QFileDialog*>(pModal);
                       pDialog && !std::exchange(bTyped, true)) {
                EXPECT_EQ(pDialog->windowTitle(), "Caption");
                auto* const pEdit = pDialog->findChild<QLineEdit*>("fileNameEdit");
                if (row.pszTyped && *row.pszTyped)
                    pEdit->clear();
                QTest::keyClicks(pEdit, row.pszTyped);
                auto* const pButtons = pDialog->findChild<QDialogButtonBox*>();
                const auto nTake = row.nKind == Save ? QDialogButtonBox::Save : QDialogButtonBox::Open;
                // Not in this slot, which could not be called again before what opens then is closed.
                QTimer::singleShot(0, pButtons->button(row.pszTyped ? nTake : QDialogButtonBox::Cancel),
                                   &QAbstractButton::click);
            } else if (pModal && ++nTicks > 10000) {
                ADD_FAILURE() << "nothing came of it";
                static_cast<QDialog*>(pModal)->reject();
            }
        });
        timer.start(0);
        const QString sProposed = dir.filePath(row.nKind == Save ? "proposed.xml" : row.nKind == Open ? "x" : "");
        EXPECT_EQ(CUserSide::s_F_o_Get().m_F_s_File(nullptr, {row.nKind, "Caption", sProposed, "Text (*.xml)", "xml"}),
                  row.pszFile ? QDir::cleanPath(dir.filePath(row.pszFile)) : QString());
        EXPECT_EQ(bAsked, row.bOverwrites);
    }
}

TEST(UserSide, ACallComesAfterItsTimeUnlessItsObjectHasGone)
{
    QObject context;
    auto pGone = std::make_unique<QObject>();
    QStringList arCalls;
    QElapsedTimer clock;
    clock.start();
    for (const auto& [nMs, pContext] : {std::pair{60, &context}, {30, pGone.get()}, {20, &context}})
        CUserSide::s_F_o_Get().m_S_After(nMs, pContext, [&arCalls, nMs = nMs] { arCalls << QString::number(nMs); });
    pGone.reset();
    EXPECT_TRUE(WaitUntil([&] { return arCalls.size() == 2; }));
    EXPECT_GE(clock.elapsed(), 60);
    EXPECT_EQ(arCalls, QStringList({"20", "60"}));
}

/// The real one, whose clock a test sets.
class ClockedUser : public CUserSide
{
public:
    std::uint64_t m_F_n_TickMs() override { return vm_nNowMs; }
    std::uint64_t vm_nNowMs = 5;
};

TEST(UserSide, AWaitCountsItsSecondsDownAndHoldsInput)
{
    constexpr int WaitMs = 60000;
    for (const bool bClosed : {false, true}) {
        ClockedUser user;
        QPushButton button("Behind");
        int nClicks = 0;
        QObject::connect(&button, &QPushButton::clicked, [&] { ++nClicks; });
        button.show();
        QStringList arSeen;
        QTimer timer;
        timer.callOnTimeout([&] {
            auto* const pBox = qobject_cast<CWaitBox*>(QApplication::activeModalWidget());
            ASSERT_TRUE(pBox);
            QTest::mouseClick(&button, Qt::LeftButton);
            EXPECT_FALSE(pBox->findChild<QPushButton*>()) << "there is no Stop";
            arSeen << QString("%1 %2 %3")
                          .arg(pBox->findChild<QLabel*>("WaitText")->text(),
                               pBox->findChild<QLabel*>("WaitSeconds")->text())
                          .arg(pBox->findChild<QProgressBar*>()->value());
            if (arSeen.removeDuplicates() == 0)
                user.vm_nNowMs += bClosed ? 1000 : 29500;
            if (bClosed && arSeen.size() == 2)
                pBox->close();
        });
        timer.start(50);
        user.m_S_Wait(&button, "Uploading", WaitMs);
        timer.stop();
        EXPECT_EQ(arSeen.mid(0, 2),
                  QStringList({"Uploading 60 s 0", bClosed ? "Uploading 59 s 1000" : "Uploading 31 s 29500"}));
        EXPECT_EQ(user.vm_nNowMs >= WaitMs, !bClosed);
        EXPECT_EQ(nClicks, 0);
        EXPECT_FALSE(QApplication::activeModalWidget());
    }
}

TEST(UserSide, AHastyKeyAnswersNoWhereSomethingWouldBeLost)
{
    using enum stDef_Prompt::emDef_Kind;
    const struct
    {
        stDef_Prompt::emDef_Kind nKind;
        int nKey; ///< 0: the parent goes meanwhile
        bool bAnswer;
    } arRows[] = {{Message, Qt::Key_Return, true},
                  {Notice, Qt::Key_Escape, true},
                  {Question, Qt::Key_Return, true},
                  {Question, Qt::Key_Escape, false},
                  {DestroyingChoice, Qt::Key_Return, false},
                  {DestroyingChoice, Qt::Key_Escape, false},
                  {Question, 0, false}};
    for (const auto& row : arRows) {
        auto* const pParent = new QWidget;
        QTimer::singleShot(0, [&] {
            auto* const pBox = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_TRUE(pBox);
            EXPECT_EQ(pBox->textFormat(), Qt::PlainText);
            if (row.nKey)
                QTest::keyClick(pBox, Qt::Key(row.nKey));
            else
                delete pParent;
        });
        EXPECT_EQ(CUserSide::s_F_o_Get().m_F_b_Prompt(pParent, {row.nKind, "<b>2 < 3</b>", "Caption"}), row.bAnswer)
            << int(row.nKind) << ' ' << row.nKey;
        if (row.nKey)
            delete pParent;
    }
}

} // namespace
