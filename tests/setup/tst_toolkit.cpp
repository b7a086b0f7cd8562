#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "host/Lib_Bedrock.h"
#include "toolkit/controls/CIPAddressEdit.h"
#include "toolkit/controls/CPasswordEdit.h"
#include "toolkit/form/CFieldTable.h"
#include "toolkit/form/CForm.h"
#include "toolkit/form/CMnemonics.h"
#include "toolkit/sheet/CPropertyPage.h"
#include "toolkit/sheet/CPropertySheet.h"

namespace {

/// What an attribute is after it was loaded into a control and stored again.
QString Stored(QWidget* pControl, emDef_FieldForm nForm, const char* pszValue)
{
    CFieldTable fields;
    fields.m_S_Add({"/root/A", "v", pControl, nForm});
    CXmlObj xml;
    EXPECT_TRUE(xml.m_F_b_LoadXML(QString("<root><A v='%1'/></root>").arg(pszValue)));
    fields.m_S_Load(xml);
    fields.m_S_Store(xml);
    QString sAfter;
    xml.m_F_n_GetValue("/root/A", "v", sAfter, {});
    return sAfter;
}

TEST(FieldTable, AListThatShowsNothingStoresWhatSaysSo)
{
    QComboBox list;
    for (const int nData : {10, 20})
        list.addItem(QString::number(nData), nData);
    for (const auto& [pszBefore, pszAfter] : {std::pair{"20", "20"}, {"15", "-1"}, {"10", "10"}})
        EXPECT_EQ(Stored(&list, emDef_FieldForm::PickData, pszBefore), pszAfter);
}

TEST(IPAddressEdit, StoresWhatNoEditTouched)
{
    CIPAddressEdit edit;
    for (const char* pszStored : {"10.1.2.3", "", "recorder-4.gate.example.com"})
        EXPECT_EQ(Stored(&edit, emDef_FieldForm::Edit, pszStored), pszStored);
    edit.clear();
    QTest::keyClicks(&edit, "19216x8.400.7.");
    EXPECT_EQ(edit.text(), QString("192.168.40.7"));
}

TEST(PasswordEdit, ShowsWithoutTouchingTextOrCursor)
{
    QWidget page;
    CTextTable texts;
    CForm form(&page, &texts);
    (new QVBoxLayout(&page))->addWidget(form.m_F_p_Group({"G", "Group"}, "Group"));
    CPasswordEdit* const pEdit = form.m_F_p_ShownPassword({"Password", "Password"}, "Mail.PWD");
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
    CTextTable texts;
    CForm form(&page, &texts);
    (new QVBoxLayout(&page))->addWidget(form.m_F_p_Group({"G", "Group"}, "Group"));
    const QList<QWidget*> arControls = {
        form.m_F_p_Edit({"a", "Name"}, "a"),        form.m_F_p_Edit({"b", "Number"}, "b"),
        form.m_F_p_Check({"c", "Name Again"}, "c"), form.m_F_p_Edit({"d", "an"}, "d"),
        form.m_F_p_Edit({"e", "名稱"}, "e"),        form.m_F_p_Edit({"f", "S&et"}, "f")};
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

} // namespace
