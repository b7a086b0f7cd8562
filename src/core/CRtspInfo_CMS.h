#pragma once

#include <QString>

#include "host/Lib_Hostenv.h"
#include "host/Lib_Livefeed.h"

/// What a kind of connection knows of the stream it is about to open.
struct stDef_RtspParam
{
    QString sUrl;                       ///< the whole stream URL
    int nHttpPort = 0;                  ///< HTTP port, or the port that the DIPS look-up gave
    int nStreamType = 1;                ///< `StreamType` of the recorder list: 0 HTTP tunnel, 1 TCP, 2 UDP; others as 1
    CShmEncVideo_CMS* pVideo = nullptr; ///< ring that gets video
    CShmEncAudio_CMS* pAudio = nullptr; ///< ring that gets audio
};

/// Connection description of a recorder's live stream.
class CRtspInfo_CMS final : public CRtspInfo
{
public:
    void m_S_SetParam(stDef_RtspParam* pParam) override;
};
