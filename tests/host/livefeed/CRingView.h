#pragma once

#include <memory>
#include <optional>

#include "host/Lib_Hostenv.h"
#include "scene/CPictureCode.h"

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
