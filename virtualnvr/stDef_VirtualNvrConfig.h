#pragma once

#include "http/stDef_Account.h"

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

/// What a virtual recorder is to be.
struct stDef_VirtualNvrConfig
{
    std::string sBind = "127.0.0.1"; ///< numeric address that both services listen on
    int nHttpPort = 0;               ///< 0: any free one
    int nRtspPort = 0;               ///< 0: any free one
    int nChannels = 4;               ///< 1..64
    bool bPC = false;                ///< plays a PC recorder instead of an embedded one
    std::string sStateFolder = {};   ///< documents as posted; empty: a temporary folder, removed at the end
    std::string sDataFolder = {};    ///< seeds of the documents; empty: those of the build
    std::vector<stDef_Account> arAccounts = {{"admin", "Fl33t!ink"}};
    bool bStoredAccounts = true; ///< those of the System document log in, too; a PC recorder has none
    bool bStreams = true;        ///< false: no RTSP service
    /// Ids that the directory service knows besides "FL-000001" (this recorder itself), with the "host:port" of each.
    std::vector<std::pair<std::string, std::string>> arDipsIds = {};
    int nProbeDelayMs = 0; ///< how long a camera takes to answer the recorder; a search takes four times that
    int nRestartMs = 0;    ///< how long nothing is answered once the clock was set
    static constexpr int s_nMaxRecordHours = 240;
    int nRecordHours = 1; ///< how long recordings are there; 0: none
    /// The clock of the recordings, in ms since 1970, called from any thread; empty: that of the system.
    std::function<std::int64_t()> fnNowMs = {};
    int nNonceLifetimeMs = 300000; ///< a login older than this is answered with stale=true
};
