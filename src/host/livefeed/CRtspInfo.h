#pragma once

#include <QByteArray>
#include <atomic>
#include <cstdint>

#include "host/hostenv/CShmEnc.h"

struct stDef_RtspParam;

/// Description of one RTSP connection. The plug-in fills it before `CRtspClient::m_S_Connect`; the client's thread
/// moves the two atomic words, which any thread may read (relaxed; a reading may be stale by one poll).
class CRtspInfo
{
public:
    /// Fills the fields from what a kind of connection knows.
    virtual void m_S_SetParam(stDef_RtspParam* pParam) = 0;

    std::atomic<std::uint64_t> vm_nLastDataTime{0}; ///< ms of the steady clock; "now" when a connection begins
    CShmEncVideo* vm_pShmVideo = nullptr;           ///< ring that receives video, not owned
    CShmEncVideo::st_VideoInfo* vm_pVideoInfo = nullptr;
    CShmEncAudio* vm_pShmAudio = nullptr; ///< ring that receives audio, not owned
    CShmEncAudio::st_AudioInfo* vm_pAudioInfo = nullptr;
    QByteArray vm_sUrl;                         ///< whole rtsp:// URL with the account in it, unescaped
    std::int32_t vm_nTransport = 1;             ///< 0 UDP, 1 TCP interleaved, 2 RTSP over HTTP on vm_nHttpPort
    std::int32_t vm_nHttpPort = 0;              ///< port of transport 2, else 0
    std::int32_t vm_nConnectTimeout = 5000;     ///< ms
    std::int32_t vm_nDataTimeout = 10000;       ///< ms without data after which the connection is given up
    std::atomic<std::int32_t> vm_nRtspState{0}; ///< 0 nothing in the ring yet, 1 streaming, 3 refused

protected:
    ~CRtspInfo() = default; // never deleted through this class
};
