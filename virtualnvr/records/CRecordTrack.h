#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// What a track of a channel holds.
enum class emDef_RecordKind
{
    Main,
    Second,
    Sound,
    Events
};

/// What sets the kinds of tracks apart.
struct stDef_RecordKindRow
{
    emDef_RecordKind eKind;
    char cLetter;          ///< in the selection of a search
    const char* pszFolder; ///< of an embedded recorder, before the channel's number
    const char* pszName;   ///< files begin with it
    char cIndexKind;
    int nStream;
    std::int64_t nPeriodMs, nPerPeriod; ///< so many records in so many milliseconds
};
extern const stDef_RecordKindRow g_arRecordKinds[4]; ///< in the order of the enumeration

/// A track of a channel as it would be if the recorder had run since 1970: any record of it can be told from its number
/// alone, so that nothing is kept of what is recorded. Its images are the loop that the live stream plays. Cheap to
/// copy; from any thread. Times are milliseconds since 1970-01-01 00:00 UTC.
class CRecordTrack
{
public:
    CRecordTrack(int nChannel, emDef_RecordKind eKind)
        : vm_nChannel(nChannel), vm_pRow(&g_arRecordKinds[static_cast<std::size_t>(eKind)])
    {}

    int m_F_n_Channel() const { return vm_nChannel; }
    const stDef_RecordKindRow& m_F_o_Row() const { return *vm_pRow; }

    /// When a record begins. @param nRecord from 0
    std::int64_t m_F_n_Stamp(std::int64_t nRecord) const;
    /// The first record that begins at this time or later.
    std::int64_t m_F_n_FirstFrom(std::int64_t nMs) const;
    /// How many records have come to their end by then.
    std::int64_t m_F_n_Complete(std::int64_t nNowMs) const { return m_F_n_FirstFrom(nNowMs + 1) - 1; }

    /// The line that stands before the images in their file.
    std::string m_F_s_Head() const;
    /// Encodes the stream's clip the first time, which takes some tenths of a second; so does the size.
    std::string m_F_s_Image(std::int64_t nRecord) const;
    std::size_t m_F_n_ImageSize(std::int64_t nRecord) const;

private:
    int vm_nChannel;
    const stDef_RecordKindRow* vm_pRow;
};
