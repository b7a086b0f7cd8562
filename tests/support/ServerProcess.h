#pragma once

#include <QProcess>
#include <csignal>
#include <string>
#include <sys/prctl.h>
#include <vector>

/// A shipped program (PROGRAM) as a process of its own, whose memory and threads are not ours. It ends with this
/// object.
class ServerProcess
{
public:
    explicit ServerProcess(const std::vector<std::string>& arArguments)
    {
        QStringList arTexts;
        for (const std::string& sArgument : arArguments)
            arTexts.append(QString::fromStdString(sArgument));
        vm_process.setProcessChannelMode(QProcess::MergedChannels);
        vm_process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); }); // also where the test is killed
        vm_process.start(QStringLiteral(PROGRAM), arTexts);
    }
    ~ServerProcess() { End(SIGKILL); }

    /// Number behind "<word> " in what the program printed; waits for it. 0: the program ended, or the limit passed.
    int Printed(const std::string& sWord)
    {
        std::size_t nLine = 0;
        while ((nLine = vm_sPrinted.find(sWord + ' ')) == std::string::npos ||
               vm_sPrinted.find('\n', nLine) == std::string::npos)
            if (!ReadMore())
                return 0;
        return std::atoi(vm_sPrinted.c_str() + nLine + sWord.size());
    }
    /// Gives it a line, and takes the number behind "= " that it answers with.
    int Ask(const std::string& sLine)
    {
        vm_sPrinted.clear();
        vm_process.write((sLine + '\n').c_str());
        return Printed("=");
    }
    bool Runs() { return !vm_process.waitForFinished(0); }
    std::string AllPrinted()
    {
        while (ReadMore())
            ;
        return vm_sPrinted;
    }
    /// Exit code, or minus the signal that ended it. Signal 0 only waits.
    int End(int nSignal)
    {
        if (nSignal && vm_process.processId())
            ::kill(static_cast<pid_t>(vm_process.processId()), nSignal);
        vm_process.waitForFinished();
        return vm_process.exitStatus() == QProcess::CrashExit ? -vm_process.exitCode() : vm_process.exitCode();
    }

private:
    bool ReadMore()
    {
        constexpr int LimitMs = 30000;
        const bool bMore = vm_process.bytesAvailable() > 0 || vm_process.waitForReadyRead(LimitMs);
        vm_sPrinted += vm_process.readAll().toStdString();
        return bMore;
    }

    QProcess vm_process;
    std::string vm_sPrinted;
};
