#include "recorders/CRecorderWatch.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int TickMs = 50;
constexpr int ThereMs = 10000;
constexpr int AwayMs = 2000;
constexpr int LimitMs = 1500;
constexpr int MaxRunning = 256; // descriptors; the streams need theirs

emDef_Reach ReachOf(CTcpProbe::emDef_Outcome nOutcome)
{
    using enum CTcpProbe::emDef_Outcome;
    if (nOutcome == Answered)
        return emDef_Reach::There;
    return nOutcome == Silent || nOutcome == Strange ? emDef_Reach::Silent : emDef_Reach::Away;
}

} // namespace

struct CRecorderWatch::stDef_Watched
{
    QString sHost;
    int nHttpPort = 0;
    int nRtspPort = 0;
    bool bTunnel = false;
    bool bDips = false;
    emDef_Reach nReach = emDef_Reach::Unknown;
    qint64 nDueMs = 0;
    CTcpProbe objProbe;

    bool m_F_b_SamePlace(const stDef_Recorder& st) const
    {
        return bDips == (st.nDstType == 1) && (bDips || (sHost == st.sAddress && nHttpPort == st.nHttpPort)) &&
               nRtspPort == st.nRtspPort && bTunnel == (st.nStreamType == 0);
    }
};

CRecorderWatch::CRecorderWatch(QObject* pParent) : QObject(pParent)
{
    vm_objClock.start();
    vm_objTick.setInterval(TickMs);
    connect(&vm_objTick, &QTimer::timeout, this, &CRecorderWatch::m_S_Tick);
}

CRecorderWatch::~CRecorderWatch() = default;

void CRecorderWatch::m_S_SetRecorders(const QList<stDef_Recorder>& arRecorders)
{
    auto mapOld = std::exchange(vm_mapWatched, {});
    int nNew = 0;
    for (const stDef_Recorder& st : arRecorders) {
        std::unique_ptr<stDef_Watched>& pWatched = vm_mapWatched[st.nNvrID];
        if (const auto pOld = mapOld.find(st.nNvrID); pOld != mapOld.end() && pOld->second->m_F_b_SamePlace(st)) {
            pWatched = std::move(pOld->second);
            continue;
        }
        pWatched = std::make_unique<stDef_Watched>();
        pWatched->sHost = st.sAddress;
        pWatched->nHttpPort = st.nHttpPort;
        pWatched->nRtspPort = st.nRtspPort;
        pWatched->bTunnel = st.nStreamType == 0;
        pWatched->bDips = st.nDstType == 1;
        pWatched->nDueMs = vm_objClock.elapsed() + qint64(nNew++) * AwayMs / arRecorders.size();
        connect(&pWatched->objProbe, &CTcpProbe::S_Done, this,
                [this, nNvrID = st.nNvrID](CTcpProbe::emDef_Outcome nOutcome) { m_S_Done(nNvrID, nOutcome); });
    }
    mapOld.clear();
    vm_nRunning = 0;
    for (const auto& [nNvrID, pWatched] : vm_mapWatched)
        vm_nRunning += pWatched->objProbe.m_F_b_Running() ? 1 : 0;
    vm_mapWatched.empty() ? vm_objTick.stop() : vm_objTick.start();
}

void CRecorderWatch::m_S_SetAddress(int nNvrID, const QString& sHost, int nHttpPort)
{
    const auto pFound = vm_mapWatched.find(nNvrID);
    if (pFound == vm_mapWatched.end() || (pFound->second->sHost == sHost && pFound->second->nHttpPort == nHttpPort))
        return;
    pFound->second->sHost = sHost;
    pFound->second->nHttpPort = nHttpPort;
    m_S_ProbeNow(nNvrID);
}

void CRecorderWatch::m_S_ProbeNow(int nNvrID)
{
    if (const auto pFound = vm_mapWatched.find(nNvrID); pFound != vm_mapWatched.end())
        pFound->second->nDueMs = 0;
}

emDef_Reach CRecorderWatch::m_F_n_Reach(int nNvrID) const
{
    const auto pFound = vm_mapWatched.find(nNvrID);
    return pFound == vm_mapWatched.end() ? emDef_Reach::Unknown : pFound->second->nReach;
}

void CRecorderWatch::m_S_Tick()
{
    const qint64 nNowMs = vm_objClock.elapsed();
    for (const auto& [nNvrID, pWatched] : vm_mapWatched) {
        if (vm_nRunning >= MaxRunning)
            return;
        if (nNowMs >= pWatched->nDueMs && !pWatched->objProbe.m_F_b_Running() && !pWatched->sHost.isEmpty())
            m_S_Begin(*pWatched);
    }
}

void CRecorderWatch::m_S_Begin(stDef_Watched& stWatched)
{
    // Due again from its beginning on; the limit is shorter than the shortest pause.
    stWatched.nDueMs = vm_objClock.elapsed() + AwayMs;
    ++vm_nRunning;
    const QByteArray sHost = stWatched.sHost.toLatin1();
    if (stWatched.bTunnel) {
        stWatched.objProbe.m_S_Start(stWatched.sHost, stWatched.nHttpPort,
                                     "GET / HTTP/1.0\r\nHost: " + sHost + "\r\n\r\n", "HTTP/", LimitMs);
        return;
    }
    stWatched.objProbe.m_S_Start(stWatched.sHost, stWatched.nRtspPort,
                                 "OPTIONS rtsp://" + sHost + ':' + QByteArray::number(stWatched.nRtspPort) +
                                     "/ RTSP/1.0\r\nCSeq: 1\r\n\r\n",
                                 "RTSP/", LimitMs);
}

void CRecorderWatch::m_S_Done(int nNvrID, CTcpProbe::emDef_Outcome nOutcome)
{
    --vm_nRunning;
    stDef_Watched& stWatched = *vm_mapWatched.at(nNvrID);
    const emDef_Reach nBefore = std::exchange(stWatched.nReach, ReachOf(nOutcome));
    if (stWatched.nReach == emDef_Reach::There && stWatched.nDueMs > 0)
        stWatched.nDueMs += ThereMs - AwayMs;
    if (nBefore == stWatched.nReach)
        return;
    const bool bBack = stWatched.nReach == emDef_Reach::There && nBefore != emDef_Reach::Unknown;
    Q_EMIT S_Changed(nNvrID); // a slot may take the recorder out of the list
    if (bBack)
        Q_EMIT S_Back(nNvrID);
}
