#pragma once

#include "host/hostenv/CShmRing.h"

/// A codec that rings carry.
struct stDef_RingCodec
{
    emDef_RingCodec nCodec;
    const char* pszName; ///< by which media libraries know the form that it has in a ring
    bool bVideo;
};

namespace nsRing {

inline constexpr stDef_RingCodec Codecs[] = {
    {emDef_RingCodec::H264, "h264", true},
    {emDef_RingCodec::H265, "hevc", true},
    {emDef_RingCodec::MPEG4, "mpeg4", true},
    {emDef_RingCodec::MJPEG, "mjpeg", true},
    {emDef_RingCodec::PCMU, "pcm_mulaw", false},
    {emDef_RingCodec::PCMA, "pcm_alaw", false},
    {emDef_RingCodec::AAC, "aac", false},
    // RTP packs G.726 with the first sample in the low bits; the other packing ("AAL2-") is not carried.
    {emDef_RingCodec::G726, "adpcm_g726le", false},
    {emDef_RingCodec::PCM_S16LE, "pcm_s16le", false},
};

/// Null for `None` and for a number from elsewhere that is none of them.
constexpr const stDef_RingCodec* FindCodec(emDef_RingCodec nCodec)
{
    for (const stDef_RingCodec& stRow : Codecs) {
        if (stRow.nCodec == nCodec)
            return &stRow;
    }
    return nullptr;
}

} // namespace nsRing
