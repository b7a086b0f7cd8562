#pragma once

#include <QDateTime>
#include <QString>
#include <cstdint>
#include <functional>

#include "host/Export.h"

class CTextSource;
class QDialog;
class QWidget;

/// What is said to the user, or asked.
struct stDef_Prompt
{
    enum class emDef_Kind
    {
        Message,         ///< to be confirmed
        Notice,          ///< the same, of something that is in order
        Question,        ///< yes or no
        DestroyingChoice ///< yes or no, where a yes loses something: a hasty key says no
    };

    emDef_Kind nKind = emDef_Kind::Message;
    QString sText; ///< shown as plain text
    QString sCaption;
};

/// A file or folder that the user is to choose.
struct stDef_FileQuestion
{
    enum class emDef_Kind
    {
        Open,  ///< one that exists
        Save,  ///< any; the user agreed to lose what stands there
        Folder ///< one that exists
    };

    emDef_Kind nKind = emDef_Kind::Open;
    QString sCaption;
    QString sProposed; ///< file name or folder to begin with
    QString sFilter;   ///< such as "Text (*.txt)"; not for folders
    QString sSuffix;   ///< of a name to save that is given without one
};

/// The user, and the time in which the user lives: whatever library and host ask of either goes through this one
/// object, which a host or a test can replace. `CPrompts` has the short forms for messages. GUI thread only.
class FLEETLINK_EXPORT CUserSide
{
public:
    virtual ~CUserSide() = default;

    /// Shows it and waits for the answer: true for yes, and for anything that was confirmed. The parent, which may be
    /// null, can be destroyed meanwhile; then the answer is no.
    virtual bool m_F_b_Prompt(QWidget* pParent, const stDef_Prompt& stPrompt);
    /// Asks for a file or folder; empty if the user took none.
    virtual QString m_F_s_File(QWidget* pParent, const stDef_FileQuestion& stQuestion);
    /// Runs a modal dialog and returns its result.
    virtual int m_F_n_RunModal(QDialog& objDialog);
    /// Waits so many ms, while a bar above the parent's window counts the seconds down under `sText`. Windows are
    /// painted in that time and timers run, but input is held back. Ends early if that box is closed or goes with its
    /// parent.
    virtual void m_S_Wait(QWidget* pParent, const QString& sText, int nMs);

    /// Today's date and time on this computer's clock.
    virtual QDateTime m_F_o_Now();
    /// Ms of a clock that nobody sets; only differences mean something.
    virtual std::uint64_t m_F_n_TickMs();
    /// Calls once after so many ms, unless the object is gone by then.
    virtual void m_S_After(int nMs, QObject* pContext, const std::function<void()>& fnCall);

    static CUserSide& s_F_o_Get();
    /// Borrowed; null brings the real one back.
    static void s_S_Replace(CUserSide* pUserSide);
    /// Where the buttons of messages and questions have their words from, under the keys "OK", "Yes" and "No"; one that
    /// is not there, and all of them without a source, are Qt's own. Borrowed; null takes it back.
    static void s_S_SetTexts(const CTextSource* pTexts);
};
