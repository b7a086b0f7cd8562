#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <functional>

/// The file layer of record backups. What it writes is handed to the kernel at once; each change of the disk is a step
/// at which a test can stop the run. An object is used by one thread at a time.
class CBackupFile
{
public:
    /// Called before each step, of a write also when half of its bytes are written; false makes the step fail as a full
    /// disk would. Null, as it is outside tests: nothing is called.
    static void s_S_SetStepHook(std::function<bool()> fnHook);

    /// Opens for reading and writing; made if missing, kept if not.
    bool m_F_b_Open(const QString& sPath);
    void m_S_Close() { vm_objFile.close(); }

    qint64 m_F_n_Size() const { return vm_objFile.size(); }
    /// The bytes from there on; fewer at the end of the file.
    QByteArray m_F_s_ReadAt(qint64 nPos, qint64 nCount);
    /// False if not all of it could be written.
    bool m_F_b_WriteAt(qint64 nPos, const QByteArray& sBytes);
    bool m_F_b_Append(const QByteArray& sBytes) { return m_F_b_WriteAt(m_F_n_Size(), sBytes); }
    /// Cuts what lies behind; nothing if the file isn't longer.
    bool m_F_b_CutTo(qint64 nSize);
    /// Brings it to the disk.
    bool m_F_b_Sync();

    /// Gives a whole file its final name: it is brought to the disk, and takes the place of what stood there at once.
    static bool s_F_b_Place(const QString& sFrom, const QString& sTo);
    /// Writes a small file by a temporary one beside it.
    static bool s_F_b_WriteWhole(const QString& sPath, const QByteArray& sBytes);
    /// Removes a file, if it is there.
    static void s_S_Remove(const QString& sPath);

private:
    QFile vm_objFile;
};
