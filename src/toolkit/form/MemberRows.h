#pragma once

#include <QString>
#include <span>
#include <variant>

#include "host/Lib_Bedrock.h"

/// One value of a structure and the attribute that holds it: reading, writing and comparing walk the same rows.
template <class Structure>
struct stDef_Member
{
    const char* pszKey;
    std::variant<int Structure::*, QString Structure::*> pMember;
    const char* pszDefault = ""; ///< of a text that isn't there
    int nDefault = 0;            ///< of a number that isn't there
};

namespace nsMembers {

template <class Structure>
using Rows = std::span<const stDef_Member<Structure>>;

/// Takes over what the node has.
template <class Structure>
void Read(const CXmlObj& xml, const QString& sNode, Rows<Structure> arRows, Structure& st)
{
    for (const stDef_Member<Structure>& row : arRows) {
        const QString sKey = QString::fromLatin1(row.pszKey);
        if (const auto* const pNumber = std::get_if<int Structure::*>(&row.pMember))
            st.** pNumber = xml.m_F_n_GetValueInt(sNode, sKey, row.nDefault);
        else
            xml.m_F_n_GetValue(sNode, sKey, st.*std::get<QString Structure::*>(row.pMember),
                               QString::fromUtf8(row.pszDefault));
    }
}

/// Writes one value.
template <class Structure>
void WriteOne(CXmlObj& xml, const QString& sNode, const stDef_Member<Structure>& row, const Structure& st)
{
    std::visit([&](auto pMember) { xml.m_F_b_SetValue(sNode, QString::fromLatin1(row.pszKey), st.*pMember); },
               row.pMember);
}

template <class Structure>
void Write(CXmlObj& xml, const QString& sNode, Rows<Structure> arRows, const Structure& st)
{
    for (const stDef_Member<Structure>& row : arRows)
        WriteOne(xml, sNode, row, st);
}

} // namespace nsMembers
