#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>

/// Where a request goes, and as whom.
struct stDef_HttpTarget
{
    std::string sHost; ///< name or address; IPv6 without brackets
    std::string sUser;
    std::string sPassword;
    int nPort = 0;

    bool operator==(const stDef_HttpTarget&) const = default;
    /// True if a connection can be made to it: a port, and a host of which no part could be taken for something else.
    bool m_F_b_Valid() const;
};

/// One request.
struct stDef_HttpRequest
{
    std::string sUrl;            ///< relative to the root, without a leading slash
    const char* pBody = nullptr; ///< POST if not null
    std::size_t nBody = 0;
    std::string sExtraHead;                                     ///< further header lines, each ended by CR LF
    std::uint64_t nBodyLimit = 0;                               ///< largest reply, bytes
    std::function<bool(const char*, std::size_t)> sink;         ///< takes the reply; false: no memory
    std::function<void(const std::string& sContentType)> begin; ///< called before the first byte of the reply
};

/// One connection with its login, over libcurl. `m_F_n_Perform`, or `m_F_n_Start` and `m_F_n_Run`, belong to one thread
/// at a time; `m_S_Stop` to any.
class CHttpTransfer
{
public:
    CHttpTransfer();
    ~CHttpTransfer();
    CHttpTransfer(const CHttpTransfer&) = delete;
    CHttpTransfer& operator=(const CHttpTransfer&) = delete;

    /// A whole exchange. The length of the reply, or a `CHTTP::emDef_Result`.
    int m_F_n_Perform(const stDef_HttpTarget& stTarget, stDef_HttpRequest stRequest, int nTimeoutMs);

    /// Begins an exchange that `m_F_n_Run` drives on; ends one that still runs. 0, or a failure.
    int m_F_n_Start(const stDef_HttpTarget& stTarget, stDef_HttpRequest stRequest, int nTimeoutMs);
    /// Drives it until the condition holds (1), the exchange has ended (0, see `m_F_n_Result`), or a failure: time-out
    /// after `nTimeoutMs` or stopped. The exchange goes on after a time-out.
    int m_F_n_Run(const std::function<bool()>& condition, int nTimeoutMs);
    bool m_F_b_Running() const { return vm_bRunning; }
    int m_F_n_Result() const { return vm_nResult; }
    /// Ends what runs and closes the connection.
    void m_S_Reset();

    /// Makes a running exchange return at once with `Result_Stopped`, and every one that is begun before `m_S_Allow`.
    void m_S_Stop();
    void m_S_Allow();

private:
    struct st_Callbacks;

    bool m_F_b_Prepare(const stDef_HttpTarget& stTarget);
    bool m_F_b_SetUrl();
    void m_S_SetBody();
    void m_S_Finish(int nCurlCode);
    void m_S_Collect();

    void* vm_pMulti = nullptr; ///< CURLM; set once, under the mutex
    void* vm_pEasy = nullptr;  ///< CURL
    void* vm_pUrl = nullptr;   ///< CURLU of a URL that the plain form would cut
    void* vm_pHeadLines = nullptr;
    std::mutex vm_objMutex; ///< guards the making of vm_pMulti against m_S_Stop
    std::atomic<bool> vm_bStop{false};

    stDef_HttpTarget vm_stTarget;
    stDef_HttpRequest vm_stRequest;
    std::uint64_t vm_nReceived = 0;
    std::uint64_t vm_nHeadBytes = 0;
    int vm_nAbort = 0; ///< failure that a callback found
    int vm_nResult = 0;
    bool vm_bRunning = false;
    bool vm_bBegun = false;
};
