#include "scene/CPictureMaker.h"

#include "scene/CPictureCode.h"
#include "scene/stDef_Scene.h"

#include <cstdio>
#include <string>

namespace {

constexpr float g_fMargin = 12.0F;
constexpr float g_fPad = 7.0F;
constexpr std::uint32_t g_nPlate = 0x101418;
constexpr float g_fPlateOpacity = 0.62F;

void DrawPlate(CCanvas& objCanvas, float fX, float fY, float fWidth, float fHeight)
{
    objCanvas.m_S_Draw({emDef_Shape::Box, {fX, fY, fWidth, fHeight, 6}, g_nPlate, g_nPlate, g_fPlateOpacity});
}

std::string ClockText(int nFrame, int nFps)
{
    const int nSeconds = nFrame / nFps;
    char acText[64];
    std::snprintf(acText, sizeof(acText), "%02d:%02d:%02d:%02d", nSeconds / 3600 % 100, nSeconds / 60 % 60,
                  nSeconds % 60, nFrame % nFps);
    return acText;
}

} // namespace

CPictureMaker::CPictureMaker(int nChannel, bool bSecond, int nWidth, int nHeight, int nFrames, int nFps)
    : vm_nChannel(nChannel),
      vm_bSecond(bSecond),
      vm_nFrames(nFrames),
      vm_nFps(nFps),
      vm_objBackground(nWidth, nHeight),
      vm_objPicture(nWidth, nHeight)
{
    // Four scenes serve all channels: each further round of them has hues of its own, every other one is mirrored.
    const int nRound = nChannel / 4;
    const int nHue = nRound == 0 ? 0 : nRound * 23 % 61 - 30;
    vm_objBackground.m_S_SetStyle(static_cast<float>(nHue), nRound % 2 != 0);
    stDef_Scene::s_F_o_Of(nChannel).pDrawStill(vm_objBackground);
}

const std::vector<std::uint8_t>& CPictureMaker::m_F_ar_Draw(int nFrame, const stDef_PtzView& stView)
{
    vm_objPicture = vm_objBackground;
    const float fSeconds = static_cast<float>(nFrame) / static_cast<float>(vm_nFps);
    stDef_Scene::s_F_o_Of(vm_nChannel)
        .pDrawMoving(vm_objPicture, static_cast<float>(nFrame) / static_cast<float>(vm_nFrames), fSeconds);
    vm_objPicture.m_S_SetStyle(0.0F, false);
    if (!(stView == stDef_PtzView()))
        m_S_TurnTo(stView);
    m_S_DrawCaptions(nFrame);
    m_S_DrawStrip(nFrame);
    return vm_objPicture.m_F_ar_Pixels();
}

void CPictureMaker::m_S_TurnTo(const stDef_PtzView& stView)
{
    const CCanvas objScene = vm_objPicture;
    vm_objPicture.m_S_TakeWindow(objScene, stView.fX, stView.fY, stView.fZoom, stView.fLight);
    vm_objPicture.m_S_Blur(stView.nBlur * vm_objPicture.m_F_n_Width() / static_cast<int>(CCanvas::s_fUnits));
    m_S_DrawReadOut(stView);
}

void CPictureMaker::m_S_DrawReadOut(const stDef_PtzView& stView)
{
    constexpr float fDot = 2.0F;
    constexpr float fLine = 7 * fDot + g_fPad;
    float fTop = g_fMargin + 28 + 2 * g_fPad + 8; // below the captions
    for (const std::string* pText : {&stView.sPlace, &stView.sDoing}) {
        if (pText->empty())
            continue;
        DrawPlate(vm_objPicture, g_fMargin, fTop, CCanvas::s_F_n_TextWidth(*pText, fDot) + 2 * g_fPad, fLine + 3);
        vm_objPicture.m_S_DrawText(*pText, g_fMargin + g_fPad, fTop + 5, fDot, 0x9FF0D8);
        fTop += fLine + 6;
    }
}

void CPictureMaker::m_S_DrawCaptions(int nFrame)
{
    const std::string sName = "CH" + std::to_string(vm_nChannel);
    const std::string sPlace = std::string(stDef_Scene::s_F_o_Of(vm_nChannel).sTitle) + (vm_bSecond ? " - SUB" : "");
    const float fName = CCanvas::s_F_n_TextWidth(sName, 4);
    const float fPlace = CCanvas::s_F_n_TextWidth(sPlace, 2);
    DrawPlate(vm_objPicture, g_fMargin, g_fMargin, fName + fPlace + 3 * g_fPad + 4, 28 + 2 * g_fPad);
    vm_objPicture.m_S_DrawText(sName, g_fMargin + g_fPad + 2, g_fMargin + g_fPad, 4, 0xFFFFFF);
    vm_objPicture.m_S_DrawText(sPlace, g_fMargin + 2 * g_fPad + 2 + fName, g_fMargin + g_fPad + 14, 2, 0xC8D4DE);

    const std::string sClock = ClockText(nFrame, vm_nFps);
    const float fClock = CCanvas::s_F_n_TextWidth(sClock, 3);
    const float fLeft = CCanvas::s_fUnits - g_fMargin - 2 * g_fPad - fClock;
    DrawPlate(vm_objPicture, fLeft, g_fMargin, fClock + 2 * g_fPad, 21 + 2 * g_fPad);
    vm_objPicture.m_S_DrawText(sClock, fLeft + g_fPad, g_fMargin + g_fPad, 3, 0xFFE08A);
}

// Code cells on the left; on the right a light that sweeps once in two seconds, so that a frozen picture is seen.
void CPictureMaker::m_S_DrawStrip(int nFrame)
{
    const int nSide = vm_objPicture.m_F_n_Width() / CPictureCode::s_nColumns;
    const int nTop = vm_objPicture.m_F_n_Height() - nSide;
    vm_objPicture.m_S_FillGrey(0, nTop, vm_objPicture.m_F_n_Width(), nSide, CPictureCode::s_nBlack);
    const stDef_PictureCode stCode{vm_nChannel, vm_bSecond, nFrame};
    for (int nCell = 0; nCell < CPictureCode::s_nCells; ++nCell) {
        if (CPictureCode::s_F_b_Cell(stCode, nCell))
            vm_objPicture.m_S_FillGrey(nCell * nSide, nTop, nSide, nSide, CPictureCode::s_nWhite);
    }
    const float fSide = CCanvas::s_fUnits / CPictureCode::s_nColumns;
    const float fTop = vm_objPicture.m_F_n_Units() - fSide;
    const float fFrom = fSide * (CPictureCode::s_nCells + 1);
    const float fWay = CCanvas::s_fUnits - fFrom - 3 * fSide;
    const float fAt = static_cast<float>(nFrame % (2 * vm_nFps)) / static_cast<float>(2 * vm_nFps - 1);
    vm_objPicture.m_S_Draw({emDef_Shape::Box, {fFrom, fTop + 6, fWay + 2 * fSide, 4, 2}, 0x4A5560, 0x4A5560});
    vm_objPicture.m_S_Draw({emDef_Shape::Box, {fFrom + fWay * fAt, fTop + 3, 2 * fSide, 10, 5}, 0x5FE3C0, 0x2FB59A});
}
