#include "scene/CPictureCode.h"

#include <bit>
#include <cstddef>

namespace {

constexpr int g_nPayloadBits = CPictureCode::s_nCells - 3;
constexpr int g_nThreshold = 120;

std::uint32_t Pack(const stDef_PictureCode& stCode)
{
    return (static_cast<std::uint32_t>(stCode.nChannel & 0xFF) << 13) | (stCode.bSecond ? 1U << 12 : 0U) |
           static_cast<std::uint32_t>(stCode.nFrame & 0xFFF);
}

bool IsOdd(std::uint32_t nBits)
{
    return std::popcount(nBits) % 2 != 0;
}

} // namespace

bool CPictureCode::s_F_b_Cell(const stDef_PictureCode& stCode, int nCell)
{
    const std::uint32_t nBits = Pack(stCode);
    if (nCell < 2)
        return nCell == 0;
    if (nCell == s_nCells - 1)
        return !IsOdd(nBits);
    return ((nBits >> (g_nPayloadBits + 1 - nCell)) & 1U) != 0;
}

std::optional<stDef_PictureCode> CPictureCode::s_F_o_Read(const std::uint8_t* pLuma, int nStride, int nWidth,
                                                          int nHeight)
{
    const int nSide = nWidth / s_nColumns;
    if (pLuma == nullptr || nSide < 1 || nHeight < nSide)
        return std::nullopt;
    const std::uint8_t* pRow = pLuma + static_cast<std::ptrdiff_t>(nHeight - 1 - nSide / 2) * nStride;
    std::uint32_t nBits = 0;
    for (int nCell = 0; nCell < s_nCells; ++nCell)
        nBits = (nBits << 1) | (pRow[nCell * nSide + nSide / 2] > g_nThreshold ? 1U : 0U);
    if ((nBits >> (s_nCells - 2)) != 2U || IsOdd(nBits))
        return std::nullopt;
    stDef_PictureCode stCode;
    stCode.nFrame = static_cast<int>((nBits >> 1) & 0xFFFU);
    stCode.bSecond = ((nBits >> 13) & 1U) != 0;
    stCode.nChannel = static_cast<int>((nBits >> 14) & 0xFFU);
    return stCode;
}
