#include "setup/mail/CDlgSetupPageSystemSetting_AddrBook.h"

#include "core/CWndNvrEmbedded.h"
#include "toolkit/form/CEntryTable.h"
#include "toolkit/form/CommonTexts.h"

using namespace Qt::StringLiterals;

namespace {

constexpr Text TitleText{"AddressBook", "Address Book"};
constexpr Text EmptyText{"Empty", "Name Or E-Mail Is Empty."};
// One key, two defaults: Add and Modify say it in different capitals.
constexpr Text AddTwiceText{"Change", "You add the same e-Mail. Please change it!"};
constexpr Text ModifyTwiceText{"Change", "You Add The Same E-Mail. Please Change It!"};

constexpr CEntryTable::stDef_Column g_astColumns[] = {
    {"Name", Text{"Name", "Name"}},
    {"Phone", Text{"Phone", "Phone"}},
    {"Mail", Text{"EMail", "E-Mail"}},
    {"Remark", Text{"Remark", "Remark"}},
};
constexpr int NameColumn = 0;
constexpr int MailColumn = 2;
constexpr int ColumnWidth = 230;

} // namespace

void CDlgSetupPageSystemSetting_AddrBook::m_S_Make(CForm& objForm)
{
    objForm.m_S_BeginColumn();
    auto* const pTable = new CEntryTable(
        CFormGroup(objForm, TitleText),
        {{&vm_pNvr->vm_xmlEMail, u"/root/EMail"_s}, "Mail", TitleText, g_astColumns, ColumnWidth}, this);
    connect(pTable, &CEntryTable::S_Refused, this,
            [this](const stDef_Text& stReason) { m_S_Message(stReason, nsTexts::Error); });

    using enum CEntryTable::emDef_Action;
    const auto IsEmpty = [pTable](int) {
        return pTable->m_F_s_Edited(NameColumn).isEmpty() || pTable->m_F_s_Edited(MailColumn).isEmpty();
    };
    const auto IsTaken = [pTable](int nOwnRow) {
        return pTable->m_F_b_IsTaken(MailColumn, pTable->m_F_s_Edited(MailColumn), nOwnRow);
    };
    pTable->m_S_Refuse(Add, EmptyText, IsEmpty);
    pTable->m_S_Refuse(Add, AddTwiceText, IsTaken);
    pTable->m_S_Refuse(Modify, EmptyText, IsEmpty);
    pTable->m_S_Refuse(Modify, ModifyTwiceText, IsTaken);
    pTable->m_S_Open();
}
