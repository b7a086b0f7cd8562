#pragma once

#include "http/stDef_Account.h"
#include "scene/CPtzBoard.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// What the live streams of a recorder are to be.
struct stDef_StreamConfig
{
    std::string sBind = "127.0.0.1";            ///< numeric address, IPv4 or IPv6
    int nPort = 0;                              ///< 0: any free one
    int nChannels = 4;                          ///< 1..64
    std::vector<stDef_Account> arAccounts;      ///< Basic and Digest; empty: everybody may play
    std::shared_ptr<const CPtzBoard> pPtz = {}; ///< cameras that move; null: they show their clips only
};

/// The live streams of a virtual recorder: an RTSP server with the mounts "/stream/CH<n>" (main stream, 640x360) and
/// "/stream/SCH<n>" (second stream, 320x180) for the channels 0..n-1, each with H.264 at 15 frames a second and with
/// PCMU audio, over UDP, TCP and HTTP tunnel (on the same port). A client gets the mount's clip, which was encoded
/// once, from its first picture on, in a loop; while its camera is turned away from home, pictures of its own. What the
/// pictures carry for tests stands in CPictureCode.h.
///
/// Start and Stop belong to one thread; everything else may be called from any thread.
class CStreamServer
{
public:
    CStreamServer();
    ~CStreamServer(); ///< stops
    CStreamServer(const CStreamServer&) = delete;
    CStreamServer& operator=(const CStreamServer&) = delete;

    /// Opens the port; clients can connect when it returns.
    /// @return false with sError set: a GStreamer plug-in is missing (sError names its package), the address can't be
    /// used, the configuration is out of range, or the server runs already. Then nothing is left running.
    bool m_F_b_Start(const stDef_StreamConfig& stConfig, std::string& sError);

    /// Closes the port and every connection, and joins every thread. Harmless if nothing runs.
    void m_S_Stop();

    int m_F_n_Port() const; ///< 0 while stopped

    /// Takes the place of all accounts, each of which may play the cameras of its `sPreview` alone; a mount of another
    /// one is refused with 403. In force for connections that come after; what is being played goes on. Without effect
    /// on a server that doesn't run, or that lets everybody play.
    void m_S_SetAccounts(const std::vector<stDef_Account>& arAccounts);

    /// Takes over a connection that was accepted elsewhere, such as one half of an HTTP tunnel on the HTTP port.
    /// @param nSocket connected TCP socket; owned by the server from here on, also if the result is false
    /// @param sPeer numeric address of the client; nPeerPort its port
    /// @param sInitial the bytes that were already read from it
    /// @return false if the server doesn't run or the socket can't be used
    bool m_F_b_TransferConnection(int nSocket, const std::string& sPeer, int nPeerPort, const std::string& sInitial);

    /// Sets a fault of all mounts whose path contains sMountPart ("*": all), in force when the call returns.
    /// - "silent": new connections are accepted and never answered
    /// - "garbage": new connections are answered with bytes that are no RTSP
    /// - "killed": open connections are closed now; new ones work
    /// - "refuse": the port doesn't listen until "none"; it is one port, so sMountPart doesn't matter
    /// - "missing": the mount doesn't exist (404); sessions that play go on
    /// - "paused": sessions stay up, and new ones can be set up, but no RTP is sent; afterwards a key frame comes first
    /// - "jump": all time stamps jump once by nArg milliseconds, forward or back
    /// - "params": resolution and parameter sets change in mid-stream, those of CH<n> to SCH<n>'s and the other way
    /// - "no-key": no key frame is sent, from now on
    /// - "no-sets": parameter sets are sent neither with the pictures nor in the description
    /// - "none": takes the lasting faults of these mounts back (all but "killed" and "jump")
    /// A connection belongs to the mount that its first request names. Faults of one mount add up.
    /// @return false if the name is unknown, the server doesn't run, or no mount matches
    bool m_F_b_SetFault(const std::string& sMountPart, const std::string& sName, long nArg = 0);

    /// The names that m_F_b_SetFault knows.
    static const std::vector<std::string_view>& s_F_ar_FaultNames();

    /// Number of playing sessions. A client that was closed counts until the server has seen it.
    int m_F_n_Sessions() const;

private:
    struct stDef_Impl;
    std::unique_ptr<stDef_Impl> vm_pImpl;
};
