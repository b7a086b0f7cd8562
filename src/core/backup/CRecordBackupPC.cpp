#include "core/backup/CRecordBackupPC.h"

#include <QFileInfo>
#include <cstdlib>
#include <cstring>

#include "core/backup/CBackupFile.h"
#include "host/Lib_Bedrock.h"

bool CRecordBackupPC::m_F_b_TakeList(const QByteArray& sList)
{
    QByteArray sLines = sList;
    for (const QByteArray& sLine : sLines.replace('\r', '\n').split('\n'))
        if (!sLine.isEmpty() && m_F_b_Wanted(sLine))
            vm_arRemote.append(sLine);
    return true;
}

/// The path's first folder "CH" with a number tells the channel. The mask ends with its zero character.
bool CRecordBackupPC::m_F_b_Wanted(const QByteArray& sRemote) const
{
    const qsizetype nAt = sRemote.indexOf("\\CH");
    const char* pszNumber = nAt < 0 ? "" : sRemote.constData() + nAt + 3;
    if (*pszNumber < '0' || *pszNumber > '9' || !vm_stInfo.pChannels)
        return false;
    const unsigned long nChannel = std::strtoul(pszNumber, nullptr, 10);
    return nChannel < std::strlen(vm_stInfo.pChannels) && vm_stInfo.pChannels[nChannel] == '1';
}

CRecordBackup::emDef_Step CRecordBackupPC::m_F_n_Copy(const QByteArray& sRemote, const QString& sLocal)
{
    const QString sTemporary = sLocal + m_F_s_TemporaryEnding();
    m_S_Progress(s_F_s_FileName(sLocal));
    const emDef_Step nStep = m_F_n_Fetch(sRemote, sTemporary);
    if (nStep != emDef_Step::Done)
        return nStep;
    return CBackupFile::s_F_b_Place(sTemporary, sLocal) ? emDef_Step::Done : emDef_Step::Failed;
}

CRecordBackup::emDef_Step CRecordBackupPC::m_F_n_FetchIndex(const QByteArray& sRemote, const QString& sIndex)
{
    const bool bNew = !QFileInfo::exists(sIndex);
    if (m_F_n_Copy(sRemote, sIndex) != emDef_Step::Done)
        return emDef_Step::Failed;
    if (bNew) // what stood here before is no failure's to delete
        vm_arOpenWork.append(sIndex);
    return emDef_Step::Done;
}

CRecordBackup::emDef_Step CRecordBackupPC::m_F_n_TransferFiles(const stDef_Files& stFiles)
{
    const emDef_Step nStep = m_F_n_Copy(stFiles.sRemoteImage, stFiles.sImage);
    return nStep == emDef_Step::Done ? m_F_n_Copy(stFiles.sRemoteData, stFiles.sData) : nStep;
}
