#include "live/CPictureDecoder.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/log.h>
#include <libswscale/swscale.h>
}

namespace {

constexpr int MaxSide = 8192;
constexpr int StrideAlign = 16; // pixels: the scaler writes whole 64-byte blocks

const AVCodec* FindDecoder(emDef_RingCodec nCodec)
{
    const stDef_RingCodec* const pRow = nsRing::FindCodec(nCodec);
    const AVCodecDescriptor* const pCodec =
        pRow && pRow->bVideo ? avcodec_descriptor_get_by_name(pRow->pszName) : nullptr;
    return pCodec ? avcodec_find_decoder(pCodec->id) : nullptr;
}

// The deprecated "J" formats are plain ones of full range; the scaler complains about them by name.
AVPixelFormat PlainFormat(int nFormat, bool& bFullRange)
{
    switch (nFormat) {
    case AV_PIX_FMT_YUVJ420P:
        bFullRange = true;
        return AV_PIX_FMT_YUV420P;
    case AV_PIX_FMT_YUVJ422P:
        bFullRange = true;
        return AV_PIX_FMT_YUV422P;
    case AV_PIX_FMT_YUVJ444P:
        bFullRange = true;
        return AV_PIX_FMT_YUV444P;
    default:
        return static_cast<AVPixelFormat>(nFormat);
    }
}

// Streams that don't tell their colour matrix follow the custom of their size.
int ColourMatrix(const AVFrame& objFrame)
{
    if (objFrame.colorspace == AVCOL_SPC_UNSPECIFIED)
        return objFrame.height >= 720 ? SWS_CS_ITU709 : SWS_CS_ITU601;
    return objFrame.colorspace;
}

struct stDef_Size
{
    int nWidth;
    int nHeight;
};

stDef_Size FitInto(const AVFrame& objFrame, int nCellWidth, int nCellHeight)
{
    double nShape = static_cast<double>(objFrame.width) / objFrame.height;
    const AVRational stPixel = objFrame.sample_aspect_ratio;
    if (stPixel.num > 0 && stPixel.den > 0)
        nShape *= av_q2d(stPixel);
    stDef_Size stSize{nCellWidth, static_cast<int>(nCellWidth / nShape + 0.5)};
    if (stSize.nHeight > nCellHeight)
        stSize = {static_cast<int>(nCellHeight * nShape + 0.5), nCellHeight};
    return {std::clamp(stSize.nWidth, 1, nCellWidth), std::clamp(stSize.nHeight, 1, nCellHeight)};
}

} // namespace

struct CPictureDecoder::st_Impl
{
    AVCodecContext* pCodec = nullptr;
    AVPacket* pPacket = av_packet_alloc();
    AVFrame* pFrame = av_frame_alloc();
    AVFrame* pLatest = av_frame_alloc();
    SwsContext* pScaler = nullptr;
    std::vector<std::uint8_t> arPadded; // packet bytes with the zeros behind them that the library reads over
    std::uint64_t nPacketSerial = 0;
    bool bNeedKey = true;

    ~st_Impl()
    {
        avcodec_free_context(&pCodec);
        av_packet_free(&pPacket);
        av_frame_free(&pFrame);
        av_frame_free(&pLatest);
        sws_freeContext(pScaler);
    }

    bool PrepareScaler(const stDef_Size& stTo);
    bool Receive();
};

CPictureDecoder::CPictureDecoder() : vm_pImpl(std::make_unique<st_Impl>())
{
    // A stream that begins amid a picture is no news; the cell tells what matters.
    av_log_set_level(AV_LOG_QUIET);
}

CPictureDecoder::~CPictureDecoder() = default;

bool CPictureDecoder::m_F_b_Open(const st_RingParam& stParam)
{
    m_S_Close();
    const AVCodec* const pCodec = FindDecoder(stParam.nCodec);
    AVCodecContext* pContext = pCodec ? avcodec_alloc_context3(pCodec) : nullptr;
    if (!pContext)
        return false;
    const std::size_t nExtra = std::min<std::size_t>(stParam.nExtraSize, st_RingParam::MaxExtra);
    if (nExtra > 0) {
        pContext->extradata = static_cast<std::uint8_t*>(av_mallocz(nExtra + AV_INPUT_BUFFER_PADDING_SIZE));
        if (pContext->extradata) {
            std::memcpy(pContext->extradata, stParam.arExtra.data(), nExtra);
            pContext->extradata_size = static_cast<int>(nExtra);
        }
    }
    pContext->thread_count = 1; // every cell has a thread of its own
    pContext->flags |= AV_CODEC_FLAG_LOW_DELAY;
    pContext->max_pixels = static_cast<std::int64_t>(MaxSide) * MaxSide;
    if (avcodec_open2(pContext, pCodec, nullptr) < 0) {
        avcodec_free_context(&pContext);
        return false;
    }
    vm_pImpl->pCodec = pContext;
    return true;
}

void CPictureDecoder::m_S_Close()
{
    avcodec_free_context(&vm_pImpl->pCodec);
    av_frame_unref(vm_pImpl->pLatest);
    vm_pImpl->bNeedKey = true;
}

void CPictureDecoder::m_S_Flush()
{
    if (vm_pImpl->pCodec)
        avcodec_flush_buffers(vm_pImpl->pCodec);
    vm_pImpl->bNeedKey = true;
}

bool CPictureDecoder::m_F_b_Decode(const st_RingFrame& stFrame)
{
    st_Impl& d = *vm_pImpl;
    if (!d.pCodec || stFrame.arData.empty() || (d.bNeedKey && !stFrame.stPacket.bKey))
        return false;
    d.bNeedKey = false;
    d.nPacketSerial = stFrame.nSerial;
    d.arPadded.resize(stFrame.arData.size() + AV_INPUT_BUFFER_PADDING_SIZE);
    std::memcpy(d.arPadded.data(), stFrame.arData.data(), stFrame.arData.size());
    std::memset(d.arPadded.data() + stFrame.arData.size(), 0, AV_INPUT_BUFFER_PADDING_SIZE);
    d.pPacket->data = d.arPadded.data();
    d.pPacket->size = static_cast<int>(stFrame.arData.size());
    d.pPacket->flags = stFrame.stPacket.bKey ? AV_PKT_FLAG_KEY : 0;
    const int nSent = avcodec_send_packet(d.pCodec, d.pPacket);
    av_packet_unref(d.pPacket);
    const bool bPicture = d.Receive();
    if (nSent < 0 && nSent != AVERROR(EAGAIN))
        d.bNeedKey = true;
    return bPicture;
}

bool CPictureDecoder::st_Impl::Receive()
{
    bool bPicture = false;
    while (avcodec_receive_frame(pCodec, pFrame) >= 0) {
        av_frame_unref(pLatest);
        av_frame_move_ref(pLatest, pFrame);
        bPicture = true;
    }
    return bPicture;
}

bool CPictureDecoder::st_Impl::PrepareScaler(const stDef_Size& stTo)
{
    bool bFullRange = pLatest->color_range == AVCOL_RANGE_JPEG;
    const AVPixelFormat nFrom = PlainFormat(pLatest->format, bFullRange);
    pScaler = sws_getCachedContext(pScaler, pLatest->width, pLatest->height, nFrom, stTo.nWidth, stTo.nHeight,
                                   AV_PIX_FMT_RGB32, SWS_BILINEAR, nullptr, nullptr, nullptr);
    if (!pScaler)
        return false;
    constexpr int nUnity = 1 << 16;
    sws_setColorspaceDetails(pScaler, sws_getCoefficients(ColourMatrix(*pLatest)), bFullRange ? 1 : 0,
                             sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, nUnity, nUnity);
    return true;
}

bool CPictureDecoder::m_F_b_Render(int nCellWidth, int nCellHeight, stDef_Picture& stPicture)
{
    st_Impl& d = *vm_pImpl;
    if (d.pLatest->width <= 0 || d.pLatest->height <= 0 || nCellWidth <= 0 || nCellHeight <= 0)
        return false;
    const stDef_Size stTo = FitInto(*d.pLatest, std::min(nCellWidth, MaxSide), std::min(nCellHeight, MaxSide));
    if (!d.PrepareScaler(stTo))
        return false;
    stPicture.nWidth = stTo.nWidth;
    stPicture.nHeight = stTo.nHeight;
    stPicture.nStride = (stTo.nWidth + StrideAlign - 1) / StrideAlign * StrideAlign;
    stPicture.arPixels.resize(static_cast<std::size_t>(stPicture.nStride) * stTo.nHeight + StrideAlign);
    stPicture.nPacketSerial = d.nPacketSerial;
    const std::array<std::uint8_t*, 4> arTo{reinterpret_cast<std::uint8_t*>(stPicture.arPixels.data())};
    const std::array<int, 4> arStride{stPicture.nStride * 4};
    return sws_scale(d.pScaler, d.pLatest->data, d.pLatest->linesize, 0, d.pLatest->height, arTo.data(),
                     arStride.data()) > 0;
}

bool CPictureDecoder::m_F_b_RenderWhole(stDef_Picture& stPicture)
{
    const AVFrame& objFrame = *vm_pImpl->pLatest;
    const AVRational stPixel = objFrame.sample_aspect_ratio;
    const double dStretch = stPixel.num > 0 && stPixel.den > 0 ? av_q2d(stPixel) : 1.0;
    return m_F_b_Render(static_cast<int>(objFrame.width * std::max(dStretch, 1.0) + 0.5),
                        static_cast<int>(objFrame.height / std::min(dStretch, 1.0) + 0.5), stPicture);
}
