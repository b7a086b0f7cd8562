#pragma once

#include "core/CWndNvrShared.h"

/// Connection to a recorder that is software on a PC. It has no settings sheets, and no language file unless the host
/// loads one.
class FLEETLINK_EXPORT CWndNvrPC : public CWndNvrShared
{
    Q_OBJECT

public:
    using CWndNvrShared::CWndNvrShared;

private:
    void m_S_CreateNewRtsp(int nNvrID, int nChannel, int nStream) override;
};
