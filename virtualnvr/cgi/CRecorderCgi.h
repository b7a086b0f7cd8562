#pragma once

#include "CVirtualNvr.h"

#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <string>

class CCameraRegistry;

/// One request to the recorder's programs.
struct stDef_CgiRequest
{
    std::string sMethod; ///< "GET" or "POST"
    std::string sPath;   ///< without the leading slash
    std::map<std::string, std::string> mapQuery;
    std::string sQuery; ///< as it came
    std::string sHost;  ///< Host header, without its port
    std::string sBody;
};

/// What goes back. With fnPart set the reply is an endless multipart stream of such parts.
struct stDef_CgiReply
{
    int nStatus = 200;
    std::string sType = "text/xml; charset=utf-8";
    std::string sBody;
    std::function<std::string(long nPart)> fnPart;
    int nPartIntervalMs = 0;
};

/// The recorder behind its URLs: a table of routes, from method, path and "action" to a handler. Knows no HTTP server.
/// Thread-safe.
class CRecorderCgi
{
public:
    CRecorderCgi(const stDef_VirtualNvrConfig& stConfig, CDocumentStore& objDocuments, CPtzBoard& objPtz,
                 const CCameraRegistry& objCameras);

    /// The ports that clients reach, once they are known.
    void m_S_SetPorts(int nHttpPort, int nRtspPort);

    /// False for the directory service, which is asked without an account.
    bool m_F_b_NeedsLogin(const stDef_CgiRequest& stRequest) const;

    /// 404 for what no row of this kind of recorder names.
    stDef_CgiReply m_F_o_Answer(const stDef_CgiRequest& stRequest) const;

    /// Path and query of a request target. Values are percent-decoded, '+' and '#' stand for themselves.
    static void s_S_Split(const std::string& sTarget, stDef_CgiRequest& stRequest);

    struct stDef_Route;

private:
    const stDef_Route* m_F_p_Find(const stDef_CgiRequest& stRequest) const;
    bool m_F_b_HasCamera(int nCamera) const;
    stDef_CgiReply m_F_o_FromCamera(const stDef_CgiRequest& stRequest, int nRequest) const;
    stDef_CgiReply m_F_o_Ptz(const stDef_CgiRequest& stRequest, int) const;
    stDef_CgiReply m_F_o_PtzStatus(const stDef_CgiRequest& stRequest, int) const;
    stDef_CgiReply m_F_o_PtzNames(const stDef_CgiRequest& stRequest, int) const;
    stDef_CgiReply m_F_o_SetDisplay(const stDef_CgiRequest& stRequest, int) const;
    stDef_CgiReply m_F_o_Display(const stDef_CgiRequest& stRequest, int) const;
    stDef_CgiReply m_F_o_TestDdns(const stDef_CgiRequest& stRequest, int) const;
    stDef_CgiReply m_F_o_SystemInfo(const stDef_CgiRequest& stRequest, int nArg) const;
    stDef_CgiReply m_F_o_LoginInfo(const stDef_CgiRequest& stRequest, int nArg) const;
    stDef_CgiReply m_F_o_GetDocument(const stDef_CgiRequest& stRequest, int nArg) const;
    stDef_CgiReply m_F_o_PutDocument(const stDef_CgiRequest& stRequest, int nArg) const;
    stDef_CgiReply m_F_o_Dips(const stDef_CgiRequest& stRequest, int nArg) const;
    stDef_CgiReply m_F_o_MotionData(const stDef_CgiRequest& stRequest, int nArg) const;
    stDef_CgiReply m_F_o_SystemStatus(const stDef_CgiRequest& stRequest, int nArg) const;
    std::string m_F_s_OwnAddress(const stDef_CgiRequest& stRequest) const;

    static const stDef_Route s_arRoutes[];

    const stDef_VirtualNvrConfig vm_stConfig;
    CDocumentStore& vm_objDocuments;
    CPtzBoard& vm_objPtz;
    const CCameraRegistry& vm_objCameras;
    mutable std::mutex vm_objDisplayLock;
    mutable std::map<std::string, std::string> vm_mapDisplay; ///< the last layout, as it came
    std::atomic<int> vm_nHttpPort = 0;
    std::atomic<int> vm_nRtspPort = 0;
};
