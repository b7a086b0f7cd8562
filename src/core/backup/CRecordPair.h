#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <vector>

#include "core/backup/CBackupFile.h"
#include "host/Lib_Rewind.h"

/// A data file and its image file on the local disk. `m_F_b_Repair` mends what a killed run left; what is written keeps
/// an order from which that is always possible: image bytes, then the record that names them, then record 0.
class CRecordPair
{
public:
    /// One block of a reply with images; the bytes are the reply's.
    struct st_Block
    {
        std::uint32_t nNumber;
        QByteArray sImage;
    };

    CRecordPair(QString sData, QString sImage, std::int16_t nDataVersion, std::int16_t nImageVersion);

    /// True if both files or one of them are there.
    bool m_F_b_Exists() const;
    /// Opens both, which makes them if need be. False if one can't be opened.
    bool m_F_b_Open();
    /// Mends what a killed run left, so that every record names whole image bytes or none. Before anything else.
    bool m_F_b_Repair();
    /// Removes both.
    void m_S_Remove();
    /// Brings both to the disk.
    bool m_F_b_Sync() { return vm_objData.m_F_b_Sync() && vm_objImage.m_F_b_Sync(); }

    /// Writes the data file's header if the file is empty.
    bool m_F_b_BeginData();
    std::uint32_t m_F_n_Records() const;
    /// Appends records, whole ones. Places that a recorder sends are those of its own file: they are dropped.
    bool m_F_b_AppendRecords(QByteArray sRecords);

    /// True if the image file has neither header nor head yet.
    bool m_F_b_NeedsHead() const { return vm_objImage.m_F_n_Size() == 0; }
    bool m_F_b_BeginImages(const QByteArray& sHead);
    /// Numbers of the records from `nStart` to `nEnd` whose image isn't there. The first record with a stamp is none of
    /// them: it mirrors the later one that has its stamp.
    std::vector<std::uint32_t> m_F_ar_Missing(std::uint64_t nStart, std::uint64_t nEnd);
    /// Appends the images and notes their places. False if that failed, or if the file would pass 4 GiB.
    bool m_F_b_AppendImages(const std::vector<st_Block>& arBlocks);

    /// The blocks of a reply to these numbers. False if it is no sum of blocks, or has one that wasn't asked for or
    /// that comes twice.
    static bool s_F_b_Split(const char* pReply, std::int32_t nSize, std::vector<std::uint32_t> arAsked,
                            std::vector<st_Block>& arBlocks);

private:
    using st_Record = nsRecord::st_DatRecord;

    bool m_F_b_SoundHeader(CBackupFile& objFile, const char* pszKind, std::int16_t nVersion);
    bool m_F_b_RepairRecords(std::uint64_t& nImageEnd);
    std::vector<st_Record> m_F_ar_Records();
    bool m_F_b_WriteRecord(std::uint32_t nNumber, const st_Record& stRecord);
    bool m_F_b_AppendImage(const st_Block& stBlock);
    static qint64 s_F_n_Place(std::uint32_t nNumber);

    QString vm_sData, vm_sImage;
    std::int16_t vm_nDataVersion, vm_nImageVersion;
    CBackupFile vm_objData, vm_objImage;
    std::uint64_t vm_nFirstStamp = 0;
};
