#pragma once

#include "records/CRecordFile.h"
#include "records/stDef_RecordPath.h"

#include <functional>
#include <set>

/// What is looked for in a recorder's recordings.
struct stDef_RecordSearch
{
    std::int64_t nStartMs = 0, nEndMs = 0; ///< both included
    std::set<emDef_RecordKind> setKinds;
    std::function<bool(int nChannel)> fnWanted;
};

/// The recordings of all channels: the last hours before the clock's time, which nobody has to keep since every byte
/// can be told from the time. From any thread, if the clock may be.
class CRecordings
{
public:
    /// @param nHours how long a file stays; 0: nothing is recorded
    /// @param fnNowMs the recorder's clock, in milliseconds since 1970; empty: that of the system
    CRecordings(int nChannels, bool bPC, int nHours, std::function<std::int64_t()> fnNowMs);

    int m_F_n_Channels() const { return vm_nChannels; }
    bool m_F_b_PC() const { return vm_bPC; }

    /// Paths of the index files that have a record in the span.
    std::vector<std::string> m_F_ar_IndexFiles(const stDef_RecordSearch& stSearch) const;

    /// Bytes of any file, fewer at its end; nothing if there is no such file.
    std::optional<std::string> m_F_o_Bytes(const stDef_RecordPath& stPath, std::uint64_t nFrom,
                                           std::uint64_t nLength) const;

    /// The pair of files to which an image or a data file belongs; nothing if there is no such file.
    std::optional<CRecordFile> m_F_o_File(const stDef_RecordPath& stPath) const;

    /// A file in place of one that isn't there: of the first channel, and the kind that the name's end says.
    stDef_RecordPath m_F_o_StandIn(std::string_view sName) const;

private:
    std::int64_t m_F_n_Now() const;
    std::int64_t m_F_n_Oldest(std::int64_t nNowMs) const;
    std::optional<CRecordFile> m_F_o_File(const stDef_RecordPath& stPath, std::int64_t nNowMs) const;
    std::string m_F_s_Index(const stDef_RecordPath& stPath) const;

    const int vm_nChannels;
    const bool vm_bPC;
    const int vm_nHours;
    const std::function<std::int64_t()> vm_fnNowMs;
};
