#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the run as a finding where something that must hold doesn't.
inline void Expect(bool bHolds, const char* pszWhat)
{
    if (bHolds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", pszWhat);
    std::abort();
}
