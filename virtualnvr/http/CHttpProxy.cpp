#include "http/CHttpProxy.h"

#include "http/CProxyConnection.h"

#include <algorithm>
#include <list>
#include <thread>

namespace {

constexpr int LongWaitMs = 500; // requests that are on their way keep their places

struct stDef_Served
{
    CProxyConnection objConnection;
    std::atomic<bool> bDone{false};
    std::thread objThread;

    stDef_Served(int nSocket, std::uint64_t nNumber, const stDef_ProxyParts& stParts)
        : objConnection(nSocket, nNumber, stParts)
    {}
};

} // namespace

struct CHttpProxy::stDef_Impl
{
    stDef_ProxyParts stParts;
    CSocket objListener;
    std::thread objAcceptor;
    std::mutex objMutex;
    std::list<stDef_Served> arServed; ///< under the mutex
    std::atomic<bool> bStop{false};
    int nPort = 0;

    void Reap();
    void MakeRoom();
    void Accept();
};

void CHttpProxy::stDef_Impl::Reap()
{
    for (auto it = arServed.begin(); it != arServed.end();) {
        if (!it->bDone) {
            ++it;
            continue;
        }
        it->objThread.join();
        it = arServed.erase(it);
    }
}

/// Heads and bodies that drip, or never come, don't keep others out.
void CHttpProxy::stDef_Impl::MakeRoom()
{
    const auto it = std::max_element(arServed.begin(), arServed.end(), [](const auto& a, const auto& b) {
        return a.objConnection.m_F_n_KeptWaitingMs() < b.objConnection.m_F_n_KeptWaitingMs();
    });
    if (it == arServed.end() || !it->objConnection.m_F_b_EndWaiting(LongWaitMs))
        return;
    it->objThread.join();
    arServed.erase(it);
}

void CHttpProxy::stDef_Impl::Accept()
{
    std::uint64_t nNumber = 0;
    while (!bStop) {
        const int nSocket = objListener.m_F_n_Accept();
        if (nSocket < 0)
            continue; // woken
        const std::lock_guard lock(objMutex);
        Reap();
        if (arServed.size() >= MaxConnections)
            MakeRoom();
        if (bStop || arServed.size() >= MaxConnections) {
            CSocket closed(nSocket);
            continue;
        }
        stDef_Served& stServed = arServed.emplace_back(nSocket, ++nNumber, stParts);
        stServed.objThread = std::thread([&stServed] {
            stServed.objConnection.m_S_Run();
            stServed.bDone = true;
        });
    }
}

CHttpProxy::CHttpProxy() : vm_pImpl(std::make_unique<stDef_Impl>()) {}

CHttpProxy::~CHttpProxy()
{
    m_S_Stop();
}

bool CHttpProxy::m_F_b_Start(const std::string& sBind, int nPort, int nInnerPort, CFaultTable& objFaults,
                             CRequestLog& objLog, std::string& sError)
{
    m_S_Stop();
    if (!vm_pImpl->objListener.m_F_b_Listen(sBind, nPort, sError))
        return false;
    vm_pImpl->nPort = vm_pImpl->objListener.m_F_n_Port();
    vm_pImpl->stParts.nInnerPort = nInnerPort;
    vm_pImpl->stParts.pFaults = &objFaults;
    vm_pImpl->stParts.pLog = &objLog;
    vm_pImpl->bStop = false;
    vm_pImpl->objAcceptor = std::thread([this] { vm_pImpl->Accept(); });
    return true;
}

void CHttpProxy::m_S_Stop()
{
    if (!vm_pImpl->objAcceptor.joinable())
        return;
    vm_pImpl->bStop = true;
    vm_pImpl->objListener.m_S_Wake();
    vm_pImpl->objAcceptor.join();
    vm_pImpl->objListener.m_S_Close();
    vm_pImpl->nPort = 0;
    const std::lock_guard lock(vm_pImpl->objMutex);
    for (stDef_Served& stServed : vm_pImpl->arServed)
        stServed.objConnection.m_S_Wake();
    for (stDef_Served& stServed : vm_pImpl->arServed)
        stServed.objThread.join();
    vm_pImpl->arServed.clear();
}

int CHttpProxy::m_F_n_Port() const
{
    return vm_pImpl->nPort;
}

void CHttpProxy::m_S_SetHeadLimit(int nMs)
{
    vm_pImpl->stParts.nHeadMs = nMs;
}

void CHttpProxy::m_S_SetTunnelHandler(std::function<bool(int nSocket, const std::string& sInitial)> handler)
{
    vm_pImpl->stParts.tunnel = std::move(handler);
}
