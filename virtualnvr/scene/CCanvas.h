#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

enum class emDef_Shape
{
    Box,  ///< x, y, width, height, corner radius
    Disc, ///< centre x, y, radius x, y
    Quad, ///< four corners x, y; convex, either way round
    Grid, ///< x, y, width, height, columns, rows, share of lit cells: a box with windows, lit ones in the second colour
};

/// One shape of a drawing, as tables hold it. Colours are 0xRRGGBB.
struct stDef_Shape
{
    emDef_Shape eKind;
    float arAt[8];
    std::uint32_t nTop;    ///< colour at the upper edge; of a grid: dark cells
    std::uint32_t nBottom; ///< colour at the lower edge; of a grid: lit cells
    float fOpacity = 1.0F;
};

/// Where a drawing is put: its origin, its size, and whether it looks the other way.
struct stDef_Placement
{
    float fX = 0.0F;
    float fY = 0.0F;
    float fScale = 1.0F;
    bool bMirror = false;
};

/// A planar YUV 4:2:0 picture with soft-edged shapes and bitmap text. Coordinates are those of a picture 640 units
/// wide, whatever its real size. A copy is a copy of the pixels.
class CCanvas
{
public:
    static constexpr float s_fUnits = 640.0F; ///< width of every picture in drawing units

    CCanvas(int nWidth, int nHeight); ///< pixels, both even

    int m_F_n_Width() const { return vm_nWidth; }
    int m_F_n_Height() const { return vm_nHeight; }
    float m_F_n_Units() const { return static_cast<float>(vm_nHeight) * s_fUnits / static_cast<float>(vm_nWidth); }
    /// Y, U and V plane, one after the other, without padding.
    const std::vector<std::uint8_t>& m_F_ar_Pixels() const { return vm_arPixels; }

    /// Turns the hues of everything drawn from now on, in degrees, and mirrors it left to right.
    void m_S_SetStyle(float fHueDegrees, bool bMirror);

    void m_S_Draw(const stDef_Shape& stShape, const stDef_Placement& stAt = {});
    void m_S_Draw(std::span<const stDef_Shape> arShapes, const stDef_Placement& stAt = {});
    /// Capital letters, digits, blank and ":.-&"; 5 by 7 dots of fDot units each, one dot apart. Style doesn't matter.
    void m_S_DrawText(std::string_view sText, float fX, float fY, float fDot, std::uint32_t nColour);
    /// Width of a text in units.
    static float s_F_n_TextWidth(std::string_view sText, float fDot);
    /// A box of an exact luma and no colour, at whole pixels.
    void m_S_FillGrey(int nX, int nY, int nWidth, int nHeight, std::uint8_t nLuma);

    /// Takes a window out of a picture of the same size and fills this one with it. Beyond its sides the picture goes
    /// on mirrored, without an end; above and below, its edge goes on.
    /// @param fX, fY middle of the window, off the picture's middle, in units
    /// @param fZoom how many times the window goes into the picture's width
    /// @param fLight factor of the brightness
    void m_S_TakeWindow(const CCanvas& objFrom, float fX, float fY, float fZoom, float fLight);
    /// Averages each pixel with its neighbours, up to so many pixels away.
    void m_S_Blur(int nRadius);

private:
    struct stDef_Yuv
    {
        float fY, fU, fV;
    };
    struct stDef_Bounds
    {
        float fLeft, fTop, fRight, fBottom;
    };
    template <typename Distance>
    void m_S_Paint(const stDef_Bounds& stBounds, const stDef_Shape& stShape, const stDef_Placement& stAt,
                   Distance distance);
    struct stDef_Plane
    {
        std::uint8_t* pPixels;
        int nWidth, nHeight;
    };
    stDef_Plane m_F_o_Plane(int nPlane);
    void m_S_DrawGrid(const stDef_Shape& stShape, const stDef_Placement& stAt);
    stDef_Yuv m_F_o_Yuv(std::uint32_t nRgb) const;

    int vm_nWidth;
    int vm_nHeight;
    float vm_fCos = 1.0F;
    float vm_fSin = 0.0F;
    bool vm_bMirror = false;
    std::vector<std::uint8_t> vm_arPixels;
};
