#pragma once

/// Whether anybody answers at a recorder's address.
enum class emDef_Reach
{
    Unknown, ///< not probed yet
    There,   ///< answered the last probe
    Silent,  ///< takes connections, or swallows them, but says nothing
    Away     ///< refused, unreachable, or no such host
};
