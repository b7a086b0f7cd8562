#pragma once

#include <cstddef>
#include <cstdint>

#include "host/hostenv/CShmRing.h"

/// What a decoder must know of a video stream, taken from the stream itself. No state; any thread.
class CParameterSets
{
public:
    /// Takes the parameter sets that stand before the picture of an access unit with start codes (H.264 and H.265 Annex
    /// B, MPEG-4) into the extra bytes, which then hold them in Annex B form. True if that changed them; units without
    /// a whole group of sets, or with more than fits, change nothing.
    static bool s_F_b_Take(st_RingParam& stParam, const std::uint8_t* pData, std::size_t nSize);

    /// Sets width and height from the extra bytes and one key frame; 0 if neither tells.
    static void s_S_FindSize(st_RingParam& stParam, const std::uint8_t* pData, std::size_t nSize);
};
