#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "host/bedrock/CBodyDigest.h"
#include "host/bedrock/stDef_HttpTarget.h"

/// One request. What it points to must live until the exchange has ended.
struct stDef_HttpRequest
{
    std::string sUrl;            ///< relative to the root, without a leading slash
    const char* pBody = nullptr; ///< POST if not null
    std::size_t nBody = 0;
    std::string sExtraHead;                                     ///< further header lines, each ended by CR LF
    std::uint64_t nBodyLimit = 0;                               ///< largest reply in bytes; 0: a stream without end
    std::function<bool(const char*, std::size_t)> sink;         ///< takes the body of a good reply; false: no memory
    std::function<void(const std::string& sContentType)> begin; ///< called before the first byte of it
};

/// One connection with its login, over libcurl. `m_F_n_Perform`, or `m_F_n_Start` and `m_F_n_Run`, belong to one thread
/// at a time; `m_S_Stop` to any. Results are those of `CHTTP::emDef_Result`.
class CHttpTransfer
{
public:
    CHttpTransfer();
    ~CHttpTransfer();
    CHttpTransfer(const CHttpTransfer&) = delete;
    CHttpTransfer& operator=(const CHttpTransfer&) = delete;

    /// A whole exchange within `nTimeoutMs`. The length of the reply's body, or a failure.
    int m_F_n_Perform(const stDef_HttpTarget& stTarget, stDef_HttpRequest stRequest, int nTimeoutMs);

    /// Begins an exchange that `m_F_n_Run` drives on; one that still runs is ended. 0, or a failure.
    int m_F_n_Start(const stDef_HttpTarget& stTarget, stDef_HttpRequest stRequest, int nConnectTimeoutMs);
    /// Drives it until the condition holds (1), the exchange has ended (0, see `m_F_n_Result`), or a failure: time-out
    /// after `nTimeoutMs`, or stopped. The exchange goes on after a time-out.
    int m_F_n_Run(const std::function<bool()>& condition, int nTimeoutMs);
    bool m_F_b_Running() const { return vm_bRunning; }
    int m_F_n_Result() const { return vm_nResult; }
    /// Status of the reply that ended the last exchange; 0 if none came whole.
    int m_F_n_Status() const { return vm_nStatus; }
    /// Time since the server last sent something, or since the begin of the exchange.
    std::chrono::milliseconds m_F_n_Silence() const { return ToMs(Clock::now() - vm_nLastByte); }
    /// Ends what runs. Unless it had ended by itself, its connection is closed.
    void m_S_Cancel();
    /// Ends what runs, closes the connection and forgets the login.
    void m_S_Reset();

    /// Makes a running exchange return at once with `Result_Stopped`, and every one that is begun before `m_S_Allow`.
    void m_S_Stop();
    void m_S_Allow();

private:
    using Clock = std::chrono::steady_clock;
    struct st_Handles;
    struct st_Callbacks;

    static std::chrono::milliseconds ToMs(Clock::duration n) { return std::chrono::ceil<std::chrono::milliseconds>(n); }

    bool m_F_b_Prepare(const stDef_HttpTarget& stTarget);
    bool m_F_b_MakeEasy();
    bool m_F_b_Launch();
    bool m_F_b_SetUrl();
    void m_S_SetBody();
    void m_S_SetLogin();
    std::string m_F_s_OwnLogin();
    void m_S_OnHeadLine(std::string_view sLine);
    bool m_F_b_OwnLogin() const { return vm_objDigest && vm_stRequest.pBody; }
    void m_S_Collect();
    void m_S_Finish(int nCurlCode);
    int m_F_n_Judge(int nCurlCode) const;
    int m_F_n_ReplyStatus() const;
    bool m_F_b_GoodStatus() const;

    std::unique_ptr<st_Handles> vm_pHandles; ///< made and dropped under the mutex
    std::mutex vm_objMutex;
    std::atomic<bool> vm_bStop{false};

    stDef_HttpTarget vm_stTarget;
    stDef_HttpRequest vm_stRequest;
    std::string vm_sRoot;
    std::optional<CBodyDigest> vm_objOffered; ///< of the head that came last
    std::optional<CBodyDigest> vm_objDigest;  ///< login of requests with a body, where libcurl has none for them
    std::uint64_t vm_nReceived = 0;           ///< bytes of the body
    std::uint64_t vm_nHeadBytes = 0;          ///< of the exchange, log-in included
    Clock::time_point vm_nLastByte;
    int vm_nConnectTimeoutMs = 0;
    int vm_nAbort = 0; ///< failure that a callback found
    int vm_nResult = 0;
    int vm_nStatus = 0;
    bool vm_bRunning = false;
    bool vm_bWholeHead = false;   ///< the line that came last was the blank one behind a head
    bool vm_bChallenged = false;  ///< the server asked for a login in this exchange
    bool vm_bAskedBefore = false; ///< it did so in an earlier one of the same handle
    bool vm_bBegun = false;       ///< a byte of the body has come
    bool vm_bRefused = false;     ///< the head that came last is that of a 401
    bool vm_bDigestSeen = false;  ///< a line of it offers a Digest; the first one counts
    bool vm_bAnswers = false;     ///< the exchange was broken off to answer `vm_objOffered`
    bool vm_bAnswered = false;    ///< that was done once
    bool vm_bSent = false;        ///< a request went out that no 401 has answered
};
