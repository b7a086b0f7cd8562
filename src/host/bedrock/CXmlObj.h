#pragma once

#include <QString>
#include <memory>
#include <span>

#include "host/Export.h"
#include "host/bedrock/CXmlNodeList.h"

/// One XML document in memory.
///
/// A node path is absolute (`/root/Camera/Cam003`), relative to the document element (`Camera/Cam003`) or empty for the
/// document element itself; blanks at its ends are ignored. Where several elements fit, the first one counts. A key is
/// the name of an attribute. While the document is closed, reads give their default and writes do nothing.
///
/// What the document holds besides (comments, unknown nodes, order, layout) survives a load and a save; the text of a
/// document that was not changed is the text that was loaded. No entity is ever expanded but the five of XML itself and
/// character numbers. A read costs the same among a thousand siblings as among a few.
///
/// Not synchronised, reads included: an object is used by one thread at a time. It can be moved, not copied.
class LIB_BEDROCK_EXPORT CXmlObj
{
public:
    CXmlObj(); ///< closed
    virtual ~CXmlObj();
    CXmlObj(CXmlObj&&) noexcept;
    CXmlObj& operator=(CXmlObj&&) noexcept;
    CXmlObj(const CXmlObj&) = delete;
    CXmlObj& operator=(const CXmlObj&) = delete;

    /// Replaces the document. False leaves the object closed: text that is no XML with exactly one document element,
    /// anything but blanks, comments and instructions around it, elements nested deeper than 256, a document type with
    /// declarations of its own, more than 16 MiB of UTF-8. An encoding that the text names is not looked at.
    bool m_F_b_LoadXML(const QString& sXml);
    /// The same from a file in UTF-8, UTF-16, UTF-32 or Latin-1, told by its first bytes or its declaration. A file of
    /// another encoding is refused unless it happens to be UTF-8.
    bool m_F_b_LoadXMLFile(const QString& sPath);
    /// Writes the document as `m_F_s_GetUtf8` gives it, by a temporary file that takes the place of the old one only
    /// when it is whole.
    bool m_F_b_Save(const QString& sPath) const;
    /// Drops the document; harmless on a closed object. Always true.
    bool m_F_b_Close();
    bool m_F_b_IsOpen() const;
    /// The whole document as text; empty while closed.
    QString m_F_s_GetXML() const;
    /// The same as UTF-8, for a file or a request; a declaration that names another encoding is changed to that.
    QByteArray m_F_s_GetUtf8() const;

    /// `sOut` receives the attribute, or the default if node or attribute is missing. Returns 1 if it was there, else
    /// 0.
    int m_F_n_GetValue(const QString& sPath, const QString& sKey, QString& sOut, const QString& sDefault) const;
    /// The attribute, or the default if node or attribute is missing.
    QString m_F_s_Value(const QString& sPath, const QString& sKey, const QString& sDefault = {}) const;
    /// The attribute as a decimal number, or the default if node or attribute is missing. Leading blanks and a sign are
    /// allowed, text after the digits is ignored, without digits it is 0, and numbers beyond 32 bits stop at their end.
    qint32 m_F_n_GetValueInt(const QString& sPath, const QString& sKey, qint32 nDefault) const;
    /// `sOut` receives the text of the node and all below it, without the blanks that are only layout; the default if
    /// the node is missing. Returns 1 if the node was there, else 0.
    int m_F_n_GetText(const QString& sPath, QString& sOut, const QString& sDefault) const;

    /// Sets or creates the attribute and every missing node of the path. False and no effect: closed, a name that XML
    /// doesn't allow, another document element, deeper than 256. Characters that XML can't hold become U+FFFD.
    bool m_F_b_SetValue(const QString& sPath, const QString& sKey, const QString& sValue);
    bool m_F_b_SetValue(const QString& sPath, const QString& sKey, qint32 nValue);

    /// One attribute of `m_F_b_CopyValues`.
    struct st_CopyKey
    {
        const char* pszKey;              ///< Latin letters, digits and "_"
        const char* pszDefault = "";     ///< what is written where the source lacks it; UTF-8
        const QString* pValue = nullptr; ///< if set, is written whatever the source has
    };
    /// Sets attributes of the node `sTo`, made if it is missing, to those that the node `sFrom` of the other document
    /// has, in the order of the keys, which differ from each other: the same as a read and a write of each, in a
    /// fraction of the time, the first of double ones included. A closed source has none; both may be the same
    /// document. False and no effect: as for `m_F_b_SetValue`.
    bool m_F_b_CopyValues(const CXmlObj& xmlFrom, const QString& sFrom, const QString& sTo,
                          std::span<const st_CopyKey> arKeys);

    /// Appends a child to an existing node, also beside one of the same name. False and no effect: closed, no such
    /// parent, a name that XML doesn't allow.
    bool m_F_b_AddNods(const QString& sParent, const QString& sName);
    /// Removes the first child of that name with all below it. False if there is none.
    bool m_F_b_RemoveNods(const QString& sParent, const QString& sName);
    /// Renames the first child of that name and keeps what is below it. False and no effect: there is none, or XML
    /// doesn't allow the new name. A child that has the new name already stays.
    bool m_F_b_RenameNods(const QString& sParent, const QString& sOldName, const QString& sNewName);

    /// The node with all below it, as it stands in the document; empty if it is missing.
    QString m_F_s_GetNods(const QString& sPath) const;
    /// Puts such a text, which is one element, in the place of the first child of that name, or behind the other
    /// children of a node that has none; an empty text removes the child. False and no effect: closed, no such parent,
    /// a text that `m_F_b_LoadXML` would refuse or whose element has another name.
    bool m_F_b_SetNods(const QString& sParent, const QString& sName, const QString& sXml);

    /// All elements at the path; every element that fits a name of the path is followed.
    CXmlNodeList m_S_SelectNodesByKey(const QString& sPath) const;
    /// Text content of a node; empty for a null handle.
    static QString s_F_s_GetNodeText(const CXmlNode& objNode);
    /// `m_F_n_GetValue` and `m_F_n_GetValueInt` for a node in hand; a null handle has no attributes.
    static void s_S_GetNodeVal(const CXmlNode& objNode, const QString& sKey, QString& sOut, const QString& sDefault);
    static qint32 s_F_n_GetNodeValInt(const CXmlNode& objNode, const QString& sKey, qint32 nDefault);
    /// A value in hand as a number, by the rules of `m_F_n_GetValueInt`; 0 for an empty one.
    static qint32 s_F_n_ToInt(const QString& sValue);

private:
    struct st_Impl;
    std::unique_ptr<st_Impl> vm_pImpl; ///< null while closed
};
