#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "CSocket.h"

/// A server that does on each connection what its script says, for what no recorder can be told to do.
class CScriptedServer
{
public:
    /// Runs on a thread of its own for each connection, numbered from 0; the connection closes when it returns.
    using fnScript = std::function<void(CSocket& objSocket, int nConnection)>;

    explicit CScriptedServer(fnScript script, const std::string& sBind = "127.0.0.1") : vm_script(std::move(script))
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
    CScriptedServer(const CScriptedServer&) = delete;
    CScriptedServer& operator=(const CScriptedServer&) = delete;

    int m_F_n_Port() const { return vm_objThread.joinable() ? vm_objListener.m_F_n_Port() : 0; }

    /// Reads up to and including the blank line behind a request's head; empty if the client has gone.
    static std::string s_F_s_ReadHead(CSocket& objSocket)
    {
        std::string sHead;
        char c = 0;
        while (!sHead.ends_with("\r\n\r\n")) {
            if (objSocket.m_F_n_Read(&c, 1) != 1)
                return {};
            sHead += c;
        }
        return sHead;
    }

private:
    void Accept()
    {
        for (int nSocket = vm_objListener.m_F_n_Accept(); nSocket >= 0; nSocket = vm_objListener.m_F_n_Accept()) {
            vm_arSockets.push_back(std::make_unique<CSocket>(nSocket));
            vm_arThreads.emplace_back([this, p = vm_arSockets.back().get(), n = int(vm_arThreads.size())] {
                vm_script(*p, n);
                p->m_S_EndGently();
                p->m_S_Close();
            });
        }
    }

    fnScript vm_script;
    CSocket vm_objListener;
    std::vector<std::unique_ptr<CSocket>> vm_arSockets; ///< filled by the accepting thread, until it is joined
    std::vector<std::thread> vm_arThreads;
    std::thread vm_objThread;
};
