#pragma once

#include "core/backup/CRecordBackup.h"

/// Backup from a recorder that is software on a PC: a plain copy of its files.
class CRecordBackupPC : public CRecordBackup
{
public:
    using CRecordBackup::CRecordBackup;

private:
    bool m_F_b_TakeList(const QByteArray& sList) override;
    std::optional<QString> m_F_s_LocalName(const QByteArray& sRemote) const override
    {
        return vm_objNames.m_F_s_PC(sRemote);
    }
    emDef_Step m_F_n_FetchIndex(const QByteArray& sRemote, const QString& sIndex) override;
    emDef_Step m_F_n_TransferFiles(const stDef_Files& stFiles) override;
    QString m_F_s_TemporaryEnding() const override { return QStringLiteral(".part"); }

    bool m_F_b_Wanted(const QByteArray& sRemote) const;
    /// Fetches a file whole; only then it takes its name.
    emDef_Step m_F_n_Copy(const QByteArray& sRemote, const QString& sLocal);
};
