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
    : vm_nChannel(nChannel), vm_bSecond(bSecond), vm_nFps(nFps), vm_objScene(nChannel, nWidth, nHeight, nFrames, nFps)
{}

const std::vector<std::uint8_t>& CPictureMaker::m_F_ar_Draw(int nFrame, const stDef_PtzView& stView)
{
    CCanvas& objPicture = vm_objScene.m_F_o_Draw(nFrame, stView);
    m_S_DrawReadOut(objPicture, stView);
    m_S_DrawCaptions(objPicture, nFrame);
    m_S_DrawStrip(objPicture, nFrame);
    return objPicture.m_F_ar_Pixels();
}

void CPictureMaker::m_S_DrawReadOut(CCanvas& objPicture, const stDef_PtzView& stView) const
{
    constexpr float fDot = 2.0F;
    constexpr float fLine = 7 * fDot + g_fPad;
    float fTop = g_fMargin + 28 + 2 * g_fPad + 8; // below the captions
    for (const std::string* pText : {&stView.sPlace, &stView.sDoing}) {
        if (pText->empty())
            continue;
        DrawPlate(objPicture, g_fMargin, fTop, CCanvas::s_F_n_TextWidth(*pText, fDot) + 2 * g_fPad, fLine + 3);
        objPicture.m_S_DrawText(*pText, g_fMargin + g_fPad, fTop + 5, fDot, 0x9FF0D8);
        fTop += fLine + 6;
    }
}

void CPictureMaker::m_S_DrawCaptions(CCanvas& objPicture, int nFrame) const
{
    const std::string sName = "CH" + std::to_string(vm_nChannel);
    const std::string sPlace = std::string(stDef_Scene::s_F_o_Of(vm_nChannel).sTitle) + (vm_bSecond ? " - SUB" : "");
    const float fName = CCanvas::s_F_n_TextWidth(sName, 4);
    const float fPlace = CCanvas::s_F_n_TextWidth(sPlace, 2);
    DrawPlate(objPicture, g_fMargin, g_fMargin, fName + fPlace + 3 * g_fPad + 4, 28 + 2 * g_fPad);
    objPicture.m_S_DrawText(sName, g_fMargin + g_fPad + 2, g_fMargin + g_fPad, 4, 0xFFFFFF);
    objPicture.m_S_DrawText(sPlace, g_fMargin + 2 * g_fPad + 2 + fName, g_fMargin + g_fPad + 14, 2, 0xC8D4DE);

    const std::string sClock = ClockText(nFrame, vm_nFps);
    const float fClock = CCanvas::s_F_n_TextWidth(sClock, 3);
    const float fLeft = CCanvas::s_fUnits - g_fMargin - 2 * g_fPad - fClock;
    DrawPlate(objPicture, fLeft, g_fMargin, fClock + 2 * g_fPad, 21 + 2 * g_fPad);
    objPicture.m_S_DrawText(sClock, fLeft + g_fPad, g_fMargin + g_fPad, 3, 0xFFE08A);
}

// Code cells on the left; on the right a light that sweeps once in two seconds, so that a frozen picture is seen.
void CPictureMaker::m_S_DrawStrip(CCanvas& objPicture, int nFrame) const
{
    const int nSide = objPicture.m_F_n_Width() / CPictureCode::s_nColumns;
    const int nTop = objPicture.m_F_n_Height() - nSide;
    objPicture.m_S_FillGrey(0, nTop, objPicture.m_F_n_Width(), nSide, CPictureCode::s_nBlack);
    const stDef_PictureCode stCode{vm_nChannel, vm_bSecond, nFrame};
    for (int nCell = 0; nCell < CPictureCode::s_nCells; ++nCell) {
        if (CPictureCode::s_F_b_Cell(stCode, nCell))
            objPicture.m_S_FillGrey(nCell * nSide, nTop, nSide, nSide, CPictureCode::s_nWhite);
    }
    const float fSide = CCanvas::s_fUnits / CPictureCode::s_nColumns;
    const float fTop = objPicture.m_F_n_Units() - fSide;
    const float fFrom = fSide * (CPictureCode::s_nCells + 1);
    const float fWay = CCanvas::s_fUnits - fFrom - 3 * fSide;
    const float fAt = static_cast<float>(nFrame % (2 * vm_nFps)) / static_cast<float>(2 * vm_nFps - 1);
    objPicture.m_S_Draw({emDef_Shape::Box, {fFrom, fTop + 6, fWay + 2 * fSide, 4, 2}, 0x4A5560, 0x4A5560});
    objPicture.m_S_Draw({emDef_Shape::Box, {fFrom + fWay * fAt, fTop + 3, 2 * fSide, 10, 5}, 0x5FE3C0, 0x2FB59A});
}
