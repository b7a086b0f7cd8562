#include "core/backup/CRecordPair.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "host/Lib_Bedrock.h"

namespace {

constexpr qint64 HeaderBytes = sizeof(nsRecord::st_FileInfo);
constexpr qint64 RecordBytes = sizeof(nsRecord::st_DatRecord);
constexpr std::int32_t BlockHead = 8;  ///< number and length before an image
constexpr std::int32_t BlockFrame = 9; ///< these and the byte behind it

template <class T>
QByteArray BytesOf(const T& st)
{
    return {reinterpret_cast<const char*>(&st), sizeof st};
}

} // namespace

CRecordPair::CRecordPair(QString sData, QString sImage, std::int16_t nDataVersion, std::int16_t nImageVersion)
    : vm_sData(std::move(sData)),
      vm_sImage(std::move(sImage)),
      vm_nDataVersion(nDataVersion),
      vm_nImageVersion(nImageVersion)
{}

qint64 CRecordPair::s_F_n_Place(std::uint32_t nNumber)
{
    return HeaderBytes + RecordBytes * qint64{nNumber};
}

bool CRecordPair::m_F_b_Exists() const
{
    return QFile::exists(vm_sData) || QFile::exists(vm_sImage);
}

bool CRecordPair::m_F_b_Open()
{
    return vm_objData.m_F_b_Open(vm_sData) && vm_objImage.m_F_b_Open(vm_sImage);
}

void CRecordPair::m_S_Remove()
{
    vm_objData.m_S_Close();
    vm_objImage.m_S_Close();
    CBackupFile::s_S_Remove(vm_sImage);
    CBackupFile::s_S_Remove(vm_sData);
}

/// A version of -1 is one that the recorder did not tell: then any will do.
bool CRecordPair::m_F_b_SoundHeader(CBackupFile& objFile, const char* pszKind, std::int16_t nVersion)
{
    nsRecord::st_FileInfo stInfo;
    const QByteArray sBytes = objFile.m_F_s_ReadAt(0, HeaderBytes);
    if (sBytes.size() != HeaderBytes)
        return false;
    std::memcpy(&stInfo, sBytes.constData(), sizeof stInfo);
    return CRecFunc::s_F_b_ChkFileInfo(&stInfo, pszKind) && (nVersion == -1 || stInfo.nVersion == nVersion);
}

bool CRecordPair::m_F_b_Repair()
{
    const bool bDataFits = m_F_b_SoundHeader(vm_objData, "RecordDat", vm_nDataVersion);
    if (!bDataFits && vm_objData.m_F_n_Size() > 0)
        CSFunc::s_S_Debug("%s s_F_b_ChkFileInfo error", qUtf8Printable(vm_sData));
    const std::vector<st_Record> arRecords = bDataFits ? m_F_ar_Records() : std::vector<st_Record>();
    const bool bNamed =
        std::any_of(arRecords.begin(), arRecords.end(), [](const st_Record& st) { return st.m_F_b_NamesImage(); });
    const bool bImageFits = m_F_b_SoundHeader(vm_objImage, "RecordImg", vm_nImageVersion);
    if (bNamed && !bImageFits)
        CSFunc::s_S_Debug("%s s_F_b_ChkFileInfo error", qUtf8Printable(vm_sImage));
    // Without a sound data file nobody knows what the images are; without a sound image file the records lie.
    if (!bDataFits || (bNamed && !bImageFits))
        return vm_objData.m_F_b_CutTo(0) && vm_objImage.m_F_b_CutTo(0);

    std::uint64_t nImageEnd = 0;
    return vm_objData.m_F_b_CutTo(s_F_n_Place(static_cast<std::uint32_t>(arRecords.size()))) &&
           m_F_b_RepairRecords(nImageEnd) && vm_objImage.m_F_b_CutTo(static_cast<qint64>(nImageEnd));
}

/// @param nImageEnd behind the last byte that a record names; 0 if none names any
bool CRecordPair::m_F_b_RepairRecords(std::uint64_t& nImageEnd)
{
    const auto nSize = static_cast<std::uint64_t>(vm_objImage.m_F_n_Size());
    std::vector<st_Record> arRecords = m_F_ar_Records();
    for (std::uint32_t n = 0; n < arRecords.size(); ++n) {
        st_Record& st = arRecords[n];
        if (!st.m_F_b_NamesImage())
            continue;
        if (st.nOffset < HeaderBytes || st.m_F_n_End() > nSize) {
            // Emptied, not only passed over: images that are appended later would make it look whole.
            st.nOffset = st.nLength = 0;
            if (!m_F_b_WriteRecord(n, st))
                return false;
        }
        nImageEnd = std::max(nImageEnd, st.m_F_b_NamesImage() ? st.m_F_n_End() : 0);
    }
    if (arRecords.empty() || arRecords[0].nStamp == 0)
        return true;
    const st_Record* pLast = &arRecords[0];
    for (const st_Record& st : arRecords)
        if (st.nStamp == arRecords[0].nStamp && st.m_F_b_NamesImage() && st.nOffset > pLast->nOffset)
            pLast = &st;
    return *pLast == arRecords[0] || m_F_b_WriteRecord(0, *pLast);
}

bool CRecordPair::m_F_b_BeginData()
{
    return vm_objData.m_F_n_Size() > 0 ||
           vm_objData.m_F_b_WriteAt(0, BytesOf(CRecFunc::s_F_o_MakeFileInfo(vm_nDataVersion, "RecordDat")));
}

std::uint32_t CRecordPair::m_F_n_Records() const
{
    return static_cast<std::uint32_t>(std::max<qint64>(vm_objData.m_F_n_Size() - HeaderBytes, 0) / RecordBytes);
}

bool CRecordPair::m_F_b_AppendRecords(QByteArray sRecords)
{
    for (qsizetype n = 0; n + RecordBytes <= sRecords.size(); n += RecordBytes)
        std::memset(sRecords.data() + n + sizeof(std::uint64_t), 0, RecordBytes - sizeof(std::uint64_t));
    return vm_objData.m_F_b_Append(sRecords);
}

bool CRecordPair::m_F_b_BeginImages(const QByteArray& sHead)
{
    return vm_objImage.m_F_b_WriteAt(0, BytesOf(CRecFunc::s_F_o_MakeFileInfo(vm_nImageVersion, "RecordImg")) + sHead);
}

std::vector<CRecordPair::st_Record> CRecordPair::m_F_ar_Records()
{
    std::vector<st_Record> arRecords(m_F_n_Records());
    const QByteArray sBytes = vm_objData.m_F_s_ReadAt(HeaderBytes, RecordBytes * static_cast<qint64>(arRecords.size()));
    arRecords.resize(static_cast<std::size_t>(sBytes.size() / RecordBytes));
    if (!arRecords.empty())
        std::memcpy(arRecords.data(), sBytes.constData(), arRecords.size() * sizeof(st_Record));
    return arRecords;
}

std::vector<std::uint32_t> CRecordPair::m_F_ar_Missing(std::uint64_t nStart, std::uint64_t nEnd)
{
    std::vector<std::uint32_t> arMissing;
    vm_nFirstStamp = 0;
    std::uint32_t nNumber = 0;
    for (const st_Record& st : m_F_ar_Records()) {
        if (vm_nFirstStamp == 0 && st.nStamp != 0)
            vm_nFirstStamp = st.nStamp;
        else if (st.nStamp >= nStart && st.nStamp <= nEnd && !st.m_F_b_NamesImage())
            arMissing.push_back(nNumber);
        ++nNumber;
    }
    return arMissing;
}

bool CRecordPair::m_F_b_WriteRecord(std::uint32_t nNumber, const st_Record& stRecord)
{
    return vm_objData.m_F_b_WriteAt(s_F_n_Place(nNumber), BytesOf(stRecord));
}

bool CRecordPair::m_F_b_AppendImages(const std::vector<st_Block>& arBlocks)
{
    std::uint64_t nEnd = static_cast<std::uint64_t>(vm_objImage.m_F_n_Size());
    for (const st_Block& stBlock : arBlocks)
        nEnd += static_cast<std::uint64_t>(stBlock.sImage.size());
    return nEnd <= std::numeric_limits<std::uint32_t>::max() &&
           std::all_of(arBlocks.begin(), arBlocks.end(),
                       [this](const st_Block& stBlock) { return m_F_b_AppendImage(stBlock); });
}

bool CRecordPair::m_F_b_AppendImage(const st_Block& stBlock)
{
    st_Record stRecord;
    const QByteArray sRecord = vm_objData.m_F_s_ReadAt(s_F_n_Place(stBlock.nNumber), RecordBytes);
    if (stBlock.sImage.isEmpty() || sRecord.size() != RecordBytes)
        return stBlock.sImage.isEmpty();
    std::memcpy(&stRecord, sRecord.constData(), sizeof stRecord);
    stRecord.nOffset = static_cast<std::uint32_t>(vm_objImage.m_F_n_Size());
    stRecord.nLength = static_cast<std::uint32_t>(stBlock.sImage.size());
    if (!vm_objImage.m_F_b_Append(stBlock.sImage) || !m_F_b_WriteRecord(stBlock.nNumber, stRecord))
        return false;
    if (stRecord.nStamp != vm_nFirstStamp || vm_nFirstStamp == 0)
        return true;
    // Record 0 mirrors the first picture; one without a stamp mirrors nothing.
    const QByteArray sFirst = vm_objData.m_F_s_ReadAt(HeaderBytes, RecordBytes);
    st_Record stFirst{};
    std::memcpy(&stFirst, sFirst.constData(), sizeof stFirst);
    return stFirst.nStamp == 0 || m_F_b_WriteRecord(0, stRecord);
}

bool CRecordPair::s_F_b_Split(const char* pReply, std::int32_t nSize, std::vector<std::uint32_t> arAsked,
                              std::vector<st_Block>& arBlocks)
{
    arBlocks.clear();
    for (std::int32_t nAt = 0; nAt < nSize;) {
        std::uint32_t nNumber = 0, nLength = 0;
        if (nSize - nAt < BlockFrame)
            return false;
        std::memcpy(&nNumber, pReply + nAt, sizeof nNumber);
        std::memcpy(&nLength, pReply + nAt + sizeof nNumber, sizeof nLength);
        const auto it = std::find(arAsked.begin(), arAsked.end(), nNumber);
        if (it == arAsked.end() || nLength > static_cast<std::uint32_t>(nSize - nAt - BlockFrame))
            return false;
        arAsked.erase(it);
        arBlocks.push_back(
            {nNumber, QByteArray::fromRawData(pReply + nAt + BlockHead, static_cast<qsizetype>(nLength))});
        nAt += BlockFrame + static_cast<std::int32_t>(nLength);
    }
    return true;
}
