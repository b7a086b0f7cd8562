#include "host/hostenv/CShmRing.h"

#include <cstring>
#include <map>
#include <mutex>
#include <new>
#include <string>

#include "host/Platform.h"
#include "host/hostenv/CRingLayout.h"
#include "host/hostenv/CShmSegment.h"

using namespace RingLayout;

namespace {

/// What became of a ring after it was opened.
enum class emDef_Trouble
{
    None,
    NoRoom, ///< the first packet found shared memory full
    Lost    ///< removed or cut short: the name can be owned anew
};

constexpr const char* Reasons[] = {"", "there is no room in shared memory", "somebody removed it or cut it short"};

/// A ring that this process owns; all objects of its name share it.
class CRingWriter
{
public:
    bool m_F_b_Open(const std::string& sName, std::uint64_t nCapacity, bool bCreate);
    const std::string& m_F_s_Why() const { return vm_objSegment.m_F_s_Why(); }
    ~CRingWriter();

    emDef_Trouble m_F_n_Trouble() const { return vm_nTrouble.load(std::memory_order_acquire); }
    /// The next packet asks for the memory again.
    void m_S_TryAgain()
    {
        auto nTrouble = emDef_Trouble::NoRoom;
        vm_nTrouble.compare_exchange_strong(nTrouble, emDef_Trouble::None);
    }

    st_Header& m_F_o_Header() { return *reinterpret_cast<st_Header*>(vm_objSegment.m_F_p_Data()); }
    bool m_F_b_SetParam(const st_RingParam& stParam);
    bool m_F_b_Write(const st_RingPacket& stPacket, const void* pData, std::uint32_t nSize);

    std::atomic<const void*> vm_pClaimant{nullptr};

private:
    bool m_F_b_Sound();
    void m_S_Begin();
    bool m_F_b_Commit();
    bool m_F_b_Holds(bool bLook);
    unsigned char* m_F_p_Log() { return vm_objSegment.m_F_p_Data() + HeaderSize; }

    CShmSegment vm_objSegment;
    std::uint64_t vm_nCapacity = 0;
    std::uint64_t vm_nPosition = 0; ///< where the next packet goes
    st_RingParam vm_stParam;
    bool vm_bParam = false;
    bool vm_bCommitted = false;
    std::atomic<emDef_Trouble> vm_nTrouble{emDef_Trouble::None};
};

bool CRingWriter::m_F_b_Open(const std::string& sName, std::uint64_t nCapacity, bool bCreate)
{
    vm_nCapacity = nCapacity;
    const auto nOpened = vm_objSegment.m_F_n_Own(sName, HeaderSize + nCapacity, bCreate);
    // Only the header takes memory until the first packet: a recorder that never answers costs a page a ring.
    if (nOpened == CShmSegment::emDef_Open::Failed)
        return false;
    if (nOpened == CShmSegment::emDef_Open::Made || !m_F_b_Sound())
        m_S_Begin();
    else // a gap in the numbers tells attached readers that what follows doesn't build on what they have
        m_F_o_Header().nSerial.fetch_add(1, std::memory_order_relaxed);
    st_Header& stHeader = m_F_o_Header();
    // A writer that died inside a packet left a piece between the two positions: step over it.
    vm_nPosition = stHeader.nReserved.load(std::memory_order_relaxed);
    stHeader.nPublished.store(vm_nPosition, std::memory_order_release);
    // Readers to come begin with a packet of this writer, not with what may be hours old.
    stHeader.nLatestKey.store(NoPosition, std::memory_order_relaxed);
    stHeader.nLatestPacket.store(NoPosition, std::memory_order_relaxed);
    stHeader.nClosed.store(0, std::memory_order_relaxed);
    stHeader.nConnectStat.store(0, std::memory_order_relaxed);
    stHeader.nLack.store(0, std::memory_order_relaxed);
    stHeader.nGeneration.fetch_add(1, std::memory_order_relaxed);
    stHeader.nMagic.store(Magic, std::memory_order_release);
    return true;
}

CRingWriter::~CRingWriter()
{
    if (!vm_objSegment.m_F_p_Data())
        return;
    st_Header& stHeader = m_F_o_Header();
    stHeader.nClosed.store(1, std::memory_order_release);
    stHeader.nWake.fetch_add(1, std::memory_order_release);
    Platform::s_S_WakeWord(&stHeader.nWake);
}

bool CRingWriter::m_F_b_Sound()
{
    const st_Header& stHeader = m_F_o_Header();
    const std::uint64_t nReserved = stHeader.nReserved.load(std::memory_order_acquire);
    return stHeader.nMagic.load(std::memory_order_acquire) == Magic && stHeader.nVersion == Version &&
           stHeader.nCapacity == vm_nCapacity && nReserved % Word == 0 &&
           stHeader.nPublished.load(std::memory_order_relaxed) <= nReserved && nReserved < UINT64_MAX / 2;
}

void CRingWriter::m_S_Begin()
{
    unsigned char* pData = vm_objSegment.m_F_p_Data();
    reinterpret_cast<st_Header*>(pData)->nMagic.store(0, std::memory_order_release);
    std::memset(pData + sizeof(std::uint32_t), 0, HeaderSize - sizeof(std::uint32_t));
    st_Header& stHeader = m_F_o_Header();
    stHeader.nVersion = Version;
    stHeader.nCapacity = vm_nCapacity;
}

bool CRingWriter::m_F_b_Commit()
{
    // To be refused megabytes takes the system milliseconds, so it is not asked at each packet but at each attach.
    if (!vm_bCommitted && !(vm_bCommitted = vm_objSegment.m_F_b_Commit(HeaderSize + vm_nCapacity)))
        vm_nTrouble.store(emDef_Trouble::NoRoom, std::memory_order_release);
    return vm_bCommitted;
}

/// False once nobody could read what is written. A ring that was cut has lost its header; with `bLook` the system is
/// asked whether the name still leads to it.
bool CRingWriter::m_F_b_Holds(bool bLook)
{
    if (m_F_n_Trouble() != emDef_Trouble::None)
        return false;
    if (m_F_o_Header().nMagic.load(std::memory_order_relaxed) == Magic && (!bLook || vm_objSegment.m_F_b_IsWhole()))
        return true;
    vm_objSegment.m_S_Forsake();
    vm_nTrouble.store(emDef_Trouble::Lost, std::memory_order_release);
    return false;
}

bool CRingWriter::m_F_b_SetParam(const st_RingParam& stParam)
{
    if (vm_bParam && std::memcmp(&vm_stParam, &stParam, sizeof stParam) == 0)
        return true;
    vm_stParam = stParam;
    vm_bParam = true;
    st_ParamBlock& stBlock = m_F_o_Header().stParam;
    const std::uint32_t nSequence = stBlock.nSequence.load(std::memory_order_relaxed) | 1;
    stBlock.nSequence.store(nSequence, std::memory_order_relaxed);
    CopyIn(reinterpret_cast<unsigned char*>(&stBlock.stParam), sizeof stParam, 0, &stParam, sizeof stParam);
    stBlock.nSerial.fetch_add(1, std::memory_order_release);
    stBlock.nSequence.store(nSequence + 1, std::memory_order_release);
    return true;
}

bool CRingWriter::m_F_b_Write(const st_RingPacket& stPacket, const void* pData, std::uint32_t nSize)
{
    if (!m_F_b_Holds(stPacket.bKey))
        return false;
    st_Header& stHeader = m_F_o_Header();
    const std::uint64_t nTotal = RecordSize(nSize);
    if (nSize == 0 || nTotal > vm_nCapacity / 2 || !m_F_b_Commit()) {
        stHeader.nDropped.fetch_add(1, std::memory_order_relaxed);
        return false;
    }
    const std::uint64_t nPosition = vm_nPosition;
    const std::uint64_t nSerial = stHeader.nSerial.load(std::memory_order_relaxed) + 1;
    const st_RecordHead stHead = {nSerial,
                                  nPosition,
                                  nSize,
                                  stPacket.bKey ? FlagKey : 0,
                                  stPacket.nPtsUs,
                                  stPacket.nDtsUs,
                                  stPacket.nArrivalUs,
                                  stHeader.stParam.nSerial.load(std::memory_order_relaxed)};
    vm_nPosition = nPosition + nTotal;
    stHeader.nReserved.store(vm_nPosition, std::memory_order_release);
    CopyIn(m_F_p_Log(), vm_nCapacity, nPosition, &stHead, HeadSize);
    CopyIn(m_F_p_Log(), vm_nCapacity, nPosition + HeadSize, pData, nSize);
    CopyIn(m_F_p_Log(), vm_nCapacity, vm_nPosition - Word, &nSerial, Word);
    stHeader.nSerial.store(nSerial, std::memory_order_relaxed);
    stHeader.nPublished.store(vm_nPosition, std::memory_order_release);
    stHeader.nLatestPacket.store(nPosition, std::memory_order_release);
    if (stPacket.bKey)
        stHeader.nLatestKey.store(nPosition, std::memory_order_release);
    stHeader.nWake.fetch_add(1, std::memory_order_release);
    Platform::s_S_WakeWord(&stHeader.nWake);
    return true;
}

/// The rings of this process by name. The lock is held while one is made or removed, so that the two never meet.
class CRingRegistry
{
public:
    static CRingRegistry& s_F_o_Instance()
    {
        static auto* s_pInstance = new CRingRegistry; // outlives all static objects that may hold rings
        return *s_pInstance;
    }

    std::shared_ptr<CRingWriter> m_F_p_Get(const std::string& sName, std::uint64_t nCapacity, bool bCreate,
                                           std::string& sWhy)
    {
        const std::lock_guard lock(vm_objMutex);
        if (const auto it = vm_mapRings.find(sName); it != vm_mapRings.end()) {
            auto pRing = it->second.lock();
            if (pRing)
                pRing->m_S_TryAgain();
            if (pRing && pRing->m_F_n_Trouble() != emDef_Trouble::Lost)
                return pRing;
        }
        auto pRing = std::make_shared<CRingWriter>();
        if (!pRing->m_F_b_Open(sName, nCapacity, bCreate)) {
            sWhy = pRing->m_F_s_Why();
            return nullptr;
        }
        vm_mapRings.insert_or_assign(sName, pRing);
        return pRing;
    }

    void m_S_Drop(std::shared_ptr<CRingWriter>& pRing)
    {
        const std::lock_guard lock(vm_objMutex);
        pRing.reset();
        std::erase_if(vm_mapRings, [](const auto& entry) { return entry.second.expired(); });
    }

private:
    std::mutex vm_objMutex;
    std::map<std::string, std::weak_ptr<CRingWriter>> vm_mapRings;
};

} // namespace

struct CShmRing::st_Impl
{
    std::shared_ptr<CRingWriter> pRing;
    std::string sName; ///< of the last attach
    std::uint64_t nCapacity = 0;
    std::string sWhy;                                                ///< it came to nothing
    std::atomic<const void*> pClaimedFor{nullptr};                   ///< whose claim goes with this object
    alignas(std::uint64_t) unsigned char arPrivate[HeaderSize] = {}; ///< header of an unattached object
};

CShmRing::CShmRing() : vm_pImpl(std::make_unique<st_Impl>()) {}

CShmRing::~CShmRing()
{
    m_S_Detach();
}

bool CShmRing::m_F_b_Attach(emDef_RingKind nKind, std::int32_t nNvrID, std::int32_t nChannel, std::int32_t nStream,
                            bool bCreate, const std::string& sInstance)
{
    m_S_Detach();
    try {
        vm_pImpl->sName = s_F_s_RingName(nKind, nNvrID, nChannel, nStream, sInstance);
        vm_pImpl->nCapacity = Capacity(nKind, nStream);
        m_S_Attach(bCreate);
    } catch (const std::bad_alloc&) {
    }
    return m_F_b_IsAttached();
}

void CShmRing::m_S_Attach(bool bCreate)
{
    st_Impl& d = *vm_pImpl;
    d.sWhy.clear();
    d.pRing = CRingRegistry::s_F_o_Instance().m_F_p_Get(d.sName, d.nCapacity, bCreate, d.sWhy);
}

bool CShmRing::m_F_b_AttachAgain()
{
    if (m_F_b_IsAttached() || vm_pImpl->sName.empty())
        return m_F_b_IsAttached();
    m_S_Detach();
    try {
        m_S_Attach(true);
    } catch (const std::bad_alloc&) {
    }
    return m_F_b_IsAttached();
}

void CShmRing::m_S_Detach()
{
    if (!vm_pImpl->pRing)
        return;
    if (const void* pOwner = vm_pImpl->pClaimedFor.load())
        m_S_ReleaseWriter(pOwner);
    CRingRegistry::s_F_o_Instance().m_S_Drop(vm_pImpl->pRing);
}

bool CShmRing::m_F_b_IsAttached() const
{
    return vm_pImpl->pRing && vm_pImpl->pRing->m_F_n_Trouble() == emDef_Trouble::None;
}

std::string CShmRing::m_F_s_WhyNot() const
{
    if (vm_pImpl->sName.empty() || m_F_b_IsAttached())
        return {};
    return vm_pImpl->sName + ": " +
           (vm_pImpl->pRing ? Reasons[static_cast<int>(vm_pImpl->pRing->m_F_n_Trouble())] : vm_pImpl->sWhy);
}

void* CShmRing::m_F_p_Header() const
{
    if (vm_pImpl->pRing)
        return &vm_pImpl->pRing->m_F_o_Header();
    return vm_pImpl->arPrivate;
}

bool CShmRing::m_F_b_ClaimWriter(const void* pOwner)
{
    if (!m_F_b_IsAttached())
        return false;
    const void* pHolder = nullptr;
    if (!vm_pImpl->pRing->vm_pClaimant.compare_exchange_strong(pHolder, pOwner, std::memory_order_acquire))
        return pHolder == pOwner;
    vm_pImpl->pClaimedFor = pOwner;
    return true;
}

void CShmRing::m_S_ReleaseWriter(const void* pOwner)
{
    const void* pClaimedFor = pOwner;
    if (vm_pImpl->pRing && vm_pImpl->pClaimedFor.compare_exchange_strong(pClaimedFor, nullptr))
        vm_pImpl->pRing->vm_pClaimant.compare_exchange_strong(pOwner, nullptr, std::memory_order_release);
}

bool CShmRing::m_F_b_SetParam(const st_RingParam& stParam)
{
    return vm_pImpl->pRing && vm_pImpl->pRing->m_F_b_SetParam(stParam);
}

void CShmRing::m_S_SetLack(emDef_RingLack nLack)
{
    static_cast<st_Header*>(m_F_p_Header())->nLack.store(static_cast<std::uint32_t>(nLack), std::memory_order_relaxed);
}

bool CShmRing::m_F_b_Write(const st_RingPacket& stPacket, const void* pData, std::uint32_t nSize)
{
    return vm_pImpl->pRing && pData && vm_pImpl->pRing->m_F_b_Write(stPacket, pData, nSize);
}
