#pragma once

#include "scene/CFrameEncoder.h"
#include "scene/CPictureMaker.h"
#include "scene/stDef_PtzView.h"

/// The pictures of one playing stream while its camera looks elsewhere than in its clip: drawn and encoded one by one,
/// until the camera has rested for the length of a clip; from then on they come from memory. For one thread.
class CLiveView
{
public:
    CLiveView(int nChannel, bool bSecond);

    /// The access unit of a frame, valid until the next call; the first one is a key frame. Frames come in order, the
    /// clip's first one after its last. Null if the encoder fails.
    const std::vector<std::uint8_t>* m_F_p_Picture(int nFrame, const stDef_PtzView& stView);

private:
    bool vm_bSecond;
    CPictureMaker vm_objMaker;
    std::unique_ptr<CFrameEncoder> vm_pEncoder;
    stDef_PtzView vm_stView;
    std::vector<stDef_EncodedClip::stDef_Unit> vm_arUnits; ///< by frame
    int vm_nStored = 0;                                    ///< how many in a row, from a key frame on, show vm_stView
};
