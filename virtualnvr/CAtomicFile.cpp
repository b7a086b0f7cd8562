#include "CAtomicFile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
bool WriteAll(int nFile, const std::string& sText)
{
    for (std::size_t nDone = 0; nDone < sText.size();) {
        const ssize_t nWritten = ::write(nFile, sText.data() + nDone, sText.size() - nDone);
        if (nWritten < 0 && errno == EINTR)
            continue;
        if (nWritten <= 0)
            return false;
        nDone += static_cast<std::size_t>(nWritten);
    }
    return true;
}

bool WriteNew(const std::string& sPath, const std::string& sText, unsigned nMode, bool bSync)
{
    const int nFile = ::open(sPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, nMode);
    if (nFile < 0)
        return false;
    // A file left over from a killed writer keeps its old mode through O_CREAT.
    const bool bWritten = ::fchmod(nFile, nMode) == 0 && WriteAll(nFile, sText) && (!bSync || ::fsync(nFile) == 0);
    const int nError = errno;
    const bool bClosed = ::close(nFile) == 0;
    if (!bWritten)
        errno = nError;
    return bWritten && bClosed;
}

bool SyncFolder(const std::string& sFolder)
{
    const int nFolder = ::open(sFolder.empty() ? "." : sFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (nFolder < 0)
        return false;
    const bool bSynced = ::fsync(nFolder) == 0;
    ::close(nFolder);
    return bSynced;
}
} // namespace

bool CAtomicFile::s_F_b_Write(const std::string& sPath, const std::string& sText, unsigned nMode, std::string& sError,
                              bool bDurable)
{
    const std::string sNew = sPath + ".new";
    if (WriteNew(sNew, sText, nMode, bDurable) && ::rename(sNew.c_str(), sPath.c_str()) == 0) {
        // The content is in place already; a folder that can't be synced only weakens what a power cut leaves.
        if (bDurable)
            SyncFolder(std::filesystem::path(sPath).parent_path().string());
        return true;
    }
    sError = sPath + ": " + std::strerror(errno);
    ::unlink(sNew.c_str());
    return false;
}

bool CAtomicFile::s_F_b_Read(const std::string& sPath, std::string& sText)
{
    std::ifstream objFile(sPath, std::ios::binary);
    if (!objFile)
        return false;
    sText.assign(std::istreambuf_iterator<char>(objFile), {});
    return !objFile.bad();
}

int CAtomicFile::s_F_n_Lock(const std::string& sPath)
{
    const int nLock = ::open(sPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (nLock >= 0 && ::flock(nLock, LOCK_EX | LOCK_NB) != 0) {
        ::close(nLock);
        return -1;
    }
    return nLock;
}

void CAtomicFile::s_S_Unlock(int nLock)
{
    if (nLock >= 0)
        ::close(nLock);
}
