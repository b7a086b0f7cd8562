#pragma once

#include "stDef_VirtualNvrConfig.h"

#include <memory>
#include <string>

class CDocumentStore;
class CFaultTable;
class CPtzBoard;
class CRequestLog;
class CStreamServer;

/// A whole recorder in one object: documents, programs behind an HTTP proxy, and live streams, on real
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
    CFaultTable& m_F_o_RecordFaults(); ///< of the kinds of nsRecordFaults
    CRequestLog& m_F_o_Log();
    CStreamServer& m_F_o_Streams();
    CDocumentStore& m_F_o_Documents();
    CPtzBoard& m_F_o_Ptz();

private:
    struct stDef_Impl;
    std::unique_ptr<stDef_Impl> vm_pImpl;
};
