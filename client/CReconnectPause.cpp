#include "CReconnectPause.h"

#include <algorithm>
#include <utility>

CReconnectPause::CReconnectPause(std::function<double()> fnRandom) : vm_fnRandom(std::move(fnRandom)) {}

int CReconnectPause::m_F_n_NextMs()
{
    return m_F_n_Jittered(std::exchange(vm_nBaseMs, std::min(2 * vm_nBaseMs, LongestMs)));
}

int CReconnectPause::m_F_n_LongMs()
{
    return m_F_n_Jittered(LongestMs);
}

int CReconnectPause::m_F_n_Jittered(int nMs) const
{
    constexpr double Jitter = 0.2; // either way
    const double dFactor = 1 - Jitter + 2 * Jitter * vm_fnRandom();
    return std::clamp(static_cast<int>(nMs * dFactor), ShortestMs, LongestMs);
}
