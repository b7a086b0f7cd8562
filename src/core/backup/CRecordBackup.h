#pragma once

#include <QByteArray>
#include <QList>
#include <QSet>
#include <QStringList>
#include <functional>
#include <memory>
#include <optional>

#include "core/backup/CBackupNames.h"
#include "core/backup/RecordBackupRun.h"
#include "core/stDef_RecordBackupInfo.h"
#include "host/Lib_Rewind.h"

/// One record backup: what the transfers of both kinds of recorder share. An object lives for one call and belongs to
/// the thread of that call, which may be any.
class CRecordBackup
{
public:
    /// What a backup has of time; a test replaces it.
    struct stDef_Clock
    {
        std::function<std::uint64_t()> fnTickMs; ///< names the probe file
        std::function<void(int nMs)> fnWait;
    };
    static stDef_Clock& s_F_o_Clock();

    explicit CRecordBackup(stDef_RecordBackupInfo stInfo);
    virtual ~CRecordBackup();
    CRecordBackup(const CRecordBackup&) = delete;
    CRecordBackup& operator=(const CRecordBackup&) = delete;

    /// The whole backup: 1 if it finished, or was stopped within its last index file; 0 if it failed or was stopped.
    int m_F_n_Run();

protected:
    /// What became of one step of the transfer.
    enum class emDef_Step
    {
        Done,
        Skipped, ///< nothing was to be had of it; the next one follows
        Stopped, ///< the run flag ended it
        Failed
    };

    bool m_F_b_Runs() const { return nsRecordBackup::Runs(vm_stInfo.pbRun); }
    void m_S_Progress(const QString& sText) { nsRecordBackup::SetProgress(vm_stInfo.psProgress, sText); }
    /// Path of a name below the target folder.
    QString m_F_s_Local(const QString& sName) const { return vm_sTarget + u'/' + sName; }
    static QString s_F_s_FileName(const QString& sPath);
    /// Waits for the oldest request.
    emDef_Step m_F_n_Collect(char** ppData = nullptr, std::int32_t* pnSize = nullptr);
    /// Fetches a remote file under a temporary name; its folder is made.
    emDef_Step m_F_n_Fetch(const QByteArray& sRemote, const QString& sTemporary);
    /// GET of one of the recorder's documents, as it comes; nothing if it can't be had or the run flag ended it.
    QByteArray m_F_s_GetDocument(const QByteArray& sUrl);

    /// An image file and its data file, on the recorder and as local paths.
    struct stDef_Files
    {
        QByteArray sRemoteImage, sRemoteData;
        QString sImage, sData;
    };

    stDef_RecordBackupInfo vm_stInfo;
    CBackupNames vm_objNames;
    QString vm_sTarget;
    std::unique_ptr<CRPBProc> vm_pProc;
    QList<QByteArray> vm_arRemote; ///< index files to fetch, in the recorder's order
    QStringList vm_arOpenWork;     ///< what a failure deletes

private:
    /// Asked before the connection is made.
    virtual void m_S_BeforeConnect() {}
    /// Takes the list that the recorder sent into `vm_arRemote`. False ends the backup.
    virtual bool m_F_b_TakeList(const QByteArray& sList) = 0;
    /// Name of an index file below the target folder; nothing if it isn't safe.
    virtual std::optional<QString> m_F_s_LocalName(const QByteArray& sRemote) const = 0;
    /// Fetches an index file, which takes its name only when it is whole. A stop in it is one between index files: the
    /// transfer hasn't finished.
    virtual emDef_Step m_F_n_FetchIndex(const QByteArray& sRemote, const QString& sIndex) = 0;
    virtual emDef_Step m_F_n_TransferFiles(const stDef_Files& stFiles) = 0;
    /// Ending of the temporary names of this kind. No file keeps a name that ends so: a later run removes it.
    virtual QString m_F_s_TemporaryEnding() const = 0;

    bool m_F_b_Prepare();
    bool m_F_b_FetchList();
    bool m_F_b_TransferAll();
    emDef_Step m_F_n_Transfer(const QByteArray& sRemote);
    bool m_F_b_Takes(const QString& sIndexName, const QString& sFolder, const QString& sFile);
    bool m_F_b_WriteZone();
    void m_S_RemoveLeftovers();
    void m_S_RemoveOpenWork();

    QSet<QString> vm_arSeen; ///< data files of this run: two names that share one are one
};
