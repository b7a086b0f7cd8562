#include <QTemporaryDir>
#include <cstddef>
#include <cstdint>

#include "Expect.h"
#include "core/backup/CBackupNames.h"
#include "core/backup/CRecordPair.h"
#include "host/Lib_Rewind.h"

namespace {

/// A file of these bytes; the same one each time.
QString FileOf(const QByteArray& sBytes, const char* pszName)
{
    static const QTemporaryDir s_dir;
    const QString sPath = s_dir.filePath(QString::fromLatin1(pszName));
    QFile file(sPath);
    Expect(file.open(QIODevice::WriteOnly) && file.write(sBytes) == sBytes.size(), "the file can be written");
    return sPath;
}

void TryIndex(const QByteArray& sBytes)
{
    const QString sFile = FileOf(sBytes, "index");
    const int nKinds = CRecordProfile_V::s_F_n_IsFileIndex(sFile, false) + CRecordProfile_A::s_F_n_IsFileIndex(sFile) +
                       CRecordProfile_T::s_F_n_IsFileIndex(sFile);
    QStringList arNames;
    CRecordProfile::m_S_GetFileNemeFormIndex(sFile, 0, UINT64_MAX, nullptr, arNames);
    Expect(nKinds <= 1, "an index is of one kind");
    Expect(nKinds == 1 || arNames.isEmpty(), "only an index has names");
    for (const QString& s : arNames)
        Expect(CBackupNames::s_F_s_Safe(s).has_value(), "a name of an index is a plain one");
}

void TryReply(const QByteArray& sBytes)
{
    std::vector<CRecordPair::st_Block> arBlocks;
    qsizetype nSum = 0;
    if (!CRecordPair::s_F_b_Split(sBytes.constData(), static_cast<std::int32_t>(sBytes.size()), {0, 1, 2, 3}, arBlocks))
        return;
    for (const CRecordPair::st_Block& st : arBlocks)
        nSum += 9 + st.sImage.size();
    Expect(nSum == sBytes.size(), "a reply is the sum of its blocks");
}

/// A data file and an image file of any bytes: opened, they hold together.
void TryPair(const QByteArray& sData, const QByteArray& sImages)
{
    CRecordPair objPair(FileOf(sData, "pair.dat"), FileOf(sImages, "pair.img"), 1, 0);
    Expect(objPair.m_F_b_Open() && objPair.m_F_b_Repair() && objPair.m_F_b_BeginData(), "any two files can be mended");
    const std::vector<std::uint32_t> arMissing = objPair.m_F_ar_Missing(0, UINT64_MAX);
    Expect(arMissing.size() <= objPair.m_F_n_Records(), "only records can lack an image");
    if (objPair.m_F_b_NeedsHead())
        Expect(objPair.m_F_b_BeginImages("head\n"), "a head can be written");
    for (const std::uint32_t n : arMissing)
        Expect(objPair.m_F_b_AppendImages({{n, "image"}}), "an image can be written");
    Expect(objPair.m_F_ar_Missing(0, UINT64_MAX).empty(), "and then none is missing");
}

} // namespace

/// What a recorder sends of its recordings, and what stands in a backup folder: the first byte says which.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    if (nSize == 0)
        return 0;
    const QByteArray sBytes(reinterpret_cast<const char*>(pData) + 1, static_cast<qsizetype>(nSize - 1));
    switch (pData[0] % 4) {
    case 0:
        TryIndex(sBytes);
        break;
    case 1:
        TryReply(sBytes);
        break;
    case 2:
        TryPair(sBytes.left(sBytes.size() / 2), sBytes.mid(sBytes.size() / 2));
        break;
    default:
        for (const auto& s : {CBackupNames(nullptr).m_F_s_Embedded(sBytes), CBackupNames(nullptr).m_F_s_PC(sBytes)})
            Expect(!s || CBackupNames::s_F_s_Safe(*s) == s, "a local name lies below the target");
    }
    return 0;
}
