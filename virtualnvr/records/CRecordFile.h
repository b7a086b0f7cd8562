#pragma once

#include "records/CRecordTrack.h"

#include <optional>
#include <vector>

/// Ten minutes of a track as the two files that hold them, at a given time: images, and the data file that says what
/// each of them is. All bytes are made when they are asked for. A snapshot: it doesn't grow.
class CRecordFile
{
public:
    static constexpr std::int64_t s_nSpanMs = 600000;

    /// @param nBeginMs a multiple of the span
    /// @param bPlaces data records say where their image stands; else their place and length are 0
    CRecordFile(const CRecordTrack& objTrack, std::int64_t nBeginMs, std::int64_t nNowMs, bool bPlaces);

    /// Records of the data file, the mark of its begin included; 0 if nothing is recorded, and there are no files.
    std::int64_t m_F_n_Records() const { return vm_nImages > 0 ? vm_nImages + 1 : 0; }
    std::int64_t m_F_n_FirstMs() const { return vm_objTrack.m_F_n_Stamp(vm_nFirst); }
    std::int64_t m_F_n_LastMs() const { return vm_objTrack.m_F_n_Stamp(vm_nFirst + vm_nImages - 1); }

    /// So many records as the data file holds them; fewer at its end.
    std::string m_F_s_Records(std::uint64_t nFirst, std::uint64_t nCount) const;
    std::string m_F_s_Head() const { return vm_objTrack.m_F_s_Head(); }
    /// The image of a record, the mark's being that of record 1. Nothing behind the last record.
    std::optional<std::string> m_F_o_Image(std::uint64_t nRecord) const;

    /// Bytes of the files; fewer, or none, at their end.
    std::string m_F_s_DataBytes(std::uint64_t nFrom, std::uint64_t nLength) const;
    std::string m_F_s_ImageBytes(std::uint64_t nFrom, std::uint64_t nLength) const;

private:
    std::vector<std::uint64_t> m_F_ar_Places() const;

    CRecordTrack vm_objTrack;
    std::int64_t vm_nFirst;  ///< number within the track
    std::int64_t vm_nImages; ///< that are whole
    bool vm_bPlaces;
};
