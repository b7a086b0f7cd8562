#pragma once

#include <cstring>
#include <optional>

extern "C" {
#include <libavcodec/avcodec.h>
}

#include "host/Lib_Hostenv.h"
#include "scene/CPictureCode.h"
#include "support/Waiting.h"

/// A viewer of one video ring that knows nothing but the ring: it decodes, and reads what the pictures say of
/// themselves.
class CRingView
{
public:
    CRingView(int nNvrID, int nChannel, int nStream) : vm_nNvrID(nNvrID), vm_nChannel(nChannel), vm_nStream(nStream) {}
    ~CRingView()
    {
        avcodec_free_context(&vm_pContext);
        av_packet_free(&vm_pPacket);
        av_frame_free(&vm_pFrame);
    }
    CRingView(const CRingView&) = delete;
    CRingView& operator=(const CRingView&) = delete;

    /// Decodes the next picture, waiting up to 5 s for it. Nothing if there is none or it carries no valid code.
    std::optional<stDef_PictureCode> m_F_o_Next()
    {
        if (!WaitUntil([this] { return m_F_b_Read(); }) || !m_F_b_Decode())
            return std::nullopt;
        return CPictureCode::s_F_o_Read(vm_pFrame->data[0], vm_pFrame->linesize[0], vm_pFrame->width,
                                        vm_pFrame->height);
    }
    const st_RingFrame& m_F_o_Frame() const { return vm_stFrame; } ///< the packet of that picture
    int m_F_n_Width() const { return vm_pFrame->width; }           ///< of that picture
    const st_RingParam& m_F_o_Param() const { return vm_stParam; } ///< as the ring tells them now

private:
    bool m_F_b_Read()
    {
        return (vm_objReader.m_F_b_IsOpen() ||
                vm_objReader.m_F_b_Open(emDef_RingKind::Video, vm_nNvrID, vm_nChannel, vm_nStream)) &&
               vm_objReader.m_F_n_Read(vm_stFrame) == emDef_RingRead::Frame;
    }
    bool m_F_b_OpenDecoder()
    {
        if (vm_pContext && vm_nParamSerial == vm_stFrame.stPacket.nParamSerial)
            return true;
        if (!vm_objReader.m_F_b_GetParam(vm_stParam, vm_nParamSerial) || vm_stParam.nCodec != emDef_RingCodec::H264)
            return false;
        avcodec_free_context(&vm_pContext);
        const AVCodec* pCodec = avcodec_find_decoder(AV_CODEC_ID_H264);
        vm_pContext = avcodec_alloc_context3(pCodec);
        vm_pContext->extradata =
            static_cast<std::uint8_t*>(av_mallocz(vm_stParam.nExtraSize + AV_INPUT_BUFFER_PADDING_SIZE));
        std::memcpy(vm_pContext->extradata, vm_stParam.arExtra.data(), vm_stParam.nExtraSize);
        vm_pContext->extradata_size = static_cast<int>(vm_stParam.nExtraSize);
        vm_pContext->thread_count = 1;
        vm_pContext->flags |= AV_CODEC_FLAG_LOW_DELAY;
        vm_pContext->err_recognition = AV_EF_EXPLODE; // half a picture is none
        return avcodec_open2(vm_pContext, pCodec, nullptr) == 0;
    }
    bool m_F_b_Decode()
    {
        if (!m_F_b_OpenDecoder() || av_new_packet(vm_pPacket, static_cast<int>(vm_stFrame.arData.size())) != 0)
            return false;
        std::memcpy(vm_pPacket->data, vm_stFrame.arData.data(), vm_stFrame.arData.size());
        const bool bSent = avcodec_send_packet(vm_pContext, vm_pPacket) == 0;
        av_packet_unref(vm_pPacket);
        return bSent && avcodec_receive_frame(vm_pContext, vm_pFrame) == 0;
    }

    const int vm_nNvrID, vm_nChannel, vm_nStream;
    CShmRingReader vm_objReader;
    st_RingFrame vm_stFrame;
    st_RingParam vm_stParam;
    std::uint32_t vm_nParamSerial = 0;
    AVCodecContext* vm_pContext = nullptr;
    AVPacket* vm_pPacket = av_packet_alloc();
    AVFrame* vm_pFrame = av_frame_alloc();
};
