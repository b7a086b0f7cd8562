#include "records/RecordClock.h"

#include <charconv>
#include <chrono>
#include <cstdio>

namespace {
using std::chrono::year_month_day;

struct stDef_Time
{
    int nYear, nMonth, nDay, nHour, nMinute, nSecond;
};

stDef_Time Parts(std::int64_t nMs)
{
    const auto nDays = nMs / nsRecordClock::DayMs;
    const year_month_day objDate{std::chrono::sys_days(std::chrono::days(nDays))};
    const auto nSeconds = static_cast<int>(nMs % nsRecordClock::DayMs / 1000);
    return {int(objDate.year()),
            static_cast<int>(unsigned(objDate.month())),
            static_cast<int>(unsigned(objDate.day())),
            nSeconds / 3600,
            nSeconds / 60 % 60,
            nSeconds % 60};
}
} // namespace

std::int64_t nsRecordClock::Now()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

std::string nsRecordClock::Day(std::int64_t nMs)
{
    const stDef_Time st = Parts(nMs);
    char szText[40];
    std::snprintf(szText, sizeof szText, "%04d%02d%02d", st.nYear, st.nMonth, st.nDay);
    return szText;
}

std::string nsRecordClock::Hour(std::int64_t nMs)
{
    const stDef_Time st = Parts(nMs);
    char szText[32];
    std::snprintf(szText, sizeof szText, "%02d%02d", st.nHour, st.nMinute);
    return szText;
}

std::string nsRecordClock::Text(std::int64_t nMs)
{
    const stDef_Time st = Parts(nMs);
    char szText[80];
    std::snprintf(szText, sizeof szText, "%04d-%02d-%02d %02d:%02d:%02d", st.nYear, st.nMonth, st.nDay, st.nHour,
                  st.nMinute, st.nSecond);
    return szText;
}

std::optional<std::int64_t> nsRecordClock::DayBegin(std::string_view sDay)
{
    unsigned n = 0;
    const auto [pEnd, eError] = std::from_chars(sDay.data(), sDay.data() + sDay.size(), n);
    if (sDay.size() != 8 || eError != std::errc() || pEnd != sDay.data() + sDay.size())
        return std::nullopt;
    const year_month_day objDate{std::chrono::year(static_cast<int>(n / 10000)), std::chrono::month(n / 100 % 100),
                                 std::chrono::day(n % 100)};
    const std::int64_t nBegin = std::chrono::sys_days(objDate).time_since_epoch().count() * DayMs;
    return objDate.ok() && nBegin >= 0 ? std::optional(nBegin) : std::nullopt;
}
