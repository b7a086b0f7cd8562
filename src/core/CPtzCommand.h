#pragma once

#include <QByteArray>

/// The requests of the commands for a camera.
class CPtzCommand
{
public:
    /// The request of an `nsCMS::emDef_PtzCommand`, with its parameters; empty for a number that is none.
    static QByteArray s_F_s_Url(int nCmd, int nCamera, int nParam1, int nParam2);
};
