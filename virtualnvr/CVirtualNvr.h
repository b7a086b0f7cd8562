#pragma once

#include "http/stDef_Account.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

class CDocumentStore;
class CFaultTable;
class CPtzBoard;
class CRequestLog;
class CStreamServer;

/// What a virtual recorder is to be.
struct stDef_VirtualNvrConfig
{
    std::string sBind = "127.0.0.1"; ///< numeric address that both services listen on
    int nHttpPort = 0;               ///< 0: any free one
    int nRtspPort = 0;               ///< 0: any free one
    int nChannels = 4;               ///< 1..64
    bool bPC = false;                ///< plays a PC recorder instead of an embedded one
    std::string sStateFolder;        ///< documents as posted; empty: a temporary folder, removed at the end
    std::string sDataFolder;         ///< seeds of the documents; empty: those of the build
    std::vector<stDef_Account> arAccounts = {{"admin", "Fl33t!ink"}};
    bool bStreams = true; ///< false: no RTSP service
    /// Ids that the directory service knows besides "FL-000001" (this recorder itself), with the "host:port" of each.
    std::vector<std::pair<std::string, std::string>> arDipsIds;
    int nProbeDelayMs = 0;         ///< how long a camera takes to answer the recorder; a search takes four times that
    int nNonceLifetimeMs = 300000; ///< a login older than this is answered with stale=true
};

/// A whole recorder in one object: documents, HTTP application behind its proxy, and live streams, on real
/// sockets. Several may run in one process. Start and Stop belong to one thread; what the accessors give is
/// thread-safe and lives as long as this object.
class CVirtualNvr
{
public:
    CVirtualNvr();
    ~CVirtualNvr(); ///< stops
    CVirtualNvr(const CVirtualNvr&) = delete;
    CVirtualNvr& operator=(const CVirtualNvr&) = delete;

    /// Opens the documents and both services; clients can connect when it returns.
    /// @return false with sError set; then nothing is left running. Also false if it runs already.
    bool m_F_b_Start(const stDef_VirtualNvrConfig& stConfig, std::string& sError);

    /// Closes every connection and joins every thread. Harmless if nothing runs.
    void m_S_Stop();

    int m_F_n_HttpPort() const; ///< 0 while stopped
    int m_F_n_RtspPort() const; ///< 0 while stopped or without streams

    CFaultTable& m_F_o_Faults();
    CRequestLog& m_F_o_Log();
    CStreamServer& m_F_o_Streams();
    CDocumentStore& m_F_o_Documents();
    CPtzBoard& m_F_o_Ptz();

private:
    struct stDef_Impl;
    std::unique_ptr<stDef_Impl> vm_pImpl;
};
