#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "host/Export.h"

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
#else

/// Calendar time; `wDayOfWeek` counts from Sunday as 0.
struct SYSTEMTIME
{
    std::uint16_t wYear;
    std::uint16_t wMonth; ///< from 1
    std::uint16_t wDayOfWeek;
    std::uint16_t wDay; ///< from 1
    std::uint16_t wHour;
    std::uint16_t wMinute;
    std::uint16_t wSecond;
    std::uint16_t wMilliseconds;
};

/// Time zone: UTC = local time + bias, biases in minutes. A date with month 0 means that there is no daylight time; one
/// with year 0 is the rule "weekday `wDayOfWeek` number `wDay` of the month", where 5 is the last one.
struct TIME_ZONE_INFORMATION
{
    std::int32_t Bias;
    char16_t StandardName[32];
    SYSTEMTIME StandardDate; ///< end of daylight time, told in daylight time
    std::int32_t StandardBias;
    char16_t DaylightName[32];
    SYSTEMTIME DaylightDate; ///< start of daylight time, told in standard time
    std::int32_t DaylightBias;
};

/// Count of 100 ns since 1601-01-01 UTC.
struct FILETIME
{
    std::uint32_t dwLowDateTime;
    std::uint32_t dwHighDateTime;
};

/// What is known of one file.
struct WIN32_FIND_DATAW
{
    std::uint32_t dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    std::uint32_t nFileSizeHigh;
    std::uint32_t nFileSizeLow;
    std::uint32_t dwReserved0;
    std::uint32_t dwReserved1;
    char16_t cFileName[260];
    char16_t cAlternateFileName[14];
};

inline constexpr std::uint32_t FILE_ATTRIBUTE_READONLY = 0x1;
inline constexpr std::uint32_t FILE_ATTRIBUTE_HIDDEN = 0x2;
inline constexpr std::uint32_t FILE_ATTRIBUTE_DIRECTORY = 0x10;
inline constexpr std::uint32_t FILE_ATTRIBUTE_NORMAL = 0x80;

#endif

// These structures cross process borders and go into files byte by byte.
static_assert(sizeof(SYSTEMTIME) == 16);
static_assert(sizeof(TIME_ZONE_INFORMATION) == 172);
static_assert(offsetof(TIME_ZONE_INFORMATION, StandardDate) == 68);
static_assert(offsetof(TIME_ZONE_INFORMATION, DaylightName) == 88);
static_assert(offsetof(TIME_ZONE_INFORMATION, DaylightBias) == 168);
static_assert(sizeof(WIN32_FIND_DATAW) == 592);
static_assert(offsetof(WIN32_FIND_DATAW, nFileSizeLow) == 32);
static_assert(offsetof(WIN32_FIND_DATAW, cFileName) == 44);

/// A rectangle in pixels; `right` and `bottom` lie outside it.
struct stDef_Rect
{
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    constexpr int m_F_n_Width() const { return right - left; }
    constexpr int m_F_n_Height() const { return bottom - top; }
    bool operator==(const stDef_Rect&) const = default;
};

class QFile;

/// Services of the operating system that several libraries need.
namespace Platform {

/// Waits until the word differs from `nExpected`, at most `nTimeoutMs` (0 or less only looks). True if it differs.
/// The word may lie in memory shared with other processes, also in a read-only mapping. Any thread.
LIB_BEDROCK_EXPORT bool s_F_b_WaitWord(const std::atomic<std::uint32_t>* pWord, std::uint32_t nExpected,
                                       int nTimeoutMs);
/// Wakes all that wait on the word, in any process; call it after the word was changed. Any thread; never blocks.
LIB_BEDROCK_EXPORT void s_S_WakeWord(std::atomic<std::uint32_t>* pWord);

/// Opens the file for reading if it is a plain one, by links, too. A pipe of that name would keep the caller waiting
/// for somebody to write: it is refused at once.
LIB_BEDROCK_EXPORT bool s_F_b_OpenPlain(QFile& objFile);

/// The machine's steady clock: the same in all processes, never set back.
LIB_BEDROCK_EXPORT std::uint64_t s_F_n_SteadyMs();
LIB_BEDROCK_EXPORT std::uint64_t s_F_n_SteadyUs();

} // namespace Platform
