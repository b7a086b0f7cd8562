#pragma once

#include <functional>
#include <string>
#include <vector>

/// Name look-ups that the caller can give up. The system's own call can't be stopped, so it runs on a thread of its own
/// that is left behind if need be; connections that ask for the same name at once share one, and there are never more
/// than a few. Any thread.
class CHostLookup
{
public:
    static constexpr int MaxRunning = 16; ///< look-ups at the same time; further ones wait for their turn

    /// Numeric addresses of the host, best first. Empty if it has none, or as soon as `fnGiveUp` is true; it is asked
    /// every 20 ms. A numeric host is its own address, without any look-up.
    static std::vector<std::string> s_F_ar_Addresses(const std::string& sHost, const std::function<bool()>& fnGiveUp);
};
