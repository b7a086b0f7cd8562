#pragma once

#include <cstdint>

namespace nsRecord {

/// Header of record data and record image files, byte-exact.
struct st_FileInfo
{
    std::int16_t nVersion;     ///< little-endian
    char szKind[10];           ///< zero-terminated: "RecordDat" or "RecordImg"
    unsigned char arMarker[2]; ///< 0x23 0x24
    std::int16_t nChecksum;    ///< over the 14 bytes before it
};

static_assert(sizeof(st_FileInfo) == 16);

} // namespace nsRecord
