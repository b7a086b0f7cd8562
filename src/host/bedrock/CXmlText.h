#pragma once

#include <QByteArray>
#include <QString>
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
