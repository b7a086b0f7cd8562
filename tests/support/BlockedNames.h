#pragma once

#include <atomic>
#include <dlfcn.h>
#include <netdb.h>
#include <string_view>
#include <unistd.h>

/// A name service that answers no name that begins with "blocked" until it is told to.
namespace BlockedNames {

inline std::atomic<bool> g_bBlocks{true};
inline std::atomic<int> g_nWaiting{0}; ///< look-ups

} // namespace BlockedNames

/// Takes the place of the system's for the whole program.
extern "C" __attribute__((visibility("default"))) int getaddrinfo(const char* pName, const char* pService,
                                                                  const addrinfo* pHints, addrinfo** ppFound)
{
    const bool bNumeric = pHints && (pHints->ai_flags & AI_NUMERICHOST);
    if (pName && std::string_view(pName).starts_with("blocked") && !bNumeric) {
        ++BlockedNames::g_nWaiting;
        while (BlockedNames::g_bBlocks)
            usleep(1000);
        --BlockedNames::g_nWaiting;
        return EAI_FAIL;
    }
    static const auto s_pSystem = reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"));
    return s_pSystem(pName, pService, pHints, ppFound);
}
