#include "host/livefeed/CRingCodec.h"

#include "host/hostenv/RingCodecs.h"

extern "C" {
#include <libavcodec/avcodec.h>
}

namespace {

// On the wire 16-bit samples are big-endian; the sink turns them round.
int OnTheWire(int nAvCodec)
{
    return nAvCodec == AV_CODEC_ID_PCM_S16LE ? AV_CODEC_ID_PCM_S16BE : nAvCodec;
}

} // namespace

emDef_RingCodec CRingCodec::s_F_n_FromAv(int nAvCodec)
{
    for (const stDef_RingCodec& stRow : nsRing::Codecs) {
        if (OnTheWire(s_F_n_ToAv(stRow.nCodec)) == nAvCodec)
            return stRow.nCodec;
    }
    return emDef_RingCodec::None;
}

int CRingCodec::s_F_n_ToAv(emDef_RingCodec nCodec)
{
    const stDef_RingCodec* const pRow = nsRing::FindCodec(nCodec);
    const AVCodecDescriptor* const pCodec = pRow ? avcodec_descriptor_get_by_name(pRow->pszName) : nullptr;
    return pCodec ? pCodec->id : AV_CODEC_ID_NONE;
}

st_RingParam CRingCodec::s_F_o_Param(const AVCodecParameters& stFrom)
{
    st_RingParam stParam;
    stParam.nCodec = s_F_n_FromAv(stFrom.codec_id);
    if (stFrom.codec_type == AVMEDIA_TYPE_AUDIO) {
        stParam.nSampleRate = stFrom.sample_rate;
        stParam.nChannels = stFrom.ch_layout.nb_channels;
        const int nBits = av_get_bits_per_sample(stFrom.codec_id);
        stParam.nBitsPerSample = nBits > 0 ? nBits : stFrom.bits_per_coded_sample;
    }
    return stParam;
}
