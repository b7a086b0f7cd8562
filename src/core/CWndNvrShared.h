#pragma once

#include <array>
#include <initializer_list>

#include <memory>
#include <string>

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
    bool m_F_b_HasRing() override;

    void m_S_ShowMenu() override;
    QList<stDef_MenuItem> m_F_ar_MenuItems() const override;
    void m_S_SaveXmlNVR(CXmlObj* pXml) override;
    void m_S_GetXmlNVR(CXmlObj* pXml) override;
    void m_S_SaveXmlCamera(CXmlObj* pXml) override;
    void m_S_GetXmlCamera(CXmlObj* pXml) override;
    void m_S_GetPTZData(int nKind, int nCamera, QStringList* pList) override;

    std::unique_ptr<stDef_RtspStream> vm_pRtsp; ///< null until the first m_S_Connect
    CXmlObj vm_xmlSystemInfo;                   ///< reply of the system information request
    CXmlObj vm_xmlSystem;                       ///< the recorder's setting documents
    CXmlObj vm_xmlSchedule;
    CXmlObj vm_xmlCamera;
    CXmlObj vm_xmlEMail;
    CXmlObj vm_xmlSpare; ///< not used

protected:
    struct stDef_CommandRow
    {
        stDef_Text stText;
        bool bWorks;
    };

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

    /// GETs documents one after the other, up to the first that fails.
    bool m_F_b_GetRequests(std::initializer_list<std::pair<const char*, CXmlObj*>> arRequests, int nTimeoutMs);

private:
    virtual void m_S_CreateNewRtsp(int nNvrID, int nChannel, int nStream) = 0;
    /// Name of the kind's folder of cached documents.
    virtual QString m_F_s_CacheName() const = 0;
    /// The menu's three items, in the order of their numbers.
    virtual std::array<stDef_CommandRow, 3> m_F_ar_Commands() const = 0;
    /// Appends the names of a camera's tours or presets ("tourset" or "preset") that the reply holds.
    virtual void m_S_ReadPtzNames(const CXmlObj& xmlReply, int nCamera, const QString& sGroup,
                                  QStringList& arNames) = 0;
    QString m_F_s_CacheFolder() const;
    void m_S_SaveCache(CXmlObj* pXml, const QString& sFile);
    void m_S_LoadCache(CXmlObj* pXml, const QString& sFile);
    void m_S_EndStream();
    /// The number of the item that was chosen, or 0.
    int m_F_n_RunMenu();
    /// Tries again to own a ring that isn't ours, or no more.
    void m_S_AttachAgain();
    /// Connects, unless there is no ring to write to.
    void m_S_StartClient();
    void m_S_StoreConnectStat(nsCMS::emDef_ConnectStat nStat);

    std::string vm_sToldRings; ///< what the log was told last of rings that can't be written
};
