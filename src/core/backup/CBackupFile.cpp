#include "core/backup/CBackupFile.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "host/Lib_Rewind.h"

namespace {

std::function<bool()>& Hook()
{
    static std::function<bool()> s_fnHook;
    return s_fnHook;
}

bool Step()
{
    return !Hook() || Hook()();
}

std::filesystem::path NativePath(const QString& sPath)
{
    return std::filesystem::path(sPath.toStdU16String());
}

} // namespace

void CBackupFile::s_S_SetStepHook(std::function<bool()> fnHook)
{
    Hook() = std::move(fnHook);
}

bool CBackupFile::m_F_b_Open(const QString& sPath)
{
    m_S_Close();
    vm_objFile.setFileName(sPath);
    return Step() && vm_objFile.open(QIODevice::ReadWrite | QIODevice::Unbuffered);
}

QByteArray CBackupFile::m_F_s_ReadAt(qint64 nPos, qint64 nCount)
{
    return vm_objFile.seek(nPos) ? vm_objFile.read(nCount) : QByteArray();
}

bool CBackupFile::m_F_b_WriteAt(qint64 nPos, const QByteArray& sBytes)
{
    if (!Step() || !vm_objFile.seek(nPos))
        return false;
    qint64 nWritten = 0;
    if (Hook()) { // a kill may come in the middle, too
        nWritten = vm_objFile.write(sBytes.constData(), sBytes.size() / 2);
        if (nWritten < 0 || !Step())
            return false;
    }
    return nWritten + vm_objFile.write(sBytes.constData() + nWritten, sBytes.size() - nWritten) == sBytes.size();
}

bool CBackupFile::m_F_b_CutTo(qint64 nSize)
{
    return m_F_n_Size() <= nSize || (Step() && vm_objFile.resize(nSize));
}

bool CBackupFile::m_F_b_Sync()
{
    return Step() && CRecFunc::s_F_b_Sync(vm_objFile);
}

bool CBackupFile::s_F_b_Place(const QString& sFrom, const QString& sTo)
{
    CBackupFile objFile;
    if (!objFile.m_F_b_Open(sFrom) || !objFile.m_F_b_Sync())
        return false;
    objFile.m_S_Close(); // an open file can't be renamed everywhere
    std::error_code objError;
    if (Step())
        std::filesystem::rename(NativePath(sFrom), NativePath(sTo), objError);
    else
        objError = std::make_error_code(std::errc::no_space_on_device);
    return !objError;
}

bool CBackupFile::s_F_b_WriteWhole(const QString& sPath, const QByteArray& sBytes)
{
    const QString sTemporary = sPath + QStringLiteral(".part");
    CBackupFile objFile;
    return objFile.m_F_b_Open(sTemporary) && objFile.m_F_b_CutTo(0) && objFile.m_F_b_WriteAt(0, sBytes) &&
           s_F_b_Place(sTemporary, sPath);
}

void CBackupFile::s_S_Remove(const QString& sPath)
{
    if (Step())
        QFile::remove(sPath);
}
