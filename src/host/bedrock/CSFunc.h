#pragma once

#include <QByteArray>
#include <QString>

#include "host/Export.h"
#include "host/Platform.h"

#if defined(__GNUC__)
#define FLEETLINK_PRINTF(nFormat, nFirst) __attribute__((format(printf, nFormat, nFirst)))
#else
#define FLEETLINK_PRINTF(nFormat, nFirst)
#endif

/// Functions on folders, files, text, time and rectangles. All may be called by any thread.
class LIB_BEDROCK_EXPORT CSFunc
{
public:
    CSFunc() = delete;

    /// Creates the folder with all missing parents. Returns 1 if it is there afterwards, else 0.
    static int s_F_n_CreateDirectorys(const QString& sPath);
    /// Removes the folder with all that is in it; links are removed, never followed. Returns 1 if it is gone (also if
    /// it wasn't there), 0 if something is left, the path is no folder or `s_F_b_MayRemove` refuses it.
    static int s_F_n_RemoveDirectorys(const QString& sPath);
    /// False for a path that nobody means to remove: empty, a root, or one that ends in "." or "..". Looks at the text
    /// only.
    static bool s_F_b_MayRemove(const QString& sPath);
    /// Fills attributes, size, times (whole milliseconds) and name of the file or folder. False if it isn't there;
    /// `*pInfo` is then as it was.
    static bool s_F_b_GetFileInfo(const QString& sPath, WIN32_FIND_DATAW* pInfo);

    /// The bytes as upper-case hexadecimal digits without separators; empty for null or a count below 1.
    static QString s_F_s_ByteToHexStr(const void* pBytes, qint32 nCount);
    /// UTF-8 to UTF-16. What is no UTF-8, also a tail that was cut, becomes U+FFFD; zero bytes are characters as
    /// others.
    static QString s_F_s_Utf8ToUnicode(const QByteArray& sText);
    /// UTF-16 to UTF-8; a surrogate without its half becomes U+FFFD.
    static QByteArray s_F_s_UnicodeToUtf8(const QString& sText);
    /// Plain code-page conversion: the ANSI code page on Windows, Windows-1252 elsewhere. Characters that it lacks
    /// become '?'.
    static QByteArray s_F_s_UnicodeToAnsi(const QString& sText);
    /// The way back; bytes without a character become U+FFFD.
    static QString s_F_s_AnsiToUnicode(const QByteArray& sText);

    /// Calendar time to milliseconds since 1970-01-01 00:00; `wDayOfWeek` is not looked at. Anything that is no
    /// calendar time, or lies before 1970, gives 0.
    static void s_S_ChangeTimeType(SYSTEMTIME stTime, quint64& nTimeMs);
    /// The inverse, from 1970 to the end of 30827, where later times stop. With a zone the count is taken as UTC and
    /// the result is that zone's local time, with daylight time by its rules.
    static void s_S_ChangeTimeType(quint64 nTimeMs, SYSTEMTIME& stTime, const TIME_ZONE_INFORMATION* pZone);

    /// Divides the outer rectangle into `nColumns` times `nRows` cells, row by row from the top left, without gaps;
    /// cells differ by at most a pixel. `pRects` has room for all of them. Counts below 1 and null: nothing is done.
    static void s_S_CalWndRect(qint32 nColumns, qint32 nRows, stDef_Rect* pRects, const stDef_Rect& stOuter);

    /// Writes a line to the debug output: that of the debugger on Windows; elsewhere standard error, if the environment
    /// variable FLEETLINK_DEBUG is set. Cut after 2000 bytes. Never pass an account.
    static void s_S_Debug(const char* pszFormat, ...) FLEETLINK_PRINTF(1, 2);
};
