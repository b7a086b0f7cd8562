#include "toolkit/form/CValueRows.h"

#include <algorithm>

#include "host/Lib_Bedrock.h"

namespace {

const QString& PathOf(const QString& sPath, const QString& sEntry)
{
    return sPath.isEmpty() ? sEntry : sPath;
}

} // namespace

void CValueRows::m_S_Add(const stDef_Value& stValue, Show fnShow, Stored fnStored)
{
    if (stValue.stNode.pDocument)
        vm_arRows.push_back({stValue, std::move(fnShow), std::move(fnStored)});
}

bool CValueRows::m_F_b_CanLoad() const
{
    return std::all_of(vm_arRows.begin(), vm_arRows.end(),
                       [](const stDef_Row& stRow) { return stRow.stValue.stNode.pDocument->m_F_b_IsOpen(); });
}

void CValueRows::m_S_Load(const QString& sEntry) const
{
    for (const stDef_Row& stRow : vm_arRows) {
        const stDef_Value& st = stRow.stValue;
        QString sValue;
        st.stNode.pDocument->m_F_n_GetValue(PathOf(st.stNode.sPath, sEntry), QString::fromLatin1(st.pszKey), sValue,
                                            QString::fromUtf8(st.pszDefault));
        stRow.fnShow(sValue);
    }
}

bool CValueRows::m_F_b_Store(const QString& sEntry, const Substitute& fnSubstitute) const
{
    const auto Target = [&fnSubstitute](const stDef_Row& stRow) {
        CXmlObj* const pDocument = stRow.stValue.stNode.pDocument;
        return fnSubstitute ? fnSubstitute(pDocument) : pDocument;
    };
    const auto IsClosed = [&Target](const stDef_Row& stRow) {
        return stRow.fnStored && !Target(stRow)->m_F_b_IsOpen();
    };
    if (std::any_of(vm_arRows.begin(), vm_arRows.end(), IsClosed))
        return false;
    for (const stDef_Row& stRow : vm_arRows) {
        const stDef_Value& st = stRow.stValue;
        const QString& sPath = st.sWrittenPath.isEmpty() ? PathOf(st.stNode.sPath, sEntry) : st.sWrittenPath;
        if (stRow.fnStored)
            Target(stRow)->m_F_b_SetValue(sPath, QString::fromLatin1(st.pszKey), stRow.fnStored());
    }
    return true;
}
