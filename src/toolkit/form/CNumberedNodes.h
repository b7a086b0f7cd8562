#pragma once

#include <QString>

class CXmlObj;

/// A list as the recorder's documents keep it: children `Stem%03d` of one node, numbered from 0 without gaps, and their
/// number in the node's `count`. The document is borrowed; a closed one reads as an empty list and takes no change.
class CNumberedNodes
{
public:
    /// `sParent` is the list's node, as "/root/EMail"; `sStem` the name of its children without the number.
    CNumberedNodes(CXmlObj* pDocument, const QString& sParent, const QString& sStem);

    /// What `count` says; 0 where it is missing or negative, and never more than any recorder has.
    int m_F_n_Count() const;
    QString m_F_s_Name(int nIndex) const; ///< "Mail007"
    QString m_F_s_Path(int nIndex) const; ///< "/root/EMail/Mail007"

    /// Counts one more node and returns its number; the node itself comes with the first value that is written to it.
    int m_F_n_Append();
    /// Removes a node and moves those behind it down by one.
    void m_S_Remove(int nIndex);
    void m_S_RemoveAll();
    /// Exchanges two nodes, by way of a name that no list has.
    void m_S_Swap(int nFirst, int nSecond);

private:
    void m_S_SetCount(int nCount);

    CXmlObj* vm_pDocument;
    QString vm_sParent;
    QString vm_sStem;
};
