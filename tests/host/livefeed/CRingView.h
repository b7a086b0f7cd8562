#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <thread>

#include "host/Lib_Hostenv.h"
#include "scene/CPictureCode.h"

/// Waits until the condition holds; false if it doesn't within the limit.
template <typename Condition>
bool Within(int nLimitMs, Condition condition)
{
    const auto tmEnd = std::chrono::steady_clock::now() + std::chrono::milliseconds(nLimitMs);
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= tmEnd)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

/// A viewer of one video ring that knows nothing but the ring: it decodes, and reads what the pictures say of
/// themselves.
class CRingView
{
public:
    CRingView(int nNvrID, int nChannel, int nStream);
    ~CRingView();
    CRingView(const CRingView&) = delete;
    CRingView& operator=(const CRingView&) = delete;

    /// Decodes the next picture, waiting up to 5 s for it. Nothing if there is none or it carries no valid code.
    std::optional<stDef_PictureCode> m_F_o_Next();

    const st_RingFrame& m_F_o_Frame() const; ///< the packet of that picture
    int m_F_n_Width() const;                 ///< of that picture
    st_RingParam m_F_o_Param() const;        ///< as the ring tells them now

private:
    struct st_Impl;
    std::unique_ptr<st_Impl> vm_pImpl;
};
