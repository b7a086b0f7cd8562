#include "host/hostenv/CRingLayout.h"

#include <algorithm>
#include <cstring>

#include "host/hostenv/CEnvObj.h"
#include "host/hostenv/CShmSegment.h"

namespace {

// Release and acquire on every word, not relaxed with fences around: the same instructions on x86, a few more on ARM,
// and it needs nothing that the thread sanitizer can't follow. A reader that sees a word of a later packet thereby also
// sees the reservation that was made before it was written.

void StoreWords(unsigned char* pTo, const unsigned char* pFrom, std::size_t nBytes)
{
    for (std::size_t i = 0; i < nBytes; i += RingLayout::Word) {
        std::uint64_t nWord;
        std::memcpy(&nWord, pFrom + i, sizeof nWord);
        std::atomic_ref(*reinterpret_cast<std::uint64_t*>(pTo + i)).store(nWord, std::memory_order_release);
    }
}

void LoadWords(unsigned char* pTo, const unsigned char* pFrom, std::size_t nBytes)
{
    for (std::size_t i = 0; i < nBytes; i += RingLayout::Word) {
        // The mapping may be read-only: an atomic load of this size never writes.
        auto& nSource = *reinterpret_cast<std::uint64_t*>(const_cast<unsigned char*>(pFrom + i));
        const std::uint64_t nWord = std::atomic_ref(nSource).load(std::memory_order_acquire);
        std::memcpy(pTo + i, &nWord, sizeof nWord);
    }
}

static_assert(std::atomic_ref<std::uint64_t>::is_always_lock_free);

} // namespace

std::string RingLayout::s_F_s_RingName(emDef_RingKind nKind, std::int32_t nNvrID, std::int32_t nChannel,
                                       std::int32_t nStream, const std::string& sInstance)
{
    return CShmSegment::s_F_s_Prefix(sInstance.empty() ? CEnvObj::s_F_s_Instance().toStdString() : sInstance) +
           (nKind == emDef_RingKind::Video ? "v." : "a.") + std::to_string(nNvrID) + "." + std::to_string(nChannel) +
           "." + std::to_string(nStream);
}

void RingLayout::CopyIn(unsigned char* pLog, std::uint64_t nCapacity, std::uint64_t nPosition, const void* pFrom,
                        std::size_t nBytes)
{
    const auto* pBytes = static_cast<const unsigned char*>(pFrom);
    const std::uint64_t nOffset = nPosition % nCapacity;
    const std::size_t nWhole = nBytes & ~(Word - 1);
    const std::size_t nFirst = std::min<std::uint64_t>(nWhole, nCapacity - nOffset);
    StoreWords(pLog + nOffset, pBytes, nFirst);
    StoreWords(pLog, pBytes + nFirst, nWhole - nFirst);
    if (nWhole == nBytes)
        return;
    unsigned char arTail[Word] = {};
    std::memcpy(arTail, pBytes + nWhole, nBytes - nWhole);
    StoreWords(pLog + (nPosition + nWhole) % nCapacity, arTail, Word);
}

void RingLayout::CopyOut(const unsigned char* pLog, std::uint64_t nCapacity, std::uint64_t nPosition, void* pTo,
                         std::size_t nBytes)
{
    auto* pBytes = static_cast<unsigned char*>(pTo);
    const std::uint64_t nOffset = nPosition % nCapacity;
    const std::size_t nFirst = std::min<std::uint64_t>(nBytes, nCapacity - nOffset);
    LoadWords(pBytes, pLog + nOffset, nFirst);
    LoadWords(pBytes + nFirst, pLog, nBytes - nFirst);
}
