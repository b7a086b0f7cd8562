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
        stRow.fnShow(st.stNode.pDocument->m_F_s_Value(PathOf(st.stNode.sPath, sEntry), QString::fromLatin1(st.pszKey),
                                                      QString::fromUtf8(st.pszDefault)));
    }
}

void CValueRows::m_S_ShowDefaults() const
{
    for (const stDef_Row& stRow : vm_arRows)
        stRow.fnShow(QString::fromUtf8(stRow.stValue.pszDefault));
}

QList<QWidget*> CValueRows::m_F_ar_Unknown() const
{
    QList<QWidget*> arUnknown;
    for (const stDef_List& stList : vm_arLists) {
        const stDef_Value& stValue = stList.stValue;
        const QString sStored =
            stValue.stNode.pDocument->m_F_s_Value(stValue.stNode.sPath, QString::fromLatin1(stValue.pszKey));
        if (!sStored.isEmpty() && !stList.fnKnows(sStored))
            arUnknown.append(stList.pControl);
    }
    return arUnknown;
}

bool CValueRows::m_F_b_CanStore() const
{
    return std::all_of(vm_arRows.begin(), vm_arRows.end(), [](const stDef_Row& stRow) {
        return !stRow.fnStored || stRow.stValue.stNode.pDocument->m_F_b_IsOpen();
    });
}

bool CValueRows::m_F_b_Store(const QString& sEntry, const Substitute& fnSubstitute) const
{
    if (!m_F_b_CanStore())
        return false;
    for (const stDef_Row& stRow : vm_arRows) {
        const stDef_Value& st = stRow.stValue;
        const QString& sPath = st.sWrittenPath.isEmpty() ? PathOf(st.stNode.sPath, sEntry) : st.sWrittenPath;
        if (!stRow.fnStored)
            continue;
        CXmlObj* const pDocument = fnSubstitute ? fnSubstitute(st.stNode.pDocument) : st.stNode.pDocument;
        pDocument->m_F_b_SetValue(sPath, QString::fromLatin1(st.pszKey), stRow.fnStored());
    }
    return true;
}
