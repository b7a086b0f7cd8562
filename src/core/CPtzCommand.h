#pragma once

#include <QByteArray>

/// The commands of the device channel, by their numbers in the host's interface.
class CPtzCommand
{
public:
    static constexpr int TourList = 9;    ///< no command: a kind of `m_S_GetPTZData`
    static constexpr int PresetList = 22; ///< likewise

    /// The request of a command; empty for a number that is none. What the parameters are is told by the command: a
    /// speed, a tour's or preset's number, or a rate of movement.
    static QByteArray s_F_s_Url(int nCmd, int nCamera, int nParam1, int nParam2);
};
