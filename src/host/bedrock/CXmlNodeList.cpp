#include "host/bedrock/CXmlNodeList.h"

#include <pugixml.hpp>

namespace {

pugi::xml_node ToNode(void* pNode)
{
    return pugi::xml_node(static_cast<pugi::xml_node_struct*>(pNode));
}

// Walks on from objLast (null: from the start) to the next element whose chain of names below objTop is arNames.
pugi::xml_node Advance(pugi::xml_node objTop, pugi::xml_node objLast, const QList<QByteArray>& arNames)
{
    const qsizetype nDeepest = arNames.size() - 1;
    qsizetype nLevel = objLast ? nDeepest : 0;
    pugi::xml_node objParent = objLast ? objLast.parent() : objTop;
    pugi::xml_node objNode =
        objLast ? objLast.next_sibling(arNames[nLevel].constData()) : objTop.child(arNames[nLevel].constData());
    for (;;) {
        if (objNode) {
            if (nLevel == nDeepest)
                return objNode;
            objParent = objNode;
            objNode = objParent.child(arNames[++nLevel].constData());
        } else {
            if (nLevel == 0)
                return {};
            objNode = objParent.next_sibling(arNames[--nLevel].constData());
            objParent = objParent.parent();
        }
    }
}

} // namespace

QString CXmlNode::m_F_s_Name() const
{
    return QString::fromUtf8(ToNode(vm_pNode).name());
}

CXmlNode CXmlNodeList::m_F_o_NextNode()
{
    const bool bFinished = vm_bStarted && vm_objLast.m_F_b_IsNull();
    if (vm_objTop.m_F_b_IsNull() || bFinished)
        return {};
    if (vm_arNames.isEmpty())
        vm_objLast = vm_bStarted ? CXmlNode() : vm_objTop;
    else
        vm_objLast.vm_pNode =
            Advance(ToNode(vm_objTop.vm_pNode), ToNode(vm_objLast.vm_pNode), vm_arNames).internal_object();
    vm_bStarted = true;
    return vm_objLast;
}

void CXmlNodeList::m_S_Reset()
{
    vm_objLast = {};
    vm_bStarted = false;
}
