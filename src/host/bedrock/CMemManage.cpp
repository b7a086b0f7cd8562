#include "host/bedrock/CMemManage.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

// A system that promises more memory than it has would end the process when the buffer is cleared.
constexpr std::uint64_t g_nMostBytes = std::uint64_t(4) << 30;
constexpr std::uint64_t g_nKeptBytes = 1 << 20;

} // namespace

CMemManage::CMemManage(std::uint64_t nSize)
{
    if (nSize != 0)
        m_F_p_MemAlloc(nSize);
}

CMemManage::~CMemManage()
{
    std::free(vm_pData);
}

bool CMemManage::m_F_b_Reserve(std::uint64_t nCapacity)
{
    if (vm_pData && nCapacity <= vm_nCapacity)
        return true;
    void* pGrown =
        nCapacity <= g_nMostBytes ? std::realloc(vm_pData, static_cast<std::size_t>(nCapacity + 1)) : nullptr;
    if (!pGrown) {
        m_S_DelMem();
        return false;
    }
    vm_pData = static_cast<unsigned char*>(pGrown);
    vm_nCapacity = nCapacity;
    return true;
}

unsigned char* CMemManage::m_F_p_MemAlloc(std::uint64_t nSize)
{
    if (!m_F_b_Reserve(nSize))
        return nullptr;
    const std::uint64_t nKept = std::min(vm_nSize, nSize);
    std::memset(vm_pData + nKept, 0, static_cast<std::size_t>(nSize - nKept + 1));
    vm_nSize = nSize;
    return vm_pData;
}

void CMemManage::m_S_ZeroMem()
{
    if (vm_pData)
        std::memset(vm_pData, 0, static_cast<std::size_t>(vm_nCapacity + 1));
}

void CMemManage::m_S_DelMem()
{
    std::free(vm_pData);
    vm_pData = nullptr;
    vm_nSize = 0;
    vm_nCapacity = 0;
}

char* CMemManage::m_F_p_GetStrCHAR()
{
    if (vm_pData)
        return reinterpret_cast<char*>(vm_pData);
    vm_cNothing = 0;
    return &vm_cNothing;
}

bool CMemManage::m_F_b_SetContent(const void* pData, std::uint64_t nSize)
{
    vm_nSize = 0;
    if (!m_F_b_Reserve(nSize))
        return false;
    if (nSize != 0)
        std::memcpy(vm_pData, pData, static_cast<std::size_t>(nSize));
    vm_nSize = nSize;
    vm_pData[nSize] = 0;
    return true;
}

bool CMemManage::m_F_b_Append(const void* pData, std::uint64_t nSize)
{
    constexpr std::uint64_t nLeast = 256;
    if (nSize > g_nMostBytes) {
        m_S_DelMem();
        return false;
    }
    const std::uint64_t nNeeded = vm_nSize + nSize;
    if (nNeeded > vm_nCapacity && !m_F_b_Reserve(std::max({nNeeded, vm_nCapacity + vm_nCapacity / 2, nLeast})))
        return false;
    if (nSize != 0)
        std::memcpy(vm_pData + vm_nSize, pData, static_cast<std::size_t>(nSize));
    vm_nSize = nNeeded;
    if (vm_pData)
        vm_pData[vm_nSize] = 0;
    return true;
}

void CMemManage::m_S_GiveBack()
{
    if (vm_nCapacity > g_nKeptBytes)
        m_S_DelMem();
}

void CMemManage::m_S_Clear()
{
    m_S_GiveBack();
    vm_nSize = 0;
    if (vm_pData)
        vm_pData[0] = 0;
}
