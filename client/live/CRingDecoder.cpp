#include "live/CRingDecoder.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

namespace {

constexpr int WaitMs = 50; // longest wait that doesn't look at the stop flag
constexpr std::chrono::milliseconds OpenPause{50};
constexpr std::chrono::milliseconds LongestSkip{100};

std::int64_t NowUs()
{
    using namespace std::chrono;
    return duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count();
}

} // namespace

struct CRingDecoder::st_Impl
{
    explicit st_Impl(std::function<void()> fnPicture) : fnNotify(std::move(fnPicture)) {}

    const std::function<void()> fnNotify;
    int nNvrID = -1;
    int nChannel = 0;
    int nStream = 0;
    std::string sInstance;
    std::atomic<std::uint64_t> nCell{0};   // width in the upper half, height in the lower: one word, never half changed
    std::atomic<std::int64_t> nSinceUs{0}; // packets that arrived earlier are not for us
    std::thread objThread;

    std::atomic<bool> bSnapshot{false}; // one is wanted
    std::atomic<emDef_RingLack> nLack{emDef_RingLack::Nothing};

    std::mutex objLock; // guards bStop, stNewest and stSnapshot
    std::condition_variable objWake;
    bool bStop = false;
    stDef_Picture stNewest;
    stDef_Picture stSnapshot;

    // The worker's own.
    CShmRingReader objReader;
    CPictureDecoder objDecoder;
    st_RingFrame stFrame;
    stDef_Picture stWork;
    std::uint64_t nPictures = 0;
    std::uint32_t nParamSerial = 0;
    bool bParam = false;
    bool bTried = false;   // a packet was given to the decoder
    bool bDecoded = false; // and one of them became a picture
    bool bFresh = false;   // a decoded picture waits to be scaled
    std::int64_t nFreshUs = 0;
    std::chrono::steady_clock::time_point tmPublished;

    void Run();
    bool Stopped();
    bool OpenRing();
    void ReadAll();
    void Decode();
    bool FollowParam();
    void FollowLack();
    void Publish();
    void PublishSnapshot();
};

CRingDecoder::CRingDecoder(std::function<void()> fnPicture) : vm_pImpl(std::make_unique<st_Impl>(std::move(fnPicture)))
{}

CRingDecoder::~CRingDecoder()
{
    m_S_Stop();
}

void CRingDecoder::m_S_Start(int nNvrID, int nChannel, int nStream, const std::string& sInstance)
{
    m_S_Stop();
    st_Impl& d = *vm_pImpl;
    d.nNvrID = nNvrID;
    d.nChannel = nChannel;
    d.nStream = nStream;
    d.sInstance = sInstance;
    d.bStop = false;
    d.stNewest.nSerial = 0;
    d.stSnapshot.nSerial = 0;
    d.bSnapshot = false;
    d.nPictures = 0;
    d.bParam = false;
    d.bFresh = false;
    d.bTried = false;
    d.bDecoded = false;
    d.nLack = emDef_RingLack::Nothing;
    d.objThread = std::thread([&d] { d.Run(); });
}

void CRingDecoder::m_S_RequestStop()
{
    {
        const std::lock_guard objGuard(vm_pImpl->objLock);
        vm_pImpl->bStop = true;
    }
    vm_pImpl->objWake.notify_all();
}

void CRingDecoder::m_S_Stop()
{
    m_S_RequestStop();
    if (vm_pImpl->objThread.joinable())
        vm_pImpl->objThread.join();
}

void CRingDecoder::m_S_SetCellSize(int nWidth, int nHeight)
{
    const bool bEmpty = nWidth <= 0 || nHeight <= 0;
    vm_pImpl->nCell = bEmpty ? 0 : std::uint64_t(nWidth) << 32 | std::uint32_t(nHeight);
}

void CRingDecoder::m_S_SkipOld()
{
    const std::lock_guard objGuard(vm_pImpl->objLock);
    vm_pImpl->nSinceUs = NowUs();
    vm_pImpl->stNewest.nSerial = 0;
}

bool CRingDecoder::m_F_b_TakePicture(stDef_Picture& stPicture)
{
    const std::lock_guard objGuard(vm_pImpl->objLock);
    if (vm_pImpl->stNewest.nSerial == 0)
        return false;
    std::swap(stPicture, vm_pImpl->stNewest);
    vm_pImpl->stNewest.nSerial = 0;
    return true;
}

emDef_RingLack CRingDecoder::m_F_n_Lack() const
{
    return vm_pImpl->nLack;
}

void CRingDecoder::m_S_RequestSnapshot()
{
    vm_pImpl->bSnapshot = true;
}

bool CRingDecoder::m_F_b_TakeSnapshot(stDef_Picture& stPicture)
{
    const std::lock_guard objGuard(vm_pImpl->objLock);
    std::swap(stPicture, vm_pImpl->stSnapshot);
    vm_pImpl->stSnapshot.nSerial = 0;
    return stPicture.nSerial != 0;
}

void CRingDecoder::st_Impl::Run()
{
    while (!Stopped()) {
        if (!OpenRing())
            continue;
        objReader.m_F_b_Wait(WaitMs);
        ReadAll();
        FollowLack();
        if (bSnapshot.exchange(false))
            PublishSnapshot();
    }
    objReader.m_S_Close();
    objDecoder.m_S_Close();
}

bool CRingDecoder::st_Impl::Stopped()
{
    const std::lock_guard objGuard(objLock);
    return bStop;
}

bool CRingDecoder::st_Impl::OpenRing()
{
    if (objReader.m_F_b_IsOpen() || objReader.m_F_b_Open(emDef_RingKind::Video, nNvrID, nChannel, nStream, sInstance))
        return true;
    std::unique_lock objGuard(objLock);
    objWake.wait_for(objGuard, OpenPause, [this] { return bStop; });
    return false;
}

void CRingDecoder::st_Impl::ReadAll()
{
    while (!Stopped()) {
        switch (objReader.m_F_n_Read(stFrame)) {
        case emDef_RingRead::Frame:
            Decode();
            break;
        case emDef_RingRead::Lost:
            objDecoder.m_S_Flush();
            break;
        case emDef_RingRead::Empty:
            Publish();
            return;
        case emDef_RingRead::Closed:
        case emDef_RingRead::Bad:
            objReader.m_S_Close();
            objDecoder.m_S_Close();
            bParam = false;
            return;
        }
    }
}

void CRingDecoder::st_Impl::Decode()
{
    if (stFrame.stPacket.nArrivalUs < nSinceUs) {
        objDecoder.m_S_Flush();
        bFresh = false;
        return;
    }
    bTried = true;
    if (!FollowParam() || !objDecoder.m_F_b_Decode(stFrame))
        return;
    bDecoded = true;
    nFreshUs = stFrame.stPacket.nArrivalUs;
    bFresh = true;
    // Behind the writer, after a start or a stall, most of the waiting packets are not worth the pixels.
    if (std::chrono::steady_clock::now() - tmPublished >= LongestSkip)
        Publish();
}

bool CRingDecoder::st_Impl::FollowParam()
{
    if (bParam && stFrame.stPacket.nParamSerial == nParamSerial)
        return true;
    st_RingParam stParam;
    std::uint32_t nSerial = 0;
    if (!objReader.m_F_b_GetParam(stParam, nSerial) || nSerial != stFrame.stPacket.nParamSerial)
        return false; // a packet of parameters that have been replaced since
    nParamSerial = nSerial;
    bParam = true;
    return objDecoder.m_F_b_Open(stParam);
}

void CRingDecoder::st_Impl::FollowLack()
{
    const emDef_RingLack nTold = objReader.m_F_n_Lack();
    const bool bInVain = nTold == emDef_RingLack::Nothing && bTried && !bDecoded;
    nLack = bInVain ? emDef_RingLack::Decoding : nTold;
}

void CRingDecoder::st_Impl::Publish()
{
    if (!std::exchange(bFresh, false))
        return;
    tmPublished = std::chrono::steady_clock::now();
    const std::uint64_t nSize = nCell;
    if (!objDecoder.m_F_b_Render(static_cast<int>(nSize >> 32), static_cast<int>(nSize & 0xffffffffU), stWork))
        return;
    stWork.nSerial = ++nPictures;
    {
        const std::lock_guard objGuard(objLock);
        if (nFreshUs < nSinceUs)
            return;
        std::swap(stWork, stNewest);
    }
    fnNotify();
}

void CRingDecoder::st_Impl::PublishSnapshot()
{
    stDef_Picture stWhole;
    if (!objDecoder.m_F_b_RenderWhole(stWhole))
        return;
    stWhole.nSerial = nPictures + 1;
    {
        const std::lock_guard objGuard(objLock);
        std::swap(stWhole, stSnapshot);
    }
    fnNotify();
}
