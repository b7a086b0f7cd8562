#pragma once

#include "scene/stDef_EncodedClip.h"

#include <cstdint>
#include <memory>
#include <vector>

typedef struct _GstElement GstElement;

/// Encodes the pictures of a stream: H.264 with a key frame every stDef_EncodedClip::s_nGop pictures, the first one
/// included. The same pictures give the same bytes. For one thread.
class CFrameEncoder
{
public:
    /// Null if the encoder can't be started.
    static std::unique_ptr<CFrameEncoder> s_F_p_Make(bool bSecond);
    ~CFrameEncoder();
    CFrameEncoder(const CFrameEncoder&) = delete;
    CFrameEncoder& operator=(const CFrameEncoder&) = delete;

    static int s_F_n_Width(bool bSecond);
    static int s_F_n_Height(bool bSecond);

    /// The next picture, planar YUV 4:2:0. It is encoded in the background.
    void m_S_Push(const std::vector<std::uint8_t>& arPicture);
    /// No more pictures come.
    void m_S_End();
    /// Waits for the next access unit. False at the end, or if the encoder fails.
    bool m_F_b_Pull(stDef_EncodedClip::stDef_Unit& stUnit);

private:
    CFrameEncoder() = default;

    GstElement* vm_pPipeline = nullptr;
    GstElement* vm_pSource = nullptr;
    GstElement* vm_pSink = nullptr;
    std::uint64_t vm_nPushed = 0;
};
