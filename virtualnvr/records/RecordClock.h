#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Days and times of day of recordings: UTC, in milliseconds since 1970.
namespace nsRecordClock {

constexpr std::int64_t DayMs = 86400000;
constexpr std::int64_t MaxMs = 253402300799999; ///< the end of the year 9999; later times aren't served

std::int64_t Now();

std::string Day(std::int64_t nMs);  ///< "20261124"
std::string Hour(std::int64_t nMs); ///< "1240"
std::string Text(std::int64_t nMs); ///< "2026-11-24 12:40:09"

/// Begin of the day of such a name, which must be one that Day() gives.
std::optional<std::int64_t> DayBegin(std::string_view sDay);

} // namespace nsRecordClock
