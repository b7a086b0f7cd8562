#pragma once

#include <QByteArray>
#include <cstdint>
#include <memory>

#include "host/Export.h"

class CMemManage;

/// HTTP client that logs in with an account, by Basic or Digest as the server asks for it.
///
/// URLs are relative to the server's root, without a leading slash, and go out as they are given: only bytes that can't
/// stand in a request line (blanks, controls, 0x80 and up) are percent-encoded. Connections and logins are kept from
/// request to request. A time-out is in ms and holds for the whole exchange, whatever the server does; 0 or less fails
/// at once. Redirections are not followed, and no proxy is used. Nothing is repeated.
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
    ~CHTTP(); ///< releases, and waits for a multipart read that is being ended
    CHTTP(const CHTTP&) = delete;
    CHTTP& operator=(const CHTTP&) = delete;

    /// Stores the target. False if it can't be one; then there is none.
    bool m_S_Init(const QByteArray& sHost, const QByteArray& sUser, const QByteArray& sPassword, int nPort);
    /// Drops the target and closes its connections; a running multipart read returns at once. Harmless at any time,
    /// from any thread, also twice. Always true.
    bool m_S_Release();

    /// GET on the stored target; the body is dropped. Its length, or 0 on failure.
    std::uint32_t m_F_n_HTTPGetData(const QByteArray& sUrl, int nTimeoutMs);

    /// GET. The body replaces the content of the buffer, zero-terminated for text use; on failure the content is empty.
    /// Returns the body's length.
    int m_F_n_HTTPGetDataDirect(const QByteArray& sHost, const QByteArray& sUser, const QByteArray& sPassword,
                                int nPort, const QByteArray& sUrl, CMemManage* pReply, int nTimeoutMs);
    /// POST of `nBody` bytes as "text/xml; charset=utf-8". `sExtra` are further header lines, each ended by CR LF, of
    /// which `nExtra` bytes count. Returns the length of the reply, which is dropped.
    int m_F_n_HTTPPostDataDirect(const QByteArray& sHost, const QByteArray& sUser, const QByteArray& sPassword,
                                 int nPort, const QByteArray& sUrl, const QByteArray& sBody, int nBody,
                                 const QByteArray& sExtra, int nExtra, int nTimeoutMs);

    /// Reads the next part of a multipart reply of the stored target into the buffer, and returns its length; of a
    /// longer part the first `nSize` bytes. The stream stays open from call to call on the same URL, a time-out
    /// included. A reply that is not multipart counts as one part. The end of the stream is `Result_Broken`; the next
    /// call begins anew.
    int m_F_n_MultiPartStreamGet(const QByteArray& sUrl, char* pBuffer, std::uint32_t nSize, int nTimeoutMs);

    /// Largest body that is taken, in bytes; 64 MiB unless told otherwise.
    void m_S_SetBodyLimit(std::uint64_t nBytes);

private:
    struct st_Impl;
    std::unique_ptr<st_Impl> vm_pImpl;
};
