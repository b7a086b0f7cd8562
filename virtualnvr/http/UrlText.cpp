#include "http/UrlText.h"

#include <charconv>

std::string nsUrlText::Decoded(std::string_view s)
{
    std::string sDecoded;
    for (std::size_t n = 0; n < s.size(); ++n) {
        unsigned nByte = 0;
        const bool bCode = s[n] == '%' && n + 2 < s.size() &&
                           std::from_chars(s.data() + n + 1, s.data() + n + 3, nByte, 16).ptr == s.data() + n + 3;
        sDecoded += bCode ? static_cast<char>(nByte) : s[n];
        n += bCode ? 2 : 0;
    }
    return sDecoded;
}
