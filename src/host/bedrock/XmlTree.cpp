#include "host/bedrock/XmlTree.h"

#include <QByteArray>
#include <algorithm>
#include <cstring>
#include <pugixml.hpp>
#include <string>
#include <string_view>

#include "host/bedrock/CXmlText.h"

namespace {

bool IsLayout(pugi::xml_node objNode)
{
    return objNode.type() == pugi::node_pcdata && CXmlText::s_F_b_IsBlank(objNode.value());
}

// Values may have stood in single quotes; they are written in double ones.
void EscapeQuotes(pugi::xml_node objNode)
{
    for (pugi::xml_attribute objAttribute : objNode.attributes()) {
        if (std::strchr(objAttribute.value(), '"'))
            objAttribute.set_value(QByteArray(objAttribute.value())
                                       .replace(QByteArrayLiteral("\""), QByteArrayLiteral("&quot;"))
                                       .constData());
    }
}

// Line break and indentation before an element that stands on a line of its own; else empty.
std::string_view LineBefore(pugi::xml_node objNode)
{
    const pugi::xml_node objBefore = objNode.previous_sibling();
    if (!IsLayout(objBefore))
        return {};
    const std::string_view sBlanks = objBefore.value();
    std::size_t nBreak = sBlanks.rfind('\n');
    if (nBreak == std::string_view::npos)
        return {};
    if (nBreak > 0 && sBlanks[nBreak - 1] == '\r')
        --nBreak;
    return sBlanks.substr(nBreak);
}

// Layout before a new last child, and behind it where its parent had no child so far.
struct st_Layout
{
    std::string sBefore;
    std::string sBehind;
};

st_Layout LayoutOfNewChild(pugi::xml_node objParent)
{
    pugi::xml_node objLast = objParent.last_child();
    while (objLast && !nsXmlTree::IsElement(objLast))
        objLast = objLast.previous_sibling();
    if (objLast)
        return {std::string(LineBefore(objLast)), {}};

    const std::string_view sOwn = LineBefore(objParent);
    if (sOwn.empty() || objParent.first_child())
        return {};
    const std::string_view sAbove = LineBefore(objParent.parent());
    const std::string_view sBreak = sOwn.substr(0, sOwn.find('\n') + 1);
    const std::string_view sStep = sOwn.substr(std::min(std::max(sAbove.size(), sBreak.size()), sOwn.size()));
    return {std::string(sOwn).append(sStep), std::string(sOwn)};
}

} // namespace

namespace nsXmlTree {

bool IsElement(pugi::xml_node objNode)
{
    return objNode.type() == pugi::node_element;
}

pugi::xml_node CheckTop(const pugi::xml_document& objDocument)
{
    pugi::xml_node objRoot;
    for (const pugi::xml_node objNode : objDocument.children()) {
        switch (objNode.type()) {
        case pugi::node_element:
            if (objRoot)
                return {};
            objRoot = objNode;
            break;
        case pugi::node_pcdata:
            if (!IsLayout(objNode))
                return {};
            break;
        case pugi::node_cdata:
            return {};
        case pugi::node_doctype:
            if (std::strchr(objNode.value(), '[')) // an internal subset: entities of its own
                return {};
            break;
        default:
            break;
        }
    }
    return objRoot;
}

bool CheckTree(pugi::xml_node objRoot, int nDepth)
{
    for (pugi::xml_node objNode = objRoot;;) {
        EscapeQuotes(objNode);
        if (objNode.first_child()) {
            objNode = objNode.first_child();
            if (++nDepth > MaxDepth && IsElement(objNode))
                return false;
            continue;
        }
        while (objNode != objRoot && !objNode.next_sibling()) {
            objNode = objNode.parent();
            --nDepth;
        }
        if (objNode == objRoot)
            return true;
        objNode = objNode.next_sibling();
        if (nDepth > MaxDepth && IsElement(objNode))
            return false;
    }
}

pugi::xml_node AppendElement(pugi::xml_node objParent, const std::string& sName)
{
    const st_Layout stLayout = LayoutOfNewChild(objParent);
    const pugi::xml_node objEnd = objParent.last_child();
    pugi::xml_node objChild = !stLayout.sBefore.empty() && IsLayout(objEnd)
                                  ? objParent.insert_child_before(pugi::node_element, objEnd)
                                  : objParent.append_child(pugi::node_element);
    if (!objChild.set_name(sName.c_str())) {
        objParent.remove_child(objChild);
        return {};
    }
    if (!stLayout.sBefore.empty())
        objParent.insert_child_before(pugi::node_pcdata, objChild).set_value(stLayout.sBefore.c_str());
    if (!stLayout.sBehind.empty())
        objParent.append_child(pugi::node_pcdata).set_value(stLayout.sBehind.c_str());
    return objChild;
}

void RemoveElement(pugi::xml_node objParent, pugi::xml_node objChild)
{
    const pugi::xml_node objBefore = objChild.previous_sibling();
    if (IsLayout(objBefore) && IsLayout(objChild.next_sibling()))
        objParent.remove_child(objBefore);
    objParent.remove_child(objChild);
    if (IsLayout(objParent.first_child()) && objParent.first_child() == objParent.last_child())
        objParent.remove_child(objParent.first_child());
}

void AppendText(pugi::xml_node objNode, QString& sOut)
{
    for (const pugi::xml_node objChild : objNode.children()) {
        if (IsElement(objChild))
            AppendText(objChild, sOut);
        else if (objChild.type() == pugi::node_cdata)
            sOut += CXmlText::s_F_s_FromCData(objChild.value());
        else if (objChild.type() == pugi::node_pcdata && !IsLayout(objChild))
            sOut += CXmlText::s_F_s_FromContent(objChild.value());
    }
}

} // namespace nsXmlTree
