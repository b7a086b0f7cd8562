#include "scene/stDef_Scene.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr emDef_Shape Box = emDef_Shape::Box;
constexpr emDef_Shape Disc = emDef_Shape::Disc;
constexpr emDef_Shape Quad = emDef_Shape::Quad;
constexpr emDef_Shape Grid = emDef_Shape::Grid;

// ---- what moves through the scenes; the origin is on the ground

constexpr stDef_Shape g_arCar[] = {
    {Disc, {0, 1, 66, 5}, 0x000000, 0x000000, 0.35F},
    {Quad, {-36, -28, -20, -50, 24, -50, 44, -28}, 0xC23A35, 0xA52C2A},
    {Quad, {-29, -29, -16, -45, 1, -45, 1, -29}, 0xBFDCEC, 0x86A9BE},
    {Quad, {6, -29, 6, -45, 21, -45, 35, -29}, 0xBFDCEC, 0x86A9BE},
    {Box, {-62, -30, 124, 24, 8}, 0xD8443D, 0x9C2624},
    {Box, {-62, -13, 124, 5, 2}, 0x5B1A1A, 0x5B1A1A},
    {Box, {55, -25, 8, 7, 3}, 0xFFF6C8, 0xFFE590},
    {Box, {-63, -25, 5, 8, 2}, 0xFF8A70, 0xFF5A4A},
    {Disc, {-36, -7, 12, 12}, 0x1B1C1F, 0x1B1C1F},
    {Disc, {-36, -7, 6, 6}, 0xA7ADB4, 0x7A8087},
    {Disc, {38, -7, 12, 12}, 0x1B1C1F, 0x1B1C1F},
    {Disc, {38, -7, 6, 6}, 0xA7ADB4, 0x7A8087},
};

constexpr stDef_Shape g_arVan[] = {
    {Disc, {0, 1, 74, 5}, 0x000000, 0x000000, 0.35F},
    {Box, {-70, -68, 104, 60, 6}, 0xF3F5F7, 0xC9D0D8},
    {Quad, {34, -60, 50, -60, 70, -30, 34, -30}, 0xE4E9EE, 0xC9D0D8},
    {Quad, {38, -55, 48, -55, 62, -32, 38, -32}, 0x9CC4DA, 0x5F879E},
    {Box, {28, -32, 44, 24, 5}, 0xE4E9EE, 0xB8C0C9},
    {Box, {-70, -44, 104, 12, 0}, 0x2F7FC4, 0x2A6FAB},
    {Box, {66, -26, 7, 8, 3}, 0xFFF6C8, 0xFFE590},
    {Disc, {-42, -8, 13, 13}, 0x1B1C1F, 0x1B1C1F},
    {Disc, {-42, -8, 6, 6}, 0xA7ADB4, 0x7A8087},
    {Disc, {46, -8, 13, 13}, 0x1B1C1F, 0x1B1C1F},
    {Disc, {46, -8, 6, 6}, 0xA7ADB4, 0x7A8087},
};

constexpr stDef_Shape g_arForklift[] = {
    {Disc, {6, 1, 62, 5}, 0x000000, 0x000000, 0.35F}, {Box, {-34, -62, 4, 40, 1}, 0x3A3F45, 0x3A3F45},
    {Box, {10, -62, 4, 40, 1}, 0x3A3F45, 0x3A3F45},   {Box, {-38, -65, 56, 5, 2}, 0x3A3F45, 0x2A2E33},
    {Disc, {-10, -44, 7, 8}, 0xE7BE98, 0xC79B74},     {Disc, {-10, -50, 8, 5}, 0xF4F4F4, 0xD8D8D8},
    {Box, {-18, -38, 17, 20, 5}, 0xFF8A1E, 0xE36F0A}, {Quad, {-44, -30, 14, -24, 22, -6, -46, -6}, 0xF6C427, 0xD79E0E},
    {Box, {24, -74, 5, 70, 1}, 0x4A5057, 0x33383E},   {Box, {26, -8, 44, 4, 1}, 0x33383E, 0x33383E},
    {Box, {32, -40, 34, 31, 1}, 0xC89A63, 0xA97B45},  {Box, {47, -40, 4, 31, 0}, 0xE3C79B, 0xD3B282},
    {Disc, {-30, -8, 11, 11}, 0x1B1C1F, 0x1B1C1F},    {Disc, {-30, -8, 5, 5}, 0xF6C427, 0xD79E0E},
    {Disc, {12, -8, 11, 11}, 0x1B1C1F, 0x1B1C1F},     {Disc, {12, -8, 5, 5}, 0xF6C427, 0xD79E0E},
};

// A car that comes towards the camera, with its lights on.
constexpr stDef_Shape g_arCarFront[] = {
    {Disc, {0, 2, 60, 8}, 0x000000, 0x000000, 0.4F},
    {Quad, {-26, -56, 26, -56, 38, -32, -38, -32}, 0x4A6E86, 0x2A4456},
    {Quad, {-22, -52, 22, -52, 31, -34, -31, -34}, 0x9FB9C8, 0x3C5363},
    {Box, {-46, -34, 92, 30, 8}, 0x52788F, 0x2B4557},
    {Box, {-20, -22, 40, 10, 3}, 0x14212B, 0x14212B},
    {Box, {-42, -6, 16, 8, 2}, 0x0E1114, 0x0E1114},
    {Box, {26, -6, 16, 8, 2}, 0x0E1114, 0x0E1114},
    {Disc, {-34, -20, 24, 17}, 0xFFF1B8, 0xFFF1B8, 0.22F},
    {Disc, {34, -20, 24, 17}, 0xFFF1B8, 0xFFF1B8, 0.22F},
    {Disc, {-34, -20, 9, 7}, 0xFFFDE8, 0xFFF3C4},
    {Disc, {34, -20, 9, 7}, 0xFFFDE8, 0xFFF3C4},
};

float Lerp(float fFrom, float fTo, float fPart)
{
    return fFrom + (fTo - fFrom) * fPart;
}

// 0 outside of the span, rises and falls softly at its ends.
float Window(float fPhase, float fFrom, float fTo, float fSlope)
{
    const auto soft = [](float fAt) {
        const float fPart = std::clamp(fAt, 0.0F, 1.0F);
        return fPart * fPart * (3 - 2 * fPart);
    };
    return soft((fPhase - fFrom) / fSlope) * soft((fTo - fPhase) / fSlope);
}

struct stDef_Clothes
{
    std::uint32_t nCoat, nTrousers, nHair;
};

// A limb from its joint, swung by an angle from the vertical.
stDef_Shape Limb(float fX, float fY, float fLength, float fWidth, float fSwing, std::uint32_t nColour)
{
    const float fDx = std::sin(fSwing) * fLength;
    const float fDy = std::cos(fSwing) * fLength;
    const float fHalf = fWidth / 2;
    return {Quad,
            {fX - fHalf, fY, fX + fHalf, fY, fX + fDx + fHalf * 0.8F, fY + fDy, fX + fDx - fHalf * 0.8F, fY + fDy},
            nColour,
            nColour};
}

void DrawWalker(CCanvas& objCanvas, const stDef_Placement& stAt, float fSeconds, const stDef_Clothes& stClothes)
{
    const float fSwing = std::sin(fSeconds * 2 * std::numbers::pi_v<float> * 0.9F) * 0.5F;
    stDef_Placement stBody = stAt;
    stBody.fY -= std::abs(std::cos(fSeconds * 2 * std::numbers::pi_v<float> * 0.9F)) * 1.6F * stAt.fScale;
    objCanvas.m_S_Draw({Disc, {0, 1, 17, 3.5F}, 0x000000, 0x000000, 0.3F}, stAt);
    const stDef_Shape arShapes[] = {
        Limb(0, -54, 24, 6, -fSwing, stClothes.nCoat),
        Limb(-1, -32, 31, 8, fSwing, stClothes.nTrousers),
        Limb(1, -32, 31, 8, -fSwing, stClothes.nTrousers),
        {Box, {-9, -60, 18, 32, 7}, stClothes.nCoat, stClothes.nCoat},
        Limb(0, -54, 24, 6, fSwing, stClothes.nCoat),
        {Disc, {0, -69, 8, 9}, 0xE9C19C, 0xC99C76},
        {Disc, {-1, -74, 8.5F, 6}, stClothes.nHair, stClothes.nHair},
    };
    objCanvas.m_S_Draw(arShapes, stBody);
}

// ---- street, by day

constexpr stDef_Shape g_arStreet[] = {
    {Box, {0, 0, 640, 220, 0}, 0x5AA5E3, 0xDCEEF7},
    {Disc, {548, 66, 48, 48}, 0xFFF6CF, 0xFFF6CF, 0.3F},
    {Disc, {548, 66, 27, 27}, 0xFFF3B5, 0xFFE88A},
    {Disc, {330, 72, 44, 13}, 0xFFFFFF, 0xEAF3F9, 0.85F},
    {Disc, {304, 64, 26, 15}, 0xFFFFFF, 0xF2F8FC, 0.85F},
    {Disc, {352, 62, 22, 14}, 0xFFFFFF, 0xF2F8FC, 0.85F},
    {Disc, {452, 112, 36, 9}, 0xFFFFFF, 0xEAF3F9, 0.7F},
    {Box, {0, 120, 70, 100, 0}, 0xA9C0D1, 0xC1D3DF},
    {Box, {196, 104, 64, 116, 0}, 0xA9C0D1, 0xC1D3DF},
    {Box, {400, 128, 90, 92, 0}, 0xA9C0D1, 0xC1D3DF},
    {Box, {20, 78, 128, 142, 0}, 0xC3745A, 0xA55A44},
    {Box, {14, 72, 140, 10, 2}, 0x8C4635, 0x7A3B2C},
    {Grid, {26, 88, 116, 84, 4, 3, 0.3F}, 0x4C6476, 0xBFE0F0},
    {Box, {34, 182, 46, 38, 2}, 0x3B4B57, 0x5F7684},
    {Quad, {28, 178, 86, 178, 92, 192, 22, 192}, 0x2E8B6B, 0x226B52},
    {Box, {98, 184, 26, 36, 2}, 0x5B3A29, 0x472C1F},
    {Box, {156, 118, 92, 102, 0}, 0xEADBBB, 0xD6C39C},
    {Quad, {150, 120, 202, 84, 202, 84, 254, 120}, 0x8A5A44, 0x6F4635},
    {Grid, {162, 124, 80, 50, 3, 2, 0.4F}, 0x55707F, 0xC6E4F2},
    {Box, {188, 184, 26, 36, 2}, 0x2F5D7C, 0x234A64},
    {Box, {262, 56, 126, 164, 0}, 0x8597A8, 0x6C7E90},
    {Box, {258, 50, 134, 9, 2}, 0x566676, 0x4A5967},
    {Grid, {268, 64, 114, 114, 5, 5, 0.35F}, 0x3F5365, 0xB7D7E8},
    {Box, {276, 186, 98, 34, 2}, 0x2C3A45, 0x4D6372},
    {Box, {270, 180, 110, 9, 2}, 0xD9A441, 0xBC8628},
    {Box, {496, 96, 144, 124, 0}, 0x6FA39A, 0x558479},
    {Box, {490, 90, 150, 9, 2}, 0x3F6A61, 0x365C54},
    {Grid, {504, 104, 132, 76, 5, 3, 0.3F}, 0x3C5650, 0xCBE9DF},
    {Box, {438, 150, 7, 72, 2}, 0x6B4A31, 0x573B27},
    {Disc, {441, 138, 33, 31}, 0x5E9E4A, 0x3D7A35},
    {Disc, {428, 126, 20, 18}, 0x77B85C, 0x559446},
    {Box, {0, 216, 640, 24, 0}, 0xCBC5BA, 0xB4AEA3},
    {Box, {0, 238, 640, 5, 0}, 0x8F8A82, 0x7B766F},
    {Box, {0, 243, 640, 117, 0}, 0x5D6168, 0x3B3E44},
    {Box, {0, 292, 70, 6, 2}, 0xE9E6DA, 0xDAD6C8},
    {Box, {120, 292, 80, 6, 2}, 0xE9E6DA, 0xDAD6C8},
    {Box, {250, 292, 80, 6, 2}, 0xE9E6DA, 0xDAD6C8},
    {Box, {380, 292, 80, 6, 2}, 0xE9E6DA, 0xDAD6C8},
    {Box, {510, 292, 80, 6, 2}, 0xE9E6DA, 0xDAD6C8},
    {Box, {478, 110, 4, 124, 1}, 0x3A4047, 0x3A4047},
    {Box, {452, 106, 30, 4, 2}, 0x3A4047, 0x3A4047},
    {Box, {446, 108, 22, 6, 3}, 0x565D66, 0xF0EBC8},
};

void StreetStill(CCanvas& objCanvas)
{
    objCanvas.m_S_Draw(g_arStreet);
}

void StreetMoving(CCanvas& objCanvas, float fPhase, float fSeconds)
{
    DrawWalker(objCanvas, {Lerp(-60, 330, fPhase), 236, 0.74F}, fSeconds, {0x3E6FB0, 0x2B2F3A, 0x3A2A1E});
    DrawWalker(objCanvas, {Lerp(330, 720, fPhase), 236, 0.74F}, fSeconds, {0xC9A227, 0x40352B, 0x20180F});
    objCanvas.m_S_Draw(g_arVan, {Lerp(760, -160, fPhase), 281, 0.86F, true});
    objCanvas.m_S_Draw(g_arCar, {Lerp(-130, 780, std::fmod(fPhase * 2.0F, 1.0F)), 334, 1.12F});
}

// ---- yard, at dusk

constexpr stDef_Shape g_arYard[] = {
    {Box, {0, 0, 640, 110, 0}, 0x2B3A6B, 0x9A5C86},
    {Box, {0, 110, 640, 92, 0}, 0x9A5C86, 0xF7B267},
    {Disc, {150, 182, 64, 64}, 0xFFE0A0, 0xFFE0A0, 0.28F},
    {Disc, {150, 182, 34, 34}, 0xFFEDBE, 0xFFC56B},
    {Quad, {0, 170, 120, 200, 120, 214, 0, 214}, 0x4B4668, 0x3D3A57},
    {Quad, {80, 206, 250, 168, 330, 200, 330, 214}, 0x57507A, 0x423E5E},
    {Box, {0, 204, 640, 156, 0}, 0x7B6F66, 0x4C453F},
    {Quad, {296, 98, 460, 56, 640, 84, 640, 110}, 0x5B6470, 0x474F59},
    {Box, {296, 96, 344, 122, 0}, 0x98A4AF, 0x6D7883},
    {Grid, {296, 96, 344, 122, 30, 1, 0}, 0x8A96A1, 0x8A96A1, 0.6F},
    {Box, {296, 96, 344, 9, 0}, 0x3E4650, 0x363D46},
    {Box, {320, 134, 78, 84, 2}, 0x39424C, 0x39424C},
    {Grid, {320, 134, 78, 84, 1, 8, 0}, 0xC7D0D8, 0xC7D0D8},
    {Box, {424, 134, 78, 84, 2}, 0x262B30, 0x1A1E22},
    {Box, {430, 140, 66, 78, 0}, 0xF2C97A, 0xB98A3D},
    {Box, {528, 134, 78, 84, 2}, 0x39424C, 0x39424C},
    {Grid, {528, 134, 78, 84, 1, 8, 0}, 0xC7D0D8, 0xC7D0D8},
    {Disc, {359, 124, 5, 4}, 0xFFF3C9, 0xFFE39A},
    {Disc, {463, 124, 5, 4}, 0xFFF3C9, 0xFFE39A},
    {Disc, {567, 124, 5, 4}, 0xFFF3C9, 0xFFE39A},
    {Box, {22, 176, 120, 44, 1}, 0x2F7FA8, 0x225F80},
    {Grid, {22, 176, 120, 44, 14, 1, 0}, 0x1D5472, 0x1D5472, 0.7F},
    {Box, {36, 134, 120, 42, 1}, 0xC9533B, 0x9E3D2A},
    {Grid, {36, 134, 120, 42, 14, 1, 0}, 0x80301F, 0x80301F, 0.7F},
    {Box, {164, 182, 96, 38, 1}, 0x5B9A5B, 0x427443},
    {Grid, {164, 182, 96, 38, 11, 1, 0}, 0x2F5A30, 0x2F5A30, 0.7F},
    {Quad, {330, 226, 338, 226, 292, 360, 276, 360}, 0xE8BE3A, 0xD6A41E, 0.8F},
    {Quad, {434, 226, 442, 226, 440, 360, 422, 360}, 0xE8BE3A, 0xD6A41E, 0.8F},
    {Quad, {540, 226, 548, 226, 590, 360, 570, 360}, 0xE8BE3A, 0xD6A41E, 0.8F},
    {Box, {270, 60, 4, 160, 1}, 0x2B2F36, 0x2B2F36},
    {Box, {258, 54, 30, 9, 3}, 0x454B54, 0xFFF2C2},
};

void YardStill(CCanvas& objCanvas)
{
    objCanvas.m_S_Draw(g_arYard);
}

void YardMoving(CCanvas& objCanvas, float fPhase, float fSeconds)
{
    const bool bBack = fPhase >= 0.5F;
    const float fWay = bBack ? (fPhase - 0.5F) * 2 : fPhase * 2;
    DrawWalker(objCanvas, {Lerp(620, 260, fPhase), 262, 0.8F, true}, fSeconds, {0xFF7A1A, 0x27344D, 0xF4F4F4});
    objCanvas.m_S_Draw(g_arForklift, {bBack ? Lerp(760, -120, fWay) : Lerp(-120, 760, fWay), bBack ? 332.0F : 316.0F,
                                      bBack ? 1.15F : 1.0F, bBack});
}

// ---- gate, at night

constexpr stDef_Shape g_arGate[] = {
    {Box, {0, 0, 640, 200, 0}, 0x0A1230, 0x2C4270},
    {Disc, {96, 92, 46, 46}, 0xDCE6FF, 0xDCE6FF, 0.12F},
    {Disc, {96, 92, 24, 24}, 0xF6F3E2, 0xD9D8CC},
    {Disc, {88, 86, 5, 5}, 0xCFCDBF, 0xCFCDBF},
    {Disc, {103, 100, 7, 6}, 0xCFCDBF, 0xCFCDBF},
    {Quad, {0, 160, 140, 118, 280, 168, 0, 200}, 0x17223F, 0x131C33},
    {Quad, {250, 172, 430, 122, 640, 160, 640, 200}, 0x1A2747, 0x141E38},
    {Box, {0, 190, 640, 170, 0}, 0x27322F, 0x141A19},
    {Quad, {296, 186, 344, 186, 560, 360, 80, 360}, 0x3F4650, 0x2A2F37},
    {Quad, {318, 196, 322, 196, 324, 220, 316, 220}, 0xD9D3B5, 0xD9D3B5},
    {Quad, {315, 236, 325, 236, 328, 268, 312, 268}, 0xD9D3B5, 0xD9D3B5},
    {Quad, {311, 288, 329, 288, 334, 338, 306, 338}, 0xD9D3B5, 0xD9D3B5},
    {Box, {0, 166, 214, 72, 0}, 0x6A4B42, 0x3C2A26},
    {Grid, {0, 170, 214, 68, 14, 7, 0.5F}, 0x5A3F38, 0x775449},
    {Box, {426, 166, 214, 72, 0}, 0x6A4B42, 0x3C2A26},
    {Grid, {426, 170, 214, 68, 14, 7, 0.5F}, 0x5A3F38, 0x775449},
    {Box, {0, 160, 214, 8, 2}, 0x8D7468, 0x6F584E},
    {Box, {426, 160, 214, 8, 2}, 0x8D7468, 0x6F584E},
    {Box, {204, 138, 26, 104, 2}, 0x8A8F98, 0x565B64},
    {Box, {410, 138, 26, 104, 2}, 0x8A8F98, 0x565B64},
    {Disc, {217, 132, 26, 26}, 0xFFE7A8, 0xFFE7A8, 0.25F},
    {Disc, {217, 132, 8, 8}, 0xFFF8DC, 0xFFE7A8},
    {Disc, {423, 132, 26, 26}, 0xFFE7A8, 0xFFE7A8, 0.25F},
    {Disc, {423, 132, 8, 8}, 0xFFF8DC, 0xFFE7A8},
    {Box, {486, 150, 108, 104, 4}, 0xB9C2CB, 0x6D7681},
    {Box, {480, 142, 120, 12, 3}, 0x3B434D, 0x2D343C},
    {Box, {496, 168, 62, 42, 3}, 0xFFE9AE, 0xF4C766},
    {Box, {525, 168, 3, 42, 0}, 0x6D7681, 0x6D7681},
    {Disc, {512, 200, 7, 8}, 0x55433A, 0x55433A},
    {Box, {502, 204, 20, 6, 2}, 0x2D4A77, 0x2D4A77},
    {Box, {566, 172, 22, 82, 2}, 0x46515D, 0x343D47},
    {Quad, {452, 128, 460, 128, 552, 332, 356, 332}, 0xFFE7A8, 0xFFE7A8, 0.10F},
    {Box, {454, 112, 4, 150, 1}, 0x20252B, 0x20252B},
    {Box, {442, 106, 28, 8, 3}, 0x3A414A, 0xFFF4CF},
};

void GateStill(CCanvas& objCanvas)
{
    objCanvas.m_S_Draw(g_arGate[0]);
    std::uint32_t nHash = 12345;
    for (int nStar = 0; nStar < 70; ++nStar) {
        nHash = nHash * 1664525U + 1013904223U;
        const float fX = static_cast<float>((nHash >> 8) % 640);
        const float fY = static_cast<float>((nHash >> 18) % 150);
        objCanvas.m_S_Draw(
            {Disc, {fX, fY, 1.1F, 1.1F}, 0xF2F5FF, 0xF2F5FF, 0.4F + 0.06F * static_cast<float>(nStar % 9)});
    }
    objCanvas.m_S_Draw(std::span(g_arGate).subspan(1));
}

void DrawBarrier(CCanvas& objCanvas, float fRaised)
{
    constexpr float fPivotX = 448.0F;
    constexpr float fPivotY = 252.0F;
    constexpr int nParts = 8;
    constexpr float fPart = 34.0F;
    const float fAngle = fRaised * 1.25F;
    const float fCos = -std::cos(fAngle);
    const float fSin = -std::sin(fAngle);
    for (int nPart = 0; nPart < nParts; ++nPart) {
        const float fA = fPart * static_cast<float>(nPart);
        const float fB = fA + fPart;
        const std::uint32_t nColour = nPart % 2 == 0 ? 0xE8463C : 0xF5F5F0;
        objCanvas.m_S_Draw(
            {Quad,
             {fPivotX + fA * fCos + 4 * fSin, fPivotY + fA * fSin - 4 * fCos, fPivotX + fB * fCos + 4 * fSin,
              fPivotY + fB * fSin - 4 * fCos, fPivotX + fB * fCos - 4 * fSin, fPivotY + fB * fSin + 4 * fCos,
              fPivotX + fA * fCos - 4 * fSin, fPivotY + fA * fSin + 4 * fCos},
             nColour,
             nColour});
    }
    objCanvas.m_S_Draw({Box, {438, 236, 22, 54, 4}, 0xF0C93A, 0xA98413});
    const bool bOpen = fRaised > 0.9F;
    objCanvas.m_S_Draw({Disc, {449, 230, 5, 5}, bOpen ? 0x7CFF9BU : 0xFF5A4AU, bOpen ? 0x3ED86AU : 0xD62F22U});
}

void GateMoving(CCanvas& objCanvas, float fPhase, float fSeconds)
{
    const float fNear = std::clamp((fPhase - 0.05F) / 0.9F, 0.0F, 1.0F);
    // It waits before the barrier, and drives on beneath the raised arm.
    const float fWay =
        fNear < 0.4F ? fNear / 0.4F * 0.3F : (fNear < 0.5F ? 0.3F : Lerp(0.3F, 1.5F, (fNear - 0.5F) * 2));
    const stDef_Placement stCar{Lerp(306, 250, fWay), Lerp(192, 360, fWay), Lerp(0.16F, 1.5F, fWay)};
    const float fRaised = Window(fPhase, 0.34F, 0.92F, 0.13F);
    DrawWalker(objCanvas, {Lerp(690, 560, Window(fPhase, 0.0F, 1.0F, 0.5F)), 318, 0.95F, fPhase < 0.5F}, fSeconds,
               {0x2D6E4A, 0x1C222B, 0x10141A});
    if (fWay < 0.42F)
        objCanvas.m_S_Draw(g_arCarFront, stCar);
    DrawBarrier(objCanvas, fRaised);
    if (fWay >= 0.42F)
        objCanvas.m_S_Draw(g_arCarFront, stCar);
}

// ---- lobby

constexpr stDef_Shape g_arLobby[] = {
    {Box, {0, 0, 640, 232, 0}, 0xF1EBDF, 0xDDD2C0},
    {Box, {0, 0, 640, 26, 0}, 0xFFFFFF, 0xEFEAE0},
    {Disc, {160, 26, 70, 10}, 0xFFFDF2, 0xFFFDF2, 0.8F},
    {Disc, {480, 26, 70, 10}, 0xFFFDF2, 0xFFFDF2, 0.8F},
    {Box, {0, 222, 640, 12, 0}, 0x8B7A66, 0x76664F},
    {Box, {0, 234, 640, 126, 0}, 0xC9B99F, 0x9D8B70},
    {Quad, {40, 234, 90, 234, -60, 360, -220, 360}, 0xDCCDB4, 0xB4A287, 0.7F},
    {Quad, {150, 234, 210, 234, 140, 360, 20, 360}, 0xDCCDB4, 0xB4A287, 0.7F},
    {Quad, {280, 234, 350, 234, 380, 360, 250, 360}, 0xDCCDB4, 0xB4A287, 0.7F},
    {Quad, {420, 234, 490, 234, 620, 360, 490, 360}, 0xDCCDB4, 0xB4A287, 0.7F},
    {Quad, {560, 234, 620, 234, 860, 360, 720, 360}, 0xDCCDB4, 0xB4A287, 0.7F},
    {Box, {0, 262, 640, 2, 0}, 0xA89678, 0xA89678, 0.6F},
    {Box, {0, 302, 640, 3, 0}, 0xA89678, 0xA89678, 0.6F},
    {Box, {36, 74, 112, 76, 3}, 0x6B4E33, 0x553C26},
    {Box, {42, 80, 100, 64, 0}, 0x8CC3DD, 0xE7D9B0},
    {Quad, {42, 144, 74, 104, 100, 132, 142, 144}, 0x4D7F5C, 0x36634A},
    {Quad, {80, 144, 112, 112, 142, 136, 142, 144}, 0x6D9A66, 0x4A7A50},
    {Disc, {124, 96, 8, 8}, 0xFFF4C4, 0xFFE79A},
    {Box, {186, 26, 26, 208, 0}, 0xFFFBF2, 0xD3C7B2},
    {Box, {428, 26, 26, 208, 0}, 0xFFFBF2, 0xD3C7B2},
    {Box, {474, 82, 132, 152, 3}, 0x6F7780, 0x555C64},
    {Box, {484, 92, 112, 142, 0}, 0xFFF0C8, 0xD9B877},
    {Box, {520, 62, 40, 16, 4}, 0x23282D, 0x23282D},
    {Disc, {320, 96, 24, 24}, 0x5B4A36, 0x5B4A36},
    {Disc, {320, 96, 21, 21}, 0xFFFFFF, 0xF0F0EC},
    {Box, {319, 80, 2.6F, 17, 1}, 0x23282D, 0x23282D},
    {Quad, {319, 95, 321, 94, 333, 103, 332, 105}, 0x23282D, 0x23282D},
};

constexpr stDef_Shape g_arLobbyFront[] = {
    {Disc, {330, 320, 106, 9}, 0x000000, 0x000000, 0.22F}, {Box, {230, 250, 200, 70, 6}, 0x7C5636, 0x573A22},
    {Box, {222, 242, 216, 13, 4}, 0xF7F2E8, 0xCFC4B1},     {Box, {246, 268, 168, 4, 2}, 0xC9985F, 0xC9985F},
    {Box, {246, 284, 168, 4, 2}, 0xC9985F, 0xC9985F},      {Box, {352, 214, 46, 29, 3}, 0x2B3138, 0x1D2227},
    {Box, {371, 240, 8, 5, 0}, 0x2B3138, 0x1D2227},        {Box, {54, 282, 34, 42, 5}, 0xC86A46, 0x97482B},
    {Disc, {60, 250, 13, 34}, 0x4D9A58, 0x2D6B3B},         {Disc, {84, 254, 12, 31}, 0x5DAA62, 0x357743},
    {Disc, {72, 236, 11, 40}, 0x73BE70, 0x418A4A},
};

void LobbyStill(CCanvas& objCanvas)
{
    objCanvas.m_S_Draw(g_arLobby);
}

void LobbyMoving(CCanvas& objCanvas, float fPhase, float fSeconds)
{
    const float fOpen = Window(fPhase, 0.05F, 0.45F, 0.1F) * 50.0F;
    // Somebody steps out of the lift and comes closer, on the way out to the left.
    const float fOut = std::clamp((fPhase - 0.18F) / 0.8F, 0.0F, 1.0F);
    const stDef_Placement stComes{Lerp(540, -60, fOut), Lerp(232, 262, std::min(fOut * 3, 1.0F)), 1.0F, true};
    if (fOut < 0.08F && fOpen > 1)
        DrawWalker(objCanvas, stComes, fSeconds, {0x8A3B6B, 0x2A2530, 0x5A3A22});
    objCanvas.m_S_Draw({Box, {484, 92, 56 - fOpen, 142, 0}, 0xC3CAD1, 0x8F98A1});
    objCanvas.m_S_Draw({Box, {540 + fOpen, 92, 56 - fOpen, 142, 0}, 0xC3CAD1, 0x8F98A1});
    objCanvas.m_S_DrawText(fOpen > 1 ? "0" : (fPhase < 0.7F ? "2" : "1"), 535, 65, 1.6F, 0xFFB347);
    if (fOut >= 0.08F)
        DrawWalker(objCanvas, stComes, fSeconds, {0x8A3B6B, 0x2A2530, 0x5A3A22});
    // The receptionist, behind the desk.
    objCanvas.m_S_Draw({Box, {283, 212, 32, 40, 10}, 0x2F4A6B, 0x263C57});
    objCanvas.m_S_Draw({Disc, {299 + 1.5F * std::sin(fPhase * 12.566F), 200, 11, 12}, 0xEBC6A3, 0xCFA27C});
    objCanvas.m_S_Draw({Disc, {299 + 1.5F * std::sin(fPhase * 12.566F), 192, 12, 7}, 0x6B4426, 0x6B4426});
    objCanvas.m_S_Draw(g_arLobbyFront);
    DrawWalker(objCanvas, {Lerp(-70, 720, fPhase), 338, 1.35F}, fSeconds, {0x3C7A8C, 0x3A3F47, 0x2A1C12});
}

constexpr stDef_Scene g_arScenes[] = {
    {"STREET", StreetStill, StreetMoving},
    {"YARD", YardStill, YardMoving},
    {"GATE", GateStill, GateMoving},
    {"LOBBY", LobbyStill, LobbyMoving},
};

} // namespace

const stDef_Scene& stDef_Scene::s_F_o_Of(int nChannel)
{
    return g_arScenes[nChannel % 4];
}
