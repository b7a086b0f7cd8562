#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>

/// One record backup: which records, from where, and where to. Pointers stay the caller's for the whole call.
struct stDef_RecordBackupInfo
{
    QString sFolder;                   ///< local base folder
    QString sName;                     ///< sub-folder of this backup
    std::uint64_t nStart = 0;          ///< first time of the span, ms
    std::uint64_t nEnd = 0;            ///< last time of the span, ms
    char* pSearch = nullptr;           ///< selection handed on to the record search
    char* pChannels = nullptr;         ///< channel mask: '1' at index c if channel c is wanted
    std::int64_t nReserved = 0;        ///< kept, not read
    QString sIP;                       ///< recorder's address
    QString sUID;                      ///< account name
    QString sPWD;                      ///< account password, in clear
    int nPort = 0;                     ///< recorder's port for requests and record transfer
    QStringList* pFolderMap = nullptr; ///< folder renames "old_new"; may be null
    QString* psProgress = nullptr;     ///< receives the progress text; may be null
    bool* pbRun = nullptr;             ///< run flag; the host sets it to false to stop
};
