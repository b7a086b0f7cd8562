#pragma once

#include "core/CWndNvrShared.h"

/// Connection to a recorder appliance.
class FLEETLINK_EXPORT CWndNvrEmbedded : public CWndNvrShared
{
    Q_OBJECT

public:
    using CWndNvrShared::CWndNvrShared;

    /// Loads the language file of the host's language first, also when the checks of the base then fail.
    int m_F_n_Init(stDef_NvrInit stInit) override;

private:
    void m_S_CreateNewRtsp(int nNvrID, int nChannel, int nStream) override;
};
