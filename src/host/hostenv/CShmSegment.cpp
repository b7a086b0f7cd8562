#include "host/hostenv/CShmSegment.h"

#include "host/hostenv/CEnvObj.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#endif

CShmSegment::~CShmSegment()
{
    m_S_Close();
}

bool CShmSegment::m_F_b_OpenReadOnly(const std::string& sName)
{
    return m_F_b_OpenExisting(sName, 1, false);
}

bool CShmSegment::m_F_b_OpenShared(const std::string& sName, std::size_t nSize)
{
    return m_F_b_OpenExisting(sName, nSize, true);
}

#ifdef _WIN32

// Named mappings go with their last handle, so nothing is ever left behind or taken over here; the owner is told apart
// by a mutex beside the mapping.

std::string CShmSegment::s_F_s_Prefix()
{
    return "Local\\fleetlink." + CEnvObj::s_F_s_Instance().toStdString() + ".";
}

CShmSegment::emDef_Open CShmSegment::m_F_n_Own(const std::string& sName, std::size_t nSize, bool bCreate)
{
    m_S_Close();
    vm_hOwner = CreateMutexA(nullptr, FALSE, (sName + ".owner").c_str());
    if (!vm_hOwner || GetLastError() == ERROR_ALREADY_EXISTS || !bCreate) {
        m_S_Close();
        return emDef_Open::Failed;
    }
    vm_hMapping = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, static_cast<DWORD>(nSize >> 32),
                                     static_cast<DWORD>(nSize), sName.c_str());
    const bool bExisted = GetLastError() == ERROR_ALREADY_EXISTS; // a reader kept it
    if (!vm_hMapping || !m_F_b_Map(nSize, true)) {
        m_S_Close();
        return emDef_Open::Failed;
    }
    return bExisted ? emDef_Open::TakenOver : emDef_Open::Made;
}

bool CShmSegment::m_F_b_OpenExisting(const std::string& sName, std::size_t nLeast, bool bWrite)
{
    m_S_Close();
    vm_hMapping = OpenFileMappingA(bWrite ? FILE_MAP_READ | FILE_MAP_WRITE : FILE_MAP_READ, FALSE, sName.c_str());
    if (vm_hMapping && m_F_b_Map(0, bWrite) && vm_nSize >= nLeast)
        return true;
    m_S_Close();
    return false;
}

bool CShmSegment::m_F_b_Map(std::size_t nSize, bool bWrite)
{
    vm_pData = static_cast<unsigned char*>(
        MapViewOfFile(vm_hMapping, bWrite ? FILE_MAP_READ | FILE_MAP_WRITE : FILE_MAP_READ, 0, 0, nSize));
    if (!vm_pData)
        return false;
    MEMORY_BASIC_INFORMATION stInfo{};
    VirtualQuery(vm_pData, &stInfo, sizeof stInfo);
    vm_nSize = nSize ? nSize : stInfo.RegionSize;
    return true;
}

bool CShmSegment::m_F_b_Commit(std::size_t)
{
    return true; // the paging file backed all of it when it was made
}

bool CShmSegment::m_F_b_IsRemoved() const
{
    return false; // a name lives as long as its last handle
}

void CShmSegment::m_S_Close()
{
    if (vm_pData)
        UnmapViewOfFile(vm_pData);
    if (vm_hMapping)
        CloseHandle(vm_hMapping);
    if (vm_hOwner)
        CloseHandle(vm_hOwner);
    vm_pData = nullptr;
    vm_hMapping = vm_hOwner = nullptr;
    vm_nSize = 0;
}

int CShmSegment::s_F_n_RemoveStale(const std::string&)
{
    return 0;
}

#else

namespace {

constexpr mode_t OwnerOnly = 0600;
constexpr std::size_t FirstPage = 4096;
constexpr int MaxTries = 8;
constexpr auto Pause = std::chrono::milliseconds(1);

enum class emDef_Claim
{
    Made,      ///< empty until now, and all zero
    TakenOver, ///< left by an owner that died
    Busy,      ///< locked: by an owner, or for a moment by somebody who removes what is stale
    Gone,      ///< removed between opening and locking
    Refused
};

bool LockNow(int nFile)
{
    return flock(nFile, LOCK_EX | LOCK_NB) == 0;
}

bool Allocate(int nFile, std::size_t nSize)
{
    int nError;
    while ((nError = posix_fallocate(nFile, 0, static_cast<off_t>(nSize))) == EINTR) {
    }
    return nError == 0;
}

/// What the open file is; false if it isn't this user's. Anybody may put names beside ours, so the name proves nothing.
bool IsOurs(int nFile, struct stat& st)
{
    return fstat(nFile, &st) == 0 && st.st_uid == geteuid();
}

/// Makes the open file ours. Only who holds its lock removes a name, so a locked file that has one keeps it.
emDef_Claim Claim(int nFile, const std::string& sName, std::size_t nSize)
{
    struct stat st
    {};
    if (!LockNow(nFile))
        return emDef_Claim::Busy;
    if (!IsOurs(nFile, st))
        return emDef_Claim::Refused;
    if (st.st_nlink == 0)
        return emDef_Claim::Gone;
    if (st.st_size == static_cast<off_t>(nSize))
        return emDef_Claim::TakenOver;
    // Memory before size: who maps a file of full size always finds its first page.
    if (st.st_size == 0 && Allocate(nFile, std::min(nSize, FirstPage)) &&
        ftruncate(nFile, static_cast<off_t>(nSize)) == 0)
        return emDef_Claim::Made;
    // Of another version, or half made. Its readers keep their mapping, so it is removed rather than cut.
    shm_unlink(sName.c_str());
    return st.st_size == 0 ? emDef_Claim::Refused : emDef_Claim::Gone;
}

} // namespace

std::string CShmSegment::s_F_s_Prefix()
{
    return "/fleetlink." + std::to_string(geteuid()) + "." + CEnvObj::s_F_s_Instance().toStdString() + ".";
}

CShmSegment::emDef_Open CShmSegment::m_F_n_Own(const std::string& sName, std::size_t nSize, bool bCreate)
{
    m_S_Close();
    for (int i = 0; i < MaxTries; ++i) {
        const int nFile = shm_open(sName.c_str(), O_RDWR | O_CLOEXEC | (bCreate ? O_CREAT : 0), OwnerOnly);
        if (nFile < 0)
            break;
        const emDef_Claim nClaim = Claim(nFile, sName, nSize);
        if (nClaim == emDef_Claim::Made || nClaim == emDef_Claim::TakenOver) {
            vm_nFile = nFile;
            vm_sName = sName;
            if (m_F_b_Map(nSize, true))
                return nClaim == emDef_Claim::Made ? emDef_Open::Made : emDef_Open::TakenOver;
            m_S_Close();
            break;
        }
        close(nFile);
        if (nClaim == emDef_Claim::Refused)
            break;
        if (nClaim == emDef_Claim::Busy)
            std::this_thread::sleep_for(Pause);
    }
    return emDef_Open::Failed;
}

bool CShmSegment::m_F_b_OpenExisting(const std::string& sName, std::size_t nLeast, bool bWrite)
{
    m_S_Close();
    vm_nFile = shm_open(sName.c_str(), (bWrite ? O_RDWR : O_RDONLY) | O_CLOEXEC, 0);
    struct stat st
    {};
    if (vm_nFile >= 0 && IsOurs(vm_nFile, st) && st.st_size >= static_cast<off_t>(nLeast) &&
        m_F_b_Map(static_cast<std::size_t>(st.st_size), bWrite))
        return true;
    m_S_Close();
    return false;
}

bool CShmSegment::m_F_b_Map(std::size_t nSize, bool bWrite)
{
    void* pData = mmap(nullptr, nSize, bWrite ? PROT_READ | PROT_WRITE : PROT_READ, MAP_SHARED, vm_nFile, 0);
    if (pData == MAP_FAILED)
        return false;
    vm_pData = static_cast<unsigned char*>(pData);
    vm_nSize = nSize;
    return true;
}

bool CShmSegment::m_F_b_Commit(std::size_t nSize)
{
    if (!Allocate(vm_nFile, nSize))
        return false;
#ifdef MADV_POPULATE_WRITE
    // Spares the first lap a page fault every 4 KiB, about as long as writing a packet takes; older kernels refuse.
    madvise(vm_pData, nSize, MADV_POPULATE_WRITE);
#endif
    return true;
}

bool CShmSegment::m_F_b_IsRemoved() const
{
    struct stat st
    {};
    return fstat(vm_nFile, &st) == 0 && st.st_nlink == 0;
}

void CShmSegment::m_S_Close()
{
    if (vm_pData)
        munmap(vm_pData, vm_nSize);
    if (!vm_sName.empty())
        shm_unlink(vm_sName.c_str());
    if (vm_nFile >= 0)
        close(vm_nFile);
    vm_pData = nullptr;
    vm_nSize = 0;
    vm_nFile = -1;
    vm_sName.clear();
}

int CShmSegment::s_F_n_RemoveStale(const std::string& sPrefix)
{
    DIR* pFolder = opendir("/dev/shm");
    if (!pFolder)
        return 0;
    int nRemoved = 0;
    while (const dirent* pEntry = readdir(pFolder)) {
        const std::string sName = std::string("/").append(pEntry->d_name);
        if (sName.compare(0, sPrefix.size(), sPrefix) != 0)
            continue;
        const int nFile = shm_open(sName.c_str(), O_RDWR | O_CLOEXEC, 0);
        if (nFile < 0)
            continue;
        // A creator that is about to lock it finds the name gone and makes another. The other way round, a name that
        // was given to another file in the meantime isn't ours to remove.
        struct stat st
        {};
        if (LockNow(nFile) && IsOurs(nFile, st) && st.st_nlink > 0 && shm_unlink(sName.c_str()) == 0)
            ++nRemoved;
        close(nFile);
    }
    closedir(pFolder);
    return nRemoved;
}

#endif
