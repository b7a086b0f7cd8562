#pragma once

#include "host/hostenv/CShmRing.h"

struct AVCodecParameters;

/// The codecs that rings carry (`nsRing::Codecs`), beside the numbers that libavcodec has for them. No state; any
/// thread.
class CRingCodec
{
public:
    /// Of what a session description tells; `None` for what no ring carries.
    static emDef_RingCodec s_F_n_FromAv(int nAvCodec);
    /// The AVCodecID of what stands in a ring; 0 for `None`.
    static int s_F_n_ToAv(emDef_RingCodec nCodec);

    /// Codec parameters as the session description told them, without the extra bytes; codec `None` if no ring carries
    /// it.
    static st_RingParam s_F_o_Param(const AVCodecParameters& stFrom);
};
