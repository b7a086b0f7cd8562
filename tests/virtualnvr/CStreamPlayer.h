#pragma once

#include "scene/CPictureCode.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

struct AVCodecContext;
struct AVFormatContext;
struct AVFrame;
struct AVPacket;

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

    CStreamPlayer();
    ~CStreamPlayer(); ///< hangs up
    CStreamPlayer(const CStreamPlayer&) = delete;
    CStreamPlayer& operator=(const CStreamPlayer&) = delete;

    /// Connects and plays. 0, or the AVERROR; AVERROR_EXIT if the limit has passed.
    int m_F_n_Open(const std::string& sUrl, const std::string& sTransport, int nLimitMs = 10000);
    /// The next picture that can be decoded; nothing at the end, or if there is none within the limit.
    std::optional<stDef_Picture> m_F_o_Next(int nLimitMs = 5000);
    /// True if the last wait ended because its limit had passed, not because the stream ended.
    bool m_F_b_TimedOut() const;

    int vm_nSounds = 0;    ///< PCMU packets seen so far
    int vm_nSequences = 0; ///< key frames seen so far

private:
    bool m_F_b_OpenDecoder();
    std::optional<stDef_Picture> m_F_o_Receive();

    AVFormatContext* vm_pFormat = nullptr;
    AVCodecContext* vm_pDecoder = nullptr;
    AVFrame* vm_pFrame;
    AVPacket* vm_pPacket;
    int vm_nVideo = -1;
    std::chrono::steady_clock::time_point vm_tLimit;
};
