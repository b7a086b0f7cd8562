#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include "host/Export.h"

/// A handle of one element of a `CXmlObj`, not owned. It is good until that element or one above it is removed, or the
/// document is loaded anew, closed or destroyed; using it later is undefined.
class LIB_BEDROCK_EXPORT CXmlNode
{
public:
    CXmlNode() = default;
    bool m_F_b_IsNull() const { return !vm_pNode; }
    QString m_F_s_Name() const; ///< empty for a null handle

private:
    friend class CXmlObj;
    friend class CXmlNodeList;
    explicit CXmlNode(void* pNode) : vm_pNode(pNode) {}

    void* vm_pNode = nullptr;
};

/// Forward cursor over the elements at one path, in document order. It looks for the next one as it goes, so elements
/// that are appended meanwhile are met too; the cursor is good as long as the handle that it gave last.
class LIB_BEDROCK_EXPORT CXmlNodeList
{
public:
    CXmlNode m_F_o_NextNode(); ///< null after the last one
    void m_S_Reset();          ///< stands before the first one again

private:
    friend class CXmlObj;

    QList<QByteArray> vm_arNames; ///< path below the top element, UTF-8
    CXmlNode vm_objTop;           ///< null: the list is empty
    CXmlNode vm_objLast;          ///< given last
    bool vm_bStarted = false;
};
