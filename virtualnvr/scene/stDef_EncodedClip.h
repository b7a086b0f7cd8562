#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// A stream's pictures, encoded once: H.264 access units that play in a loop.
struct stDef_EncodedClip
{
    static constexpr int s_nFps = 15;
    static constexpr int s_nFrames = 90; ///< whole sweeps of the pictures' bar
    static constexpr int s_nGop = 10;    ///< who joins a playing stream waits for two thirds of a second at most

    struct stDef_Unit
    {
        std::vector<std::uint8_t> arBytes; ///< Annex B, with parameter sets before each key frame
        bool bKey = false;
    };

    std::vector<stDef_Unit> arUnits; ///< begins with a key frame
    int nWidth = 0;
    int nHeight = 0;

    /// Draws and encodes the clip of a stream; null if the encoder fails. The same arguments give the same bytes.
    static std::shared_ptr<const stDef_EncodedClip> s_F_p_Encode(int nChannel, bool bSecond);
};
