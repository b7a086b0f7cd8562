#pragma once

#include <memory>

#include "core/CWndNvrBase.h"

struct stDef_RtspStream;

/// What the embedded and the PC recorder have in common, in one body: the stream object, the requests, the documents.
class FLEETLINK_EXPORT CWndNvrShared : public CWndNvrBase
{
    Q_OBJECT

public:
    CWndNvrShared(QWidget* pParent, CEnvObj* pEnv);
    ~CWndNvrShared() override; ///< ends the stream and waits for its thread

    void m_S_DeleteSelf(CWndNvrBase** ppObj) override;
    bool m_F_b_GetRequest(const QString& sUrl, CXmlObj* pXml, int nTimeoutMs) override;
    bool m_F_b_PostRequest(const QString& sUrl, CXmlObj* pXml, int nTimeoutMs) override;
    bool m_F_b_GetRequestData(const QString& sUrl, CMemManage* pMem, int nTimeoutMs) override;
    void m_S_Connect(int nNvrID, int nChannel, int nStream) override;
    void m_S_Disconnect(bool bWait) override;
    nsCMS::emDef_ConnectStat m_F_n_GetConnectStat(std::uint64_t nStamp) override;

    // Not served yet by either kind: these do nothing and report failure.
    void m_S_ShowMenu() override {}
    bool m_F_n_CameraSynchronization(CXmlObj*, CXmlObj*, CXmlObj*, int) override { return false; }
    int m_F_n_RecordBackup(stDef_RecordBackupInfo) override { return 0; }
    void m_S_SaveXmlNVR(CXmlObj*) override {}
    void m_S_GetXmlNVR(CXmlObj*) override {}
    void m_S_SaveXmlCamera(CXmlObj*) override {}
    void m_S_GetXmlCamera(CXmlObj*) override {}
    void m_S_GetPTZData(int, int, QStringList*) override {}

    std::unique_ptr<stDef_RtspStream> vm_pRtsp; ///< null until the first m_S_Connect
    CXmlObj vm_xmlSystemInfo;                   ///< reply of the system information request
    CXmlObj vm_xmlSystem;                       ///< the recorder's setting documents
    CXmlObj vm_xmlSchedule;
    CXmlObj vm_xmlCamera;
    CXmlObj vm_xmlEMail;
    CXmlObj vm_xmlSpare; ///< not used

protected:
    /// Where a stream comes from, as the recorder list has it.
    struct stDef_StreamTarget
    {
        QString sIP;
        QString sUID;
        QString sPWD; ///< stored form
        int nHttpPort = 80;
        int nRtspPort = 554;
        int nStreamType = 1;
    };

    /// Reads node `/root/NVR/N%03d` of the host's recorder list.
    stDef_StreamTarget m_F_o_ReadTarget(int nNvrID) const;
    /// Makes the stream object, attaches its rings and connects.
    void m_S_StartRtsp(const stDef_StreamTarget& stTarget, int nNvrID, int nChannel, int nStream);

private:
    virtual void m_S_CreateNewRtsp(int nNvrID, int nChannel, int nStream) = 0;
    int m_F_n_Get(const QString& sUrl, CMemManage* pMem, int nTimeoutMs);
    void m_S_StoreConnectStat(nsCMS::emDef_ConnectStat nStat);
};
