#pragma once

/// Names one channel of one recorder of the list.
struct stDef_ChannelKey
{
    int nNvrID = -1;
    int nChannel = 0; ///< from 0
    bool operator==(const stDef_ChannelKey&) const = default;
};
