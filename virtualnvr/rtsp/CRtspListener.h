#pragma once

#include <functional>
#include <list>
#include <memory>
#include <string>

typedef struct _GMainContext GMainContext;
typedef struct _GSocket GSocket;
typedef struct _GSource GSource;

/// What becomes of a new connection.
enum class emDef_Admission
{
    HandOver,
    Silent, ///< it is kept and read, and never answered
    Garbage ///< it is answered with bytes that mean nothing
};

/// The RTSP port. It accepts, looks at the first request without taking it, and hands the connection over to the server
/// or plays dead. It keeps track of what it handed over, so that connections can be cut. Everything happens on the
/// thread of the main context that it was made for; before that thread runs, another one may set it up.
class CRtspListener
{
public:
    struct stDef_Arrival
    {
        GSocket* pSocket = nullptr; ///< one reference
        std::string sPeer;          ///< numeric address
        int nPeerPort = 0;
        std::string sInitial; ///< what was read from it already
    };
    using Policy = std::function<emDef_Admission(const std::string& sPath)>;
    using Receiver = std::function<void(stDef_Arrival& stArrival)>; ///< takes over the reference

    CRtspListener(GMainContext* pContext, Policy policy, Receiver receiver);
    ~CRtspListener(); ///< closes everything
    CRtspListener(const CRtspListener&) = delete;
    CRtspListener& operator=(const CRtspListener&) = delete;

    /// @param nPort 0: any free one
    bool m_F_b_Listen(const std::string& sBind, int nPort, std::string& sError);
    int m_F_n_Port() const { return vm_nPort; }

    /// While refused, nobody listens; the port stays reserved.
    bool m_F_b_SetRefused(bool bRefused, std::string& sError);

    /// Takes a connection that was accepted elsewhere as if it had come here; sInitial must hold its first line.
    void m_S_Adopt(stDef_Arrival stArrival);

    /// Cuts the connections whose path matches.
    void m_S_Cut(const std::function<bool(const std::string& sPath)>& matches);

    /// Path of a first request: "/stream/CH0" of "OPTIONS rtsp://host:port/stream/CH0 RTSP/1.0". Empty if there is
    /// none.
    static std::string s_F_s_Path(const std::string& sRequest);

private:
    struct stDef_Connection;
    bool m_F_b_Bind(bool bListen, std::string& sError);
    void m_S_ClosePort();
    void m_S_Accept();
    void m_S_Decide(stDef_Connection& stConnection);
    bool m_F_b_OnReadable(stDef_Connection& stConnection);
    void m_S_Watch(stDef_Connection& stConnection);
    void m_S_Forget(const stDef_Connection& stConnection);

    GMainContext* vm_pContext;
    Policy vm_policy;
    Receiver vm_receiver;
    std::string vm_sBind;
    int vm_nPort = 0;
    bool vm_bRefused = false;
    GSocket* vm_pListener = nullptr;
    GSource* vm_pAccepting = nullptr;
    std::list<std::unique_ptr<stDef_Connection>> vm_arConnections;
};
