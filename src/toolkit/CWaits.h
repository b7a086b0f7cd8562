#pragma once

#include "host/Export.h"

class QString;
class QWidget;

/// The waits of the library: one object, which a test or a host can replace. GUI thread only.
class FLEETLINK_EXPORT CWaits
{
public:
    virtual ~CWaits() = default;

    /// Waits so many ms, while a bar above the parent's window counts the seconds down under `sText`. Windows are
    /// painted in that time and timers run, but no input is handled.
    virtual void m_S_Wait(QWidget* pParent, const QString& sText, int nMs);

    static CWaits& s_F_o_Get();
    /// Borrowed; null brings the real one back.
    static void s_S_Replace(CWaits* pWaits);
};
