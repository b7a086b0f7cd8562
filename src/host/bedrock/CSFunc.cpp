#include "host/bedrock/CSFunc.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>

namespace {

namespace chrono = std::chrono;

using LocalMs = chrono::local_time<chrono::milliseconds>;

constexpr int g_nLastYear = 30827; // the last one of a SYSTEMTIME

std::filesystem::path ToNative(const QString& sPath)
{
#ifdef _WIN32
    return sPath.toStdWString();
#else
    return QFile::encodeName(sPath).toStdString();
#endif
}

QString WithoutEndSeparators(const QString& sPath)
{
    QString sClean = QDir::fromNativeSeparators(sPath);
    while (sClean.endsWith(u'/'))
        sClean.chop(1);
    return sClean;
}

FILETIME ToFileTime(const QDateTime& objTime)
{
    constexpr qint64 nEpochMs = 11'644'473'600'000; // 1601 to 1970
    const quint64 nTicks =
        objTime.isValid() ? static_cast<quint64>(objTime.toMSecsSinceEpoch() + nEpochMs) * 10'000 : 0;
    FILETIME stTime;
    stTime.dwLowDateTime = static_cast<std::uint32_t>(nTicks);
    stTime.dwHighDateTime = static_cast<std::uint32_t>(nTicks >> 32);
    return stTime;
}

bool IsPair(const QString& sText, qsizetype nAt)
{
    return sText[nAt].isHighSurrogate() && nAt + 1 < sText.size() && sText[nAt + 1].isLowSurrogate();
}

#ifndef _WIN32

// Characters of the bytes 0x80 to 0x9F of Windows-1252; all others are those of Latin-1. 0: no character.
constexpr std::array<char16_t, 32> g_arCodePage = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                   0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                                   0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                   0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

char ToCodePage(char16_t cChar)
{
    if (cChar < 0x80 || (cChar >= 0xA0 && cChar <= 0xFF))
        return static_cast<char>(cChar);
    const auto it = std::find(g_arCodePage.begin(), g_arCodePage.end(), cChar);
    return it == g_arCodePage.end() ? '?' : static_cast<char>(0x80 + (it - g_arCodePage.begin()));
}

char16_t FromCodePage(unsigned char nByte)
{
    if (nByte < 0x80 || nByte >= 0xA0)
        return nByte;
    const char16_t cChar = g_arCodePage[nByte - 0x80];
    return cChar ? cChar : u'\uFFFD';
}

#endif

std::optional<chrono::year_month_day> DateOf(const SYSTEMTIME& stTime)
{
    const chrono::year_month_day stDate{chrono::year(stTime.wYear), chrono::month(stTime.wMonth),
                                        chrono::day(stTime.wDay)};
    return stDate.ok() ? std::optional(stDate) : std::nullopt;
}

chrono::milliseconds TimeOfDay(const SYSTEMTIME& stTime)
{
    return chrono::hours(stTime.wHour) + chrono::minutes(stTime.wMinute) + chrono::seconds(stTime.wSecond) +
           chrono::milliseconds(stTime.wMilliseconds);
}

SYSTEMTIME ToSystemTime(LocalMs nTime)
{
    const auto nDay = chrono::floor<chrono::days>(nTime);
    const chrono::year_month_day stDate(nDay);
    const chrono::hh_mm_ss stClock(nTime - nDay);
    SYSTEMTIME stTime;
    stTime.wYear = static_cast<std::uint16_t>(static_cast<int>(stDate.year()));
    stTime.wMonth = static_cast<std::uint16_t>(static_cast<unsigned>(stDate.month()));
    stTime.wDayOfWeek = static_cast<std::uint16_t>(chrono::weekday(nDay).c_encoding());
    stTime.wDay = static_cast<std::uint16_t>(static_cast<unsigned>(stDate.day()));
    stTime.wHour = static_cast<std::uint16_t>(stClock.hours().count());
    stTime.wMinute = static_cast<std::uint16_t>(stClock.minutes().count());
    stTime.wSecond = static_cast<std::uint16_t>(stClock.seconds().count());
    stTime.wMilliseconds = static_cast<std::uint16_t>(stClock.subseconds().count());
    return stTime;
}

// Local time of a change between standard and daylight time in that year; nothing if the rule is none.
std::optional<LocalMs> ChangeOf(const SYSTEMTIME& stRule, chrono::year nYear)
{
    if (stRule.wYear != 0) {
        const auto stDate = DateOf(stRule);
        return stDate ? std::optional<LocalMs>(chrono::local_days(*stDate) + TimeOfDay(stRule)) : std::nullopt;
    }
    const chrono::month nMonth(stRule.wMonth);
    if (!nMonth.ok() || stRule.wDayOfWeek > 6 || stRule.wDay < 1 || stRule.wDay > 5)
        return std::nullopt;
    const chrono::weekday nWeekday(stRule.wDayOfWeek);
    const chrono::local_days nDay = stRule.wDay == 5 ? chrono::local_days(nYear / nMonth / nWeekday[chrono::last])
                                                     : chrono::local_days(nYear / nMonth / nWeekday[stRule.wDay]);
    return nDay + TimeOfDay(stRule);
}

// What is taken from UTC to get the zone's local time at that moment.
chrono::minutes BiasAt(LocalMs nUtc, const TIME_ZONE_INFORMATION& stZone)
{
    const chrono::minutes nPlain(stZone.Bias);
    const chrono::minutes nStandard = nPlain + chrono::minutes(stZone.StandardBias);
    const chrono::minutes nDaylight = nPlain + chrono::minutes(stZone.DaylightBias);
    const chrono::year nYear = chrono::year_month_day(chrono::floor<chrono::days>(nUtc - nStandard)).year();
    const auto nBegin = ChangeOf(stZone.DaylightDate, nYear);
    const auto nEnd = ChangeOf(stZone.StandardDate, nYear);
    if (!nBegin || !nEnd)
        return nPlain;
    const bool bBegun = nUtc >= *nBegin + nStandard;
    const bool bEnded = nUtc >= *nEnd + nDaylight;
    // South of the equator daylight time spans the turn of the year.
    const bool bSummer = *nBegin < *nEnd ? bBegun && !bEnded : bBegun || !bEnded;
    return bSummer ? nDaylight : nStandard;
}

} // namespace

int CSFunc::s_F_n_CreateDirectorys(const QString& sPath)
{
    return !sPath.isEmpty() && QDir().mkpath(sPath) ? 1 : 0;
}

bool CSFunc::s_F_b_MayRemove(const QString& sPath)
{
    const QString sFolder = WithoutEndSeparators(sPath);
    const QString sName = sFolder.section(u'/', -1);
    if (sName.trimmed().isEmpty() || sName == u"." || sName == u"..")
        return false;
    const std::filesystem::path objPath = ToNative(sFolder);
    const std::filesystem::path objBelow = objPath.relative_path();
    // The first name behind "//server" is a share, which is a root too.
    const bool bShare = objPath.root_name().native().size() > 2 && !objBelow.has_parent_path();
    return !objBelow.empty() && !bShare;
}

int CSFunc::s_F_n_RemoveDirectorys(const QString& sPath)
{
    if (!s_F_b_MayRemove(sPath))
        return 0;
    const std::filesystem::path objPath = ToNative(WithoutEndSeparators(sPath));
    std::error_code nError;
    const auto stStatus = std::filesystem::symlink_status(objPath, nError);
    if (stStatus.type() == std::filesystem::file_type::not_found)
        return 1;
    if (!std::filesystem::is_directory(stStatus) && !std::filesystem::is_symlink(stStatus))
        return 0;
    std::filesystem::remove_all(objPath, nError);
    return nError ? 0 : 1;
}

bool CSFunc::s_F_b_GetFileInfo(const QString& sPath, WIN32_FIND_DATAW* pInfo)
{
    const QFileInfo objFile(sPath);
    if (sPath.isEmpty() || !objFile.exists())
        return false;
    if (!pInfo)
        return true;

    WIN32_FIND_DATAW stInfo{};
    const quint64 nSize = objFile.isDir() ? 0 : static_cast<quint64>(objFile.size());
    stInfo.dwFileAttributes = (objFile.isDir() ? FILE_ATTRIBUTE_DIRECTORY : 0) |
                              (objFile.isHidden() ? FILE_ATTRIBUTE_HIDDEN : 0) |
                              (objFile.isWritable() ? 0 : FILE_ATTRIBUTE_READONLY);
    if (stInfo.dwFileAttributes == 0)
        stInfo.dwFileAttributes = FILE_ATTRIBUTE_NORMAL;
    const QDateTime objBirth = objFile.birthTime();
    stInfo.ftCreationTime = ToFileTime(objBirth.isValid() ? objBirth : objFile.lastModified());
    stInfo.ftLastAccessTime = ToFileTime(objFile.lastRead());
    stInfo.ftLastWriteTime = ToFileTime(objFile.lastModified());
    stInfo.nFileSizeHigh = static_cast<std::uint32_t>(nSize >> 32);
    stInfo.nFileSizeLow = static_cast<std::uint32_t>(nSize);
    const QString sName = objFile.fileName();
    std::memcpy(stInfo.cFileName, sName.utf16(),
                2 * std::min<std::size_t>(static_cast<std::size_t>(sName.size()), std::size(stInfo.cFileName) - 1));
    *pInfo = stInfo;
    return true;
}

QString CSFunc::s_F_s_ByteToHexStr(const void* pBytes, qint32 nCount)
{
    if (!pBytes || nCount < 1)
        return {};
    return QString::fromLatin1(QByteArray::fromRawData(static_cast<const char*>(pBytes), nCount).toHex().toUpper());
}

QString CSFunc::s_F_s_Utf8ToUnicode(const QByteArray& sText)
{
    return QString::fromUtf8(sText);
}

QByteArray CSFunc::s_F_s_UnicodeToUtf8(const QString& sText)
{
    if (sText.isValidUtf16())
        return sText.toUtf8();
    QString sWhole = sText;
    for (qsizetype i = 0; i < sWhole.size(); ++i) {
        if (IsPair(sWhole, i))
            ++i;
        else if (sWhole[i].isSurrogate())
            sWhole[i] = QChar::ReplacementCharacter;
    }
    return sWhole.toUtf8();
}

#ifdef _WIN32

QByteArray CSFunc::s_F_s_UnicodeToAnsi(const QString& sText)
{
    const auto* pText = reinterpret_cast<const wchar_t*>(sText.utf16());
    const int nSize = static_cast<int>(sText.size());
    QByteArray sOut(WideCharToMultiByte(CP_ACP, 0, pText, nSize, nullptr, 0, "?", nullptr), Qt::Uninitialized);
    WideCharToMultiByte(CP_ACP, 0, pText, nSize, sOut.data(), static_cast<int>(sOut.size()), "?", nullptr);
    return sOut;
}

QString CSFunc::s_F_s_AnsiToUnicode(const QByteArray& sText)
{
    const int nSize = static_cast<int>(sText.size());
    QString sOut(MultiByteToWideChar(CP_ACP, 0, sText.constData(), nSize, nullptr, 0), Qt::Uninitialized);
    MultiByteToWideChar(CP_ACP, 0, sText.constData(), nSize, reinterpret_cast<wchar_t*>(sOut.data()),
                        static_cast<int>(sOut.size()));
    return sOut;
}

#else

QByteArray CSFunc::s_F_s_UnicodeToAnsi(const QString& sText)
{
    QByteArray sOut;
    sOut.reserve(sText.size());
    for (qsizetype i = 0; i < sText.size(); ++i) {
        sOut += ToCodePage(sText[i].unicode());
        i += IsPair(sText, i) ? 1 : 0;
    }
    return sOut;
}

QString CSFunc::s_F_s_AnsiToUnicode(const QByteArray& sText)
{
    QString sOut;
    sOut.reserve(sText.size());
    for (const char cByte : sText)
        sOut += QChar(FromCodePage(static_cast<unsigned char>(cByte)));
    return sOut;
}

#endif

void CSFunc::s_S_ChangeTimeType(SYSTEMTIME stTime, quint64& nTimeMs)
{
    const auto stDate = DateOf(stTime);
    const bool bValid = stDate && stTime.wYear >= 1970 && stTime.wYear <= g_nLastYear && stTime.wHour < 24 &&
                        stTime.wMinute < 60 && stTime.wSecond < 60 && stTime.wMilliseconds < 1000;
    nTimeMs = 0;
    if (bValid)
        nTimeMs =
            static_cast<quint64>((LocalMs(chrono::local_days(*stDate)) + TimeOfDay(stTime)).time_since_epoch().count());
}

void CSFunc::s_S_ChangeTimeType(quint64 nTimeMs, SYSTEMTIME& stTime, const TIME_ZONE_INFORMATION* pZone)
{
    constexpr LocalMs nLast = LocalMs(chrono::local_days(chrono::year(g_nLastYear) / chrono::December / 31)) +
                              chrono::days(1) - chrono::milliseconds(1);
    const auto nLimit = static_cast<quint64>(nLast.time_since_epoch().count());
    LocalMs nTime(chrono::milliseconds(std::min(nTimeMs, nLimit)));
    if (pZone)
        nTime = std::min<LocalMs>(nTime - BiasAt(nTime, *pZone), nLast);
    stTime = ToSystemTime(nTime);
}

void CSFunc::s_S_CalWndRect(qint32 nColumns, qint32 nRows, stDef_Rect* pRects, const stDef_Rect& stOuter)
{
    if (nColumns < 1 || nRows < 1 || !pRects)
        return;
    const auto nEdge = [](int nFrom, int nTo, qint32 nIndex, qint32 nCount) {
        return static_cast<int>(nFrom + (static_cast<qint64>(nTo) - nFrom) * nIndex / nCount);
    };
    for (qint32 nRow = 0; nRow < nRows; ++nRow) {
        for (qint32 nColumn = 0; nColumn < nColumns; ++nColumn) {
            *pRects++ = {nEdge(stOuter.left, stOuter.right, nColumn, nColumns),
                         nEdge(stOuter.top, stOuter.bottom, nRow, nRows),
                         nEdge(stOuter.left, stOuter.right, nColumn + 1, nColumns),
                         nEdge(stOuter.top, stOuter.bottom, nRow + 1, nRows)};
        }
    }
}

void CSFunc::s_S_Debug(const char* pszFormat, ...)
{
    std::array<char, 2001> arLine{};
    va_list arArguments;
    va_start(arArguments, pszFormat);
    std::vsnprintf(arLine.data(), arLine.size(), pszFormat, arArguments);
    va_end(arArguments);
#ifdef _WIN32
    OutputDebugStringA(arLine.data());
    OutputDebugStringA("\n");
#else
    static const bool bShown = std::getenv("FLEETLINK_DEBUG") != nullptr;
    if (bShown)
        std::fprintf(stderr, "%s\n", arLine.data());
#endif
}
