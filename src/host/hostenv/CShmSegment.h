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
    /// Maps existing memory of this user, at least that large, for reading and writing, without owning it.
    bool m_F_b_OpenShared(const std::string& sName, std::size_t nSize);
    /// Makes sure that so many bytes really are there. Without it a full machine shows as a crash at some later write.
    bool m_F_b_Commit(std::size_t nSize);
    void m_S_Close();

    /// True if the memory has lost its name: nobody will write it again.
    bool m_F_b_IsRemoved() const;
    unsigned char* m_F_p_Data() const { return vm_pData; } ///< null while closed
    std::size_t m_F_n_Size() const { return vm_nSize; }

    /// Removes the names with that prefix that nobody owns; returns how many.
    static int s_F_n_RemoveStale(const std::string& sPrefix);
    /// Prefix of all names of this user and instance.
    static std::string s_F_s_Prefix();

private:
    bool m_F_b_Map(std::size_t nSize, bool bWrite);
    bool m_F_b_OpenExisting(const std::string& sName, std::size_t nLeast, bool bWrite);

    std::string vm_sName; ///< of an owned segment
    unsigned char* vm_pData = nullptr;
    std::size_t vm_nSize = 0;
#ifdef _WIN32
    void* vm_hMapping = nullptr;
    void* vm_hOwner = nullptr;
#else
    int vm_nFile = -1;
#endif
};
