#pragma once

#include <functional>

/// The pauses between tries to connect: 2 s, then twice as long each time up to 25 s, each longer by up to a fifth, so
/// that the cells of a recorder don't all knock at the same moment.
class CReconnectPause
{
public:
    static constexpr int ShortestMs = 2000;
    static constexpr int LongestMs = 30000;

    /// `fnRandom` gives numbers from 0 up to, but not including, 1.
    explicit CReconnectPause(std::function<double()> fnRandom);

    /// The next pause, in ms.
    int m_F_n_NextMs();
    /// The longest one, in ms: for a recorder that said no, which locks accounts that try too often.
    int m_F_n_LongMs();
    /// Begins with the shortest again.
    void m_S_Reset() { vm_nBaseMs = ShortestMs; }

private:
    int m_F_n_Jittered(int nMs) const;

    std::function<double()> vm_fnRandom;
    int vm_nBaseMs = ShortestMs;
};
