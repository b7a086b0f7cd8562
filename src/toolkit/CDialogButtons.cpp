#include "toolkit/CDialogButtons.h"

#include <QDialog>
#include <QPushButton>

#include "toolkit/CTextTable.h"

CDialogButtons::CDialogButtons(QDialog* pDialog, CTextTable& objTexts)
    : QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, pDialog)
{
    const struct
    {
        StandardButton nButton;
        Text stText;
    } arRows[] = {{Ok, Text{"OK", "OK"}}, {Cancel, Text{"Cancel", "Cancel"}}};
    for (const auto& stRow : arRows) {
        button(stRow.nButton)->setObjectName(QString::fromLatin1(stRow.stText.pszKey));
        objTexts.m_S_AddText(button(stRow.nButton), stRow.stText);
    }
    connect(this, &QDialogButtonBox::accepted, pDialog, &QDialog::accept);
    connect(this, &QDialogButtonBox::rejected, pDialog, &QDialog::reject);
}
