#include "live/CReconnectPause.h"

#include <algorithm>
#include <utility>

namespace {

constexpr double Jitter = 0.2; // upwards
constexpr int LongestBaseMs = static_cast<int>(CReconnectPause::LongestMs / (1 + Jitter));

} // namespace

CReconnectPause::CReconnectPause(std::function<double()> fnRandom) : vm_fnRandom(std::move(fnRandom)) {}

int CReconnectPause::m_F_n_NextMs()
{
    return m_F_n_Jittered(std::exchange(vm_nBaseMs, std::min(2 * vm_nBaseMs, LongestBaseMs)));
}

int CReconnectPause::m_F_n_LongMs()
{
    return m_F_n_Jittered(LongestBaseMs);
}

int CReconnectPause::m_F_n_Jittered(int nMs) const
{
    return static_cast<int>(nMs * (1 + Jitter * vm_fnRandom()));
}
