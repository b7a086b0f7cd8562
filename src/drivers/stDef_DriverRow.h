#pragma once

#include "drivers/DriverKeys.h"

/// What makes a brand's driver, but for its own way with the template.
struct stDef_DriverRow
{
    std::span<const nsDriverKeys::Group> arGroups;
    const char* pszCopiedRtspPort = "554"; ///< what a copy has where the source has no port
};
