#include "core/backup/RecordBackupRun.h"

#include <atomic>
#include <mutex>

namespace {

/// One for all backups: a text is set some times a second.
std::mutex& ProgressLock()
{
    static std::mutex s_objLock;
    return s_objLock;
}

/// A copy that shares nothing with the text: what two threads share would be counted outside the lock.
QString Own(const QString& sText)
{
    return QString(sText.constData(), sText.size());
}

} // namespace

void nsRecordBackup::SetRun(bool* pbRun, bool bRun)
{
    std::atomic_ref<bool>(*pbRun).store(bRun, std::memory_order_relaxed);
}

bool nsRecordBackup::Runs(bool* pbRun)
{
    return !pbRun || std::atomic_ref<bool>(*pbRun).load(std::memory_order_relaxed);
}

QString nsRecordBackup::Progress(const QString* psProgress)
{
    const std::lock_guard lock(ProgressLock());
    return psProgress ? Own(*psProgress) : QString();
}

void nsRecordBackup::SetProgress(QString* psProgress, const QString& sText)
{
    const std::lock_guard lock(ProgressLock());
    if (psProgress)
        *psProgress = Own(sText);
}
