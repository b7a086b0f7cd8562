#include "host/hostenv/CShmEnc.h"

CShmEncVideo::st_VideoInfo* CShmEncVideo::m_F_p_GetData() const
{
    return static_cast<st_VideoInfo*>(m_F_p_Header());
}

CShmEncAudio::st_AudioInfo* CShmEncAudio::m_F_p_GetData() const
{
    return static_cast<st_AudioInfo*>(m_F_p_Header());
}

namespace {

/// Number -1 stands for no recorder, so that there is no ring to attach.
void Attach(CShmRing& ring, emDef_RingKind nKind, std::int32_t nNvrID, std::int32_t nChannel, std::int32_t nStream,
            bool bCreate, const std::string& sInstance)
{
    if (nNvrID < 0 && !bCreate)
        ring.m_S_Detach();
    else
        ring.m_F_b_Attach(nKind, nNvrID, nChannel, nStream, bCreate, sInstance);
}

} // namespace

CShmEncVideo_CMS::CShmEncVideo_CMS(std::int32_t nNvrID, std::int32_t nChannel, std::int32_t nStream, bool bCreate)
{
    m_S_Init(nNvrID, nChannel, nStream, bCreate);
}

void CShmEncVideo_CMS::m_S_Init(std::int32_t nNvrID, std::int32_t nChannel, std::int32_t nStream, bool bCreate,
                                const std::string& sInstance)
{
    Attach(*this, emDef_RingKind::Video, nNvrID, nChannel, nStream, bCreate, sInstance);
}

CShmEncAudio_CMS::CShmEncAudio_CMS(std::int32_t nNvrID, std::int32_t nChannel, std::int32_t nStream, bool bCreate)
{
    m_S_Init(nNvrID, nChannel, nStream, bCreate);
}

void CShmEncAudio_CMS::m_S_Init(std::int32_t nNvrID, std::int32_t nChannel, std::int32_t nStream, bool bCreate,
                                const std::string& sInstance)
{
    Attach(*this, emDef_RingKind::Audio, nNvrID, nChannel, nStream, bCreate, sInstance);
}
