#pragma once

#include <cstdint>

#include "core/backup/CRecordBackup.h"

class CRecordPair;

/// Backup from a recorder appliance: index by index, and record by record, so that a later run goes on where this one
/// ended.
class CRecordBackupEmbedded : public CRecordBackup
{
public:
    using CRecordBackup::CRecordBackup;

    static constexpr std::int16_t g_nFileVerRecDat = 1; ///< newest form of data files that is known here
    static constexpr std::int16_t g_nFileVerRecImg = 0;

private:
    void m_S_BeforeConnect() override;
    bool m_F_b_TakeList(const QByteArray& sList) override;
    std::optional<QString> m_F_s_LocalName(const QByteArray& sRemote) const override
    {
        return vm_objNames.m_F_s_Embedded(sRemote);
    }
    emDef_Step m_F_n_FetchIndex(const QByteArray& sRemote, const QString& sIndex) override;
    emDef_Step m_F_n_TransferFiles(const stDef_Files& stFiles) override;
    QString m_F_s_TemporaryEnding() const override { return QStringLiteral(".index"); }

    bool m_F_b_VersionsKnown() const;
    emDef_Step m_F_n_FetchRecords(CRecordPair& objPair, const QByteArray& sRemote);
    emDef_Step m_F_n_FetchHead(CRecordPair& objPair, const QByteArray& sRemote);
    emDef_Step m_F_n_FetchImages(CRecordPair& objPair, const QByteArray& sRemote);

    std::int16_t vm_nFileVerDat = -1;
    std::int16_t vm_nFileVerImg = -1;
    bool vm_bOnlyRecSecondStream = false;
};
