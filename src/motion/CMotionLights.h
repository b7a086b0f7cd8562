#pragma once

#include <array>
#include <atomic>
#include <cstddef>

/// In which motion windows of a camera something moves, by position: written by the reader of the stream, read by the
/// canvas. Any thread.
class CMotionLights
{
public:
    static constexpr int Most = 1024; ///< motion windows that a camera can have here; recorders have a dozen

    /// All are dark from now on, and there are so many of them.
    void m_S_Reset(int nCount)
    {
        vm_nCount.store(0, std::memory_order_relaxed);
        for (std::atomic<bool>& bLit : vm_abLit)
            bLit.store(false, std::memory_order_relaxed);
        vm_nCount.store(nCount, std::memory_order_relaxed);
    }
    /// A position that there isn't does nothing.
    void m_S_Set(int nPosition, bool bLit)
    {
        if (nPosition >= 0 && nPosition < vm_nCount.load(std::memory_order_relaxed))
            vm_abLit[static_cast<std::size_t>(nPosition)].store(bLit, std::memory_order_relaxed);
    }
    /// For a position below `Most`.
    bool m_F_b_Lit(int nPosition) const
    {
        return vm_abLit[static_cast<std::size_t>(nPosition)].load(std::memory_order_relaxed);
    }

private:
    std::atomic<int> vm_nCount{0};
    std::array<std::atomic<bool>, Most> vm_abLit{};
};
