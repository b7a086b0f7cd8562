#include "records/CRecordings.h"

#include "records/RecordClock.h"
#include "records/RecordForms.h"

#include <algorithm>

CRecordings::CRecordings(int nChannels, bool bPC, int nHours, std::function<std::int64_t()> fnNowMs)
    : vm_nChannels(nChannels),
      vm_bPC(bPC),
      vm_nHours(nHours),
      vm_fnNowMs(fnNowMs ? std::move(fnNowMs) : std::function<std::int64_t()>(nsRecordClock::Now))
{}

std::int64_t CRecordings::m_F_n_Now() const
{
    return std::clamp<std::int64_t>(vm_fnNowMs(), 0, nsRecordClock::MaxMs);
}

/// Begin of the oldest file that is still there.
std::int64_t CRecordings::m_F_n_Oldest(std::int64_t nNowMs) const
{
    constexpr std::int64_t nHourMs = 3600000, nSpanMs = CRecordFile::s_nSpanMs;
    const std::int64_t nOldestEnd = std::max<std::int64_t>(nNowMs - vm_nHours * nHourMs, nSpanMs);
    return (nOldestEnd + nSpanMs - 1) / nSpanMs * nSpanMs - nSpanMs;
}

std::vector<std::string> CRecordings::m_F_ar_IndexFiles(const stDef_RecordSearch& stSearch) const
{
    std::vector<std::string> arPaths;
    const std::int64_t nNowMs = m_F_n_Now(), nOldestMs = m_F_n_Oldest(nNowMs);
    const std::int64_t nFirstDayMs = nOldestMs / nsRecordClock::DayMs * nsRecordClock::DayMs;
    for (int nChannel = 0; nChannel < vm_nChannels && vm_nHours > 0; ++nChannel)
        for (const emDef_RecordKind eKind : stSearch.setKinds) {
            const CRecordTrack objTrack(nChannel, eKind);
            const std::int64_t nBegin = objTrack.m_F_n_FirstFrom(std::max(nOldestMs, stSearch.nStartMs));
            const std::int64_t nEnd =
                std::min(objTrack.m_F_n_Complete(nNowMs), objTrack.m_F_n_FirstFrom(stSearch.nEndMs + 1));
            for (std::int64_t nDayMs = nFirstDayMs; nDayMs <= nNowMs && stSearch.fnWanted(nChannel);
                 nDayMs += nsRecordClock::DayMs)
                if (std::max(nBegin, objTrack.m_F_n_FirstFrom(nDayMs)) <
                    std::min(nEnd, objTrack.m_F_n_FirstFrom(nDayMs + nsRecordClock::DayMs)))
                    arPaths.push_back(
                        stDef_RecordPath{nChannel, eKind, emDef_RecordFile::Index, nDayMs}.m_F_s_Text(vm_bPC));
        }
    return arPaths;
}

std::optional<CRecordFile> CRecordings::m_F_o_File(const stDef_RecordPath& stPath, std::int64_t nNowMs) const
{
    const bool bThere = vm_nHours > 0 && stPath.nChannel < vm_nChannels &&
                        stPath.nBeginMs % CRecordFile::s_nSpanMs == 0 && stPath.nBeginMs >= m_F_n_Oldest(nNowMs);
    if (!bThere)
        return std::nullopt;
    const CRecordFile objFile({stPath.nChannel, stPath.eKind}, stPath.nBeginMs, nNowMs, vm_bPC);
    return objFile.m_F_n_Records() > 0 ? std::optional(objFile) : std::nullopt;
}

std::optional<CRecordFile> CRecordings::m_F_o_File(const stDef_RecordPath& stPath) const
{
    return stPath.eFile == emDef_RecordFile::Index ? std::nullopt : m_F_o_File(stPath, m_F_n_Now());
}

stDef_RecordPath CRecordings::m_F_o_StandIn(std::string_view sName) const
{
    const std::int64_t nBeginMs = std::max<std::int64_t>(m_F_n_Now() / CRecordFile::s_nSpanMs - 1, 0);
    const emDef_RecordFile eFile = sName.ends_with(".dat")   ? emDef_RecordFile::Data
                                   : sName.ends_with(".img") ? emDef_RecordFile::Image
                                                             : emDef_RecordFile::Index;
    const std::int64_t nUnitMs = eFile == emDef_RecordFile::Index ? nsRecordClock::DayMs : CRecordFile::s_nSpanMs;
    return {0, emDef_RecordKind::Main, eFile, nBeginMs * CRecordFile::s_nSpanMs / nUnitMs * nUnitMs};
}

/// The index of a day; empty if nothing of it is there.
std::string CRecordings::m_F_s_Index(const stDef_RecordPath& stPath) const
{
    const std::int64_t nNowMs = m_F_n_Now();
    const stDef_RecordKindRow& stRow = CRecordTrack(stPath.nChannel, stPath.eKind).m_F_o_Row();
    std::string sEntries;
    std::uint64_t nEntries = 0;
    for (std::int64_t nMs = stPath.nBeginMs; nMs < stPath.nBeginMs + nsRecordClock::DayMs;
         nMs += CRecordFile::s_nSpanMs) {
        const stDef_RecordPath stImage{stPath.nChannel, stPath.eKind, emDef_RecordFile::Image, nMs};
        const auto objFile = m_F_o_File(stImage, nNowMs);
        if (!objFile)
            continue;
        nsRecordForms::Append(sEntries, static_cast<std::uint64_t>(objFile->m_F_n_FirstMs()), 8);
        nsRecordForms::Append(sEntries, static_cast<std::uint64_t>(objFile->m_F_n_LastMs()), 8);
        nsRecordForms::AppendName(sEntries, stImage.m_F_s_FileName(), nsRecordForms::MaxName);
        ++nEntries;
    }
    if (nEntries == 0)
        return {};
    std::string sIndex = nsRecordForms::Header("RecordIdx", nsRecordForms::IndexVersion) + stRow.cIndexKind;
    nsRecordForms::Append(sIndex, static_cast<std::uint64_t>(stRow.nStream), 1);
    nsRecordForms::Append(sIndex, static_cast<std::uint64_t>(stPath.nChannel), 2);
    nsRecordForms::Append(sIndex, nEntries, 4);
    nsRecordForms::Append(sIndex, nsRecordForms::Checksum(sEntries), 2);
    nsRecordForms::Append(sIndex, 0, 6);
    return sIndex + sEntries;
}

std::optional<std::string> CRecordings::m_F_o_Bytes(const stDef_RecordPath& stPath, std::uint64_t nFrom,
                                                    std::uint64_t nLength) const
{
    if (stPath.eFile == emDef_RecordFile::Index) {
        const std::string sIndex = m_F_s_Index(stPath);
        if (sIndex.empty())
            return std::nullopt;
        return sIndex.substr(std::min<std::uint64_t>(nFrom, sIndex.size()), nLength);
    }
    const auto objFile = m_F_o_File(stPath);
    if (!objFile)
        return std::nullopt;
    return stPath.eFile == emDef_RecordFile::Image ? objFile->m_F_s_ImageBytes(nFrom, nLength)
                                                   : objFile->m_F_s_DataBytes(nFrom, nLength);
}
