#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

#include "host/Lib_Hostenv.h"

/// Packets whose every byte follows from their number, so that one made of two is seen.
namespace RingContent {

/// Gives this process and those that it starts names of their own, so that two runs beside each other don't meet.
inline bool UseOwnNames(const char* pTest)
{
    return qputenv("FLEETLINK_INSTANCE", pTest + QByteArray::number(QCoreApplication::applicationPid()));
}

inline constexpr int KeyEvery = 10;

inline std::uint32_t Size(std::uint32_t nNumber)
{
    return 16 + (nNumber * 2654435761u >> 8) % (80u << 10);
}

inline void Fill(std::vector<std::uint8_t>& arData, std::uint32_t nNumber)
{
    arData.resize(Size(nNumber));
    std::uint64_t nWord = nNumber; // the first one is the number itself
    for (std::size_t i = 0; i < arData.size(); i += sizeof nWord) {
        std::memcpy(arData.data() + i, &nWord, std::min(sizeof nWord, arData.size() - i));
        nWord = nWord * 6364136223846793005u + nNumber * 2 + 1;
    }
}

/// True if the frame is one whole packet; its number goes out.
inline bool Check(const st_RingFrame& stFrame, std::uint32_t& nNumber)
{
    if (stFrame.arData.size() < 4)
        return false;
    std::memcpy(&nNumber, stFrame.arData.data(), sizeof nNumber);
    thread_local std::vector<std::uint8_t> arExpected;
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
