#pragma once

#include "scene/CCanvas.h"
#include "scene/stDef_PtzView.h"

/// Draws the pictures of one stream: a scene by channel (street, yard, gate, lobby, in other colours from channel 4 on)
/// with something moving in it, the channel's name, a clock of the clip, a sweep bar, and the code strip of
/// CPictureCode.h at the bottom edge. The same arguments give the same pictures. For one thread.
class CPictureMaker
{
public:
    /// @param nFrames pictures of the clip, after which the movement starts again without a jump
    CPictureMaker(int nChannel, bool bSecond, int nWidth, int nHeight, int nFrames, int nFps);

    /// Planar YUV 4:2:0 of a frame (0..nFrames-1), valid until the next call. A view other than the default brings a
    /// read-out with it.
    const std::vector<std::uint8_t>& m_F_ar_Draw(int nFrame, const stDef_PtzView& stView = {});

private:
    void m_S_TurnTo(const stDef_PtzView& stView);
    void m_S_DrawCaptions(int nFrame);
    void m_S_DrawReadOut(const stDef_PtzView& stView);
    void m_S_DrawStrip(int nFrame);

    int vm_nChannel;
    bool vm_bSecond;
    int vm_nFrames;
    int vm_nFps;
    CCanvas vm_objBackground;
    CCanvas vm_objPicture;
};
