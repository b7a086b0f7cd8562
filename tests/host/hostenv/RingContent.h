#pragma once

#include <cstdint>
#include <vector>

#include "host/Lib_Hostenv.h"

/// Packets whose every byte follows from their number, so that one made of two is seen.
namespace RingContent {

inline constexpr int KeyEvery = 10;

inline std::uint32_t Size(std::uint32_t nNumber)
{
    return 16 + (nNumber * 2654435761u >> 8) % (80u << 10);
}

inline void Fill(std::vector<std::uint8_t>& arData, std::uint32_t nNumber)
{
    arData.resize(Size(nNumber));
    std::uint32_t nState = nNumber * 747796405u + 1;
    for (std::size_t i = 0; i < arData.size(); ++i) {
        if (i % 4 == 0)
            nState = nState * 1664525u + 1013904223u;
        arData[i] = static_cast<std::uint8_t>(i < 4 ? nNumber >> (8 * i) : nState >> (8 * (i % 4)));
    }
}

/// True if the frame is one whole packet; its number goes out.
inline bool Check(const st_RingFrame& stFrame, std::uint32_t& nNumber)
{
    if (stFrame.arData.size() < 4)
        return false;
    nNumber = 0;
    for (unsigned i = 0; i < 4; ++i)
        nNumber |= static_cast<std::uint32_t>(stFrame.arData[i]) << (8 * i);
    std::vector<std::uint8_t> arExpected;
    Fill(arExpected, nNumber);
    return arExpected == stFrame.arData && stFrame.stPacket.nPtsUs == nNumber &&
           stFrame.stPacket.bKey == (nNumber % KeyEvery == 0);
}

inline bool Write(CShmRing& ring, std::vector<std::uint8_t>& arData, std::uint32_t nNumber)
{
    Fill(arData, nNumber);
    st_RingPacket stPacket;
    stPacket.nPtsUs = nNumber;
    stPacket.bKey = nNumber % KeyEvery == 0;
    return ring.m_F_b_Write(stPacket, arData.data(), static_cast<std::uint32_t>(arData.size()));
}

} // namespace RingContent
