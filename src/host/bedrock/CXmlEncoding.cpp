#include "host/bedrock/CXmlEncoding.h"

#include <QByteArrayView>
#include <QRegularExpression>
#include <QStringDecoder>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QRegularExpressionMatch DeclaredEncoding(const QString& sText)
{
    static const QRegularExpression objPattern(uR"re(^\s*<\?xml\s[^>]*?encoding\s*=\s*["']([^"'>]*)["'])re"_s);
    return objPattern.match(sText);
}

} // namespace

bool CXmlEncoding::s_F_b_Decode(const QByteArray& sBytes, QString& sText)
{
    const auto nEncoding = QStringConverter::encodingForData(sBytes, u'<');
    if (nEncoding) {
        sText = QStringDecoder(*nEncoding).decode(sBytes);
        return true;
    }
    const QString sHead = QString::fromLatin1(sBytes.constData(), std::min<qsizetype>(sBytes.size(), 256));
    const QString sEncoding = DeclaredEncoding(sHead).captured(1);
    if (sEncoding.startsWith("iso-8859-1"_L1, Qt::CaseInsensitive) ||
        !sEncoding.compare("latin1"_L1, Qt::CaseInsensitive)) {
        sText = QString::fromLatin1(sBytes);
        return true;
    }
    sText = QString::fromUtf8(sBytes);
    const bool bUtf8 = sEncoding.isEmpty() || !sEncoding.compare("utf-8"_L1, Qt::CaseInsensitive);
    return bUtf8 || QByteArrayView(sBytes).isValidUtf8();
}

QString CXmlEncoding::s_F_s_Declared(QString sText, const QString& sEncoding)
{
    const QRegularExpressionMatch objMatch = DeclaredEncoding(sText);
    if (objMatch.hasMatch() && objMatch.capturedView(1).compare(sEncoding, Qt::CaseInsensitive) != 0)
        sText.replace(objMatch.capturedStart(1), objMatch.capturedLength(1), sEncoding);
    return sText;
}
