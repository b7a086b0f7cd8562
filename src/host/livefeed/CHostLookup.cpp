#include "host/livefeed/CHostLookup.h"

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <winsock2.h>
#include <ws2tcpip.h>
#else
#include <netdb.h>
#include <sys/socket.h>
#endif

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>

namespace {

constexpr std::chrono::milliseconds AskEvery{20};

using stDef_Addresses = std::vector<std::string>;

void StartSockets()
{
#ifdef _WIN32
    static const int s_nStarted = [] {
        WSADATA stData;
        return WSAStartup(MAKEWORD(2, 2), &stData);
    }();
    (void)s_nStarted;
#endif
}

/// Asks the system. Blocks for as long as that takes, unless only numbers are asked for.
stDef_Addresses Resolve(const std::string& sHost, bool bNumbersOnly)
{
    StartSockets();
    addrinfo stHints{};
    stHints.ai_socktype = SOCK_STREAM;
    stHints.ai_flags = bNumbersOnly ? AI_NUMERICHOST : AI_ADDRCONFIG;
    addrinfo* pFirst = nullptr;
    if (getaddrinfo(sHost.c_str(), nullptr, &stHints, &pFirst) != 0)
        return {};
    stDef_Addresses arAddresses;
    for (const addrinfo* p = pFirst; p; p = p->ai_next) {
        char szText[NI_MAXHOST];
        if (getnameinfo(p->ai_addr, static_cast<socklen_t>(p->ai_addrlen), szText, sizeof szText, nullptr, 0,
                        NI_NUMERICHOST) == 0 &&
            std::find(arAddresses.begin(), arAddresses.end(), szText) == arAddresses.end())
            arAddresses.emplace_back(szText);
    }
    freeaddrinfo(pFirst);
    return arAddresses;
}

struct stDef_Lookup
{
    bool bDone = false;
    stDef_Addresses arAddresses;
};

/// The look-ups that run. Outlives all static objects, since a thread left behind may still come back to it.
class CLookupTable
{
public:
    static CLookupTable& s_F_o_Instance()
    {
        static auto* s_pInstance = new CLookupTable;
        return *s_pInstance;
    }

    stDef_Addresses m_F_ar_Wait(const std::string& sHost, const std::function<bool()>& fnGiveUp)
    {
        std::unique_lock objLock(vm_objMutex);
        std::shared_ptr<stDef_Lookup> pLookup;
        while (!fnGiveUp()) {
            if (!pLookup)
                pLookup = m_F_p_Join(sHost);
            if (pLookup && pLookup->bDone)
                return pLookup->arAddresses;
            vm_objChanged.wait_for(objLock, AskEvery);
        }
        return {};
    }

private:
    /// The look-up of that name: the one that runs, or a new one if there is room. Call it under the lock.
    std::shared_ptr<stDef_Lookup> m_F_p_Join(const std::string& sHost)
    {
        if (const auto it = vm_mapRunning.find(sHost); it != vm_mapRunning.end())
            return it->second;
        if (vm_mapRunning.size() >= CHostLookup::MaxRunning)
            return nullptr;
        try {
            std::thread([this, sHost] { m_S_Run(sHost); }).detach();
        } catch (const std::system_error&) {
            return nullptr; // no thread to be had now; the next round tries again
        }
        return vm_mapRunning[sHost] = std::make_shared<stDef_Lookup>();
    }

    void m_S_Run(const std::string& sHost)
    {
        stDef_Addresses arAddresses = Resolve(sHost, false);
        const std::lock_guard objLock(vm_objMutex);
        const auto it = vm_mapRunning.find(sHost);
        it->second->arAddresses = std::move(arAddresses);
        it->second->bDone = true;
        vm_mapRunning.erase(it);
        vm_objChanged.notify_all();
    }

    std::mutex vm_objMutex;
    std::condition_variable vm_objChanged;
    std::map<std::string, std::shared_ptr<stDef_Lookup>> vm_mapRunning;
};

} // namespace

std::vector<std::string> CHostLookup::s_F_ar_Addresses(const std::string& sHost, const std::function<bool()>& fnGiveUp)
{
    if (stDef_Addresses arNumeric = Resolve(sHost, true); !arNumeric.empty())
        return arNumeric;
    return CLookupTable::s_F_o_Instance().m_F_ar_Wait(sHost, fnGiveUp);
}
