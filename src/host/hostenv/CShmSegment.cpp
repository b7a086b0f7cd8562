#include "host/hostenv/CShmSegment.h"

#ifdef _WIN32
#include <windows.h>
#else
#include "host/hostenv/CCutGuard.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#endif

CShmSegment::~CShmSegment()
{
    m_S_Close();
}

bool CShmSegment::m_F_b_OpenReadOnly(const std::string& sName)
{
    return m_F_b_OpenExisting(sName, 1, emDef_Access::Read);
}

bool CShmSegment::m_F_b_OpenCopy(const std::string& sName, std::size_t nSize)
{
    return m_F_b_OpenExisting(sName, nSize, emDef_Access::Copy);
}

std::string CShmSegment::s_F_s_Prefix(const std::string& sInstance)
{
    return s_F_s_UserPrefix() + sInstance + ".";
}

#ifdef _WIN32

// Named mappings go with their last handle, so nothing is ever left behind or taken over here; the owner is told apart
// by a mutex beside the mapping.

namespace {

constexpr DWORD MapAccess[] = {FILE_MAP_READ, FILE_MAP_COPY, FILE_MAP_READ | FILE_MAP_WRITE}; // by emDef_Access

} // namespace

std::string CShmSegment::s_F_s_UserPrefix()
{
    return "Local\\fleetlink.";
}

CShmSegment::emDef_Open CShmSegment::m_F_n_Own(const std::string& sName, std::size_t nSize, bool bCreate)
{
    m_S_Close();
    vm_hOwner = CreateMutexA(nullptr, FALSE, (sName + ".owner").c_str());
    if (!vm_hOwner || GetLastError() == ERROR_ALREADY_EXISTS || !bCreate) {
        vm_sWhy = "another process owns it";
        m_S_Close();
        return emDef_Open::Failed;
    }
    vm_hMapping = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, static_cast<DWORD>(nSize >> 32),
                                     static_cast<DWORD>(nSize), sName.c_str());
    const bool bExisted = GetLastError() == ERROR_ALREADY_EXISTS; // a reader kept it
    if (!vm_hMapping || !m_F_b_Map(nSize, emDef_Access::Write)) {
        vm_sWhy = "there is no room for it";
        m_S_Close();
        return emDef_Open::Failed;
    }
    return bExisted ? emDef_Open::TakenOver : emDef_Open::Made;
}

bool CShmSegment::m_F_b_OpenExisting(const std::string& sName, std::size_t nLeast, emDef_Access nAccess)
{
    m_S_Close();
    vm_hMapping = OpenFileMappingA(MapAccess[static_cast<int>(nAccess)], FALSE, sName.c_str());
    if (vm_hMapping && m_F_b_Map(0, nAccess) && vm_nSize >= nLeast)
        return true;
    m_S_Close();
    return false;
}

bool CShmSegment::m_F_b_Map(std::size_t nSize, emDef_Access nAccess)
{
    vm_pData =
        static_cast<unsigned char*>(MapViewOfFile(vm_hMapping, MapAccess[static_cast<int>(nAccess)], 0, 0, nSize));
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

bool CShmSegment::m_F_b_IsWhole() const
{
    return true; // nor can a mapping be cut
}

void CShmSegment::m_S_Forsake() {}

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
    NoRoom,
    Refused ///< not ours
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

/// What the open file is; false if it isn't plain memory of this user. Anybody may put names beside ours, pipes and
/// links to other files of ours as well, so the name proves nothing.
bool IsOurs(int nFile, struct stat& st)
{
    return fstat(nFile, &st) == 0 && S_ISREG(st.st_mode) && st.st_uid == geteuid() && st.st_nlink <= 1;
}

/// Never follows a link (shm_open sees to that) and never waits, as for the other end of a pipe.
int OpenNow(const std::string& sName, int nFlags)
{
    return shm_open(sName.c_str(), nFlags | O_NONBLOCK | O_CLOEXEC, OwnerOnly);
}

/// What there is to say of a claim that came to nothing.
const char* ReasonOf(emDef_Claim nClaim)
{
    if (nClaim == emDef_Claim::Refused)
        return "its name is taken by what is no memory of this user";
    return nClaim == emDef_Claim::NoRoom ? "there is no room in shared memory" : "another process owns it";
}

/// Makes the open file ours. Only who holds its lock removes a name, so a locked file that has one keeps it.
emDef_Claim Claim(int nFile, const std::string& sName, std::size_t nSize)
{
    struct stat st
    {};
    if (!IsOurs(nFile, st))
        return emDef_Claim::Refused;
    if (!LockNow(nFile))
        return emDef_Claim::Busy;
    if (fstat(nFile, &st) != 0 || st.st_nlink == 0)
        return emDef_Claim::Gone;
    // Memory before size: who maps a file of full size always finds its first page.
    if (!Allocate(nFile, std::min(nSize, FirstPage))) {
        shm_unlink(sName.c_str());
        return emDef_Claim::NoRoom;
    }
    if (st.st_size == static_cast<off_t>(nSize))
        return emDef_Claim::TakenOver;
    if (st.st_size == 0 && ftruncate(nFile, static_cast<off_t>(nSize)) == 0)
        return emDef_Claim::Made;
    // Of another version, or half made. Its readers keep their mapping, so it is removed rather than cut.
    shm_unlink(sName.c_str());
    return st.st_size == 0 ? emDef_Claim::NoRoom : emDef_Claim::Gone;
}

} // namespace

std::string CShmSegment::s_F_s_UserPrefix()
{
    return "/fleetlink." + std::to_string(geteuid()) + ".";
}

CShmSegment::emDef_Open CShmSegment::m_F_n_Own(const std::string& sName, std::size_t nSize, bool bCreate)
{
    m_S_Close();
    for (int i = 0; i < MaxTries; ++i) {
        const int nFile = OpenNow(sName, O_RDWR | (bCreate ? O_CREAT : 0));
        if (nFile < 0) {
            vm_sWhy = std::generic_category().message(errno);
            break;
        }
        const emDef_Claim nClaim = Claim(nFile, sName, nSize);
        if (nClaim == emDef_Claim::Made || nClaim == emDef_Claim::TakenOver) {
            vm_nFile = nFile;
            vm_sName = sName;
            if (m_F_b_Map(nSize, emDef_Access::Write))
                return nClaim == emDef_Claim::Made ? emDef_Open::Made : emDef_Open::TakenOver;
            m_S_Close();
            break;
        }
        close(nFile);
        vm_sWhy = ReasonOf(nClaim);
        if (nClaim == emDef_Claim::Refused || nClaim == emDef_Claim::NoRoom)
            break;
        if (nClaim == emDef_Claim::Busy)
            std::this_thread::sleep_for(Pause);
    }
    return emDef_Open::Failed;
}

bool CShmSegment::m_F_b_OpenExisting(const std::string& sName, std::size_t nLeast, emDef_Access nAccess)
{
    m_S_Close();
    vm_nFile = OpenNow(sName, O_RDONLY);
    struct stat st
    {};
    if (vm_nFile >= 0 && IsOurs(vm_nFile, st) && st.st_size >= static_cast<off_t>(nLeast) &&
        m_F_b_Map(static_cast<std::size_t>(st.st_size), nAccess))
        return true;
    m_S_Close();
    return false;
}

bool CShmSegment::m_F_b_Map(std::size_t nSize, emDef_Access nAccess)
{
    void* pData = mmap(nullptr, nSize, nAccess == emDef_Access::Read ? PROT_READ : PROT_READ | PROT_WRITE,
                       nAccess == emDef_Access::Copy ? MAP_PRIVATE : MAP_SHARED, vm_nFile, 0);
    if (pData == MAP_FAILED || !CCutGuard::s_F_b_Add(pData, nSize)) {
        vm_sWhy = "it can't be mapped";
        if (pData != MAP_FAILED)
            munmap(pData, nSize);
        return false;
    }
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

bool CShmSegment::m_F_b_IsWhole() const
{
    struct stat st
    {};
    return fstat(vm_nFile, &st) == 0 && st.st_nlink > 0 && st.st_size == static_cast<off_t>(vm_nSize);
}

void CShmSegment::m_S_Forsake()
{
    // Somebody may have removed the name and made another of it, which isn't ours to remove.
    if (!vm_sName.empty() && !m_F_b_IsRemoved())
        shm_unlink(vm_sName.c_str());
    if (vm_nFile >= 0)
        close(vm_nFile);
    vm_nFile = -1;
    vm_sName.clear();
}

void CShmSegment::m_S_Close()
{
    if (vm_pData) {
        CCutGuard::s_S_Remove(vm_pData);
        munmap(vm_pData, vm_nSize);
    }
    m_S_Forsake();
    vm_pData = nullptr;
    vm_nSize = 0;
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
        const int nFile = OpenNow(sName, O_RDWR);
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
