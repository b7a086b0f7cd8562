#pragma once

#include <QByteArray>
#include <QString>
#include <QVarLengthArray>
#include <string_view>

/// Text as it stands in an XML document, against text as it is meant. Documents are kept with their references and line
/// ends as they were written, so that they go back the same; these functions translate at each read and write.
class CXmlText
{
public:
    CXmlText() = delete;

    /// True if XML allows it as the name of an element or attribute.
    static bool s_F_b_IsName(QStringView sName);
    /// The text as an attribute value in double quotes can hold it, UTF-8.
    static QByteArray s_F_s_ToAttribute(const QString& sText);
    /// The meaning of an attribute value: references expanded, line ends and tabulators turned into blanks.
    static QString s_F_s_FromAttribute(std::string_view sRaw);
    /// The meaning of text between tags: references expanded, line ends turned into line feeds.
    static QString s_F_s_FromContent(std::string_view sRaw);
    /// The meaning of a CDATA section: line ends turned into line feeds.
    static QString s_F_s_FromCData(std::string_view sRaw);
    /// True if there is nothing but blanks and line ends.
    static bool s_F_b_IsBlank(std::string_view sRaw);
    /// Decimal number at the start of the text, as `CXmlObj::m_F_n_GetValueInt` tells it.
    static qint32 s_F_n_ToInt(std::string_view sRaw);
};

/// UTF-8 of a short text, zero-terminated, on the stack where it fits.
class CXmlUtf8
{
public:
    explicit CXmlUtf8(QStringView sText);
    CXmlUtf8(const CXmlUtf8&) = delete;
    CXmlUtf8& operator=(const CXmlUtf8&) = delete;

    const char* m_F_psz_Text() const { return vm_arBytes.data(); }
    std::string_view m_F_s_View() const { return {vm_arBytes.data(), static_cast<std::size_t>(vm_arBytes.size()) - 1}; }

private:
    QVarLengthArray<char, 256> vm_arBytes;
};

/// A node path, cut into its names.
class CXmlPath
{
public:
    explicit CXmlPath(const QString& sPath);

    bool m_F_b_IsValid() const { return vm_bValid; } ///< false: a name of it is empty
    bool m_F_b_IsAbsolute() const { return vm_bAbsolute; }
    /// The names; of an absolute path the first is that of the document element. They live as long as this object.
    const QVarLengthArray<std::string_view, 16>& m_F_ar_Names() const { return vm_arNames; }

private:
    CXmlUtf8 vm_objText;
    QVarLengthArray<std::string_view, 16> vm_arNames;
    bool vm_bAbsolute = false;
    bool vm_bValid = true;
};
