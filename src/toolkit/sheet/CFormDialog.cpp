#include "toolkit/sheet/CFormDialog.h"

#include <QDialogButtonBox>
#include <QGroupBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "toolkit/form/CMnemonics.h"
#include "toolkit/form/CommonTexts.h"

CFormDialog::CFormDialog(const stDef_Text& stTitle, QWidget* pParent) : QDialog(pParent), vm_objForm(this)
{
    vm_objForm.m_F_o_Texts().m_S_Add(stTitle, [this](const QString& s) { setWindowTitle(s); });
}

CFormDialog::CFormDialog(const stDef_Text& stTitle, const stDef_Node& stNode, QWidget* pParent)
    : CFormDialog(stTitle, pParent)
{
    vm_objGroup.emplace(vm_objForm, stTitle, stNode, emDef_TextForm::Colon);
    (new QVBoxLayout(this))->addWidget(vm_objGroup->m_F_p_Box());
}

void CFormDialog::m_S_AddButtons()
{
    const std::pair<QDialogButtonBox::StandardButton, Text> arRows[] = {{QDialogButtonBox::Ok, nsTexts::Ok},
                                                                        {QDialogButtonBox::Cancel, nsTexts::Cancel}};
    auto* const pBox = new QDialogButtonBox;
    for (const auto& [nButton, stText] : arRows) {
        QPushButton* const pButton = pBox->addButton(nButton);
        pButton->setObjectName(QString::fromLatin1(stText.pszKey));
        vm_objForm.m_F_o_Texts().m_S_AddText(pButton, stText);
    }
    connect(pBox, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(pBox, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout()->addWidget(pBox);
}

void CFormDialog::m_S_Finish(const CTextSource& objTexts)
{
    m_S_AddButtons();
    vm_objForm.m_S_Finish(objTexts);
    CMnemonics::s_S_Assign(this);
}
