#include "toolkit/form/CDocumentWatch.h"

#include <algorithm>
#include <map>

#include "host/Lib_Bedrock.h"

void CDocumentWatch::m_S_Begin(const QList<CXmlObj*>& arDocuments)
{
    vm_arRows.clear();
    for (CXmlObj* const pDocument : arDocuments)
        vm_arRows.push_back({pDocument, pDocument->m_F_s_GetXML()});
}

bool CDocumentWatch::m_F_b_Changed(const Store& fnStore) const
{
    std::map<const CXmlObj*, CXmlObj> mapCopies;
    fnStore([&mapCopies](CXmlObj* pDocument) {
        const auto [it, bNew] = mapCopies.try_emplace(pDocument);
        if (bNew && pDocument->m_F_b_IsOpen())
            it->second.m_F_b_LoadXML(pDocument->m_F_s_GetXML());
        return &it->second;
    });
    return std::any_of(vm_arRows.begin(), vm_arRows.end(), [&mapCopies](const stDef_Row& stRow) {
        const auto it = mapCopies.find(stRow.pDocument);
        const CXmlObj& xmlAfter = it == mapCopies.end() ? *stRow.pDocument : it->second;
        return xmlAfter.m_F_s_GetXML() != stRow.sText;
    });
}
