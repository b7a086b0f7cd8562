#include "host/hostenv/CShmRingReader.h"

#include <algorithm>
#include <new>

#include "host/Platform.h"
#include "host/hostenv/CRingLayout.h"
#include "host/hostenv/CShmSegment.h"

using namespace RingLayout;

struct CShmRingReader::st_Impl
{
    CShmSegment objSegment;
    emDef_RingKind nKind = emDef_RingKind::Video;
    std::uint64_t nCapacity = 0;          ///< of the mapping, never what the header says
    std::uint64_t nPosition = NoPosition; ///< of the next packet; NoPosition: waits for one to begin with
    std::uint64_t nNotBefore = 0;         ///< the packet to begin with may not stand before this

    const st_Header& Header() const { return *reinterpret_cast<const st_Header*>(objSegment.m_F_p_Data()); }
    const unsigned char* Log() const { return objSegment.m_F_p_Data() + HeaderSize; }

    bool Sound() const;
    bool Overtaken() const;
    bool SeekLatest();
    emDef_RingRead Nothing(bool bClosed) const;
    emDef_RingRead Advance(std::uint64_t& nPublished);
    emDef_RingRead ReadAt(std::uint64_t nPublished, st_RingFrame& stFrame);
    emDef_RingRead StepOver(std::uint64_t nPublished);
};

bool CShmRingReader::st_Impl::Sound() const
{
    const st_Header& stHeader = Header();
    return stHeader.nMagic.load(std::memory_order_acquire) == Magic && stHeader.nVersion == Version &&
           stHeader.nCapacity == nCapacity;
}

bool CShmRingReader::st_Impl::Overtaken() const
{
    return Header().nReserved.load(std::memory_order_acquire) - nPosition > nCapacity;
}

/// Stands at the latest packet that decoding can begin with; false if there is none (yet).
bool CShmRingReader::st_Impl::SeekLatest()
{
    const st_Header& stHeader = Header();
    const auto& nLatest = nKind == emDef_RingKind::Video ? stHeader.nLatestKey : stHeader.nLatestPacket;
    const std::uint64_t nStart = nLatest.load(std::memory_order_acquire);
    const std::uint64_t nPublished = stHeader.nPublished.load(std::memory_order_acquire);
    const std::uint64_t nReserved = stHeader.nReserved.load(std::memory_order_acquire);
    if (nStart >= nPublished || nStart < nNotBefore || nStart % Word != 0 || nReserved - nStart > nCapacity)
        return false;
    nPosition = nStart;
    return true;
}

/// A ring whose writer was killed is never marked closed, but the next start removes its name.
emDef_RingRead CShmRingReader::st_Impl::Nothing(bool bClosed) const
{
    return bClosed || objSegment.m_F_b_IsRemoved() ? emDef_RingRead::Closed : emDef_RingRead::Empty;
}

/// Frame if there is a packet at the position.
emDef_RingRead CShmRingReader::st_Impl::Advance(std::uint64_t& nPublished)
{
    if (!Sound())
        return emDef_RingRead::Bad;
    const bool bClosed = Header().nClosed.load(std::memory_order_acquire) != 0;
    if (nPosition == NoPosition && !SeekLatest())
        return Nothing(bClosed);
    nPublished = Header().nPublished.load(std::memory_order_acquire);
    if (nPublished == nPosition)
        return Nothing(bClosed);
    if (nPublished < nPosition || nPublished % Word != 0)
        return emDef_RingRead::Bad;
    return emDef_RingRead::Frame;
}

/// Leaves the packet at the position behind: it was overwritten, or a writer died inside it.
emDef_RingRead CShmRingReader::st_Impl::StepOver(std::uint64_t nPublished)
{
    nNotBefore = nPosition + Word;
    if (!SeekLatest()) {
        nNotBefore = nPublished;
        nPosition = NoPosition;
    }
    return emDef_RingRead::Lost;
}

emDef_RingRead CShmRingReader::st_Impl::ReadAt(std::uint64_t nPublished, st_RingFrame& stFrame)
{
    st_RecordHead stHead;
    CopyOut(Log(), nCapacity, nPosition, &stHead, HeadSize);
    const std::uint64_t nTotal = RecordSize(stHead.nSize);
    if (Overtaken() || stHead.nPosition != nPosition || stHead.nSize == 0 || nTotal > nCapacity / 2 ||
        nTotal > nPublished - nPosition)
        return StepOver(nPublished);

    stFrame.arData.resize(Padded(stHead.nSize));
    std::uint64_t nSerialBehind = 0;
    CopyOut(Log(), nCapacity, nPosition + HeadSize, stFrame.arData.data(), stFrame.arData.size());
    CopyOut(Log(), nCapacity, nPosition + nTotal - Word, &nSerialBehind, Word);
    if (Overtaken() || nSerialBehind != stHead.nSerial)
        return StepOver(nPublished);

    stFrame.arData.resize(stHead.nSize);
    stFrame.nSerial = stHead.nSerial;
    stFrame.stPacket = {stHead.nPtsUs, stHead.nDtsUs, stHead.nArrivalUs, (stHead.nFlags & FlagKey) != 0,
                        static_cast<std::uint32_t>(stHead.nParamSerial)};
    nPosition += nTotal;
    return emDef_RingRead::Frame;
}

CShmRingReader::CShmRingReader() = default;
CShmRingReader::~CShmRingReader() = default;

bool CShmRingReader::m_F_b_Open(emDef_RingKind nKind, std::int32_t nNvrID, std::int32_t nChannel, std::int32_t nStream,
                                const std::string& sInstance)
{
    vm_pImpl = std::make_unique<st_Impl>();
    vm_pImpl->nKind = nKind;
    CShmSegment& objSegment = vm_pImpl->objSegment;
    if (objSegment.m_F_b_OpenReadOnly(s_F_s_RingName(nKind, nNvrID, nChannel, nStream, sInstance)) &&
        objSegment.m_F_n_Size() == HeaderSize + Capacity(nKind, nStream)) {
        vm_pImpl->nCapacity = objSegment.m_F_n_Size() - HeaderSize;
        if (vm_pImpl->Sound() && vm_pImpl->Header().nClosed.load(std::memory_order_acquire) == 0) {
            vm_pImpl->SeekLatest();
            return true;
        }
    }
    vm_pImpl.reset();
    return false;
}

void CShmRingReader::m_S_Close()
{
    vm_pImpl.reset();
}

bool CShmRingReader::m_F_b_IsOpen() const
{
    return vm_pImpl != nullptr;
}

emDef_RingRead CShmRingReader::m_F_n_Read(st_RingFrame& stFrame)
{
    if (!vm_pImpl)
        return emDef_RingRead::Closed;
    std::uint64_t nPublished = 0;
    emDef_RingRead nResult = vm_pImpl->Advance(nPublished);
    try {
        if (nResult == emDef_RingRead::Frame)
            nResult = vm_pImpl->ReadAt(nPublished, stFrame);
        if (nResult == emDef_RingRead::Lost)
            stFrame.arData.clear(); // nobody shall take half of it for a packet
    } catch (const std::bad_alloc&) {
        return emDef_RingRead::Empty; // the machine is out of memory: the same packet can be read later
    }
    if (nResult == emDef_RingRead::Bad)
        m_S_Close();
    return nResult;
}

bool CShmRingReader::m_F_b_Wait(std::int32_t nTimeoutMs)
{
    const std::uint64_t nEndMs = Platform::s_F_n_SteadyMs() + static_cast<std::uint64_t>(std::max(nTimeoutMs, 0));
    while (vm_pImpl) {
        // Taken before looking: a packet that comes in between changes it, and the wait returns at once.
        const std::uint32_t nWake = vm_pImpl->Header().nWake.load(std::memory_order_acquire);
        std::uint64_t nPublished = 0;
        const emDef_RingRead nResult = vm_pImpl->Advance(nPublished);
        const std::uint64_t nNowMs = Platform::s_F_n_SteadyMs();
        if (nResult != emDef_RingRead::Empty || nNowMs >= nEndMs)
            return nResult == emDef_RingRead::Frame;
        Platform::s_F_b_WaitWord(&vm_pImpl->Header().nWake, nWake, static_cast<int>(nEndMs - nNowMs));
    }
    return false;
}

bool CShmRingReader::m_F_b_SeekToLatestKey()
{
    if (!vm_pImpl || !vm_pImpl->Sound())
        return false;
    vm_pImpl->nNotBefore = 0;
    return vm_pImpl->SeekLatest();
}

bool CShmRingReader::m_F_b_GetParam(st_RingParam& stParam, std::uint32_t& nSerial) const
{
    constexpr int MaxTries = 1000; // a writer that died while it wrote them leaves them odd for good
    if (!vm_pImpl || !vm_pImpl->Sound())
        return false;
    const st_ParamBlock& stBlock = vm_pImpl->Header().stParam;
    for (int i = 0; i < MaxTries; ++i) {
        const std::uint32_t nBefore = stBlock.nSequence.load(std::memory_order_acquire);
        if (nBefore & 1)
            continue;
        st_RingParam stRead;
        const std::uint32_t nReadSerial = stBlock.nSerial.load(std::memory_order_acquire);
        CopyOut(reinterpret_cast<const unsigned char*>(&stBlock.stParam), sizeof stRead, 0, &stRead, sizeof stRead);
        if (stBlock.nSequence.load(std::memory_order_acquire) != nBefore)
            continue;
        if (nReadSerial == 0 || stRead.nExtraSize > st_RingParam::MaxExtra)
            return false;
        stParam = stRead;
        nSerial = nReadSerial;
        return true;
    }
    return false;
}

std::int32_t CShmRingReader::m_F_n_ConnectStat() const
{
    return vm_pImpl && vm_pImpl->nKind == emDef_RingKind::Video
               ? vm_pImpl->Header().nConnectStat.load(std::memory_order_relaxed)
               : 0;
}

emDef_RingLack CShmRingReader::m_F_n_Lack() const
{
    const std::uint32_t nLack = vm_pImpl ? vm_pImpl->Header().nLack.load(std::memory_order_relaxed) : 0;
    return nLack <= static_cast<std::uint32_t>(emDef_RingLack::Room) ? static_cast<emDef_RingLack>(nLack)
                                                                     : emDef_RingLack::Nothing;
}
