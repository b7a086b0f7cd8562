#pragma once

#include <QString>
#include <span>
#include <variant>

#include "host/bedrock/CXmlObj.h"

/// One value of a structure and the attribute that holds it. All that goes over the values, reading, writing, showing,
/// walks the same rows.
template <class Structure>
struct stDef_Member
{
    using Pointer = std::variant<int Structure::*, QString Structure::*, bool Structure::*>;

    const char* pszKey;
    Pointer pMember;
    const char* pszDefault = ""; ///< of a text that isn't there
    int nDefault = 0;            ///< of a number that isn't there
};

namespace nsMembers {

template <class Structure>
using Rows = std::span<const stDef_Member<Structure>>;
template <class Structure>
using Pointer = typename stDef_Member<Structure>::Pointer;

/// A value as text; flags are 0 and 1.
template <class Structure>
QString Text(const Structure& st, Pointer<Structure> pMember)
{
    if (const auto* const pText = std::get_if<QString Structure::*>(&pMember))
        return st.**pText;
    const auto* const pFlag = std::get_if<bool Structure::*>(&pMember);
    return QString::number(pFlag ? int(st.**pFlag) : st.*std::get<int Structure::*>(pMember));
}

/// Sets a value from a text; what is no number counts as 0.
template <class Structure>
void SetText(Structure& st, Pointer<Structure> pMember, const QString& sValue)
{
    if (auto* const pText = std::get_if<QString Structure::*>(&pMember))
        st.** pText = sValue;
    else if (auto* const pFlag = std::get_if<bool Structure::*>(&pMember))
        st.** pFlag = CXmlObj::s_F_n_ToInt(sValue) != 0;
    else
        st.*std::get<int Structure::*>(pMember) = CXmlObj::s_F_n_ToInt(sValue);
}

/// Takes over one value of what `fnNumber` and `fnText` read by key and default.
template <class Structure, class Number, class TextOf>
void Take(const stDef_Member<Structure>& row, Structure& st, Number fnNumber, TextOf fnText)
{
    const QString sKey = QString::fromLatin1(row.pszKey);
    if (const auto* const pText = std::get_if<QString Structure::*>(&row.pMember))
        fnText(sKey, st.**pText, QString::fromUtf8(row.pszDefault));
    else if (const auto* const pFlag = std::get_if<bool Structure::*>(&row.pMember))
        st.** pFlag = fnNumber(sKey, row.nDefault) != 0;
    else
        st.*std::get<int Structure::*>(row.pMember) = fnNumber(sKey, row.nDefault);
}

template <class Structure>
void ReadOne(const CXmlObj& xml, const QString& sNode, const stDef_Member<Structure>& row, Structure& st)
{
    Take(
        row, st, [&](const QString& sKey, int nDefault) { return xml.m_F_n_GetValueInt(sNode, sKey, nDefault); },
        [&](const QString& sKey, QString& sOut, const QString& sDefault) {
            xml.m_F_n_GetValue(sNode, sKey, sOut, sDefault);
        });
}

/// Takes over what the node has.
template <class Structure>
void Read(const CXmlObj& xml, const QString& sNode, Rows<Structure> arRows, Structure& st)
{
    for (const stDef_Member<Structure>& row : arRows)
        ReadOne(xml, sNode, row, st);
}

template <class Structure>
void Read(const CXmlNode& objNode, Rows<Structure> arRows, Structure& st)
{
    for (const stDef_Member<Structure>& row : arRows) {
        Take(
            row, st,
            [&](const QString& sKey, int nDefault) { return CXmlObj::s_F_n_GetNodeValInt(objNode, sKey, nDefault); },
            [&](const QString& sKey, QString& sOut, const QString& sDefault) {
                CXmlObj::s_S_GetNodeVal(objNode, sKey, sOut, sDefault);
            });
    }
}

/// Writes one value.
template <class Structure>
void WriteOne(CXmlObj& xml, const QString& sNode, const stDef_Member<Structure>& row, const Structure& st)
{
    xml.m_F_b_SetValue(sNode, QString::fromLatin1(row.pszKey), Text(st, row.pMember));
}

template <class Structure>
void Write(CXmlObj& xml, const QString& sNode, Rows<Structure> arRows, const Structure& st)
{
    for (const stDef_Member<Structure>& row : arRows)
        WriteOne(xml, sNode, row, st);
}

} // namespace nsMembers
