#include "host/hostenv/CShmSegment.h"

#include "host/hostenv/CEnvObj.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

CShmSegment::~CShmSegment()
{
    m_S_Close();
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

bool CShmSegment::m_F_b_OpenReadOnly(const std::string& sName)
{
    m_S_Close();
    vm_hMapping = OpenFileMappingA(FILE_MAP_READ, FALSE, sName.c_str());
    return vm_hMapping && m_F_b_Map(0, false);
}

bool CShmSegment::m_F_b_OpenShared(const std::string& sName, std::size_t nSize)
{
    m_S_Close();
    vm_hMapping = OpenFileMappingA(FILE_MAP_READ | FILE_MAP_WRITE, FALSE, sName.c_str());
    return vm_hMapping && m_F_b_Map(0, true) && vm_nSize >= nSize;
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
constexpr int MaxTries = 16; // each lost try means that another process removed the name just then

bool LockNow(int nFile)
{
    return flock(nFile, LOCK_EX | LOCK_NB) == 0;
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
        struct stat st
        {};
        if (nFile < 0 || !LockNow(nFile) || fstat(nFile, &st) != 0 || st.st_uid != geteuid()) {
            if (nFile >= 0)
                close(nFile);
            return emDef_Open::Failed;
        }
        if (st.st_nlink == 0) { // removed between opening and locking
            close(nFile);
            continue;
        }
        const bool bMade = st.st_size == 0;
        if (!bMade && st.st_size != static_cast<off_t>(nSize)) {
            // Of another version. Its readers keep their mapping, so it is removed rather than cut.
            shm_unlink(sName.c_str());
            close(nFile);
            continue;
        }
        vm_nFile = nFile;
        vm_sName = sName;
        if ((bMade && ftruncate(nFile, static_cast<off_t>(nSize)) != 0) || !m_F_b_Map(nSize, true)) {
            m_S_Close();
            return emDef_Open::Failed;
        }
        return bMade ? emDef_Open::Made : emDef_Open::TakenOver;
    }
    return emDef_Open::Failed;
}

bool CShmSegment::m_F_b_OpenReadOnly(const std::string& sName)
{
    m_S_Close();
    vm_nFile = shm_open(sName.c_str(), O_RDONLY | O_CLOEXEC, 0);
    struct stat st
    {};
    if (vm_nFile < 0 || fstat(vm_nFile, &st) != 0 || st.st_size <= 0 ||
        !m_F_b_Map(static_cast<std::size_t>(st.st_size), false)) {
        m_S_Close();
        return false;
    }
    return true;
}

bool CShmSegment::m_F_b_OpenShared(const std::string& sName, std::size_t nSize)
{
    m_S_Close();
    vm_nFile = shm_open(sName.c_str(), O_RDWR | O_CLOEXEC, 0);
    struct stat st
    {};
    if (vm_nFile < 0 || fstat(vm_nFile, &st) != 0 || st.st_size < static_cast<off_t>(nSize) ||
        !m_F_b_Map(nSize, true)) {
        m_S_Close();
        return false;
    }
    return true;
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
    return posix_fallocate(vm_nFile, 0, static_cast<off_t>(nSize)) == 0;
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
        const std::string sName = "/" + std::string(pEntry->d_name);
        if (sName.compare(0, sPrefix.size(), sPrefix) != 0)
            continue;
        const int nFile = shm_open(sName.c_str(), O_RDWR | O_CLOEXEC, 0);
        if (nFile < 0)
            continue;
        // A creator that is about to lock it finds the name gone and makes another.
        if (LockNow(nFile) && shm_unlink(sName.c_str()) == 0)
            ++nRemoved;
        close(nFile);
    }
    closedir(pFolder);
    return nRemoved;
}

#endif
