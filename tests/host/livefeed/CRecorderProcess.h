#pragma once

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

/// This program, started once more by hand with "--recorder": beside Qt's processes the thread sanitizer no longer sees
/// the main thread's locks, and reports what they guard.
class CRecorderProcess
{
public:
    CRecorderProcess()
    {
        int arEnds[2] = {-1, -1};
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, arEnds), 0);
        vm_nProcess = fork();
        if (vm_nProcess == 0) {
            setenv("TSAN_OPTIONS", "report_bugs=0", 1);
            dup2(arEnds[1], STDIN_FILENO);
            dup2(arEnds[1], STDOUT_FILENO);
            execl("/proc/self/exe", "recorder", "--recorder", nullptr);
            _exit(127);
        }
        close(arEnds[1]);
        vm_nSocket = arEnds[0];
    }
    ~CRecorderProcess()
    {
        close(vm_nSocket); // the end of its input is the end of the process
        waitpid(vm_nProcess, nullptr, 0);
    }
    CRecorderProcess(const CRecorderProcess&) = delete;
    CRecorderProcess& operator=(const CRecorderProcess&) = delete;

    /// Gives it a line, and takes the number behind "= " that it answers with.
    int Ask(const std::string& sLine)
    {
        const std::string sSent = sLine + '\n';
        std::string sReply;
        char c = 0;
        if (send(vm_nSocket, sSent.data(), sSent.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(sSent.size()))
            while (read(vm_nSocket, &c, 1) == 1 && c != '\n')
                sReply += c;
        return sReply.starts_with("= ") ? std::atoi(sReply.c_str() + 2) : -1;
    }

private:
    pid_t vm_nProcess = -1;
    int vm_nSocket = -1;
};
