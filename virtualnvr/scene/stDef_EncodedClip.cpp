#include "scene/stDef_EncodedClip.h"

#include "scene/CFrameEncoder.h"
#include "scene/CPictureMaker.h"

std::shared_ptr<const stDef_EncodedClip> stDef_EncodedClip::s_F_p_Encode(int nChannel, bool bSecond)
{
    const auto pEncoder = CFrameEncoder::s_F_p_Make(bSecond);
    if (!pEncoder)
        return nullptr;
    auto pClip = std::make_shared<stDef_EncodedClip>();
    pClip->nWidth = CFrameEncoder::s_F_n_Width(bSecond);
    pClip->nHeight = CFrameEncoder::s_F_n_Height(bSecond);
    CPictureMaker objMaker(nChannel, bSecond, pClip->nWidth, pClip->nHeight, s_nFrames, s_nFps);
    for (int nFrame = 0; nFrame < s_nFrames; ++nFrame)
        pEncoder->m_S_Push(objMaker.m_F_ar_Draw(nFrame));
    pEncoder->m_S_End();
    for (stDef_Unit stUnit; pEncoder->m_F_b_Pull(stUnit);)
        pClip->arUnits.push_back(std::move(stUnit));
    return pClip->arUnits.size() == s_nFrames && pClip->arUnits.front().bKey ? pClip : nullptr;
}
