#include "core/CWndNvrShared.h"

#include <QCursor>
#include <QMenu>
#include <algorithm>

#include "core/CNvrTransfer.h"
#include "core/CommandNumbers.h"
#include "core/stDef_RtspStream.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int PtzListTimeoutMs = 50000;

} // namespace

CWndNvrShared::CWndNvrShared(QWidget* pParent, CEnvObj* pEnv) : CWndNvrBase(pParent, pEnv) {}

CWndNvrShared::~CWndNvrShared()
{
    m_S_EndStream();
}

void CWndNvrShared::m_S_EndStream()
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
    m_S_EndStream();
    m_S_Leave();
}

bool CWndNvrShared::m_F_b_GetRequest(const QString& sUrl, CXmlObj* pXml, int nTimeoutMs)
{
    CNvrTransfer objTransfer(*this);
    return pXml && objTransfer.m_F_b_Get(sUrl, &objTransfer.m_F_o_Reply(), nTimeoutMs) && objTransfer.m_F_b_Load(*pXml);
}

bool CWndNvrShared::m_F_b_PostRequest(const QString& sUrl, CXmlObj* pXml, int nTimeoutMs)
{
    return pXml && CNvrTransfer(*this).m_F_b_Post(sUrl, pXml->m_F_s_GetUtf8(), nTimeoutMs);
}

bool CWndNvrShared::m_F_b_GetRequestData(const QString& sUrl, CMemManage* pMem, int nTimeoutMs)
{
    return CNvrTransfer(*this).m_F_b_Get(sUrl, pMem, nTimeoutMs);
}

CWndNvrShared::stDef_StreamTarget CWndNvrShared::m_F_o_ReadTarget(int nNvrID) const
{
    const QString sNode = QString::asprintf("/root/NVR/N%03d", nNvrID);
    CXmlObj& xmlList = *vm_pEnv->m_F_p_GetMemSysXML();
    stDef_StreamTarget stTarget;
    stTarget.sIP = xmlList.m_F_s_Value(sNode, u"IP"_s);
    stTarget.sUID = xmlList.m_F_s_Value(sNode, u"UID"_s);
    stTarget.sPWD = xmlList.m_F_s_Value(sNode, u"PWD"_s);
    stTarget.nHttpPort = xmlList.m_F_n_GetValueInt(sNode, u"HttpPort"_s, stTarget.nHttpPort);
    stTarget.nRtspPort = xmlList.m_F_n_GetValueInt(sNode, u"RtspPort"_s, stTarget.nRtspPort);
    stTarget.nStreamType = xmlList.m_F_n_GetValueInt(sNode, u"StreamType"_s, stTarget.nStreamType);
    return stTarget;
}

void CWndNvrShared::m_S_StartRtsp(const stDef_StreamTarget& stTarget, int nNvrID, int nChannel, int nStream)
{
    vm_pRtsp = std::make_unique<stDef_RtspStream>();
    const std::string sInstance = vm_pEnv->m_F_s_Instance().toStdString();
    vm_pRtsp->vm_objShmVideo.m_S_Init(nNvrID, nChannel, nStream, true, sInstance);
    // Both streams of a channel carry the same sound, so they share one audio ring.
    vm_pRtsp->vm_objShmAudio.m_S_Init(nNvrID, nChannel, 0, true, sInstance);

    stDef_RtspParam stParam;
    stParam.sUrl = u"rtsp://"_s + stTarget.sUID + u':' + CWinAES_CMS::s_F_s_Decrypt(stTarget.sPWD) + u'@' +
                   stTarget.sIP + u':' + QString::number(stTarget.nRtspPort) +
                   (nStream ? u"/stream/SCH"_s : u"/stream/CH"_s) + QString::number(nChannel);
    stParam.nHttpPort = stTarget.nHttpPort;
    stParam.nStreamType = stTarget.nStreamType;
    stParam.pVideo = &vm_pRtsp->vm_objShmVideo;
    stParam.pAudio = &vm_pRtsp->vm_objShmAudio;
    vm_pRtsp->vm_objInfo.m_S_SetParam(&stParam);
    m_S_StartClient();
}

void CWndNvrShared::m_S_StartClient()
{
    if (m_F_b_HasRing())
        vm_pRtsp->vm_objClient.m_S_Connect(&vm_pRtsp->vm_objInfo);
}

// The log is told each reason once.
bool CWndNvrShared::m_F_b_HasRing()
{
    if (!vm_pRtsp)
        return true;
    const std::string sVideo = vm_pRtsp->vm_objShmVideo.m_F_s_WhyNot();
    const std::string sAudio = vm_pRtsp->vm_objShmAudio.m_F_s_WhyNot();
    for (const std::string& sWhy : {sVideo, sAudio}) {
        if (!sWhy.empty() && vm_sToldRings.find(sWhy) == std::string::npos)
            CSFunc::s_S_Debug("no ring to write to, %s", sWhy.c_str());
    }
    vm_sToldRings = sVideo + '\n' + sAudio;
    return sVideo.empty();
}

void CWndNvrShared::m_S_AttachAgain()
{
    stDef_RtspStream& stStream = *vm_pRtsp;
    if (stStream.vm_objShmVideo.m_F_b_IsAttached() && stStream.vm_objShmAudio.m_F_b_IsAttached())
        return;
    stStream.vm_objClient.m_S_Disconnect(false); // its thread may be about to see that it can't write
    stStream.vm_objShmVideo.m_F_b_AttachAgain();
    stStream.vm_objShmAudio.m_F_b_AttachAgain();
    stStream.vm_objInfo.vm_pVideoInfo = stStream.vm_objShmVideo.m_F_p_GetData();
    stStream.vm_objInfo.vm_pAudioInfo = stStream.vm_objShmAudio.m_F_p_GetData();
}

void CWndNvrShared::m_S_Connect(int nNvrID, int nChannel, int nStream)
{
    if (vm_pRtsp) {
        m_S_AttachAgain();
        m_S_StartClient();
    } else if (vm_pEnv)
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
    if (!m_F_b_HasRing()) {
        vm_pRtsp->vm_objClient.m_S_Disconnect(true);
        m_S_StoreConnectStat(nsCMS::ConnectStat_Disconnected);
        return nsCMS::ConnectStat_Disconnected;
    }

    // In this order: a thread leaves its last word before it ends, and read the other way round a refusal would now and
    // then pass for an end.
    CRtspClient& objClient = vm_pRtsp->vm_objClient;
    const bool bRuns = objClient.m_F_b_ThreadRun();
    const int nState = vm_pRtsp->vm_objInfo.vm_nRtspState.load(std::memory_order_relaxed);
    nsCMS::emDef_ConnectStat nStat = nsCMS::ConnectStat_Disconnected;
    if (nStamp > vm_pRtsp->vm_objInfo.vm_nLastDataTime.load(std::memory_order_relaxed)) {
        nStat = nState == 0 ? nsCMS::ConnectStat_NoAnswer : nsCMS::ConnectStat_Disconnected;
        objClient.m_S_Disconnect(true);
    } else if (bRuns) {
        nStat = nState == 1 ? nsCMS::ConnectStat_Connected : nsCMS::ConnectStat_Connecting;
    } else if (nState == 3) {
        nStat = nsCMS::ConnectStat_Refused;
    }
    m_S_StoreConnectStat(nStat);
    return nStat;
}

bool CWndNvrShared::m_F_b_GetRequests(std::initializer_list<std::pair<const char*, CXmlObj*>> arRequests,
                                      int nTimeoutMs)
{
    return std::all_of(arRequests.begin(), arRequests.end(), [this, nTimeoutMs](const auto& objRequest) {
        return m_F_b_GetRequest(QString::fromLatin1(objRequest.first), objRequest.second, nTimeoutMs);
    });
}

QList<stDef_MenuItem> CWndNvrShared::m_F_ar_MenuItems() const
{
    QList<stDef_MenuItem> arItems;
    for (int nId = nsCMS::MenuCommand_SystemSetting; const stDef_CommandRow& stRow : m_F_ar_Commands())
        arItems.append({nId++, m_F_s_Text(stRow.stText, QString::fromUtf8(stRow.stText.pszDefault)), stRow.bWorks});
    return arItems;
}

void CWndNvrShared::m_S_ShowMenu()
{
    if (m_F_b_InUse())
        return;
    const QPointer<CWndNvrShared> pSelf(this);
    const int nPicked = m_F_n_RunMenu();
    if (pSelf && nPicked != 0) // it may have been released while its menu stood
        m_S_OnCommand(nPicked);
}

int CWndNvrShared::m_F_n_RunMenu()
{
    const CNvrUse objUse(this);
    QMenu objMenu(this); // not of the host's window, which may go meanwhile
    objMenu.setObjectName(u"NvrMenu"_s);
    for (const stDef_MenuItem& stItem : m_F_ar_MenuItems())
        objMenu.addAction(stItem.sText)->setData(stItem.nId);
    const QAction* const pPicked = objMenu.exec(QCursor::pos());
    return pPicked ? pPicked->data().toInt() : 0;
}

QString CWndNvrShared::m_F_s_CacheFolder() const
{
    const QString sFolder = vm_pEnv ? vm_pEnv->m_F_s_GetConfigFolder() : QString();
    return sFolder + m_F_s_CacheName() + QString::asprintf("/N%03d", vm_stInit.nNvrID);
}

void CWndNvrShared::m_S_SaveCache(CXmlObj* pXml, const QString& sFile)
{
    if (!pXml || !vm_pEnv)
        return;
    CSFunc::s_F_n_CreateDirectorys(m_F_s_CacheFolder());
    pXml->m_F_b_Save(m_F_s_CacheFolder() + sFile);
}

void CWndNvrShared::m_S_LoadCache(CXmlObj* pXml, const QString& sFile)
{
    if (pXml && vm_pEnv)
        pXml->m_F_b_LoadXMLFile(m_F_s_CacheFolder() + sFile);
}

void CWndNvrShared::m_S_SaveXmlNVR(CXmlObj* pXml)
{
    m_S_SaveCache(pXml, u"/NVR.xml"_s);
}

void CWndNvrShared::m_S_GetXmlNVR(CXmlObj* pXml)
{
    m_S_LoadCache(pXml, u"/NVR.xml"_s);
}

void CWndNvrShared::m_S_SaveXmlCamera(CXmlObj* pXml)
{
    m_S_SaveCache(pXml, u"/Camera.xml"_s);
}

void CWndNvrShared::m_S_GetXmlCamera(CXmlObj* pXml)
{
    m_S_LoadCache(pXml, u"/Camera.xml"_s);
}

void CWndNvrShared::m_S_GetPTZData(int nKind, int nCamera, QStringList* pList)
{
    if (!pList)
        return;
    pList->clear();
    if (nKind != nsCMS::PtzList_Tours && nKind != nsCMS::PtzList_Presets)
        return;
    const QString sGroup = nKind == nsCMS::PtzList_Tours ? u"tourset"_s : u"preset"_s;
    const QString sUrl = u"cgi-bin/param.cgi?action=list&camera=%1&group=%2"_s.arg(nCamera).arg(sGroup);
    CXmlObj xmlReply;
    if (m_F_b_GetRequest(sUrl, &xmlReply, PtzListTimeoutMs))
        m_S_ReadPtzNames(xmlReply, nCamera, sGroup, *pList);
}
