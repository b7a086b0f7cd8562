#include "host/bedrock/CXmlChildIndex.h"

CXmlChildIndex::Handle CXmlChildIndex::m_F_p_Find(Handle pParent, std::string_view sName) const
{
    const Names& arNames = vm_arParents.at(pParent);
    const auto it = arNames.find(sName);
    return it == arNames.end() ? nullptr : it->second.pFirst;
}

void CXmlChildIndex::m_S_Append(Handle pParent, Handle pChild, std::string_view sName)
{
    const auto itParent = vm_arParents.find(pParent);
    if (itParent == vm_arParents.end())
        return;
    st_Entry& stEntry = itParent->second[sName];
    if (stEntry.nCount++ == 0)
        stEntry.pFirst = pChild;
}

void CXmlChildIndex::m_S_RemoveFirst(Handle pParent, std::string_view sName)
{
    const auto itParent = vm_arParents.find(pParent);
    if (itParent == vm_arParents.end())
        return;
    const auto it = itParent->second.find(sName);
    if (it != itParent->second.end() && it->second.nCount == 1)
        itParent->second.erase(it);
    else
        vm_arParents.erase(itParent);
}

void CXmlChildIndex::m_S_Insert(Handle pParent, Handle pChild, std::string_view sName)
{
    const auto itParent = vm_arParents.find(pParent);
    if (itParent == vm_arParents.end())
        return;
    // Which of two of one name comes first isn't known here.
    if (!itParent->second.try_emplace(sName, st_Entry{pChild, 1}).second)
        vm_arParents.erase(itParent);
}
