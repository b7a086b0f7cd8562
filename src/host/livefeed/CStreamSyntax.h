#pragma once

#include <cstddef>
#include <cstdint>

#include "host/hostenv/CShmRing.h"

/// What one unit behind a start code is to its picture.
struct stDef_StreamUnit
{
    enum class emDef_Kind
    {
        Other,
        Needed,   ///< a parameter set without which there is no decoding
        Optional, ///< a parameter set beside it
        Picture   ///< a slice, or a whole picture
    };

    emDef_Kind nKind = emDef_Kind::Other;
    bool bBegins = false; ///< stands at the beginning of a picture's units, so a picture before it is whole
    bool bKey = false;    ///< decoding can start with this picture
};

/// The outer form of H.264, H.265 (Annex B) and MPEG-4 video: units between start codes. No state; any thread.
class CStreamSyntax
{
public:
    /// False for codecs whose packets are whole pictures.
    static bool s_F_b_HasUnits(emDef_RingCodec nCodec);

    /// Position of the next start code (00 00 01) from `n` on; the end if there is none.
    static std::size_t s_F_n_NextStart(const std::uint8_t* pData, std::size_t nSize, std::size_t n);

    /// Tells the unit by its first bytes, behind the start code; `nSize` is at least 1.
    static stDef_StreamUnit s_F_o_Unit(emDef_RingCodec nCodec, const std::uint8_t* pUnit, std::size_t nSize);
};
