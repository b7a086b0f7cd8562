#pragma once

#include <cstddef>
#include <cstdint>

#include "host/hostenv/CShmRing.h"

/// What a decoder must know of a video stream, taken from the stream itself. No state; any thread.
class CParameterSets
{
public:
    enum class emDef_Taken
    {
        Nothing, ///< nothing changed
        New,     ///< the extra bytes are new
        TooLong  ///< what there is passes `st_RingParam::MaxExtra`, and nothing changed
    };

    /// Takes the parameter sets that stand before the picture of an access unit with start codes (H.264 and H.265 Annex
    /// B, MPEG-4) into the extra bytes, which then hold them in Annex B form. Units without a whole group of sets
    /// change nothing.
    static emDef_Taken s_F_n_Take(st_RingParam& stParam, const std::uint8_t* pData, std::size_t nSize);

    /// Takes the extra bytes that a session description told; of H.264 and H.265 the parameter sets alone, since
    /// descriptions also carry messages, which may be long.
    static emDef_Taken s_F_n_Describe(st_RingParam& stParam, const std::uint8_t* pExtra, std::size_t nSize);

    /// Sets width and height from the extra bytes and one key frame; 0 if neither tells.
    static void s_S_FindSize(st_RingParam& stParam, const std::uint8_t* pData, std::size_t nSize);
};
