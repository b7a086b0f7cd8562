#include "core/CWndNvrShared.h"

#include "core/CReplyEnvelope.h"
#include "core/stDef_RtspStream.h"

using namespace Qt::StringLiterals;

CWndNvrShared::CWndNvrShared(QWidget* pParent, CEnvObj* pEnv) : CWndNvrBase(pParent, pEnv) {}

CWndNvrShared::~CWndNvrShared()
{
    if (!vm_pRtsp)
        return;
    m_S_StoreConnectStat(nsCMS::ConnectStat_Disconnected);
    vm_pRtsp->vm_objClient.m_S_Disconnect(false);
}

void CWndNvrShared::m_S_DeleteSelf(CWndNvrBase** ppObj)
{
    if (ppObj)
        *ppObj = nullptr;
    delete this;
}

int CWndNvrShared::m_F_n_Get(const QString& sUrl, CMemManage* pMem, int nTimeoutMs)
{
    if (vm_stInit.sIP.isEmpty() || !pMem)
        return -1;
    return vm_objHttp.m_F_n_HTTPGetDataDirect(vm_stInit.sIP, vm_stInit.sUID, vm_stInit.sPWD, vm_stInit.nHttpPort,
                                              CSFunc::s_F_s_UnicodeToAnsi(sUrl), pMem, nTimeoutMs);
}

bool CWndNvrShared::m_F_b_GetRequest(const QString& sUrl, CXmlObj* pXml, int nTimeoutMs)
{
    if (!pXml || m_F_n_Get(sUrl, &vm_objReply, nTimeoutMs) < 0)
        return false;
    const QString sReply = CSFunc::s_F_s_Utf8ToUnicode(QByteArray(vm_objReply.m_F_p_GetStrCHAR()));
    return pXml->m_F_b_LoadXML(CReplyEnvelope::s_F_s_CutRoot(sReply));
}

bool CWndNvrShared::m_F_b_PostRequest(const QString& sUrl, CXmlObj* pXml, int nTimeoutMs)
{
    if (!pXml || vm_stInit.sIP.isEmpty())
        return false;
    const QByteArray sBody = CSFunc::s_F_s_UnicodeToUtf8(pXml->m_F_s_GetXML());
    return vm_objHttp.m_F_n_HTTPPostDataDirect(vm_stInit.sIP, vm_stInit.sUID, vm_stInit.sPWD, vm_stInit.nHttpPort,
                                               CSFunc::s_F_s_UnicodeToAnsi(sUrl), sBody, static_cast<int>(sBody.size()),
                                               {}, 0, nTimeoutMs) >= 0;
}

bool CWndNvrShared::m_F_b_GetRequestData(const QString& sUrl, CMemManage* pMem, int nTimeoutMs)
{
    return m_F_n_Get(sUrl, pMem, nTimeoutMs) >= 0;
}

CWndNvrShared::stDef_StreamTarget CWndNvrShared::m_F_o_ReadTarget(int nNvrID) const
{
    const QString sNode = QString::asprintf("/root/NVR/N%03d", nNvrID);
    CXmlObj& xmlList = *vm_pEnv->m_F_p_GetMemSysXML();
    stDef_StreamTarget stTarget;
    xmlList.m_F_n_GetValue(sNode, u"IP"_s, stTarget.sIP, {});
    xmlList.m_F_n_GetValue(sNode, u"UID"_s, stTarget.sUID, {});
    xmlList.m_F_n_GetValue(sNode, u"PWD"_s, stTarget.sPWD, {});
    stTarget.nHttpPort = xmlList.m_F_n_GetValueInt(sNode, u"HttpPort"_s, stTarget.nHttpPort);
    stTarget.nRtspPort = xmlList.m_F_n_GetValueInt(sNode, u"RtspPort"_s, stTarget.nRtspPort);
    stTarget.nStreamType = xmlList.m_F_n_GetValueInt(sNode, u"StreamType"_s, stTarget.nStreamType);
    return stTarget;
}

void CWndNvrShared::m_S_StartRtsp(const stDef_StreamTarget& stTarget, int nNvrID, int nChannel, int nStream)
{
    vm_pRtsp = std::make_unique<stDef_RtspStream>();
    vm_pRtsp->vm_objShmVideo.m_S_Init(nNvrID, nChannel, nStream, true);
    // Both streams of a channel carry the same sound, so they share one audio ring.
    vm_pRtsp->vm_objShmAudio.m_S_Init(nNvrID, nChannel, 0, true);

    stDef_RtspParam stParam;
    stParam.sUrl = u"rtsp://"_s + stTarget.sUID + u':' + CWinAES_CMS::s_F_s_Decrypt(stTarget.sPWD) + u'@' +
                   stTarget.sIP + u':' + QString::number(stTarget.nRtspPort) +
                   (nStream ? u"/stream/SCH"_s : u"/stream/CH"_s) + QString::number(nChannel);
    stParam.nHttpPort = stTarget.nHttpPort;
    stParam.nStreamType = stTarget.nStreamType;
    stParam.pVideo = &vm_pRtsp->vm_objShmVideo;
    stParam.pAudio = &vm_pRtsp->vm_objShmAudio;
    vm_pRtsp->vm_objInfo.m_S_SetParam(&stParam);
    vm_pRtsp->vm_objClient.m_S_Connect(&vm_pRtsp->vm_objInfo);
}

void CWndNvrShared::m_S_Connect(int nNvrID, int nChannel, int nStream)
{
    if (vm_pRtsp)
        vm_pRtsp->vm_objClient.m_S_Connect(nullptr);
    else if (vm_pEnv)
        m_S_CreateNewRtsp(nNvrID, nChannel, nStream);
}

void CWndNvrShared::m_S_StoreConnectStat(nsCMS::emDef_ConnectStat nStat)
{
    vm_pRtsp->vm_objShmVideo.m_F_p_GetData()->vm_nConnectStat.store(nStat, std::memory_order_relaxed);
}

void CWndNvrShared::m_S_Disconnect(bool bWait)
{
    if (!vm_pRtsp)
        return;
    if (!bWait) {
        vm_pRtsp->vm_objClient.m_S_Disconnect(true);
        return;
    }
    m_S_StoreConnectStat(nsCMS::ConnectStat_Disconnecting);
    vm_pRtsp->vm_objClient.m_S_Disconnect(false);
    m_S_StoreConnectStat(nsCMS::ConnectStat_Disconnected);
}

nsCMS::emDef_ConnectStat CWndNvrShared::m_F_n_GetConnectStat(std::uint64_t nStamp)
{
    if (!vm_pRtsp)
        return nsCMS::ConnectStat_None;

    CRtspClient& objClient = vm_pRtsp->vm_objClient;
    const int nState = vm_pRtsp->vm_objInfo.vm_nRtspState.load(std::memory_order_relaxed);
    nsCMS::emDef_ConnectStat nStat = nsCMS::ConnectStat_Disconnected;
    if (nStamp > vm_pRtsp->vm_objInfo.vm_nLastDataTime.load(std::memory_order_relaxed)) {
        nStat = nState == 0 ? nsCMS::ConnectStat_NoAnswer : nsCMS::ConnectStat_Disconnected;
        objClient.m_S_Disconnect(true);
    } else if (objClient.m_F_b_ThreadRun()) {
        nStat = nState == 1 ? nsCMS::ConnectStat_Connected : nsCMS::ConnectStat_Connecting;
    } else if (nState == 3) {
        nStat = nsCMS::ConnectStat_Refused;
    }
    m_S_StoreConnectStat(nStat);
    return nStat;
}
