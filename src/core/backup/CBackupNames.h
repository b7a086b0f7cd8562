#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <optional>
#include <utility>

/// Where a remote file of a record backup goes: names below the target folder, with '/' between their parts. Remote
/// names are hostile input, so every name that leaves this class lies below the target.
class CBackupNames
{
public:
    /// @param pFolderMap items "old_new", of which the folder old becomes new; may be null
    explicit CBackupNames(const QStringList* pFolderMap);

    /// Local name of an index file of an embedded recorder: its disk's folder and the last three parts of its path.
    /// Nothing if it has no such parts, or isn't safe.
    std::optional<QString> m_F_s_Embedded(const QByteArray& sRemote) const;
    /// The same of a PC recorder: the folder of its drive, and the last three parts.
    std::optional<QString> m_F_s_PC(const QByteArray& sRemote) const;

    /// Text of a remote name: UTF-8 where it is that, else byte by byte, so that two names never become one.
    static QString s_F_s_Text(const QByteArray& sRemote);
    /// The name with '/' between its parts, if it stays where it belongs: no part is empty, "." or "..", or has a NUL
    /// or a ':' in it.
    static std::optional<QString> s_F_s_Safe(QString sName);
    /// Path of the file `sName` in the same remote folder, with the separator that this path has.
    static QByteArray s_F_s_Beside(const QByteArray& sRemote, const QString& sName);
    /// The name with the extension "dat" instead of its own.
    static QString s_F_s_DataName(const QString& sName);

private:
    std::optional<QString> m_F_s_Local(const QString& sHead, const QString& sRest) const;

    QList<std::pair<QString, QString>> vm_arMap; ///< each side with a '/' before and behind it
};
