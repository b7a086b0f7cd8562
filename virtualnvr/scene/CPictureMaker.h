#pragma once

#include "scene/CSceneMaker.h"

/// Draws the pictures of one stream: the scene that its camera sees, the channel's name, a clock of the clip, a sweep
/// bar, and the code strip of CPictureCode.h at the bottom edge. The same arguments give the same pictures. For one
/// thread.
class CPictureMaker
{
public:
    /// @param nFrames pictures of the clip, after which the movement starts again without a jump
    CPictureMaker(int nChannel, bool bSecond, int nWidth, int nHeight, int nFrames, int nFps);

    /// Planar YUV 4:2:0 of a frame (0..nFrames-1), valid until the next call. A view other than the default brings a
    /// read-out with it.
    const std::vector<std::uint8_t>& m_F_ar_Draw(int nFrame, const stDef_PtzView& stView = {});

private:
    void m_S_DrawReadOut(CCanvas& objPicture, const stDef_PtzView& stView) const;
    void m_S_DrawCaptions(CCanvas& objPicture, int nFrame) const;
    void m_S_DrawStrip(CCanvas& objPicture, int nFrame) const;

    int vm_nChannel;
    bool vm_bSecond;
    int vm_nFps;
    CSceneMaker vm_objScene;
};
