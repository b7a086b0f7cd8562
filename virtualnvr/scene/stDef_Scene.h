#pragma once

#include "scene/CCanvas.h"

#include <string_view>

/// A place that a camera looks at: what stands still, and what moves.
struct stDef_Scene
{
    std::string_view sTitle;
    void (*pDrawStill)(CCanvas& objCanvas);
    /// fPhase runs from 0 to 1 over the clip, which then starts again; fSeconds is the time since its start.
    void (*pDrawMoving)(CCanvas& objCanvas, float fPhase, float fSeconds);

    /// The scene of a channel: street, yard, gate and lobby in turn.
    static const stDef_Scene& s_F_o_Of(int nChannel);
};
