#include "host/livefeed/CRingCodec.h"

extern "C" {
#include <libavcodec/avcodec.h>
}

namespace {

struct stDef_CodecRow
{
    emDef_RingCodec nRing;
    AVCodecID nAv;
};

constexpr stDef_CodecRow g_arCodecs[] = {
    {emDef_RingCodec::H264, AV_CODEC_ID_H264},
    {emDef_RingCodec::H265, AV_CODEC_ID_HEVC},
    {emDef_RingCodec::MPEG4, AV_CODEC_ID_MPEG4},
    {emDef_RingCodec::MJPEG, AV_CODEC_ID_MJPEG},
    {emDef_RingCodec::PCMU, AV_CODEC_ID_PCM_MULAW},
    {emDef_RingCodec::PCMA, AV_CODEC_ID_PCM_ALAW},
    {emDef_RingCodec::AAC, AV_CODEC_ID_AAC},
    // RTP packs G.726 with the first sample in the low bits; the other packing ("AAL2-") is not carried.
    {emDef_RingCodec::G726, AV_CODEC_ID_ADPCM_G726LE},
    // On the wire L16 is big-endian; the sink turns it round.
    {emDef_RingCodec::PCM_S16LE, AV_CODEC_ID_PCM_S16BE},
};

} // namespace

emDef_RingCodec CRingCodec::s_F_n_FromAv(int nAvCodec)
{
    for (const stDef_CodecRow& row : g_arCodecs) {
        if (row.nAv == nAvCodec)
            return row.nRing;
    }
    return emDef_RingCodec::None;
}

int CRingCodec::s_F_n_ToAv(emDef_RingCodec nCodec)
{
    for (const stDef_CodecRow& row : g_arCodecs) {
        if (row.nRing == nCodec)
            return row.nAv;
    }
    return AV_CODEC_ID_NONE;
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
