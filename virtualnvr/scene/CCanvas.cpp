#include "scene/CCanvas.h"

#include "scene/CDotFont.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <numbers>

namespace {

float BoxDistance(const float* pAt, float fX, float fY)
{
    const float fRadius = pAt[4];
    const float fDx = std::abs(fX - pAt[0] - pAt[2] / 2) - pAt[2] / 2 + fRadius;
    const float fDy = std::abs(fY - pAt[1] - pAt[3] / 2) - pAt[3] / 2 + fRadius;
    if (fDx <= 0 || fDy <= 0)
        return std::max(fDx, fDy) - fRadius;
    return std::sqrt(fDx * fDx + fDy * fDy) - fRadius;
}

float DiscDistance(const float* pAt, float fX, float fY)
{
    const float fDx = (fX - pAt[0]) / pAt[2];
    const float fDy = (fY - pAt[1]) / pAt[3];
    return (std::sqrt(fDx * fDx + fDy * fDy) - 1.0F) * std::min(pAt[2], pAt[3]);
}

// Half-planes of a quad's edges: the distance of a point is the largest of the four.
struct stDef_Edges
{
    float arNormalX[4], arNormalY[4], arOffset[4];

    explicit stDef_Edges(const float* pAt)
    {
        float fArea = 0.0F;
        for (int n = 0; n < 4; ++n)
            fArea += pAt[2 * n] * pAt[(2 * n + 3) % 8] - pAt[(2 * n + 2) % 8] * pAt[2 * n + 1];
        const float fSide = fArea < 0 ? -1.0F : 1.0F;
        for (int n = 0; n < 4; ++n) {
            const float fDx = pAt[(2 * n + 2) % 8] - pAt[2 * n];
            const float fDy = pAt[(2 * n + 3) % 8] - pAt[2 * n + 1];
            const float fLength = std::max(std::sqrt(fDx * fDx + fDy * fDy), 0.001F);
            arNormalX[n] = fSide * fDy / fLength;
            arNormalY[n] = -fSide * fDx / fLength;
            arOffset[n] = arNormalX[n] * pAt[2 * n] + arNormalY[n] * pAt[2 * n + 1];
        }
    }

    float operator()(float fX, float fY) const
    {
        float fMost = -1e9F;
        for (int n = 0; n < 4; ++n)
            fMost = std::max(fMost, arNormalX[n] * fX + arNormalY[n] * fY - arOffset[n]);
        return fMost;
    }
};

struct stDef_Area
{
    int nLeft, nTop, nRight, nBottom; // pixels, all even
};

// From pixels of the picture to a shape's own coordinates and back.
class CMapping
{
public:
    CMapping(int nWidth, bool bMirror, const stDef_Placement& stAt)
        : vm_fPixel(CCanvas::s_fUnits / (static_cast<float>(nWidth) * stAt.fScale)),
          vm_fSign(bMirror != stAt.bMirror ? -1.0F : 1.0F),
          vm_fOriginX((bMirror ? CCanvas::s_fUnits - stAt.fX : stAt.fX) / stAt.fScale),
          vm_fOriginY(stAt.fY / stAt.fScale)
    {}

    float m_F_n_Pixel() const { return vm_fPixel; } // size of one pixel in the shape's units
    float m_F_n_X(float fColumn) const { return (fColumn * vm_fPixel - vm_fOriginX) * vm_fSign; }
    float m_F_n_Y(float fRow) const { return fRow * vm_fPixel - vm_fOriginY; }

    template <typename Bounds>
    stDef_Area m_F_o_Area(const Bounds& stBounds, int nWidth, int nHeight) const
    {
        const auto even = [](float fAt, int nLimit) {
            return static_cast<int>(std::clamp(std::floor(fAt), 0.0F, static_cast<float>(nLimit))) & ~1;
        };
        const float fA = (vm_fSign * stBounds.fLeft + vm_fOriginX) / vm_fPixel;
        const float fB = (vm_fSign * stBounds.fRight + vm_fOriginX) / vm_fPixel;
        return {even(std::min(fA, fB) - 1, nWidth), even((stBounds.fTop + vm_fOriginY) / vm_fPixel - 1, nHeight),
                even(std::max(fA, fB) + 3, nWidth), even((stBounds.fBottom + vm_fOriginY) / vm_fPixel + 3, nHeight)};
    }

private:
    float vm_fPixel, vm_fSign, vm_fOriginX, vm_fOriginY;
};

float Mix(float fFrom, float fTo, float fPart)
{
    return fFrom + (fTo - fFrom) * fPart;
}

void Blend(std::uint8_t& nPixel, float fValue, float fCover)
{
    nPixel = static_cast<std::uint8_t>(Mix(nPixel, fValue, fCover) + 0.5F);
}

// A pixel between two others: the second one's share is nPart of 256.
struct stDef_Tap
{
    int nFirst, nSecond, nPart;
};

int Mirrored(int n, int nSize)
{
    n = (n % (2 * nSize) + 2 * nSize) % (2 * nSize);
    return n < nSize ? n : 2 * nSize - 1 - n;
}

int Held(int n, int nSize)
{
    return std::clamp(n, 0, nSize - 1);
}

// Where the pixels of a row or column come from. fMiddle is off its middle, in its own pixels; beyond() tells what
// stands for pixels outside of it.
std::vector<stDef_Tap> Taps(int nSize, float fMiddle, float fZoom, int (*beyond)(int n, int nSize))
{
    std::vector<stDef_Tap> arTaps;
    const float fHalf = static_cast<float>(nSize) / 2;
    for (int n = 0; n < nSize; ++n) {
        const float fAt = (static_cast<float>(n) + 0.5F - fHalf) / fZoom + fHalf + fMiddle - 0.5F;
        const float fFloor = std::floor(fAt);
        const int nFirst = static_cast<int>(fFloor);
        arTaps.push_back({beyond(nFirst, nSize), beyond(nFirst + 1, nSize), static_cast<int>((fAt - fFloor) * 256.0F)});
    }
    return arTaps;
}

// Running averages along a line of pixels that are nStep apart; at its ends over fewer of them.
void BlurLine(std::uint8_t* pPixels, std::ptrdiff_t nStep, int nSize, int nRadius, std::vector<std::uint8_t>& arLine)
{
    arLine.resize(static_cast<std::size_t>(nSize));
    for (int n = 0; n < nSize; ++n)
        arLine[static_cast<std::size_t>(n)] = pPixels[n * nStep];
    int nSum = 0, nCount = 0;
    for (int n = -nRadius; n < nSize; ++n) {
        if (n + nRadius < nSize) {
            nSum += arLine[static_cast<std::size_t>(n + nRadius)];
            ++nCount;
        }
        if (n - nRadius - 1 >= 0) {
            nSum -= arLine[static_cast<std::size_t>(n - nRadius - 1)];
            --nCount;
        }
        if (n >= 0)
            pPixels[n * nStep] = static_cast<std::uint8_t>(nSum / nCount);
    }
}

} // namespace

CCanvas::CCanvas(int nWidth, int nHeight)
    : vm_nWidth(nWidth), vm_nHeight(nHeight), vm_arPixels(static_cast<std::size_t>(nWidth) * nHeight * 3 / 2, 128)
{}

void CCanvas::m_S_SetStyle(float fHueDegrees, bool bMirror)
{
    vm_fCos = std::cos(fHueDegrees * std::numbers::pi_v<float> / 180.0F);
    vm_fSin = std::sin(fHueDegrees * std::numbers::pi_v<float> / 180.0F);
    vm_bMirror = bMirror;
}

// BT.601 with 16..235, as the encoder takes it.
CCanvas::stDef_Yuv CCanvas::m_F_o_Yuv(std::uint32_t nRgb) const
{
    const float fR = static_cast<float>((nRgb >> 16) & 0xFF) / 255.0F;
    const float fG = static_cast<float>((nRgb >> 8) & 0xFF) / 255.0F;
    const float fB = static_cast<float>(nRgb & 0xFF) / 255.0F;
    const float fU = -37.797F * fR - 74.203F * fG + 112.0F * fB;
    const float fV = 112.0F * fR - 93.786F * fG - 18.214F * fB;
    return {16.0F + 65.481F * fR + 128.553F * fG + 24.966F * fB, 128.0F + vm_fCos * fU - vm_fSin * fV,
            128.0F + vm_fSin * fU + vm_fCos * fV};
}

// Walks the pixels around the shape; each is mapped back into the shape's own coordinates, where distance() is negative
// inside. The edge is as soft as one pixel. The colour planes have a quarter of the pixels, each twice the size.
template <typename Distance>
void CCanvas::m_S_Paint(const stDef_Bounds& stBounds, const stDef_Shape& stShape, const stDef_Placement& stAt,
                        Distance distance)
{
    const CMapping objMapping(vm_nWidth, vm_bMirror, stAt);
    const stDef_Yuv stTop = m_F_o_Yuv(stShape.nTop);
    const stDef_Yuv stBottom = m_F_o_Yuv(stShape.nBottom);
    const float fSharp = 1.0F / objMapping.m_F_n_Pixel();
    const auto walk = [&](std::uint8_t* pPlane, int nSub, float fFrom, float fTo) {
        const stDef_Area stArea = objMapping.m_F_o_Area(stBounds, vm_nWidth, vm_nHeight);
        const float fHalf = 0.5F * static_cast<float>(nSub);
        for (int nY = stArea.nTop; nY < stArea.nBottom; nY += nSub) {
            const float fY = objMapping.m_F_n_Y(static_cast<float>(nY) + fHalf);
            const float fPart = std::clamp((fY - stBounds.fTop) / (stBounds.fBottom - stBounds.fTop), 0.0F, 1.0F);
            const float fValue = Mix(fFrom, fTo, fPart);
            std::uint8_t* pRow = pPlane + nY / nSub * (vm_nWidth / nSub);
            for (int nX = stArea.nLeft; nX < stArea.nRight; nX += nSub) {
                const float fDistance = distance(objMapping.m_F_n_X(static_cast<float>(nX) + fHalf), fY);
                const float fCover = std::min(0.5F - fDistance * fSharp, 1.0F) * stShape.fOpacity;
                if (fCover > 0)
                    Blend(pRow[nX / nSub], fValue, fCover);
            }
        }
    };
    std::uint8_t* pLuma = vm_arPixels.data();
    const std::size_t nArea = static_cast<std::size_t>(vm_nWidth) * vm_nHeight;
    walk(pLuma, 1, stTop.fY, stBottom.fY);
    walk(pLuma + nArea, 2, stTop.fU, stBottom.fU);
    walk(pLuma + nArea * 5 / 4, 2, stTop.fV, stBottom.fV);
}

void CCanvas::m_S_Draw(const stDef_Shape& stShape, const stDef_Placement& stAt)
{
    const float* pAt = stShape.arAt;
    switch (stShape.eKind) {
    case emDef_Shape::Box:
        m_S_Paint({pAt[0], pAt[1], pAt[0] + pAt[2], pAt[1] + pAt[3]}, stShape, stAt,
                  [pAt](float fX, float fY) { return BoxDistance(pAt, fX, fY); });
        break;
    case emDef_Shape::Disc:
        m_S_Paint({pAt[0] - pAt[2], pAt[1] - pAt[3], pAt[0] + pAt[2], pAt[1] + pAt[3]}, stShape, stAt,
                  [pAt](float fX, float fY) { return DiscDistance(pAt, fX, fY); });
        break;
    case emDef_Shape::Quad: {
        const auto [fLeft, fRight] = std::minmax({pAt[0], pAt[2], pAt[4], pAt[6]});
        const auto [fTop, fBottom] = std::minmax({pAt[1], pAt[3], pAt[5], pAt[7]});
        m_S_Paint({fLeft, fTop, fRight, fBottom}, stShape, stAt, stDef_Edges(pAt));
        break;
    }
    case emDef_Shape::Grid:
        m_S_DrawGrid(stShape, stAt);
        break;
    }
}

void CCanvas::m_S_Draw(std::span<const stDef_Shape> arShapes, const stDef_Placement& stAt)
{
    for (const stDef_Shape& stShape : arShapes)
        m_S_Draw(stShape, stAt);
}

void CCanvas::m_S_DrawGrid(const stDef_Shape& stShape, const stDef_Placement& stAt)
{
    const float* pAt = stShape.arAt;
    const float fCellX = pAt[2] / pAt[4];
    const float fCellY = pAt[3] / pAt[5];
    std::uint32_t nHash = static_cast<std::uint32_t>(pAt[0] * 31 + pAt[1] * 17) | 1U;
    for (int nRow = 0; nRow < static_cast<int>(pAt[5]); ++nRow) {
        for (int nColumn = 0; nColumn < static_cast<int>(pAt[4]); ++nColumn) {
            nHash = nHash * 1664525U + 1013904223U; // which windows are lit stays the same from picture to picture
            const bool bLit = static_cast<float>(nHash >> 16) < pAt[6] * 65536.0F;
            const std::uint32_t nColour = bLit ? stShape.nBottom : stShape.nTop;
            m_S_Draw({emDef_Shape::Box,
                      {pAt[0] + fCellX * (static_cast<float>(nColumn) + 0.2F),
                       pAt[1] + fCellY * (static_cast<float>(nRow) + 0.2F), fCellX * 0.6F, fCellY * 0.6F, 0.5F},
                      nColour,
                      nColour,
                      stShape.fOpacity},
                     stAt);
        }
    }
}

void CCanvas::m_S_DrawText(std::string_view sText, float fX, float fY, float fDot, std::uint32_t nColour)
{
    const float fHue = std::atan2(vm_fSin, vm_fCos) * 180.0F / std::numbers::pi_v<float>;
    const bool bMirror = vm_bMirror;
    m_S_SetStyle(0.0F, false);
    for (const char cGlyph : sText) {
        for (int nRow = 0; nRow < CDotFont::s_nRows; ++nRow) {
            int nDots = 0; // of the run that ends at the column
            for (int nColumn = 0; nColumn <= CDotFont::s_nColumns; ++nColumn) {
                if (nColumn < CDotFont::s_nColumns && CDotFont::s_F_b_Dot(cGlyph, nColumn, nRow)) {
                    ++nDots;
                    continue;
                }
                if (nDots > 0)
                    m_S_Draw({emDef_Shape::Box,
                              {fX + fDot * static_cast<float>(nColumn - nDots), fY + fDot * static_cast<float>(nRow),
                               fDot * static_cast<float>(nDots), fDot, 0.0F},
                              nColour,
                              nColour});
                nDots = 0;
            }
        }
        fX += fDot * (CDotFont::s_nColumns + 1);
    }
    m_S_SetStyle(fHue, bMirror);
}

float CCanvas::s_F_n_TextWidth(std::string_view sText, float fDot)
{
    return fDot * (static_cast<float>(sText.size()) * (CDotFont::s_nColumns + 1) - 1);
}

void CCanvas::m_S_FillGrey(int nX, int nY, int nWidth, int nHeight, std::uint8_t nLuma)
{
    const std::size_t nArea = static_cast<std::size_t>(vm_nWidth) * vm_nHeight;
    for (int nRow = nY; nRow < nY + nHeight; ++nRow)
        std::memset(vm_arPixels.data() + static_cast<std::size_t>(nRow) * vm_nWidth + nX, nLuma,
                    static_cast<std::size_t>(nWidth));
    for (int nPlane = 0; nPlane < 2; ++nPlane) {
        std::uint8_t* pChroma = vm_arPixels.data() + nArea + nPlane * nArea / 4;
        for (int nRow = nY / 2; nRow < (nY + nHeight) / 2; ++nRow)
            std::memset(pChroma + static_cast<std::size_t>(nRow) * (vm_nWidth / 2) + nX / 2, 128,
                        static_cast<std::size_t>(nWidth / 2));
    }
}

CCanvas::stDef_Plane CCanvas::m_F_o_Plane(int nPlane)
{
    const std::size_t nArea = static_cast<std::size_t>(vm_nWidth) * vm_nHeight;
    if (nPlane == 0)
        return {vm_arPixels.data(), vm_nWidth, vm_nHeight};
    return {vm_arPixels.data() + nArea + static_cast<std::size_t>(nPlane - 1) * nArea / 4, vm_nWidth / 2,
            vm_nHeight / 2};
}

// Row by row: first between two rows, then between its columns, both in fixed point, and last the brightness.
void CCanvas::m_S_TakeWindow(const CCanvas& objFrom, float fX, float fY, float fZoom, float fLight)
{
    std::array<std::uint8_t, 256> arLight;
    for (int n = 0; n < 256; ++n)
        arLight[static_cast<std::size_t>(n)] =
            static_cast<std::uint8_t>(std::clamp(16.0F + static_cast<float>(n - 16) * fLight, 16.0F, 235.0F));
    std::vector<std::uint16_t> arRow(static_cast<std::size_t>(vm_nWidth));
    for (int nPlane = 0; nPlane < 3; ++nPlane) {
        const stDef_Plane st = m_F_o_Plane(nPlane);
        const std::uint8_t* pFrom = objFrom.vm_arPixels.data() + (st.pPixels - vm_arPixels.data());
        const float fPixel = static_cast<float>(st.nWidth) / s_fUnits;
        const auto arColumns = Taps(st.nWidth, fX * fPixel, fZoom, Mirrored);
        std::uint8_t* pTo = st.pPixels;
        for (const stDef_Tap& stRow : Taps(st.nHeight, fY * fPixel, fZoom, Held)) {
            const std::uint8_t* pFirst = pFrom + static_cast<std::ptrdiff_t>(stRow.nFirst) * st.nWidth;
            const std::uint8_t* pSecond = pFrom + static_cast<std::ptrdiff_t>(stRow.nSecond) * st.nWidth;
            const auto nPart = static_cast<std::uint16_t>(stRow.nPart);
            for (int nX = 0; nX < st.nWidth; ++nX)
                arRow[static_cast<std::size_t>(nX)] =
                    static_cast<std::uint16_t>(pFirst[nX] * (256 - nPart) + pSecond[nX] * nPart);
            for (const stDef_Tap& stTap : arColumns) {
                const int nFirst = arRow[static_cast<std::size_t>(stTap.nFirst)];
                const int nSecond = arRow[static_cast<std::size_t>(stTap.nSecond)];
                *pTo++ = static_cast<std::uint8_t>((nFirst * (256 - stTap.nPart) + nSecond * stTap.nPart) >> 16);
            }
        }
    }
    const stDef_Plane stLuma = m_F_o_Plane(0);
    if (fLight != 1.0F)
        std::transform(stLuma.pPixels, stLuma.pPixels + static_cast<std::ptrdiff_t>(vm_nWidth) * vm_nHeight,
                       stLuma.pPixels, [&](std::uint8_t n) { return arLight[n]; });
}

void CCanvas::m_S_Blur(int nRadius)
{
    std::vector<std::uint8_t> arLine;
    for (int nPlane = 0; nPlane < 3 && nRadius > 0; ++nPlane) {
        const stDef_Plane st = m_F_o_Plane(nPlane);
        const int nReach = nPlane == 0 ? nRadius : (nRadius + 1) / 2;
        for (int nY = 0; nY < st.nHeight; ++nY)
            BlurLine(st.pPixels + static_cast<std::ptrdiff_t>(nY) * st.nWidth, 1, st.nWidth, nReach, arLine);
        for (int nX = 0; nX < st.nWidth; ++nX)
            BlurLine(st.pPixels + nX, st.nWidth, st.nHeight, nReach, arLine);
    }
}
