#include "host/bedrock/CXmlObj.h"
#include "host/Platform.h"

#include <QFile>
#include <QSaveFile>
#include <algorithm>
#include <cstring>
#include <pugixml.hpp>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/bedrock/CSFunc.h"
#include "host/bedrock/CXmlChildIndex.h"
#include "host/bedrock/CXmlEncoding.h"
#include "host/bedrock/CXmlPath.h"
#include "host/bedrock/CXmlText.h"
#include "host/bedrock/XmlTree.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype g_nMaxBytes = 16 * 1024 * 1024;
constexpr std::size_t g_nMaxKnown = 65536; // paths remembered
constexpr int g_nIndexFrom = 16;           // children beyond which a parent gets an index

// References and line ends are left as written and translated at each read: so all of it goes back as it came.
// As a fragment, text around the document element is seen, and can be refused.
constexpr unsigned int g_nParse = pugi::parse_pi | pugi::parse_comments | pugi::parse_cdata | pugi::parse_ws_pcdata |
                                  pugi::parse_declaration | pugi::parse_doctype | pugi::parse_fragment;
constexpr unsigned int g_nFormat = pugi::format_raw | pugi::format_no_escapes | pugi::format_no_declaration;

pugi::xml_node ToNode(const void* pNode)
{
    return pugi::xml_node(static_cast<pugi::xml_node_struct*>(const_cast<void*>(pNode)));
}

// True if the text of an attribute is its meaning, so that it can be taken over as it stands.
bool IsPlain(const char* pszRaw)
{
    for (; *pszRaw; ++pszRaw) {
        if (*pszRaw == '&' || *pszRaw == '<' || *pszRaw == '"' || static_cast<unsigned char>(*pszRaw) < 0x20)
            return false;
    }
    return true;
}

// Finds the attributes of a node for names that differ and are asked for in about their order, in one walk. Of double
// ones the first counts: it is ahead of the walk, or among those that were passed.
class CFirstAttributes
{
public:
    explicit CFirstAttributes(pugi::xml_node objNode) : vm_objNext(objNode.first_attribute()) {}

    pugi::xml_attribute m_F_o_Next(const char* pszKey)
    {
        const auto bKey = [pszKey](pugi::xml_attribute obj) { return std::strcmp(obj.name(), pszKey) == 0; };
        if (const auto it = std::find_if(vm_arPassed.begin(), vm_arPassed.end(), bKey); it != vm_arPassed.end())
            return *it;
        pugi::xml_attribute objFound = vm_objNext;
        while (objFound && !bKey(objFound))
            objFound = objFound.next_attribute();
        if (!objFound)
            return {};
        for (; vm_objNext != objFound; vm_objNext = vm_objNext.next_attribute())
            vm_arPassed.push_back(vm_objNext);
        vm_objNext = objFound.next_attribute();
        return objFound;
    }

private:
    pugi::xml_attribute vm_objNext;
    std::vector<pugi::xml_attribute> vm_arPassed;
};

class CStringWriter : public pugi::xml_writer
{
public:
    void write(const void* pData, std::size_t nSize) override { sText.append(static_cast<const char*>(pData), nSize); }

    std::string sText;
};

} // namespace

struct CXmlObj::st_Impl
{
    bool m_F_b_Parse(const QString& sXml);
    pugi::xml_node m_F_o_Child(pugi::xml_node objParent, std::string_view sName);
    pugi::xml_node m_F_o_Node(const QString& sPath);
    pugi::xml_node m_F_o_Find(const CXmlPath& objPath);
    pugi::xml_node m_F_o_MakeNode(const CXmlPath& objPath);
    void m_S_BeforeMove(pugi::xml_node objParent, std::string_view sName);
    pugi::xml_node m_F_o_Append(pugi::xml_node objParent, std::string_view sName);
    pugi::xml_attribute m_F_o_Attribute(const QString& sPath, const QString& sKey);
    pugi::xml_node m_F_o_NodeToSet(const QString& sPath);
    bool m_F_b_SetAttribute(pugi::xml_node objNode, const char* pszKey, pugi::xml_attribute objAttribute,
                            const QString& sValue);
    void m_S_Forget(pugi::xml_node objTop);
    void m_S_Index(pugi::xml_node objParent);
    bool m_F_b_Starts(const CXmlPath& objPath) const;

    QByteArray vm_sBytes; // the parser works in it, the document points into it
    pugi::xml_document vm_objDocument;
    pugi::xml_node vm_objRoot;
    std::unordered_map<QString, pugi::xml_node> vm_arKnown;
    QString vm_sSource; // the text as it was loaded; null once the document was changed
    CXmlChildIndex vm_objIndex;
};

bool CXmlObj::st_Impl::m_F_b_Parse(const QString& sXml)
{
    const QStringView sText = sXml.startsWith(QChar::ByteOrderMark) ? QStringView(sXml).sliced(1) : QStringView(sXml);
    if (sText.isEmpty() || sText.size() > g_nMaxBytes || sText.contains(QChar::Null))
        return false;
    vm_sBytes = sText.toUtf8();
    if (vm_sBytes.size() > g_nMaxBytes)
        return false;
    // With its closing zero: the parser overwrites the last byte that it is given, and blanks there would be lost.
    const auto nSize = static_cast<std::size_t>(vm_sBytes.size()) + 1;
    if (!vm_objDocument.load_buffer_inplace(vm_sBytes.data(), nSize, g_nParse, pugi::encoding_utf8))
        return false;
    vm_objRoot = nsXmlTree::CheckTop(vm_objDocument);
    vm_sSource = sText.size() == sXml.size() ? sXml : sText.toString();
    return vm_objRoot && nsXmlTree::CheckTree(vm_objRoot);
}

void CXmlObj::st_Impl::m_S_Index(pugi::xml_node objParent)
{
    vm_objIndex.m_S_Begin(objParent.internal_object());
    for (const pugi::xml_node objChild : objParent.children()) {
        if (nsXmlTree::IsElement(objChild))
            vm_objIndex.m_S_Append(objParent.internal_object(), objChild.internal_object(), objChild.name());
    }
}

pugi::xml_node CXmlObj::st_Impl::m_F_o_Child(pugi::xml_node objParent, std::string_view sName)
{
    if (!vm_objIndex.m_F_b_Has(objParent.internal_object())) {
        int nWalked = 0;
        pugi::xml_node objChild = objParent.first_child();
        for (; objChild && nWalked < g_nIndexFrom; objChild = objChild.next_sibling(), ++nWalked) {
            if (nsXmlTree::IsElement(objChild) && sName == objChild.name())
                return objChild;
        }
        if (!objChild)
            return {};
        m_S_Index(objParent);
    }
    return ToNode(vm_objIndex.m_F_p_Find(objParent.internal_object(), sName));
}

bool CXmlObj::st_Impl::m_F_b_Starts(const CXmlPath& objPath) const
{
    return objPath.m_F_b_IsValid() &&
           (!objPath.m_F_b_IsAbsolute() || objPath.m_F_ar_Names().front() == vm_objRoot.name());
}

// Pages read many attributes of the same few nodes: a path that was found is remembered until a node goes or changes
// its name. Nodes are only ever appended, so the first one of a path stays the first.
pugi::xml_node CXmlObj::st_Impl::m_F_o_Node(const QString& sPath)
{
    if (const auto it = vm_arKnown.find(sPath); it != vm_arKnown.end())
        return it->second;
    const pugi::xml_node objNode = m_F_o_Find(CXmlPath(sPath));
    if (objNode) {
        if (vm_arKnown.size() >= g_nMaxKnown)
            vm_arKnown.clear();
        vm_arKnown.emplace(sPath, objNode);
    }
    return objNode;
}

pugi::xml_node CXmlObj::st_Impl::m_F_o_Find(const CXmlPath& objPath)
{
    if (!m_F_b_Starts(objPath))
        return {};
    const auto& arNames = objPath.m_F_ar_Names();
    pugi::xml_node objNode = vm_objRoot;
    for (auto it = arNames.begin() + (objPath.m_F_b_IsAbsolute() ? 1 : 0); objNode && it != arNames.end(); ++it)
        objNode = m_F_o_Child(objNode, *it);
    return objNode;
}

pugi::xml_node CXmlObj::st_Impl::m_F_o_Append(pugi::xml_node objParent, std::string_view sName)
{
    const pugi::xml_node objChild = nsXmlTree::AppendElement(objParent, std::string(sName));
    if (objChild) {
        vm_sSource = QString();
        vm_objIndex.m_S_Append(objParent.internal_object(), objChild.internal_object(), objChild.name());
    }
    return objChild;
}

// The node of the path, made if it is missing. Nothing is made unless all of it can stand in a document.
pugi::xml_node CXmlObj::st_Impl::m_F_o_MakeNode(const CXmlPath& objPath)
{
    if (!m_F_b_Starts(objPath))
        return {};
    const auto& arNames = objPath.m_F_ar_Names();
    auto it = arNames.begin() + (objPath.m_F_b_IsAbsolute() ? 1 : 0);
    if (arNames.end() - it >= nsXmlTree::MaxDepth)
        return {};

    pugi::xml_node objNode = vm_objRoot;
    for (; it != arNames.end(); ++it) {
        const pugi::xml_node objChild = m_F_o_Child(objNode, *it);
        if (!objChild)
            break;
        objNode = objChild;
    }
    const auto bName = [](std::string_view sName) {
        return CXmlText::s_F_b_IsName(QString::fromUtf8(sName.data(), static_cast<qsizetype>(sName.size())));
    };
    if (!std::all_of(it, arNames.end(), bName))
        return {};
    for (; objNode && it != arNames.end(); ++it)
        objNode = m_F_o_Append(objNode, *it);
    return objNode;
}

pugi::xml_attribute CXmlObj::st_Impl::m_F_o_Attribute(const QString& sPath, const QString& sKey)
{
    return m_F_o_Node(sPath).attribute(CXmlUtf8(sKey).m_F_p_Text());
}

// The node of the path, made if it is missing.
pugi::xml_node CXmlObj::st_Impl::m_F_o_NodeToSet(const QString& sPath)
{
    const pugi::xml_node objNode = m_F_o_Node(sPath);
    return objNode ? objNode : m_F_o_MakeNode(CXmlPath(sPath));
}

// `objAttribute` is the node's one of that key, or none.
bool CXmlObj::st_Impl::m_F_b_SetAttribute(pugi::xml_node objNode, const char* pszKey, pugi::xml_attribute objAttribute,
                                          const QString& sValue)
{
    // Pages store all they show, changed or not: a value that stays leaves the document as it was.
    if (objAttribute && CXmlText::s_F_s_FromAttribute(objAttribute.value()) == sValue)
        return true;
    if (!objAttribute)
        objAttribute = objNode.append_attribute(pszKey);
    vm_sSource = QString();
    return objAttribute.set_value(CXmlText::s_F_s_ToAttribute(sValue).constData());
}

// Drops what the index holds of an element that goes, and of all below it.
void CXmlObj::st_Impl::m_S_Forget(pugi::xml_node objTop)
{
    if (vm_objIndex.m_F_b_IsEmpty())
        return;
    vm_objIndex.m_S_Drop(objTop.internal_object());
    for (const pugi::xml_node objChild : objTop.children()) {
        if (nsXmlTree::IsElement(objChild))
            m_S_Forget(objChild);
    }
}

// The first child of that name is about to go or to change its name.
void CXmlObj::st_Impl::m_S_BeforeMove(pugi::xml_node objParent, std::string_view sName)
{
    vm_sSource = QString();
    vm_arKnown = decltype(vm_arKnown)(); // to clear a table that was large once costs its size each time
    vm_objIndex.m_S_RemoveFirst(objParent.internal_object(), sName);
}

CXmlObj::CXmlObj() = default;
CXmlObj::~CXmlObj() = default;
CXmlObj::CXmlObj(CXmlObj&&) noexcept = default;
CXmlObj& CXmlObj::operator=(CXmlObj&&) noexcept = default;

bool CXmlObj::m_F_b_LoadXML(const QString& sXml)
{
    auto pImpl = std::make_unique<st_Impl>();
    vm_pImpl.reset();
    if (!pImpl->m_F_b_Parse(sXml))
        return false;
    vm_pImpl = std::move(pImpl);
    return true;
}

bool CXmlObj::m_F_b_LoadXMLFile(const QString& sPath)
{
    m_F_b_Close();
    QFile objFile(sPath);
    if (!Platform::s_F_b_OpenPlain(objFile))
        return false;
    // Piece by piece: a read sets aside all that it is allowed, whatever there is. UTF-32 takes four bytes a character.
    QByteArray sBytes;
    for (QByteArray sPiece; sBytes.size() < 4 * g_nMaxBytes && !(sPiece = objFile.read(1 << 16)).isEmpty();)
        sBytes += sPiece;
    QString sText;
    return CXmlEncoding::s_F_b_Decode(sBytes, sText) && m_F_b_LoadXML(sText);
}

bool CXmlObj::m_F_b_Save(const QString& sPath) const
{
    if (!vm_pImpl || sPath.isEmpty())
        return false;
    const QByteArray sBytes = m_F_s_GetUtf8();
    QSaveFile objFile(sPath);
    return objFile.open(QIODevice::WriteOnly) && objFile.write(sBytes) == sBytes.size() && objFile.commit();
}

bool CXmlObj::m_F_b_Close()
{
    vm_pImpl.reset();
    return true;
}

bool CXmlObj::m_F_b_IsOpen() const
{
    return vm_pImpl != nullptr;
}

QString CXmlObj::m_F_s_GetXML() const
{
    if (!vm_pImpl)
        return {};
    if (!vm_pImpl->vm_sSource.isNull())
        return vm_pImpl->vm_sSource;
    CStringWriter objWriter;
    objWriter.sText.reserve(static_cast<std::size_t>(vm_pImpl->vm_sBytes.size()));
    vm_pImpl->vm_objDocument.save(objWriter, "", g_nFormat, pugi::encoding_utf8);
    return QString::fromUtf8(objWriter.sText.data(), static_cast<qsizetype>(objWriter.sText.size()));
}

QByteArray CXmlObj::m_F_s_GetUtf8() const
{
    return CSFunc::s_F_s_UnicodeToUtf8(CXmlEncoding::s_F_s_Declared(m_F_s_GetXML(), u"UTF-8"_s));
}

int CXmlObj::m_F_n_GetValue(const QString& sPath, const QString& sKey, QString& sOut, const QString& sDefault) const
{
    const pugi::xml_attribute objAttribute = vm_pImpl ? vm_pImpl->m_F_o_Attribute(sPath, sKey) : pugi::xml_attribute();
    sOut = objAttribute ? CXmlText::s_F_s_FromAttribute(objAttribute.value()) : sDefault;
    return objAttribute ? 1 : 0;
}

QString CXmlObj::m_F_s_Value(const QString& sPath, const QString& sKey, const QString& sDefault) const
{
    QString sValue;
    m_F_n_GetValue(sPath, sKey, sValue, sDefault);
    return sValue;
}

qint32 CXmlObj::m_F_n_GetValueInt(const QString& sPath, const QString& sKey, qint32 nDefault) const
{
    const pugi::xml_attribute objAttribute = vm_pImpl ? vm_pImpl->m_F_o_Attribute(sPath, sKey) : pugi::xml_attribute();
    return objAttribute ? CXmlText::s_F_n_ToInt(objAttribute.value()) : nDefault;
}

int CXmlObj::m_F_n_GetText(const QString& sPath, QString& sOut, const QString& sDefault) const
{
    const pugi::xml_node objNode = vm_pImpl ? vm_pImpl->m_F_o_Node(sPath) : pugi::xml_node();
    QString sText = objNode ? u""_s : sDefault;
    nsXmlTree::AppendText(objNode, sText);
    sOut = std::move(sText);
    return objNode ? 1 : 0;
}

bool CXmlObj::m_F_b_SetValue(const QString& sPath, const QString& sKey, const QString& sValue)
{
    if (!vm_pImpl || !CXmlText::s_F_b_IsName(sKey))
        return false;
    const pugi::xml_node objNode = vm_pImpl->m_F_o_NodeToSet(sPath);
    if (!objNode)
        return false;
    const QByteArray sName = sKey.toUtf8();
    return vm_pImpl->m_F_b_SetAttribute(objNode, sName.constData(), objNode.attribute(sName.constData()), sValue);
}

bool CXmlObj::m_F_b_SetValue(const QString& sPath, const QString& sKey, qint32 nValue)
{
    return m_F_b_SetValue(sPath, sKey, QString::number(nValue));
}

bool CXmlObj::m_F_b_CopyValues(const CXmlObj& xmlFrom, const QString& sFrom, const QString& sTo,
                               std::span<const st_CopyKey> arKeys)
{
    const pugi::xml_node objTo = vm_pImpl ? vm_pImpl->m_F_o_NodeToSet(sTo) : pugi::xml_node();
    if (!objTo)
        return false;
    const pugi::xml_node objFrom = xmlFrom.vm_pImpl ? xmlFrom.vm_pImpl->m_F_o_Node(sFrom) : pugi::xml_node();
    const bool bNew = !objTo.first_attribute(); // then none needs to be looked for
    CFirstAttributes objSources(objFrom);
    for (const st_CopyKey& stKey : arKeys) {
        const pugi::xml_attribute objSource = objSources.m_F_o_Next(stKey.pszKey);
        const pugi::xml_attribute objTarget = bNew ? pugi::xml_attribute() : objTo.attribute(stKey.pszKey);
        const char* const pszRaw = objSource ? objSource.value() : stKey.pszDefault;
        if (!stKey.pValue && !objTarget && IsPlain(pszRaw)) {
            vm_pImpl->vm_sSource = QString();
            pugi::xml_node(objTo).append_attribute(stKey.pszKey).set_value(pszRaw);
        } else {
            vm_pImpl->m_F_b_SetAttribute(objTo, stKey.pszKey, objTarget,
                                         stKey.pValue ? *stKey.pValue : CXmlText::s_F_s_FromAttribute(pszRaw));
        }
    }
    return true;
}

bool CXmlObj::m_F_b_AddNods(const QString& sParent, const QString& sName)
{
    if (!vm_pImpl || !CXmlText::s_F_b_IsName(sName))
        return false;
    const CXmlPath objPath(sParent);
    const pugi::xml_node objParent = vm_pImpl->m_F_o_Find(objPath);
    const qsizetype nDepth = objPath.m_F_ar_Names().size() + (objPath.m_F_b_IsAbsolute() ? 0 : 1);
    if (!objParent || nDepth >= nsXmlTree::MaxDepth)
        return false;
    return !vm_pImpl->m_F_o_Append(objParent, CXmlUtf8(sName).m_F_s_View()).empty();
}

bool CXmlObj::m_F_b_RemoveNods(const QString& sParent, const QString& sName)
{
    if (!vm_pImpl)
        return false;
    const CXmlUtf8 objName(sName);
    const pugi::xml_node objParent = vm_pImpl->m_F_o_Node(sParent);
    const pugi::xml_node objChild = vm_pImpl->m_F_o_Child(objParent, objName.m_F_s_View());
    if (!objChild)
        return false;
    vm_pImpl->m_S_BeforeMove(objParent, objName.m_F_s_View());
    vm_pImpl->m_S_Forget(objChild);
    nsXmlTree::RemoveElement(objParent, objChild);
    return true;
}

bool CXmlObj::m_F_b_RenameNods(const QString& sParent, const QString& sOldName, const QString& sNewName)
{
    if (!vm_pImpl || !CXmlText::s_F_b_IsName(sNewName))
        return false;
    const CXmlUtf8 objName(sOldName);
    const pugi::xml_node objParent = vm_pImpl->m_F_o_Node(sParent);
    pugi::xml_node objChild = vm_pImpl->m_F_o_Child(objParent, objName.m_F_s_View());
    if (!objChild)
        return false;
    if (sOldName == sNewName)
        return true;
    vm_pImpl->m_S_BeforeMove(objParent, objName.m_F_s_View());
    if (!objChild.set_name(sNewName.toUtf8().constData())) {
        vm_pImpl->vm_objIndex.m_S_Drop(objParent.internal_object());
        return false;
    }
    vm_pImpl->vm_objIndex.m_S_Insert(objParent.internal_object(), objChild.internal_object(), objChild.name());
    return true;
}

QString CXmlObj::m_F_s_GetNods(const QString& sPath) const
{
    const pugi::xml_node objNode = vm_pImpl ? vm_pImpl->m_F_o_Node(sPath) : pugi::xml_node();
    if (!objNode)
        return {};
    CStringWriter objWriter;
    objNode.print(objWriter, "", g_nFormat, pugi::encoding_utf8);
    return QString::fromUtf8(objWriter.sText.data(), static_cast<qsizetype>(objWriter.sText.size()));
}

bool CXmlObj::m_F_b_SetNods(const QString& sParent, const QString& sName, const QString& sXml)
{
    if (sXml.isEmpty())
        return m_F_b_RemoveNods(sParent, sName);
    const CXmlPath objPath(sParent);
    const CXmlUtf8 objName(sName);
    const pugi::xml_node objParent = vm_pImpl ? vm_pImpl->m_F_o_Find(objPath) : pugi::xml_node();
    const int nDepth = static_cast<int>(objPath.m_F_ar_Names().size()) + (objPath.m_F_b_IsAbsolute() ? 1 : 2);
    st_Impl objText;
    if (!objParent || !objText.m_F_b_Parse(sXml) || objName.m_F_s_View() != objText.vm_objRoot.name() ||
        !nsXmlTree::CheckTree(objText.vm_objRoot, nDepth))
        return false;
    pugi::xml_node objOld = vm_pImpl->m_F_o_Child(objParent, objName.m_F_s_View());
    if (!objOld)
        objOld = vm_pImpl->m_F_o_Append(objParent, objName.m_F_s_View()); // finds its place in the layout
    vm_pImpl->m_S_BeforeMove(objParent, objName.m_F_s_View());
    vm_pImpl->m_S_Forget(objOld);
    const pugi::xml_node objNew = pugi::xml_node(objParent).insert_copy_before(objText.vm_objRoot, objOld);
    pugi::xml_node(objParent).remove_child(objOld);
    vm_pImpl->vm_objIndex.m_S_Insert(objParent.internal_object(), objNew.internal_object(), objNew.name());
    return true;
}

CXmlNodeList CXmlObj::m_S_SelectNodesByKey(const QString& sPath) const
{
    CXmlNodeList objList;
    const CXmlPath objPath(sPath);
    if (!vm_pImpl || !vm_pImpl->m_F_b_Starts(objPath))
        return objList;
    objList.vm_objTop = CXmlNode(vm_pImpl->vm_objRoot.internal_object());
    for (const std::string_view sName : objPath.m_F_ar_Names())
        objList.vm_arNames.append(QByteArray(sName.data(), static_cast<qsizetype>(sName.size())));
    if (objPath.m_F_b_IsAbsolute())
        objList.vm_arNames.removeFirst();
    return objList;
}

QString CXmlObj::s_F_s_GetNodeText(const CXmlNode& objNode)
{
    QString sText;
    nsXmlTree::AppendText(ToNode(objNode.vm_pNode), sText);
    return sText;
}

void CXmlObj::s_S_GetNodeVal(const CXmlNode& objNode, const QString& sKey, QString& sOut, const QString& sDefault)
{
    const pugi::xml_attribute objAttribute = ToNode(objNode.vm_pNode).attribute(CXmlUtf8(sKey).m_F_p_Text());
    sOut = objAttribute ? CXmlText::s_F_s_FromAttribute(objAttribute.value()) : sDefault;
}

qint32 CXmlObj::s_F_n_GetNodeValInt(const CXmlNode& objNode, const QString& sKey, qint32 nDefault)
{
    const pugi::xml_attribute objAttribute = ToNode(objNode.vm_pNode).attribute(CXmlUtf8(sKey).m_F_p_Text());
    return objAttribute ? CXmlText::s_F_n_ToInt(objAttribute.value()) : nDefault;
}

qint32 CXmlObj::s_F_n_ToInt(const QString& sValue)
{
    return CXmlText::s_F_n_ToInt(CXmlUtf8(sValue).m_F_s_View());
}
