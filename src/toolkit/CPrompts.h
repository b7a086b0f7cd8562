#pragma once

#include <QString>
#include <functional>

#include "host/Export.h"

class QWidget;

/// What is asked of the user.
struct stDef_Prompt
{
    enum class emDef_Kind
    {
        Message, ///< to be confirmed; the answer doesn't count
        Notice,  ///< the same, of something that is in order
        Question ///< yes or no: any answer but an empty one is yes
    };

    emDef_Kind nKind = emDef_Kind::Message;
    QString sText;
    QString sCaption;
};

/// Every message box and question of the library goes through here, so that a host, or a test, can answer in the
/// user's place. GUI thread only.
class FLEETLINK_EXPORT CPrompts
{
public:
    using Answerer = std::function<QString(const stDef_Prompt&)>;

    /// Shows a message and waits until it was confirmed.
    static void s_S_Message(QWidget* pParent, const QString& sText, const QString& sCaption);
    static void s_S_Notice(QWidget* pParent, const QString& sText, const QString& sCaption);
    static bool s_F_b_Ask(QWidget* pParent, const QString& sText, const QString& sCaption);

    /// From now on answers all prompts, and no window is shown; an empty one brings the windows back.
    static void s_S_SetAnswerer(Answerer fnAnswer);
};
