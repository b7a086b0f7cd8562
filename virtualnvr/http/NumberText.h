#pragma once

#include <charconv>
#include <string_view>
#include <system_error>

/// Takes the number that the whole text says, in decimal. False for any other text, and for one beyond its type; the
/// value may have changed then.
template <typename Number>
bool ParseNumber(std::string_view sText, Number& nValue)
{
    const auto [pEnd, eError] = std::from_chars(sText.data(), sText.data() + sText.size(), nValue);
    return !sText.empty() && eError == std::errc() && pEnd == sText.data() + sText.size();
}
