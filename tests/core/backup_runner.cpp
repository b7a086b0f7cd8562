#include <QCoreApplication>
#include <cstdio>

#include "core/backup/CRecordBackupEmbedded.h"

/// Backs up: folder, port, first and last time, tracks. Prints its result.
int main(int nCount, char** ppArgs)
{
    QCoreApplication app(nCount, ppArgs);
    const QStringList arArgs = QCoreApplication::arguments();
    QByteArray sTracks = arArgs.value(5).toLatin1(), sChannels = "1";
    stDef_RecordBackupInfo stInfo;
    stInfo.sFolder = arArgs.value(1);
    stInfo.sName = QStringLiteral("backup");
    stInfo.nPort = arArgs.value(2).toInt();
    stInfo.nStart = arArgs.value(3).toULongLong();
    stInfo.nEnd = arArgs.value(4).toULongLong();
    stInfo.pSearch = sTracks.data();
    stInfo.pChannels = sChannels.data();
    stInfo.sIP = QStringLiteral("127.0.0.1");
    stInfo.sUID = QStringLiteral("admin");
    stInfo.sPWD = QStringLiteral("Fl33t!ink");
    CRecordBackup::s_F_o_Clock().fnWait = [](int) {};
    std::printf("result %d\n", CRecordBackupEmbedded(stInfo).m_F_n_Run());
}
