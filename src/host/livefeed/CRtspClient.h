#pragma once

#include <cstdint>
#include <memory>

#include "host/Export.h"
#include "host/livefeed/CRtspInfo.h"

/// One RTSP connection with its receiving thread, which writes whole access units into the rings of the info.
///
/// All operations are for one owner's thread; the receiving thread is the client's own. It ends within 200 ms of being
/// told, also inside a blocked look-up, connect or read.
class LIB_LIVEFEED_EXPORT CRtspClient
{
public:
    CRtspClient();
    ~CRtspClient(); ///< ends the connection and waits for the thread
    CRtspClient(const CRtspClient&) = delete;
    CRtspClient& operator=(const CRtspClient&) = delete;

    /// Begins a connection and returns at once. The pointer is kept and must outlive the connection; null means to
    /// connect again with the info that the client has. A connection that runs and was not told to stop is left alone;
    /// one that was told to stop is followed by a new one as soon as it has ended.
    void m_S_Connect(CRtspInfo* pInfo);

    /// True tells the client to stop and returns at once; false returns after the thread has ended.
    void m_S_Disconnect(bool bAsync);

    /// True while the client's thread lives.
    bool m_F_b_ThreadRun() const;

    /// Milliseconds of the clock of `CRtspInfo::vm_nLastDataTime`.
    static std::uint64_t s_F_n_NowMs();

private:
    struct st_Impl;
    std::unique_ptr<st_Impl> vm_pImpl;
};
