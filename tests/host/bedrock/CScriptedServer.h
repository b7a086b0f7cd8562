#pragma once

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "http/CSocket.h"

/// A server that plays its script on each connection, on a thread of its own, for what no recorder can be told to do.
class CScriptedServer
{
public:
    explicit CScriptedServer(std::function<void(CSocket&)> script, const std::string& sBind = "127.0.0.1")
        : vm_script(std::move(script))
    {
        std::string sError;
        if (vm_objListener.m_F_b_Listen(sBind, 0, sError))
            vm_objThread = std::thread([this] { Accept(); });
    }
    ~CScriptedServer()
    {
        vm_objListener.m_S_Wake();
        if (vm_objThread.joinable())
            vm_objThread.join();
        for (const auto& pSocket : vm_arSockets)
            pSocket->m_S_Wake();
        for (std::thread& thread : vm_arThreads)
            thread.join();
    }
    int m_F_n_Port() const { return vm_objThread.joinable() ? vm_objListener.m_F_n_Port() : 0; }

    /// Reads the head of a request; empty if the client has gone.
    static std::string s_F_s_ReadHead(CSocket& socket)
    {
        std::string sHead;
        for (char c = 0; !sHead.ends_with("\r\n\r\n"); sHead += c)
            if (socket.m_F_n_Read(&c, 1) != 1)
                return {};
        return sHead;
    }

private:
    void Accept()
    {
        for (int nSocket = vm_objListener.m_F_n_Accept(); nSocket >= 0; nSocket = vm_objListener.m_F_n_Accept()) {
            CSocket& socket = *vm_arSockets.emplace_back(std::make_unique<CSocket>(nSocket));
            vm_arThreads.emplace_back([this, &socket] {
                vm_script(socket);
                socket.m_S_EndGently();
                socket.m_S_Close();
            });
        }
    }

    std::function<void(CSocket&)> vm_script;
    CSocket vm_objListener;
    std::vector<std::unique_ptr<CSocket>> vm_arSockets; ///< filled by the accepting thread, until it is joined
    std::vector<std::thread> vm_arThreads;
    std::thread vm_objThread;
};
