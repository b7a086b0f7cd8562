#pragma once

#include <QByteArray>
#include <cstdint>
#include <memory>

#include "host/Export.h"

class CMemManage;

/// HTTP client that logs in with an account, by Basic or Digest as the server asks for it.
///
/// URLs are relative to the server's root, without a leading slash, and go out as they are given: only bytes that can't
/// stand in a request line (blanks, controls, '"', 0x7F and up) are percent-encoded; a '#' is sent (escapes that stand
/// on the same side of the '?' may then change to small letters). Logins are kept from request to request to the same
/// host, port and account, and connections for 3 s. A time-out is in ms and holds for the whole exchange, whatever the
/// server does; 0 or less fails at once. Redirections are not followed, and no proxy is used. Nothing is sent twice,
/// but for a request that the server answers with "log in": one whose kept connection dies under it has failed.
///
/// Failure is a negative result, one of `emDef_Result`. The "Direct" forms name their target at each call and the
/// others use that of `m_S_Init`; each of the three groups (Direct, `m_F_n_HTTPGetData`, multipart) has a connection of
/// its own and may run on a thread of its own. Within a group calls don't overlap: a second one waits for the first.
class LIB_BEDROCK_EXPORT CHTTP
{
public:
    enum emDef_Result
    {
        Result_BadArgument = -1, ///< no target, an address that is none, no buffer
        Result_Unreachable = -2, ///< no such host, nobody there, connection refused
        Result_TimedOut = -3,
        Result_Unauthorised = -4, ///< the account was refused
        Result_TooLarge = -5,     ///< body or header beyond its bound
        Result_Broken = -6,       ///< the reply is no HTTP, ended early, or contradicts itself
        Result_Stopped = -7,      ///< `m_S_Release` ended it
        Result_ErrorStatus = -8,  ///< a status of 300 and above, other than a refused account
        Result_NoMemory = -9
    };

    CHTTP();
    ~CHTTP(); ///< releases, ends a request of the Direct forms that runs in another thread, and waits for it
    CHTTP(const CHTTP&) = delete;
    CHTTP& operator=(const CHTTP&) = delete;

    /// Releases, then stores the target. False if it can't be one (a host with a '/' or '@' in it, a port outside 1 to
    /// 65535); then there is none.
    bool m_S_Init(const QByteArray& sHost, const QByteArray& sUser, const QByteArray& sPassword, int nPort);
    /// Drops the stored target and closes its connections. Requests that run on it in other threads end at once, and it
    /// waits for them to. Harmless at any time, from any thread, also twice. Always true.
    bool m_S_Release();
    /// Whether a target is stored. From any thread.
    bool m_F_b_HasTarget() const;

    /// GET on the stored target; the body is dropped. Its length, or 0 on failure.
    std::uint32_t m_F_n_HTTPGetData(const QByteArray& sUrl, int nTimeoutMs);
    /// What the last of these GETs came to: the length of its body, or a failure. 0 before the first one.
    int m_F_n_LastGetResult() const;

    /// GET. The body replaces the content of the buffer, zero-terminated for text use; on failure the content is empty.
    /// Returns the body's length.
    int m_F_n_HTTPGetDataDirect(const QByteArray& sHost, const QByteArray& sUser, const QByteArray& sPassword,
                                int nPort, const QByteArray& sUrl, CMemManage* pReply, int nTimeoutMs);
    /// POST of the first `nBody` bytes of `sBody`, as "text/xml; charset=utf-8". `sExtra` are further header lines,
    /// each ended by CR LF, of which the first `nExtra` bytes count. Returns the length of the reply, which is dropped;
    /// any whole reply will do, and one with a status of 300 and above counts as empty: ask `m_F_n_LastStatus`.
    int m_F_n_HTTPPostDataDirect(const QByteArray& sHost, const QByteArray& sUser, const QByteArray& sPassword,
                                 int nPort, const QByteArray& sUrl, const QByteArray& sBody, int nBody,
                                 const QByteArray& sExtra, int nExtra, int nTimeoutMs);
    /// Status of the reply to the last request of the Direct forms; 0 if none came whole. From any thread.
    int m_F_n_LastStatus() const;
    /// True if that was a good one, 200 to 299.
    bool m_F_b_LastTaken() const { return m_F_n_LastStatus() / 100 == 2; }

    /// Reads the next part of a multipart reply of the stored target into the buffer, and returns its length; of a
    /// longer part the first `nSize` bytes, the rest is dropped. A reply that is not multipart is one part.
    /// The stream stays open from call to call on the same URL, also when a call timed out; between calls it waits in
    /// the connection, and of what has piled up the oldest parts may be left out. When the stream has ended the call
    /// gives `Result_Broken`, and the next one begins anew, as it does when nothing at all has come for half a minute.
    int m_F_n_MultiPartStreamGet(const QByteArray& sUrl, char* pBuffer, std::uint32_t nSize, int nTimeoutMs);

    /// Ends requests of the Direct forms that run in other threads, and every later one up to `m_S_AllowDirect`, with
    /// `Result_Stopped`: for an owner that won't wait for them. From any thread.
    void m_S_AbandonDirect();
    void m_S_AllowDirect();

    /// Largest body that is taken, in bytes; 0 brings back the 64 MiB that hold unless told otherwise. It counts from
    /// the next request. Streams have no limit; their parts have one of 4 MiB, and larger ones are left out.
    void m_S_SetBodyLimit(std::uint64_t nBytes);

private:
    struct st_Impl;
    std::unique_ptr<st_Impl> vm_pImpl;
};
