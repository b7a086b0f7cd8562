#pragma once

#include "host/Export.h"

class QString;
class QWidget;

/// Short forms of the messages that go to the user through `CUserSide`. On behalf of a dialog that was closed meanwhile
/// nothing is shown, and the answer is no. GUI thread only.
class FLEETLINK_EXPORT CPrompts
{
public:
    /// Shows a message and waits until it was confirmed.
    static void s_S_Message(QWidget* pParent, const QString& sText, const QString& sCaption);
    static void s_S_Notice(QWidget* pParent, const QString& sText, const QString& sCaption);
    static bool s_F_b_Ask(QWidget* pParent, const QString& sText, const QString& sCaption);
    /// The same before something is lost: No is the default.
    static bool s_F_b_AskToDestroy(QWidget* pParent, const QString& sText, const QString& sCaption);
};
