#include "records/CRecordFile.h"

#include "records/RecordForms.h"

#include <algorithm>

CRecordFile::CRecordFile(const CRecordTrack& objTrack, std::int64_t nBeginMs, std::int64_t nNowMs, bool bPlaces)
    : vm_objTrack(objTrack),
      vm_nFirst(objTrack.m_F_n_FirstFrom(nBeginMs)),
      vm_nImages(std::min(objTrack.m_F_n_FirstFrom(nBeginMs + s_nSpanMs), objTrack.m_F_n_Complete(nNowMs)) - vm_nFirst),
      vm_bPlaces(bPlaces)
{}

/// Where each image begins in its file, and behind them where the last one ends.
std::vector<std::uint64_t> CRecordFile::m_F_ar_Places() const
{
    std::vector<std::uint64_t> arPlaces{nsRecordForms::HeaderSize + m_F_s_Head().size()};
    for (std::int64_t n = 0; n < vm_nImages; ++n)
        arPlaces.push_back(arPlaces.back() + vm_objTrack.m_F_n_ImageSize(vm_nFirst + n));
    return arPlaces;
}

std::string CRecordFile::m_F_s_Records(std::uint64_t nFirst, std::uint64_t nCount) const
{
    const auto nRecords = static_cast<std::uint64_t>(m_F_n_Records());
    nFirst = std::min(nFirst, nRecords);
    nCount = std::min(nCount, nRecords - nFirst);
    const std::vector<std::uint64_t> arPlaces = vm_bPlaces ? m_F_ar_Places() : std::vector<std::uint64_t>();
    std::string sRecords;
    for (std::uint64_t n = nFirst; n < nFirst + nCount; ++n) {
        const std::uint64_t nImage = n == 0 ? 0 : n - 1; // record 0 is the mark
        const auto nStamp = vm_objTrack.m_F_n_Stamp(vm_nFirst + static_cast<std::int64_t>(nImage));
        nsRecordForms::Append(sRecords, static_cast<std::uint64_t>(nStamp), 8);
        nsRecordForms::Append(sRecords, vm_bPlaces ? arPlaces[nImage] : 0, 4);
        nsRecordForms::Append(sRecords, vm_bPlaces ? arPlaces[nImage + 1] - arPlaces[nImage] : 0, 4);
    }
    return sRecords;
}

std::optional<std::string> CRecordFile::m_F_o_Image(std::uint64_t nRecord) const
{
    if (nRecord >= static_cast<std::uint64_t>(m_F_n_Records()))
        return std::nullopt;
    return vm_objTrack.m_F_s_Image(vm_nFirst + static_cast<std::int64_t>(nRecord == 0 ? 0 : nRecord - 1));
}

std::string CRecordFile::m_F_s_DataBytes(std::uint64_t nFrom, std::uint64_t nLength) const
{
    const std::string sFile = nsRecordForms::Header("RecordDat", nsRecordForms::DataVersion) +
                              m_F_s_Records(0, static_cast<std::uint64_t>(m_F_n_Records()));
    return sFile.substr(std::min<std::uint64_t>(nFrom, sFile.size()), nLength);
}

std::string CRecordFile::m_F_s_ImageBytes(std::uint64_t nFrom, std::uint64_t nLength) const
{
    const std::vector<std::uint64_t> arPlaces = m_F_ar_Places();
    const std::uint64_t nBegin = std::min(nFrom, arPlaces.back());
    const std::uint64_t nEnd = nBegin + std::min(nLength, arPlaces.back() - nBegin);
    std::string sBytes;
    std::uint64_t nAt = nBegin; // where the bytes begin, once whole pieces are collected
    if (nBegin < arPlaces.front()) {
        sBytes = nsRecordForms::Header("RecordImg", nsRecordForms::ImageVersion) + m_F_s_Head();
        nAt = 0;
    } else if (nBegin < nEnd) {
        nAt = *std::prev(std::upper_bound(arPlaces.begin(), arPlaces.end(), nBegin));
    }
    const auto itFirst = std::lower_bound(arPlaces.begin(), arPlaces.end(), nAt);
    for (auto it = itFirst; it < arPlaces.end() - 1 && *it < nEnd; ++it)
        sBytes += vm_objTrack.m_F_s_Image(vm_nFirst + (it - arPlaces.begin()));
    return sBytes.substr(nBegin - nAt, nEnd - nBegin);
}
