#pragma once

#include <string>
#include <string_view>

namespace nsUrlText {

/// Percent codes become their bytes; '+', and a '%' without two hexadecimal digits behind it, stand for themselves.
std::string Decoded(std::string_view s);

} // namespace nsUrlText
