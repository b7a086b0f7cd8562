#pragma once

#include <QByteArray>
#include <QString>

/// The encoding of an XML file, which its bytes and its declaration tell.
class CXmlEncoding
{
public:
    CXmlEncoding() = delete;

    /// Text of a file by its byte order mark, its first character or its declaration. False if it can't be told.
    static bool s_F_b_Decode(const QByteArray& sBytes, QString& sText);
    /// The text with this encoding in its declaration, if that names one.
    static QString s_F_s_Declared(QString sText, const QString& sEncoding);
};
