#pragma once

#include <string_view>
#include <unordered_map>

/// First child by name, for the elements with so many children that walking them costs too much.
///
/// Names are views of the document's own memory: tell of a removal or renaming before it is done. An entry that can't
/// be kept right cheaply (several children of one name) drops its whole parent, which is then indexed anew when needed.
class CXmlChildIndex
{
public:
    using Handle = const void*; ///< an element of the document

    bool m_F_b_Has(Handle pParent) const { return !vm_arParents.empty() && vm_arParents.contains(pParent); }
    /// The first child of that name; null if there is none. Only for a parent that is indexed.
    Handle m_F_p_Find(Handle pParent, std::string_view sName) const;

    /// Begins the index of a parent; every child is then told by `m_S_Append`, in order.
    void m_S_Begin(Handle pParent) { vm_arParents[pParent].clear(); }
    /// A child was added behind all others. A parent without an index is left without one, here and below.
    void m_S_Append(Handle pParent, Handle pChild, std::string_view sName);
    /// The first child of that name goes, or changes its name.
    void m_S_RemoveFirst(Handle pParent, std::string_view sName);
    /// A child in the middle has a new name.
    void m_S_Insert(Handle pParent, Handle pChild, std::string_view sName);
    void m_S_Drop(Handle pParent) { vm_arParents.erase(pParent); }
    bool m_F_b_IsEmpty() const { return vm_arParents.empty(); }

private:
    struct st_Entry
    {
        Handle pFirst = nullptr;
        int nCount = 0;
    };
    using Names = std::unordered_map<std::string_view, st_Entry>;

    std::unordered_map<Handle, Names> vm_arParents;
};
