#include "toolkit/sheet/CSettingPage.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include "toolkit/user/CPrompts.h"

namespace {

constexpr Text UnknownText{"UnknownValues", "Stored values that the lists don't have, which OK replaces: %1"};

} // namespace

CSettingPage::CSettingPage(const CTextSource* pTexts) : vm_pTexts(pTexts), vm_objForm(this) {}

int CSettingPage::OnInitDialog()
{
    vm_pNote = new QLabel(this);
    m_S_Make(vm_objForm);
    m_S_PlaceNote();
    vm_bFilled = vm_objForm.m_F_o_Values().m_F_b_CanLoad();
    if (vm_bFilled) {
        vm_objForm.m_F_o_Values().m_S_Load();
        m_S_Loaded();
    }
    vm_objForm.m_S_Finish(*vm_pTexts);
    if (vm_bFilled)
        m_S_TellUnknown();
    m_S_Opened();
    return CPropertyPage::OnInitDialog();
}

// Below a page that is laid out in columns or as a grid; hidden, it takes no room. A button's release comes just before
// its click, which may leave a new note; at the press already, the buttons below would move away from under the
// pointer.
void CSettingPage::m_S_PlaceNote()
{
    vm_pNote->setObjectName(QStringLiteral("Note"));
    vm_pNote->setTextFormat(Qt::PlainText);
    vm_pNote->setWordWrap(true);
    vm_pNote->hide();
    if (auto* const pGrid = qobject_cast<QGridLayout*>(layout()))
        pGrid->addWidget(vm_pNote, pGrid->rowCount(), 0, 1, -1);
    else if (layout())
        layout()->addWidget(vm_pNote);
    for (const QAbstractButton* const pButton : findChildren<QAbstractButton*>())
        connect(pButton, &QAbstractButton::released, this, &CSettingPage::m_S_ClearNote);
    for (const QComboBox* const pList : findChildren<QComboBox*>())
        connect(pList, &QComboBox::activated, this, &CSettingPage::m_S_ClearNote);
}

// As their labels call them, which have their texts by now.
void CSettingPage::m_S_TellUnknown()
{
    QStringList arNames;
    for (const QWidget* const pList : vm_objForm.m_F_o_Values().m_F_ar_Unknown())
        arNames.append(pList->accessibleName());
    if (!arNames.isEmpty())
        m_S_Tell(m_F_s_Line(UnknownText, arNames.join(QStringLiteral(", "))));
}

void CSettingPage::m_S_Tell(const QString& sNote)
{
    vm_pNote->setText(sNote);
    vm_pNote->setVisible(!sNote.isEmpty());
}

QString CSettingPage::m_F_s_Line(const stDef_Text& stText, const QString& sValue) const
{
    return vm_pTexts->m_F_s_Text(stText, QString::fromUtf8(stText.pszDefault)).replace(QStringLiteral("%1"), sValue);
}

void CSettingPage::OnEnter()
{
    if (QPushButton* const pButton = vm_objForm.m_F_p_EnterButton())
        pButton->click();
}

void CSettingPage::m_S_StoreInto(const CValueRows::Substitute& fnSubstitute) const
{
    if (vm_bFilled)
        vm_objForm.m_F_o_Values().m_F_b_Store({}, fnSubstitute);
}

bool CSettingPage::m_F_b_Store() const
{
    const CValueRows& objValues = vm_objForm.m_F_o_Values();
    return vm_bFilled ? objValues.m_F_b_Store() : objValues.m_F_b_CanStore();
}

void CSettingPage::m_S_Message(const stDef_Text& stText, const stDef_Text& stCaption)
{
    CPrompts::s_S_Message(this, m_F_s_Text(stText), m_F_s_Text(stCaption));
}

void CSettingPage::m_S_TellNoCgi()
{
    CPrompts::s_S_Message(this, QStringLiteral("No CGI"), QStringLiteral("Error"));
}
