#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <memory>

#include "host/Export.h"
#include "host/rewind/RecordTypes.h"

/// A connection to a recorder's record transfer service, which speaks HTTP.
///
/// Requests return at once and run on a thread each; `m_F_b_GetDirectData` collects their replies in the order in which
/// they were asked for. Up to `s_nMaxAhead` may be under way; a further one fails when it is collected. An object
/// belongs to one thread.
class LIB_REWIND_EXPORT CRPBProc
{
public:
    static constexpr int s_nMaxAhead = 8;
    static constexpr std::uint32_t s_nHeadRecord = 0xFFFFFFFF; ///< record number of an image file's head

    CRPBProc();
    ~CRPBProc(); ///< as `m_S_Uninit`
    CRPBProc(const CRPBProc&) = delete;
    CRPBProc& operator=(const CRPBProc&) = delete;

    /// The login of all requests that follow; in the plain code page.
    void m_S_SetAccount(const QByteArray& sUser, const QByteArray& sPassword);
    /// Stores the target. The time-out, in ms, holds for each request. Window, the number behind it and the kind of
    /// connection are taken and not used. Returns 1.
    int m_F_n_ConnectTo(std::uint64_t hMainWnd, int nReserved, const QByteArray& sAddress, int nPort, int nTimeoutMs,
                        int nKind);

    /// Asks for the list of record files in the span; it goes into the local file. The channel mask ends with its zero
    /// character; null asks for no channel.
    void m_S_RequestBackupInfo(const QString& sLocalFile, const CLoadDataByFile::st_PB_SearchInfo* pSearch,
                               const char* pChannels);
    /// Fetches a file of the recorder into the local one, which is emptied first. It comes in pieces of 4 MiB, so that
    /// memory doesn't grow with it; one beyond 4 GiB fails. After a failure a part of it may stand there.
    void m_S_RequestFile(const QByteArray& sRemote, const QString& sLocalFile);
    /// Asks for up to `nCount` records of a data file, 16 bytes each, from record `nFirst` on.
    void m_S_RequestBackupDat(const QByteArray& sRemote, int nFirst, int nCount);
    /// Asks for the images of those records, as blocks; `s_nHeadRecord` alone asks for the file's head.
    void m_S_RequestBackupImg(const QByteArray& sRemote, const std::uint32_t* pNumbers, int nCount);

    /// Waits for the oldest request that wasn't collected. True with the reply, which stays valid until the next call;
    /// a file's reply is empty. False if it failed or there is none; and within 200 ms after `*pbRun` became false,
    /// which drops all requests that are under way. Each pointer may be null.
    bool m_F_b_GetDirectData(char** ppData, std::int32_t* pnSize, bool* pbRun);

    /// Drops all requests that are under way, and the target. Waits for no time-out. Harmless at any time.
    void m_S_Uninit();

private:
    struct st_Impl;
    std::unique_ptr<st_Impl> vm_pImpl;
};
