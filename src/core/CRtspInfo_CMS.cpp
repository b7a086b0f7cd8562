#include "core/CRtspInfo_CMS.h"

#include "host/bedrock/CSFunc.h"

namespace {

constexpr int ConnectTimeoutMs = 5000;
constexpr int DataTimeoutMs = 10000;

enum emDef_Transport
{
    Transport_UDP = 0,
    Transport_TCP = 1,
    Transport_HttpTunnel = 2
};

} // namespace

void CRtspInfo_CMS::m_S_SetParam(stDef_RtspParam* pParam)
{
    vm_nConnectTimeout = ConnectTimeoutMs;
    vm_nDataTimeout = DataTimeoutMs;
    vm_pShmVideo = pParam->pVideo;
    vm_pVideoInfo = pParam->pVideo->m_F_p_GetData();
    vm_pShmAudio = pParam->pAudio;
    vm_pAudioInfo = pParam->pAudio->m_F_p_GetData();
    vm_sUrl = CSFunc::s_F_s_UnicodeToAnsi(pParam->sUrl);
    vm_nTransport = Transport_TCP;
    vm_nHttpPort = 0;
    // The codes of the recorder list and of the client run in opposite order.
    if (pParam->nStreamType == 0) {
        vm_nTransport = Transport_HttpTunnel;
        vm_nHttpPort = pParam->nHttpPort;
    } else if (pParam->nStreamType == 2) {
        vm_nTransport = Transport_UDP;
    }
}
