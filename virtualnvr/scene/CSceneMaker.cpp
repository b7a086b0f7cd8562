#include "scene/CSceneMaker.h"

CSceneMaker::CSceneMaker(int nChannel, int nWidth, int nHeight, int nFrames, int nFps)
    : vm_stScene(stDef_Scene::s_F_o_Of(nChannel)),
      vm_nFrames(nFrames),
      vm_nFps(nFps),
      vm_objBackground(nWidth, nHeight),
      vm_objPicture(nWidth, nHeight)
{
    // Four scenes serve all channels: each further round of them has hues of its own, every other one is mirrored.
    const int nRound = nChannel / 4;
    const int nHue = nRound == 0 ? 0 : nRound * 23 % 61 - 30;
    vm_objBackground.m_S_SetStyle(static_cast<float>(nHue), s_F_b_Mirrored(nChannel));
    vm_stScene.pDrawStill(vm_objBackground);
}

CCanvas& CSceneMaker::m_F_o_Draw(int nFrame, const stDef_PtzView& stView)
{
    vm_objPicture = vm_objBackground;
    vm_stScene.pDrawMoving(vm_objPicture, static_cast<float>(nFrame) / static_cast<float>(vm_nFrames),
                           static_cast<float>(nFrame) / static_cast<float>(vm_nFps));
    vm_objPicture.m_S_SetStyle(0.0F, false);
    if (!(stView == stDef_PtzView()))
        m_S_TurnTo(stView);
    return vm_objPicture;
}

void CSceneMaker::m_S_TurnTo(const stDef_PtzView& stView)
{
    const CCanvas objScene = vm_objPicture;
    vm_objPicture.m_S_TakeWindow(objScene, stView.fX, stView.fY, stView.fZoom, stView.fLight);
    vm_objPicture.m_S_Blur(stView.nBlur * vm_objPicture.m_F_n_Width() / static_cast<int>(CCanvas::s_fUnits));
}
