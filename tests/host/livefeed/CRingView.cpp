#include "CRingView.h"

#include <cstring>

#include "support/Waiting.h"

extern "C" {
#include <libavcodec/avcodec.h>
}

struct CRingView::st_Impl
{
    st_Impl(int nNvr, int nChan, int nStr) : nNvrID(nNvr), nChannel(nChan), nStream(nStr) {}

    const int nNvrID, nChannel, nStream;
    CShmRingReader objReader;
    st_RingFrame stFrame;
    st_RingParam stParam;
    std::uint32_t nParamSerial = 0;
    AVCodecContext* pContext = nullptr;
    AVPacket* pPacket = av_packet_alloc();
    AVFrame* pFrame = av_frame_alloc();

    bool Read();
    bool OpenDecoder();
    bool Decode();
};

bool CRingView::st_Impl::Read()
{
    if (!objReader.m_F_b_IsOpen() && !objReader.m_F_b_Open(emDef_RingKind::Video, nNvrID, nChannel, nStream))
        return false;
    return objReader.m_F_n_Read(stFrame) == emDef_RingRead::Frame;
}

bool CRingView::st_Impl::OpenDecoder()
{
    if (pContext && nParamSerial == stFrame.stPacket.nParamSerial)
        return true;
    if (!objReader.m_F_b_GetParam(stParam, nParamSerial) || stParam.nCodec != emDef_RingCodec::H264)
        return false;
    avcodec_free_context(&pContext);
    const AVCodec* pCodec = avcodec_find_decoder(AV_CODEC_ID_H264);
    pContext = avcodec_alloc_context3(pCodec);
    pContext->extradata = static_cast<std::uint8_t*>(av_mallocz(stParam.nExtraSize + AV_INPUT_BUFFER_PADDING_SIZE));
    std::memcpy(pContext->extradata, stParam.arExtra.data(), stParam.nExtraSize);
    pContext->extradata_size = static_cast<int>(stParam.nExtraSize);
    pContext->thread_count = 1;
    pContext->flags |= AV_CODEC_FLAG_LOW_DELAY;
    pContext->err_recognition = AV_EF_EXPLODE; // half a picture is none
    return avcodec_open2(pContext, pCodec, nullptr) == 0;
}

bool CRingView::st_Impl::Decode()
{
    if (!OpenDecoder() || av_new_packet(pPacket, static_cast<int>(stFrame.arData.size())) != 0)
        return false;
    std::memcpy(pPacket->data, stFrame.arData.data(), stFrame.arData.size());
    const bool bSent = avcodec_send_packet(pContext, pPacket) == 0;
    av_packet_unref(pPacket);
    return bSent && avcodec_receive_frame(pContext, pFrame) == 0;
}

CRingView::CRingView(int nNvrID, int nChannel, int nStream)
    : vm_pImpl(std::make_unique<st_Impl>(nNvrID, nChannel, nStream))
{}

CRingView::~CRingView()
{
    avcodec_free_context(&vm_pImpl->pContext);
    av_packet_free(&vm_pImpl->pPacket);
    av_frame_free(&vm_pImpl->pFrame);
}

std::optional<stDef_PictureCode> CRingView::m_F_o_Next()
{
    st_Impl& d = *vm_pImpl;
    if (!WaitUntil([&d] { return d.Read(); }) || !d.Decode())
        return std::nullopt;
    return CPictureCode::s_F_o_Read(d.pFrame->data[0], d.pFrame->linesize[0], d.pFrame->width, d.pFrame->height);
}

const st_RingFrame& CRingView::m_F_o_Frame() const
{
    return vm_pImpl->stFrame;
}

int CRingView::m_F_n_Width() const
{
    return vm_pImpl->pFrame->width;
}

st_RingParam CRingView::m_F_o_Param() const
{
    return vm_pImpl->stParam;
}
