#pragma once

#include <QIcon>

enum class emDef_HostIcon
{
    Connect,
    Disconnect,
    Exchange,
    FullScreen,
    Snapshot,
    Previous,
    Next,
    Ptz,
    Plus,
    Minus,
    Settings,
    None ///< an empty one
};

/// Icons that are drawn in the palette's colours at the very size and ratio they are shown at.
class CHostIcon
{
public:
    static QIcon s_F_o_Get(emDef_HostIcon nIcon);
};
