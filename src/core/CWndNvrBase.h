#pragma once

#include <QList>
#include <QPointer>
#include <QStringList>
#include <QWidget>
#include <atomic>
#include <mutex>

#include "core/stDef_NvrInit.h"
#include "core/stDef_RecordBackupInfo.h"
#include "host/Export.h"
#include "host/Lib_Bedrock.h"
#include "host/Lib_Hostenv.h"
#include "toolkit/form/CTextSource.h"

class CPageRequests;

/// Where the DIPS directory service stands.
struct stDef_DipsTarget
{
    QByteArray sHost;
    int nPort = 80;
    int nTimeoutMs = 10000; ///< for a whole look-up
};

/// One item of a recorder's menu.
struct stDef_MenuItem
{
    int nId = 0;
    QString sText;
    bool bWorks = false; ///< false: choosing it does nothing
};

/// One recorder: what is common to all kinds. A host makes one object per recorder and stream, initialises it, drives
/// it through the virtual operations, and releases it through `s_S_ReleaseNvrObject`, or by a `CNvrHolder`.
///
/// The object is an invisible child of a host window, so that menu commands can reach it, but it belongs to the host:
/// it outlives that window if it has to. All operations are for the GUI thread, but for `m_F_n_MultiPartStreamGet`.
/// While the GUI thread leaves the object alone, `m_S_ExecPTZCmd` may run on one other thread, and
/// `m_S_GetPTZData` and `m_S_GetLoginInfo` on one other; they touch no window.
class FLEETLINK_EXPORT CWndNvrBase : public QWidget, public CTextSource
{
    Q_OBJECT

public:
    /// Makes an object of kind 0 (PC recorder) or 1 (embedded recorder); null for any other kind, and null while there
    /// is no QApplication. The caller owns it. Both pointers are borrowed and may be null.
    static CWndNvrBase* s_F_p_CreateNvrObject(int nType, QWidget* pParent, CEnvObj* pEnv);
    /// The same for the kind that `Type` of `/root/NVR/N%03d` tells; null for an unknown recorder or without `pEnv`.
    static CWndNvrBase* s_F_p_CreateNvrObjectByNvrID(int nNvrID, QWidget* pParent, CEnvObj* pEnv);
    /// Ends the object's stream, deletes it and sets the caller's pointer to null. Null in either place does nothing.
    /// While a call on the object is under way (a command, a page's request), it ends the stream and the requests,
    /// closes its windows as by Cancel, and the object goes when that call has unwound.
    static void s_S_ReleaseNvrObject(CWndNvrBase** ppObj);
    /// The DIPS service asked by all objects; replace it to use another one.
    static stDef_DipsTarget& s_F_o_DipsTarget();

    /// Creates no window yet.
    CWndNvrBase(QWidget* pParent, CEnvObj* pEnv);
    ~CWndNvrBase() override;

    /// Sets `*ppObj` to null, if there is one, and deletes this object.
    virtual void m_S_DeleteSelf(CWndNvrBase** ppObj) = 0;
    /// Makes the window if there is none, checks the record and takes it over; with `bDips` looks the address up (up to
    /// 10 s). Returns 1, or 0 if the number is above 1000, address or account name are empty, the HTTP port is negative
    /// (nothing is taken over then), or the look-up failed.
    virtual int m_F_n_Init(stDef_NvrInit stInit);
    /// Shows the recorder's menu at the pointer, and does what is chosen there. Nothing while a command or a page's
    /// request of this object is under way.
    virtual void m_S_ShowMenu() = 0;
    /// The items of that menu, for a host that has them in a menu of its own.
    virtual QList<stDef_MenuItem> m_F_ar_MenuItems() const = 0;
    /// Does what the menu's item of that number (`nsCMS::emDef_MenuCommand`) does, and returns when its windows are
    /// closed again.
    virtual void m_S_OnCommand(int nId) = 0;
    /// GETs a document from the recorder into `pXml`. The URL is relative to the recorder's root, without a leading
    /// slash, and goes out unescaped; the time-out is in ms for the whole exchange. An envelope around `<root>` is cut
    /// off. False if the request failed (`pXml` is untouched) or the reply is no document (`pXml` is closed).
    virtual bool m_F_b_GetRequest(const QString& sUrl, CXmlObj* pXml, int nTimeoutMs) = 0;
    /// POSTs a document to the recorder, as UTF-8. True when any whole reply came, whatever its status: that is asked
    /// by `m_F_n_LastStatus`.
    virtual bool m_F_b_PostRequest(const QString& sUrl, CXmlObj* pXml, int nTimeoutMs) = 0;
    /// GETs raw bytes into `pMem`.
    virtual bool m_F_b_GetRequestData(const QString& sUrl, CMemManage* pMem, int nTimeoutMs) = 0;
    /// Fetches what a host's recorder list needs to know of the cameras; `nTimeoutMs` for each request.
    virtual bool m_F_n_CameraSynchronization(CXmlObj* pSystemInfo, CXmlObj* pLoginInfo, CXmlObj* pCamera,
                                             int nTimeoutMs) = 0;
    /// Begins the live stream of a channel into its rings and returns at once. `nStream` 0 is the main stream, anything
    /// else the second one. An object serves one stream for its life: a further call connects that one again and
    /// ignores its arguments.
    virtual void m_S_Connect(int nNvrID, int nChannel, int nStream) = 0;
    /// Ends the live stream: with true when the receiving thread has ended (within 200 ms), with false by telling it to
    /// stop and returning at once.
    virtual void m_S_Disconnect(bool bWait) = 0;
    /// State of the live stream; also stored in the video ring. `nStamp` is the oldest time of the last data that still
    /// counts as alive: ms of the steady clock (`CRtspClient::s_F_n_NowMs`), usually now less 10000. Silence since then
    /// tells the client to stop.
    virtual nsCMS::emDef_ConnectStat m_F_n_GetConnectStat(std::uint64_t nStamp) = 0;
    /// False while the stream has no ring to write its pictures to, which the state tells as an end: shared memory is
    /// full, or the ring another process's. The log says which.
    virtual bool m_F_b_HasRing() { return true; }
    /// Copies the records of a time span into a folder. 1 if all was done, 0 if it failed or was stopped.
    virtual int m_F_n_RecordBackup(stDef_RecordBackupInfo stInfo) = 0;
    /// Local caches of the host's documents, below the configuration folder.
    virtual void m_S_SaveXmlNVR(CXmlObj* pXml) = 0;
    virtual void m_S_GetXmlNVR(CXmlObj* pXml) = 0;
    virtual void m_S_SaveXmlCamera(CXmlObj* pXml) = 0;
    virtual void m_S_GetXmlCamera(CXmlObj* pXml) = 0;
    /// Names of the tours or presets of a camera, by `nsCMS::emDef_PtzList`.
    virtual void m_S_GetPTZData(int nKind, int nCamera, QStringList* pList) = 0;

    /// Loads the language file of this object. Always true; ask `m_F_n_LoadString` what came of it.
    bool m_F_b_InitLanguageXml(const QString& sFile);
    /// Text of a key, or the default if the file has no such key. With no language file open it returns -1 and leaves
    /// `sOut` untouched: a label keeps what it shows.
    int m_F_n_LoadString(const QString& sKey, QString& sOut, const QString& sDefault) const override;

    /// Prepares the stored target that commands and multipart reads use; call it after `m_F_n_Init`.
    void m_S_InitHTTP();
    void m_S_ReleaseHTTP();
    /// Whether the first of these was called, and not the second since.
    bool m_F_b_HasTarget() const { return vm_objHttp.m_F_b_HasTarget(); }
    /// Reads one part of a multipart stream into the buffer of `pMem`, up to its size. More than 0 is the number of
    /// bytes. For a worker thread, which owns `pMem`; `m_S_ReleaseHTTP` on the GUI thread ends a read that waits.
    int m_F_n_MultiPartStreamGet(const QString& sUrl, CMemManage* pMem, int nTimeoutMs);

    /// Asks the DIPS service for the address and port under which a recorder last registered. False leaves both as they
    /// were.
    bool m_F_b_DipsToIpPort(const QByteArray& sId, QByteArray& sAddress, int& nPort);

    /// Status of the reply to the last request of this object that isn't a command; 0 if none came whole. Any thread.
    int m_F_n_LastStatus() const { return vm_nLastStatus; }
    /// Whether the recorder took what was posted last: a status of 200 to 299.
    bool m_F_b_LastTaken() const { return vm_nLastStatus / 100 == 2; }
    /// Ends the requests of this object that run in other threads, and fails every later one: for a host that is about
    /// to release the object and won't wait for an answer. Commands and multipart reads are ended by `m_S_ReleaseHTTP`.
    /// Any thread.
    void m_S_AbandonRequests();

    /// The host released it while a call was under way, so that nothing new is to be begun.
    bool m_F_b_Released() const { return vm_bReleased; }

    /// Sends one command to a camera, by `nsCMS::emDef_PtzCommand`; other numbers send nothing. `m_F_n_LastCommand`
    /// tells what came of it.
    void m_S_ExecPTZCmd(int nCmd, int nCamera, int nParam1, int nParam2);
    /// Lays out the recorder's own display; likewise.
    void m_S_RemoteUICtrl(int nFullScreen, int nQuad, int nStyle, const QString& sCamArray);
    /// What the last command came to: 0 or more if the recorder took it, else one of `CHTTP::emDef_Result`. For the
    /// thread that sends them.
    int m_F_n_LastCommand() const { return vm_objHttp.m_F_n_LastGetResult(); }
    /// Rights and abilities of the logged-in account.
    void m_S_GetLoginInfo(QStringList* pList);

Q_SIGNALS:
    /// The recorder did not take all documents of an upload: a line that names them, for the host to keep in sight. It
    /// comes before the wait that follows an upload.
    void S_NotTaken(const QString& sText);

public:
    CLangXMLObj vm_objLang;
    QPointer<QWidget> vm_pParent; ///< host window, not owned
    CHTTP vm_objHttp;
    CMemManage vm_objReply;  ///< reply buffer of all requests through `vm_objHttp`; a big reply doesn't stay in it
    stDef_NvrInit vm_stInit; ///< the connection data in force
    CEnvObj* vm_pEnv;        ///< not owned

protected:
    /// A command or a page's request is under way, or a sheet stands: then a command does nothing.
    bool m_F_b_InUse() const { return vm_nUses > 0; }
    /// Deletes the object, at once or when the calls that are under way have unwound.
    void m_S_Leave();

private:
    friend class CNvrTransfer;
    friend class CNvrUse;
    friend class CPageRequests;

    void m_S_CreateWindow();
    void m_S_CloseWindows();

    QList<CPageRequests*> vm_arRequests;
    std::atomic<bool> vm_bTransferTaken{false}; ///< a request runs on `vm_objHttp` and `vm_objReply`
    std::atomic<int> vm_nLastStatus{0};
    std::mutex vm_objAbandonMutex; ///< guards the two below
    QList<CHTTP*> vm_arSpares;     ///< of the requests that run beside that one
    bool vm_bAbandoned = false;
    int vm_nUses = 0;
    bool vm_bReleased = false;
    bool vm_bWindow = false;
};

/// Keeps a connection object until a call on it has unwound, whoever releases it meanwhile. GUI thread only.
class CNvrUse
{
public:
    explicit CNvrUse(CWndNvrBase* pNvr);
    ~CNvrUse(); ///< the last one deletes an object that was released
    CNvrUse(const CNvrUse&) = delete;
    CNvrUse& operator=(const CNvrUse&) = delete;

private:
    CWndNvrBase* vm_pNvr;
};
