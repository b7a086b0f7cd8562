#pragma once

#include <sys/types.h>

#include <string>

/// A virtual recorder in a process of its own: this program, started once more. So the thread sanitizer sees the client
/// alone; it knows nothing of how GLib's threads agree, and would report the server's at every turn.
class CRecorderProcess
{
public:
    static constexpr const char* OddPassword = "p@s/s?w#o:r%41 d@h/x"; ///< of the account "odd"

    CRecorderProcess() = default;
    ~CRecorderProcess(); ///< ends it
    CRecorderProcess(const CRecorderProcess&) = delete;
    CRecorderProcess& operator=(const CRecorderProcess&) = delete;

    bool m_F_b_Start();
    int m_F_n_HttpPort() const { return vm_nHttpPort; }
    int m_F_n_RtspPort() const { return vm_nRtspPort; }

    /// As `CStreamServer` has them; the fault is in force, and the count taken, when the call returns.
    bool m_F_b_SetFault(const std::string& sMount, const std::string& sName, long nArg);
    int m_F_n_Sessions();

    /// The other process's main function.
    static int s_F_n_Main();

private:
    long m_F_n_Ask(const std::string& sLine);

    pid_t vm_nProcess = -1;
    int vm_nSocket = -1;
    int vm_nHttpPort = 0;
    int vm_nRtspPort = 0;
};
