#pragma once

#include <cstdint>

/// Numbers in record files are little-endian, as those of the machines that this runs on.
namespace nsRecord {

/// Header of record data, record image and index files, byte-exact.
struct st_FileInfo
{
    std::int16_t nVersion;
    char szKind[10];           ///< zero-terminated: "RecordDat", "RecordImg" or "RecordIdx"
    unsigned char arMarker[2]; ///< 0x23 0x24
    std::int16_t nChecksum;    ///< over the 14 bytes before it
};

/// One record of a data file, byte-exact.
struct st_DatRecord
{
    std::uint64_t nStamp;  ///< ms
    std::uint32_t nOffset; ///< of the image in the image file; 0: it isn't there
    std::uint32_t nLength; ///< bytes of the image; 0: it isn't there

    bool m_F_b_NamesImage() const { return nOffset != 0 && nLength != 0; }
    std::uint64_t m_F_n_End() const { return std::uint64_t{nOffset} + nLength; }
    bool operator==(const st_DatRecord&) const = default;
};

static_assert(sizeof(st_FileInfo) == 16);
static_assert(sizeof(st_DatRecord) == 16);

} // namespace nsRecord

/// Holder of the search span.
class CLoadDataByFile
{
public:
    /// Which records are asked for.
    struct st_PB_SearchInfo
    {
        std::uint64_t nStart = 0;      ///< first time, ms
        std::uint64_t nEnd = 0;        ///< last time, ms, included
        const char* pSearch = nullptr; ///< letters of the tracks, zero-terminated; null or empty: all
        std::int32_t nValue = -1;      ///< always -1
    };
};
