#pragma once

#include <cstdint>
#include <optional>

/// What a picture of the virtual recorder says of itself.
struct stDef_PictureCode
{
    int nChannel = 0;     ///< 0..255
    bool bSecond = false; ///< second stream
    int nFrame = 0;       ///< 0..4095, counts up by one from picture to picture and wraps at the clip's end

    bool operator==(const stDef_PictureCode&) const = default;
};

/// The code strip at the bottom edge of each picture, by which a viewer knows which picture it sees.
///
/// The strip is one row of square cells of width/40 pixels a side (16 at 640x360, 8 at 320x180), which starts at the
/// left edge and ends at the bottom edge. Cell by cell: one white, one black, 8 of the channel, 1 of the stream (white:
/// second), 12 of the frame number, 1 that makes the number of white cells even. Numbers have their most significant
/// bit first. A white cell has a luma of about 208, a black one of about 32; read the middle of a cell against 120.
class CPictureCode
{
public:
    static constexpr int s_nColumns = 40;         ///< cells in a picture's width
    static constexpr int s_nCells = 24;           ///< cells of the code
    static constexpr std::uint8_t s_nWhite = 208; ///< luma
    static constexpr std::uint8_t s_nBlack = 32;  ///< luma

    /// True if the cell (0..s_nCells-1) of this code is white.
    static bool s_F_b_Cell(const stDef_PictureCode& stCode, int nCell);

    /// Reads the code of a picture from its luma plane. Nothing if there is no valid code.
    static std::optional<stDef_PictureCode> s_F_o_Read(const std::uint8_t* pLuma, int nStride, int nWidth, int nHeight);
};
