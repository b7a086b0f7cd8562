#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>

#include "host/Export.h"

/// Index files: which image files a recorder has of a track. Readers take any bytes; a file that isn't sound to its
/// last byte counts as none. From any thread.
class LIB_REWIND_EXPORT CRecordProfile
{
public:
    CRecordProfile() = delete;

    /// Fills the list with the names of the image files that have records from `nStart` to `nEnd` (ms, both included),
    /// in the order of the index, each once. Empty if the index isn't sound, or if `pSearch` (letters of the tracks
    /// m, s, a, t; null or empty: all) leaves its track out.
    static void m_S_GetFileNemeFormIndex(const QString& sIndex, std::uint64_t nStart, std::uint64_t nEnd,
                                         const char* pSearch, QStringList& arNames);
};

class LIB_REWIND_EXPORT CRecordProfile_V
{
public:
    CRecordProfile_V() = delete;
    /// 1 if the file is a sound video index, else 0. Of a recorder that records the second stream alone, only an index
    /// of the second stream is.
    static int s_F_n_IsFileIndex(const QString& sFile, bool bOnlySecondStream);
};

class LIB_REWIND_EXPORT CRecordProfile_A
{
public:
    CRecordProfile_A() = delete;
    /// 1 if the file is a sound index of sound, else 0.
    static int s_F_n_IsFileIndex(const QString& sFile);
};

class LIB_REWIND_EXPORT CRecordProfile_T
{
public:
    CRecordProfile_T() = delete;
    /// 1 if the file is a sound index of events, else 0.
    static int s_F_n_IsFileIndex(const QString& sFile);
};
