#pragma once

/// Keeps the media library's messages about our connections, which may carry addresses and logins, out of every log.
///
/// Its log has one callback a process and no way to ask for the one that is set. The first use here replaces it by one
/// that drops what comes from marked threads and hands all else to the library's own, which goes by the level as ever.
/// A level that silences everybody would take the messages of a host that decodes with the same library, too. A host
/// with a callback of its own sets it after its first connection, and leaves the marked threads' messages out likewise.
class CAvLog
{
public:
    /// Drops the messages of the calling thread from here on.
    static void s_S_MuteThread();
};
