#pragma once

#include <QString>

#include "host/Export.h"

/// The two things of a running record backup that other threads reach: its run flag and its progress text.
namespace nsRecordBackup {

/// Sets the flag of `stDef_RecordBackupInfo::pbRun`: false stops the backup. From any thread.
FLEETLINK_EXPORT void SetRun(bool* pbRun, bool bRun);
/// True while the flag is, and for null. From any thread.
FLEETLINK_EXPORT bool Runs(bool* pbRun);
/// Text of `stDef_RecordBackupInfo::psProgress` as it is now. From any thread.
FLEETLINK_EXPORT QString Progress(const QString* psProgress);
/// Replaces it; null is left alone.
void SetProgress(QString* psProgress, const QString& sText);

} // namespace nsRecordBackup
