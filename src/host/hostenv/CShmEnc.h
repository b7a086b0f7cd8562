#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "host/Export.h"
#include "host/hostenv/CShmRing.h"

/// A video ring. `CRtspInfo` points to this base.
class LIB_HOSTENV_EXPORT CShmEncVideo : public CShmRing
{
public:
    /// Header of a video ring. All but the connection state belongs to the ring and its readers.
    struct st_VideoInfo
    {
        unsigned char arRing[816];
        std::atomic<std::int32_t> vm_nConnectStat; ///< `nsCMS::emDef_ConnectStat`, written at each poll
        unsigned char arRest[4096 - 820];
    };

    st_VideoInfo* m_F_p_GetData() const; ///< never null; valid as long as the object
};

static_assert(offsetof(CShmEncVideo::st_VideoInfo, vm_nConnectStat) == 816);
static_assert(sizeof(CShmEncVideo::st_VideoInfo) == 4096);

/// An audio ring.
class LIB_HOSTENV_EXPORT CShmEncAudio : public CShmRing
{
public:
    struct st_AudioInfo
    {
        unsigned char arRing[4096];
    };

    st_AudioInfo* m_F_p_GetData() const; ///< never null; valid as long as the object
};

/// The video ring of one stream by name. (-1, -1, 0, false) makes an unattached object.
class LIB_HOSTENV_EXPORT CShmEncVideo_CMS : public CShmEncVideo
{
public:
    CShmEncVideo_CMS(std::int32_t nNvrID, std::int32_t nChannel, std::int32_t nStream, bool bCreate);
    void m_S_Init(std::int32_t nNvrID, std::int32_t nChannel, std::int32_t nStream, bool bCreate,
                  const std::string& sInstance = {});
};

/// The audio ring of one stream by name. (-1, -1, 0, false) makes an unattached object.
class LIB_HOSTENV_EXPORT CShmEncAudio_CMS : public CShmEncAudio
{
public:
    CShmEncAudio_CMS(std::int32_t nNvrID, std::int32_t nChannel, std::int32_t nStream, bool bCreate);
    void m_S_Init(std::int32_t nNvrID, std::int32_t nChannel, std::int32_t nStream, bool bCreate,
                  const std::string& sInstance = {});
};
