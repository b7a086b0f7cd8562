#pragma once

#include <QString>
#include <string>

namespace pugi {
class xml_document;
class xml_node;
} // namespace pugi

/// What `CXmlObj` does to the nodes of a parsed document: checks, and edits that keep the layout around them.
namespace nsXmlTree {

constexpr int MaxDepth = 256; ///< of nested elements

bool IsElement(pugi::xml_node objNode);

/// The document element, if what stands beside it on the top level is allowed there; else null.
pugi::xml_node CheckTop(const pugi::xml_document& objDocument);
/// Looks at every node once, without recursion. False if elements are nested too deep; the first one stands at
/// `nDepth`.
bool CheckTree(pugi::xml_node objRoot, int nDepth = 1);

/// A new last child, on a line of its own where its neighbours have one. Null if the name can't be stored.
pugi::xml_node AppendElement(pugi::xml_node objParent, const std::string& sName);
/// Takes a child out together with its line.
void RemoveElement(pugi::xml_node objParent, pugi::xml_node objChild);

/// Appends the text of a node and all below it, without the blanks that are only layout.
void AppendText(pugi::xml_node objNode, QString& sOut);

} // namespace nsXmlTree
