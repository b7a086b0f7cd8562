#pragma once

#include <cstdint>

#include "host/Export.h"

/// A growing byte buffer. One zero byte always stands behind the content, so that it can be read as text.
/// An object is used by one thread at a time.
class LIB_BEDROCK_EXPORT CMemManage
{
public:
    /// A size other than 0 allocates at once, as `m_F_p_MemAlloc` does.
    explicit CMemManage(std::uint64_t nSize = 0);
    ~CMemManage();
    CMemManage(const CMemManage&) = delete;
    CMemManage& operator=(const CMemManage&) = delete;

    /// Makes the content `nSize` bytes long and returns the buffer: bytes that were there stay, new ones are zero, and
    /// no memory is given back. Null if there is not so much memory, or for more than 4 GiB; the object is then
    /// empty.
    unsigned char* m_F_p_MemAlloc(std::uint64_t nSize);
    /// Clears the whole allocated buffer; the size of the content stays.
    void m_S_ZeroMem();
    /// Frees the memory now; the object stays usable.
    void m_S_DelMem();

    /// The buffer; null while nothing is allocated. Valid until the object grows or is freed.
    unsigned char* m_F_p_GetMemPoint() const { return vm_pData; }
    /// The same buffer as zero-terminated text; never null, an empty text while nothing is allocated.
    char* m_F_p_GetStrCHAR();
    /// Bytes of content, without the zero byte behind it.
    std::uint64_t m_F_n_GetMemSize() const { return vm_nSize; }

    /// Replaces the content. `pData` may be null with 0 bytes, and must not point into this buffer. False if there is
    /// not so much memory; the object is then empty.
    bool m_F_b_SetContent(const void* pData, std::uint64_t nSize);
    /// Appends to the content, with room to spare for the next call; otherwise as `m_F_b_SetContent`.
    bool m_F_b_Append(const void* pData, std::uint64_t nSize);
    /// Makes the content empty. Up to 1 MiB of memory is kept for the next one, more is given back.
    void m_S_Clear();
    /// Does the same to an object that holds more than 1 MiB, and nothing to another.
    void m_S_GiveBack();

private:
    bool m_F_b_Reserve(std::uint64_t nCapacity);

    unsigned char* vm_pData = nullptr;
    std::uint64_t vm_nSize = 0;
    std::uint64_t vm_nCapacity = 0; ///< bytes allocated, without the one for the closing zero
    char vm_cNothing = 0;           ///< the text of an object without memory
};
