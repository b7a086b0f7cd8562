#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <mutex>
#include <string>
#include <vector>

/// One request as the recorder saw it. Never holds the value of an Authorization header.
struct stDef_LogEntry
{
    std::uint64_t nSequence = 0;   ///< from 1
    std::uint64_t nConnection = 0; ///< number of the TCP connection, from 1
    std::string sMethod;
    std::string sTarget; ///< as it stood in the request line
    std::string sScheme; ///< of the Authorization header; empty if none came
    std::string sFault;  ///< name of the fault that was played; empty for none
    std::string sBody;   ///< at most CRequestLog::MaxBody bytes of it; none if the reply is 401; the oldest go in time
    int nStatus = 0;     ///< of the reply; 0 if there was none
    std::uint64_t nBytesIn = 0;  ///< of the request's body
    std::uint64_t nBytesOut = 0; ///< of the reply, head included; known at its end
    bool bDone = false;          ///< the reply has ended, or the connection
};

/// The requests that a recorder got. One is there as soon as its head is read; its body and the status are there
/// before the client sees the first byte of the reply. Thread-safe.
class CRequestLog
{
public:
    static constexpr std::size_t MaxBody = 1u << 20;
    static constexpr std::size_t MaxBodies = 64u << 20; ///< bytes of all bodies held
    static constexpr std::size_t MaxEntries = 10000;    ///< the oldest go first

    /// Returns the sequence number that the entry got.
    std::uint64_t m_F_n_Add(stDef_LogEntry stEntry);
    /// Puts the entry in place of the one of the same sequence number, unless that is gone.
    void m_S_Update(const stDef_LogEntry& stEntry);
    std::vector<stDef_LogEntry> m_F_ar_Entries() const;
    std::size_t m_F_n_Count() const; ///< of the entries held
    void m_S_Clear();
    /// Waits until an entry meets the condition, one that is there already included; false after `nTimeoutMs`.
    bool m_F_b_Wait(const std::function<bool(const stDef_LogEntry&)>& condition, int nTimeoutMs) const;
    /// Also writes a line at the end of each request, with passwords in the target masked; null ends it.
    void m_S_SetEcho(std::ostream* pStream);

    /// The target with the value of a password-like key replaced, up to what follows a camera's password or to the end,
    /// and with the account of a whole URL replaced.
    static std::string s_F_s_Masked(const std::string& sTarget);

private:
    void m_S_Echo(const stDef_LogEntry& stEntry);
    void m_S_DropOldBodies();

    mutable std::mutex vm_objMutex;
    mutable std::condition_variable vm_objChanged;
    std::vector<stDef_LogEntry> vm_arEntries; ///< by sequence number
    std::size_t vm_nBodyBytes = 0;
    std::uint64_t vm_nSequence = 0;
    std::ostream* vm_pEcho = nullptr;
};
