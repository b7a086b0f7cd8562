#include <QTemporaryDir>
#include <csignal>
#include <gtest/gtest.h>
#include <set>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "core/backup/CRecordBackupEmbedded.h"

namespace {

/// The virtual recorder, started by hand: beside Qt's processes the thread sanitizer no longer sees the main thread's
/// locks, and reports what they guard.
class RecorderProcess
{
public:
    explicit RecorderProcess(const std::string& sTime)
    {
        int arEnds[2] = {-1, -1};
        EXPECT_EQ(pipe(arEnds), 0);
        vm_nProcess = fork();
        if (vm_nProcess == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            setenv("TSAN_OPTIONS", "report_bugs=0", 1); // its encoder is not ours to look at
            dup2(arEnds[1], STDOUT_FILENO);
            execl(PROGRAM, "virtualnvr", "--record-time", sTime.c_str(), "--channels", "1", nullptr);
            _exit(127);
        }
        close(arEnds[1]);
        std::string sLine;
        for (char c = 0; read(arEnds[0], &c, 1) == 1 && c != '\n';)
            sLine += c;
        vm_nOutput = arEnds[0]; // open as long as it may print
        vm_nPort = sLine.starts_with("http ") ? std::atoi(sLine.c_str() + 5) : 0;
    }
    ~RecorderProcess()
    {
        kill(vm_nProcess, SIGKILL);
        waitpid(vm_nProcess, nullptr, 0);
        close(vm_nOutput);
    }
    RecorderProcess(const RecorderProcess&) = delete;
    RecorderProcess& operator=(const RecorderProcess&) = delete;
    int Port() const { return vm_nPort; }

private:
    pid_t vm_nProcess = -1;
    int vm_nOutput = -1;
    int vm_nPort = 0;
};

} // namespace

/// A backup on a thread of its own, whose text is shown and whose flag is set from another.
TEST(BackupThreads, ShowAndStopABackup)
{
    constexpr std::uint64_t FileMs = 1795479600000;
    const RecorderProcess objRecorder(std::to_string(FileMs + 609000));
    const int nPort = objRecorder.Port();
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
