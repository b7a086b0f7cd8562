#pragma once

#include "records/CRecordTrack.h"

#include <optional>
#include <string>
#include <string_view>

/// Which of the files of a track.
enum class emDef_RecordFile
{
    Index,
    Image,
    Data
};

/// The name of a file on a recorder, taken apart.
struct stDef_RecordPath
{
    int nChannel = 0;
    emDef_RecordKind eKind = emDef_RecordKind::Main;
    emDef_RecordFile eFile = emDef_RecordFile::Index;
    std::int64_t nBeginMs = 0; ///< of the day of an index; of the minute in the names of the others

    /// @param bPC the two kinds of recorder have forms of their own
    std::string m_F_s_Text(bool bPC) const;
    std::string m_F_s_FileName() const; ///< the last part alone

    /// Nothing unless it is letter by letter what such a recorder would write; the channel may be any.
    static std::optional<stDef_RecordPath> s_F_o_Parse(std::string_view sPath, bool bPC);
};
