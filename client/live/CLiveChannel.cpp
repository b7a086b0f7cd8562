#include "live/CLiveChannel.h"

#include <QRandomGenerator>
#include <algorithm>

namespace {

constexpr std::uint64_t SilenceMs = 10000; // without data the stream counts as dead
constexpr std::uint64_t BlindMs = 10000;   // a stream that brings no picture for so long says why
constexpr std::uint64_t StallMs = 2000;    // without a picture it doesn't pass for live
constexpr std::uint64_t HangMs = 500;      // a recorder that is there has answered by then
constexpr std::uint64_t RateSpanMs = 2000;
constexpr std::size_t HistoryMax = 200;

std::uint64_t NowMs()
{
    return CRtspClient::s_F_n_NowMs();
}

} // namespace

CLiveChannel::CLiveChannel(CEnvObj* pEnv, QWidget* pHost, const stDef_LiveSource& stSource)
    : vm_pEnv(pEnv),
      vm_pHost(pHost),
      vm_stSource(stSource),
      vm_objPause([] { return QRandomGenerator::global()->generateDouble(); })
{}

CLiveChannel::~CLiveChannel() = default;

bool CLiveChannel::m_F_b_Open(const stDef_NvrInit& stInit)
{
    vm_pNvr.reset(); // its ring is free for the next one
    vm_pNvr.reset(CWndNvrBase::s_F_p_CreateNvrObjectByNvrID(vm_stSource.nNvrID, vm_pHost, vm_pEnv));
    if (vm_pNvr && vm_pNvr->m_F_n_Init(stInit) == 1)
        return true;
    vm_pNvr.reset();
    vm_nConnectMs = NowMs();
    m_S_SetState(emDef_LiveState::Unusable);
    return false;
}

void CLiveChannel::m_S_Connect()
{
    if (!vm_pNvr || vm_bPolled)
        return;
    vm_nConnectMs = NowMs();
    vm_nLastPictureMs = 0;
    vm_nPictures = 0;
    vm_nFirstPictureMs = -1;
    vm_arSamples.clear();
    vm_arHistory.clear();
    vm_objPause.m_S_Reset();
    m_S_Begin();
}

void CLiveChannel::m_S_Begin()
{
    vm_nRetryMs = 0;
    vm_nTryMs = NowMs();
    vm_nPlaysMs = 0;
    vm_bPolled = true;
    vm_bConnected = false;
    m_S_SetState(emDef_LiveState::Connecting);
    vm_pNvr->m_S_Connect(vm_stSource.nNvrID, vm_stSource.nChannel, vm_stSource.nStream);
}

void CLiveChannel::m_S_PlanRetry(emDef_LiveState nEnd)
{
    vm_bPolled = false;
    const bool bRefused = nEnd == emDef_LiveState::Refused;
    vm_nRetryMs =
        NowMs() + static_cast<std::uint64_t>(bRefused ? vm_objPause.m_F_n_LongMs() : vm_objPause.m_F_n_NextMs());
}

void CLiveChannel::m_S_RetryNow()
{
    if (vm_nRetryMs != 0 && vm_nState != emDef_LiveState::Refused)
        vm_nRetryMs = NowMs();
    // A try from before may hang in a connection that the recorder forgot when it went.
    if (vm_bPolled && vm_nState == emDef_LiveState::Connecting && NowMs() - vm_nTryMs >= HangMs) {
        vm_pNvr->m_S_Disconnect(true);
        m_S_Begin();
    }
}

std::int64_t CLiveChannel::m_F_n_RetryInMs() const
{
    return vm_nRetryMs == 0 ? -1 : std::max(static_cast<std::int64_t>(vm_nRetryMs - NowMs()), std::int64_t{0});
}

std::int64_t CLiveChannel::m_F_n_PictureAgeMs() const
{
    return vm_nLastPictureMs == 0 ? -1 : static_cast<std::int64_t>(NowMs() - vm_nLastPictureMs);
}

void CLiveChannel::m_S_RequestStop()
{
    vm_nRetryMs = 0;
    if (!vm_pNvr || !vm_bPolled)
        return;
    vm_pNvr->m_S_Disconnect(false);
    m_S_SetState(emDef_LiveState::Disconnecting);
}

void CLiveChannel::m_S_Disconnect()
{
    if (!vm_pNvr || vm_nState == emDef_LiveState::Idle)
        return;
    vm_pNvr->m_S_Disconnect(true);
    vm_nRetryMs = 0;
    vm_bPolled = false;
    m_S_SetState(emDef_LiveState::Disconnected);
}

void CLiveChannel::m_S_Poll()
{
    const std::uint64_t nNow = NowMs();
    if (vm_nRetryMs != 0 && nNow >= vm_nRetryMs)
        m_S_Begin();
    if (!vm_pNvr || !vm_bPolled)
        return;
    vm_arSamples.emplace_back(nNow, vm_nPictures);
    while (vm_arSamples.size() > 2 && nNow - vm_arSamples[1].first >= RateSpanMs)
        vm_arSamples.pop_front();
    m_S_SetState(m_F_n_ReadState());
}

emDef_LiveState CLiveChannel::m_F_n_ReadState()
{
    const std::uint64_t nNow = NowMs();
    switch (vm_pNvr->m_F_n_GetConnectStat(nNow - SilenceMs)) {
    case nsCMS::ConnectStat_Connecting:
        return m_F_n_Pictureless(emDef_LiveState::Connecting, vm_nLack != emDef_RingLack::Nothing);
    case nsCMS::ConnectStat_Connected:
        vm_bConnected = true;
        if (vm_nLastPictureMs == 0)
            return m_F_n_Pictureless(emDef_LiveState::Waiting, true);
        return nNow - vm_nLastPictureMs < StallMs ? emDef_LiveState::Live : emDef_LiveState::Stalled;
    case nsCMS::ConnectStat_Refused:
        m_S_PlanRetry(emDef_LiveState::Refused);
        return emDef_LiveState::Refused;
    case nsCMS::ConnectStat_NoAnswer:
    case nsCMS::ConnectStat_Disconnected:
        vm_nLastPictureMs = 0;
        m_S_PlanRetry(emDef_LiveState::NoAnswer);
        if (!vm_pNvr->m_F_b_HasRing())
            return emDef_LiveState::NoRing;
        // What is lost stays lost until it is back, however often nothing answers in between.
        return vm_bConnected || vm_nPictures > 0 ? emDef_LiveState::Lost : emDef_LiveState::NoAnswer;
    default:
        return vm_nState;
    }
}

// What brings data without a picture is connected for ever: in the end it has to be told apart from what is only slow.
emDef_LiveState CLiveChannel::m_F_n_Pictureless(emDef_LiveState nState, bool bPlays)
{
    if (!bPlays)
        vm_nPlaysMs = 0;
    else if (vm_nPlaysMs == 0)
        vm_nPlaysMs = NowMs();
    return bPlays && NowMs() - vm_nPlaysMs >= BlindMs ? emDef_LiveState::NoPicture : nState;
}

void CLiveChannel::m_S_CountPicture()
{
    vm_nLastPictureMs = NowMs();
    if (vm_nPictures++ == 0)
        vm_nFirstPictureMs = m_F_n_SinceConnectMs();
    if (vm_nState != emDef_LiveState::Live) {
        vm_objPause.m_S_Reset();
        m_S_Poll();
    }
}

bool CLiveChannel::m_F_b_WantsPictures() const
{
    return vm_bPolled && vm_nState != emDef_LiveState::Disconnecting;
}

double CLiveChannel::m_F_n_Rate() const
{
    if (!vm_bPolled || vm_arSamples.size() < 2)
        return 0;
    const std::uint64_t nSpanMs = vm_arSamples.back().first - vm_arSamples.front().first;
    const std::uint64_t nPictures = vm_arSamples.back().second - vm_arSamples.front().second;
    return nSpanMs == 0 ? 0 : static_cast<double>(nPictures) * 1000.0 / static_cast<double>(nSpanMs);
}

void CLiveChannel::m_S_SetState(emDef_LiveState nState)
{
    if (nState == vm_nState && !vm_arHistory.empty())
        return;
    vm_nState = nState;
    if (vm_arHistory.size() >= HistoryMax)
        vm_arHistory.erase(vm_arHistory.begin());
    vm_arHistory.push_back({nState, m_F_n_SinceConnectMs()});
    Q_EMIT S_StateChanged();
}

std::int64_t CLiveChannel::m_F_n_SinceConnectMs() const
{
    return static_cast<std::int64_t>(NowMs() - vm_nConnectMs);
}
