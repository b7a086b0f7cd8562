#include "toolkit/form/CTextTable.h"

using namespace Qt::StringLiterals;

void CTextTable::m_S_Add(const stDef_Text& stText, Setter fnSet, emDef_TextForm nForm)
{
    vm_arRows.push_back({stText, std::move(fnSet), nForm});
    s_S_Show(vm_arRows.back(), QString::fromUtf8(stText.pszDefault));
}

void CTextTable::m_S_Apply(const CTextSource& objSource) const
{
    for (const stDef_Row& stRow : vm_arRows) {
        QString sText;
        if (objSource.m_F_n_LoadText(stRow.stText, sText) >= 0)
            s_S_Show(stRow, sText);
    }
}

void CTextTable::s_S_Show(const stDef_Row& stRow, const QString& sText)
{
    stRow.fnSet(stRow.nForm == emDef_TextForm::Colon ? sText + u" : "_s : sText);
}
