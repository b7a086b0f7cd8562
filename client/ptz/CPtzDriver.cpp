#include "ptz/CPtzDriver.h"

#include <algorithm>
#include <utility>

#include "recorders/CNvrQuery.h"
#include "recorders/CRecorderStore.h"

namespace {

using emDef_Kind = stDef_PtzOrder::emDef_Kind;

constexpr int PanTiltAxis = 0;
constexpr int ZoomAxis = 1;

} // namespace

CPtzDriver::CPtzDriver(CEnvObj* pEnv, const CRecorderStore* pStore, QObject* pParent)
    : QObject(pParent), vm_pEnv(pEnv), vm_pStore(pStore)
{}

CPtzDriver::~CPtzDriver()
{
    disconnect();
    m_S_SetChannel({});
    for (const auto& [nSender, pSender] : vm_mapEnding) // all at once, not each after the one before
        pSender->m_S_Close(true);
}

void CPtzDriver::m_S_SetChannel(const stDef_ChannelKey& stKey)
{
    if (stKey == vm_stKey)
        return;
    m_S_StopAll();
    if (stKey.nNvrID != vm_stKey.nNvrID)
        m_S_Renew();
    vm_stKey = stKey;
}

// What the old object was told to do it still does, stops above all.
void CPtzDriver::m_S_Renew()
{
    if (!vm_pSender)
        return;
    m_S_StopAll();
    vm_pSender->m_S_Close();
    vm_mapEnding[vm_nSender] = std::move(vm_pSender);
}

void CPtzDriver::m_S_SetSpeed(int nSpeed)
{
    nSpeed = std::clamp(nSpeed, 1, MaxSpeed);
    if (std::exchange(vm_nSpeed, nSpeed) == nSpeed)
        return;
    const bool bPanTilt = vm_nPan != 0 || vm_nTilt != 0;
    if (bPanTilt)
        m_S_Send({emDef_Kind::Move, nsCMS::PtzCommand_MovePanTilt, 0, vm_nPan * vm_nSpeed, vm_nTilt * vm_nSpeed,
                  PanTiltAxis});
    if (vm_nZoom != 0)
        m_S_Send({emDef_Kind::Move, nsCMS::PtzCommand_MoveZoom, 0, vm_nZoom * vm_nSpeed, 0, ZoomAxis});
}

void CPtzDriver::m_S_Hold(int nSource, const stDef_PtzAction& stAction)
{
    vm_mapHeld[nSource] = &stAction;
    m_S_Update();
}

void CPtzDriver::m_S_Let(int nSource)
{
    if (vm_mapHeld.erase(nSource) > 0)
        m_S_Update();
}

void CPtzDriver::m_S_StopAll()
{
    if (!std::exchange(vm_mapHeld, {}).empty())
        m_S_Update();
}

void CPtzDriver::m_S_Update()
{
    int nPan = 0, nTilt = 0, nZoom = 0;
    for (const auto& [nSource, pAction] : vm_mapHeld) {
        nPan += pAction->nPan;
        nTilt += pAction->nTilt;
        nZoom += pAction->nZoom;
    }
    nPan = std::clamp(nPan, -1, 1);
    nTilt = std::clamp(nTilt, -1, 1);
    nZoom = std::clamp(nZoom, -1, 1);
    const bool bPanTilt = nPan != std::exchange(vm_nPan, nPan);
    const bool bTurned = nTilt != std::exchange(vm_nTilt, nTilt) || bPanTilt;
    const bool bZoomed = nZoom != std::exchange(vm_nZoom, nZoom);
    if (bTurned && nPan == 0 && nTilt == 0)
        m_S_Send({emDef_Kind::Stop, nsCMS::PtzCommand_StopPanTilt, 0, 0, 0, PanTiltAxis});
    else if (bTurned)
        m_S_Send(
            {emDef_Kind::Move, nsCMS::PtzCommand_MovePanTilt, 0, nPan * vm_nSpeed, nTilt * vm_nSpeed, PanTiltAxis});
    if (bZoomed)
        m_S_Send({nZoom == 0 ? emDef_Kind::Stop : emDef_Kind::Move, nsCMS::PtzCommand_MoveZoom, 0, nZoom * vm_nSpeed, 0,
                  ZoomAxis});
    if (bTurned || bZoomed)
        Q_EMIT S_Moved();
}

void CPtzDriver::m_S_Once(int nCmd)
{
    m_S_Once(nCmd, vm_nSpeed);
}

void CPtzDriver::m_S_Once(int nCmd, int nParam)
{
    m_S_Send({emDef_Kind::Once, nCmd, 0, nParam, 0, 0});
}

void CPtzDriver::m_S_Send(stDef_PtzOrder stOrder)
{
    if (vm_stKey.nNvrID < 0)
        return;
    if (!vm_pSender && !m_F_b_MakeSender())
        return Q_EMIT S_Result(CHTTP::Result_BadArgument);
    stOrder.nCamera = vm_stKey.nChannel;
    vm_pSender->m_S_Add(stOrder);
}

bool CPtzDriver::m_F_b_MakeSender()
{
    CNvrHolder pNvr = CNvrQuery::s_F_p_MakeObject(vm_pEnv, vm_pStore->m_F_o_InitRecord(vm_stKey.nNvrID));
    if (!pNvr)
        return false;
    const auto Tell = [this](auto fnTell) { QMetaObject::invokeMethod(this, fnTell, Qt::QueuedConnection); };
    const auto OnResult = [this, Tell, n = ++vm_nSender](int nResult) {
        Tell([this, n, nResult] {
            if (vm_pSender && n == vm_nSender)
                Q_EMIT S_Result(nResult);
        });
    };
    const auto OnEnd = [this, Tell, n = vm_nSender] { Tell([this, n] { vm_mapEnding.erase(n); }); };
    vm_pSender = std::make_unique<CPtzSender>(std::move(pNvr), OnResult, OnEnd);
    return true;
}
