#pragma once

#ifndef _WIN32

#include <cstddef>

/// Lets this process live when another one cuts mapped memory short (`ftruncate`), or the system has no page left for
/// it: an access to what is no longer there raises SIGBUS, and the handler that is installed with the first mapping
/// puts zeros in the place of the whole mapping. To a reader that is no ring any more, and a writer notices that its
/// header is gone. A fault anywhere else goes to the handler that stood there before. Any thread.
class CCutGuard
{
public:
    /// Watches a mapping from now on; false if there are too many.
    static bool s_F_b_Add(void* pBegin, std::size_t nSize);
    /// To be called before the mapping goes.
    static void s_S_Remove(void* pBegin);
};

#endif
