#pragma once

#include <string>

/// Files that a reader, or the next start after a crash, finds with the old content or the new, and never in between.
class CAtomicFile
{
public:
    /// Writes through a temporary file "<path>.new": data on the disk, then the rename, then the folder on the disk.
    /// One writer a path at a time.
    /// @param nMode permission bits, as 0600
    /// @param bDurable false: a power cut may lose the file, which saves two waits for the disk
    /// @return false with sError set; then the old file is untouched.
    static bool s_F_b_Write(const std::string& sPath, const std::string& sText, unsigned nMode, std::string& sError,
                            bool bDurable = true);

    /// Reads a whole file. @return false if it can't be read.
    static bool s_F_b_Read(const std::string& sPath, std::string& sText);

    /// Takes the lock file, which falls free when the process ends, however it ends. @return descriptor, or -1
    static int s_F_n_Lock(const std::string& sPath);
    static void s_S_Unlock(int nLock);
};
