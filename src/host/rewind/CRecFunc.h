#pragma once

#include <cstdint>

#include "host/Export.h"
#include "host/rewind/RecordTypes.h"

class QFileDevice;

/// Functions on the headers of record files. From any thread.
class LIB_REWIND_EXPORT CRecFunc
{
public:
    CRecFunc() = delete;

    /// CRC-16/CCITT-FALSE of so many bytes.
    static std::int16_t s_F_n_CalChecksum(const char* pBytes, std::uint32_t nLength);
    /// True if the header has the marker, that kind name and a right checksum. False for null.
    static bool s_F_b_ChkFileInfo(const nsRecord::st_FileInfo* pInfo, const char* pszKind);
    /// A header that passes the check. The kind name has 9 characters at most, of longer ones the first 9 count.
    static nsRecord::st_FileInfo s_F_o_MakeFileInfo(std::int16_t nVersion, const char* pszKind);
    /// Brings what was written of an open file to the disk. False if that failed.
    static bool s_F_b_Sync(const QFileDevice& objFile);
};
