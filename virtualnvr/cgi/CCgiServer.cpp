#include "cgi/CCgiServer.h"

#include "cgi/CCgiRouter.h"
#include "http/CDigestAuth.h"
#include "http/CHttpProxy.h"

#include <chrono>
#include <condition_variable>
#include <httplib.h>
#include <mutex>
#include <optional>
#include <thread>

namespace {
constexpr std::size_t g_nMaxBody = std::size_t(64) << 20;
constexpr std::size_t g_nThreads = CHttpProxy::MaxConnections; // each kept connection and each stream holds one
constexpr int g_nIdleSeconds = 120;
constexpr char g_szBoundary[] = "recorder-part-boundary";

std::string RawTarget(const httplib::Request& objRequest)
{
    const std::string sRaw = objRequest.get_header_value("X-Request-Target");
    return sRaw.empty() ? objRequest.target : sRaw;
}

bool HasBody(const httplib::Request& objRequest)
{
    return objRequest.has_header("Content-Length") || objRequest.has_header("Transfer-Encoding");
}

/// @return the body, or nothing if it was too large or broke off
std::optional<std::string> ReadBody(const httplib::Request& objRequest, const httplib::ContentReader& objReader,
                                    bool bKeep)
{
    std::string sBody;
    std::size_t nTotal = 0;
    if (!HasBody(objRequest)) // the library would read until the client closes
        return sBody;
    const bool bWhole = objReader([&](const char* pData, std::size_t nLength) {
        nTotal += nLength;
        if (bKeep && nTotal <= g_nMaxBody)
            sBody.append(pData, nLength);
        return nTotal <= g_nMaxBody;
    });
    return bWhole ? std::optional(std::move(sBody)) : std::nullopt;
}
} // namespace

struct CCgiServer::stDef_Impl
{
    const CCgiRouter& objRouter;
    CDigestAuth& objAuth;
    httplib::Server objServer;
    std::thread objThread;
    int nPort = 0;
    std::mutex objLock;
    std::condition_variable objWake;
    bool bStopping = false;

    stDef_Impl(const CCgiRouter& objTheRouter, CDigestAuth& objTheAuth) : objRouter(objTheRouter), objAuth(objTheAuth)
    {}

    void SetUp();
    void Answer(const httplib::Request& objRequest, httplib::Response& objReply, const httplib::ContentReader* pReader);
    void Challenge(httplib::Response& objReply, bool bStale);
    void Stream(httplib::Response& objReply, const stDef_CgiReply& stReply);
    bool WaitForPart(int nIntervalMs);
};

void CCgiServer::stDef_Impl::SetUp()
{
    objServer.set_tcp_nodelay(true);
    objServer.set_keep_alive_max_count(1000000);
    objServer.set_keep_alive_timeout(g_nIdleSeconds);
    objServer.set_payload_max_length(g_nMaxBody);
    objServer.new_task_queue = [] { return new httplib::ThreadPool(g_nThreads); };
    const char* pszAll = R"([\s\S]*)";
    objServer.Get(pszAll, [this](const httplib::Request& objRequest, httplib::Response& objReply) {
        Answer(objRequest, objReply, nullptr);
    });
    objServer.Options(pszAll, [this](const httplib::Request& objRequest, httplib::Response& objReply) {
        Answer(objRequest, objReply, nullptr);
    });
    // With a reader the body is ours to bound, whatever type the client declares for it.
    const auto answer = [this](const httplib::Request& objRequest, httplib::Response& objReply,
                               const httplib::ContentReader& objReader) { Answer(objRequest, objReply, &objReader); };
    objServer.Post(pszAll, answer).Put(pszAll, answer).Patch(pszAll, answer).Delete(pszAll, answer);
}

void CCgiServer::stDef_Impl::Answer(const httplib::Request& objRequest, httplib::Response& objReply,
                                    const httplib::ContentReader* pReader)
{
    stDef_CgiRequest stRequest;
    const std::string sTarget = RawTarget(objRequest);
    stRequest.m_S_TakeTarget(sTarget);
    stRequest.sMethod = objRequest.method == "HEAD" ? "GET" : objRequest.method;
    stRequest.sHost = objRequest.get_header_value("Host");
    stRequest.sHost.resize(std::min(stRequest.sHost.rfind(':'), stRequest.sHost.size()));

    const emDef_Login eLogin =
        objRouter.m_F_b_NeedsLogin(stRequest)
            ? objAuth.m_F_e_Check(objRequest.method, sTarget, objRequest.get_header_value("Authorization"),
                                  stRequest.stAccount)
            : emDef_Login::Granted;
    const bool bGranted = eLogin == emDef_Login::Granted;
    if (pReader) {
        // Also a refused body is read to its end, or the next request on the connection would begin inside it.
        auto body = ReadBody(objRequest, *pReader, bGranted);
        if (!body) {
            objReply.status = objReply.status == 413 ? 413 : 400;
            objReply.set_header("Connection", "close");
            return;
        }
        stRequest.sBody = std::move(*body);
    }
    if (!bGranted)
        return Challenge(objReply, eLogin == emDef_Login::Stale);
    const stDef_CgiReply stReply = objRouter.m_F_o_Answer(stRequest);
    objReply.status = stReply.nStatus;
    if (stReply.fnPart)
        Stream(objReply, stReply);
    else
        objReply.set_content(stReply.sBody, stReply.sType);
}

void CCgiServer::stDef_Impl::Challenge(httplib::Response& objReply, bool bStale)
{
    objReply.status = 401;
    for (const std::string& sChallenge : objAuth.m_F_ar_Challenges(bStale))
        objReply.set_header("WWW-Authenticate", sChallenge);
    objReply.set_content("401 Unauthorized\r\n", "text/plain");
}

void CCgiServer::stDef_Impl::Stream(httplib::Response& objReply, const stDef_CgiReply& stReply)
{
    const std::string sType = std::string("multipart/x-mixed-replace; boundary=") + g_szBoundary;
    objReply.set_chunked_content_provider(sType, [this, stReply, nPart = 0L](std::size_t,
                                                                             httplib::DataSink& objSink) mutable {
        if (nPart > 0 && !WaitForPart(stReply.nPartIntervalMs))
            return false;
        const std::string sBody = stReply.fnPart(nPart++);
        const std::string sPart = std::string("--") + g_szBoundary + "\r\nContent-Type: " + stReply.sType +
                                  "\r\nContent-Length: " + std::to_string(sBody.size()) + "\r\n\r\n" + sBody + "\r\n";
        return objSink.write(sPart.data(), sPart.size());
    });
}

/// False as soon as the server stops.
bool CCgiServer::stDef_Impl::WaitForPart(int nIntervalMs)
{
    std::unique_lock objGuard(objLock);
    return !objWake.wait_for(objGuard, std::chrono::milliseconds(nIntervalMs), [this] { return bStopping; });
}

CCgiServer::CCgiServer() = default;

CCgiServer::~CCgiServer()
{
    m_S_Stop();
}

bool CCgiServer::m_F_b_Start(const CCgiRouter& objRouter, CDigestAuth& objAuth, std::string& sError)
{
    m_S_Stop();
    auto pImpl = std::make_unique<stDef_Impl>(objRouter, objAuth);
    pImpl->SetUp();
    pImpl->nPort = pImpl->objServer.bind_to_any_port("127.0.0.1");
    if (pImpl->nPort <= 0) {
        sError = "no free port on the loopback address";
        return false;
    }
    pImpl->objThread = std::thread([&objServer = pImpl->objServer] { objServer.listen_after_bind(); });
    // A stop before the loop runs would be lost; connections wait in the backlog meanwhile.
    while (!pImpl->objServer.is_running())
        std::this_thread::yield();
    vm_pImpl = std::move(pImpl);
    return true;
}

void CCgiServer::m_S_Stop()
{
    if (!vm_pImpl)
        return;
    {
        const std::lock_guard objGuard(vm_pImpl->objLock);
        vm_pImpl->bStopping = true;
    }
    vm_pImpl->objWake.notify_all();
    vm_pImpl->objServer.stop();
    vm_pImpl->objThread.join();
    vm_pImpl.reset();
}

int CCgiServer::m_F_n_Port() const
{
    return vm_pImpl ? vm_pImpl->nPort : 0;
}
