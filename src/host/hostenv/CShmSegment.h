#pragma once

#include <cstddef>
#include <string>

#include "host/Export.h"

/// One piece of named shared memory. An owner holds an exclusive lock on it that the system gives back whatever becomes
/// of the process, so that nobody has to guess whether a name is still in use.
class CShmSegment
{
public:
    enum class emDef_Open
    {
        Failed,   ///< no memory, no right, or another process owns it
        Made,     ///< new, all zero
        TakenOver ///< left by an owner that died, content as it was
    };

    CShmSegment() = default;
    ~CShmSegment(); ///< closes; an owner's name is removed
    CShmSegment(const CShmSegment&) = delete;
    CShmSegment& operator=(const CShmSegment&) = delete;

    /// Becomes the owner of the named memory of exactly that size; without `bCreate` only of one that exists.
    emDef_Open m_F_n_Own(const std::string& sName, std::size_t nSize, bool bCreate);
    /// Maps existing memory of this user for reading only.
    bool m_F_b_OpenReadOnly(const std::string& sName);
    /// Maps existing memory of this user, at least that large: what is written to it stays this process's own.
    bool m_F_b_OpenCopy(const std::string& sName, std::size_t nSize);
    /// Makes sure that so many bytes really are there. Without it a full machine shows as a crash at some later write.
    bool m_F_b_Commit(std::size_t nSize);
    void m_S_Close();
    /// Gives name and lock away, so that the name can be owned anew; the mapping stays until the end.
    void m_S_Forsake();

    /// True if the memory has lost its name: nobody will write it again.
    bool m_F_b_IsRemoved() const;
    /// True while the memory has its name and its size, and nobody has cut it short since.
    bool m_F_b_IsWhole() const;
    /// Why the last `m_F_n_Own` failed, for a log.
    const std::string& m_F_s_Why() const { return vm_sWhy; }
    unsigned char* m_F_p_Data() const { return vm_pData; } ///< null while closed
    std::size_t m_F_n_Size() const { return vm_nSize; }

    /// Removes the names with that prefix that nobody owns; returns how many.
    static int s_F_n_RemoveStale(const std::string& sPrefix);
    /// Prefix of the names of this user, of one instance.
    static std::string s_F_s_Prefix(const std::string& sInstance);
    /// What the names of this user begin with, whatever the instance.
    static std::string s_F_s_UserPrefix();

private:
    enum class emDef_Access
    {
        Read,
        Copy, ///< what is written stays in this mapping
        Write
    };

    bool m_F_b_Map(std::size_t nSize, emDef_Access nAccess);
    bool m_F_b_OpenExisting(const std::string& sName, std::size_t nLeast, emDef_Access nAccess);

    std::string vm_sName; ///< of an owned segment
    std::string vm_sWhy;
    unsigned char* vm_pData = nullptr;
    std::size_t vm_nSize = 0;
#ifdef _WIN32
    void* vm_hMapping = nullptr;
    void* vm_hOwner = nullptr;
#else
    int vm_nFile = -1;
#endif
};
