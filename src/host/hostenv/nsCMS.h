#pragma once

#include <cstddef>
#include <cstdint>

/// Records that the host process and this library share in memory. Layouts are byte-exact.
namespace nsCMS {

/// State of a live stream, as a host polls it and as it stands in the video ring.
enum emDef_ConnectStat : std::int32_t
{
    ConnectStat_None = 0,          ///< there is no stream object
    ConnectStat_Connecting = 1,    ///< the client's thread runs and no data has come yet
    ConnectStat_Connected = 2,     ///< the client's thread runs and the stream plays
    ConnectStat_Disconnecting = 4, ///< a disconnect waits for the client's thread
    ConnectStat_Disconnected = 5,  ///< ended by a disconnect, by itself, or by silence after data
    ConnectStat_NoAnswer = 6,      ///< silence before anything came
    ConnectStat_Refused = 7        ///< the recorder refused the stream
};

/// The host's system record. Only the named parts are touched; the rest belongs to the host.
/// The folder stands at an odd byte position: read and write it by `CEnvObj`, never through a pointer.
#pragma pack(push, 1)
struct stDef_SYS_INFO
{
    unsigned char arHead[8];         ///< host's own
    std::uint64_t hMainWnd;          ///< main window of the host, a native window handle
    unsigned char arHost[477];       ///< host's own
    unsigned char arLangFolder[534]; ///< UTF-16LE, zero-terminated, ends with a path separator
    unsigned char nPad;              ///< host's own
    unsigned char arTimeZone[172];   ///< TIME_ZONE_INFORMATION of the host
};
#pragma pack(pop)

static_assert(offsetof(stDef_SYS_INFO, hMainWnd) == 8);
static_assert(offsetof(stDef_SYS_INFO, arLangFolder) == 493);
static_assert(offsetof(stDef_SYS_INFO, arTimeZone) == 1028);
static_assert(sizeof(stDef_SYS_INFO) == 1200);

} // namespace nsCMS
