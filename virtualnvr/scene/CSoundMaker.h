#pragma once

#include <cstdint>
#include <vector>

/// The sound of a channel: a soft note a second over a faint hum, each channel on a note of its own.
class CSoundMaker
{
public:
    static constexpr int s_nRate = 8000; ///< samples a second, one channel
    static constexpr int s_nSeconds = 2; ///< length of the loop

    /// The loop in PCMU (G.711 mu-law), one byte a sample.
    static std::vector<std::uint8_t> s_F_ar_Make(int nChannel);
};
