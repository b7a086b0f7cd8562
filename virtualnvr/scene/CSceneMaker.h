#pragma once

#include "scene/CCanvas.h"
#include "scene/stDef_PtzView.h"
#include "scene/stDef_Scene.h"

/// Draws what a camera sees, without captions: a scene by channel (street, yard, gate, lobby, in other colours from
/// channel 4 on) with something moving in it. The same arguments give the same pictures. For one thread.
class CSceneMaker
{
public:
    /// @param nFrames pictures of the clip, after which the movement starts again without a jump
    CSceneMaker(int nChannel, int nWidth, int nHeight, int nFrames, int nFps);

    /// A frame (0..nFrames-1), valid until the next call; the caller may draw onto it.
    CCanvas& m_F_o_Draw(int nFrame, const stDef_PtzView& stView = {});

    /// True where every other round of four channels sees its scene mirrored left to right.
    static bool s_F_b_Mirrored(int nChannel) { return nChannel / 4 % 2 != 0; }

private:
    void m_S_TurnTo(const stDef_PtzView& stView);

    const stDef_Scene& vm_stScene;
    int vm_nFrames;
    int vm_nFps;
    CCanvas vm_objBackground;
    CCanvas vm_objPicture;
};
