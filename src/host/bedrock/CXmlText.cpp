#include "host/bedrock/CXmlText.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "host/bedrock/CSFunc.h"

namespace {

constexpr std::string_view g_sBlanks = " \t\r\n";

constexpr std::array<std::pair<std::string_view, char>, 5> g_arEntities = {
    {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}}};

enum class emForm
{
    Attribute,
    Content,
    CData
};

bool IsChar(char32_t nCode)
{
    if (nCode < 0x20)
        return nCode == '\t' || nCode == '\n' || nCode == '\r';
    return nCode <= 0x10FFFF && !(nCode >= 0xD800 && nCode <= 0xDFFF) && nCode != 0xFFFE && nCode != 0xFFFF;
}

// Value of "#10" or "#xA"; 0 if it is none.
char32_t NumberOf(std::string_view sName)
{
    const bool bHex = sName.size() > 2 && sName[1] == 'x';
    const std::string_view sDigits = sName.substr(bHex ? 2 : 1);
    bool bOk = !sDigits.empty() && sDigits.size() <= 8 && sDigits.front() != '+' && sDigits.front() != '-';
    const uint nCode = bOk ? QByteArrayView(sDigits.data(), sDigits.size()).toUInt(&bOk, bHex ? 16 : 10) : 0;
    return bOk && IsChar(nCode) ? nCode : 0;
}

// Appends what the reference at the start of sRaw means and returns its length; 0 if it is none that we know, and then
// it stays as it is written.
std::size_t AppendReference(std::string_view sRaw, QByteArray& sOut)
{
    constexpr std::size_t nLongest = 12;
    const std::size_t nEnd = sRaw.substr(0, nLongest).find(';');
    if (nEnd == std::string_view::npos || nEnd < 2)
        return 0;
    const std::string_view sName = sRaw.substr(1, nEnd - 1);
    if (sName.front() == '#') {
        const char32_t nCode = NumberOf(sName);
        if (!nCode)
            return 0;
        sOut += QString::fromUcs4(&nCode, 1).toUtf8();
        return nEnd + 1;
    }
    for (const auto& [sEntity, cMeaning] : g_arEntities) {
        if (sName == sEntity) {
            sOut += cMeaning;
            return nEnd + 1;
        }
    }
    return 0;
}

// Bytes that don't mean themselves, by form.
constexpr auto g_arSpecial = [] {
    std::array<std::array<bool, 256>, 3> arSpecial{};
    constexpr std::array<std::string_view, 3> arBytes = {"&\r\n\t", "&\r", "\r"};
    for (std::size_t nForm = 0; nForm < arBytes.size(); ++nForm) {
        for (const char cByte : arBytes[nForm])
            arSpecial[nForm][static_cast<unsigned char>(cByte)] = true;
    }
    return arSpecial;
}();

QString Expand(std::string_view sRaw, emForm nForm)
{
    const auto& arSpecial = g_arSpecial[static_cast<std::size_t>(nForm)];
    const auto bSpecial = [&](char cByte) { return arSpecial[static_cast<unsigned char>(cByte)]; };
    auto it = std::find_if(sRaw.begin(), sRaw.end(), bSpecial);
    if (it == sRaw.end())
        return QString::fromUtf8(sRaw.data(), static_cast<qsizetype>(sRaw.size()));

    QByteArray sOut;
    sOut.reserve(static_cast<qsizetype>(sRaw.size()));
    while (it != sRaw.end()) {
        sOut.append(sRaw.data(), static_cast<qsizetype>(it - sRaw.begin()));
        sRaw.remove_prefix(static_cast<std::size_t>(it - sRaw.begin()));
        std::size_t nUsed = sRaw.front() == '&' ? AppendReference(sRaw, sOut) : 0;
        if (!nUsed) {
            const char cBreak = nForm == emForm::Attribute ? ' ' : '\n';
            sOut += sRaw.front() == '&' ? '&' : cBreak;
            nUsed = sRaw.substr(0, 2) == "\r\n" ? 2 : 1;
        }
        sRaw.remove_prefix(nUsed);
        it = std::find_if(sRaw.begin(), sRaw.end(), bSpecial);
    }
    sOut.append(sRaw.data(), static_cast<qsizetype>(sRaw.size()));
    return QString::fromUtf8(sOut);
}

bool IsNameStart(QChar cChar)
{
    if (cChar.unicode() < 0x80)
        return cChar.isLetter() || cChar == u'_' || cChar == u':';
    return cChar.isLetter() || cChar.isSurrogate();
}

bool IsNamePart(QChar cChar)
{
    if (cChar.unicode() < 0x80)
        return IsNameStart(cChar) || cChar.isDigit() || cChar == u'-' || cChar == u'.';
    return cChar.isLetterOrNumber() || cChar.isMark() || cChar.isSurrogate() || cChar.unicode() == 0xB7;
}

const char* ReplacementOf(char cByte)
{
    switch (cByte) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\t':
        return "&#9;";
    case '\n':
        return "&#10;";
    case '\r':
        return "&#13;";
    default:
        return static_cast<unsigned char>(cByte) < 0x20 ? "\xEF\xBF\xBD" : nullptr;
    }
}

} // namespace

bool CXmlText::s_F_b_IsName(QStringView sName)
{
    return !sName.isEmpty() && sName.isValidUtf16() && IsNameStart(sName.front()) &&
           std::all_of(sName.begin(), sName.end(), IsNamePart);
}

QByteArray CXmlText::s_F_s_ToAttribute(const QString& sText)
{
    QString sAllowed = sText;
    sAllowed.replace(QChar(0xFFFE), QChar::ReplacementCharacter).replace(QChar(0xFFFF), QChar::ReplacementCharacter);
    const QByteArray sBytes = CSFunc::s_F_s_UnicodeToUtf8(sAllowed);
    const auto bSpecial = [](char cByte) { return ReplacementOf(cByte) != nullptr; };
    if (std::none_of(sBytes.begin(), sBytes.end(), bSpecial))
        return sBytes;

    QByteArray sOut;
    sOut.reserve(sBytes.size() + 32);
    for (const char cByte : sBytes) {
        if (const char* pszReplacement = ReplacementOf(cByte))
            sOut += pszReplacement;
        else
            sOut += cByte;
    }
    return sOut;
}

QString CXmlText::s_F_s_FromAttribute(std::string_view sRaw)
{
    return Expand(sRaw, emForm::Attribute);
}

QString CXmlText::s_F_s_FromContent(std::string_view sRaw)
{
    return Expand(sRaw, emForm::Content);
}

QString CXmlText::s_F_s_FromCData(std::string_view sRaw)
{
    return Expand(sRaw, emForm::CData);
}

bool CXmlText::s_F_b_IsBlank(std::string_view sRaw)
{
    return sRaw.find_first_not_of(g_sBlanks) == std::string_view::npos;
}

qint32 CXmlText::s_F_n_ToInt(std::string_view sRaw)
{
    using Limits = std::numeric_limits<qint32>;
    sRaw.remove_prefix(std::min(sRaw.find_first_not_of(g_sBlanks), sRaw.size()));
    const bool bNegative = !sRaw.empty() && sRaw.front() == '-';
    if (!sRaw.empty() && (bNegative || sRaw.front() == '+'))
        sRaw.remove_prefix(1);

    const qint64 nLimit = bNegative ? -static_cast<qint64>(Limits::min()) : Limits::max();
    qint64 nValue = 0;
    for (const char cDigit : sRaw) {
        if (cDigit < '0' || cDigit > '9')
            break;
        nValue = std::min(nValue * 10 + (cDigit - '0'), nLimit);
    }
    return static_cast<qint32>(bNegative ? -nValue : nValue);
}
