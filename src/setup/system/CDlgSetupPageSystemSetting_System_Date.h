#pragma once

#include <optional>

#include "setup/system/CDaylightRows.h"
#include "toolkit/sheet/CFormDialog.h"

class CWndNvrEmbedded;
class QCalendarWidget;

/// Sets the recorder's clock, time zone and daylight saving by one request that goes out at once. It begins with this
/// computer's clock and the System document, which it only reads.
class CDlgSetupPageSystemSetting_System_Date : public CFormDialog
{
    Q_OBJECT

public:
    /// The connection is borrowed; its System document may be closed.
    CDlgSetupPageSystemSetting_System_Date(CWndNvrEmbedded* pNvr, QWidget* pParent);

    /// Asks, sends, and ends the dialog, whatever came of the request.
    void accept() override;

Q_SIGNALS:
    /// The request went out. The sheet behind is to close: the recorder restarts its service.
    void S_ClockSet();

private:
    void m_S_Make();
    void m_S_Post();

    CWndNvrEmbedded* vm_pNvr; ///< not owned
    QCalendarWidget* vm_pDate = nullptr;
    CTimePicker* vm_pTime = nullptr;
    std::optional<CDaylightRows> vm_objDaylight;
};
