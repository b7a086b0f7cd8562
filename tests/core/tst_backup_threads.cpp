#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <set>
#include <thread>

#include "core/backup/CRecordBackupEmbedded.h"
#include "support/ServerProcess.h"

/// A backup on a thread of its own, whose text is shown and whose flag is set from another.
TEST(BackupThreads, ShowAndStopABackup)
{
    constexpr std::uint64_t FileMs = 1795479600000;
    qputenv("TSAN_OPTIONS", "report_bugs=0"); // of the recorder: its encoder is not ours to look at
    ServerProcess objRecorder({"--record-time", std::to_string(FileMs + 609000), "--channels", "1"});
    const int nPort = objRecorder.Printed("http");
    ASSERT_GT(nPort, 0);
    QTemporaryDir dir;
    QString sProgress;
    bool bRun = true;
    char szAll[] = "", szChannels[] = "1";
    const auto Begin = [&](int& nResult) {
        return std::thread([&] {
            stDef_RecordBackupInfo stInfo;
            stInfo.sFolder = dir.path();
            stInfo.sName = QStringLiteral("backup");
            stInfo.nStart = FileMs;
            stInfo.nEnd = FileMs + 60000;
            stInfo.pSearch = szAll;
            stInfo.pChannels = szChannels;
            stInfo.sIP = QStringLiteral("127.0.0.1");
            stInfo.sUID = QStringLiteral("admin");
            stInfo.sPWD = QStringLiteral("Fl33t!ink");
            stInfo.nPort = nPort;
            stInfo.psProgress = &sProgress;
            stInfo.pbRun = &bRun;
            nResult = CRecordBackupEmbedded(stInfo).m_F_n_Run();
        });
    };
    int nResult = -1;
    std::thread objStopped = Begin(nResult);
    while (!nsRecordBackup::Progress(&sProgress).contains(u'%'))
        std::this_thread::yield();
    nsRecordBackup::SetRun(&bRun, false);
    objStopped.join();
    EXPECT_EQ(nResult, 0) << "other index files were to follow";

    bRun = true;
    std::atomic<bool> bDone{false};
    std::set<QString> arTexts;
    std::thread objWatch([&] {
        while (!bDone)
            arTexts.insert(nsRecordBackup::Progress(&sProgress));
    });
    Begin(nResult).join();
    bDone = true;
    objWatch.join();
    EXPECT_EQ(nResult, 1);
    EXPECT_GT(arTexts.size(), 10u);
}
