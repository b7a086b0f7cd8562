#pragma once

#include <cstdint>

/// When a scene shows what: one clock for all streams of a camera, and for the motion that is found in its picture.
/// Times are nanoseconds of the steady clock.
class CSceneClock
{
public:
    static std::int64_t s_F_n_NowNs();

    /// The frame of the clip that is due, 0 to stDef_EncodedClip::s_nFrames - 1.
    static int s_F_n_Frame(std::int64_t nNowNs);

    /// The frame next to what is due at which a stream may begin.
    static int s_F_n_KeyFrame(std::int64_t nNowNs);

    /// How long from a picture to the next one, for a stream that shows a frame at a time. One that is early or late
    /// gets up to a 32th more or less, until it is with the clock.
    static std::int64_t s_F_n_PeriodNs(int nFrame, std::int64_t nShownNs);
};
