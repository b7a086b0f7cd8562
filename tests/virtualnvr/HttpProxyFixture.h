#pragma once

#include "CRawClient.h"
#include "http/CFaultTable.h"
#include "http/CHttpProxy.h"
#include "http/CRequestLog.h"

#include <condition_variable>
#include <gmock/gmock.h>
#include <httplib.h>
#include <thread>

inline const std::string g_sDocument = "<XML><root><Name Text=\"T\xC3\xBCr\"/><Port Value=\"80\"/></root></XML>";
inline const std::string g_sLogin = "Authorization: Basic c2VjcmV0\r\n";

/// A small server in the place of the recorder's, with the proxy before it.
class HttpProxy : public testing::Test
{
protected:
    void SetUp() override
    {
        vm_objInner.set_tcp_nodelay(true);
        vm_objInner.set_keep_alive_max_count(100000);
        vm_objInner.new_task_queue = [] { return new httplib::ThreadPool(CHttpProxy::MaxConnections); };
        vm_objInner.Get("/doc", [](const httplib::Request& objRequest, httplib::Response& objReply) {
            const bool bLogin = objRequest.has_header("Authorization");
            objReply.status = bLogin ? 200 : 401;
            if (!bLogin)
                objReply.set_header("WWW-Authenticate", "Digest realm=\"r\", nonce=\"fresh\", qop=\"auth\"");
            objReply.set_content(bLogin ? g_sDocument : "login", "text/xml");
        });
        vm_objInner.Get("/plain", [](const httplib::Request&, httplib::Response& objReply) {
            objReply.set_content("<plain/>", "text/xml");
        });
        const auto echo = [](const httplib::Request& objRequest, httplib::Response& objReply) {
            objReply.set_content(std::to_string(objRequest.remote_port) + ' ' + objRequest.method + ' ' +
                                     objRequest.get_header_value("X-Request-Target") + ' ' +
                                     objRequest.get_header_value("X-Own") + ' ' + objRequest.body + ";",
                                 "text/plain");
        };
        vm_objInner.Get("/echo.*", echo);
        vm_objInner.Post("/echo.*", echo);
        vm_objInner.Get("/stream", [this](const httplib::Request&, httplib::Response& objReply) {
            objReply.set_chunked_content_provider("text/plain", [this](std::size_t, httplib::DataSink& objSink) {
                return m_F_b_WaitForPiece() && objSink.write("piece", 5);
            });
        });
        const int nInner = vm_objInner.bind_to_any_port("127.0.0.1");
        vm_objThread = std::thread([this] { vm_objInner.listen_after_bind(); });
        while (!vm_objInner.is_running())
            std::this_thread::yield();
        vm_nInnerPort = nInner;
        Start();
    }
    void TearDown() override
    {
        vm_objProxy.m_S_Stop();
        SendPiece(-1);
        vm_objInner.stop();
        vm_objThread.join();
    }

    void Start()
    {
        std::string sError;
        ASSERT_TRUE(vm_objProxy.m_F_b_Start("127.0.0.1", 0, vm_nInnerPort, vm_objFaults, vm_objLog, sError)) << sError;
    }
    CRawClient Client() const { return CRawClient(vm_objProxy.m_F_n_Port()); }
    /// The stream sends one more piece; negative: ends it.
    void SendPiece(int nPieces = 1)
    {
        const std::lock_guard lock(vm_objMutex);
        vm_nPieces = nPieces < 0 ? nPieces : vm_nPieces + nPieces;
        vm_objChanged.notify_all();
    }

    CFaultTable vm_objFaults;
    CRequestLog vm_objLog;
    CHttpProxy vm_objProxy;
    httplib::Server vm_objInner;
    int vm_nInnerPort = 0;

private:
    bool m_F_b_WaitForPiece()
    {
        std::unique_lock lock(vm_objMutex);
        vm_objChanged.wait(lock, [this] { return vm_nPieces != 0; });
        return vm_nPieces > 0 && vm_nPieces-- > 0;
    }

    std::thread vm_objThread;
    std::mutex vm_objMutex;
    std::condition_variable vm_objChanged;
    int vm_nPieces = 0;
};
