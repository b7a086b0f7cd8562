#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include "host/Export.h"

/// A file with a type of opening. The file class's own operations (`close`, `write`, `seek`, ...) apply to it.
/// An object is used by one thread at a time.
class LIB_BEDROCK_EXPORT CFileRW : public QFile
{
public:
    enum emDef_OpenType
    {
        OpenType_Read = 0,     ///< the file must exist
        OpenType_Write = 1,    ///< made if missing, emptied if not
        OpenType_ReadWrite = 2 ///< made if missing, kept if not
    };

    /// Opens the file at once unless the path (in the plain code page) is empty.
    explicit CFileRW(const QByteArray& sPath = {}, emDef_OpenType nType = OpenType_Read);
    ~CFileRW() override; ///< closes if open

    /// Opens the file, after closing one that is open. Returns 1, or 0 if it can't be opened.
    int m_F_n_Open(const QString& sPath, emDef_OpenType nType);
    /// Reads up to `nCount` bytes; returns how many there were, 0 at the end, on an error and while closed.
    quint32 m_F_n_Read(void* pBuffer, quint32 nCount);
};
