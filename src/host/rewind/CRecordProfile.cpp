#include "host/rewind/CRecordProfile.h"

#include <QFile>
#include <algorithm>
#include <cstring>
#include <optional>

#include "host/rewind/CRecFunc.h"

namespace {

constexpr std::uint32_t MaxEntries = 10000;

struct st_IndexHead
{
    nsRecord::st_FileInfo stInfo;
    char cKind; ///< 'V', 'A' or 'T'
    std::uint8_t nStream;
    std::uint16_t nChannel;
    std::uint32_t nEntries;
    std::int16_t nChecksum; ///< of the entries' bytes
    unsigned char arZero[6];
};
static_assert(sizeof(st_IndexHead) == 32);

struct st_IndexEntry
{
    std::uint64_t nFirst;
    std::uint64_t nLast;
    char szName[32];
};
static_assert(sizeof(st_IndexEntry) == 48);

struct st_Index
{
    st_IndexHead stHead{};
    QByteArray sEntries;

    std::uint32_t Count() const { return stHead.nEntries; }
    st_IndexEntry Entry(std::uint32_t n) const
    {
        st_IndexEntry stEntry;
        std::memcpy(&stEntry, sEntries.constData() + std::size_t{n} * sizeof stEntry, sizeof stEntry);
        return stEntry;
    }
};

bool IsName(const st_IndexEntry& stEntry)
{
    const char* pEnd = std::find(std::begin(stEntry.szName), std::end(stEntry.szName), '\0');
    const auto bPlain = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' || c == '-' ||
               c == '_';
    };
    return pEnd != std::begin(stEntry.szName) && pEnd != std::end(stEntry.szName) && stEntry.szName[0] != '.' &&
           std::all_of(std::begin(stEntry.szName), pEnd, bPlain);
}

bool IsTrack(const st_IndexHead& stHead)
{
    return (stHead.cKind == 'V' && stHead.nStream <= 1) ||
           ((stHead.cKind == 'A' || stHead.cKind == 'T') && stHead.nStream == 0);
}

/// The index, if it is sound to its last byte.
std::optional<st_Index> ReadIndex(const QString& sFile)
{
    QFile objFile(sFile);
    st_Index stIndex;
    st_IndexHead& stHead = stIndex.stHead;
    if (!objFile.open(QIODevice::ReadOnly) ||
        objFile.read(reinterpret_cast<char*>(&stHead), sizeof stHead) != qint64{sizeof stHead} ||
        !CRecFunc::s_F_b_ChkFileInfo(&stHead.stInfo, "RecordIdx") || stHead.stInfo.nVersion != 0 || !IsTrack(stHead) ||
        stHead.nEntries > MaxEntries)
        return std::nullopt;
    const qint64 nBytes = qint64{stHead.nEntries} * qint64{sizeof(st_IndexEntry)};
    stIndex.sEntries = objFile.read(nBytes + 1);
    if (stIndex.sEntries.size() != nBytes ||
        CRecFunc::s_F_n_CalChecksum(stIndex.sEntries.constData(), static_cast<std::uint32_t>(nBytes)) !=
            stHead.nChecksum)
        return std::nullopt;
    for (std::uint32_t n = 0; n < stIndex.Count(); ++n)
        if (!IsName(stIndex.Entry(n)))
            return std::nullopt;
    return stIndex;
}

/// Letter of the track in a selection.
char Letter(const st_IndexHead& stHead)
{
    if (stHead.cKind != 'V')
        return stHead.cKind == 'A' ? 'a' : 't';
    return stHead.nStream == 0 ? 'm' : 's';
}

int IsIndexOf(const QString& sFile, char cKind)
{
    const auto stIndex = ReadIndex(sFile);
    return stIndex && stIndex->stHead.cKind == cKind ? 1 : 0;
}

} // namespace

void CRecordProfile::m_S_GetFileNemeFormIndex(const QString& sIndex, std::uint64_t nStart, std::uint64_t nEnd,
                                              const char* pSearch, QStringList& arNames)
{
    arNames.clear();
    const auto stIndex = ReadIndex(sIndex);
    if (!stIndex || (pSearch && *pSearch && !std::strchr(pSearch, Letter(stIndex->stHead))))
        return;
    for (std::uint32_t n = 0; n < stIndex->Count(); ++n) {
        const st_IndexEntry stEntry = stIndex->Entry(n);
        if (stEntry.nFirst <= nEnd && stEntry.nLast >= nStart)
            arNames.append(QString::fromLatin1(stEntry.szName));
    }
    arNames.removeDuplicates();
}

int CRecordProfile_V::s_F_n_IsFileIndex(const QString& sFile, bool bOnlySecondStream)
{
    const auto stIndex = ReadIndex(sFile);
    return stIndex && stIndex->stHead.cKind == 'V' && (!bOnlySecondStream || stIndex->stHead.nStream == 1) ? 1 : 0;
}

int CRecordProfile_A::s_F_n_IsFileIndex(const QString& sFile)
{
    return IsIndexOf(sFile, 'A');
}

int CRecordProfile_T::s_F_n_IsFileIndex(const QString& sFile)
{
    return IsIndexOf(sFile, 'T');
}
