#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "host/hostenv/CShmRing.h"

/// Gathers the pieces that come from the network to whole pictures with all that belongs to them.
///
/// The library's own parser does that, too, but for each piece it costs as much again as its receipt, and it loses the
/// first time stamp. A picture is whole when the next one begins: streams don't mark its end in their own bytes.
class CAccessUnit
{
public:
    void m_S_Open(emDef_RingCodec nCodec) { vm_nCodec = nCodec; }

    /// Takes one piece, which begins with a start code or continues the last one. True if a picture became whole by it:
    /// it can be had until the next call. Pieces before the first picture's beginning are passed over.
    bool m_F_b_Add(const std::uint8_t* pData, std::size_t nSize, std::int64_t nPtsUs, std::int64_t nArrivalUs);

    const std::vector<std::uint8_t>& m_F_ar_Bytes() const { return vm_stWhole.arBytes; }
    bool m_F_b_Key() const { return vm_stWhole.bKey; }
    std::int64_t m_F_n_PtsUs() const { return vm_stWhole.nPtsUs; }
    std::int64_t m_F_n_ArrivalUs() const { return vm_stWhole.nArrivalUs; } ///< of the last piece

private:
    struct stDef_Gathered
    {
        std::vector<std::uint8_t> arBytes; ///< keeps its capacity
        std::int64_t nPtsUs = 0;
        std::int64_t nArrivalUs = 0;
        bool bPicture = false;
        bool bKey = false;
    };

    struct stDef_Piece
    {
        bool bBegins = false;
        bool bPicture = false;
        bool bKey = false;
    };

    stDef_Piece m_F_o_Look(const std::uint8_t* pData, std::size_t nSize) const;

    emDef_RingCodec vm_nCodec = emDef_RingCodec::None;
    stDef_Gathered vm_stWhole;
    stDef_Gathered vm_stNext;
};
