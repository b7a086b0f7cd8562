#pragma once

#include <QString>

class CXmlObj;

/// A list as the recorder's documents keep it: children `Stem%03d` of one node, numbered from 0 without gaps, and their
/// number in an attribute of the node. The document is borrowed; a closed one reads as an empty list and takes no
/// change.
class CNumberedNodes
{
public:
    /// `sParent` is the list's node, as "/root/EMail"; `sStem` the name of its children without the number.
    /// `pszCountKey` is the attribute with their number; null for a list that keeps none: it counts 0, and is changed
    /// by what says how long it is. `nCountIfMissing` is how many there are where the attribute is missing.
    CNumberedNodes(CXmlObj* pDocument, const QString& sParent, const QString& sStem, const char* pszCountKey = "count",
                   int nCountIfMissing = 0);

    /// What the document says; 0 where it is negative, and never more than any recorder has.
    int m_F_n_Count() const;
    void m_S_SetCount(int nCount);
    QString m_F_s_Name(int nIndex) const; ///< "Mail007"
    QString m_F_s_Path(int nIndex) const; ///< "/root/EMail/Mail007"

    /// Counts one more node and returns its number; the node itself comes with the first value that is written to it.
    int m_F_n_Append();
    /// Removes a node and moves those behind it down by one.
    void m_S_Remove(int nIndex);
    /// The same for a list that is to have `nLeft` nodes afterwards; counts nothing.
    void m_S_TakeOut(int nIndex, int nLeft);
    void m_S_RemoveAll();
    /// The same for a list of `nCount` nodes; counts nothing.
    void m_S_TakeOutAll(int nCount);
    /// Exchanges two nodes, by way of a name that no list has.
    void m_S_Swap(int nFirst, int nSecond);

private:
    CXmlObj* vm_pDocument;
    QString vm_sParent;
    QString vm_sStem;
    QString vm_sCountKey;
    int vm_nCountIfMissing;
};
