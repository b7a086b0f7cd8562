#include "scene/CSoundMaker.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

namespace {

// G.711: sign, number of the segment, and four bits of the place in it, all inverted.
std::uint8_t MuLaw(int nSample)
{
    constexpr int nBias = 132;
    const int nLevel = std::min(std::abs(nSample), 32635) + nBias;
    int nSegment = 7;
    while (nSegment > 0 && (nLevel & (0x80 << nSegment)) == 0)
        --nSegment;
    return static_cast<std::uint8_t>(~((nSample < 0 ? 0x80 : 0) | (nSegment << 4) | ((nLevel >> (nSegment + 3)) & 15)));
}

} // namespace

std::vector<std::uint8_t> CSoundMaker::s_F_ar_Make(int nChannel)
{
    constexpr int arSteps[] = {0, 2, 4, 7, 9}; // a pentatonic scale: any mixture of channels sounds well
    const int nNote = arSteps[nChannel % 5] + 12 * (nChannel / 5 % 3);
    // Whole periods in the loop, so that it has no click.
    const double fHz = std::round(220.0 * std::pow(2.0, nNote / 12.0) * s_nSeconds) / s_nSeconds;
    std::vector<std::uint8_t> arLoop(static_cast<std::size_t>(s_nRate) * s_nSeconds);
    for (std::size_t nAt = 0; nAt < arLoop.size(); ++nAt) {
        const double fTime = static_cast<double>(nAt) / s_nRate;
        const double fTurn = 2 * std::numbers::pi * fTime;
        const double fBeat = std::fmod(fTime, 1.0);
        const double fStrike = std::min(fBeat * 50, 1.0) * std::exp(-4 * fBeat) * std::min((1 - fBeat) * 50, 1.0);
        const double fNote = std::sin(fTurn * fHz) + 0.3 * std::sin(2 * fTurn * fHz);
        arLoop[nAt] = MuLaw(static_cast<int>(2600 * fStrike * fNote + 120 * std::sin(fTurn * 100)));
    }
    return arLoop;
}
