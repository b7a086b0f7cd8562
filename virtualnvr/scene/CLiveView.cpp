#include "scene/CLiveView.h"

CLiveView::CLiveView(int nChannel, bool bSecond)
    : vm_bSecond(bSecond),
      vm_objMaker(nChannel, bSecond, CFrameEncoder::s_F_n_Width(bSecond), CFrameEncoder::s_F_n_Height(bSecond),
                  stDef_EncodedClip::s_nFrames, stDef_EncodedClip::s_nFps),
      vm_arUnits(stDef_EncodedClip::s_nFrames)
{}

const std::vector<std::uint8_t>* CLiveView::m_F_p_Picture(int nFrame, const stDef_PtzView& stView)
{
    static_assert(stDef_EncodedClip::s_nFrames % stDef_EncodedClip::s_nGop == 0, "a loop ends where a key frame comes");
    if (!(stView == vm_stView)) {
        vm_stView = stView;
        vm_nStored = 0;
    }
    stDef_EncodedClip::stDef_Unit& stUnit = vm_arUnits[static_cast<std::size_t>(nFrame)];
    if (vm_nStored == stDef_EncodedClip::s_nFrames)
        return &stUnit.arBytes;
    if (!vm_pEncoder)
        vm_pEncoder = CFrameEncoder::s_F_p_Make(vm_bSecond);
    if (!vm_pEncoder)
        return nullptr;
    vm_pEncoder->m_S_Push(vm_objMaker.m_F_ar_Draw(nFrame, stView));
    if (!vm_pEncoder->m_F_b_Pull(stUnit))
        return nullptr;
    if (vm_nStored > 0 || stUnit.bKey)
        ++vm_nStored;
    if (vm_nStored == stDef_EncodedClip::s_nFrames)
        vm_pEncoder.reset(); // a viewer's decoder goes on from the loop: the next one has to begin with a key frame
    return &stUnit.arBytes;
}
