#include "host/livefeed/CRtspSession.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

#include "host/Platform.h"
#include "host/livefeed/CHostLookup.h"
#include "host/livefeed/CStreamUrl.h"

extern "C" {
#include <libavformat/avformat.h>
}

namespace {

constexpr const char* Transports[] = {"udp", "tcp", "http"}; // by transport code
constexpr int Transport_HttpTunnel = 2;
constexpr const char* Protocols = "rtp,udp,tcp,http"; // a redirection leads to nothing else, such as a file
constexpr int MaxPort = 65535;
constexpr int SocketBufferBytes = 1 << 20; // of UDP: a key frame comes in one burst
constexpr std::int64_t UsPerMs = 1000;
constexpr std::int64_t GoodbyeUs = 50 * UsPerMs;

std::int64_t NowUs()
{
    return static_cast<std::int64_t>(Platform::s_F_n_SteadyUs());
}

/// Options of one opening; those that the library leaves over are freed, too.
class COptions
{
public:
    ~COptions() { av_dict_free(&vm_pDict); }
    void m_S_Set(const char* pKey, const char* pValue) { av_dict_set(&vm_pDict, pKey, pValue, 0); }
    void m_S_Set(const char* pKey, std::int64_t nValue) { av_dict_set_int(&vm_pDict, pKey, nValue, 0); }
    AVDictionary** m_F_pp_Get() { return &vm_pDict; }

private:
    AVDictionary* vm_pDict = nullptr;
};

struct stDef_PacketFree
{
    void operator()(AVPacket* p) const { av_packet_free(&p); }
};

bool IsRefusal(int nError)
{
    return nError == AVERROR_HTTP_UNAUTHORIZED || nError == AVERROR_HTTP_FORBIDDEN || nError == AVERROR_HTTP_NOT_FOUND;
}

} // namespace

CRtspSession::CRtspSession(const stDef_SessionTarget& stTarget, std::function<bool()> fnStop,
                           std::function<void()> fnStreaming)
    : vm_stTarget(stTarget), vm_fnStop(std::move(fnStop)), vm_fnStreaming(std::move(fnStreaming))
{}

CRtspSession::~CRtspSession()
{
    // A recorder that sends by UDP goes on until it is told. The thread may have been told to stop, which would keep
    // the last request from leaving: grant it a little time of its own.
    vm_nDeadlineUs = NowUs() + GoodbyeUs;
    vm_bClosing = true;
    avformat_close_input(&vm_pFormat);
}

bool CRtspSession::m_F_b_GiveUp() const
{
    return NowUs() >= vm_nDeadlineUs || (!vm_bClosing && vm_fnStop());
}

emDef_SessionEnd CRtspSession::m_F_n_Run()
{
    vm_nDeadlineUs = NowUs() + vm_stTarget.nConnectTimeoutMs * UsPerMs;
    m_S_TellLack(emDef_RingLack::Nothing); // what the connection before lacked is no news
    CStreamUrl objUrl;
    if (!m_F_b_Parse(objUrl))
        return emDef_SessionEnd::Over;
    int nError = m_F_n_OpenAny(objUrl);
    if (nError >= 0 && !m_F_b_Select())
        return emDef_SessionEnd::Refused;
    if (nError >= 0)
        nError = av_read_play(vm_pFormat);
    if (nError >= 0)
        m_S_Receive();
    return IsRefusal(nError) ? emDef_SessionEnd::Refused : emDef_SessionEnd::Over;
}

bool CRtspSession::m_F_b_Parse(CStreamUrl& objUrl) const
{
    if (!objUrl.m_F_b_Parse(vm_stTarget.sUrl))
        return false;
    if (vm_stTarget.nTransport != Transport_HttpTunnel)
        return true;
    objUrl.m_S_SetPort(vm_stTarget.nHttpPort);
    return vm_stTarget.nHttpPort > 0 && vm_stTarget.nHttpPort <= MaxPort;
}

int CRtspSession::m_F_n_OpenAny(const CStreamUrl& objUrl)
{
    const auto arAddresses = CHostLookup::s_F_ar_Addresses(objUrl.m_F_s_Host(), [this] { return m_F_b_GiveUp(); });
    const std::int64_t nEndUs = vm_nDeadlineUs;
    auto nLeft = static_cast<std::int64_t>(arAddresses.size());
    int nError = AVERROR(EHOSTUNREACH);
    for (const std::string& sAddress : arAddresses) {
        // An address that doesn't answer leaves the others their share of the time.
        const std::int64_t nNowUs = NowUs();
        vm_nDeadlineUs = nNowUs + (nEndUs - nNowUs) / nLeft--;
        nError = m_F_n_Open(objUrl.m_F_s_For(sAddress));
        vm_nDeadlineUs = nEndUs;
        if (nError >= 0 || IsRefusal(nError) || m_F_b_GiveUp())
            break;
    }
    return nError;
}

int CRtspSession::m_F_n_Open(const std::string& sUrl)
{
    vm_pFormat = avformat_alloc_context();
    const AVInputFormat* pRtsp = av_find_input_format("rtsp");
    if (!vm_pFormat || !pRtsp)
        return AVERROR(ENOMEM);
    vm_pFormat->flags |= AVFMT_FLAG_NOPARSE | AVFMT_FLAG_NOFILLIN; // the sinks put pictures together
    vm_pFormat->interrupt_callback.opaque = this;
    vm_pFormat->interrupt_callback.callback = [](void* pSelf) {
        return static_cast<const CRtspSession*>(pSelf)->m_F_b_GiveUp() ? 1 : 0;
    };
    const bool bKnown = vm_stTarget.nTransport >= 0 && vm_stTarget.nTransport < static_cast<int>(std::size(Transports));
    COptions objOptions;
    objOptions.m_S_Set("rtsp_transport", Transports[bKnown ? vm_stTarget.nTransport : 1]);
    objOptions.m_S_Set("allowed_media_types", !vm_stTarget.pAudio   ? "video"
                                              : !vm_stTarget.pVideo ? "audio"
                                                                    : "video+audio");
    objOptions.m_S_Set("protocol_whitelist", Protocols);
    objOptions.m_S_Set("buffer_size", SocketBufferBytes);
    // The library's own time-out restarts with each byte and may pass twice: ours strikes first.
    const std::int64_t nLibraryMs = std::int64_t{vm_stTarget.nConnectTimeoutMs} + vm_stTarget.nDataTimeoutMs;
    objOptions.m_S_Set("timeout", nLibraryMs * UsPerMs); // microseconds
    objOptions.m_S_Set("initial_pause", 1);              // what there is to play is looked at first
    return avformat_open_input(&vm_pFormat, sUrl.c_str(), pRtsp, objOptions.m_F_pp_Get());
}

void CRtspSession::m_S_TellLack(emDef_RingLack nLack)
{
    if (vm_stTarget.pVideo)
        CPacketSink::s_S_TellLack(*vm_stTarget.pVideo, nLack);
}

bool CRtspSession::m_F_b_Select()
{
    emDef_RingLack nLack = emDef_RingLack::Video;
    for (unsigned i = 0; i < vm_pFormat->nb_streams; ++i) {
        AVStream& stStream = *vm_pFormat->streams[i];
        const bool bVideo = stStream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO;
        CPacketSink& objSink = bVideo ? vm_objVideo : vm_objAudio;
        CShmRing* pRing = bVideo ? vm_stTarget.pVideo : vm_stTarget.pAudio;
        const bool bCarried = CPacketSink::s_F_b_CanCarry(stStream);
        if (bVideo && !bCarried)
            nLack = emDef_RingLack::Codec;
        if (!pRing || objSink.m_F_b_IsOpen() || !bCarried) {
            stStream.discard = AVDISCARD_ALL;
            continue;
        }
        objSink.m_S_Open(pRing, stStream);
        (bVideo ? vm_nVideoStream : vm_nAudioStream) = static_cast<int>(i);
    }
    m_S_TellLack(vm_objVideo.m_F_b_IsOpen() ? emDef_RingLack::Video : nLack);
    return vm_objVideo.m_F_b_IsOpen() || vm_objAudio.m_F_b_IsOpen();
}

void CRtspSession::m_S_Receive()
{
    const std::unique_ptr<AVPacket, stDef_PacketFree> pPacket(av_packet_alloc());
    const std::int64_t nLongestGapUs = vm_stTarget.nDataTimeoutMs * UsPerMs;
    const CPacketSink& objLead = vm_objVideo.m_F_b_IsOpen() ? vm_objVideo : vm_objAudio;
    bool bStreaming = false;
    vm_nDeadlineUs = NowUs() + nLongestGapUs;
    while (pPacket && !m_F_b_GiveUp()) {
        const int nError = av_read_frame(vm_pFormat, pPacket.get());
        if (nError == AVERROR(EAGAIN))
            continue;
        if (nError < 0)
            return;
        const std::int64_t nNowUs = NowUs();
        vm_nDeadlineUs = nNowUs + nLongestGapUs;
        vm_stTarget.pLastDataTime->store(static_cast<std::uint64_t>(nNowUs / UsPerMs), std::memory_order_relaxed);
        if (pPacket->stream_index == vm_nVideoStream)
            vm_objVideo.m_S_Write(*pPacket, nNowUs);
        else if (pPacket->stream_index == vm_nAudioStream)
            vm_objAudio.m_S_Write(*pPacket, nNowUs);
        av_packet_unref(pPacket.get());
        if (!objLead.m_F_b_HasRing())
            return;
        if (!bStreaming && objLead.m_F_b_Wrote()) {
            bStreaming = true;
            vm_fnStreaming();
        }
    }
}
