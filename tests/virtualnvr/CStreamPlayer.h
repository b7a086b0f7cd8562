#pragma once

#include "scene/CPictureCode.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

/// A client that isn't ours: libavformat and libavcodec. Nothing it does outlasts its time limits.
class CStreamPlayer
{
public:
    struct stDef_Picture
    {
        std::optional<stDef_PictureCode> stCode;
        int nWidth = 0;
        int nHeight = 0;
        std::int64_t nPtsMs = 0;
        std::vector<std::uint8_t> arLuma; ///< nWidth a row
    };

    CStreamPlayer() { av_log_set_level(AV_LOG_QUIET); }
    ~CStreamPlayer() ///< hangs up
    {
        vm_tLimit = std::chrono::steady_clock::now() + std::chrono::seconds(1);
        avcodec_free_context(&vm_pDecoder);
        avformat_close_input(&vm_pFormat);
        av_frame_free(&vm_pFrame);
        av_packet_free(&vm_pPacket);
    }
    CStreamPlayer(const CStreamPlayer&) = delete;
    CStreamPlayer& operator=(const CStreamPlayer&) = delete;

    /// Connects and plays. 0, or the AVERROR; AVERROR_EXIT if the limit has passed.
    int m_F_n_Open(const std::string& sUrl, const std::string& sTransport, int nLimitMs = 10000)
    {
        vm_tLimit = std::chrono::steady_clock::now() + std::chrono::milliseconds(nLimitMs);
        vm_pFormat = avformat_alloc_context();
        vm_pFormat->interrupt_callback = {
            [](void* pSelf) { return static_cast<CStreamPlayer*>(pSelf)->m_F_b_TimedOut() ? 1 : 0; }, this};
        AVDictionary* pOptions = nullptr;
        av_dict_set(&pOptions, "rtsp_transport", sTransport.c_str(), 0);
        int nResult = avformat_open_input(&vm_pFormat, sUrl.c_str(), nullptr, &pOptions);
        av_dict_free(&pOptions);
        if (nResult == 0 && !m_F_b_OpenDecoder())
            nResult = AVERROR_DECODER_NOT_FOUND;
        return nResult != 0 && m_F_b_TimedOut() ? AVERROR_EXIT : nResult;
    }
    /// The next picture that can be decoded; nothing at the end, or if there is none within the limit.
    std::optional<stDef_Picture> m_F_o_Next(int nLimitMs = 5000)
    {
        vm_tLimit = std::chrono::steady_clock::now() + std::chrono::milliseconds(nLimitMs);
        std::optional<stDef_Picture> stPicture;
        while (vm_pFormat && !stPicture && !m_F_b_TimedOut() && av_read_frame(vm_pFormat, vm_pPacket) == 0) {
            const AVCodecParameters* pParameters = vm_pFormat->streams[vm_pPacket->stream_index]->codecpar;
            vm_nSounds += pParameters->codec_id == AV_CODEC_ID_PCM_MULAW && vm_pPacket->size > 0 ? 1 : 0;
            if (vm_pPacket->stream_index == vm_nVideo) {
                vm_nSequences += (vm_pPacket->flags & AV_PKT_FLAG_KEY) != 0 ? 1 : 0;
                avcodec_send_packet(vm_pDecoder, vm_pPacket);
                stPicture = m_F_o_Receive();
            }
            av_packet_unref(vm_pPacket);
        }
        return stPicture;
    }
    /// True if the last wait ended because its limit had passed, not because the stream ended.
    bool m_F_b_TimedOut() const { return std::chrono::steady_clock::now() >= vm_tLimit; }

    int vm_nSounds = 0;    ///< PCMU packets seen so far
    int vm_nSequences = 0; ///< key frames seen so far

private:
    bool m_F_b_OpenDecoder()
    {
        vm_nVideo = av_find_best_stream(vm_pFormat, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
        if (vm_nVideo < 0)
            return false;
        const AVCodec* pCodec = avcodec_find_decoder(AV_CODEC_ID_H264);
        vm_pDecoder = avcodec_alloc_context3(pCodec);
        vm_pDecoder->flags |= AV_CODEC_FLAG_LOW_DELAY;
        vm_pDecoder->thread_count = 1;
        return avcodec_parameters_to_context(vm_pDecoder, vm_pFormat->streams[vm_nVideo]->codecpar) >= 0 &&
               avcodec_open2(vm_pDecoder, pCodec, nullptr) == 0;
    }
    std::optional<stDef_Picture> m_F_o_Receive()
    {
        if (avcodec_receive_frame(vm_pDecoder, vm_pFrame) != 0)
            return std::nullopt;
        const AVRational stUnit = vm_pFormat->streams[vm_nVideo]->time_base;
        stDef_Picture stPicture{
            CPictureCode::s_F_o_Read(vm_pFrame->data[0], vm_pFrame->linesize[0], vm_pFrame->width, vm_pFrame->height),
            vm_pFrame->width,
            vm_pFrame->height,
            av_rescale_q(vm_pFrame->pts, stUnit, {1, 1000}),
            {}};
        for (int nRow = 0; nRow < vm_pFrame->height; ++nRow) {
            const std::uint8_t* pRow = vm_pFrame->data[0] + static_cast<std::ptrdiff_t>(nRow) * vm_pFrame->linesize[0];
            stPicture.arLuma.insert(stPicture.arLuma.end(), pRow, pRow + vm_pFrame->width);
        }
        return stPicture;
    }

    AVFormatContext* vm_pFormat = nullptr;
    AVCodecContext* vm_pDecoder = nullptr;
    AVFrame* vm_pFrame = av_frame_alloc();
    AVPacket* vm_pPacket = av_packet_alloc();
    int vm_nVideo = -1;
    std::chrono::steady_clock::time_point vm_tLimit;
};
