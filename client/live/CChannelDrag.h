#pragma once

#include <QList>

#include "live/stDef_ChannelKey.h"

class QMimeData;

/// Channels on their way by drag and drop: one "nNvrID/nChannel" a line.
class CChannelDrag
{
public:
    static constexpr const char* MimeType = "application/x-zentrix-channel";

    /// The caller owns it.
    static QMimeData* s_F_p_Make(const QList<stDef_ChannelKey>& arKeys);
    /// What is no channel is left out; empty if there is nothing of ours in it.
    static QList<stDef_ChannelKey> s_F_ar_Read(const QMimeData* pData);
};
