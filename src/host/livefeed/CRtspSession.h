#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>

#include "host/livefeed/CPacketSink.h"

class CStreamUrl;
struct AVFormatContext;

/// One connection as its owner described it, in types that a thread may keep.
struct stDef_SessionTarget
{
    std::string sUrl;
    int nTransport = 1;
    int nHttpPort = 0;
    int nConnectTimeoutMs = 0; ///< for everything up to the recorder's consent to play
    int nDataTimeoutMs = 0;    ///< longest gap between packets, and before the first one
    CShmRing* pVideo = nullptr;
    CShmRing* pAudio = nullptr;
    std::atomic<std::uint64_t>* pLastDataTime = nullptr;
};

/// How a connection ended.
enum class emDef_SessionEnd
{
    Over,   ///< told to stop, lost, silent, never answered, or without a ring to write to
    Refused ///< the recorder refused the stream, or it has nothing that a ring could carry
};

/// One connection to a recorder, from the look-up of its name to the last packet. Belongs to one thread.
class CRtspSession
{
public:
    /// `fnStop` is asked at least every 100 ms; `fnStreaming` is called when the first packet (of video, if there is
    /// any) stands in its ring, so that who is told so finds pictures there. Both on the thread of `m_F_n_Run`.
    CRtspSession(const stDef_SessionTarget& stTarget, std::function<bool()> fnStop, std::function<void()> fnStreaming);
    ~CRtspSession(); ///< says goodbye to the recorder, in at most 150 ms
    CRtspSession(const CRtspSession&) = delete;
    CRtspSession& operator=(const CRtspSession&) = delete;

    /// Connects, and receives until the connection ends.
    emDef_SessionEnd m_F_n_Run();

private:
    bool m_F_b_GiveUp() const;
    bool m_F_b_Parse(CStreamUrl& objUrl) const;
    int m_F_n_OpenAny(const CStreamUrl& objUrl);
    int m_F_n_Open(const std::string& sUrl);
    void m_S_TellLack(emDef_RingLack nLack);
    bool m_F_b_Select();
    void m_S_Receive();

    const stDef_SessionTarget vm_stTarget;
    const std::function<bool()> vm_fnStop;
    const std::function<void()> vm_fnStreaming;
    AVFormatContext* vm_pFormat = nullptr;
    // The library may ask from threads of its own.
    std::atomic<std::int64_t> vm_nDeadlineUs{0};
    std::atomic<bool> vm_bClosing{false};
    CPacketSink vm_objVideo;
    CPacketSink vm_objAudio;
    int vm_nVideoStream = -1;
    int vm_nAudioStream = -1;
};
